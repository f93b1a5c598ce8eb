// Core: a file that is either whole or not there.
#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <functional>
#include <optional>

#include "host/core/result.h"

namespace labelcut {

/// Where the bytes of a file go. Once a byte was refused nothing more is taken.
class FileSink {
public:
    /// @param device  borrowed, open for writing.
    explicit FileSink(QFileDevice& device)
        : mDevice(device) {}

    void write(const QByteArray& bytes);
    /// Bytes taken so far.
    qint64 size() const { return mSize; }
    bool isWhole() const { return mWhole; }

private:
    QFileDevice& mDevice;
    qint64 mSize = 0;
    bool mWhole = true;
};

/// What fills a file. @return a sentence when it cannot go on; refused bytes need none.
using FileWriter = std::function<std::optional<QString>(FileSink&)>;

/// Writes `path` through `write`, which answers a sentence when it cannot go on.
///
/// A file appears, or replaces an older one, only when everything was written; on any failure what
/// was there before is untouched. A device or pipe ("/dev/stdout") is written directly, there being
/// no whole to keep. The failure is a sentence that names `path`.
/// @return bytes written.
Result<qint64> writeWhole(const QString& path, const FileWriter& write);

} // namespace labelcut
