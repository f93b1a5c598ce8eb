// Test support: every set of the eight options, as bits in their fixed order.
#pragma once

#include <array>

#include "tests/support/panel_under_test.h"

namespace labelcut::test {

inline constexpr std::array<const char*, 8> kKeywords{
    "KvCutLabel", "KvCutAtEnd",   "KvMirror",      "KvAutoTapeCut",
    "KvHalfCut",  "KvChainPrint", "KvSpecialTape", "KvRemoveBlkSpace"};
inline constexpr unsigned kAllOptions = 0xFF;
inline constexpr std::size_t kCutLabelPlace = 0;
inline constexpr std::size_t kAutoCutPlace = 3;

inline bool has(unsigned set, std::size_t place) {
    return (set >> place & 1U) != 0;
}

inline QString keywordAt(std::size_t place) {
    return QLatin1String(kKeywords.at(place));
}

/// A PPD with those options. The defaults are the second of the counts 1 to 9, and "ON" for every
/// other on/off option.
/// @param autoCutIsShown  whether automatic cut has a row of its own.
inline PpdBuilder ppdWith(unsigned set, bool autoCutIsShown) {
    PpdBuilder ppd;
    if (autoCutIsShown)
        ppd.attribute("KvAutoCutObjHidden", "False");
    // Not in the panel's order: that one is the panel's own.
    for (std::size_t place = kKeywords.size(); place-- > 0;) {
        if (!has(set, place))
            continue;
        if (place == kCutLabelPlace)
            ppd.counts(1, 9, "2");
        else
            ppd.onOff(kKeywords.at(place), place % 2 == 0 ? "OFF" : "ON");
    }
    return ppd;
}

inline QString defaultAt(std::size_t place) {
    if (place == kCutLabelPlace)
        return QStringLiteral("2");
    return place % 2 == 0 ? QStringLiteral("OFF") : QStringLiteral("ON");
}

} // namespace labelcut::test
