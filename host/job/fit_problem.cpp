// Job: pages of which an edge would be lost on the label.
#include "host/job/fit_problem.h"

#include "host/texts/host_text.h"
#include "host/texts/length.h"

namespace labelcut {

namespace {

QString measureText(const QSizeF& measure) {
    return measureForUser(measure.width(), measure.height());
}

} // namespace

std::optional<FitProblem> fitProblem(const std::vector<QSizeF>& measures, const Amount& amount,
                                     const std::optional<JobPaper>& paper) {
    if (!paper || amount.fit != worker::Fit::Unchanged)
        return std::nullopt;
    std::optional<FitProblem> problem;
    const int count = amount.pages.countIn(static_cast<int>(measures.size()));
    for (int i = 0; i < count; ++i) {
        const int page = amount.pages.pageAt(i);
        const QSizeF& measure = measures[static_cast<std::size_t>(page) - 1];
        if (!placedOn(*paper, measure, amount.fit).losesEdge)
            continue;
        if (problem)
            ++problem->pages;
        else
            problem = FitProblem{page, measure, paper->size, 1};
    }
    return problem;
}

QString sentenceOf(const FitProblem& problem) {
    const QString page = QString::number(problem.page);
    const QString measure = measureText(problem.measure);
    const QString label = measureText(problem.label);
    if (problem.pages == 1)
        return hostText("EdgeLost").arg(page, measure, label);
    return hostText("EdgesLost").arg(page, measure, label, QString::number(problem.pages));
}

} // namespace labelcut
