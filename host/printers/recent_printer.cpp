// Printers: which queue was used last.
#include "host/printers/recent_printer.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>

#include "host/core/private_folder.h"
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

    makePrivateFolder(QFileInfo(path).path());
    QSaveFile file(path);
    const bool isOpen = file.open(QIODevice::WriteOnly) &&
                        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    // A commit alone passes over what fails while the last bytes leave the buffer.
    if (!isOpen || file.write(bytes) != bytes.size() || !file.flush() || !file.commit())
        return Error{ErrorKind::Other,
                     hostText("PrinterNotRemembered").arg(path, file.errorString())};
    return Done();
}

} // namespace

QString recentPrinterFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/labelcut/recent-printer.json");
}

QString recentQueue(const QString& file) {
    QFile source(file);
    if (!QFileInfo(file).isFile() || !source.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject root = QJsonDocument::fromJson(source.read(kMaxFileSize)).object();
    return root.value(kQueueKey).toString();
}

Result<Done> rememberQueue(const QString& name, const QString& file) {
    return write(name, file);
}

} // namespace labelcut
