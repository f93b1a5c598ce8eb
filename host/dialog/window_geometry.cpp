// The dialog: where the window was and how large, from one time to the next.
#include "host/dialog/window_geometry.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QWidget>

#include "host/core/atomic_file.h"
#include "host/core/private_folder.h"
#include "host/core/regular_file.h"
#include "host/core/user_folders.h"
#include "host/dialog/window_body.h"
#include "platform/toolkit/points.h"

namespace labelcut {

namespace {

constexpr char kGeometrySetting[] = "dialog/geometry";
/// Such files have some hundred. Bytes.
constexpr qint64 kLargestFile = 1 << 20;
/// The window at first: room for strip, panel, what stands beside it and, below, a message. Panels
/// are laid out in points, the rest in lines of text, and fonts differ in how many points a line
/// takes.
constexpr QSize kLines(54, 45);
constexpr QSizeF kPoints(830, 690);

/// Where the window's size is kept; empty: nowhere.
QString keptFile() {
    const std::optional<QString> folder = configurationFolder();
    return folder ? *folder + QStringLiteral("/labelcut/labelcut.ini") : QString();
}

/// What was kept, read through a file that is open already: of any name, and no pipe, for which the
/// toolkit would wait. Empty: nothing was.
QByteArray keptGeometry() {
    const OpenAttempt kept = tryRegularFile(keptFile());
    if (kept.trouble != FileTrouble::None || kept.file.size() > kLargestFile)
        return {};
    const QString path = QStringLiteral("/proc/self/fd/%1").arg(kept.file.descriptor());
    const QSettings settings(path, QSettings::IniFormat);
    return settings.value(QLatin1String(kGeometrySetting)).toByteArray();
}

} // namespace

void restoreWindow(QWidget& window) {
    const QSize points = (kPoints * points::scaleForFont(window)).toSize();
    const QSize wanted = (kLines * window.fontMetrics().height()).expandedTo(points);
    window.resize(wanted.boundedTo(roomFor(window)));
    window.restoreGeometry(keptGeometry());
}

void keepWindow(const QWidget& window) {
    const QString target = keptFile();
    // The toolkit writes, and locks, a copy that nobody else has.
    const QTemporaryDir folder;
    if (target.isEmpty() || !folder.isValid())
        return;
    const QString copy = folder.filePath(QStringLiteral("labelcut.ini"));
    writePrivately(copy, readSmallFile(target, kLargestFile).bytes);
    {
        QSettings settings(copy, QSettings::IniFormat);
        settings.setValue(QLatin1String(kGeometrySetting), window.saveGeometry());
    }
    const FileContent made = readSmallFile(copy, kLargestFile);
    if (!made.isThere || !made.reason.isEmpty())
        return;
    makePrivateFolder(target.left(target.lastIndexOf(u'/')));
    writePrivately(target, made.bytes);
}

} // namespace labelcut
