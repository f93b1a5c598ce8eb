// The command line: application objects for commands that show or draw widgets.
#pragma once

#include <QApplication>

#include <memory>

namespace labelcut {

/// Chooses the toolkit's offscreen platform when there is neither a display nor a choice.
void useOffscreenWithoutDisplay();

/// Keeps to itself what Qt says of a session without XDG_RUNTIME_DIR, such as a script's: it then
/// takes a folder of its own, and nobody has anything to do about it.
void dropRuntimeFolderNotice();

/// The user interface's language for everything that is asked from here on: texts of Labelcut and
/// its plug-ins, and what a PPD says. To be called before any application object exists.
/// @param language  an ISO 639 code, with a country where it matters: "de", "zh_CN".
void useLanguage(const QString& language);

} // namespace labelcut
