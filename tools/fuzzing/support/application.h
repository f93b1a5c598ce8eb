// Fuzzing: the one application object of targets that have widgets.
#pragma once

class QApplication;

namespace labelcut::fuzz {

/// Offscreen and in the C locale, made by the first call. It lives as long as the process, whose
/// end runs no destructors of it.
QApplication& application();

} // namespace labelcut::fuzz
