// Worker: text in files.
#include "worker/kinds/plain_text.h"

// Macros alone: nothing of ICU is linked.
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cstddef>
#include <cstdint>

// ICU's macros narrow what they have masked before.
#pragma GCC diagnostic ignored "-Wconversion"

namespace labelcut::worker {

namespace {

using namespace std::string_view_literals;

constexpr char32_t kNone = 0xffffffff;
constexpr char32_t kLastCharacter = 0x10ffff;

bool isOddControl(char32_t c) {
    const bool isControl = c < 0x20 || (c >= 0x7f && c < 0xa0);
    return isControl && c != U'\t' && c != U'\n' && c != U'\r' && c != U'\f';
}

/// The next character of UTF-8; kNone when it is not whole.
char32_t takeUtf8(std::string_view& rest) {
    const auto size = static_cast<std::int64_t>(rest.size());
    std::int64_t length = 0;
    UChar32 c = 0;
    U8_NEXT(rest.data(), length, size, c);
    rest.remove_prefix(static_cast<std::size_t>(length));
    return c < 0 ? kNone : static_cast<char32_t>(c);
}

/// The next unit of `Size` bytes; kNone when there is no whole one.
template<std::size_t Size>
char32_t takeUnit(std::string_view& rest, bool isBigEndian) {
    if (rest.size() < Size)
        return kNone;
    char32_t unit = 0;
    for (std::size_t i = 0; i < Size; ++i)
        unit = unit << 8 | static_cast<unsigned char>(rest[isBigEndian ? i : Size - 1 - i]);
    rest.remove_prefix(Size);
    return unit;
}

/// The next character of UTF-16.
char32_t takeUtf16(std::string_view& rest, bool isBigEndian) {
    const char32_t first = takeUnit<2>(rest, isBigEndian);
    if (first == kNone || !U_IS_SURROGATE(first))
        return first;
    const char32_t second = takeUnit<2>(rest, isBigEndian);
    if (!U16_IS_LEAD(first) || second == kNone || !U16_IS_TRAIL(second))
        return kNone;
    return U16_GET_SUPPLEMENTARY(first, second);
}

char32_t takeUtf32(std::string_view& rest, bool isBigEndian) {
    const char32_t c = takeUnit<4>(rest, isBigEndian);
    return c > kLastCharacter || U_IS_SURROGATE(c) ? kNone : c;
}

void append(std::u16string& text, char32_t c) {
    if (U_IS_BMP(c)) {
        text.push_back(static_cast<char16_t>(c));
        return;
    }
    text.push_back(static_cast<char16_t>(U16_LEAD(c)));
    text.push_back(static_cast<char16_t>(U16_TRAIL(c)));
}

template<typename Take>
std::optional<std::u16string> decoded(std::string_view rest, Take take) {
    std::u16string text;
    text.reserve(rest.size());
    while (!rest.empty()) {
        const char32_t c = take(rest);
        if (c == kNone || isOddControl(c))
            return std::nullopt;
        append(text, c);
    }
    return text;
}

/// Takes the mark off the front. @return whether it was there.
bool takeMark(std::string_view& bytes, std::string_view mark) {
    if (bytes.substr(0, mark.size()) != mark)
        return false;
    bytes.remove_prefix(mark.size());
    return true;
}

} // namespace

std::optional<std::u16string> decodedText(std::string_view bytes) {
    // The longer marks first: one begins with the other.
    if (takeMark(bytes, "\xff\xfe\0\0"sv))
        return decoded(bytes, [](std::string_view& rest) { return takeUtf32(rest, false); });
    if (takeMark(bytes, "\0\0\xfe\xff"sv))
        return decoded(bytes, [](std::string_view& rest) { return takeUtf32(rest, true); });
    if (takeMark(bytes, "\xff\xfe"sv))
        return decoded(bytes, [](std::string_view& rest) { return takeUtf16(rest, false); });
    if (takeMark(bytes, "\xfe\xff"sv))
        return decoded(bytes, [](std::string_view& rest) { return takeUtf16(rest, true); });
    takeMark(bytes, "\xef\xbb\xbf"sv);
    return decoded(bytes, takeUtf8);
}

} // namespace labelcut::worker
