// Tests of what happens in the background: an event loop that shows that it keeps turning.
#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <functional>

namespace labelcut::test {

/// Milliseconds; generous, the machine may be busy and sanitizers slow.
inline constexpr int kSoon = 1'000;
inline constexpr int kLong = 30'000;

/// Turns the event loop until `isDone` or the time is over. @return whether it is done.
inline bool turnUntil(const std::function<bool()>& isDone, int timeout = kLong) {
    QElapsedTimer timer;
    timer.start();
    while (!isDone()) {
        if (timer.elapsed() >= timeout)
            return false;
        QEventLoop loop;
        QTimer::singleShot(5, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

/// Turns the event loop for so long.
inline void turnFor(int milliseconds) {
    turnUntil([] { return false; }, milliseconds);
}

/// While one lives, a timer of this thread ticks and the longest pause between two ticks is kept.
class Pulse {
public:
    static constexpr int kInterval = 10; ///< Milliseconds.

    Pulse() {
        mSince.start();
        QObject::connect(&mTimer, &QTimer::timeout, &mTimer, [this] {
            mLongest = std::max(mLongest, mSince.restart());
            ++mTicks;
        });
        mTimer.start(kInterval);
    }
    int ticks() const { return mTicks; }
    /// Milliseconds, the one now running included.
    qint64 longestPause() const { return std::max(mLongest, mSince.elapsed()); }

private:
    QTimer mTimer;
    QElapsedTimer mSince;
    qint64 mLongest = 0;
    int mTicks = 0;
};

/// How long `call` takes. Milliseconds.
inline qint64 timeOf(const std::function<void()>& call) {
    QElapsedTimer timer;
    timer.start();
    call();
    return timer.elapsed();
}

} // namespace labelcut::test
