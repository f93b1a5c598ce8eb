// Printers: which queue was used last.
#include "host/printers/recent_printer.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "host/core/atomic_file.h"
#include "host/core/private_folder.h"
#include "host/core/regular_file.h"
#include "host/core/user_folders.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

constexpr qint64 kMaxFileSize = 64 * 1024;

const QString kQueueKey = QStringLiteral("queue");

Result<Done> write(const QString& queue, const QString& path) {
    QJsonObject root;
    root.insert(kQueueKey, queue);
    // Earlier versions look here for which of two kinds it is.
    root.insert(QStringLiteral("last"), kQueueKey);
    const QByteArray bytes = QJsonDocument(root).toJson();

    if (path.isEmpty())
        return Error{ErrorKind::Other, hostText("NoHome")};
    makePrivateFolder(path.left(path.lastIndexOf(u'/')));
    const std::optional<QString> reason = writePrivately(path, bytes);
    if (reason)
        return Error{ErrorKind::Other, hostText("PrinterNotRemembered").arg(path, *reason)};
    return Done();
}

} // namespace

QString recentPrinterFile() {
    const std::optional<QString> folder = configurationFolder();
    return folder ? *folder + QStringLiteral("/labelcut/recent-printer.json") : QString();
}

QString recentQueue(const QString& file) {
    // Only a convenience: what cannot be read is not there.
    const QByteArray bytes = readSmallFile(file, kMaxFileSize).bytes;
    const QJsonObject root = QJsonDocument::fromJson(bytes).object();
    return root.value(kQueueKey).toString();
}

Result<Done> rememberQueue(const QString& name, const QString& file) {
    return write(name, file);
}

} // namespace labelcut
