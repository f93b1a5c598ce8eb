// Tests of the cut-options panel: user actions, as clicks and keys on real widgets.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <limits>

#include "platform/toolkit/stepper.h"
#include "tests/plugins/cut_options/options/panel_fixtures.h"

namespace labelcut::test {
namespace {

/// KvCutLabel with these counts, automatic cut, both families' rest.
PpdBuilder countPrinter(const QByteArrayList& counts, const QByteArray& defaultChoice) {
    PpdBuilder ppd;
    ppd.attribute("KvTapeType", "RV").option("KvCutLabel", "Every", counts, defaultChoice);
    return ppd.onOff("KvAutoTapeCut", "ON").onOff("KvCutAtEnd");
}

PpdBuilder countPrinter(int first, int last) {
    QByteArrayList counts;
    for (int n = first; n <= last; ++n)
        counts.append(QByteArray::number(n));
    return countPrinter(counts, counts.first());
}

QLineEdit& countField(PanelUnderTest& panel) {
    return *qobject_cast<QLineEdit*>(panel.mCutEveryTxBx.widget());
}
Stepper& countStepper(PanelUnderTest& panel) {
    return *qobject_cast<Stepper*>(panel.mCutEveryStpr.widget());
}

/// The whole text replaced in one edit, as a paste does.
void enter(PanelUnderTest& panel, const QString& text) {
    QLineEdit& field = countField(panel);
    field.selectAll();
    if (text.isEmpty())
        field.del();
    else
        field.insert(text);
}

// Checkboxes.

struct ClickRow {
    OptionIndex box;
    OptionIndex sent;
};
constexpr ClickRow kClicks[] = {
    {CutLabel, AutoCut},        {CutAtEnd, CutAtEnd},   {Mirror, Mirror},
    {AutoCut, AutoCut},         {HalfCut, HalfCut},     {ChainPrint, ChainPrint},
    {SpecialTape, SpecialTape}, {RemoveBlk, RemoveBlk},
};

class Click : public testing::TestWithParam<ClickRow> {};

TEST_P(Click, SendsTheStateAsTheChoiceAndRereadsTheSelection) {
    for (const bool isRV : {false, true}) {
        PanelOnHost setting(printerOffering(kAllOptions, isRV, true).open());
        PanelUnderTest& panel = setting.show();
        Button& control = box(panel, GetParam().box);
        control.setState(0);
        ppd::markOption(setting.host->ppd.get(), kKeywords[GetParam().sent], "OFF");
        for (const char* wanted : {"ON", "OFF"}) {
            checkBox(panel, GetParam().box).click();
            EXPECT_EQ(setting.host->takeSent(),
                      (std::vector<Sent>{{kKeywords[GetParam().sent], QLatin1String(wanted)}}));
            EXPECT_EQ(control.state(), wanted == QByteArray("ON") ? 1 : 0);
            EXPECT_EQ(markedIn(*setting.host, GetParam().sent), QLatin1String(wanted));
            if (GetParam().box == CutLabel) {
                EXPECT_EQ(keywordOf(panel.mAutoCut_CutEvery_Selection), QLatin1String(wanted));
            } else {
                EXPECT_EQ(keywordOf(panel.*kSelections[GetParam().box]), QLatin1String(wanted));
            }
        }
    }
}

TEST_P(Click, RereadsOnlyTheSelectionsOfItsItem) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    // The marks move away behind the panel's back; only the clicked item may notice.
    for (int option = CutAtEnd; option < kOptionCount; ++option)
        ppd::markOption(setting.host->ppd.get(), kKeywords[static_cast<std::size_t>(option)], "ON");
    ppd::markOption(setting.host->ppd.get(), "KvCutLabel", "5");
    std::array<QString, kOptionCount> before;
    for (std::size_t i = 0; i < kSelections.size(); ++i)
        before[i] = keywordOf(panel.*kSelections[i]);

    checkBox(panel, GetParam().box).click();

    for (std::size_t i = 0; i < kSelections.size(); ++i) {
        if (i != GetParam().box) {
            EXPECT_EQ(keywordOf(panel.*kSelections[i]), before[i]) << kKeywords[i];
        }
    }
    if (GetParam().box == CutLabel) {
        EXPECT_EQ(keywordOf(panel.mCutEvery_Selection), QStringLiteral("5"));
    }
}

TEST_P(Click, ShowsTheHostsMarkWhenTheHostDoesNotFollow) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    setting.host->marks = false;
    ppd::markOption(setting.host->ppd.get(), kKeywords[GetParam().sent], "OFF");
    box(panel, GetParam().box).setState(0);
    checkBox(panel, GetParam().box).click();
    EXPECT_EQ(box(panel, GetParam().box).state(), 0);
}

