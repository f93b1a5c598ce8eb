// The job: the paper it is made for and the pages of it that are printed.
#include "host/job/paper.h"

#include <QRegularExpression>

#include "host/texts/host_text.h"
#include "platform/printing/ppd_calls.h"

namespace labelcut {

std::optional<JobPaper> markedPaper(ppd_file_t* ppd) {
    const ppd_size_t* size = ppd::markedPageSize(ppd);
    if (!size || size->width <= 0 || size->length <= 0)
        return std::nullopt;
    JobPaper paper;
    paper.name = QString::fromUtf8(size->name);
    paper.size = QSizeF(size->width, size->length);
    const QRectF whole(QPointF(0, 0), paper.size);
    const QRectF printable(QPointF(size->left, size->length - size->top),
                           QPointF(size->right, size->length - size->bottom));
    paper.printable = printable.isValid() ? printable.intersected(whole) : whole;
    if (paper.printable.isEmpty())
        paper.printable = whole;
    return paper;
}

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

QString toString(const PageRange& range) {
    if (range.last == PageRange::kToTheEnd)
        return QStringLiteral("%1-").arg(range.first);
    if (range.first == range.last)
        return QString::number(range.first);
    return QStringLiteral("%1-%2").arg(QString::number(range.first), QString::number(range.last));
}

QString noSuchPage(const PageRange& range, int pages) {
    return hostText("NoSuchPages").arg(toString(range), QString::number(pages));
}

} // namespace labelcut
