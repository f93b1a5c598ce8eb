// The command line: what was printed, in plain words.
#include "host/cli/print_report.h"

#include <QStringList>

#include "host/core/harmless_text.h"
#include "host/settings/constraints.h"

namespace labelcut {

namespace {

QString counted(int count, const QString& one, const QString& many) {
    return QString::number(count) + u' ' + (count == 1 ? one : many);
}

QString amount(const PrintReport& report) {
    QString text = counted(report.document->pagesIn(report.pages), QStringLiteral("label"),
                           QStringLiteral("labels"));
    if (!report.pages.isEverything())
        text += QStringLiteral(" (pages %1)").arg(toString(report.pages));
    if (report.copies > 1)
        text += QStringLiteral(", %1 copies").arg(report.copies);
    return text;
}

} // namespace

QString toText(const PrintReport& report) {
    QStringList files;
    for (const QString& file : report.files)
        files << QStringLiteral("\"%1\"").arg(file);
    QStringList lines{
        QStringLiteral("Printed %1 of %2 for \"%3\" into %4, with:")
            .arg(amount(report), files.join(QStringLiteral(", ")), report.printer, report.target)};
    for (const Setting& setting : report.settings)
        lines << QStringLiteral("  ") + describe(report.ppd, setting);
    for (QString& line : lines)
        line = harmless(line);
    return lines.join(u'\n');
}

} // namespace labelcut
