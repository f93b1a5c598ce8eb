// Documents: what kind of file a document is, told by its content and never by its name, and its
// bytes.
#include "host/documents/documents.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QXmlStreamReader>

#include <sys/stat.h>

#include <algorithm>

#include "host/core/failure.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Text beyond this is no label, and its layout would take minutes. Bytes.
constexpr qint64 kLargestText = 16 << 20;
/// How far into a file the marks of its kind are looked for. Bytes.
constexpr qint64 kHead = 4096;
/// Copied at a time. Bytes.
constexpr qint64 kPiece = 1 << 18;

bool isSvg(const QByteArray& head) {
    if (!head.contains("<svg") && !head.contains(":svg"))
        return false;
    QXmlStreamReader xml(head);
    return xml.readNextStartElement() && xml.name() == u"svg";
}

std::optional<DocumentKind> kindByMark(const QByteArray& head) {
    if (head.left(1024).contains("%PDF-"))
        return DocumentKind::PDF;
    if (head.startsWith("%!") || head.startsWith("\x04%!"))
        return DocumentKind::PostScript;
    if (head.startsWith("\x89PNG\r\n\x1a\n"))
        return DocumentKind::PNG;
    if (head.startsWith("\xff\xd8\xff"))
        return DocumentKind::JPEG;
    if (isSvg(head))
        return DocumentKind::SVG;
    return std::nullopt;
}

bool isOddControl(QChar c) {
    return c.category() == QChar::Other_Control && c != u'\t' && c != u'\n' && c != u'\r' &&
           c != u'\f';
}

/// Why `path` cannot even be opened as a document; nothing when it can.
std::optional<QString> reasonAgainst(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists())
        return hostText("DoesNotExist").arg(path);
    if (info.isDir())
        return hostText("IsFolder").arg(path);
    if (!info.isFile())
        return hostText("NotRegularFile").arg(path);
    return std::nullopt;
}

Error unreadable(const QFile& file) {
    return failure(hostText("CannotRead").arg(file.fileName(), file.errorString()));
}

/// Whether two looks at an open file found it with the same content, as far as that shows.
bool isUntouched(const struct stat& before, const struct stat& after) {
    return before.st_size == after.st_size && before.st_mtim.tv_sec == after.st_mtim.tv_sec &&
           before.st_mtim.tv_nsec == after.st_mtim.tv_nsec;
}

} // namespace

Result<DocumentKind> documentKind(const QString& path) {
    if (const auto reason = reasonAgainst(path))
        return failure(*reason);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(file);
    const QByteArray head = file.read(kHead);
    if (file.error() != QFileDevice::NoError)
        return unreadable(file);
    if (head.isEmpty())
        return failure(hostText("IsEmpty").arg(path));
    if (const auto kind = kindByMark(head))
        return *kind;
    if (file.size() <= kLargestText && decodedText(head + file.readAll()))
        return DocumentKind::PlainText;
    return failure(hostText("UnknownKind").arg(path));
}

bool isDrawn(DocumentKind kind) {
    return kind != DocumentKind::PDF && kind != DocumentKind::PostScript;
}

Result<DocumentCopy> copyDocument(const QString& path, const QString& target,
                                  const CancelFlag* cancel) {
    QFile source(path);
    if (!source.open(QIODevice::ReadOnly))
        return unreadable(source);
    QFile copy(target);
    const auto cannotWrite = [&copy] {
        return failure(
            hostText("CannotWriteTemporaryBecause").arg(copy.fileName(), copy.errorString()));
    };
    if (!copy.open(QIODevice::WriteOnly | QIODevice::Unbuffered,
                   QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return cannotWrite();
    struct stat before {};
    struct stat after {};
    fstat(source.handle(), &before);
    QCryptographicHash digest(QCryptographicHash::Sha256);
    for (QByteArray piece = source.read(kPiece); !piece.isEmpty(); piece = source.read(kPiece)) {
        if (cancel && cancel->isCancelled())
            return cancelled();
        digest.addData(piece);
        if (copy.write(piece) != piece.size())
            return cannotWrite();
    }
    if (source.error() != QFileDevice::NoError)
        return unreadable(source);
    fstat(source.handle(), &after);
    if (!isUntouched(before, after))
        return failure(hostText("DocumentChanging").arg(path));
    return DocumentCopy{target, digest.result()};
}

Result<QByteArray> readDocument(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(file);
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return unreadable(file);
    return bytes;
}

std::optional<QString> decodedText(const QByteArray& bytes) {
    const auto encoding = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(encoding.value_or(QStringConverter::Utf8));
    QString text = decoder.decode(bytes);
    if (decoder.hasError() || std::ranges::any_of(text, isOddControl))
        return std::nullopt;
    return text;
}

} // namespace labelcut
