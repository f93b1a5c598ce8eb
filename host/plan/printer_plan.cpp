// Plan: what a plan takes of an opened printer.
#include "host/plan/printer_plan.h"

#include "host/job/marked_paper.h"

namespace labelcut {

PlanInput planInputFor(const OpenedPrinter& printer, const Amount& amount,
                       std::shared_ptr<const DocumentPages> document) {
    PlanInput input;
    input.document = std::move(document);
    input.pages = amount.pages;
    input.copies = amount.copies;
    input.isReversed = amount.isReversed;
    input.isCollated = amount.isCollated;
    input.fit = amount.fit;
    input.paper = markedPaper(printer.ppd());
    input.cuts = printer.cutPlan();
    return input;
}

} // namespace labelcut
