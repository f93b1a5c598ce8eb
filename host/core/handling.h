// Core: how often, in which order and in which size a job's pages are printed.
#pragma once

#include <QString>

#include <optional>

#include "worker/protocol/page_fit.h"

namespace labelcut {

/// What presets keep of an amount, whichever documents and pages it is about.
struct Handling {
    /// 1 to kMaxCopies, see copies.h.
    int copies = 1;
    /// The last page first.
    bool isReversed = false;
    /// A whole set, then the next; otherwise every copy of a page, then the next page.
    bool isCollated = true;
    worker::Fit fit = worker::Fit::Unchanged;

    bool operator==(const Handling&) const = default;
};

/// "actual", "turn" and "scale", as they are typed and kept; empty for Unchanged.
QString fitWord(worker::Fit fit);
/// Nothing for any other word.
std::optional<worker::Fit> fitNamed(const QString& word);

} // namespace labelcut
