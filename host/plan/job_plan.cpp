// Plan: the job label by label.
#include "host/plan/job_plan.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace labelcut {

namespace {

worker::Size sizeOf(const QSizeF& size) {
    return {size.width(), size.height()};
}

} // namespace

worker::Label labelOf(const JobPaper& paper) {
    return {sizeOf(paper.size), paper.printable.left(), paper.printable.top(),
            paper.printable.right(), paper.printable.bottom()};
}

PageOfFile pageOfFile(const DocumentPages& document, int page) {
    PageOfFile place{1, page};
    for (const int pages : document.ofFiles) {
        if (place.page <= pages)
            break;
        place.page -= pages;
        ++place.file;
    }
    return place;
}

JobPlan::JobPlan(PlanInput input)
    : mInput(std::move(input))
    , mSelected(mInput.pages.countIn(static_cast<int>(mInput.document->measures.size())))
    , mLabels(std::int64_t{mSelected} * mInput.copies) {}

JobPlan::Place JobPlan::placeAt(std::int64_t index) const {
    const std::int64_t inSet = mInput.isCollated ? index % mSelected : index / mInput.copies;
    const std::int64_t copy = mInput.isCollated ? index / mSelected : index % mInput.copies;
    const auto place = static_cast<int>(inSet);
    return {mInput.pages.pageAt(mInput.isReversed ? mSelected - 1 - place : place),
            static_cast<int>(copy) + 1};
}

JobPlan::Label JobPlan::label(std::int64_t index) const {
    Label label;
    const Place place = placeAt(index);
    label.page = place.page;
    label.copy = place.copy;
    label.pageSize = mInput.document->measures[static_cast<std::size_t>(label.page - 1)];
    label.size = labelSizeOf(label.page);
    label.place = placeOf(label.page);
    label.cutAfter = cutAfter(index);
    return label;
}

QSizeF JobPlan::labelSizeOf(int page) const {
    return mInput.paper ? mInput.paper->size
                        : mInput.document->measures[static_cast<std::size_t>(page - 1)];
}

worker::Placement JobPlan::placeOf(int page) const {
    const worker::Size size = sizeOf(mInput.document->measures[static_cast<std::size_t>(page - 1)]);
    if (mInput.paper)
        return worker::placed(size, labelOf(*mInput.paper), mInput.fit);
    worker::Placement whole;
    whole.isUntouched = true;
    whole.size = size;
    return whole;
}

/// Labels of one copy of the document, as the printer knows it: copies of pages that come together
/// are pages to it.
std::int64_t JobPlan::setSize() const {
    return mInput.isCollated ? mSelected : mLabels;
}

PDECut JobPlan::strongestAt(bool endsGroup, bool endsSet) const {
    PDECut cut = mInput.cuts->afterEach;
    if (endsGroup)
        cut = std::max(cut, mInput.cuts->afterGroup);
    if (endsSet)
        cut = std::max(cut, mInput.cuts->afterSet);
    return cut;
}

PDECut JobPlan::cutAfter(std::int64_t index) const {
    if (!mInput.cuts)
        return PDECut::None;
    const std::int64_t number = index + 1;
    if (number == mLabels && mInput.cuts->afterLast)
        return *mInput.cuts->afterLast;
    const int group = mInput.cuts->groupSize;
    return strongestAt(group >= 1 && number % group == 0, number % setSize() == 0);
}

/// Every label but the last is behind one of four kinds of place; how many there are of each is a
/// matter of division.
void JobPlan::countCuts(PlanFigures& figures) const {
    const auto count = [&figures](PDECut cut, std::int64_t times) {
        if (cut == PDECut::Full)
            figures.fullCuts += times;
        else if (cut == PDECut::Half)
            figures.halfCuts += times;
        else if (cut == PDECut::ByHand)
            figures.handCuts += times;
    };
    const std::int64_t between = mLabels - 1;
    const std::int64_t group = mInput.cuts->groupSize;
    const std::int64_t groups = group >= 1 ? between / group : 0;
    const std::int64_t sets = between / setSize();
    const std::int64_t both = group >= 1 ? between / std::lcm(group, setSize()) : 0;
    count(strongestAt(true, true), both);
    count(strongestAt(true, false), groups - both);
    count(strongestAt(false, true), sets - both);
    count(strongestAt(false, false), between - groups - sets + both);
    count(cutAfter(mLabels - 1), 1);
    if (mInput.cuts->lead == PDELead::Blank)
        count(mInput.cuts->afterLead, 1);
}

void JobPlan::measureTape(PlanFigures& figures) const {
    if (mInput.paper) {
        figures.length = mInput.paper->size.height() * static_cast<double>(mLabels);
    } else {
        for (int i = 0; i < mSelected; ++i)
            figures.length += labelSizeOf(mInput.pages.pageAt(i)).height();
        figures.length *= mInput.copies;
    }
    if (!mInput.cuts)
        return;
    using Meaning = PlanFigures::Meaning;
    figures.hasWaste = mInput.cuts->lead == PDELead::Blank;
    const bool takesMore = figures.hasWaste || mInput.cuts->medium == PDEMedium::Labels;
    const bool takesLess = mInput.cuts->removesBlankSpace;
    if (takesMore)
        figures.lengthIs = takesLess ? Meaning::About : Meaning::AtLeast;
    else if (takesLess)
        figures.lengthIs = Meaning::AtMost;
}

PlanFigures JobPlan::figures() const {
    PlanFigures figures;
    figures.labels = mLabels;
    if (mLabels == 0)
        return figures;
    if (mInput.cuts)
        countCuts(figures);
    measureTape(figures);
    return figures;
}

std::optional<PlanMisfit> JobPlan::misfit() const {
    PlanMisfit found;
    for (int i = 0; i < mSelected; ++i) {
        const int page = mInput.pages.pageAt(i);
        const worker::Placement place = placeOf(page);
        if (!place.losesEdge && !place.changesSize)
            continue;
        if (found.pages++ > 0)
            continue;
        found.firstPage = page;
        found.measure = mInput.document->measures[static_cast<std::size_t>(page - 1)];
        found.place = place;
    }
    return found.pages > 0 ? std::optional(found) : std::nullopt;
}

} // namespace labelcut