TEST_P(Click, RunsTheRulesAndRedraws) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    panel.mRemoveBlkSpaceChkBx.setEnabled(true);
    setting.host->format.choose(QStringLiteral("DC24"));
    panel.mOptionView->setAccessibleDescription(QStringLiteral("stale"));
    checkBox(panel, GetParam().box).click();
    EXPECT_FALSE(panel.mRemoveBlkSpaceChkBx.isEnabled());
    EXPECT_NE(panel.mOptionView->accessibleDescription(), QStringLiteral("stale"));
}

TEST_P(Click, SendsNothingWhenThePpdLacksTheOption) {
    PanelOnHost setting(printerOffering(kAllOptions & ~offer(GetParam().sent), true, true).open());
    PanelUnderTest& panel = setting.show();
    box(panel, GetParam().box).setEnabled(true);
    box(panel, GetParam().box).setState(0);
    checkBox(panel, GetParam().box).click();
    EXPECT_TRUE(setting.host->takeSent().empty());
}

INSTANTIATE_TEST_SUITE_P(All, Click, testing::ValuesIn(kClicks),
                         [](const auto& row) { return std::string(kBoxNames[row.param.box]); });

TEST(HalfCutClick, MovesPopUpAndPictureToTheMatchingCombination) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    PanelUnderTest& panel = setting.show();
    ASSERT_EQ(panel.mOptionPopUpButton.selectedTag(), 8);
    checkBox(panel, HalfCut).click();
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvHalfCut", "ON"}}));
    EXPECT_EQ(panel.mOptionPopUpButton.selectedTag(), 10);
    EXPECT_EQ(panel.mOptionView->targetImageName(), QStringLiteral("AHCMOnOnOffOff"));
}

TEST(AClick, WithAStateBeyondTheChoicesSendsNothing) {
    PpdBuilder ppd;
    ppd.option("KvHalfCut", "Half", {"OFF"}, "OFF");
    PanelOnHost setting(ppd.open());
    PanelUnderTest& panel = setting.show();
    checkBox(panel, HalfCut).click();
    EXPECT_TRUE(setting.host->takeSent().empty());
    EXPECT_EQ(panel.mHalfCutChkBx.state(), 0);
}

TEST(ChangeOption, OfAMixedBoxSendsNothing) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    for (const int state : {-1, 2, 100}) {
        panel.mHalfCutChkBx.setState(state);
        panel.changeOption(panel.mHalfCutChkBx);
        EXPECT_TRUE(setting.host->takeSent().empty()) << state;
        // The refresh puts the box back to its selection.
        EXPECT_EQ(panel.mHalfCutChkBx.state(), 0) << state;
    }
}

TEST(ChangeOption, OfAThirdChoiceSendsIt) {
    PpdBuilder ppd;
    ppd.option("KvHalfCut", "Half", {"OFF", "ON", "DEEP/Deep"}, "OFF");
    PanelOnHost setting(ppd.open());
    PanelUnderTest& panel = setting.show();
    panel.mHalfCutChkBx.setState(2);
    panel.changeOption(panel.mHalfCutChkBx);
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvHalfCut", "DEEP"}}));
    EXPECT_EQ(panel.mHalfCutChkBx.state(), 2);
}

TEST(ChangeOption, OfAStrangeSenderOnlyRedrawsAndRunsTheRules) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    QCheckBox stranger;
    for (const View& sender : {View(), View(&stranger), View(panel.mCutEveryTxBx.widget())}) {
        setting.host->format.choose(QStringLiteral("DC24"));
        panel.mRemoveBlkSpaceChkBx.setEnabled(true);
        panel.mOptionView->setAccessibleDescription(QStringLiteral("stale"));
        panel.mHalfCutChkBx.setState(-1);
        panel.changeOption(sender);
        EXPECT_TRUE(setting.host->takeSent().empty());
        EXPECT_FALSE(panel.mRemoveBlkSpaceChkBx.isEnabled());
        EXPECT_NE(panel.mOptionView->accessibleDescription(), QStringLiteral("stale"));
        // No refresh came.
        EXPECT_EQ(panel.mHalfCutChkBx.state(), -1);
    }
}

