// Tests of the cut-options panel: controls that follow the selections, and the combination pop-up.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <cstring>

#include "tests/plugins/cut_options/options/panel_fixtures.h"

namespace labelcut::test {
namespace {

constexpr std::int32_t kPopUpItem = 0x40000;

/// Three choices for every option, so that a third position can be selected.
PpdBuilder threeChoicePrinter(bool isRV) {
    PpdBuilder ppd;
    ppd.attribute("KvTapeType", isRV ? "RV" : "SG").attribute("KvAutoCutObjHidden", "False");
    ppd.counts(1, 20, "1");
    for (int option = CutAtEnd; option < kOptionCount; ++option)
        ppd.option(kKeywords[static_cast<std::size_t>(option)], "Text", {"OFF", "ON", "THIRD"},
                   "OFF");
    return ppd.size("DC24", 68, 68);
}

class RefreshOf : public testing::TestWithParam<OptionIndex> {
protected:
    std::int32_t item() const { return static_cast<std::int32_t>(kItems[GetParam()]); }
};

TEST_P(RefreshOf, CopiesThePositionOfTheSelection) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    PanelUnderTest& panel = setting.show();
    for (const int start : {0, 1, -1, 2}) {
        for (const std::size_t position : {0U, 1U, 2U}) {
            box(panel, GetParam()).setState(start);
            panel.*kSelections[GetParam()] = &(panel.*kChoices[GetParam()])->at(position);
            panel.updateUIItem(item());
            EXPECT_EQ(box(panel, GetParam()).state(), static_cast<int>(position));
        }
    }
}

TEST_P(RefreshOf, LeavesTheBoxForAnAbsentOrForeignSelection) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    PanelUnderTest& panel = setting.show();
    // An equal choice that is not an element of the array is a foreign one.
    const PDEChoice twin = (panel.*kChoices[GetParam()])->at(1);
    for (const PDEChoice* selection : {static_cast<const PDEChoice*>(nullptr), &twin}) {
        for (const int start : {0, 1, -1, 2}) {
            box(panel, GetParam()).setState(start);
            panel.*kSelections[GetParam()] = selection;
            panel.updateUIItem(item());
            EXPECT_EQ(box(panel, GetParam()).state(), start);
        }
    }
    panel.*kSelections[GetParam()] = nullptr;
}

TEST_P(RefreshOf, LeavesTheBoxWithoutChoices) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    PanelUnderTest& panel = setting.show();
    const PDEChoice kept = (panel.*kChoices[GetParam()])->at(0);
    (panel.*kChoices[GetParam()]).reset();
    panel.*kSelections[GetParam()] = &kept;
    box(panel, GetParam()).setState(1);
    panel.updateUIItem(item());
    EXPECT_EQ(box(panel, GetParam()).state(), 1);
    panel.*kSelections[GetParam()] = nullptr;
}

TEST_P(RefreshOf, LeavesEveryOtherBox) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    PanelUnderTest& panel = setting.show();
    for (std::size_t i = 0; i < kOptionCount; ++i) {
        panel.*kSelections[i] = &(panel.*kChoices[i])->at(1);
        (panel.*kBoxes[i]).setState(0);
    }
    panel.mAutoCut_CutEvery_Selection = &panel.mAutoCut_Choices->at(1);
    panel.updateUIItem(item());
    for (std::size_t i = 0; i < kOptionCount; ++i)
        EXPECT_EQ((panel.*kBoxes[i]).state(), i == GetParam() ? 1 : 0) << kKeywords[i];
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("1"));
}

TEST_P(RefreshOf, EndsWithPopUpRulesAndRedraw) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    PanelUnderTest& panel = setting.show();
    for (const auto selection : kSelections)
        panel.*selection = nullptr;
    panel.mOptionPopUpButton.selectItemWithTag(11);
    panel.mRemoveBlkSpaceChkBx.setEnabled(true);
    setting.host->format.choose(QStringLiteral("DC24"));
    panel.mOptionView->setAccessibleDescription(QStringLiteral("stale"));
    panel.updateUIItem(item());
    EXPECT_EQ(panel.mOptionPopUpButton.selectedTag(), 4);
    EXPECT_FALSE(panel.mRemoveBlkSpaceChkBx.isEnabled());
    EXPECT_NE(panel.mOptionView->accessibleDescription(), QStringLiteral("stale"));
    EXPECT_TRUE(setting.host->sent.empty());
}

