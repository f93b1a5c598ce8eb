// Tests of the cut-options panel: selections that follow the PPD's marks and the host's notices.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/plugins/cut_options/options/panel_fixtures.h"

namespace labelcut::test {
namespace {

/// All eight options marked ON, the count 5; nothing selected yet.
struct Marked : PanelOnHost {
    explicit Marked(unsigned offers = kAllOptions)
        : PanelOnHost(printerOffering(offers, false, true).open()) {
        construct();
        ppd::markOption(host->ppd.get(), "KvCutLabel", "5");
        for (int option = CutAtEnd; option < kOptionCount; ++option)
            ppd::markOption(host->ppd.get(), kKeywords[static_cast<std::size_t>(option)], "ON");
    }
};

QString expectedKeyword(int option) {
    return option == CutLabel ? QStringLiteral("5") : QStringLiteral("ON");
}

TEST(Reread, FillsExactlyTheSelectionsOfTheMask) {
    // Every subset of the eight bits, with and without the two bits that select nothing.
    for (unsigned subset = 0; subset < 256; ++subset) {
        std::uint32_t mask = 0;
        for (unsigned option = 0; option < kOptionCount; ++option)
            mask |= (subset >> option & 1U) != 0 ? kItems[option] : 0U;
        for (const std::uint32_t idle : {0U, 0x8000U, 0x40000U, 0xFFFA00FFU}) {
            Marked setting;
            PanelUnderTest& panel = *setting.panel;
            panel.updateMarkedSelections(mask | idle);
            for (int option = 0; option < kOptionCount; ++option) {
                const bool named = (subset >> option & 1U) != 0;
                EXPECT_EQ(keywordOf(panel.*kSelections[static_cast<std::size_t>(option)]),
                          named ? expectedKeyword(option) : QString());
            }
            EXPECT_EQ(keywordOf(panel.mAutoCut_CutEvery_Selection),
                      (subset & 1U) != 0 ? QStringLiteral("ON") : QString());
            if (subset % 16 != 0)
                break;
        }
    }
}

TEST(Reread, SelectsAnElementOfTheOptionsOwnArray) {
    Marked setting;
    PanelUnderTest& panel = *setting.panel;
    panel.setPDEItems2();
    for (std::size_t option = 0; option < kOptionCount; ++option) {
        const PDEChoiceArray& array = *(panel.*kChoices[option]);
        const PDEChoice* selection = panel.*kSelections[option];
        EXPECT_TRUE(selection >= array.data() && selection < array.data() + array.size());
    }
    EXPECT_EQ(panel.mAutoCut_CutEvery_Selection, panel.mAutoCut_Selection);
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(Reread, SkipsAnAbsentOptionAndLeavesItsSelection) {
    for (int absent = 0; absent < kOptionCount; ++absent) {
        Marked setting(kAllOptions & ~(1U << absent));
        PanelUnderTest& panel = *setting.panel;
        panel.setPDEItems2();
        for (int option = 0; option < kOptionCount; ++option)
            EXPECT_EQ(keywordOf(panel.*kSelections[static_cast<std::size_t>(option)]),
                      option == absent ? QString() : expectedKeyword(option));
        const bool hasPair = absent != CutLabel && absent != AutoCut;
        EXPECT_EQ(panel.mAutoCut_CutEvery_Selection != nullptr, hasPair);
    }
}

TEST(Reread, FallsBackToTheDefaultOnlyWhenNothingIsMarked) {
    PpdBuilder ppd;
    ppd.onOff("KvHalfCut", "ON").counts(1, 9, "4");
    PanelOnHost setting(ppd.open());
    PanelUnderTest& panel = setting.construct();
    panel.setPDEItems2();
    EXPECT_EQ(keywordOf(panel.mHalfCut_Selection), QStringLiteral("ON"));
    EXPECT_EQ(keywordOf(panel.mCutEvery_Selection), QStringLiteral("4"));
    ppd::markOption(setting.host->ppd.get(), "KvHalfCut", "OFF");
    ppd::markOption(setting.host->ppd.get(), "KvCutLabel", "8");
    panel.setPDEItems2();
    EXPECT_EQ(keywordOf(panel.mHalfCut_Selection), QStringLiteral("OFF"));
    EXPECT_EQ(keywordOf(panel.mCutEvery_Selection), QStringLiteral("8"));
}

TEST(Reread, GivesNoSelectionWithoutMarkAndDefault) {
    Marked setting;
    PanelUnderTest& panel = *setting.panel;
    panel.setPDEItems2();
    for (std::size_t option = 0; option < kOptionCount; ++option) {
        ppd_option_t* record = ppd::findOption(setting.host->ppd.get(), kKeywords[option]);
        std::strcpy(record->defchoice, "NEVER");
        ppd::unmarkOption(setting.host->ppd.get(), kKeywords[option]);
    }
    panel.setPDEItems2();
    for (const auto selection : kSelections)
        EXPECT_EQ(panel.*selection, nullptr);
    EXPECT_EQ(panel.mAutoCut_CutEvery_Selection, nullptr);
}

TEST(Reread, GivesNoSelectionFromAnEmptyArray) {
    PpdBuilder ppd;
    ppd.option("KvCutLabel", "Every", {}, {}).option("KvAutoTapeCut", "Auto", {}, {});
    PanelOnHost setting(ppd.open());
    PanelUnderTest& panel = setting.construct();
    panel.setPDEItems2();
    EXPECT_EQ(panel.mCutEvery_Selection, nullptr);
    EXPECT_EQ(panel.mAutoCut_Selection, nullptr);
    EXPECT_EQ(panel.mAutoCut_CutEvery_Selection, nullptr);
}

TEST(Reread, TakesTheFirstChoiceForAMarkThatIsNotInTheArray) {
    Marked setting;
    PanelUnderTest& panel = *setting.panel;
    // The array was built from the same records; a keyword changed under it stands for a PPD in
    // another state, and one that is not ASCII can never be found.
    ppd_choice_t* marked = ppd::findMarkedChoice(setting.host->ppd.get(), "KvHalfCut");
    std::strcpy(marked->choice, "\xC3\xA9");
    panel.updateMarkedSelections(0x1000);
    EXPECT_EQ(keywordOf(panel.mHalfCut_Selection), QStringLiteral("OFF"));
}

TEST(Reread, ChangesNoControlAndSendsNothing) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    for (int option = CutAtEnd; option < kOptionCount; ++option)
        ppd::markOption(setting.host->ppd.get(), kKeywords[static_cast<std::size_t>(option)], "ON");
    panel.setPDEItems2();
    for (const auto control : kBoxes)
        EXPECT_EQ((panel.*control).state(), 0);
    EXPECT_TRUE(setting.host->sent.empty());
}

struct Notice {
    OptionIndex option;
    const char* choice;
};
constexpr Notice kNotices[] = {
    {CutLabel, "7"}, {CutAtEnd, "ON"},   {Mirror, "ON"},      {AutoCut, "ON"},
    {HalfCut, "ON"}, {ChainPrint, "ON"}, {SpecialTape, "ON"}, {RemoveBlk, "ON"},
};

class ANotice : public testing::TestWithParam<Notice> {};

TEST_P(ANotice, ChangesItsSelectionAndNothingElse) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    panel.setPDEItems2();
    std::array<const PDEChoice*, kOptionCount> before{};
    std::array<int, kOptionCount> states{};
    for (std::size_t i = 0; i < kOptionCount; ++i) {
        before[i] = panel.*kSelections[i];
        states[i] = (panel.*kBoxes[i]).state();
    }
    const PDEChoice* pair = panel.mAutoCut_CutEvery_Selection;
    setting.host->format.choose(QStringLiteral("DC24"));

