// Cut-options panel: selections that follow the PPD's marks and the host's notices, and one control
// that follows its selection.
#include "plugins/cut_options/options/option_pde.h"

#include "plugins/cut_options/frame/pde_utils_method.h"

namespace labelcut {

const PDEChoice* OptionPDE13_v400_::markedOrDefaultChoice(const PDEChoices& choices,
                                                          const char* cStrKey) const {
    const std::int32_t index = markedOrDefaultIndex(choices, cStrKey);
    if (!choices || index < 0 || index >= static_cast<std::int32_t>(choices->size()))
        return nullptr;
    return &(*choices)[static_cast<std::size_t>(index)];
}

void OptionPDE13_v400_::updateMarkedSelections(std::uint32_t mask) {
    for (const Row& row : rows()) {
        if ((mask & row.item) == 0 || !(this->*row.option))
            continue;
        this->*row.selection = markedOrDefaultChoice(this->*row.choices, row.keyword);
        // The tick of the cut-every box is the automatic cut; the count option alone gates both.
        if (row.item == item::kCutLabel)
            mAutoCut_CutEvery_Selection =
                markedOrDefaultChoice(mAutoCut_Choices, keyword::kAutoCut);
    }
}

void OptionPDE13_v400_::PPDOptionKeyValueDidChange(const QString& key, const QString& choice) {
    if (key.isNull() || choice.isNull())
        return;
    if (const Row* row = rowOfKeyword(key))
        this->*row->selection = PDEUtilsMethod13::findChoiceForString(choice, this->*row->choices);
}

void OptionPDE13_v400_::showChoice(const QString& keyword) {
    const Row* row = rowOfKeyword(keyword);
    if (!row)
        return;
    // Without a row of its own automatic cut shows in the tick of the cut-every box.
    const bool inCutEvery = row->item == item::kAutoCut && mAutoCutHideKey_dec != 1;
    const std::uint32_t shown = inCutEvery ? item::kCutLabel : row->item;
    updateMarkedSelections(shown);
    updateUIItem(static_cast<std::int32_t>(shown));
}

} // namespace labelcut
