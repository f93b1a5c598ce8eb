// Cut-options panel: writing the controls' states to the host as choices.
#include "plugins/cut_options/options/option_pde.h"

#include <algorithm>

#include "platform/toolkit/text_encoding.h"

namespace labelcut {

namespace {

/// The choice at the index clamped into the array; null for an absent or empty array.
const PDEChoice* clampedChoice(const PDEChoices& choices, std::int32_t index) {
    if (!choices || choices->empty())
        return nullptr;
    const auto last = static_cast<std::int32_t>(choices->size()) - 1;
    return &(*choices)[static_cast<std::size_t>(std::clamp(index, 0, last))];
}

/// The PPD's own bytes of a keyword as the host is told them.
std::optional<QString> keywordText(const char* bytes) {
    return decodeCString(bytes, TextEncoding::Utf8);
}

} // namespace

bool OptionPDE13_v400_::specialTapeExcludes() const {
    return !mSpecialTapeChkBx.isHidden() && mSpecialTapeChkBx.state() != 0;
}

std::int32_t OptionPDE13_v400_::indexForSaveAutoChain(const Button& control) const {
    if (!control || specialTapeExcludes())
        return 0;
    return control.state();
}

std::int32_t OptionPDE13_v400_::markedOrDefaultIndex(const PDEChoices& choices,
                                                     const char* cStrKey) const {
    const std::int32_t marked = indexOfMarkedOption(choices, QLatin1String(cStrKey));
    return marked == -1 ? indexOfDefaultOption(choices) : marked;
}

std::int32_t OptionPDE13_v400_::indexToSave(const Row& row) const {
    const Button& box = this->*row.checkBox;
    if (!box)
        return markedOrDefaultIndex(this->*row.choices, row.keyword);
    return row.exclusionRank != 0 ? indexForSaveAutoChain(box) : box.state();
}

void OptionPDE13_v400_::saveSetting(const Row& row) {
    if (this->*row.choices && printSettings)
        saveByState(row);
}

void OptionPDE13_v400_::saveByState(const Row& row) {
    const PDEChoice* choice = clampedChoice(this->*row.choices, indexToSave(row));
    if (!choice)
        return;
    const std::optional<QString> key = keywordText((this->*row.option)->keyword);
    const std::optional<QString> name = keywordText(choice->choice()->choice);
    if (key && name)
        tellHost(*key, *name);
}

void OptionPDE13_v400_::saveSetting_CutLabel() {
    if (!mCutEvery_Choices || !printSettings)
        return;
    std::int32_t index = -1;
    if (mCutEveryTxBx) {
        // The field is read where it is in force, and its number is not used: a count reaches the
        // PPD only as the choice that a user's change marked.
        if (indexForSaveAutoChain(mCutEveryChkBx) == 1)
            static_cast<void>(mCutEveryTxBx.intValue());
        index = indexOfMarkedOption(mCutEvery_Choices, QLatin1String(keyword::kCutLabel));
    } else {
        index = markedOrDefaultIndex(mCutEvery_Choices, keyword::kCutLabel);
    }
    const PDEChoice* count = clampedChoice(mCutEvery_Choices, index);
    saveAutoCutByName();
    if (!count)
        return;
    const std::optional<QString> key = keywordText(mCutEvery_Option->keyword);
    const std::optional<QString> name = keywordText(count->choice()->choice);
    if (key && name)
        tellHost(*key, *name);
}

// Without a checkbox of its own automatic cut follows the cut-every box.
void OptionPDE13_v400_::saveAutoCutByName() {
    if (mAutoCutHideKey_dec != 0 || !mAutoCut_Option)
        return;
    const std::int32_t index = mCutEveryTxBx
                                   ? indexForSaveAutoChain(mCutEveryChkBx)
                                   : markedOrDefaultIndex(mAutoCut_Choices, keyword::kAutoCut);
    if (const std::optional<QString> key = keywordText(mAutoCut_Option->keyword))
        tellHost(*key, index == 1 ? QStringLiteral("ON") : QStringLiteral("OFF"));
}

void OptionPDE13_v400_::saveSetting_CutAtEnd() {
    saveSetting(rowOf(item::kCutAtEnd));
}

void OptionPDE13_v400_::saveSetting_Mirror() {
    saveSetting(rowOf(item::kMirror));
}

void OptionPDE13_v400_::saveSetting_AutoCut() {
    if (mAutoCutHideKey_dec == 1 && printSettings)
        saveByState(rowOf(item::kAutoCut));
}

void OptionPDE13_v400_::saveSetting_HalfCut() {
    saveSetting(rowOf(item::kHalfCut));
}

void OptionPDE13_v400_::saveSetting_ChainPrint() {
    saveSetting(rowOf(item::kChainPrint));
}

void OptionPDE13_v400_::saveSetting_SpecialTape() {
    saveSetting(rowOf(item::kSpecialTape));
}

void OptionPDE13_v400_::saveSetting_RemoveBlkSpace() {
    readTapeState();
    saveSetting(rowOf(item::kRemoveBlkSpace));
}

} // namespace labelcut
