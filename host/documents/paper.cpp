// Documents: the label size that pages are laid out on, and the pages of them that are printed.
#include "host/documents/paper.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// "3-5", "3-" (to the end), "-5" (from the start) or "3".
std::optional<PageRange> parsePageRange(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^(\\d{0,9})(?:(-)(\\d{0,9}))?$"));
    const QRegularExpressionMatch match = form.match(text.trimmed());
    if (!match.hasMatch() || (match.captured(1).isEmpty() && match.captured(3).isEmpty()))
        return std::nullopt;
    PageRange range;
    if (!match.captured(1).isEmpty())
        range.first = match.captured(1).toInt();
    if (match.captured(2).isEmpty())
        range.last = range.first;
    else if (!match.captured(3).isEmpty())
        range.last = match.captured(3).toInt();
    if (range.first < 1 || range.last < range.first)
        return std::nullopt;
    return range;
}

QString textOf(const PageRange& range) {
    if (range.last == PageRange::kToTheEnd)
        return QStringLiteral("%1-").arg(range.first);
    if (range.first == range.last)
        return QString::number(range.first);
    return QStringLiteral("%1-%2").arg(QString::number(range.first), QString::number(range.last));
}

} // namespace

worker::Placement placedOn(const JobPaper& paper, const QSizeF& measure, worker::Fit fit) {
    const QRectF& area = paper.printable;
    return worker::placed({measure.width(), measure.height()},
                          {{paper.size.width(), paper.size.height()},
                           area.left(),
                           area.top(),
                           area.right(),
                           area.bottom()},
                          fit);
}

PageSelection::PageSelection(const PageRange& range)
    : PageSelection(std::vector{range}) {}

PageSelection::PageSelection(std::vector<PageRange> ranges) {
    std::ranges::sort(ranges, {}, &PageRange::first);
    for (const PageRange& range : ranges) {
        // The last page of all has none behind it.
        const bool touches = !mRanges.empty() && (mRanges.back().last == PageRange::kToTheEnd ||
                                                  range.first <= mRanges.back().last + 1);
        if (touches)
            mRanges.back().last = std::max(mRanges.back().last, range.last);
        else
            mRanges.push_back(range);
    }
    if (mRanges.size() == 1 && mRanges.front().isEverything())
        mRanges.clear();
}

PageRange PageSelection::hull() const {
    if (isEverything())
        return {};
    return {mRanges.front().first, mRanges.back().last};
}

int PageSelection::countIn(int pages) const {
    if (isEverything())
        return pages;
    int count = 0;
    for (const PageRange& range : mRanges)
        count += std::max(0, std::min(range.last, pages) - range.first + 1);
    return count;
}

int PageSelection::pageAt(int index) const {
    for (const PageRange& range : mRanges) {
        if (index <= range.last - range.first)
            return range.first + index;
        index -= range.last - range.first + 1;
    }
    return index + 1;
}

std::optional<PageSelection> parsePageSelection(const QString& text) {
    std::vector<PageRange> ranges;
    const QStringList parts = text.split(u',');
    if (static_cast<std::size_t>(parts.size()) > PageSelection::kMostRanges)
        return std::nullopt;
    for (const QString& part : parts) {
        const std::optional<PageRange> range = parsePageRange(part);
        if (!range)
            return std::nullopt;
        ranges.push_back(*range);
    }
    return PageSelection(std::move(ranges));
}

QString toString(const PageSelection& selection) {
    QStringList parts;
    for (const PageRange& range : selection.ranges())
        parts << textOf(range);
    return parts.join(u',');
}

QString noSuchPage(const PageSelection& selection, int pages) {
    return hostText("NoSuchPages").arg(toString(selection), QString::number(pages));
}

} // namespace labelcut
