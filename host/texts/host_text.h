// Labelcut's own texts, in the running language.
#pragma once

#include <QString>
#include <QStringList>

namespace labelcut {

/// The text for `key` in the language of the user interface, English when that has none.
/// Texts stand in the rooms' texts.json; "%1" and so on are places for QString::arg(), all filled
/// in by one call, so that a "%2" within a name is left alone. May be called on any thread.
QString hostText(const char* key);

/// One of two texts by a number: `one` for exactly 1, `many` otherwise, with %1 filled in.
QString hostText(const char* one, const char* many, int count);

/// Whole sentences behind each other, as the language sets them.
QString joinedSentences(const QStringList& sentences);

} // namespace labelcut