    panel.PPDOptionKeyValueDidChange(QLatin1String(kKeywords[GetParam().option]),
                                     QLatin1String(GetParam().choice));

    EXPECT_EQ(keywordOf(panel.*kSelections[GetParam().option]), QLatin1String(GetParam().choice));
    for (std::size_t i = 0; i < kOptionCount; ++i) {
        if (i != GetParam().option) {
            EXPECT_EQ(panel.*kSelections[i], before[i]);
        }
        EXPECT_EQ((panel.*kBoxes[i]).state(), states[i]);
    }
    EXPECT_EQ(panel.mAutoCut_CutEvery_Selection, pair);
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("1"));
    // No rule ran, nothing was sent.
    EXPECT_TRUE(panel.mRemoveBlkSpaceChkBx.isEnabled());
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST_P(ANotice, OfAnUnknownChoiceLeavesNoSelection) {
    for (const char* unknown : {"Neither", "on", "", "ON "}) {
        Marked setting;
        PanelUnderTest& panel = *setting.panel;
        panel.setPDEItems2();
        panel.PPDOptionKeyValueDidChange(QLatin1String(kKeywords[GetParam().option]),
                                         QLatin1String(unknown));
        EXPECT_EQ(panel.*kSelections[GetParam().option], nullptr) << unknown;
    }
}

TEST_P(ANotice, WithoutKeyOrChoiceIsIgnored) {
    Marked setting;
    PanelUnderTest& panel = *setting.panel;
    panel.setPDEItems2();
    const PDEChoice* before = panel.*kSelections[GetParam().option];
    panel.PPDOptionKeyValueDidChange(QLatin1String(kKeywords[GetParam().option]), QString());
    panel.PPDOptionKeyValueDidChange(QString(), QStringLiteral("OFF"));
    panel.PPDOptionKeyValueDidChange(QString(), QString());
    EXPECT_EQ(panel.*kSelections[GetParam().option], before);
}

TEST_P(ANotice, OfAnOptionThatThePpdLacksLeavesNoSelection) {
    Marked setting(kAllOptions & ~offer(GetParam().option));
    PanelUnderTest& panel = *setting.panel;
    panel.PPDOptionKeyValueDidChange(QLatin1String(kKeywords[GetParam().option]),
                                     QLatin1String(GetParam().choice));
    EXPECT_EQ(panel.*kSelections[GetParam().option], nullptr);
}

TEST_P(ANotice, OfAKeywordInAnotherCaseIsIgnored) {
    Marked setting;
    PanelUnderTest& panel = *setting.panel;
    panel.setPDEItems2();
    const PDEChoice* before = panel.*kSelections[GetParam().option];
    const QString key = QLatin1String(kKeywords[GetParam().option]);
    for (const QString& other :
         {key.toLower(), key.toUpper(), key + u' ', key.chopped(1), u'*' + key})
        panel.PPDOptionKeyValueDidChange(other, QStringLiteral("OFF"));
    EXPECT_EQ(panel.*kSelections[GetParam().option], before);
}

INSTANTIATE_TEST_SUITE_P(All, ANotice, testing::ValuesIn(kNotices),
                         [](const auto& row) { return std::string(kKeywords[row.param.option]); });

TEST(ANoticeOfAnotherPanelsKeyword, IsIgnored) {
    Marked setting;
    PanelUnderTest& panel = *setting.panel;
    panel.setPDEItems2();
    const QVariantMap before = panel.inspect();
    panel.PPDOptionKeyValueDidChange(QStringLiteral("PageSize"), QStringLiteral("DC24"));
    panel.PPDOptionKeyValueDidChange(QStringLiteral(""), QStringLiteral("ON"));
    EXPECT_EQ(panel.inspect(), before);
}

TEST(ANoticeOfTheCount, ShowsAtTheNextRefreshOnly) {
    PanelOnHost setting(PpdBuilder::rollPrinter().open());
    PanelUnderTest& panel = setting.show();
    panel.PPDOptionKeyValueDidChange(QStringLiteral("KvCutLabel"), QStringLiteral("7"));
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("1"));
    panel.willShow();
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("7"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 7);
}

