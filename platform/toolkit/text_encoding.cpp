// Toolkit: text encodings, strictly: what cannot be converted without loss is not converted.
#include "platform/toolkit/text_encoding.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

#include <langinfo.h>

namespace labelcut {

namespace {

struct ConverterCloser {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

// ICU's own callbacks of this purpose silently drop characters that are usually invisible (a soft
// hyphen, a variation selector); these leave every error as it is.
void stopEncoding(const void*, UConverterFromUnicodeArgs*, const char16_t*, std::int32_t, UChar32,
                  UConverterCallbackReason, UErrorCode*) {}
void stopDecoding(const void*, UConverterToUnicodeArgs*, const char*, std::int32_t,
                  UConverterCallbackReason, UErrorCode*) {}

/// A converter that stops at the first character or byte sequence without a counterpart.
Converter openConverter(const char* name) {
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(name, &status));
    if (U_FAILURE(status))
        return nullptr;
    ucnv_setFromUCallBack(converter.get(), stopEncoding, nullptr, nullptr, nullptr, &status);
    ucnv_setToUCallBack(converter.get(), stopDecoding, nullptr, nullptr, nullptr, &status);
    return U_SUCCESS(status) ? std::move(converter) : nullptr;
}

Converter openConverter(TextEncoding encoding) {
    if (encoding == TextEncoding::MacOSRoman)
        return openConverter("macintosh");
    if (encoding == TextEncoding::SystemDefault) {
        if (Converter converter = openConverter(nl_langinfo(CODESET)))
            return converter;
    }
    return openConverter("UTF-8");
}

const char16_t* unitsOf(const QString& text) {
    return reinterpret_cast<const char16_t*>(text.utf16());
}

/// ICU counts in 32 bits; longer texts are refused as inconvertible.
bool isConvertibleSize(qsizetype size) {
    return size <= std::numeric_limits<std::int32_t>::max() / 8;
}

std::optional<qsizetype> lengthIn(const Converter& converter, const QString& text) {
    if (!converter || !isConvertibleSize(text.size()))
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length = ucnv_fromUChars(converter.get(), nullptr, 0, unitsOf(text),
                                                static_cast<std::int32_t>(text.size()), &status);
    if (U_FAILURE(status) && status != U_BUFFER_OVERFLOW_ERROR)
        return std::nullopt;
    return length;
}

bool isAscii(QByteArrayView bytes) {
    return std::ranges::all_of(bytes, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isAscii(const QString& text) {
    return std::ranges::all_of(text, [](QChar c) { return c.unicode() < 0x80; });
}

/// ASCII is the same in all of them; only a locale may have an encoding in which it is not.
bool beginsWithAscii(TextEncoding encoding) {
    return encoding != TextEncoding::SystemDefault;
}

} // namespace

std::optional<QByteArray> encodeText(const QString& text, TextEncoding encoding) {
    if (beginsWithAscii(encoding) && isAscii(text))
        return text.toLatin1();
    if (encoding == TextEncoding::Ascii)
        return std::nullopt;
    const Converter converter = openConverter(encoding);
    const std::optional<qsizetype> length = lengthIn(converter, text);
    if (!length)
        return std::nullopt;
    QByteArray bytes(*length, Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    ucnv_fromUChars(converter.get(), bytes.data(), static_cast<std::int32_t>(bytes.size()),
                    unitsOf(text), static_cast<std::int32_t>(text.size()), &status);
    return U_SUCCESS(status) ? std::optional(bytes) : std::nullopt;
}

QByteArray encodeLossyUtf8(const QString& text) {
    return text.toUtf8();
}

std::optional<qsizetype> encodedLength(const QString& text, TextEncoding encoding) {
    if (beginsWithAscii(encoding) && isAscii(text))
        return text.size();
    if (encoding == TextEncoding::Ascii)
        return std::nullopt;
    return lengthIn(openConverter(encoding), text);
}

bool canEncode(const QString& text, TextEncoding encoding) {
    return encodedLength(text, encoding).has_value();
}

std::optional<QString> decodeText(QByteArrayView bytes, TextEncoding encoding) {
    if (bytes.isEmpty())
        return QStringLiteral("");
    if (beginsWithAscii(encoding) && isAscii(bytes))
        return QString::fromLatin1(bytes);
    if (encoding == TextEncoding::Ascii)
        return std::nullopt;
    const Converter converter = openConverter(encoding);
    if (!converter || !isConvertibleSize(bytes.size()))
        return std::nullopt;
    // No byte becomes more than two UTF-16 units in any encoding that a locale may have.
    QString text(bytes.size() * 2, Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length =
        ucnv_toUChars(converter.get(), reinterpret_cast<char16_t*>(text.data()),
                      static_cast<std::int32_t>(text.size()), bytes.data(),
                      static_cast<std::int32_t>(bytes.size()), &status);
    if (U_FAILURE(status))
        return std::nullopt;
    text.truncate(length);
    return text;
}

std::optional<QString> decodeCString(const char* bytes, TextEncoding encoding) {
    if (!bytes)
        return std::nullopt;
    return decodeText(QByteArrayView(bytes, static_cast<qsizetype>(std::strlen(bytes))), encoding);
}

const std::vector<QByteArray>& availableEncodings() {
    static const std::vector<QByteArray> names = [] {
        std::vector<QByteArray> all;
        const std::int32_t count = ucnv_countAvailable();
        all.reserve(static_cast<std::size_t>(count));
        for (std::int32_t i = 0; i < count; ++i)
            all.emplace_back(ucnv_getAvailableName(i));
        return all;
    }();
    return names;
}

std::optional<qsizetype> encodedLengthByName(const QString& text, const QByteArray& name) {
    // ICU takes an empty name for the default encoding.
    return name.isEmpty() ? std::nullopt : lengthIn(openConverter(name.constData()), text);
}

bool CFStringGetCString(const QString& text, std::span<char> buffer, TextEncoding encoding) {
    if (buffer.empty())
        return false;
    buffer.front() = '\0';
    const std::optional<QByteArray> bytes = encodeText(text, encoding);
    if (!bytes || static_cast<std::size_t>(bytes->size()) >= buffer.size())
        return false;
    // A QByteArray is always followed by a zero byte.
    std::memcpy(buffer.data(), bytes->constData(), static_cast<std::size_t>(bytes->size()) + 1);
    return true;
}

} // namespace labelcut
