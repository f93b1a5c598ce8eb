// Documents: the label size that pages are laid out on, and the pages of them that are printed.
#include "host/documents/paper.h"

#include <QRegularExpression>

#include "host/texts/host_text.h"

namespace labelcut {

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
