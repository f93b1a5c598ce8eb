// Test support: a real print scheduler of the test's own.
#include "tests/support/private_cupsd.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcessEnvironment>
#include <QThread>

#include <arpa/inet.h>
#include <grp.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

namespace labelcut::test {

namespace {

constexpr int kStartTimeout = 10'000; // milliseconds
constexpr int kControlTimeout = 15'000;

// The machine's own filters; backends and everything written are private.
constexpr char kSystemServerBin[] = "/usr/lib/cups";

/// Keeps what cupsd hands to a printer: "ID.argv" and "ID.env" with a zero byte behind each
/// entry, "ID.data", and "ID.done" once all is there.
constexpr char kBackend[] = R"(#!/bin/sh
if [ $# -eq 0 ]; then
    echo 'direct labelstore "Unknown" "Folder of printed labels"'
    exit 0
fi
store="${DEVICE_URI#labelstore:}"
for argument in "$@"; do printf '%s\0' "$argument"; done > "$store/$1.argv"
env -0 > "$store/$1.env"
cat ${6:+"$6"} > "$store/$1.data"
[ ! -e "$store/said" ] || cat "$store/said" >&2
while [ -e "$store/hold" ]; do sleep 0.05; done
[ ! -e "$store/fail" ] || { cat "$store/fail" >&2; exit 1; }
: > "$store/$1.done"
)";

bool writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool setMode(const QString& path, mode_t mode) {
    return chmod(QFile::encodeName(path).constData(), mode) == 0;
}

bool isRoot() {
    return geteuid() == 0;
}

/// A port that was free a moment ago; 0 when there is none.
int freePort() {
    const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    socklen_t length = sizeof address;
    const bool isBound =
        bind(probe, generic, length) == 0 && getsockname(probe, generic, &length) == 0;
    close(probe);
    return isBound ? ntohs(address.sin_port) : 0;
}

/// The group that may administer; cupsd insists that filters run under another one.
QByteArray systemGroup() {
    const group* entry = getgrgid(isRoot() ? 0 : getegid());
    return entry ? entry->gr_name : "root";
}

QStringList splitAtZero(const QByteArray& bytes) {
    QStringList all;
    for (const QByteArray& entry : bytes.split('\0'))
        all.append(QString::fromUtf8(entry));
    if (!all.isEmpty())
        all.removeLast(); // behind the last zero byte
    return all;
}

} // namespace

PrivateCupsd::PrivateCupsd(Options options)
    : mOptions(std::move(options)) {
    if (mOptions.tcp)
        mPort = freePort();
}

PrivateCupsd::~PrivateCupsd() {
    holdPrinter(false);
    mProcess.terminate();
    if (!mProcess.waitForFinished(5'000))
        kill();
    // Filters run as another user when the scheduler is root, and may still be closing files.
    for (int tries = 0; mFolder.isValid() && !mFolder.remove() && tries < 20; ++tries)
        QThread::msleep(50);
}

bool PrivateCupsd::start() {
    if (!mFolder.isValid() || !prepareFolders() || !writeConfiguration() || !writeBackend())
        return false;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("CUPS_SERVER"));
    mProcess.setProcessEnvironment(environment);
    mProcess.setProcessChannelMode(QProcess::MergedChannels);
    mProcess.setStandardOutputFile(mFolder.filePath(QStringLiteral("output")), QIODevice::Append);
    mProcess.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    mProcess.start(QStringLiteral("/usr/sbin/cupsd"),
                   {QStringLiteral("-f"), QStringLiteral("-c"),
                    mFolder.filePath(QStringLiteral("cupsd.conf")), QStringLiteral("-s"),
                    mFolder.filePath(QStringLiteral("cups-files.conf"))});
    if (!mProcess.waitForStarted())
        return false;
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < kStartTimeout; QThread::msleep(10)) {
        if (isListening())
            return true;
        if (mProcess.waitForFinished(0))
            return false;
    }
    return false;
}

void PrivateCupsd::kill() {
    mProcess.kill();
    mProcess.waitForFinished();
    QFile::remove(socketPath());
}

QString PrivateCupsd::errorLog() const {
    return QString::fromUtf8(readFile(mFolder.filePath(QStringLiteral("output"))) +
                             readFile(mFolder.filePath(QStringLiteral("log/error_log"))));
}

bool PrivateCupsd::addQueue(const QString& name, const QString& ppd, const QStringList& arguments) {
    QStringList all{QStringLiteral("-p"), name, QStringLiteral("-E"), QStringLiteral("-v"),
                    deviceUri()};
    if (!ppd.isEmpty())
        all += {QStringLiteral("-P"), ppd};
    return control(QStringLiteral("lpadmin"), all + arguments);
}

bool PrivateCupsd::removeQueue(const QString& name) {
    return control(QStringLiteral("lpadmin"), {QStringLiteral("-x"), name});
}

bool PrivateCupsd::makeDefault(const QString& name) {
    return control(QStringLiteral("lpadmin"), {QStringLiteral("-d"), name});
}

bool PrivateCupsd::pause(const QString& name) {
    return control(QStringLiteral("cupsdisable"), {name});
}

bool PrivateCupsd::resume(const QString& name) {
    return control(QStringLiteral("cupsenable"), {name});
}

bool PrivateCupsd::reject(const QString& name) {
    return control(QStringLiteral("cupsreject"), {name});
}

bool PrivateCupsd::accept(const QString& name) {
    return control(QStringLiteral("cupsaccept"), {name});
}

void PrivateCupsd::holdPrinter(bool hold) {
    const QString path = mFolder.filePath(QStringLiteral("store/hold"));
    if (hold)
        writeFile(path, {});
    else
        QFile::remove(path);
}

void PrivateCupsd::breakPrinter(const QByteArray& reason) {
    writeFile(mFolder.filePath(QStringLiteral("store/fail")),
              reason.isEmpty() ? reason : "ERROR: " + reason + '\n');
}

void PrivateCupsd::letPrinterSay(const QByteArray& lines) {
    writeFile(mFolder.filePath(QStringLiteral("store/said")), lines);
}

QString PrivateCupsd::deviceUri() const {
    return QStringLiteral("labelstore:") + mFolder.filePath(QStringLiteral("store"));
}

std::optional<StoredJob> PrivateCupsd::waitForJob(int job, int timeout) const {
    QElapsedTimer timer;
    timer.start();
    while (!QFile::exists(stored(job, "done"))) {
        if (timer.elapsed() > timeout)
            return std::nullopt;
        QThread::msleep(20);
    }
    StoredJob result;
    result.arguments = splitAtZero(readFile(stored(job, "argv")));
    for (const QString& entry : splitAtZero(readFile(stored(job, "env"))))
        result.environment.insert(entry.section(u'=', 0, 0), entry.section(u'=', 1));
    result.data = readFile(stored(job, "data"));
    return result;
}

bool PrivateCupsd::hasReachedPrinter(int job) const {
    return QFile::exists(stored(job, "argv"));
}

bool PrivateCupsd::prepareFolders() {
    const QDir root(mFolder.path());
    for (const char* name : {"etc", "spool", "spool/tmp", "cache", "state", "state/certs", "log",
                             "store", "bin", "bin/backend"}) {
        const QString path = root.filePath(QLatin1String(name));
        if (!root.mkpath(path) || !setMode(path, 0755))
            return false;
    }
    for (const char* name : {"filter", "daemon", "notifier"})
        QFile::link(QLatin1String(kSystemServerBin) + u'/' + QLatin1String(name),
                    root.filePath(QStringLiteral("bin/") + QLatin1String(name)));
    // Run by root, cupsd runs filters and backends as another user, who must get through to here.
    return setMode(root.path(), 0711) && setMode(root.filePath(QStringLiteral("store")), 0777) &&
           setMode(root.filePath(QStringLiteral("spool/tmp")), 01777);
}

bool PrivateCupsd::writeConfiguration() {
    const QByteArray root = QFile::encodeName(mFolder.path());
    QByteArray listen = "Listen " + QFile::encodeName(socketPath()) + "\n";
    if (mPort != 0)
        listen += "Listen 127.0.0.1:" + QByteArray::number(mPort) + "\n";
    const QByteArray settings = listen +
                                "LogLevel debug\n"
                                "MaxLogSize 0\n"
                                "DirtyCleanInterval 0\n"
                                "Browsing Off\n"
                                "DefaultAuthType None\n"
                                "ErrorPolicy abort-job\n"
                                "JobKillDelay 1\n"
                                "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
                                "<Location /admin>\nOrder allow,deny\nAllow all\n</Location>\n"
                                "<Policy default>\n"
                                "JobPrivateAccess all\nJobPrivateValues none\n"
                                "SubscriptionPrivateAccess all\nSubscriptionPrivateValues none\n" +
                                mOptions.policy +
                                "<Limit All>\nOrder deny,allow\n</Limit>\n</Policy>\n" +
                                mOptions.configuration;
    QByteArray files = "SystemGroup " + systemGroup() +
                       "\n"
                       "FileDevice Yes\nSandboxing Relaxed\nSyncOnClose No\n"
                       "AccessLog " +
                       root + "/log/access_log\nErrorLog " + root + "/log/error_log\nPageLog " +
                       root + "/log/page_log\nServerRoot " + root + "/etc\nRequestRoot " + root +
                       "/spool\nTempDir " + root + "/spool/tmp\nCacheDir " + root +
                       "/cache\nStateDir " + root + "/state\nServerBin " + root + "/bin\n";
    if (isRoot())
        files += "User lp\nGroup lp\n";
    const QString printers = mFolder.filePath(QStringLiteral("etc/printers.conf"));
    if (!mOptions.printers.isEmpty() && !QFile::exists(printers) &&
        !writeFile(printers, mOptions.printers))
        return false;
    return writeFile(mFolder.filePath(QStringLiteral("cupsd.conf")), settings) &&
           writeFile(mFolder.filePath(QStringLiteral("cups-files.conf")), files);
}

bool PrivateCupsd::writeBackend() {
    const QString path = mFolder.filePath(QStringLiteral("bin/backend/labelstore"));
    return writeFile(path, kBackend) && setMode(path, 0755);
}

bool PrivateCupsd::isListening() const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray path = QFile::encodeName(socketPath());
    if (static_cast<std::size_t>(path.size()) >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    const int probe = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool answers =
        connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(probe);
    return answers;
}

bool PrivateCupsd::control(const QString& program, const QStringList& arguments) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CUPS_SERVER"), socketPath());
    environment.insert(QStringLiteral("CUPS_SERVERROOT"), mFolder.filePath(QStringLiteral("etc")));
    // These tools stand where ordinary users' search paths do not lead.
    environment.insert(QStringLiteral("PATH"), QStringLiteral("/usr/sbin:/usr/bin:/sbin:/bin"));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("/usr/sbin/") + program, arguments);
    const bool isDone = process.waitForFinished(kControlTimeout) &&
                        process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!isDone)
        std::fprintf(stderr, "%s: %s\n", qPrintable(program), process.readAll().constData());
    return isDone;
}

QString PrivateCupsd::stored(int job, const char* suffix) const {
    return mFolder.filePath(QStringLiteral("store/%1.%2").arg(job).arg(QLatin1String(suffix)));
}

} // namespace labelcut::test
