// Tests of the program: one run of it.
#pragma once

#include <QStringList>

#include <functional>
#include <map>
#include <string>

namespace labelcut::test {

/// How the program is run: nothing of the test's own environment but what is needed.
struct Start {
    /// Empty: the one of the build tree.
    QString program;
    QStringList arguments;
    /// Added to the environment.
    std::map<QString, QString> environment;
    /// Empty: the test's own.
    QString folder;
    /// Called in the new process before the program starts.
    std::function<void()> prepare;
};

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs the built program to its end. A crash, and more than a minute, fail the test.
Outcome run(const Start& start);
/// The same, of arguments only.
Outcome run(const QStringList& arguments);

/// Splits at blanks: for arguments that have none themselves.
QStringList words(const char* text);

inline const QString kTapePpd = QStringLiteral(LABELCUT_SAMPLES "/tape.ppd");
inline const QString kRollPpd = QStringLiteral(LABELCUT_SAMPLES "/roll.ppd");
inline const QString kLabels = QStringLiteral(LABELCUT_SAMPLES "/labels.pdf");

} // namespace labelcut::test
