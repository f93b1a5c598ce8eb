// The command line: a plan as JSON, in the shape of docs/plan.md.
#pragma once

#include <QString>

#include <cstdint>
#include <cstdio>

#include "host/plan/job_plan.h"

namespace labelcut {

/// Of the shape. A member that is added leaves it; one that goes, or means something else, does
/// not.
inline constexpr int kPlanVersion = 1;

/// A list of more labels is cut off.
inline constexpr std::int64_t kMostListedLabels = 100'000;

/// Writes one object and a line end, a page and a label a line. It holds no more than a line in
/// memory.
/// @param printer  its title. @param plan  of one label at least. @param out  borrowed; whether it
/// has taken everything is for its owner to ask.
void writePlanJson(const QString& printer, const JobPlan& plan, std::FILE* out);

} // namespace labelcut
