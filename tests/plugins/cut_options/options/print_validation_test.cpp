// Tests of the cut-options panel: before printing, every option carries a choice.
#include <gtest/gtest.h>

#include <QCheckBox>

#include "tests/plugins/cut_options/options/option_subsets.h"

namespace labelcut::test {
namespace {

/// The other choice than the default.
const char* otherAt(std::size_t place) {
    if (place == kCutLabelPlace)
        return "5";
    return place % 2 == 0 ? "ON" : "OFF";
}

std::vector<Sent> defaultsOf(unsigned set) {
    std::vector<Sent> sent;
    for (std::size_t i = 0; i < kKeywords.size(); ++i)
        if (has(set, i))
            sent.emplace_back(keywordAt(i), defaultAt(i));
    return sent;
}

TEST(ShouldPrint, SendsTheDefaultOfEveryUnmarkedOptionInOrderForEverySetOfMarks) {
    PanelOnHost setting(ppdWith(kAllOptions, false).open());
    PanelUnderTest& panel = setting.construct();
    ppd_file_t* ppd = setting.host->ppd.get();
    for (unsigned marked = 0; marked <= kAllOptions; ++marked) {
        for (std::size_t i = 0; i < kKeywords.size(); ++i) {
            ASSERT_TRUE(has(marked, i) ? ppd::markOption(ppd, kKeywords.at(i), otherAt(i))
                                       : ppd::unmarkOption(ppd, kKeywords.at(i)));
        }
        EXPECT_TRUE(panel.shouldPrint());
        EXPECT_EQ(setting.host->takeSent(), defaultsOf(~marked & kAllOptions)) << marked;
        for (std::size_t i = 0; i < kKeywords.size(); ++i) {
            const ppd_choice_t* choice = ppd::findMarkedChoice(ppd, kKeywords.at(i));
            ASSERT_TRUE(choice);
            EXPECT_EQ(QLatin1String(choice->choice),
                      has(marked, i) ? QLatin1String(otherAt(i)) : defaultAt(i));
        }
    }
}

TEST(ShouldPrint, SendsTheDefaultOfEveryPresentOptionForEverySubset) {
    for (unsigned set = 0; set <= kAllOptions; ++set) {
        for (const bool shown : {false, true}) {
            PanelOnHost setting(ppdWith(set, shown).open());
            EXPECT_TRUE(setting.construct().shouldPrint());
            EXPECT_EQ(setting.host->takeSent(), defaultsOf(set)) << set;
            EXPECT_TRUE(setting.panel->shouldPrint());
            EXPECT_TRUE(setting.host->sent.empty()) << "all are marked now";
        }
    }
}

TEST(ShouldPrint, SendsOnePairForOneUnmarkedOption) {
    PanelOnHost setting(PpdBuilder().onOff("KvCutAtEnd", "OFF").open());
    EXPECT_TRUE(setting.construct().shouldPrint());
    EXPECT_EQ(setting.host->sent, (std::vector<Sent>{{"KvCutAtEnd", "OFF"}}));
}

TEST(ShouldPrint, SendsNothingForAnOptionWithoutDefaultChoice) {
    PanelOnHost setting(PpdBuilder()
                            .onOff("KvCutAtEnd", "MAYBE")
                            .option("KvMirror", "", {"OFF", "ON"}, "")
                            .onOff("KvHalfCut", "ON")
                            .open());
    EXPECT_TRUE(setting.construct().shouldPrint());
    EXPECT_EQ(setting.host->sent.back(), (Sent{"KvHalfCut", "ON"}));
    for (const Sent& sent : setting.host->sent)
        EXPECT_NE(sent.first, QStringLiteral("KvCutAtEnd"));
}

TEST(ShouldPrint, IsTrueWithoutPpdAndSendsNothing) {
    PanelOnHost setting(nullptr);
    EXPECT_TRUE(setting.construct().shouldPrint());
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(ShouldPrint, LooksAtMarksOnly) {
    PanelOnHost setting(ppdWith(kAllOptions, true).open());
    setting.host->hasSettings = false;
    PanelUnderTest& panel = setting.load();
    panel.willShow();
    EXPECT_TRUE(setting.host->sent.empty()) << "nothing is saved without print settings";
    for (Button* box : {&panel.mHalfCutChkBx, &panel.mMirrorPrintChkBx, &panel.mCutEveryChkBx})
        box->setState(1);
    panel.mHalfCut_Selection = &panel.mHalfCut_Choices->at(1);
    const PDEChoice* const array = panel.mHalfCut_Choices->data();

    EXPECT_TRUE(panel.shouldPrint());
    EXPECT_EQ(setting.host->sent, defaultsOf(kAllOptions));
    EXPECT_EQ(panel.mHalfCut_Selection, array + 1) << "selections stay";
    EXPECT_EQ(panel.mMirror_Selection, nullptr);
    EXPECT_EQ(panel.mHalfCut_Choices->data(), array) << "and so do the arrays";
    EXPECT_EQ(panel.mHalfCutChkBx.state(), 1) << "and the controls";
}

TEST(ShouldPrint, AsksAgainAsLongAsTheHostDoesNotMark) {
    PanelOnHost setting(ppdWith(kAllOptions, true).open());
    setting.host->marks = false;
    PanelUnderTest& panel = setting.construct();
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(panel.shouldPrint());
        EXPECT_EQ(setting.host->takeSent(), defaultsOf(kAllOptions));
    }
}

} // namespace
} // namespace labelcut::test
