// Core: how often, in which order and in which size a job's pages are printed.
#include "host/core/handling.h"

#include <algorithm>
#include <array>

namespace labelcut {

namespace {

/// Of worker::Fit, but for Unchanged.
const std::array kFitWords{QStringLiteral("actual"), QStringLiteral("turn"),
                           QStringLiteral("scale")};

} // namespace

QString fitWord(worker::Fit fit) {
    return fit == worker::Fit::Unchanged ? QString()
                                         : kFitWords.at(static_cast<std::size_t>(fit) - 1);
}

std::optional<worker::Fit> fitNamed(const QString& word) {
    const auto found = std::ranges::find(kFitWords, word);
    if (found == kFitWords.end())
        return std::nullopt;
    return static_cast<worker::Fit>(found - kFitWords.begin() + 1);
}

} // namespace labelcut
