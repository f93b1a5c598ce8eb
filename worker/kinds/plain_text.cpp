// Worker: text in files.
#include "worker/kinds/plain_text.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace labelcut::worker {

namespace {

using namespace std::string_view_literals;

constexpr char32_t kNone = 0xffffffff;
constexpr char32_t kLastCharacter = 0x10ffff;

bool isSurrogate(char32_t c) {
    return c >= 0xd800 && c <= 0xdfff;
}

bool isOddControl(char32_t c) {
    const bool isControl = c < 0x20 || (c >= 0x7f && c < 0xa0);
    return isControl && c != U'\t' && c != U'\n' && c != U'\r' && c != U'\f';
}

/// The next character of UTF-8 (RFC 3629), in the shortest form only; kNone when it is not whole.
char32_t takeUtf8(std::string_view& rest) {
    const auto first = static_cast<unsigned char>(rest.front());
    rest.remove_prefix(1);
    if (first < 0x80)
        return first;
    const int length = std::countl_one(first);
    if (length < 2 || length > 4)
        return kNone;
    char32_t c = first & (0x7fU >> length);
    for (int i = 1; i < length; ++i) {
        if (rest.empty() || (static_cast<unsigned char>(rest.front()) & 0xc0U) != 0x80)
            return kNone;
        c = c << 6 | (static_cast<unsigned char>(rest.front()) & 0x3fU);
        rest.remove_prefix(1);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    return c < kSmallest[length] || c > kLastCharacter || isSurrogate(c) ? kNone : c;
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

/// The next character of UTF-16 (RFC 2781).
char32_t takeUtf16(std::string_view& rest, bool isBigEndian) {
    const char32_t first = takeUnit<2>(rest, isBigEndian);
    if (first == kNone || !isSurrogate(first))
        return first;
    const char32_t second = takeUnit<2>(rest, isBigEndian);
    if (first >= 0xdc00 || second < 0xdc00 || second > 0xdfff)
        return kNone;
    return 0x10000 + ((first - 0xd800) << 10) + (second - 0xdc00);
}

char32_t takeUtf32(std::string_view& rest, bool isBigEndian) {
    const char32_t c = takeUnit<4>(rest, isBigEndian);
    return c > kLastCharacter || isSurrogate(c) ? kNone : c;
}

void append(std::u16string& text, char32_t c) {
    if (c < 0x10000) {
        text.push_back(static_cast<char16_t>(c));
        return;
    }
    text.push_back(static_cast<char16_t>(0xd800 + ((c - 0x10000) >> 10)));
    text.push_back(static_cast<char16_t>(0xdc00 + ((c - 0x10000) & 0x3ff)));
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
