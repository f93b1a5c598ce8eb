// Core: files that are read, opened in the one way that can neither wait nor go on without end.
#pragma once

#include <QByteArray>
#include <QString>

#include <sys/types.h>

#include <utility>

#include "host/core/result.h"

namespace labelcut {

/// An open regular file. Moved, not copied; closed with this object.
class OpenedFile {
public:
    OpenedFile() = default;
    /// @param descriptor  taken over; -1: none.
    explicit OpenedFile(int descriptor)
        : mDescriptor(descriptor) {}
    ~OpenedFile();
    OpenedFile(OpenedFile&& other) noexcept
        : mDescriptor(other.release()) {}
    OpenedFile& operator=(OpenedFile&& other) noexcept {
        std::swap(mDescriptor, other.mDescriptor);
        return *this;
    }

    bool isOpen() const { return mDescriptor >= 0; }
    /// Stays this object's. -1: none.
    int descriptor() const { return mDescriptor; }
    /// From here on the caller's, who closes it.
    int release() { return std::exchange(mDescriptor, -1); }
    /// Bytes it has now; it may be growing.
    qint64 size() const;

    /// What stands in it from its begin, of which at most `limit` bytes.
    /// @param reason  receives the system's words where it cannot be read, and is left alone
    ///                otherwise.
    QByteArray read(qint64 limit, QString* reason) const;

private:
    int mDescriptor = -1;
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

/// Opens a file for reading, for callers that have sentences of their own. Never waits for the
/// other end of a pipe, and opens no device.
/// @param path  a name as nameFromBytes() gives it; links are followed.
OpenAttempt tryRegularFile(const QString& path);

/// The same. @return the failure is a sentence that names `path`.
Result<OpenedFile> openRegularFile(const QString& path);

} // namespace labelcut
