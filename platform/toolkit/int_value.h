// Toolkit: the integer that a text stands for.
#pragma once

#include <QStringView>

#include <cstdint>
#include <limits>

namespace labelcut {

/// Leading blanks, an optional sign, then leading ASCII digits; whatever follows is ignored.
/// No digits give 0; values beyond 32 bits saturate.
inline std::int32_t intValue(QStringView text) {
    qsizetype i = 0;
    while (i < text.size() && text[i].isSpace())
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+'))
        negative = text[i++] == u'-';
    constexpr std::int64_t kLimit = std::int64_t{1} << 40;
    std::int64_t value = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
        if (value < kLimit)
            value = value * 10 + (text[i].unicode() - u'0');
    }
    if (negative)
        value = -value;
    if (value < std::numeric_limits<std::int32_t>::min())
        return std::numeric_limits<std::int32_t>::min();
    if (value > std::numeric_limits<std::int32_t>::max())
        return std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(value);
}

} // namespace labelcut
