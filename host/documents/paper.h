// Documents: the label size that pages are laid out on, and the pages of them that are printed.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>

#include <optional>

namespace labelcut {

/// The paper that a job's pages are laid out on. Points, 1/72 inch.
struct JobPaper {
    /// The PPD's own name, for instance "DC24".
    QString name;
    QSizeF size;
    /// What the printer can print on, measured from the top left corner; never empty.
    QRectF printable;
};

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

/// "3-5", "3-" (to the end), "-5" (from the start) or "3". Nothing for any other text, for a page
/// 0 and for a range that runs backwards.
std::optional<PageRange> parsePageRange(const QString& text);

/// The range written in the same way, open ends left out.
QString toString(const PageRange& range);

/// The sentence for a range that lies behind the last of `pages` pages.
QString noSuchPage(const PageRange& range, int pages);

} // namespace labelcut
