// Strip: what the strip says in words.
#pragma once

#include <QString>

#include "host/plan/job_plan.h"

namespace labelcut {

/// "12 labels · at least 60 cm of 24 mm tape · 13 cuts", in the user's unit and language.
QString figuresText(const JobPlan& plan);
/// "Label 3 of 12, full cut after it". @param index  counted from 0.
QString labelText(const JobPlan& plan, std::int64_t index);
/// "… 88 more …".
QString moreText(std::int64_t labels);
/// That pages are not whole on their labels, and by how much; empty when they are.
QString misfitText(const JobPlan& plan, const PlanMisfit& misfit);

} // namespace labelcut
