// The dialog: what is said when pages are not whole on their labels.
#include "host/dialog/misfit_message.h"

#include <vector>

#include "host/dialog/job_model.h"
#include "host/dialog/message_bar.h"
#include "host/strip/strip_words.h"
#include "host/texts/host_text.h"
#include "host/texts/length.h"

namespace labelcut {

namespace {

/// Whether less of the page is lost so. It is whole neither way: where it is, nothing is said.
bool helpsToTurn(const JobPlan& plan, const PlanMisfit& misfit) {
    PlanInput input = plan.input();
    input.fit = worker::Fit::Turn;
    const auto lost = [](const worker::Placement& place) {
        return place.lost.width * place.size.height + place.lost.height * place.size.width;
    };
    return lost(JobPlan(std::move(input)).placeOf(misfit.firstPage)) < lost(misfit.place);
}

std::vector<MessageAction> waysOut(JobModel& model, const JobPlan& plan, const PlanMisfit& misfit) {
    using worker::Fit;
    std::vector<MessageAction> ways;
    if (const auto size = model.view().labelSizeFor(misfit.measure)) {
        const QString measure = measureForUser(misfit.measure.width(), misfit.measure.height());
        ways.push_back({hostText("MisfitUseSize").arg(measure),
                        [&model, choice = *size] { model.choose(kPageSize, choice); }});
    }
    const auto offer = [&](const char* key, Fit fit) {
        ways.push_back({hostText(key), [&model, fit] { model.setFit(fit); }});
    };
    if (helpsToTurn(plan, misfit))
        offer("MisfitTurn", Fit::Turn);
    offer("MisfitScale", Fit::Scale);
    offer("MisfitActual", Fit::Actual);
    return ways;
}

} // namespace

void showMisfit(JobModel& model, const JobPlan& plan, MessageBar& messages) {
    const bool isChosen = plan.input().fit != worker::Fit::Unchanged;
    const auto misfit = isChosen ? std::nullopt : plan.misfit();
    if (!misfit) {
        messages.remove(kMisfitMessage);
        return;
    }
    messages.show(kMisfitMessage, MessageBar::Kind::Warning, misfitText(plan, *misfit),
                  waysOut(model, plan, *misfit));
}

} // namespace labelcut
