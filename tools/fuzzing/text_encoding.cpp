// Fuzzing: texts and bytes through the encodings, and the small readers of texts.
#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/printing/print_objects.h"
#include "platform/toolkit/int_value.h"
#include "platform/toolkit/text_encoding.h"
#include "plugins/cut_options/frame/pde_utils_method.h"
#include "plugins/cut_options/frame/pde_utils_string.h"
#include "plugins/cut_options/frame/tape_info.h"
#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/property.h"

using namespace labelcut;
using fuzz::Bytes;
using fuzz::require;

namespace {

constexpr TextEncoding kEncodings[] = {TextEncoding::Ascii, TextEncoding::Utf8,
                                       TextEncoding::MacOSRoman, TextEncoding::SystemDefault};

/// A buffer of exactly that size on the heap, so that a byte too many is noticed.
void checkBuffer(const QString& text, TextEncoding encoding, std::size_t size) {
    const std::optional<QByteArray> bytes = encodeText(text, encoding);
    std::vector<char> buffer(size, '?');
    const bool fits = bytes && static_cast<std::size_t>(bytes->size()) < size;
    require(CFStringGetCString(text, buffer, encoding) == fits, "a text that fits is written");
    if (fits)
        require(std::equal(bytes->begin(), bytes->end(), buffer.begin()) &&
                    buffer[static_cast<std::size_t>(bytes->size())] == '\0',
                "a text is written with its end");
    else
        require(buffer.empty() || buffer.front() == '\0', "what does not fit leaves nothing");
}

void checkText(const QString& text, std::size_t bufferSize) {
    for (const TextEncoding encoding : kEncodings) {
        const std::optional<QByteArray> bytes = encodeText(text, encoding);
        require(canEncode(text, encoding) == bytes.has_value(), "what can be encoded is encoded");
        require(encodedLength(text, encoding) ==
                    (bytes ? std::optional(bytes->size()) : std::nullopt),
                "a length is that of the bytes");
        require(!bytes || decodeText(*bytes, encoding) == text, "what was encoded is read back");
        checkBuffer(text, encoding, bufferSize);
    }
    require(!encodeText(text, TextEncoding::Utf8) || text.isValidUtf16(),
            "half a character is not encoded");
    require(QString::fromUtf8(encodeLossyUtf8(text)).size() <= text.size(),
            "a lossy text has no more characters");
}

void checkBytes(const QByteArray& bytes) {
    for (const TextEncoding encoding : kEncodings) {
        const std::optional<QString> text = decodeText(bytes, encoding);
        require(!text || text->isValidUtf16(), "what was decoded has whole characters");
        require(!text || encodeText(*text, encoding) == bytes, "what was decoded gives the bytes");
        const std::optional<QString> head = decodeCString(bytes.constData(), encoding);
        require(!text || bytes.contains('\0') || head == text, "a C string is its bytes");
    }
}

void checkSearch(const QString& text, const QString& part) {
    const std::optional<QString> shorter = PDEUtils_String::deleteString(text, part);
    require(shorter.has_value() == PDEUtils_String::scanString(text, part),
            "what is found can be deleted");
    require(!shorter || shorter->size() == text.size() - part.size(), "one part is deleted");
    require(PDEUtils_String::stringLengthConvertedToEncoding(text) >= 0, "a length is a number");
}

void checkReaders(const QString& text) {
    const Point point = pointFromString(text);
    require(std::isfinite(point.x) && std::isfinite(point.y), "a point has finite places");
    const std::optional<QString> scheme = PMURL(text).scheme();
    require(!scheme || (!scheme->isEmpty() && text.startsWith(*scheme + u':')),
            "a scheme is what stands before the colon");
    const std::int32_t number = intValue(text);
    require(intValue(QString::number(number)) == number, "a number is read back");
    isFixedLengthPaper(text.toUtf8().constData());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const QString text = bytes.string();
    const QString part = bytes.string();
    checkText(text, static_cast<std::size_t>(bytes.below(300)));
    checkSearch(text, part);
    checkReaders(text);
    RoundDouble(static_cast<double>(static_cast<std::int64_t>(bytes.word())) / 8);
    checkBytes(bytes.rest());
    return 0;
}
