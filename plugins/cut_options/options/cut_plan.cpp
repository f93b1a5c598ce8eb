// Cut-options panel: what choices that were sent to the printer mean for the tape.
#include "plugins/cut_options/options/cut_plan.h"

#include <algorithm>

#include "platform/toolkit/int_value.h"
#include "platform/toolkit/text_encoding.h"
#include "plugins/cut_options/options/option_pde.h"

namespace labelcut {

namespace {

PDEMedium mediumOf(const SentChoices& choices) {
    if (choices.specialTape && !choices.isRV)
        return PDEMedium::SpecialTape;
    return choices.hasFixedLength ? PDEMedium::Labels : PDEMedium::Tape;
}

bool isCutAutomatically(const SentChoices& choices) {
    return !choices.specialTape && (choices.hasAutoCut ? choices.autoCut : choices.cutEvery > 0);
}

/// A full cut after every so many labels.
void cutGroups(PDECutPlan& plan, const SentChoices& choices) {
    plan.afterGroup = PDECut::Full;
    plan.groupSize = std::max(choices.cutEvery, 1);
}

/// Half cut and chain printing are unknown to this family.
void planRoll(PDECutPlan& plan, const SentChoices& choices) {
    if (isCutAutomatically(choices))
        cutGroups(plan, choices);
    if (choices.cutAtEnd)
        plan.afterLast = PDECut::Full;
}

void planTape(PDECutPlan& plan, const SentChoices& choices) {
    const bool isCut = isCutAutomatically(choices);
    if (choices.halfCut)
        plan.afterEach = PDECut::Half;
    // A half cut takes the place of the full cut after each label, but not of that after several.
    if (isCut && (!choices.halfCut || choices.cutEvery > 1))
        cutGroups(plan, choices);
    const bool parts = isCut && !choices.halfCut;
    plan.lead = choices.chainPrint ? PDELead::Chained : PDELead::Blank;
    plan.afterLead = choices.halfCut ? PDECut::Half : parts ? PDECut::Full : PDECut::None;
    const bool waits = choices.chainPrint || !isCut;
    plan.afterLast = choices.cutAtEnd || !waits ? PDECut::Full : PDECut::None;
}

void planSpecialTape(PDECutPlan& plan) {
    plan.lead = PDELead::Blank;
    plan.afterLast = PDECut::ByHand;
}

} // namespace

PDECutPlan cutPlanOf(const SentChoices& choices) {
    PDECutPlan plan;
    plan.medium = mediumOf(choices);
    plan.isMirrored = choices.mirror;
    plan.removesBlankSpace = choices.removeBlankSpace && plan.medium == PDEMedium::Tape;
    if (choices.isRV)
        planRoll(plan, choices);
    else if (choices.specialTape)
        planSpecialTape(plan);
    else
        planTape(plan, choices);
    return plan;
}

std::optional<PDECutPlan> OptionPDE13_v400_::cutPlan() {
    // A printer without any of the options is none that this panel knows.
    if (std::ranges::none_of(rows(),
                             [this](const Row& row) { return (this->*row.choices).has_value(); }))
        return std::nullopt;
    const auto isOn = [this](const PDEChoices& choices, const char* cStrKey) {
        return choices && indexOfMarkedOption(choices, QLatin1String(cStrKey)) == 1;
    };
    SentChoices sent;
    sent.isRV = isRVPrinter();
    sent.hasAutoCut = mAutoCut_Choices.has_value();
    sent.autoCut = isOn(mAutoCut_Choices, keyword::kAutoCut);
    sent.cutEvery = markedCount();
    sent.cutAtEnd = isOn(mCutEnd_Choices, keyword::kCutAtEnd);
    sent.halfCut = isOn(mHalfCut_Choices, keyword::kHalfCut);
    sent.chainPrint = isOn(mChainPrint_Choices, keyword::kChainPrint);
    sent.specialTape = isOn(mSpecialTape_Choices, keyword::kSpecialTape);
    sent.mirror = isOn(mMirror_Choices, keyword::kMirror);
    sent.removeBlankSpace = isOn(mRemoveBlkSpace_Choices, keyword::kRemoveBlkSpace);
    sent.hasFixedLength = pageHasFixedLength();
    return cutPlanOf(sent);
}

/// The number that is marked for cut every; 0 without the option or a mark.
std::int32_t OptionPDE13_v400_::markedCount() const {
    if (!mCutEvery_Choices)
        return 0;
    const std::int32_t index =
        indexOfMarkedOption(mCutEvery_Choices, QLatin1String(keyword::kCutLabel));
    if (index < 0 || index >= static_cast<std::int32_t>(mCutEvery_Choices->size()))
        return 0;
    const PDEChoice& choice = (*mCutEvery_Choices)[static_cast<std::size_t>(index)];
    return intValue(decodeCString(choice.choice()->choice, TextEncoding::Utf8).value_or(QString()));
}

} // namespace labelcut
