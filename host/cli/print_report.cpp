// The command line: what was printed, in plain words.
#include "host/cli/print_report.h"

#include <QStringList>

#include "host/cli/runner.h"
#include "host/core/harmless_text.h"
#include "host/settings/constraints.h"

namespace labelcut {

namespace {

QString counted(int count, const QString& one, const QString& many) {
    return QString::number(count) + u' ' + (count == 1 ? one : many);
}

QString amountOf(const PrintReport& report) {
    const Amount& amount = report.order->amount;
    QString text = counted(amount.pages.countIn(report.document->pages()), QStringLiteral("label"),
                           QStringLiteral("labels"));
    if (!amount.pages.isEverything())
        text += QStringLiteral(" (pages %1)").arg(toString(amount.pages));
    if (amount.isReversed)
        text += QStringLiteral(", last page first");
    if (amount.copies > 1)
        text += QStringLiteral(", %1 copies%2")
                    .arg(QString::number(amount.copies),
                         amount.isCollated ? QString() : QStringLiteral(" of each page in a row"));
    return text;
}

} // namespace

QString toText(const PrintReport& report) {
    QStringList files;
    for (const QString& file : report.order->amount.files)
        files << QStringLiteral("\"%1\"").arg(file);
    QStringList lines{QStringLiteral("Printed %1 of %2 for \"%3\" into %4, with:")
                          .arg(amountOf(report), files.join(QStringLiteral(", ")),
                               report.order->printerTitle, report.target)};
    for (const Setting& setting : report.order->settings)
        lines << QStringLiteral("  ") + describe(report.ppd, setting);
    for (QString& line : lines)
        line = harmless(line);
    return lines.join(u'\n');
}

void complainOfRepairs(const JobDocument& document) {
    for (const QString& file : document.repaired())
        Runner::complain(QStringLiteral("\"%1\" was damaged and had to be repaired; look whether "
                                        "the labels are complete.")
                             .arg(file));
}

} // namespace labelcut
