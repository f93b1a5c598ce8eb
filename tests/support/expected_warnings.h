// Test support: warnings of Qt fail the running test unless they were announced.
#pragma once

#include <QRegularExpression>
#include <QString>

namespace labelcut::test {

/// While one of these lives, warnings that match its pattern are expected; at its end at least one
/// must have arrived, or the test fails.
class ExpectedWarning {
public:
    explicit ExpectedWarning(const QString& pattern);
    ~ExpectedWarning();
    ExpectedWarning(const ExpectedWarning&) = delete;
    ExpectedWarning& operator=(const ExpectedWarning&) = delete;

    bool matches(const QString& message);

private:
    QRegularExpression mPattern;
    int mSeen = 0;
};

/// Routes Qt's messages into failures of the running test.
void installWarningTrap();

} // namespace labelcut::test
