// Core: names of files, which are bytes, as texts that lose none of them.
#pragma once

#include <QByteArray>
#include <QString>

#include <string>

namespace labelcut {

/// A name as a text from which bytesOfName() gets the same bytes again. What is UTF-8 becomes its
/// characters, whatever the locale; each other byte, 0x80 to 0xFF, a half of a character of its
/// own, U+DC80 to U+DCFF, which harmless() shows as U+FFFD.
/// @param bytes  as the system has them, not terminated, of any length; no byte is skipped, not
///               even a byte order mark.
QString nameFromBytes(const QByteArray& bytes);
/// The same for a word of the command line.
QString nameFromWord(const std::string& word);

/// The bytes of a name that nameFromBytes() gave, or of any other text in UTF-8. Halves of
/// characters that stand for no byte become U+FFFD.
QByteArray bytesOfName(const QString& name);

/// The same for the system's calls. @return nothing for a name that no file can have: one that is
/// empty or has a NUL, at which those calls would stop reading.
QByteArray systemName(const QString& name);

/// The name from the root on, without "." and "..", of one that counts from the current folder.
/// Where that folder is gone, the name as it is.
QString absoluteName(const QString& name);

} // namespace labelcut
