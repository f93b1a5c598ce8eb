// Core: one call after another away from the caller's thread, each given up when it is not
// wanted any more.
#pragma once

#include <QObject>

#include <functional>
#include <memory>

#include "host/core/call_limits.h"

namespace labelcut {

/// Runs at most one wanted call at a time, each on a thread of its own, so that one that is slow to
/// end holds up none that follows. Belongs to one thread, whose event loop receives what calls
/// tell. None of its functions waits.
///
/// Calls that were given up may still be running for a fraction of a second; the application
/// object's destructor waits for them, up to kFarewell.
class BackgroundCall {
public:
    static constexpr int kFarewell = 2'000; ///< Milliseconds; far more than ending one takes.

    /// The running call's link to the one who made it; copied at will, of any thread.
    class Link {
    public:
        /// Runs `report` on the caller's thread later, unless the call has been dropped by then.
        void tell(std::function<void()> report) const;
        /// For the call's limits; lives as long as the link.
        const CancelFlag& cancelFlag() const;
        bool isCancelled() const { return cancelFlag().isCancelled(); }
        /// Waits. @return false at once when cancelled.
        bool sleep(int milliseconds) const;

    private:
        friend class BackgroundCall;
        struct State;
        std::shared_ptr<State> mState;
    };
    using Work = std::function<void(const Link&)>;

    /// @param owner  borrowed; lives as long as this object, whose thread is its.
    explicit BackgroundCall(QObject* owner)
        : mOwner(owner) {}
    ~BackgroundCall() { drop(); }
    BackgroundCall(const BackgroundCall&) = delete;
    BackgroundCall& operator=(const BackgroundCall&) = delete;

    /// Drops the earlier call and runs `work`, which must own all that it uses.
    void start(Work work);
    /// Ends the call soon; it can still tell.
    void cancel();
    /// The same, and from here on it tells nothing, not even what it told already and was not yet
    /// delivered.
    void drop();

    /// Waits for the calls that are still running, up to kFarewell; for a process that ends without
    /// its application object being destroyed.
    static void farewell();

private:
    QObject* mOwner;
    Link mLink;
};

} // namespace labelcut
