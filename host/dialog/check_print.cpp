// The dialog: one label to check, then the others.
#include "host/dialog/check_print.h"

namespace labelcut {

namespace {

int selected(const JobPlan& plan) {
    const PlanInput& input = plan.input();
    return input.pages.countIn(static_cast<int>(input.document->measures.size()));
}

bool isSame(const Order& a, const Order& b) {
    return a.printer == b.printer && a.amount == b.amount && a.shown == b.shown &&
           a.paper == b.paper && a.settings == b.settings && a.marks == b.marks;
}

} // namespace

bool canCheck(const JobPlan& plan) {
    return plan.labels() > 1;
}

std::optional<Order> partOf(const Order& order, const JobPlan& plan, PrintPart part) {
    if (part == PrintPart::All)
        return order;
    if (!canCheck(plan))
        return std::nullopt;
    Order wanted = order;
    if (part == PrintPart::First) {
        const int page = plan.pageAt(0);
        wanted.amount.pages = PageSelection({page, page});
        wanted.amount.copies = 1;
    } else if (selected(plan) == 1) {
        // Copies stay the printer's.
        --wanted.amount.copies;
    } else {
        wanted.labelsBefore = 1;
    }
    return wanted;
}

PrintOffer::Kind PrintOffer::kindFor(const std::optional<Order>& now) const {
    return mOrder && now && isSame(*mOrder, *now) ? mKind : Kind::All;
}

void PrintOffer::note(const Order& order, Kind kind) {
    mOrder = order;
    mKind = kind;
}

} // namespace labelcut
