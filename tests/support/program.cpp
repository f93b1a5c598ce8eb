// Tests of the program: one run of it.
#include "tests/support/program.h"

#include <gtest/gtest.h>

#include <QProcess>

namespace labelcut::test {

Outcome run(const Start& start) {
    QProcess process;
    QProcessEnvironment environment;
    for (const char* kept : {"PATH", "HOME", "TMPDIR", "USER", "CUPS_SERVER", "ASAN_OPTIONS",
                             "LSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (qEnvironmentVariableIsSet(kept))
            environment.insert(QString::fromLatin1(kept), qEnvironmentVariable(kept));
    }
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    for (const auto& [name, value] : start.environment)
        environment.insert(name, value);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(start.folder);
    if (start.prepare)
        process.setChildProcessModifier(start.prepare);
    process.start(start.program.isEmpty() ? QStringLiteral(LABELCUT_PROGRAM) : start.program,
                  start.arguments);
    EXPECT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

Outcome run(const QStringList& arguments) {
    Start wanted;
    wanted.arguments = arguments;
    return run(wanted);
}

QStringList words(const char* text) {
    return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

} // namespace labelcut::test
