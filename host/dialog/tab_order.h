// The dialog: where the Tab key goes, and what has the focus is in sight.
#pragma once

#include <vector>

class QWidget;

namespace labelcut {

/// Moves the focus to the next place where the Tab key stops, or to the one before; behind the last
/// comes the first.
/// @param parts  the window's, in the order in which they are read; null ones are passed over.
/// @return false: there is no such place.
bool moveFocus(const QWidget& window, const std::vector<QWidget*>& parts, bool next);

/// From here on, whatever in the window is given the focus is scrolled into sight, unless a mouse
/// gave it: that would pull it away from under the pointer.
void keepFocusInSight(QWidget& window);

} // namespace labelcut