TEST(AKeyboard, TicksABoxAndReachesItByItsShortcut) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    panel.panelView()->show();
    panel.panelView()->activateWindow();
    checkBox(panel, HalfCut).setFocus();
    QTest::keyClick(&checkBox(panel, HalfCut), Qt::Key_Space);
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvHalfCut", "ON"}}));
    constexpr OptionIndex kByShortcut[] = {CutLabel,    AutoCut,    CutAtEnd, HalfCut,
                                           SpecialTape, ChainPrint, Mirror,   RemoveBlk};
    int number = 0;
    for (const OptionIndex option : kByShortcut)
        EXPECT_EQ(checkBox(panel, option).shortcut(),
                  QKeySequence(QStringLiteral("Alt+%1").arg(++number)));
    panel.panelView()->hide();
}

// The pop-up.

TEST(PopUpChoice, ChangesCheckBoxesOnlyAndSendsNothing) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    PanelUnderTest& panel = setting.show();
    auto* popUp = qobject_cast<QComboBox*>(panel.mOptionPopUpButton.widget());
    const int entry = popUp->findData(7, PopUpButton::kTagRole);
    ASSERT_GE(entry, 0);
    popUp->setCurrentIndex(entry);
    Q_EMIT popUp->activated(entry);
    EXPECT_EQ(panel.mAutoCutChkBx.state(), 0);
    EXPECT_EQ(panel.mHalfCutChkBx.state(), 1);
    EXPECT_EQ(panel.mChainPrintChkBx.state(), 1);
    EXPECT_TRUE(setting.host->takeSent().empty());
    EXPECT_EQ(keywordOf(panel.mHalfCut_Selection), QStringLiteral("OFF"));
    EXPECT_EQ(panel.mOptionView->targetImageName(), QStringLiteral("AHCMOffOnOnOff"));
    // The PPD follows at the next save.
    panel.saveValuesAndReturnError(nullptr);
    EXPECT_EQ(markedIn(*setting.host, HalfCut), QStringLiteral("ON"));
}

// The count.

struct CountRow {
    const char* what;
    int first;
    int last;
    const char* entered;
    const char* shown;
};

constexpr CountRow kCounts[] = {
    {"inside", 1, 99, "12", "12"},
    {"smallest", 1, 99, "1", "1"},
    {"largest", 1, 99, "99", "99"},
    {"above", 1, 99, "150", "99"},
    {"one above", 1, 99, "100", "99"},
    {"zero", 1, 99, "0", "1"},
    {"negative", 1, 99, "-5", "1"},
    {"no number", 1, 99, "abc", "1"},
    {"emptied", 1, 99, "", "1"},
    {"digits first", 1, 99, "12abc", "12"},
    {"blanks first", 1, 99, "  7", "7"},
    {"a sign", 1, 99, "+7", "7"},
    {"a fraction", 1, 99, "3.9", "3"},
    {"over-long", 1, 99, "99999999999999999999", "99"},
    {"over-long negative", 1, 99, "-99999999999999999999", "1"},
    {"other digits", 1, 99, "\xD9\xA5", "1"},
    {"leading zeros", 1, 99, "0012", "12"},
    {"below an array from 2", 2, 10, "1", "2"},
    {"emptied, an array from 2", 2, 10, "", "2"},
    {"above an array to 10", 2, 10, "11", "10"},
    {"inside an array from 2", 2, 10, "3", "3"},
    {"one choice", 5, 5, "9", "5"},
};

class Count : public testing::TestWithParam<CountRow> {
protected:
    void expectShown(PanelOnHost& setting) {
        PanelUnderTest& panel = *setting.panel;
        const QString shown = QString::fromUtf8(GetParam().shown);
        EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), shown);
        EXPECT_EQ(panel.mCutEveryStpr.intValue(), shown.toInt());
        EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", shown}}));
        EXPECT_EQ(markedIn(*setting.host, CutLabel), shown);
        EXPECT_EQ(keywordOf(panel.mCutEvery_Selection), shown);
    }
};

TEST_P(Count, EnteredInTheFieldIsKeptWithinItsBounds) {
    PanelOnHost setting(countPrinter(GetParam().first, GetParam().last).open());
    setting.show();
    enter(*setting.panel, QString::fromUtf8(GetParam().entered));
    expectShown(setting);
    EXPECT_EQ(countField(*setting.panel).cursorPosition(),
              countField(*setting.panel).text().size());
}

TEST_P(Count, SteppedIsKeptWithinItsBounds) {
    PanelOnHost setting(countPrinter(GetParam().first, GetParam().last).open());
    setting.show();
    const QString entered = QString::fromUtf8(GetParam().entered);
    bool isNumber = false;
    const int value = entered.toInt(&isNumber);
    countStepper(*setting.panel).stepTo(isNumber ? value : std::numeric_limits<int>::min());
    if (isNumber || QByteArray(GetParam().shown) == QByteArray::number(GetParam().first))
        expectShown(setting);
    else {
        EXPECT_EQ(setting.panel->mCutEveryStpr.intValue(), GetParam().first);
    }
}

