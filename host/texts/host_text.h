// Labelcut's own texts, in the running language.
#pragma once

#include <QString>

namespace labelcut {

/// The text for `key` in the language of the user interface, English when that has none.
/// Texts stand in texts.json; "%1" and so on are places for QString::arg().
QString hostText(const char* key);

/// One of two texts by a number: `one` for exactly 1, `many` otherwise, with %1 filled in.
QString hostText(const char* one, const char* many, int count);

} // namespace labelcut
