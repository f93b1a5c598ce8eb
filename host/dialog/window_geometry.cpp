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
/// The window at first: room for a panel and, below it, for a message. Panels are laid out in
/// points, the rest in lines of text, and fonts differ in how many points a line takes.
constexpr QSize kLines(39, 29);
constexpr QSizeF kPoints(600, 522);

/// Where the window's size is kept; empty: nowhere.
QString keptFile() {
    const std::optional<QString> folder = configurationFolder();
    return folder ? *folder + QStringLiteral("/labelcut/labelcut.ini") : QString();
}

/// The kept settings as a file of its own that the toolkit may read and write in its way: of the
/// kept one it would wait for a pipe, and lose a name that is no text.
class WorkingCopy {
public:
    WorkingCopy() {
        const OpenAttempt kept = tryRegularFile(keptFile());
        if (kept.trouble != FileTrouble::None || !mFolder.isValid())
            return;
        QString reason; // only a convenience: what cannot be read is not there
        writePrivately(path(), kept.file.read(kLargestFile, &reason));
    }
    QSettings settings() const { return QSettings(path(), QSettings::IniFormat); }
    void keep() const {
        const QString target = keptFile();
        const OpenAttempt made = tryRegularFile(path());
        if (target.isEmpty() || made.trouble != FileTrouble::None)
            return;
        makePrivateFolder(target.left(target.lastIndexOf(u'/')));
        QString reason;
        const QByteArray bytes = made.file.read(kLargestFile, &reason);
        if (reason.isEmpty())
            writePrivately(target, bytes);
    }

private:
    QString path() const { return mFolder.filePath(QStringLiteral("labelcut.ini")); }

    QTemporaryDir mFolder;
};

} // namespace

void restoreWindow(QWidget& window) {
    const QSize points = (kPoints * points::scaleForFont(window)).toSize();
    const QSize wanted = (kLines * window.fontMetrics().height()).expandedTo(points);
    window.resize(wanted.boundedTo(roomFor(window)));
    const WorkingCopy copy;
    window.restoreGeometry(copy.settings().value(QLatin1String(kGeometrySetting)).toByteArray());
}

void keepWindow(const QWidget& window) {
    const WorkingCopy copy;
    {
        QSettings kept = copy.settings();
        kept.setValue(QLatin1String(kGeometrySetting), window.saveGeometry());
    }
    copy.keep();
}

} // namespace labelcut
