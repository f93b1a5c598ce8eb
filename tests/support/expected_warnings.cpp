// Test support: warnings of Qt fail the running test unless they were announced.
#include "tests/support/expected_warnings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace labelcut::test {

namespace {

std::vector<ExpectedWarning*>& expectations() {
    static std::vector<ExpectedWarning*> all;
    return all;
}

void trap(QtMsgType type, const QMessageLogContext&, const QString& message) {
    std::fprintf(stderr, "%s\n", qPrintable(message));
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    const auto expects = [&](ExpectedWarning* warning) { return warning->matches(message); };
    if (!std::ranges::any_of(expectations(), expects))
        ADD_FAILURE() << "unexpected warning: " << message.toStdString();
}

} // namespace

ExpectedWarning::ExpectedWarning(const QString& pattern, Arrival arrival)
    : mPattern(pattern)
    , mArrival(arrival) {
    expectations().push_back(this);
}

ExpectedWarning::~ExpectedWarning() {
    std::erase(expectations(), this);
    const bool isMissing = mArrival == Arrival::Sure && mSeen == 0;
    EXPECT_FALSE(isMissing) << "no warning matched " << mPattern.pattern().toStdString();
}

bool ExpectedWarning::matches(const QString& message) {
    if (!mPattern.match(message).hasMatch())
        return false;
    ++mSeen;
    return true;
}

void installWarningTrap() {
    qInstallMessageHandler(trap);
}

} // namespace labelcut::test