INSTANTIATE_TEST_SUITE_P(OnOff, RefreshOf,
                         testing::Values(CutAtEnd, Mirror, AutoCut, HalfCut, ChainPrint,
                                         SpecialTape, RemoveBlk),
                         [](const auto& row) { return std::string(kBoxNames[row.param]); });

TEST(RefreshOfRemoveBlankSpace, KeepsADisabledBox) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    PanelUnderTest& panel = setting.show();
    panel.mRemoveBlkSpace_Selection = &panel.mRemoveBlkSpace_Choices->at(1);
    panel.mRemoveBlkSpaceChkBx.setState(0);
    panel.mRemoveBlkSpaceChkBx.setEnabled(false);
    panel.updateUIItem(0x10000);
    EXPECT_EQ(panel.mRemoveBlkSpaceChkBx.state(), 0);
    // The rules have enabled it by now, so the next refresh reaches it.
    panel.updateUIItem(0x10000);
    EXPECT_EQ(panel.mRemoveBlkSpaceChkBx.state(), 1);
}

TEST(RefreshOfOthers, ReachesDisabledBoxes) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    PanelUnderTest& panel = setting.show();
    for (const OptionIndex option : {CutAtEnd, Mirror, AutoCut, HalfCut, ChainPrint, SpecialTape}) {
        panel.*kSelections[option] = &(panel.*kChoices[option])->at(1);
        box(panel, option).setState(0);
        box(panel, option).setEnabled(false);
        panel.updateUIItem(static_cast<std::int32_t>(kItems[option]));
        EXPECT_EQ(box(panel, option).state(), 1);
    }
}

TEST(RefreshOfTheCount, ShowsTheSelectedCountAndTheAutomaticCut) {
    PanelOnHost setting(threeChoicePrinter(true).open());
    PanelUnderTest& panel = setting.show();
    for (const std::size_t position : {0U, 1U, 2U}) {
        panel.mCutEvery_Selection = &panel.mCutEvery_Choices->at(11);
        panel.mAutoCut_CutEvery_Selection = &panel.mAutoCut_Choices->at(position);
        panel.mCutEveryTxBx.setStringValue(QStringLiteral("x"));
        panel.mCutEveryStpr.setIntValue(0);
        panel.updateUIItem(0x100);
        EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("12"));
        EXPECT_EQ(panel.mCutEveryStpr.intValue(), 12);
        EXPECT_EQ(panel.mCutEveryChkBx.state(), static_cast<int>(position));
    }
}

TEST(RefreshOfTheCount, DoesNothingWithoutACountSelection) {
    PanelOnHost setting(threeChoicePrinter(true).open());
    PanelUnderTest& panel = setting.show();
    panel.mCutEvery_Selection = nullptr;
    panel.mAutoCut_CutEvery_Selection = &panel.mAutoCut_Choices->at(1);
    panel.mCutEveryTxBx.setStringValue(QStringLiteral("x"));
    panel.mCutEveryChkBx.setState(0);
    panel.updateUIItem(0x100);
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("x"));
    EXPECT_EQ(panel.mCutEveryChkBx.state(), 0);
}

TEST(RefreshOfTheCount, SetsTheTickEvenForAForeignCount) {
    PanelOnHost setting(threeChoicePrinter(true).open());
    PanelUnderTest& panel = setting.show();
    const PDEChoice foreign = panel.mCutEvery_Choices->at(4);
    panel.mCutEvery_Selection = &foreign;
    panel.mAutoCut_CutEvery_Selection = &panel.mAutoCut_Choices->at(1);
    panel.mCutEveryTxBx.setStringValue(QStringLiteral("x"));
    panel.mCutEveryStpr.setIntValue(3);
    panel.mCutEveryChkBx.setState(0);
    panel.updateUIItem(0x100);
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("x"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 3);
    EXPECT_EQ(panel.mCutEveryChkBx.state(), 1);
    panel.mCutEvery_Selection = nullptr;
}

TEST(RefreshOfTheCount, KeepsTheTickForAnAbsentOrForeignAutomaticCut) {
    PanelOnHost setting(threeChoicePrinter(true).open());
    PanelUnderTest& panel = setting.show();
    const PDEChoice foreign = panel.mAutoCut_Choices->at(0);
    for (const PDEChoice* selection : {static_cast<const PDEChoice*>(nullptr), &foreign}) {
        panel.mCutEvery_Selection = &panel.mCutEvery_Choices->at(4);
        panel.mAutoCut_CutEvery_Selection = selection;
        panel.mCutEveryChkBx.setState(1);
        panel.updateUIItem(0x100);
        EXPECT_EQ(panel.mCutEveryChkBx.state(), 1);
        EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("5"));
    }
    panel.mAutoCut_CutEvery_Selection = nullptr;
}

