// Core: files that are read, opened in the one way that can neither wait nor go on without end.
#pragma once

#include <QByteArray>
#include <QString>

#include <sys/types.h>

#include "host/core/result.h"
#include "worker/protocol/descriptor.h"

namespace labelcut {

/// An open regular file. Moved, not copied; closed with this object.
class OpenedFile {
public:
    OpenedFile() = default;
    /// @param descriptor  taken over; -1: none.
    explicit OpenedFile(int descriptor)
        : mDescriptor(descriptor) {}

    bool isOpen() const { return static_cast<bool>(mDescriptor); }
    /// Stays this object's. -1: none.
    int descriptor() const { return mDescriptor.number(); }
    /// From here on the caller's, who closes it.
    int release() { return mDescriptor.release(); }
    /// Bytes it has now; it may be growing.
    qint64 size() const;

    /// What stands in it from its begin, of which at most `limit` bytes.
    /// @param reason  receives the system's words where it cannot be read, and is left alone
    ///                otherwise.
    QByteArray read(qint64 limit, QString* reason) const;

private:
    worker::Descriptor mDescriptor;
};

/// What keeps a file from being read.
enum class FileTrouble {
    None,
    Missing, ///< There is no such name, or what a link of that name leads to is not there.
    Folder,
    NotRegular, ///< A pipe, socket or device.
    Refused,    ///< The system refuses it.
};

/// What came of opening a file.
struct OpenAttempt {
    /// Open where there is no trouble.
    OpenedFile file;
    FileTrouble trouble = FileTrouble::None;
    /// Why the system refuses it, in its words; empty for all other trouble.
    QString reason;
};

/// Why the file could not be opened, as the reason in a longer sentence; for all trouble but
/// FileTrouble::None.
QString reasonOf(const OpenAttempt& attempt);

/// What stands in a small file.
struct FileContent {
    bool isThere = false;
    /// Why it is there and cannot be read, as the reason in a longer sentence; empty: it was read.
    QString reason;
    QByteArray bytes;
};

/// The whole file. @param path  a name as nameFromBytes() gives it; links are followed.
/// @param limit  bytes; a larger file is not read.
FileContent readSmallFile(const QString& path, qint64 limit);

/// Opens a file for reading, for callers that have sentences of their own. Never waits for the
/// other end of a pipe, and opens no device.
/// @param path  a name as nameFromBytes() gives it; links are followed.
OpenAttempt tryRegularFile(const QString& path);

/// The same. @return the failure is a sentence that names `path`.
Result<OpenedFile> openRegularFile(const QString& path);

} // namespace labelcut
