// Documents: the files that the user names, and their bytes. What is in them, the worker tells.
#include "host/documents/documents.h"

#include <QCryptographicHash>
#include <QFile>

#include <sys/stat.h>

#include "host/core/failure.h"
#include "host/core/regular_file.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Copied at a time. Bytes.
constexpr qint64 kPiece = 1 << 18;

Error unreadable(const QString& path, const QString& reason) {
    return failure(hostText("CannotRead").arg(path, reason));
}

/// The document, open; the failure names it.
Result<OpenedFile> openDocument(const QString& path) {
    Result<OpenedFile> file = openRegularFile(path);
    if (!file)
        return file;
    if (file->size() == 0)
        return failure(hostText("IsEmpty").arg(path));
    // Before much of it was copied.
    if (file->size() > kLargestDocument)
        return tooLarge(path, kLargestDocument);
    return file;
}

/// Whether two looks at an open file found it with the same content, as far as that shows.
bool isUntouched(const struct stat& before, const struct stat& after) {
    return before.st_size == after.st_size && before.st_mtim.tv_sec == after.st_mtim.tv_sec &&
           before.st_mtim.tv_nsec == after.st_mtim.tv_nsec;
}

} // namespace

Error tooLarge(const QString& about, qint64 limit) {
    return failure(hostText("DocumentTooLarge").arg(about, QString::number(limit >> 20)));
}

Result<DocumentCopy> copyDocument(const QString& path, const QString& target,
                                  const CancelFlag* cancel, CopyDigest digest) {
    const Result<OpenedFile> opened = openDocument(path);
    if (!opened)
        return opened.error();
    QFile source;
    if (!source.open(opened->descriptor(), QIODevice::ReadOnly))
        return unreadable(path, source.errorString());
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
    QCryptographicHash hash(QCryptographicHash::Sha256);
    qint64 size = 0;
    for (QByteArray piece = source.read(kPiece); !piece.isEmpty(); piece = source.read(kPiece)) {
        if (isCancelled(cancel))
            return cancelled();
        if (digest == CopyDigest::Taken)
            hash.addData(piece);
        size += piece.size();
        if (size > kLargestDocument)
            return tooLarge(path, kLargestDocument);
        if (copy.write(piece) != piece.size())
            return cannotWrite();
    }
    if (source.error() != QFileDevice::NoError)
        return unreadable(path, source.errorString());
    fstat(source.handle(), &after);
    if (!isUntouched(before, after))
        return failure(hostText("DocumentChanging").arg(path));
    return DocumentCopy{target, digest == CopyDigest::Taken ? hash.result() : QByteArray()};
}

} // namespace labelcut
