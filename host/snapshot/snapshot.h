// Pictures of the panel, made without a display.
#pragma once

#include <QImage>

class QApplication;
class QWidget;

namespace labelcut {

/// How a picture is made.
struct SnapshotLook {
    /// Pixels per point; 1 to 4.
    double scale = 1.0;
    bool dark = false;
};

/// Gives the application the look that pictures are made in: one style and palette on every
/// machine, light or dark.
void setSnapshotLook(const SnapshotLook& look);

/// The widget as it would be seen, with a margin around it, on the window's background.
/// @param widget  laid out at its own size; need not be shown.
QImage takeSnapshot(QWidget& widget, const SnapshotLook& look);

} // namespace labelcut
