// Input fields: the sound of a refusal.
#pragma once

#include <functional>

namespace labelcut {

using Beep = std::function<void()>;

/// Sounds the desktop's beep, or calls what setSystemBeep() was given.
void systemBeep();

/// Replaces the beep from now on. @param beep  an empty function stands for the desktop's beep.
/// @return what was set before. Main thread only.
Beep setSystemBeep(Beep beep);

} // namespace labelcut
