// Strip: colours by what they stand for.
#include "host/strip/strip_colours.h"

#include <QPalette>

namespace labelcut {

StripColours stripColours(const QPalette& palette) {
    const QColor text = palette.color(QPalette::WindowText);
    const QColor current = palette.color(QPalette::Highlight);
    constexpr int kMiddle = 128;
    if (palette.color(QPalette::Window).lightness() < kMiddle)
        return {0xf4f6f8, 0x16181c, 0xb8c6d4, 0x56738f, 0xd9c6ea, 0x6e8094, 0x4a4842,
                0xb9b09a, 0xff8f86, 0x9c1322, 0x8e99a8, current,  text};
    return {0xffffff, 0x1c1f24, 0x4e6178, 0xa9c4df, 0xe9dcf4, 0x5d6f84, 0xf3f1ec,
            0x857a62, 0xc01c28, 0xc01c28, 0x4a5361, current,  text};
}

} // namespace labelcut
