// Cut-options panel: selections that follow the PPD's marks and the host's notices.
#include "plugins/cut_options/options/option_pde.h"

#include <algorithm>

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
    const auto row = std::ranges::find_if(
        rows(), [&](const Row& candidate) { return key == QLatin1String(candidate.keyword); });
    if (row != rows().end())
        this->*row->selection = PDEUtilsMethod13::findChoiceForString(choice, this->*row->choices);
}

} // namespace labelcut
