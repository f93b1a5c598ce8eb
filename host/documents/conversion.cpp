// Documents: documents of every kind become PDF.
#include "host/documents/conversion.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgRenderer>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>

#include "host/core/failure.h"
#include "host/documents/ghostscript.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Fine enough for text on tapes of a few millimetres. Dots per inch; a multiple of 72.
constexpr int kResolution = 1440;
constexpr double kPointsPerInch = 72;
/// A label should hold about this many columns of text …
constexpr double kColumns = 24;
/// … in a size between these two. Points.
constexpr double kSmallestText = 5;
constexpr double kLargestText = 10;

/// A file, and what the user calls it.
struct Source {
    QString path;
    QString about;
};

JobPaper a4() {
    const QSizeF size(595, 842);
    return {QStringLiteral("A4"), size, QRectF(QPointF(0, 0), size).adjusted(36, 36, -36, -36)};
}

/// A PDF file of pages of one paper, drawn on in points from the paper's top left corner.
class PdfCanvas {
public:
    PdfCanvas(const QString& file, const JobPaper& paper)
        : mWriter(file) {
        mWriter.setResolution(kResolution);
        mWriter.setPageSize(
            QPageSize(paper.size, QPageSize::Point, paper.name, QPageSize::ExactMatch));
        mWriter.setPageMargins(QMarginsF());
    }
    /// @return false when the file cannot be written.
    bool begin() {
        if (!mPainter.begin(&mWriter))
            return false;
        mPainter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform |
                                QPainter::LosslessImageRendering);
        mPainter.scale(kResolution / kPointsPerInch, kResolution / kPointsPerInch);
        return true;
    }
    bool end() { return mPainter.end(); }
    QPdfWriter& writer() { return mWriter; }
    QPainter& painter() { return mPainter; }

private:
    QPdfWriter mWriter;
    QPainter mPainter;
};

Error cannotWrite(const QString& file) {
    return failure(hostText("CannotWriteTemporary").arg(file));
}

/// Moves and turns the painter so that a picture of `size` drawn into the answered rectangle fits
/// `area`, as large as it can be.
QRectF fitted(QPainter& painter, const QSizeF& size, const QRectF& area) {
    const bool turned = (size.width() > size.height()) != (area.width() > area.height()) &&
                        size.width() != size.height();
    painter.translate(area.center());
    if (turned)
        painter.rotate(90);
    const QSizeF room = turned ? area.size().transposed() : area.size();
    const QSizeF drawn = size.scaled(room, Qt::KeepAspectRatio);
    return {QPointF(-drawn.width() / 2, -drawn.height() / 2), drawn};
}

Result<QString> picture(const Source& source, const char* format, const JobPaper& paper,
                        const QString& target) {
    QImageReader reader(source.path, format);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull())
        return failure(hostText("PictureDamaged").arg(source.about, reader.errorString()));
    PdfCanvas canvas(target, paper);
    if (!canvas.begin())
        return cannotWrite(target);
    const QRectF place = fitted(canvas.painter(), image.size(), paper.printable);
    canvas.painter().drawImage(place, image);
    return canvas.end() ? Result<QString>(target) : cannotWrite(target);
}

bool isForeignPicture(const QXmlStreamReader& reader) {
    if (!reader.isStartElement() || reader.name() != u"image")
        return false;
    const QXmlStreamAttributes attributes = reader.attributes();
    return std::ranges::any_of(attributes, [](const QXmlStreamAttribute& attribute) {
        return attribute.name() == u"href" && !attribute.value().startsWith(u"data:");
    });
}

/// The drawing without what it would fetch from other files.
QByteArray selfContained(const QByteArray& svg) {
    QByteArray kept;
    QXmlStreamReader reader(svg);
    QXmlStreamWriter writer(&kept);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.hasError())
            return svg; // damaged drawings are refused by whoever draws them
        if (isForeignPicture(reader))
            reader.skipCurrentElement();
        else
            writer.writeCurrentToken(reader);
    }
    return kept;
}

Result<QString> drawing(const Source& source, const JobPaper& paper, const QString& target) {
    const Result<QByteArray> bytes = readDocument(source.path);
    if (!bytes)
        return bytes.error();
    QSvgRenderer renderer(selfContained(*bytes));
    if (!renderer.isValid() || renderer.viewBoxF().isEmpty())
        return failure(hostText("DrawingDamaged").arg(source.about));
    PdfCanvas canvas(target, paper);
    if (!canvas.begin())
        return cannotWrite(target);
    const QRectF place = fitted(canvas.painter(), renderer.viewBoxF().size(), paper.printable);
    renderer.render(&canvas.painter(), place);
    return canvas.end() ? Result<QString>(target) : cannotWrite(target);
}

