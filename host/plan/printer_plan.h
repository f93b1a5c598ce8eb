// Plan: what a plan takes of an opened printer.
#pragma once

#include <memory>

#include "host/job/order.h"
#include "host/plan/job_plan.h"
#include "host/printers/opened_printer.h"

namespace labelcut {

/// What is chosen on the printer right now, for so many of these pages.
/// @param document  not null.
PlanInput planInputFor(const OpenedPrinter& printer, const Amount& amount,
                       std::shared_ptr<const DocumentPages> document);

} // namespace labelcut