// Known asymmetries.

TEST(Asymmetry, Bit256RereadsTwoSelections) {
    Marked setting;
    PanelUnderTest& panel = *setting.panel;
    panel.updateMarkedSelections(256 + 2048);
    EXPECT_EQ(keywordOf(panel.mCutEvery_Selection), QStringLiteral("5"));
    EXPECT_EQ(keywordOf(panel.mAutoCut_CutEvery_Selection), QStringLiteral("ON"));
    EXPECT_EQ(keywordOf(panel.mAutoCut_Selection), QStringLiteral("ON"));
    EXPECT_EQ(panel.mMirror_Selection, nullptr);
}

TEST(Asymmetry, Bit256IsGatedByTheCountOptionAlone) {
    Marked withoutCount(kAllOptions & ~offer(CutLabel));
    withoutCount.panel->updateMarkedSelections(256);
    EXPECT_EQ(withoutCount.panel->mAutoCut_CutEvery_Selection, nullptr);

    Marked withoutAutoCut(kAllOptions & ~offer(AutoCut));
    PanelUnderTest& panel = *withoutAutoCut.panel;
    const PDEChoice stale = panel.mMirror_Choices->front();
    panel.mAutoCut_CutEvery_Selection = &stale;
    panel.updateMarkedSelections(256);
    EXPECT_EQ(panel.mAutoCut_CutEvery_Selection, nullptr);
}

