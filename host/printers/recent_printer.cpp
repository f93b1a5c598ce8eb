// Printers: which printer was used last.
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

const QString kLastKey = QStringLiteral("last");
const QString kQueueKey = QStringLiteral("queue");
const QString kPpdKey = QStringLiteral("ppd");

Result<Done> write(const RecentPrinter& recent, const QString& path) {
    const bool isQueue = recent.kind == RecentPrinter::Kind::Queue;
    QJsonObject root;
    root.insert(kLastKey, isQueue ? kQueueKey : kPpdKey);
    root.insert(kQueueKey, recent.queue);
    root.insert(kPpdKey, recent.ppdPath);
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

RecentPrinter recentPrinter(const QString& file) {
    QFile source(file);
    if (!QFileInfo(file).isFile() || !source.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject root = QJsonDocument::fromJson(source.read(kMaxFileSize)).object();
    RecentPrinter recent;
    recent.queue = root.value(kQueueKey).toString();
    recent.ppdPath = root.value(kPpdKey).toString();
    const QString last = root.value(kLastKey).toString();
    if (last == kQueueKey && !recent.queue.isEmpty())
        recent.kind = RecentPrinter::Kind::Queue;
    else if (last == kPpdKey && !recent.ppdPath.isEmpty())
        recent.kind = RecentPrinter::Kind::PpdFile;
    return recent;
}

Result<Done> rememberQueue(const QString& name, const QString& file) {
    RecentPrinter recent = recentPrinter(file);
    recent.kind = RecentPrinter::Kind::Queue;
    recent.queue = name;
    return write(recent, file);
}

Result<Done> rememberPpdFile(const QString& path, const QString& file) {
    RecentPrinter recent = recentPrinter(file);
    recent.kind = RecentPrinter::Kind::PpdFile;
    recent.ppdPath = QFileInfo(path).absoluteFilePath();
    return write(recent, file);
}

} // namespace labelcut
