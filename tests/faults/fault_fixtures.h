// Faults: the program and the dialog in surroundings of the test's own, and what they leave there.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>

#include "tests/faults/holding_proxy.h"
#include "tests/host/dialog/dialog_fixtures.h"
#include "tests/support/one_truth.h"
#include "tests/support/private_cupsd.h"
#include "tests/support/stand_in_server.h"
#include "tests/support/surroundings.h"

namespace labelcut::test {

/// While one lives, temporary files go to a folder of the test's own.
class PrivateTemporaries {
public:
    QString path() const { return mFolder.path(); }
    /// What lies there, but for the toolkit's folder of run-time files. Sub-folders end in "/".
    QStringList entries() const;

private:
    QTemporaryDir mFolder;
    Environment mPlace{"TMPDIR", QFile::encodeName(mFolder.path())};
};

/// The program while it runs.
class RunningProgram {
public:
    /// @param environment  added to the test's own.
    explicit RunningProgram(const QStringList& arguments,
                            const std::map<QString, QString>& environment = {},
                            const QString& folder = {});
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    void signal(int number) const;
    bool isRunning() const { return mProcess.state() == QProcess::Running; }
    qint64 id() const { return mProcess.processId(); }
    /// Waits until it has ended. @return the signal that ended it, or 0 when it ended by itself.
    int endedBy(int timeout = 20'000);
    int status() const { return mProcess.exitCode(); }
    std::string out() { return mOut += mProcess.readAllStandardOutput().toStdString(); }
    std::string err() { return mErr += mProcess.readAllStandardError().toStdString(); }

private:
    QProcess mProcess;
    std::string mOut;
    std::string mErr;
};

/// A helper program of a session, such as a display; ends with this object.
class Helper {
public:
    /// @param arguments  make it write what it is reached by, and a line end, to standard output.
    Helper(const QString& program, const QStringList& arguments);
    ~Helper() { kill(); }
    Helper(const Helper&) = delete;
    Helper& operator=(const Helper&) = delete;
    QString address() const { return mAddress; }
    void kill();

private:
    QProcess mProcess;
    QString mAddress;
};

/// A display and a bus on which programs show their windows to screen readers as well.
class Desktop {
public:
    Desktop();
    Helper& display() { return mDisplay; }
    Helper& bus() { return mBus; }
    std::map<QString, QString> environment() const;
    /// Presses a button of the program's dialog by way of the bus, once that can be pressed.
    /// @param text  how the button's text begins.
    /// @return whether it was pressed.
    bool press(const RunningProgram& program, const char* text) const;
    /// The same without pressing it.
    bool waitFor(const RunningProgram& program, const char* text) const;

private:
    bool runHand(const RunningProgram& program, const char* text, const char* deed) const;

    Helper mDisplay;
    Helper mBus;
};

/// A PDF of one page and at least so many bytes. @return its path.
QString largePdf(const QString& path, int bytes);
/// PostScript that never ends. @return its path.
QString endlessPostScript(const QString& path);
/// A file of these contents. @return its path.
QString fileWith(const QString& path, const QByteArray& contents);
QByteArray contentOf(const QString& path);
/// The sample printer for tape with one text for another, in a file of its own. @return its path.
QString changedPpd(const QString& path, const QByteArray& before, const QByteArray& after);

/// What all messages of the dialog say.
std::string messagesOf(const PrintDialog& dialog);
/// Turns the event loop until the window says something that contains these words.
bool turnUntilTold(const PrintDialog& dialog, const char* words);
/// Half cut and chain printing by clicks, dark print by its pop-up.
void makeChoices(PrintDialog& dialog);
/// Presses Print; on a printer that is a PPD only, chooses `path`.
void pressPrint(PrintDialog& dialog, const QString& path = {});

} // namespace labelcut::test
