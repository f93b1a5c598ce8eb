// The dialog: where the window was and how large, from one time to the next.
#include "host/dialog/window_geometry.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QWidget>

#include "host/core/private_folder.h"
#include "host/dialog/window_body.h"
#include "platform/toolkit/points.h"

namespace labelcut {

namespace {

constexpr char kGeometrySetting[] = "dialog/geometry";
/// The window at first: room for a panel and, below it, for a message. Panels are laid out in
/// points, the rest in lines of text, and fonts differ in how many points a line takes.
constexpr QSize kLines(39, 29);
constexpr QSizeF kPoints(600, 522);

QSettings settings() {
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("labelcut"),
                     QStringLiteral("labelcut"));
}

} // namespace

void restoreWindow(QWidget& window) {
    const QSize points = (kPoints * points::scaleForFont(window)).toSize();
    const QSize wanted = (kLines * window.fontMetrics().height()).expandedTo(points);
    window.resize(wanted.boundedTo(roomFor(window)));
    window.restoreGeometry(settings().value(QLatin1String(kGeometrySetting)).toByteArray());
}

void keepWindow(const QWidget& window) {
    QSettings kept = settings();
    makePrivateFolder(QFileInfo(kept.fileName()).path());
    kept.setValue(QLatin1String(kGeometrySetting), window.saveGeometry());
    kept.sync();
    QFile::setPermissions(kept.fileName(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

} // namespace labelcut
