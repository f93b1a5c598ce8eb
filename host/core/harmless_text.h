// Core: texts from elsewhere, such as a file's name, made fit to be read.
#pragma once

#include <QString>

namespace labelcut {

/// Whether a screen or terminal would act on the character instead of showing it: control
/// characters, line and paragraph separators, overrides and isolates of the direction of writing.
bool isActedOn(QChar character);

/// The text with each such character, and each half of a character, as U+FFFD.
/// @param kept  characters that stay as they are, such as the line ends of a longer text.
QString harmless(const QString& text, QStringView kept = {});

} // namespace labelcut