TEST(Asymmetry, KvAutoTapeCutNoticesDoNotTouchTheCutEverySelection) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    const PDEChoice* before = panel.mAutoCut_CutEvery_Selection;
    ASSERT_EQ(keywordOf(before), QStringLiteral("OFF"));
    panel.PPDOptionKeyValueDidChange(QStringLiteral("KvAutoTapeCut"), QStringLiteral("ON"));
    EXPECT_EQ(keywordOf(panel.mAutoCut_Selection), QStringLiteral("ON"));
    EXPECT_EQ(panel.mAutoCut_CutEvery_Selection, before);
    panel.PPDOptionKeyValueDidChange(QStringLiteral("KvAutoTapeCut"), QStringLiteral("no such"));
    EXPECT_EQ(panel.mAutoCut_Selection, nullptr);
    EXPECT_EQ(panel.mAutoCut_CutEvery_Selection, before);
}

// Showing the choice of one keyword.

/// A panel of that family whose options are marked, restored from the marks as a dialog does it.
struct Restored : PanelOnHost {
    explicit Restored(std::initializer_list<std::pair<const char*, const char*>> marks,
                      bool isRV = false, bool autoCutShown = true, unsigned offers = kAllOptions)
        : PanelOnHost(printerOffering(offers, isRV, autoCutShown).open()) {
        show();
        for (const auto& [key, choice] : marks)
            EXPECT_TRUE(ppd::markOption(host->ppd.get(), key, choice));
        panel->restoreValuesAndReturnError(nullptr);
        EXPECT_TRUE(host->sent.empty());
    }
    std::int64_t entry() const { return panel->mOptionPopUpButton.selectedTag(); }
};

TEST(ShowChoice, BringsBackMirrorThatARestoreSwitchedOff) {
    Restored setting({{"KvMirror", "ON"}, {"KvHalfCut", "ON"}});
    PanelUnderTest& panel = *setting.panel;
    ASSERT_EQ(panel.mMirrorPrintChkBx.state(), 0) << "the pop-up's entry was applied";
    panel.showChoice(QStringLiteral("KvMirror"));
    EXPECT_EQ(panel.mMirrorPrintChkBx.state(), 1);
    EXPECT_EQ(panel.mHalfCutChkBx.state(), 1);
    EXPECT_EQ(setting.entry(), 6);
    EXPECT_TRUE(setting.host->sent.empty());

    panel.saveValuesAndReturnError(nullptr);
    EXPECT_EQ(markedIn(*setting.host, Mirror), QStringLiteral("ON"));
    EXPECT_EQ(markedIn(*setting.host, HalfCut), QStringLiteral("ON"));
}

