// Documents: Ghostscript as a program beside us, without a shell and without rights.
#include "host/documents/ghostscript.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "host/core/failure.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Ghostscript's messages are read this far. Bytes.
constexpr qint64 kMessages = 64 << 10;
/// How often a run looks whether it is still wanted. Milliseconds.
constexpr int kLook = 50;

QString reasonIn(const QString& logPath) {
    QFile log(logPath);
    if (!log.open(QIODevice::ReadOnly))
        return hostText("NoReasonGiven");
    const QString text = QString::fromUtf8(log.read(kMessages));
    static const QRegularExpression error(QStringLiteral("Error: (/\\w+ in [^\\n]*)"));
    if (const auto match = error.match(text); match.hasMatch())
        return match.captured(1).trimmed();
    for (const QString& line : text.split(u'\n', Qt::SkipEmptyParts)) {
        if (line.startsWith(QLatin1String("   **** ")))
            return line.mid(8).trimmed();
    }
    return hostText("NoReasonGiven");
}

/// The inputs under plain names of their own in the run's folder: Ghostscript has a meaning for
/// many a character in a file's name. Empty when a link cannot be made.
QStringList plainInputs(const GhostscriptRun& run) {
    QStringList names;
    QHash<QString, QString> known;
    for (const QString& input : run.inputs) {
        QString& name = known[input];
        if (name.isEmpty()) {
            name = QStringLiteral("%1.input%2").arg(run.output, QString::number(known.size()));
            const QString link = QDir(run.folder).filePath(name);
            QFile::remove(link); // of an earlier run
            if (!QFile::link(input, link))
                return {};
        }
        names << name;
    }
    return names;
}

/// In the child: the kernel ends it with us, and we may be gone before it was asked to.
void dieWith(pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(1);
}

QStringList allArguments(const GhostscriptRun& run) {
    QStringList arguments{QStringLiteral("-q"), QStringLiteral("-dSAFER"),
                          QStringLiteral("-dBATCH"), QStringLiteral("-dNOPAUSE")};
    arguments += run.switches;
    arguments << QStringLiteral("-sOutputFile=%1").arg(run.output);
    return arguments;
}

QProcessEnvironment environmentFor(const GhostscriptRun& run) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Each could add a switch such as -dNOSAFER, or a folder that documents may then read.
    for (const char* name : {"GS_OPTIONS", "GS_LIB", "GS_FONTPATH", "GS_DEVICE"})
        environment.remove(QLatin1String(name));
    environment.insert(QStringLiteral("TMPDIR"), run.folder);
    return environment;
}

/// @return whether it ended by itself.
bool waitForEnd(QProcess& process, const GhostscriptRun& run) {
    const Deadline deadline({static_cast<int>(run.limit.count()), run.cancel});
    while (!deadline.isOver()) {
        if (process.waitForFinished(std::min(kLook, deadline.remaining())))
            return true;
    }
    process.kill();
    process.waitForFinished();
    return false;
}

} // namespace

Result<QString> runGhostscript(const GhostscriptRun& run) {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("gs"));
    if (program.isEmpty())
        return failure(hostText("GhostscriptMissing"));
    const QStringList inputs = plainInputs(run);
    if (inputs.isEmpty())
        return failure(hostText("CannotWriteTemporary").arg(QDir(run.folder).filePath(run.output)));
    const QString log = QDir(run.folder).filePath(run.output + QStringLiteral(".log"));
    QProcess process;
    process.setProcessEnvironment(environmentFor(run));
    process.setChildProcessModifier([parent = getpid()] { dieWith(parent); });
    process.setWorkingDirectory(run.folder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardOutputFile(log);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, allArguments(run) + inputs);
    if (!process.waitForStarted())
        return failure(hostText("GhostscriptNotStarted").arg(process.errorString()));
    if (!waitForEnd(process, run)) {
        if (run.cancel && run.cancel->isCancelled())
            return cancelled();
        return failure(hostText("GhostscriptTooSlow")
                           .arg(run.about, QString::number(run.limit.count() / 1000)));
    }
    const QString output = QDir(run.folder).filePath(run.output);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0 ||
        QFileInfo(output).size() == 0)
        return failure(hostText("GhostscriptFailed").arg(run.about, reasonIn(log)));
    return output;
}

} // namespace labelcut
