// The command line: a plan in plain words.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

#include "host/plan/job_plan.h"

namespace labelcut {

/// What is told of. Everything is borrowed for the call.
struct PlanReport {
    /// Its title.
    QString printer;
    /// The names of the documents that the plan's pages are from, one or more.
    QStringList files;
    /// Of one label at least.
    const JobPlan* plan = nullptr;
    /// The sentence with which it is not printed; empty: it is.
    QString refusal = {};
};

/// A heading, the labels in their order with what lies before and behind them, and what the job
/// takes. Labels that differ only in their number share a line.
/// @param say  called with each line; none ends with a line end.
void tellPlan(const PlanReport& report, const std::function<void(const QString& line)>& say);

} // namespace labelcut
