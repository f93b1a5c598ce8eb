#include "platform/toolkit/system_log.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace {

struct Recorder : labelcut::SystemLogSink {
    void write(const QString& line) override { lines += line; }
    QStringList lines;
};

TEST(SystemLog, SendsLinesToTheSinkUntilAnotherIsSet) {
    Recorder first;
    Recorder second;
    labelcut::SystemLogSink* const before = labelcut::setSystemLogSink(&first);
    labelcut::systemLog(QStringLiteral("one"));
    EXPECT_EQ(labelcut::setSystemLogSink(&second), &first);
    labelcut::systemLog(QStringLiteral("two %s"));
    EXPECT_EQ(labelcut::setSystemLogSink(before), &second);

    EXPECT_EQ(first.lines, QStringList{QStringLiteral("one")});
    EXPECT_EQ(second.lines, QStringList{QStringLiteral("two %s")});
}

} // namespace
