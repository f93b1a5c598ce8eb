// Test support: warnings of Qt fail the running test unless they were announced.
#pragma once

#include <QRegularExpression>
#include <QString>

namespace labelcut::test {

/// While one of these lives, warnings that match its pattern are expected.
class ExpectedWarning {
public:
    enum class Arrival {
        Sure,    ///< At its end at least one must have arrived, or the test fails.
        Possible ///< None need arrive.
    };
    explicit ExpectedWarning(const QString& pattern, Arrival arrival = Arrival::Sure);
    ~ExpectedWarning();
    ExpectedWarning(const ExpectedWarning&) = delete;
    ExpectedWarning& operator=(const ExpectedWarning&) = delete;

    bool matches(const QString& message);

private:
    QRegularExpression mPattern;
    Arrival mArrival;
    int mSeen = 0;
};

/// Routes Qt's messages into failures of the running test.
void installWarningTrap();

} // namespace labelcut::test