TEST(ShowChoice, PointsThePopUpAtTheEntryWithoutApplyingIt) {
    Restored setting({{"KvMirror", "ON"}});
    PanelUnderTest& panel = *setting.panel;
    panel.showChoice(QStringLiteral("KvMirror"));
    ASSERT_EQ(setting.entry(), 4);
    ASSERT_TRUE(ppd::markOption(setting.host->ppd.get(), "KvChainPrint", "ON"));
    panel.showChoice(QStringLiteral("KvChainPrint"));
    EXPECT_EQ(setting.entry(), 5);
    EXPECT_EQ(panel.mChainPrintChkBx.state(), 1);
    EXPECT_EQ(panel.mMirrorPrintChkBx.state(), 1) << "the entry would have switched it off";
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(ShowChoice, SetsEachControlAlone) {
    for (const bool isRV : {false, true}) {
        for (std::size_t option = CutAtEnd; option < kOptionCount; ++option) {
            Restored setting({}, isRV);
            PanelUnderTest& panel = *setting.panel;
            // All marks differ from what is shown, and one of them is asked for.
            for (std::size_t other = CutAtEnd; other < kOptionCount; ++other)
                ppd::markOption(setting.host->ppd.get(), kKeywords[other], "ON");
            panel.showChoice(QLatin1String(kKeywords[option]));
            for (std::size_t other = CutLabel; other < kOptionCount; ++other)
                EXPECT_EQ((panel.*kBoxes[other]).state(), other == option ? 1 : 0)
                    << kKeywords[option] << " and " << kKeywords[other];
            EXPECT_TRUE(setting.host->sent.empty());
        }
    }
}

TEST(ShowChoice, SetsTheCountAndItsTick) {
    Restored setting({{"KvAutoTapeCut", "OFF"}}, true, false);
    PanelUnderTest& panel = *setting.panel;
    ASSERT_EQ(panel.mCutEveryChkBx.state(), 0);
    ppd::markOption(setting.host->ppd.get(), "KvCutLabel", "7");
    ppd::markOption(setting.host->ppd.get(), "KvAutoTapeCut", "ON");
    panel.showChoice(QStringLiteral("KvCutLabel"));
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("7"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 7);
    EXPECT_EQ(panel.mCutEveryChkBx.state(), 1);
    EXPECT_TRUE(panel.mCutEveryTxBx.isEnabled()) << "the rules follow";
    EXPECT_EQ(setting.entry(), 3);
}

TEST(ShowChoice, ShowsAutomaticCutWithoutARowInTheTickOfTheCutEveryBox) {
    Restored without({{"KvAutoTapeCut", "OFF"}}, true, false);
    ASSERT_EQ(without.panel->mCutEveryChkBx.state(), 0);
    ppd::markOption(without.host->ppd.get(), "KvAutoTapeCut", "ON");
    without.panel->showChoice(QStringLiteral("KvAutoTapeCut"));
    EXPECT_EQ(without.panel->mCutEveryChkBx.state(), 1);
    EXPECT_EQ(without.panel->mAutoCutChkBx.state(), 0);

    Restored with({}, true, true);
    ppd::markOption(with.host->ppd.get(), "KvAutoTapeCut", "ON");
    with.panel->showChoice(QStringLiteral("KvAutoTapeCut"));
    EXPECT_EQ(with.panel->mCutEveryChkBx.state(), 0);
    EXPECT_EQ(with.panel->mAutoCutChkBx.state(), 1);
}

TEST(ShowChoice, IgnoresAnUnknownKeyword) {
    Restored setting({{"KvMirror", "ON"}});
    PanelUnderTest& panel = *setting.panel;
    for (const QString& other : {QStringLiteral("PageSize"), QStringLiteral("kvmirror"),
                                 QStringLiteral("*KvMirror"), QStringLiteral(""), QString()})
        panel.showChoice(other);
    EXPECT_EQ(panel.mMirrorPrintChkBx.state(), 0);
}

TEST(ShowChoice, DoesNothingForAnOptionThatThePpdLacks) {
    Restored setting({}, false, true, kAllOptions & ~offer(Mirror));
    PanelUnderTest& panel = *setting.panel;
    panel.mMirrorPrintChkBx.setState(1);
    panel.showChoice(QStringLiteral("KvMirror"));
    EXPECT_EQ(panel.mMirrorPrintChkBx.state(), 1);
    EXPECT_EQ(panel.mMirror_Selection, nullptr);
}

TEST(ShowChoice, NeedsNoView) {
    Marked setting;
    setting.panel->showChoice(QStringLiteral("KvMirror"));
    EXPECT_EQ(keywordOf(setting.panel->mMirror_Selection), QStringLiteral("ON"));
}

} // namespace
} // namespace labelcut::test
