// Our printing framework: its sentences, in the running language.
#pragma once

#include <QString>

namespace labelcut {

/// The text for `key` in the language of the user interface, English when that has none. Texts
/// stand in texts.json; "%1" and so on are places for QString::arg(), all filled in by one call, so
/// that a "%2" within a name is left alone. May be called on any thread.
QString printingText(const char* key);

} // namespace labelcut