QFont textFont(double printableWidth) {
    QFont font(QStringLiteral("monospace"));
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    constexpr double kWidthToHeight = 0.6;
    font.setPointSizeF(
        std::clamp(printableWidth / kColumns / kWidthToHeight, kSmallestText, kLargestText));
    return font;
}

/// Each form feed becomes a paragraph that starts a page; a line end at the very end is no line.
void fill(QTextDocument& document, QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    if (text.endsWith(u'\n') || text.endsWith(u'\f'))
        text.chop(1);
    QTextCursor cursor(&document);
    const QStringList pages = text.split(u'\f');
    for (const QString& page : pages) {
        if (&page != &pages.front()) {
            QTextBlockFormat format;
            format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            cursor.insertBlock(format);
        }
        const QStringList lines = page.split(u'\n');
        for (const QString& line : lines) {
            if (&line != &lines.front())
                cursor.insertBlock(QTextBlockFormat());
            cursor.insertText(line);
        }
    }
}

void drawPages(PdfCanvas& canvas, const QTextDocument& document, const QRectF& area) {
    QPainter& painter = canvas.painter();
    const QSizeF pageSize = document.pageSize();
    const double toPoints = kPointsPerInch / kResolution;
    for (int page = 0; page < document.pageCount(); ++page) {
        if (page > 0)
            canvas.writer().newPage();
        painter.save();
        painter.translate(area.topLeft());
        painter.scale(toPoints, toPoints);
        const QRectF view(QPointF(0, page * pageSize.height()), pageSize);
        painter.translate(-view.topLeft());
        painter.setClipRect(view);
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = view;
        context.palette.setColor(QPalette::Text, Qt::black);
        document.documentLayout()->draw(&painter, context);
        painter.restore();
    }
}

Result<QString> plainText(const Source& source, const JobPaper& paper, const QString& target) {
    const Result<QByteArray> bytes = readDocument(source.path);
    if (!bytes)
        return bytes.error();
    const std::optional<QString> text = decodedText(*bytes);
    if (!text)
        return failure(hostText("TextChanged").arg(source.about));
    PdfCanvas canvas(target, paper);
    if (!canvas.begin())
        return cannotWrite(target);
    QTextDocument document;
    document.documentLayout()->setPaintDevice(&canvas.writer());
    document.setDocumentMargin(0);
    document.setDefaultFont(textFont(paper.printable.width()));
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document.setDefaultTextOption(option);
    fill(document, *text);
    document.setPageSize(paper.printable.size() * (kResolution / kPointsPerInch));
    drawPages(canvas, document, paper.printable);
    return canvas.end() ? Result<QString>(target) : cannotWrite(target);
}

Result<QString> postScript(const Source& source, const QString& folder, const QString& name,
                           const CancelFlag* cancel) {
    GhostscriptRun run;
    run.about = hostText("Quoted").arg(source.about);
    run.switches = {QStringLiteral("-sDEVICE=pdfwrite"), QStringLiteral("-dEPSCrop"),
                    QStringLiteral("-dAutoRotatePages=/None")};
    run.inputs = {QFileInfo(source.path).absoluteFilePath()};
    run.folder = folder;
    run.output = name + QStringLiteral(".pdf");
    run.cancel = cancel;
    return runGhostscript(run);
}

} // namespace

Result<QString> convertToPdf(const QString& path, const QString& about, DocumentKind kind,
                             const std::optional<JobPaper>& paper, const QString& folder,
                             const QString& name, const CancelFlag* cancel) {
    const JobPaper target = paper ? *paper : a4();
    const QString file = QDir(folder).filePath(name + QStringLiteral(".pdf"));
    const Source source{path, about};
    switch (kind) {
    case DocumentKind::PDF:
        return path;
    case DocumentKind::PostScript:
        return postScript(source, folder, name, cancel);
    case DocumentKind::PNG:
        return picture(source, "png", target, file);
    case DocumentKind::JPEG:
        return picture(source, "jpeg", target, file);
    case DocumentKind::SVG:
        return drawing(source, target, file);
    case DocumentKind::PlainText:
        return plainText(source, target, file);
    }
    return failure(hostText("KindNotPrinted").arg(about));
}

} // namespace labelcut