TEST(RefreshOfTheCount, ShowsAKeywordThatIsNoNumberWithTheStepperAt0) {
    PpdBuilder ppd;
    ppd.option("KvCutLabel", "Every", {"1", "MANY", "07x"}, "1").onOff("KvAutoTapeCut", "ON");
    PanelOnHost setting(ppd.open());
    PanelUnderTest& panel = setting.show();
    panel.mCutEvery_Selection = &panel.mCutEvery_Choices->at(1);
    panel.updateUIItem(0x100);
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("MANY"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 0);
    panel.mCutEvery_Selection = &panel.mCutEvery_Choices->at(2);
    panel.updateUIItem(0x100);
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 7);
}

TEST(RefreshOfTheCount, KeepsFieldAndStepperForAnUndecodableKeyword) {
    PanelOnHost setting(threeChoicePrinter(true).open());
    PanelUnderTest& panel = setting.show();
    panel.mCutEvery_Selection = &panel.mCutEvery_Choices->at(4);
    std::strcpy(panel.mCutEvery_Option->choices[4].choice, "\xFF");
    panel.updateUIItem(0x100);
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("1"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 1);
}

// Masks.

TEST(UpdateUIItem, TakesSeveralBitsAtOnce) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    PanelUnderTest& panel = setting.show();
    for (unsigned subset = 0; subset < 256; ++subset) {
        std::int32_t mask = static_cast<std::int32_t>(0x8000U | 0x80000000U | 0xFFU);
        panel.mRemoveBlkSpaceChkBx.setEnabled(true);
        panel.mAutoCut_CutEvery_Selection = &panel.mAutoCut_Choices->at(1);
        for (std::size_t i = 0; i < kOptionCount; ++i) {
            mask |= (subset >> i & 1U) != 0 ? static_cast<std::int32_t>(kItems[i]) : 0;
            (panel.*kBoxes[i]).setState(0);
            panel.*kSelections[i] = &(panel.*kChoices[i])->at(1);
        }
        panel.updateUIItem(mask);
        for (std::size_t i = 0; i < kOptionCount; ++i)
            ASSERT_EQ((panel.*kBoxes[i]).state(), (subset >> i & 1U) != 0 ? 1 : 0) << subset;
    }
}

TEST(UpdateUIItem, WithoutAKnownBitOnlyPointsThePopUpAtTheBoxes) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    PanelUnderTest& panel = setting.show();
    panel.mHalfCutChkBx.setState(1);
    panel.mOptionPopUpButton.selectItemWithTag(11);
    panel.updateUIItem(0x8000);
    EXPECT_EQ(panel.mHalfCutChkBx.state(), 1);
    EXPECT_EQ(panel.mOptionPopUpButton.selectedTag(), 6);
}

TEST(UpdateUIItem, WithThePopUpBitIgnoresAllOthers) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    PanelUnderTest& panel = setting.show();
    panel.mOptionPopUpButton.selectItemWithTag(4);
    panel.mCutEnd_Selection = &panel.mCutEnd_Choices->at(1);
    panel.mCutAndEndChkBx.setState(0);
    panel.updateUIItem(kPopUpItem | 0x200 | 0x1000);
    EXPECT_EQ(panel.mCutAndEndChkBx.state(), 0);
    EXPECT_EQ(panel.mOptionPopUpButton.selectedTag(), 4);
}

// The pop-up's entries applied to the checkboxes.

struct Entry {
    int tag;
    bool isRV;
    /// Wanted states, or kKept.
    int cutEvery, cutAtEnd, autoCut, halfCut, chainPrint, specialTape;
};
constexpr int kKept = -9;
constexpr Entry kEntries[] = {
    {1, true, 0, 0, kKept, kKept, kKept, kKept}, {2, true, 0, 1, kKept, kKept, kKept, kKept},
    {3, true, 1, 0, kKept, kKept, kKept, kKept}, {4, false, kKept, kKept, 0, 0, 0, 0},
    {5, false, kKept, kKept, 0, 0, 1, 0},        {6, false, kKept, kKept, 0, 1, 0, 0},
    {7, false, kKept, kKept, 0, 1, 1, 0},        {8, false, kKept, kKept, 1, 0, 0, 0},
    {9, false, kKept, kKept, 1, 0, 1, 0},        {10, false, kKept, kKept, 1, 1, 0, 0},
    {11, false, kKept, kKept, 1, 1, 1, 0},       {12, false, kKept, kKept, kKept, kKept, kKept, 1},
};

