// The job: Ghostscript as a program beside us, without a shell and without rights.
#include "host/job/ghostscript.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include "host/job/failure.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Ghostscript's messages are read this far. Bytes.
constexpr qint64 kMessages = 64 << 10;

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

QStringList allArguments(const GhostscriptRun& run) {
    QStringList arguments{QStringLiteral("-q"), QStringLiteral("-dSAFER"),
                          QStringLiteral("-dBATCH"), QStringLiteral("-dNOPAUSE")};
    arguments += run.switches;
    arguments << QStringLiteral("-sOutputFile=%1").arg(run.output);
    return arguments;
}

} // namespace

Result<QString> runGhostscript(const GhostscriptRun& run) {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("gs"));
    if (program.isEmpty())
        return failure(hostText("GhostscriptMissing"));
    const QString log = QDir(run.folder).filePath(run.output + QStringLiteral(".log"));
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), run.folder);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(run.folder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardOutputFile(log);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, allArguments(run) + run.inputs);
    if (!process.waitForStarted())
        return failure(hostText("GhostscriptNotStarted").arg(process.errorString()));
    if (!process.waitForFinished(static_cast<int>(run.limit.count()))) {
        process.kill();
        process.waitForFinished();
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
