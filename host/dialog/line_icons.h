// The dialog: its own small icons, for desktops whose icon theme lacks them.
#pragma once

#include <QIcon>

namespace labelcut {

enum class LineIcon {
    Back,    ///< An arrow that turns back: to the default.
    Remove,  ///< A bin.
    Dismiss, ///< A cross.
    Turn,    ///< A quarter of a turn, clockwise.
};

/// The icon theme's icon, or one drawn in the colour of the text on buttons, sharp at every scale.
/// Nothing is read or drawn before the icon is painted.
QIcon lineIcon(LineIcon icon);

} // namespace labelcut