class PopUpEntry : public testing::TestWithParam<Entry> {};

TEST_P(PopUpEntry, SetsItsStatesFromAnyStart) {
    const Entry& entry = GetParam();
    PanelOnHost setting(threeChoicePrinter(entry.isRV).open());
    PanelUnderTest& panel = setting.show();
    const int wanted[kOptionCount] = {entry.cutEvery,    entry.cutAtEnd, 0,
                                      entry.autoCut,     entry.halfCut,  entry.chainPrint,
                                      entry.specialTape, kKept};
    for (unsigned start = 0; start < 256 * 3; ++start) {
        std::array<int, kOptionCount> states{};
        for (std::size_t i = 0; i < kOptionCount; ++i) {
            states[i] = (start >> i & 1U) != 0 ? 1 : 0;
            if (start >= 256)
                states[i] = (start >> i & 1U) != 0 ? (start >= 512 ? 2 : -1) : 1;
            (panel.*kBoxes[i]).setState(states[i]);
        }
        panel.mOptionPopUpButton.selectItemWithTag(entry.tag);
        ASSERT_EQ(panel.mOptionPopUpButton.selectedTag(), entry.tag);
        panel.updateUIItem(kPopUpItem);
        for (std::size_t i = 0; i < kOptionCount; ++i)
            ASSERT_EQ((panel.*kBoxes[i]).state(), wanted[i] == kKept ? states[i] : wanted[i])
                << kBoxNames[i] << " from " << start;
        ASSERT_EQ(panel.mOptionPopUpButton.selectedTag(), entry.tag);
    }
}

TEST_P(PopUpEntry, TouchesNoSelectionNoCountAndNoMark) {
    const Entry& entry = GetParam();
    PanelOnHost setting(threeChoicePrinter(entry.isRV).open());
    PanelUnderTest& panel = setting.show();
    const QVariant before = panel.inspect().value(QStringLiteral("selections"));
    panel.mCutEveryTxBx.setStringValue(QStringLiteral("x"));
    panel.mCutEveryStpr.setIntValue(33);
    panel.mOptionPopUpButton.selectItemWithTag(entry.tag);
    panel.updateUIItem(kPopUpItem);
    EXPECT_EQ(panel.inspect().value(QStringLiteral("selections")), before);
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("x"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 33);
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST_P(PopUpEntry, RunsTheRulesAndRedraws) {
    const Entry& entry = GetParam();
    PanelOnHost setting(threeChoicePrinter(entry.isRV).open());
    PanelUnderTest& panel = setting.show();
    panel.mOptionPopUpButton.selectItemWithTag(entry.tag);
    setting.host->format.choose(QStringLiteral("DC24"));
    panel.mOptionView->setAccessibleDescription(QStringLiteral("stale"));
    panel.updateUIItem(kPopUpItem);
    EXPECT_FALSE(panel.mRemoveBlkSpaceChkBx.isEnabled());
    EXPECT_EQ(panel.mHalfCutChkBx.isEnabled(), entry.tag != 12);
    EXPECT_NE(panel.mOptionView->accessibleDescription(), QStringLiteral("stale"));
}

INSTANTIATE_TEST_SUITE_P(Tags, PopUpEntry, testing::ValuesIn(kEntries),
                         [](const auto& row) { return "tag" + std::to_string(row.param.tag); });

TEST(PopUpWithAnUnknownTag, SetsNothingButRunsTheRulesAndRedraws) {
    for (const int tag : {0, -1, 13, 100}) {
        PanelOnHost setting(threeChoicePrinter(false).open());
        PanelUnderTest& panel = setting.show();
        auto* popUp = qobject_cast<QComboBox*>(panel.mOptionPopUpButton.widget());
        popUp->setItemData(popUp->currentIndex(), tag, PopUpButton::kTagRole);
        for (const auto control : kBoxes)
            (panel.*control).setState(1);
        setting.host->format.choose(QStringLiteral("DC24"));
        panel.mOptionView->setAccessibleDescription(QStringLiteral("stale"));
        panel.updateUIItem(kPopUpItem);
        for (const auto control : kBoxes)
            EXPECT_EQ((panel.*control).state(), 1) << tag;
        EXPECT_FALSE(panel.mRemoveBlkSpaceChkBx.isEnabled());
        EXPECT_NE(panel.mOptionView->accessibleDescription(), QStringLiteral("stale"));
    }
}

TEST(PopUpWithNothingSelected, SetsNothing) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    PanelUnderTest& panel = setting.show();
    qobject_cast<QComboBox*>(panel.mOptionPopUpButton.widget())->setCurrentIndex(-1);
    panel.mMirrorPrintChkBx.setState(1);
    panel.updateUIItem(kPopUpItem);
    EXPECT_EQ(panel.mMirrorPrintChkBx.state(), 1);
}

