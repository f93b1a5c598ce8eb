// Tests of jobs: files to print, printers to print on, and an eye for PostScript.
#include "tests/support/job_fixtures.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>

namespace labelcut::test {

namespace {

QByteArray run(const QString& program, const QStringList& arguments, const QByteArray& input = {}) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(60000)) << qPrintable(program);
    return process.readAll();
}

} // namespace

QString Folder::file(const QString& name, const QByteArray& content) const {
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return file.fileName();
}

QStringList Folder::entries() const {
    return QDir(mFolder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
}

QString Folder::pdf(const QString& name, const std::vector<QSizeF>& pages) const {
    QList<QByteArray> objects{"<< /Type /Catalog /Pages 2 0 R >>", QByteArray(),
                              "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"};
    QByteArray kids;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const QByteArray text =
            "BT /F 12 Tf 5 5 Td (" + QByteArray::number(static_cast<int>(i) + 1) + ") Tj ET";
        kids += QByteArray::number(objects.size() + 1) + " 0 R ";
        objects << "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 " +
                       QByteArray::number(pages[i].width()) + ' ' +
                       QByteArray::number(pages[i].height()) + "] /Contents " +
                       QByteArray::number(objects.size() + 2) +
                       " 0 R /Resources << /Font << /F 3 0 R >> >> >>";
        objects << "<< /Length " + QByteArray::number(text.size()) + " >>\nstream\n" + text +
                       "\nendstream";
    }
    objects[1] = "<< /Type /Pages /Count " + QByteArray::number(static_cast<int>(pages.size())) +
                 " /Kids [" + kids + "] >>";
    return file(name, pdfOf(objects));
}

QString Folder::encryptedPdf(const QString& name) const {
    const QString open = pdf(QStringLiteral("open-") + name, {{68, 142}});
    const QByteArray said = run(
        QStringLiteral("gs"),
        {QStringLiteral("-q"), QStringLiteral("-dBATCH"), QStringLiteral("-dNOPAUSE"),
         QStringLiteral("-sDEVICE=pdfwrite"), QStringLiteral("-sOwnerPassword=o"),
         QStringLiteral("-sUserPassword=u"), QStringLiteral("-dEncryptionR=3"),
         QStringLiteral("-dKeyLength=128"), QStringLiteral("-sOutputFile=") + path(name), open});
    EXPECT_TRUE(QFile::exists(path(name))) << said.toStdString();
    return path(name);
}

QString Folder::picture(const QString& name, const char* format, QSize size) const {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    EXPECT_TRUE(image.save(path(name), format));
    return path(name);
}

ppd::File tapePrinter() {
    ppd::File file = ppd::openFile(QStringLiteral(LABELCUT_SAMPLES "/tape.ppd"), nullptr);
    EXPECT_TRUE(file);
    ppd::markDefaults(file.get());
    return file;
}

ppd::File printerWith(const QByteArray& lines) {
    const Folder folder;
    const QString path = folder.file(
        QStringLiteral("p.ppd"),
        "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*FileVersion: \"1.0\"\n"
        "*LanguageVersion: English\n*LanguageEncoding: ISOLatin1\n*PCFileName: \"P.PPD\"\n"
        "*Product: \"(P)\"\n*PSVersion: \"(3010.000) 0\"\n*ModelName: \"P\"\n*ShortNickName: "
        "\"P\"\n"
        "*NickName: \"P\"\n*Manufacturer: \"P\"\n*LanguageLevel: \"3\"\n"
        "*OpenUI *PageSize/Size: PickOne\n*OrderDependency: 10 AnySetup *PageSize\n"
        "*DefaultPageSize: P\n"
        "*PageSize P/P: \"<</PageSize[68 142]>>setpagedevice\"\n*CloseUI: *PageSize\n"
        "*OpenUI *PageRegion/Size: PickOne\n*DefaultPageRegion: P\n"
        "*PageRegion P/P: \"<</PageSize[68 142]>>setpagedevice\"\n*CloseUI: *PageRegion\n"
        "*DefaultImageableArea: P\n*ImageableArea P/P: \"3 3 65 139\"\n"
        "*DefaultPaperDimension: P\n*PaperDimension P/P: \"68 142\"\n" +
            lines);
    ppd::OpenError error;
    ppd::File file = ppd::openFile(path, &error);
    EXPECT_TRUE(file) << error.reason.toStdString() << " in line " << error.line;
    ppd::markDefaults(file.get());
    return file;
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

QString executed(const QString& path, const QByteArray& code) {
    return QString::fromUtf8(
        run(QStringLiteral("gs"), {QStringLiteral("-q"), QStringLiteral("-dBATCH"),
                                   QStringLiteral("-dNOPAUSE"), QStringLiteral("-sDEVICE=nullpage"),
                                   path, QStringLiteral("-c"), QString::fromUtf8(code)}));
}

std::vector<QSizeF> pageSizes(const QString& pdf) {
    const QByteArray code =
        "(" + QFile::encodeName(pdf) +
        ") (r) file runpdfbegin 1 1 pdfpagecount { pdfgetpage /MediaBox get == } for";
    const QString said = QString::fromUtf8(
        run(QStringLiteral("gs"),
            {QStringLiteral("-q"), QStringLiteral("-dNODISPLAY"), QStringLiteral("-dBATCH"),
             QStringLiteral("-dNOSAFER"), QStringLiteral("-c"), QString::fromUtf8(code)}));
    std::vector<QSizeF> sizes;
    static const QRegularExpression box(
        QStringLiteral("\\[0(?:\\.0)? 0(?:\\.0)? ([0-9.]+) ([0-9.]+)\\]"));
    for (auto matches = box.globalMatch(said); matches.hasNext();) {
        const auto match = matches.next();
        sizes.emplace_back(match.captured(1).toDouble(), match.captured(2).toDouble());
    }
    return sizes;
}

std::vector<QRectF> inkBoxes(const QString& path) {
    const QString said = QString::fromUtf8(
        run(QStringLiteral("gs"),
            {QStringLiteral("-q"), QStringLiteral("-dBATCH"), QStringLiteral("-dNOPAUSE"),
             QStringLiteral("-sDEVICE=bbox"), path}));
    std::vector<QRectF> boxes;
    static const QRegularExpression box(
        QStringLiteral("%%HiResBoundingBox: ([0-9.-]+) ([0-9.-]+) ([0-9.-]+) ([0-9.-]+)"));
    for (auto matches = box.globalMatch(said); matches.hasNext();) {
        const auto match = matches.next();
        boxes.emplace_back(QPointF(match.captured(1).toDouble(), match.captured(2).toDouble()),
                           QPointF(match.captured(3).toDouble(), match.captured(4).toDouble()));
    }
    return boxes;
}

} // namespace labelcut::test
