// Core: one call after another away from the caller's thread.
#include "host/core/background_call.h"

#include <QCoreApplication>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace labelcut {

namespace {

/// How many calls are running, wanted or not, in the whole program.
class Running {
public:
    static Running& all() {
        // Never destroyed: a call that outlasts the farewell may still come to its end.
        static auto* running = new Running;
        return *running;
    }
    void begin() {
        const std::lock_guard lock(mMutex);
        if (!mWaitsAtExit)
            qAddPostRoutine(&BackgroundCall::farewell);
        mWaitsAtExit = true;
        ++mCount;
    }
    void end() {
        const std::lock_guard lock(mMutex);
        --mCount;
        mEnded.notify_all();
    }
    void wait() {
        std::unique_lock lock(mMutex);
        mEnded.wait_for(lock, std::chrono::milliseconds(BackgroundCall::kFarewell),
                        [this] { return mCount == 0; });
        mWaitsAtExit = false;
    }

private:
    std::mutex mMutex;
    std::condition_variable mEnded;
    int mCount = 0;
    bool mWaitsAtExit = false;
};

constexpr std::chrono::milliseconds kNap{20};

} // namespace

struct BackgroundCall::Link::State {
    CancelFlag cancel;
    /// Guards `owner`, which is only set to null, by its own thread.
    std::mutex mutex;
    QObject* owner = nullptr;
};

void BackgroundCall::Link::tell(std::function<void()> report) const {
    const std::lock_guard lock(mState->mutex);
    if (!mState->owner)
        return;
    // Still within the lock: until it is left, the owner stays alive.
    QMetaObject::invokeMethod(
        mState->owner,
        [state = mState, report = std::move(report)] {
            // Only this thread takes the owner away, so that reading it needs no lock.
            if (state->owner)
                report();
        },
        Qt::QueuedConnection);
}

const CancelFlag& BackgroundCall::Link::cancelFlag() const {
    return mState->cancel;
}

bool BackgroundCall::Link::sleep(int milliseconds) const {
    const Deadline deadline({milliseconds, &mState->cancel});
    while (!deadline.isOver())
        std::this_thread::sleep_for(
            std::min(kNap, std::chrono::milliseconds(deadline.remaining())));
    return !isCancelled();
}

void BackgroundCall::start(Work work) {
    drop();
    mLink.mState = std::make_shared<Link::State>();
    mLink.mState->owner = mOwner;
    Running::all().begin();
    std::thread([link = mLink, work = std::move(work)]() mutable {
        work(link);
        // What the work owns goes before the program is told that it has ended.
        work = nullptr;
        link.mState.reset();
        Running::all().end();
    }).detach();
}

void BackgroundCall::cancel() {
    if (mLink.mState)
        mLink.mState->cancel.cancel();
}

void BackgroundCall::drop() {
    if (!mLink.mState)
        return;
    cancel();
    const std::lock_guard lock(mLink.mState->mutex);
    mLink.mState->owner = nullptr;
}

void BackgroundCall::farewell() {
    Running::all().wait();
}

} // namespace labelcut