INSTANTIATE_TEST_SUITE_P(All, Count, testing::ValuesIn(kCounts), [](const auto& row) {
    std::string name = row.param.what;
    std::erase_if(name, [](char c) { return c == ',' || c == '-'; });
    std::ranges::replace(name, ' ', '_');
    return name;
});

TEST(TypedCount, IsSentWithEveryKey) {
    PanelOnHost setting(countPrinter(1, 99).open());
    PanelUnderTest& panel = setting.show();
    countField(panel).selectAll();
    QTest::keyClicks(&countField(panel), QStringLiteral("12"));
    EXPECT_EQ(setting.host->takeSent(),
              (std::vector<Sent>{{"KvCutLabel", "1"}, {"KvCutLabel", "12"}}));
    QTest::keyClicks(&countField(panel), QStringLiteral("0"));
    EXPECT_EQ(countField(panel).text(), QStringLiteral("99"));
    QTest::keyClick(&countField(panel), Qt::Key_Backspace);
    QTest::keyClick(&countField(panel), Qt::Key_Backspace);
    // Emptied, it shows the smallest count straight away.
    EXPECT_EQ(countField(panel).text(), QStringLiteral("1"));
    EXPECT_EQ(setting.host->takeSent(),
              (std::vector<Sent>{{"KvCutLabel", "99"}, {"KvCutLabel", "9"}, {"KvCutLabel", "1"}}));
}

TEST(TypedCount, IsSentAgainByReturn) {
    PanelOnHost setting(countPrinter(1, 99).open());
    PanelUnderTest& panel = setting.show();
    QTest::keyClick(&countField(panel), Qt::Key_Return);
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", "1"}}));
}

TEST(TypedCount, OfAnotherFieldIsIgnored) {
    PanelOnHost setting(countPrinter(1, 99).open());
    PanelUnderTest& panel = setting.show();
    QLineEdit other(QStringLiteral("7"));
    panel.controlTextDidChange(View(&other));
    panel.controlTextDidChange(View());
    EXPECT_TRUE(setting.host->takeSent().empty());
    EXPECT_EQ(countField(panel).text(), QStringLiteral("1"));
}

TEST(TypedCount, OfAnotherFieldIsIgnoredWhereZeroIsACountToo) {
    PanelOnHost setting(countPrinter(0, 5).open());
    PanelUnderTest& panel = setting.show();
    enter(panel, QStringLiteral("3"));
    setting.host->sent.clear();
    QLineEdit other(QStringLiteral("7"));
    panel.controlTextDidChange(View(&other));
    EXPECT_TRUE(setting.host->takeSent().empty());
    EXPECT_EQ(countField(panel).text(), QStringLiteral("3"));
}

