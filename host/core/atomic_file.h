// Core: a file that is either whole or not there.
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

#include "host/core/call_limits.h"
#include "host/core/result.h"

namespace labelcut {

/// Where the bytes of a file go. Once a byte was refused nothing more is taken.
class FileSink {
public:
    /// @param descriptor  borrowed, open for writing; it may be one that does not wait.
    /// @param cancel  borrowed; may be null. Ends the waiting for a pipe that nobody empties.
    explicit FileSink(int descriptor, const CancelFlag* cancel = nullptr)
        : mDescriptor(descriptor)
        , mCancel(cancel) {}

    void write(const QByteArray& bytes);
    /// Hands on what is not yet in the file. @return isWhole()
    bool flush();
    /// Bytes taken so far.
    qint64 size() const { return mSize; }
    bool isWhole() const { return mReason.isEmpty(); }
    /// Why it is not whole, in the system's words.
    const QString& reason() const { return mReason; }

private:
    bool waitForRoom();

    int mDescriptor;
    const CancelFlag* mCancel;
    QByteArray mWaiting;
    qint64 mSize = 0;
    QString mReason;
};

/// What fills a file. @return a sentence when it cannot go on; refused bytes need none.
using FileWriter = std::function<std::optional<QString>(FileSink&)>;

/// Writes `path` through `write`, which answers a sentence when it cannot go on.
///
/// A file appears, or replaces an older one, only when everything was written; on any failure what
/// was there before is untouched. A link is followed: what it leads to is replaced, or made. A
/// device or pipe ("/dev/stdout") is written directly, there being no whole to keep; a pipe waits
/// for its reader. The failure is a sentence that names `path`.
/// @param path  a name as nameFromBytes() gives it. @param cancel  borrowed for the call; may be
/// null. Ends the waiting for a reader.
/// @return bytes written.
Result<qint64> writeWhole(const QString& path, const FileWriter& write,
                          const CancelFlag* cancel = nullptr);

/// Makes or replaces a file as a whole, to be read by its owner alone whatever the umask is.
/// @return why not, in the system's words; nothing when it was written.
std::optional<QString> writePrivately(const QString& path, const QByteArray& bytes);

} // namespace labelcut
