// Core: how long a call may take, and how it is stopped early.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>

namespace labelcut {

/// Stops calls from another thread; it may be set at any time, and stays set.
class CancelFlag {
public:
    void cancel() noexcept { std::atomic_ref(mValue).store(1); }
    bool isCancelled() const noexcept { return std::atomic_ref(mValue).load() != 0; }
    /// The form in which libcups polls it: not 0 once cancelled.
    int* raw() const noexcept { return &mValue; }

private:
    mutable int mValue = 0;
};

/// @param cancel  may be null: never.
inline bool isCancelled(const CancelFlag* cancel) {
    return cancel && cancel->isCancelled();
}

/// The limits of one call as its caller gives them.
struct CallLimits {
    /// Milliseconds for the whole call, connecting included; 0 and below: none left.
    int timeout = 10'000;
    /// Borrowed for the call; may be null.
    const CancelFlag* cancel = nullptr;
};

/// The same limits while the time runs, from construction on.
class Deadline {
public:
    explicit Deadline(const CallLimits& limits)
        : mLimits(limits)
        , mEnd(Clock::now() + std::chrono::milliseconds(limits.timeout)) {}

    bool isCancelled() const { return labelcut::isCancelled(mLimits.cancel); }
    bool isOver() const { return isCancelled() || remaining() == 0; }
    /// Milliseconds left, never negative.
    int remaining() const {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(mEnd - Clock::now());
        return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
    }
    const CallLimits& limits() const { return mLimits; }

private:
    using Clock = std::chrono::steady_clock;
    CallLimits mLimits;
    Clock::time_point mEnd;
};

} // namespace labelcut