// The entry that matches the checkboxes.

struct Shown {
    int state = 0;
    bool hidden = false;
    bool isOn() const { return !hidden && state == 1; }
};
constexpr Shown kWays[] = {{0, false}, {1, false}, {-1, false}, {2, false}, {1, true}};

std::int64_t wantedTag(const std::array<Shown, kOptionCount>& b, bool isRV) {
    const bool special = b[SpecialTape].isOn();
    const bool every = !special && b[CutLabel].isOn();
    const bool half = !special && b[HalfCut].isOn();
    const bool chain = !special && b[ChainPrint].isOn();
    const bool cut = (!special && b[AutoCut].isOn()) || every;
    if (isRV) {
        if (cut)
            return 3;
        return b[CutAtEnd].isOn() ? 2 : 1;
    }
    if (special)
        return 12;
    if (!cut && !half && !chain)
        return 4;
    if (!cut && !half)
        return 5;
    if (!cut && !chain)
        return 6;
    if (!cut)
        return 7;
    if (!half && !chain)
        return 8;
    if (!half)
        return 9;
    return chain ? 11 : 10;
}

TEST(TargetTag, AgreesWithTheTableOverAllStatesAndHiding) {
    for (const bool isRV : {false, true}) {
        PanelOnHost setting(threeChoicePrinter(isRV).open());
        PanelUnderTest& panel = setting.load();
        // Mirror and remove blank space are walked over two ways only: they must never matter.
        constexpr OptionIndex kWalked[] = {CutLabel, CutAtEnd,   AutoCut,
                                           HalfCut,  ChainPrint, SpecialTape};
        for (int n = 0; n < 5 * 5 * 5 * 5 * 5 * 5; ++n) {
            std::array<Shown, kOptionCount> boxes{};
            int rest = n;
            for (const OptionIndex option : kWalked) {
                boxes[option] = kWays[rest % 5];
                rest /= 5;
            }
            boxes[Mirror].state = boxes[RemoveBlk].state = n % 2;
            for (std::size_t i = 0; i < kOptionCount; ++i) {
                (panel.*kBoxes[i]).setState(boxes[i].state);
                (panel.*kBoxes[i]).setHidden(boxes[i].hidden);
            }
            ASSERT_EQ(panel.targetPopUpButtonTag(), wantedTag(boxes, isRV)) << n;
        }
    }
}

TEST(TargetTag, CountsAbsentBoxesAsOff) {
    PanelOnHost roll(threeChoicePrinter(true).open());
    EXPECT_EQ(roll.construct().targetPopUpButtonTag(), 1);
    PanelOnHost tape(threeChoicePrinter(false).open());
    EXPECT_EQ(tape.construct().targetPopUpButtonTag(), 4);
    PanelOnHost none(nullptr);
    EXPECT_EQ(none.construct().targetPopUpButtonTag(), 4);
}

TEST(PopUpSelection, StaysWhereItIsWhenTheMatchingEntryIsGone) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    PanelUnderTest& panel = setting.show();
    auto* popUp = qobject_cast<QComboBox*>(panel.mOptionPopUpButton.widget());
    popUp->removeItem(popUp->findData(6, PopUpButton::kTagRole));
    panel.mOptionPopUpButton.selectItemWithTag(9);
    panel.mAutoCutChkBx.setState(0);
    panel.mHalfCutChkBx.setState(1);
    panel.updateUIItem(0);
    EXPECT_EQ(panel.targetPopUpButtonTag(), 6);
    EXPECT_EQ(panel.mOptionPopUpButton.selectedTag(), 9);
}

