// The dialog: disabled texts that can be read whatever the desktop's colours are.
#pragma once

#include <QPalette>

class QWidget;

namespace labelcut {

/// The palette with disabled texts at a contrast of at least 3:1 to what they stand on; colours
/// that have that are left alone. The colours of enabled texts set the direction, so that disabled
/// ones stay the fainter ones.
QPalette withReadableDisabledTexts(QPalette palette);

/// Gives a window that palette, now and whenever the desktop's colours change.
/// @param window  the watcher is its child.
void keepDisabledTextsReadable(QWidget& window);

} // namespace labelcut
