// Cut-options panel: user actions. Each turns a change into a choice that is sent to the host, and
// then refreshes the item that changed.
#include "plugins/cut_options/options/option_pde.h"

#include <algorithm>
#include <limits>

#include "platform/toolkit/int_value.h"

namespace labelcut {

namespace {

constexpr std::int32_t kSmallestCount = 1;
constexpr std::int32_t kLargestCount = 99;

std::int32_t countOf(const PDEChoice& choice) {
    return choice.ppdTitle() ? intValue(*choice.ppdTitle()) : 0;
}

} // namespace

void OptionPDE13_v400_::changeOption(const View& sender) {
    if (mOptionView)
        mOptionView->setNeedsDisplay(true);
    const auto row = std::ranges::find_if(
        rows(), [&](const Row& candidate) { return (this->*candidate.checkBox).isSame(sender); });
    if (row != rows().end()) {
        // The cut-every box turns on automatic cut; the count is a choice of its own.
        const Row& sent = row->item == item::kCutLabel ? rowOf(item::kAutoCut) : *row;
        const auto itemType = static_cast<std::int32_t>(row->item);
        selectionForItem((this->*row->checkBox).state(), QLatin1String(sent.keyword),
                         this->*sent.choices, itemType);
        updateUIItem(itemType);
    }
    enabledCheck_OP();
}

void OptionPDE13_v400_::changeOptionPopUpButton() {
    updateUIItem(static_cast<std::int32_t>(item::kPopUp));
}

OptionPDE13_v400_::CountBounds OptionPDE13_v400_::countBounds() const {
    if (!mCutEvery_Choices || mCutEvery_Choices->empty())
        return {kSmallestCount, kLargestCount};
    return {countOf(mCutEvery_Choices->front()), countOf(mCutEvery_Choices->back())};
}

void OptionPDE13_v400_::changeCutEveryValue(const View& sender) {
    const CountBounds bounds = countBounds();
    const auto clamped = [&](std::int32_t n) {
        return n < bounds.min ? bounds.min : std::min(n, bounds.max);
    };
    std::int32_t value = 0;
    const bool fromStepper = mCutEveryStpr.isSame(sender);
    if (fromStepper || mCutEveryTxBx.isSame(sender)) {
        value = clamped(fromStepper ? mCutEveryStpr.intValue() : mCutEveryTxBx.intValue());
        mCutEveryStpr.setIntValue(value);
        mCutEveryTxBx.setStringValue(QString::number(value));
    }
    // An index that does not fit 32 bits lies outside every array, as any negative one does.
    const std::int64_t index = std::int64_t{value} - bounds.min;
    const std::int32_t sent =
        index > std::numeric_limits<std::int32_t>::max() ? -1 : static_cast<std::int32_t>(index);
    selectionForItem(sent, QLatin1String(keyword::kCutLabel), mCutEvery_Choices,
                     static_cast<std::int32_t>(item::kCutLabel));
    updateUIItem(static_cast<std::int32_t>(item::kCutLabel));
}

void OptionPDE13_v400_::controlTextDidChange(const View& field) {
    if (mCutEveryTxBx.isSame(field))
        changeCutEveryValue(field);
}

} // namespace labelcut
