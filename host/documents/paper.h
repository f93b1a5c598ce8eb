// Documents: the label size that pages are laid out on, and the pages of them that are printed.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>

#include <optional>
#include <vector>

#include "worker/protocol/page_fit.h"

namespace labelcut {

/// The paper that a job's pages are laid out on. Points, 1/72 inch.
struct JobPaper {
    /// The PPD's own name, for instance "DC24".
    QString name;
    QSizeF size;
    /// What the printer can print on, measured from the top left corner; never empty.
    QRectF printable;

    bool operator==(const JobPaper&) const = default;
};

/// Where a page of that measure comes to lie on the paper. @param measure  as it is shown. Points.
worker::Placement placedOn(const JobPaper& paper, const QSizeF& measure, worker::Fit fit);

/// Pages first … last, counted from 1 through all files of a job.
struct PageRange {
    static constexpr int kToTheEnd = 0x7fffffff;
    int first = 1;
    int last = kToTheEnd;

    bool isEverything() const { return first <= 1 && last == kToTheEnd; }
    friend bool operator==(const PageRange& a, const PageRange& b) {
        return a.first == b.first && a.last == b.last;
    }
};

/// The pages of a job that are printed, counted from 1 through all of its files. They come in
/// ascending order, each once, however they were typed.
class PageSelection {
public:
    /// More ranges are refused by parsePageSelection(): nobody types so many.
    static constexpr std::size_t kMostRanges = 500;

    /// Every page.
    PageSelection() = default;
    explicit PageSelection(const PageRange& range);
    /// Ranges that overlap or touch become one; none of them: every page.
    explicit PageSelection(std::vector<PageRange> ranges);

    /// Ascending and apart; empty for every page.
    const std::vector<PageRange>& ranges() const { return mRanges; }
    bool isEverything() const { return mRanges.empty(); }
    /// From the first page to the last, with what lies between.
    PageRange hull() const;
    /// How many of a document's `pages` are selected.
    int countIn(int pages) const;
    /// The selected page at `index`, counted from 0. @param index  below countIn() of the document.
    int pageAt(int index) const;

    friend bool operator==(const PageSelection& a, const PageSelection& b) {
        return a.mRanges == b.mRanges;
    }

private:
    std::vector<PageRange> mRanges;
};

/// What of a document is sent, and how.
struct Composition {
    PageSelection pages;
    /// The last page first.
    bool isReversed = false;
    /// Each page so often in a row; 1 … kMaxCopies (host/core/copies.h).
    int repeats = 1;
    /// What pages are laid out on, as placed() says; nothing: they keep their measure.
    std::optional<JobPaper> paper = {};
    worker::Fit fit = worker::Fit::Unchanged;
    /// All of it so often, one set behind the other; 1 … kMaxCopies.
    int sets = 1;
    /// So many pages at the front of all that are left out; fewer than there are.
    int skipped = 0;
};

/// "1,3,5-7,9-": pages and ranges, "9-" to the end, "-5" from the start, parted by commas. Nothing
/// for any other text, for a page 0, for a range that runs backwards and for more than
/// PageSelection::kMostRanges.
std::optional<PageSelection> parsePageSelection(const QString& text);

/// The selection written in the same way; empty for every page.
QString toString(const PageSelection& selection);

/// The sentence for a selection that lies behind the last of `pages` pages.
QString noSuchPage(const PageSelection& selection, int pages);

} // namespace labelcut
