// Job: pages of which an edge would be lost on the label.
#pragma once

#include <QSizeF>
#include <QString>

#include <optional>
#include <vector>

#include "host/documents/paper.h"
#include "host/job/order.h"

namespace labelcut {

struct FitProblem {
    /// The first such page that is printed, counted from 1 through all files.
    int page = 1;
    /// Its measure as it is shown, and that of the label. Points.
    QSizeF measure;
    QSizeF label;
    /// How many such pages are printed; 1 or more.
    int pages = 1;
};

/// The pages of an amount that lose an edge at their actual size, whichever way they lie. Nothing
/// where none does, where it is said how pages are fitted, and without a paper.
/// @param measures  of all pages of all files, as they are shown, see JobDocument::measures().
std::optional<FitProblem> fitProblem(const std::vector<QSizeF>& measures, const Amount& amount,
                                     const std::optional<JobPaper>& paper);

/// One sentence for the user, in the running language, measures in the units of the country.
QString sentenceOf(const FitProblem& problem);

} // namespace labelcut
