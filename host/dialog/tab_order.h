// The dialog: where the Tab key goes.
#pragma once

#include <vector>

class QWidget;

namespace labelcut {

/// Moves the focus to the next place where the Tab key stops, or to the one before; behind the last
/// comes the first. What lies in scroll areas is scrolled into sight.
/// @param parts  the window's, in the order in which they are read; null ones are passed over.
/// @return false: there is no such place.
bool moveFocus(const QWidget& window, const std::vector<QWidget*>& parts, bool next);

} // namespace labelcut
