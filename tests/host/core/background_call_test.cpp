// Calls in the background.
#include "host/core/background_call.h"

#include <gtest/gtest.h>

#include <QThread>

#include <atomic>

#include "tests/support/event_loop.h"

namespace labelcut {

using test::turnFor;
using test::turnUntil;
using Link = BackgroundCall::Link;

namespace {

/// Says on which thread reports come and in what order.
struct Reports {
    QObject owner;
    BackgroundCall call{&owner};
    QList<int> numbers;
    QThread* thread = nullptr;

    void report(int number) {
        numbers << number;
        thread = QThread::currentThread();
    }
};

} // namespace

TEST(BackgroundCallTest, ReportsComeInOrderOnTheOwnersThread) {
    Reports reports;
    std::atomic<bool> wasElsewhere = false;
    reports.call.start([&, here = QThread::currentThread()](const Link& link) {
        wasElsewhere = QThread::currentThread() != here;
        for (int i = 1; i <= 3; ++i)
            link.tell([&reports, i] { reports.report(i); });
    });
    EXPECT_TRUE(turnUntil([&] { return reports.numbers.size() == 3; }));
    EXPECT_EQ(reports.numbers, (QList<int>{1, 2, 3}));
    EXPECT_EQ(reports.thread, QThread::currentThread());
    EXPECT_TRUE(wasElsewhere);
}

TEST(BackgroundCallTest, WhatWasToldBeforeADropIsNotHeard) {
    Reports reports;
    std::atomic<bool> isTold = false;
    reports.call.start([&](const Link& link) {
        link.tell([&] { reports.report(1); });
        isTold = true;
    });
    while (!isTold) // the event loop stands still
        QThread::msleep(1);
    reports.call.drop();
    turnFor(50);
    EXPECT_EQ(reports.numbers, QList<int>());
}

TEST(BackgroundCallTest, ACancelledCallCanStillTell) {
    Reports reports;
    reports.call.start([&](const Link& link) {
        const bool sleptWell = link.sleep(test::kLong);
        link.tell([&reports, sleptWell] { reports.report(sleptWell ? 1 : 2); });
    });
    EXPECT_LT(test::timeOf([&] { reports.call.cancel(); }), test::kSoon);
    EXPECT_TRUE(turnUntil([&] { return !reports.numbers.isEmpty(); }, test::kSoon));
    EXPECT_EQ(reports.numbers, QList<int>{2});
}

TEST(BackgroundCallTest, ANewCallDoesNotWaitForAnOldOneThatIsDeaf) {
    Reports reports;
    std::atomic<bool> mayEnd = false;
    std::atomic<bool> hasEnded = false;
    reports.call.start([&](const Link& link) {
        while (!mayEnd)
            QThread::msleep(5);
        link.tell([&] { reports.report(1); });
        hasEnded = true;
    });
    reports.call.start([&](const Link& link) { link.tell([&] { reports.report(2); }); });
    EXPECT_TRUE(turnUntil([&] { return !reports.numbers.isEmpty(); }, test::kSoon));
    mayEnd = true;
    EXPECT_TRUE(turnUntil([&] { return hasEnded.load(); }, test::kSoon));
    turnFor(20);
    EXPECT_EQ(reports.numbers, QList<int>{2});
}

TEST(BackgroundCallTest, TheOwnersEndDoesNotWait) {
    std::atomic<bool> wasCancelled = false;
    std::atomic<bool> hasEnded = false;
    auto reports = std::make_unique<Reports>();
    reports->call.start([&, raw = reports.get()](const Link& link) {
        wasCancelled = !link.sleep(test::kLong);
        link.tell([raw] { raw->report(1); });
        hasEnded = true;
    });
    EXPECT_LT(test::timeOf([&] { reports.reset(); }), test::kSoon);
    EXPECT_TRUE(turnUntil([&] { return hasEnded.load(); }, test::kSoon));
    EXPECT_TRUE(wasCancelled);
    turnFor(20);
}

TEST(BackgroundCallTest, SleepLastsAsLongAsItSays) {
    Reports reports;
    QElapsedTimer timer;
    timer.start();
    reports.call.start([&](const Link& link) {
        const bool sleptWell = link.sleep(100);
        link.tell([&reports, sleptWell] { reports.report(sleptWell ? 1 : 2); });
    });
    EXPECT_TRUE(turnUntil([&] { return !reports.numbers.isEmpty(); }));
    EXPECT_GE(timer.elapsed(), 100);
    EXPECT_EQ(reports.numbers, QList<int>{1});
}

} // namespace labelcut
