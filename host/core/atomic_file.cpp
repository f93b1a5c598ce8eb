// Core: a file that is either whole or not there.
#include "host/core/atomic_file.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

#include "host/core/failure.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

Error cannotWrite(const QString& path, const QString& reason) {
    return failure(hostText("CannotWrite").arg(path, reason));
}

Result<qint64> writeDirectly(const QString& path, const FileWriter& write) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return cannotWrite(path, file.errorString());
    FileSink sink(file);
    if (const auto refusal = write(sink))
        return failure(*refusal);
    if (!sink.isWhole() || !file.flush())
        return cannotWrite(path, file.errorString());
    return sink.size();
}

} // namespace

void FileSink::write(const QByteArray& bytes) {
    // A device that takes only some of the bytes reports no error before it is asked again.
    for (qint64 done = 0; mWhole && done < bytes.size();) {
        const qint64 taken = mDevice.write(bytes.constData() + done, bytes.size() - done);
        mWhole = taken > 0;
        done += std::max<qint64>(taken, 0);
        mSize += std::max<qint64>(taken, 0);
    }
}

Result<qint64> writeWhole(const QString& path, const FileWriter& write) {
    const QFileInfo info(path);
    if (info.isDir())
        return failure(hostText("IsFolder").arg(path));
    if (info.exists() && !info.isFile())
        return writeDirectly(path, write);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return cannotWrite(path, file.errorString());
    FileSink sink(file);
    const std::optional<QString> refusal = write(sink);
    if (refusal || !sink.isWhole()) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return refusal ? failure(*refusal) : cannotWrite(path, reason);
    }
    // Committing overlooks a failure while the last bytes leave their buffer.
    if (!file.flush() || !file.commit())
        return cannotWrite(path, file.errorString());
    return sink.size();
}

} // namespace labelcut
