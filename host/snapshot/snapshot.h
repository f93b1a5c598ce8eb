// Pictures of the panels, made without a display.
#pragma once

#include <QImage>

#include "host/core/result.h"
#include "host/printers/opened_printer.h"

class QWidget;

namespace labelcut {

/// Gives the application the look that pictures are made in: one style and palette on every
/// machine, light or dark.
void setSnapshotLook(bool dark);

/// The widget as it would be seen, with a margin around it, on the window's background, at the
/// screen's scale. @param widget  laid out at its own size; need not be shown.
QImage takeSnapshot(QWidget& widget);

/// One picture of all panels of a printer, below each other.
/// @param printer  with what is wanted chosen; none of its panels has a view yet.
/// @return the failure is a sentence: no panel for this printer, or a panel without view.
Result<QImage> takePanelSnapshot(OpenedPrinter& printer);

} // namespace labelcut
