// Tests of the base panel: where a choice stands in its array, and sending one to the host.
#include "plugins/cut_options/frame/base_pde.h"

#include <gtest/gtest.h>

#include <limits>

#include "plugins/cut_options/frame/pde_utils_method.h"
#include "tests/plugins/cut_options/frame/raw_choice.h"
#include "tests/plugins/cut_options/frame/recording_panel.h"
#include "tests/support/ppd_builder.h"

namespace labelcut::test {
namespace {

const QString kHalfCut = QStringLiteral("KvHalfCut");

PDEChoices arrayOf(const ppd::File& ppd, const char* keyword) {
    return PDEUtilsMethod13::arrayFromPPDOption(ppd::findOption(ppd.get(), keyword));
}

/// A panel on a PPD with some options, nothing marked.
class Selection : public testing::Test {
protected:
    Selection()
        : setting(PpdBuilder()
                      .option("KvHalfCut", "", {"A", "B", "C"}, "B")
                      .option("KvMirror", "", {"X", "Y", "A"}, "Z")
                      .option("KvChainPrint", "", {"P", "Q", "R"}, "P")
                      .option("KvSpecialTape", "", {"S", "T"}, "T")
                      .open())
        , panel(setting.construct()) {
        renameChoice(setting.host->ppd, "KvChainPrint", 1, "\xE9Q");
        renameChoice(setting.host->ppd, "KvSpecialTape", 1, "\xC3\xA9T");
        std::strcpy(option("KvSpecialTape")->defchoice, "\xC3\xA9T");
    }

    bool mark(const char* keyword, const char* choice) {
        return ppd::markOption(setting.host->ppd.get(), keyword, choice);
    }
    PDEChoices choices(const char* keyword) { return arrayOf(setting.host->ppd, keyword); }
    FakeHost& host() { return *setting.host; }
    ppd_option_t* option(const char* keyword) {
        return ppd::findOption(setting.host->ppd.get(), keyword);
    }