// Full refresh.

class CountingPanel : public PanelUnderTest {
public:
    std::vector<std::int32_t> refreshed;
    std::vector<std::uint32_t> reread;
    void updateUIItem(std::int32_t mask) override {
        refreshed.push_back(mask);
        PanelUnderTest::updateUIItem(mask);
    }
    void updateMarkedSelections(std::uint32_t mask) override {
        reread.push_back(mask);
        PanelUnderTest::updateMarkedSelections(mask);
    }
};

TEST(FullRefresh, CallsItemByItemInTheFixedOrder) {
    PanelOnHost setting(threeChoicePrinter(false).open());
    CountingPanel panel;
    panel.initWithCallback(setting.host, setting.bundle);
    panel.setPDEItems();
    EXPECT_EQ(panel.refreshed, (std::vector<std::int32_t>{0x100, 0x200, 0x400, 0x800, 0x1000,
                                                          0x2000, 0x4000, 0x10000, 0x40000}));
    EXPECT_TRUE(panel.reread.empty());
    panel.refreshed.clear();
    panel.setPDEItems2();
    EXPECT_EQ(panel.reread, (std::vector<std::uint32_t>{0x100, 0x200, 0x400, 0x800, 0x1000, 0x2000,
                                                        0x4000, 0x10000}));
    EXPECT_TRUE(panel.refreshed.empty());
}

TEST(Asymmetry, MirrorGoesOffWithEveryFullRefresh) {
    for (const bool isRV : {false, true}) {
        PanelOnHost setting(threeChoicePrinter(isRV).open());
        PanelUnderTest& panel = setting.show();
        ppd::markOption(setting.host->ppd.get(), "KvMirror", "ON");
        panel.restoreValuesAndReturnError(nullptr);
        EXPECT_EQ(keywordOf(panel.mMirror_Selection), QStringLiteral("ON"));
        EXPECT_EQ(panel.mMirrorPrintChkBx.state(), 0);
        panel.updateUIItem(0x400);
        EXPECT_EQ(panel.mMirrorPrintChkBx.state(), 1);
        panel.willShow();
        EXPECT_EQ(panel.mMirrorPrintChkBx.state(), 0);
    }
}

TEST(Asymmetry, MissingAutomaticCutArraySetsCutEveryOff) {
    PanelOnHost setting(printerOffering(offer(CutLabel), true, false).open());
    PanelUnderTest& panel = setting.show();
    ASSERT_FALSE(panel.mAutoCut_Choices);
    panel.mCutEvery_Selection = &panel.mCutEvery_Choices->at(6);
    panel.mCutEveryChkBx.setState(1);
    panel.updateUIItem(0x100);
    EXPECT_EQ(panel.mCutEveryChkBx.state(), 0);
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("7"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 7);
}

TEST(Asymmetry, RestoringUnderSpecialTapeRereadsTheExcludedTicksFromTheMarks) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    PanelUnderTest& panel = setting.show();
    checkBox(panel, HalfCut).click();
    checkBox(panel, SpecialTape).click();
    panel.saveValuesAndReturnError(nullptr);
    EXPECT_EQ(panel.mHalfCutChkBx.state(), 1);
    EXPECT_EQ(markedIn(*setting.host, HalfCut), QStringLiteral("OFF"));
    panel.restoreValuesAndReturnError(nullptr);
    EXPECT_EQ(panel.mHalfCutChkBx.state(), 0);
}

TEST(Refresh, WorksWithoutPreviewPopUpAndField) {
    const CutDownBundle bundle({QStringLiteral("mOptionDummyView"),
                                QStringLiteral("mOptionPopUpButton"),
                                QStringLiteral("mCutEveryTxBx")});
    PanelOnHost setting(threeChoicePrinter(true).open(), bundle.root());
    PanelUnderTest& panel = setting.show();
    panel.mCutEvery_Selection = &panel.mCutEvery_Choices->at(6);
    panel.mMirrorPrintChkBx.setState(1);
    panel.setPDEItems();
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 7);
    // Without a pop-up there is no entry to apply, so mirror stays.
    panel.mMirrorPrintChkBx.setState(1);
    panel.updateUIItem(kPopUpItem);
    EXPECT_EQ(panel.mMirrorPrintChkBx.state(), 1);
}

} // namespace
} // namespace labelcut::test
