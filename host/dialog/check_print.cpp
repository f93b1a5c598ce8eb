// The dialog: one label to check, then the others.
#include "host/dialog/check_print.h"

#include <algorithm>

namespace labelcut {

namespace {

int selected(const JobPlan& plan) {
    const PlanInput& input = plan.input();
    return input.pages.countIn(static_cast<int>(input.document->measures.size()));
}

/// The selected pages without the one that comes first. At least one is left.
PageSelection withoutFirst(const JobPlan& plan) {
    const PlanInput& input = plan.input();
    std::vector<PageRange> ranges = input.pages.ranges();
    if (ranges.empty())
        ranges.emplace_back();
    const auto pages = static_cast<int>(input.document->measures.size());
    std::erase_if(ranges, [pages](const PageRange& range) { return range.first > pages; });
    ranges.back().last = std::min(ranges.back().last, pages);
    if (input.isReversed)
        --ranges.back().last;
    else
        ++ranges.front().first;
    std::erase_if(ranges, [](const PageRange& range) { return range.first > range.last; });
    return PageSelection(std::move(ranges));
}

bool isSame(const Order& a, const Order& b) {
    return a.printer == b.printer && a.amount == b.amount && a.shown == b.shown &&
           a.paper == b.paper && a.settings == b.settings && a.marks == b.marks;
}

} // namespace

bool canCheck(const JobPlan& plan) {
    return plan.labels() > 1 && (selected(plan) == 1 || plan.input().copies == 1);
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
        --wanted.amount.copies;
    } else {
        wanted.amount.pages = withoutFirst(plan);
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
