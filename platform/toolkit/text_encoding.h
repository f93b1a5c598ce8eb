// Toolkit: text encodings, strictly: what cannot be converted without loss is not converted.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace labelcut {

enum class TextEncoding {
    Ascii,
    Utf8,
    MacOSRoman,
    /// The locale's encoding: UTF-8 in practice, since Qt insists on a UTF-8 locale.
    SystemDefault,
};

/// The bytes of `text`, without a byte-order mark of our making; nothing when a character of it
/// (a lone surrogate, for one) has no place in the encoding.
std::optional<QByteArray> encodeText(const QString& text, TextEncoding encoding);

/// UTF-8 for people to read: each character that cannot be converted becomes one "?".
QByteArray encodeLossyUtf8(const QString& text);

/// How many bytes encodeText() would give; nothing when it would give nothing.
std::optional<qsizetype> encodedLength(const QString& text, TextEncoding encoding);

/// Whether encodeText() would give bytes.
bool canEncode(const QString& text, TextEncoding encoding);

/// The text that `bytes` stand for; nothing when they are malformed. A leading byte-order mark is
/// kept as U+FEFF and zero bytes as U+0000. Empty bytes give an empty text that is not null.
std::optional<QString> decodeText(QByteArrayView bytes, TextEncoding encoding);

/// decodeText() of a C string; nothing for a null pointer.
/// @param bytes  ends with a zero byte.
std::optional<QString> decodeCString(const char* bytes, TextEncoding encoding);

/// Names of every encoding this machine can convert to, in the order of its list; a name's place
/// never changes while the process runs.
const std::vector<QByteArray>& availableEncodings();

/// Length in bytes of `text` in the encoding of that name, marks that the encoding itself demands
/// (a UTF-16 byte-order mark) included; nothing when the name is unknown or the text does not fit.
/// @param name  as in availableEncodings(), or another name of the same encoding.
std::optional<qsizetype> encodedLengthByName(const QString& text, const QByteArray& name);

/// Writes `text` and a terminating zero byte into `buffer`.
/// @param buffer  on failure its first byte, if it has one, becomes 0 and the rest stays as it was.
/// @return false when the text cannot be encoded or does not fit together with its terminator.
bool CFStringGetCString(const QString& text, std::span<char> buffer, TextEncoding encoding);

} // namespace labelcut
