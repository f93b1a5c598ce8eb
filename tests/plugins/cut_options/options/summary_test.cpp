// Tests of the cut-options panel: its share of the dialog's summary.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/plugins/cut_options/options/panel_fixtures.h"

namespace labelcut::test {
namespace {

const QString kOrder = QStringLiteral("Summary Display Order");

struct SummaryRow {
    OptionIndex option;
    const char* fallbackTitle;
};
/// In the order in which the dialog shows them.
constexpr SummaryRow kRows[] = {
    {CutLabel, "Cut every"},       {AutoCut, "Auto cut"},
    {CutAtEnd, "Cut at end"},      {HalfCut, "Half cut"},
    {SpecialTape, "Special tape"}, {ChainPrint, "Chain printing"},
    {Mirror, "Mirror printing"},   {RemoveBlk, "Remove blank space"},
};

/// Each option under its keyword as title; on/off options have a third choice.
PpdBuilder printer(unsigned offers = kAllOptions) {
    PpdBuilder ppd;
    if ((offers & offer(CutLabel)) != 0)
        ppd.option("KvCutLabel", "KvCutLabel", {"1/One", "2/Two", "3/Three"}, "1");
    for (std::size_t option = CutAtEnd; option < kOptionCount; ++option) {
        if ((offers & (1U << option)) != 0)
            ppd.option(kKeywords[option], kKeywords[option], {"OFF/Off", "ON/On", "DEEP/Deep"},
                       "OFF");
    }
    return ppd.size("DC24", 68, 68);
}

/// Selections reread, no view loaded.
struct Summarised : PanelOnHost {
    explicit Summarised(const PpdBuilder& ppd)
        : PanelOnHost(ppd.open()) {
        ppd::markDefaults(host->ppd.get());
        construct().setPDEItems2();
    }
    QVariantMap summary() const { return panel->summaryInfo().value(); }
    QStringList order() const { return summary().value(kOrder).toStringList(); }
    void mark(OptionIndex option, const char* choice) {
        ASSERT_TRUE(ppd::markOption(host->ppd.get(), kKeywords[option], choice));
    }
};

TEST(Summary, OfAPrinterWithoutOptionsIsAnEmptyList) {
    for (const bool hasPpd : {false, true}) {
        PanelOnHost setting(hasPpd ? printer(0).open() : nullptr);
        const QVariantMap summary = setting.construct().summaryInfo().value();
        EXPECT_EQ(summary.size(), 1);
        ASSERT_TRUE(summary.contains(kOrder));
        EXPECT_EQ(summary.value(kOrder).typeId(), QMetaType::QStringList);
        EXPECT_TRUE(summary.value(kOrder).toStringList().isEmpty());
    }
}

TEST(Summary, ListsTheOptionsInItsOwnOrderForEverySet) {
    for (unsigned offers = 0; offers <= kAllOptions; ++offers) {
        Summarised setting(printer(offers));
        QStringList expected;
        for (const SummaryRow& row : kRows) {
            const bool hidden = row.option == AutoCut && (offers & offer(CutLabel)) != 0;
            if ((offers & offer(row.option)) != 0 && !hidden)
                expected.append(QLatin1String(kKeywords[row.option]));
        }
        EXPECT_EQ(setting.order(), expected);
        EXPECT_EQ(setting.summary().size(), expected.size() + 1);
    }
}

class SummaryEntry : public testing::TestWithParam<SummaryRow> {};

TEST_P(SummaryEntry, FollowsItsSelectionNotTheOption) {
    Summarised setting(printer());
    if (GetParam().option == AutoCut)
        setting.panel->mCutEvery_Selection = nullptr;
    const QString title = QLatin1String(kKeywords[GetParam().option]);
    EXPECT_TRUE(setting.order().contains(title));
    (*setting.panel).*kSelections[GetParam().option] = nullptr;
    EXPECT_FALSE(setting.order().contains(title));
    EXPECT_FALSE(setting.summary().contains(title));
}

TEST_P(SummaryEntry, SaysYesOrNoByTheMark) {
    if (GetParam().option == CutLabel)
        return; // the count has values of its own, below
    Summarised setting(printer(offer(GetParam().option)));
    const QString title = QLatin1String(kKeywords[GetParam().option]);
    EXPECT_EQ(setting.summary().value(title), QStringLiteral("No"));
    // The mark counts, not the selection, which still stands on OFF.
    setting.mark(GetParam().option, "ON");
    EXPECT_EQ(setting.summary().value(title), QStringLiteral("Yes"));
    setting.panel->setPDEItems2();
    setting.mark(GetParam().option, "OFF");
    EXPECT_EQ(setting.summary().value(title), QStringLiteral("No"));
}

TEST_P(SummaryEntry, ShowsTheSelectionsTextForAThirdChoiceAndForNoMark) {
    if (GetParam().option == CutLabel)
        return; // below
    Summarised setting(printer(offer(GetParam().option)));
    const QString title = QLatin1String(kKeywords[GetParam().option]);
    setting.mark(GetParam().option, "DEEP");
    // The selection's text, not the marked choice's.
    EXPECT_EQ(setting.summary().value(title), QStringLiteral("Off"));
    setting.panel->setPDEItems2();
    EXPECT_EQ(setting.summary().value(title), QStringLiteral("Deep"));
    ppd::unmarkOption(setting.host->ppd.get(), kKeywords[GetParam().option]);
    EXPECT_EQ(setting.summary().value(title), QStringLiteral("Deep"));
}

TEST_P(SummaryEntry, SaysNoForAMarkOutsideTheArray) {
    if (GetParam().option == CutLabel)
        return; // below
    Summarised setting(printer(offer(GetParam().option)));
    setting.mark(GetParam().option, "ON");
    setting.panel->setPDEItems2();
    // Not ASCII, it equals no keyword.
    std::strcpy(
        ppd::findMarkedChoice(setting.host->ppd.get(), kKeywords[GetParam().option])->choice,
        "\xC3\xA9");
    EXPECT_EQ(setting.summary().value(QLatin1String(kKeywords[GetParam().option])),
              QStringLiteral("No"));
}

TEST_P(SummaryEntry, HasTheFallbackTitleForAnUndecodableText) {
    Summarised setting(printer(offer(GetParam().option)));
    std::strcpy(ppd::findOption(setting.host->ppd.get(), kKeywords[GetParam().option])->text,
                "bad \xFF");
    EXPECT_EQ(setting.order(), QStringList{QLatin1String(GetParam().fallbackTitle)});
}

TEST_P(SummaryEntry, HasALocalisedTitle) {
    Summarised setting(printer(offer(GetParam().option)));
    std::strcpy(ppd::findOption(setting.host->ppd.get(), kKeywords[GetParam().option])->text,
                "RS_Labels");
    EXPECT_EQ(setting.order(), QStringList{QStringLiteral("labels")});
    EXPECT_TRUE(setting.summary().contains(QStringLiteral("labels")));
}

TEST_P(SummaryEntry, HasAnEmptyTitleForAnEmptyText) {
    Summarised setting(printer(offer(GetParam().option)));
    ppd::findOption(setting.host->ppd.get(), kKeywords[GetParam().option])->text[0] = '\0';
    EXPECT_EQ(setting.order(), QStringList{QString()});
    EXPECT_TRUE(setting.summary().contains(QString()));
    EXPECT_FALSE(setting.summary().value(QString()).toString().isEmpty());
}

TEST_P(SummaryEntry, HasAnEmptyValueForAnUndecodableText) {
    Summarised setting(printer(offer(GetParam().option)));
    PanelUnderTest& panel = *setting.panel;
    ppd::unmarkOption(setting.host->ppd.get(), kKeywords[GetParam().option]);
    panel.setPDEItems2();
    ppd_option_t* record = ppd::findOption(setting.host->ppd.get(), kKeywords[GetParam().option]);
    std::strcpy(record->choices[0].text, "\xFF");
    const QVariant value = setting.summary().value(QLatin1String(kKeywords[GetParam().option]));
    EXPECT_EQ(value, QVariant(QString()));
    EXPECT_EQ(value.typeId(), QMetaType::QString);
}

INSTANTIATE_TEST_SUITE_P(All, SummaryEntry, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(kKeywords[row.param.option]); });

// The count.

constexpr unsigned kCountAndCut = offer(CutLabel) | offer(AutoCut);
const QString kCount = QStringLiteral("KvCutLabel");

TEST(SummaryOfTheCount, ReadsWhetherFromAutomaticCutAndTheCountFromTheSelection) {
    Summarised setting(printer(kCountAndCut));
    EXPECT_EQ(setting.summary().value(kCount), QStringLiteral("No"));
    setting.mark(AutoCut, "ON");
    EXPECT_EQ(setting.summary().value(kCount), QStringLiteral("1 labels"));
    // Another count marked is not read until the selection follows.
    setting.mark(CutLabel, "3");
    EXPECT_EQ(setting.summary().value(kCount), QStringLiteral("1 labels"));
    setting.panel->updateMarkedSelections(0x100);
    EXPECT_EQ(setting.summary().value(kCount), QStringLiteral("3 labels"));
    EXPECT_EQ(setting.order(), QStringList{kCount});
}

TEST(SummaryOfTheCount, ShowsTheSelectionsTextForAThirdChoiceNoMarkOrNoAutomaticCut) {
    Summarised setting(printer(kCountAndCut));
    setting.mark(CutLabel, "2");
    setting.panel->setPDEItems2();
    setting.mark(AutoCut, "DEEP");
    EXPECT_EQ(setting.summary().value(kCount), QStringLiteral("Two"));
    ppd::unmarkOption(setting.host->ppd.get(), "KvAutoTapeCut");
    EXPECT_EQ(setting.summary().value(kCount), QStringLiteral("Two"));
    Summarised alone(printer(offer(CutLabel)));
    EXPECT_EQ(alone.summary().value(kCount), QStringLiteral("One"));
}

TEST(SummaryOfTheCount, SaysNoForAnAutomaticCutOutsideTheArray) {
    Summarised setting(printer(kCountAndCut));
    setting.mark(AutoCut, "ON");
    std::strcpy(ppd::findMarkedChoice(setting.host->ppd.get(), "KvAutoTapeCut")->choice,
                "\xC3\xA9");
    EXPECT_EQ(setting.summary().value(kCount), QStringLiteral("No"));
}

TEST(SummaryOfTheCount, ShowsAKeywordThatIsNoNumberAsItStands) {
    PpdBuilder ppd;
    ppd.option("KvCutLabel", "KvCutLabel", {"MANY/Lots"}, "MANY").onOff("KvAutoTapeCut", "ON");
    Summarised setting(ppd);
    EXPECT_EQ(setting.summary().value(kCount), QStringLiteral("MANY labels"));
}

TEST(SummaryOfAutomaticCut, AppearsOnlyWithoutACountSelection) {
    Summarised setting(printer(offer(AutoCut) | offer(Mirror)));
    setting.mark(AutoCut, "ON");
    EXPECT_EQ(setting.summary().value(QStringLiteral("KvAutoTapeCut")), QStringLiteral("Yes"));
    EXPECT_EQ(setting.order(),
              (QStringList{QStringLiteral("KvAutoTapeCut"), QStringLiteral("KvMirror")}));
}

TEST(SummaryOfRemoveBlankSpace, IsLeftOutForAnyTapeStateButZero) {
    Summarised setting(printer());
    const QString title = QStringLiteral("KvRemoveBlkSpace");
    for (const std::int32_t tapeState : {1, -1, 2, 0}) {
        setting.panel->setTapeState(tapeState);
        EXPECT_EQ(setting.order().contains(title), tapeState == 0);
        EXPECT_EQ(setting.summary().contains(title), tapeState == 0);
    }
}

// Titles that meet.

TEST(SummaryTitles, ThatAreEqualKeepTheLaterValueAndBothPlaces) {
    PpdBuilder ppd;
    ppd.onOff("KvHalfCut", "ON", "Same").onOff("KvMirror", "OFF", "Same");
    ppd.onOff("KvChainPrint", "ON", "Other");
    Summarised setting(ppd);
    EXPECT_EQ(setting.order(), (QStringList{QStringLiteral("Same"), QStringLiteral("Other"),
                                            QStringLiteral("Same")}));
    EXPECT_EQ(setting.summary().value(QStringLiteral("Same")), QStringLiteral("No"));
    EXPECT_EQ(setting.summary().size(), 3);
}

TEST(SummaryTitles, LikeTheOrdersOwnKeyGiveWayToTheOrder) {
    PpdBuilder ppd;
    ppd.onOff("KvHalfCut", "ON", "Summary Display Order").onOff("KvMirror", "OFF", "Mirror");
    Summarised setting(ppd);
    EXPECT_EQ(setting.order(), (QStringList{kOrder, QStringLiteral("Mirror")}));
    EXPECT_EQ(setting.summary().size(), 2);
}

TEST(SummaryTitles, OfManyEmptyTextsAllStayInTheOrder) {
    Summarised setting(printer(offer(HalfCut) | offer(Mirror)));
    for (const char* key : {"KvHalfCut", "KvMirror"})
        ppd::findOption(setting.host->ppd.get(), key)->text[0] = '\0';
    EXPECT_EQ(setting.order(), (QStringList{QString(), QString()}));
    EXPECT_EQ(setting.summary().size(), 2);
}

TEST(SummaryTexts, AreTheirKeysWithoutAStringTable) {
    const CutDownBundle bundle({});
    PanelOnHost setting(printer(kCountAndCut | offer(HalfCut)).open(), bundle.root());
    ppd::markDefaults(setting.host->ppd.get());
    PanelUnderTest& panel = setting.construct();
    panel.setPDEItems2();
    ppd::findOption(setting.host->ppd.get(), "KvHalfCut")->text[0] = '\xFF';
    QVariantMap summary = panel.summaryInfo().value();
    EXPECT_EQ(summary.value(QStringLiteral("RS_STitle_HalfCut")), QStringLiteral("RS_STitle_No"));
    ppd::markOption(setting.host->ppd.get(), "KvAutoTapeCut", "ON");
    ppd::markOption(setting.host->ppd.get(), "KvHalfCut", "ON");
    summary = panel.summaryInfo().value();
    EXPECT_EQ(summary.value(kCount), QStringLiteral("1 RS_Labels"));
    EXPECT_EQ(summary.value(QStringLiteral("RS_STitle_HalfCut")), QStringLiteral("RS_STitle_Yes"));
}

TEST(Summary, ChangesNothingAndAsksNoControl) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    const QVariantMap before = panel.inspect();
    const QVariantMap first = panel.summaryInfo().value();
    for (const auto control : kBoxes)
        (panel.*control).setState(1);
    panel.mCutEveryTxBx.setStringValue(QStringLiteral("9"));
    EXPECT_EQ(panel.summaryInfo().value(), first);
    EXPECT_EQ(panel.inspect().value(QStringLiteral("selections")),
              before.value(QStringLiteral("selections")));
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(SummaryWords, AreTheOnesThatTheSummaryUses) {
    Summarised setting(printer());
    const SummaryWords words = setting.panel->summaryWords();
    EXPECT_EQ(words.yes, QStringLiteral("Yes"));
    EXPECT_EQ(words.no, QStringLiteral("No"));
    setting.mark(HalfCut, "ON");
    EXPECT_EQ(setting.summary().value(QStringLiteral("KvHalfCut")), words.yes);
    EXPECT_EQ(setting.summary().value(QStringLiteral("KvMirror")), words.no);
}

// The remark below the panel's view.

TEST(Remark, NamesTheTickedOptionsThatSpecialTapeSendsAsOff) {
    PpdBuilder ppd;
    ppd.attribute("KvAutoCutObjHidden", "False").counts(1, 9, "1").onOff("KvCutAtEnd");
    ppd.onOff("KvMirror").onOff("KvAutoTapeCut", "OFF", "Auto").onOff("KvHalfCut", "OFF", "Half");
    ppd.onOff("KvChainPrint", "OFF", "Chain").onOff("KvSpecialTape", "OFF", "Special");
    PanelOnHost setting(ppd.onOff("KvRemoveBlkSpace").open());
    PanelUnderTest& panel = setting.show();
    for (const auto control : kBoxes)
        (panel.*control).setState(1);
    EXPECT_EQ(panel.remark(),
              QStringLiteral("While “Special” is on, these are sent as off although they are "
                             "ticked: Cut every, Auto, Half, Chain."));
    panel.mAutoCutChkBx.setState(0);
    panel.mHalfCutChkBx.setHidden(true);
    panel.mCutEveryChkBx.setState(0);
    EXPECT_EQ(panel.remark(),
              QStringLiteral("While “Special” is on, these are sent as off although they are "
                             "ticked: Chain."));
}

TEST(Remark, NamesWhatASaveSendsAsOffAndNothingElse) {
    for (unsigned ticks = 0; ticks < 256; ++ticks) {
        PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
        PanelUnderTest& panel = setting.show();
        for (std::size_t option = 0; option < kOptionCount; ++option)
            (panel.*kBoxes[option]).setState((ticks >> option & 1U) != 0 ? 1 : 0);
        panel.saveValuesAndReturnError(nullptr);
        const QString remark = panel.remark();
        const qsizetype colon = remark.indexOf(u':');
        for (const OptionIndex option : {AutoCut, HalfCut, ChainPrint}) {
            const bool ticked = (ticks >> option & 1U) != 0;
            const bool lost = ticked && markedIn(*setting.host, option) == QStringLiteral("OFF");
            EXPECT_EQ(remark.indexOf(box(panel, option).title(), colon + 1) > 0, lost) << ticks;
        }
        for (const OptionIndex option : {CutAtEnd, Mirror, SpecialTape, RemoveBlk})
            EXPECT_LT(remark.indexOf(box(panel, option).title(), colon + 1), 0) << ticks;
    }
}

TEST(Remark, IsEmptyWithNothingTickedOrWithoutSpecialTape) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    EXPECT_TRUE(setting.construct().remark().isEmpty()) << "no view yet";
    PanelUnderTest& panel = setting.show();
    panel.mSpecialTapeChkBx.setState(1);
    panel.mMirrorPrintChkBx.setState(1);
    EXPECT_TRUE(panel.remark().isEmpty());
    panel.mHalfCutChkBx.setState(1);
    EXPECT_FALSE(panel.remark().isEmpty());
    panel.mSpecialTapeChkBx.setHidden(true);
    EXPECT_TRUE(panel.remark().isEmpty());
    panel.mSpecialTapeChkBx.setHidden(false);
    panel.mSpecialTapeChkBx.setState(0);
    EXPECT_TRUE(panel.remark().isEmpty());
}

TEST(Remark, ShowsTitlesAsThePpdHasThem) {
    PpdBuilder ppd;
    ppd.onOff("KvSpecialTape", "OFF", "Cloth %1").onOff("KvHalfCut", "OFF", "Kiss & cut %2");
    PanelOnHost setting(ppd.open());
    PanelUnderTest& panel = setting.show();
    panel.mSpecialTapeChkBx.setState(1);
    panel.mHalfCutChkBx.setState(1);
    EXPECT_EQ(panel.remark(),
              QStringLiteral("While “Cloth %1” is on, these are sent as off although they are "
                             "ticked: Kiss & cut %2."));
}

} // namespace
} // namespace labelcut::test