TEST(TypedCount, FollowsTheMarkWhenTheHostDoesNot) {
    PanelOnHost setting(countPrinter(1, 99).open());
    PanelUnderTest& panel = setting.show();
    setting.host->marks = false;
    enter(panel, QStringLiteral("12"));
    EXPECT_EQ(countField(panel).text(), QStringLiteral("1"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 1);
}

TEST(CountArray, NonConsecutiveIsIndexedFromItsFirstCount) {
    // The index is the count less the first choice's number; gaps are not looked for.
    PanelOnHost setting(countPrinter({"1", "2", "5", "10"}, "1").open());
    PanelUnderTest& panel = setting.show();
    enter(panel, QStringLiteral("3"));
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", "5"}}));
    EXPECT_EQ(countField(panel).text(), QStringLiteral("5"));
    // An index beyond the array sends nothing, and the selection's number comes back.
    enter(panel, QStringLiteral("9"));
    EXPECT_TRUE(setting.host->takeSent().empty());
    EXPECT_EQ(countField(panel).text(), QStringLiteral("5"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 5);
}

TEST(CountArray, DescendingKeepsToItsLastCount) {
    PanelOnHost setting(countPrinter({"5", "4", "3"}, "5").open());
    PanelUnderTest& panel = setting.show();
    // Bounds are the first's and the last's numbers, whatever their order: 4 is below the first.
    enter(panel, QStringLiteral("4"));
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", "5"}}));
    // 7 is not, and comes down to the last, an index below the array.
    enter(panel, QStringLiteral("7"));
    EXPECT_TRUE(setting.host->takeSent().empty());
}

TEST(CountArray, OfNoNumbersHasTheBoundsZero) {
    PanelOnHost setting(countPrinter({"FEW", "MANY"}, "FEW").open());
    PanelUnderTest& panel = setting.show();
    enter(panel, QStringLiteral("5"));
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", "FEW"}}));
    EXPECT_EQ(countField(panel).text(), QStringLiteral("FEW"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 0);
}

TEST(CountArray, EmptyOrAbsentBoundsTheFieldBy1And99AndSendsNothing) {
    PpdBuilder empty;
    empty.option("KvCutLabel", "Every", {}, {});
    for (const bool absent : {false, true}) {
        PanelOnHost setting(absent ? printerOffering(offer(HalfCut), true, false).open()
                                   : empty.open());
        PanelUnderTest& panel = setting.show();
        ASSERT_EQ(panel.mCutEvery_Choices.has_value(), !absent);
        struct {
            int stepped;
            int shown;
        } constexpr kSteps[] = {{150, 99}, {0, 1}, {-7, 1}, {42, 42}};
        for (const auto& step : kSteps) {
            countStepper(panel).stepTo(step.stepped);
            EXPECT_EQ(panel.mCutEveryStpr.intValue(), step.shown);
            EXPECT_EQ(countField(panel).text(), QString::number(step.shown));
        }
        enter(panel, QStringLiteral("1000"));
        EXPECT_EQ(countField(panel).text(), QStringLiteral("99"));
        EXPECT_TRUE(setting.host->takeSent().empty());
    }
}

TEST(CountArray, AtTheEndsOfTheNumberRangeSendsNothingOutside) {
    PanelOnHost setting(countPrinter({"-2147483648", "2147483647"}, "-2147483648").open());
    PanelUnderTest& panel = setting.show();
    countStepper(panel).stepTo(std::numeric_limits<int>::max());
    EXPECT_TRUE(setting.host->takeSent().empty());
    countStepper(panel).stepTo(std::numeric_limits<int>::min() + 1);
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", "2147483647"}}));
}

TEST(ChangeCutEveryValue, OfAStrangeSenderSendsNothing) {
    for (const int first : {1, 2}) {
        PanelOnHost setting(countPrinter(first, 10).open());
        PanelUnderTest& panel = setting.show();
        QLineEdit stranger(QStringLiteral("7"));
        panel.changeCutEveryValue(View(&stranger));
        panel.changeCutEveryValue(View());
        EXPECT_TRUE(setting.host->takeSent().empty());
        EXPECT_EQ(countField(panel).text(), QString::number(first));
    }
}

TEST(ChangeCutEveryValue, OfAStrangeSenderSendsTheChoiceForZeroWhereThereIsOne) {
    PanelOnHost setting(countPrinter(0, 5).open());
    PanelUnderTest& panel = setting.show();
    enter(panel, QStringLiteral("3"));
    setting.host->sent.clear();
    panel.changeCutEveryValue(View());
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", "0"}}));
}

// Known asymmetries.

TEST(Asymmetry, CutEverySelectsAutomaticTapeCut) {
    PanelOnHost setting(countPrinter(1, 99).open());
    PanelUnderTest& panel = setting.show();
    ASSERT_EQ(panel.mCutEveryChkBx.state(), 1);
    checkBox(panel, CutLabel).click();
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvAutoTapeCut", "OFF"}}));
    EXPECT_EQ(markedIn(*setting.host, CutLabel), QStringLiteral("1"));
    EXPECT_FALSE(panel.mCutEveryTxBx.isEnabled());
    EXPECT_FALSE(panel.mCutEveryStpr.isEnabled());
}

TEST(Asymmetry, CutEveryCannotBeTickedWithoutAutomaticTapeCut) {
    PanelOnHost setting(printerOffering(offer(CutLabel), true, false).open());
    PanelUnderTest& panel = setting.show();
    checkBox(panel, CutLabel).click();
    EXPECT_TRUE(setting.host->takeSent().empty());
    EXPECT_EQ(panel.mCutEveryChkBx.state(), 0);
}

TEST(Asymmetry, CutEveryAndAutoCutBoxesSendTheSameKeywordButRereadTheirOwnSelection) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    checkBox(panel, CutLabel).click();
    EXPECT_EQ(keywordOf(panel.mAutoCut_CutEvery_Selection), QStringLiteral("ON"));
    EXPECT_EQ(keywordOf(panel.mAutoCut_Selection), QStringLiteral("OFF"));
    EXPECT_EQ(panel.mAutoCutChkBx.state(), 0);
    checkBox(panel, AutoCut).click();
    EXPECT_EQ(keywordOf(panel.mAutoCut_Selection), QStringLiteral("ON"));
}

} // namespace
} // namespace labelcut::test
