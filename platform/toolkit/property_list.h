// Toolkit: property lists, the typed trees that settings and tickets are stored as, in XML.
//
// What XML names them        what they are here
//   dict                     QVariantMap
//   array                    QVariantList
//   string                   QString
//   integer                  qlonglong; qulonglong above its range
//   real                     double
//   true, false              bool
//   data                     QByteArray
//   date                     QDateTime in UTC
//
// Both functions may be called from any thread; they share nothing and never throw.
#pragma once

#include <QByteArray>
#include <QVariant>

#include <optional>

namespace labelcut {

/// @name Limits of a list, the same for reading and writing
/// A ticket can come from anybody, so that reading one has to end soon and in little memory.
/// @{
/// Bytes of the whole document: a ticket has some hundred, a full set of print settings some
/// ten thousand.
inline constexpr qsizetype kPropertyListMaxBytes = 4 * 1024 * 1024;
/// Levels of arrays and dictionaries within each other.
inline constexpr int kPropertyListMaxDepth = 128;
/// Values of any type, containers included, in the whole list.
inline constexpr int kPropertyListMaxNodes = 65'536;
/// Characters between the "<" and ">" of one tag or document type. The XML reader's check for
/// repeated attributes takes time that grows with the square of their number.
inline constexpr qsizetype kPropertyListMaxTagLength = 1024;
/// @}

/// Reads an XML property list, version 1.0.
///
/// The root element is "plist" and holds exactly one value. The document is UTF-8, or UTF-16 with
/// a byte order mark. It may name the usual document type, which is never fetched; one that
/// declares anything itself (entities, for example) is refused. Of a key that stands twice in a
/// dictionary the last value counts. Dates may carry milliseconds.
///
/// @param xml  the document; any bytes.
/// @return the value, of the types listed above; nothing when the bytes are no such list or pass
///         one of the limits.
std::optional<QVariant> propertyListFromXml(const QByteArray& xml);

/// Writes a dictionary as an XML property list that reads back equal.
///
/// Besides the types listed above every built-in number type is written as integer or real, and
/// a QStringList as an array of strings. Dates keep milliseconds and become UTC. Characters that
/// XML cannot hold (control characters other than tab, line feed and carriage return; U+FFFE and
/// U+FFFF; surrogates without partner) are written as U+FFFD, in keys as well: only such text
/// reads back different.
///
/// @return UTF-8 with XML declaration; empty when a value has another type (an invalid variant or
///         date included), a date lies outside the years 1 to 9999, or the list passes one of the
///         limits: what is written can always be read.
QByteArray propertyListToXml(const QVariantMap& list);

/// The value in the type it would be read back in, its text without the characters that XML
/// cannot hold; nothing when no list can hold it.
/// @param value  any value.
std::optional<QVariant> propertyListValue(const QVariant& value);

} // namespace labelcut
