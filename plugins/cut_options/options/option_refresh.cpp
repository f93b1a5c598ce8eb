// Cut-options panel: controls that follow the selections, and the combination pop-up.
#include "plugins/cut_options/options/option_pde.h"

#include <functional>

#include "platform/toolkit/int_value.h"
#include "platform/toolkit/text_encoding.h"

namespace labelcut {

namespace {

/// Position of that very choice in the array; nothing when it is not an element of it.
std::optional<int> positionOf(const PDEChoice* selection, const PDEChoiceArray& choices) {
    const PDEChoice* const begin = choices.data();
    const std::less<const PDEChoice*> isBefore;
    if (isBefore(selection, begin) || !isBefore(selection, begin + choices.size()))
        return std::nullopt;
    return static_cast<int>(selection - begin);
}

constexpr std::int64_t kFirstTag = 1;
constexpr std::int64_t kLastTag = 12;

} // namespace

void OptionPDE13_v400_::updateUIItem(std::int32_t mask) {
    const auto bits = static_cast<std::uint32_t>(mask);
    if ((bits & item::kPopUp) != 0) {
        applyPopUpEntry();
    } else {
        for (const Row& row : rows()) {
            if ((bits & row.item) == 0)
                continue;
            if (row.item == item::kCutLabel)
                refreshCutLabel();
            else if (row.item != item::kRemoveBlkSpace || mRemoveBlkSpaceChkBx.isEnabled())
                refreshCheckBox(row);
        }
        const std::int64_t tag = targetPopUpButtonTag();
        if (tag >= kFirstTag && tag <= kLastTag)
            mOptionPopUpButton.selectItemWithTag(tag);
    }
    enabledCheck_OP();
    if (mOptionView)
        mOptionView->setNeedsDisplay(true);
}

void OptionPDE13_v400_::refreshCutLabel() {
    if (!mCutEvery_Selection || !mCutEvery_Choices)
        return;
    if (positionOf(mCutEvery_Selection, *mCutEvery_Choices)) {
        const std::optional<QString> count =
            decodeCString(mCutEvery_Selection->choice()->choice, TextEncoding::Utf8);
        if (count) {
            mCutEveryTxBx.setStringValue(*count);
            mCutEveryStpr.setIntValue(intValue(*count));
        }
    }
    // Without automatic cut there is nothing behind the tick, and the box goes off.
    const std::optional<int> position =
        mAutoCut_Choices ? positionOf(mAutoCut_CutEvery_Selection, *mAutoCut_Choices) : 0;
    if (position)
        mCutEveryChkBx.setState(*position);
}

void OptionPDE13_v400_::refreshCheckBox(const Row& row) {
    const PDEChoices& choices = this->*row.choices;
    if (!choices)
        return;
    if (const std::optional<int> position = positionOf(this->*row.selection, *choices))
        (this->*row.checkBox).setState(*position);
}

void OptionPDE13_v400_::applyPopUpEntry() {
    const std::int64_t tag = mOptionPopUpButton.selectedTag();
    if (tag < kFirstTag || tag > kLastTag)
        return;
    constexpr std::int64_t kFirstSG = 4;
    if (tag < kFirstSG) {
        mCutEveryChkBx.setState(tag == 3 ? 1 : 0);
        mCutAndEndChkBx.setState(tag == 2 ? 1 : 0);
    } else if (tag == kLastTag) {
        mSpecialTapeChkBx.setState(1);
    } else {
        const std::int64_t bits = tag - kFirstSG;
        mAutoCutChkBx.setState((bits & 4) != 0 ? 1 : 0);
        mHalfCutChkBx.setState((bits & 2) != 0 ? 1 : 0);
        mChainPrintChkBx.setState((bits & 1) != 0 ? 1 : 0);
        mSpecialTapeChkBx.setState(0);
    }
    mMirrorPrintChkBx.setState(0);
}

std::int64_t OptionPDE13_v400_::targetPopUpButtonTag() const {
    const CutCombination c = readCombination(cutCheckBoxes());
    if (isRVPrinter())
        return c.autoCut ? 3 : (c.cutAtEnd ? 2 : 1);
    if (c.specialTape)
        return 12;
    return 4 + (c.autoCut ? 4 : 0) + (c.halfCut ? 2 : 0) + (c.chainPrint ? 1 : 0);
}

} // namespace labelcut
