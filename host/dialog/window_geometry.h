// The dialog: where the window was and how large, from one time to the next.
#pragma once

class QWidget;

namespace labelcut {

/// The size and place that were kept last; the first time, a size with room for a panel and a
/// message, as far as the screen has it.
void restoreWindow(QWidget& window);
/// Keeps size and place, in a file and folder that are the user's alone.
void keepWindow(const QWidget& window);

} // namespace labelcut