    RecordingPanelOnHost setting;
    RecordingPanel& panel;
};

TEST_F(Selection, MarkedIndexIsMinusOneWhenNothingIsMarkedWhateverTheArray) {
    EXPECT_EQ(panel.indexOfMarkedOption(choices("KvHalfCut"), kHalfCut), -1);
    EXPECT_EQ(panel.indexOfMarkedOption(PDEChoiceArray(), kHalfCut), -1);
    EXPECT_EQ(panel.indexOfMarkedOption(std::nullopt, kHalfCut), -1);
    EXPECT_EQ(panel.indexOfMarkedOption(choices("KvHalfCut"), QStringLiteral("KvMissing")), -1);
    EXPECT_EQ(panel.indexOfMarkedOption(choices("KvHalfCut"), QString()), -1);

    RecordingPanelOnHost without;
    EXPECT_EQ(without.construct().indexOfMarkedOption(choices("KvHalfCut"), kHalfCut), -1);
}

TEST_F(Selection, MarkedIndexIsThePlaceOfTheMarkedChoice) {
    const char* const names[] = {"A", "B", "C"};
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(mark("KvHalfCut", names[i]));
        EXPECT_EQ(panel.indexOfMarkedOption(choices("KvHalfCut"), kHalfCut), i);
    }
}

TEST_F(Selection, MarkedIndexIsZeroWhenTheArrayCannotTell) {
    ASSERT_TRUE(mark("KvHalfCut", "C"));
    EXPECT_EQ(panel.indexOfMarkedOption(std::nullopt, kHalfCut), 0);
    EXPECT_EQ(panel.indexOfMarkedOption(PDEChoiceArray(), kHalfCut), 0);
    EXPECT_EQ(panel.indexOfMarkedOption(choices("KvMirror"), kHalfCut), 0) << "built from another";
    ASSERT_TRUE(mark("KvHalfCut", "A"));
    EXPECT_EQ(panel.indexOfMarkedOption(choices("KvMirror"), kHalfCut), 2) << "by keyword alone";
}

TEST_F(Selection, MarkedIndexIsZeroForAMarkedKeywordThatIsNotAscii) {
    for (const auto& [keyword, choice] :
         {std::pair{"KvChainPrint", "\xE9Q"}, std::pair{"KvSpecialTape", "\xC3\xA9T"}}) {
        ASSERT_TRUE(mark(keyword, choice));
        EXPECT_EQ(panel.indexOfMarkedOption(choices(keyword), QLatin1String(keyword)), 0);
    }
}

TEST_F(Selection, MarkedIndexIsTheFirstOfEqualKeywords) {
    ASSERT_TRUE(mark("KvHalfCut", "B"));
    PDEChoiceArray twice = *choices("KvHalfCut");
    const PDEChoiceArray again = twice;
    twice.insert(twice.end(), again.begin(), again.end());
    EXPECT_EQ(panel.indexOfMarkedOption(twice, kHalfCut), 1);
}

TEST_F(Selection, DefaultIndexIsItsPlaceMinusOneForNoneAndZeroForAnEmptyArray) {
    EXPECT_EQ(panel.indexOfDefaultOption(choices("KvHalfCut")), 1);
    EXPECT_EQ(panel.indexOfDefaultOption(choices("KvChainPrint")), 0);
    EXPECT_EQ(panel.indexOfDefaultOption(choices("KvSpecialTape")), 1);
    EXPECT_EQ(panel.indexOfDefaultOption(choices("KvMirror")), -1);
    EXPECT_EQ(panel.indexOfDefaultOption(PDEChoiceArray()), 0);
    EXPECT_EQ(panel.indexOfDefaultOption(std::nullopt), 0);
    ASSERT_TRUE(mark("KvHalfCut", "C"));
    EXPECT_EQ(panel.indexOfDefaultOption(choices("KvHalfCut")), 1) << "whatever is marked";
}

TEST_F(Selection, IsSentReturnedAndRereadForEveryIndexInside) {
    const PDEChoices array = choices("KvHalfCut");
    for (std::int32_t i = 0; i < 3; ++i) {
        std::size_t sentBefore = 0;
        panel.onReread = [&] { sentBefore = setting.host->sent.size(); };
        EXPECT_EQ(panel.selectionForItem(i, kHalfCut, array, 0x1000 << i),
                  &(*array)[static_cast<std::size_t>(i)]);
        EXPECT_EQ(sentBefore, 1U) << "the host is told first, then the selections are reread";
        EXPECT_EQ(
            setting.host->takeSent(),
            (std::vector<Sent>{{kHalfCut, QString(QLatin1Char(static_cast<char>('A' + i)))}}));
        EXPECT_STREQ(ppd::findMarkedChoice(panel.ppd, "KvHalfCut")->choice,
                     array->at(static_cast<std::size_t>(i)).choice()->choice);
    }
    EXPECT_EQ(panel.rereadMasks, (std::vector<std::uint32_t>{0x1000, 0x2000, 0x4000}));
}

TEST_F(Selection, GivesAndSendsNothingForAnIndexOutside) {
    for (const std::int32_t i : {3, 4, std::numeric_limits<std::int32_t>::max(), -1, -2,
                                 std::numeric_limits<std::int32_t>::min()})
        EXPECT_EQ(panel.selectionForItem(i, kHalfCut, choices("KvHalfCut"), 0x1000), nullptr) << i;
    for (const std::int32_t i : {-1, 0, 1}) {
        EXPECT_EQ(panel.selectionForItem(i, kHalfCut, PDEChoiceArray(), 0x1000), nullptr) << i;
        EXPECT_EQ(panel.selectionForItem(i, kHalfCut, std::nullopt, 0x1000), nullptr) << i;
    }
    EXPECT_TRUE(setting.host->sent.empty());
    EXPECT_TRUE(panel.rereadMasks.empty());
}

TEST_F(Selection, SendsTheGivenKeywordWhateverTheArrayBelongsTo) {
    panel.selectionForItem(1, QStringLiteral("KvAutoTapeCut"), choices("KvMirror"),
                           std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(setting.host->sent, (std::vector<Sent>{{"KvAutoTapeCut", "Y"}}));
    EXPECT_EQ(panel.rereadMasks, std::vector<std::uint32_t>{0x80000000U}) << "all 32 bits";
}

TEST_F(Selection, OfAKeywordThatCannotBeDecodedIsReturnedUnsent) {
    const PDEChoices array = choices("KvChainPrint");
    EXPECT_EQ(panel.selectionForItem(1, QStringLiteral("KvChainPrint"), array, 0x2000),
              &(*array)[1]);
    EXPECT_TRUE(setting.host->sent.empty());
    EXPECT_EQ(panel.rereadMasks, std::vector<std::uint32_t>{0x2000});
}

TEST_F(Selection, DefaultIsSentForAnUnmarkedOption) {
    panel.setDefaultChoices(option("KvHalfCut"), choices("KvHalfCut"), "KvHalfCut", kHalfCut);
    EXPECT_EQ(setting.host->sent, (std::vector<Sent>{{"KvHalfCut", "B"}}));
    EXPECT_TRUE(panel.rereadMasks.empty()) << "selections stay as they are";
}

TEST_F(Selection, DefaultIsNotSentForAnAbsentOrMarkedOption) {
    panel.setDefaultChoices(nullptr, choices("KvHalfCut"), "KvHalfCut", kHalfCut);
    EXPECT_TRUE(setting.host->sent.empty());
    ASSERT_TRUE(mark("KvHalfCut", "A"));
    panel.setDefaultChoices(option("KvHalfCut"), choices("KvHalfCut"), "KvHalfCut", kHalfCut);
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST_F(Selection, DefaultIsNotSentWhenThereIsNone) {
    panel.setDefaultChoices(option("KvMirror"), choices("KvMirror"), "KvMirror",
                            QStringLiteral("KvMirror"));
    const ppd_option_t empty{};
    panel.setDefaultChoices(&empty, PDEChoiceArray(), "KvEmpty", QStringLiteral("KvEmpty"));
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST_F(Selection, DefaultLooksForTheCStringAndSendsTheString) {
    ASSERT_TRUE(mark("KvHalfCut", "A"));
    panel.setDefaultChoices(option("KvHalfCut"), choices("KvHalfCut"), "KvMirror",
                            QStringLiteral("sent as it is"));
    EXPECT_EQ(setting.host->sent, (std::vector<Sent>{{"sent as it is", "B"}}));
}

TEST_F(Selection, DefaultIsThePlaceInTheArrayAndTheChoiceOfTheOption) {
    panel.setDefaultChoices(option("KvMirror"), choices("KvHalfCut"), "KvMirror",
                            QStringLiteral("KvMirror"));
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvMirror", "Y"}}));

    host().marks = false;
    PDEChoiceArray longer = *choices("KvMirror");
    longer.push_back(choices("KvHalfCut")->at(1));
    panel.setDefaultChoices(option("KvHalfCut"), longer, "KvHalfCut", kHalfCut);
    EXPECT_TRUE(host().sent.empty()) << "a place beyond the option's choices";
    panel.setDefaultChoices(option("KvHalfCut"), PDEChoiceArray(), "KvHalfCut", kHalfCut);
    EXPECT_EQ(host().takeSent(), (std::vector<Sent>{{"KvHalfCut", "A"}}))
        << "the default index of an empty array is 0";
}

TEST_F(Selection, DefaultIsReadAsUtf8) {
    panel.setDefaultChoices(option("KvSpecialTape"), choices("KvSpecialTape"), "KvSpecialTape",
                            QStringLiteral("KvSpecialTape"));
    EXPECT_EQ(setting.host->takeSent(),
              (std::vector<Sent>{{"KvSpecialTape", QStringLiteral("éT")}}));

    PDEChoiceArray oneOff(1, choices("KvMirror")->front());
    oneOff.push_back(choices("KvHalfCut")->at(1));
    panel.setDefaultChoices(option("KvChainPrint"), oneOff, "KvChainPrint",
                            QStringLiteral("KvChainPrint"));
    EXPECT_TRUE(setting.host->sent.empty()) << "bytes that are not UTF-8 are not sent";
}

TEST_F(Selection, IsNotSentWithoutAHost) {
    RecordingPanel alone;
    ASSERT_EQ(alone.initWithCallback(nullptr, nullptr), nullptr);
    const PDEChoices array = choices("KvHalfCut");
    EXPECT_EQ(alone.selectionForItem(0, kHalfCut, array, 1), &array->front());
    alone.setDefaultChoices(option("KvHalfCut"), array, "KvHalfCut", kHalfCut);
    EXPECT_TRUE(setting.host->sent.empty());
}

} // namespace
} // namespace labelcut::test
