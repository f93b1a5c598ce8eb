// Tests of jobs: files to print, printers to print on, and an eye for PostScript.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <vector>

#include "host/documents/job_document.h"
#include "host/settings/ppd_calls.h"
#include "tests/support/made_pdf.h"
#include "tests/support/surroundings.h"

namespace labelcut::test {

/// A folder that goes with the test, and the files in it.
class Folder {
public:
    QString path(const QString& name) const { return mFolder.filePath(name); }
    /// Writes a file. @return its path.
    QString file(const QString& name, const QByteArray& content) const;
    QStringList entries() const;

    /// A PDF of pages of the given measures in points, each with its number as text.
    QString pdf(const QString& name, const std::vector<QSizeF>& pages) const;
    /// The same file behind a user password.
    QString encryptedPdf(const QString& name) const;
    QString picture(const QString& name, const char* format, QSize size) const;

private:
    QTemporaryDir mFolder;
};

/// The sample printer for tape, or a PPD with `lines` and one paper; with its defaults marked.
ppd::File tapePrinter();
ppd::File printerWith(const QByteArray& lines);

QByteArray contentOf(const QString& path);
/// What Ghostscript says when it executes the PostScript file at `path` and then `code`.
QString executed(const QString& path, const QByteArray& code);
/// The measures of the pages of a PDF, in points, as Ghostscript sees them.
std::vector<QSizeF> pageSizes(const QString& pdf);
/// The rectangle that has ink on each page of a PDF or PostScript file, lower left origin, points.
std::vector<QRectF> inkBoxes(const QString& path);

} // namespace labelcut::test
