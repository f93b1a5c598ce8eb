// Test support: a real print scheduler of the test's own, away from the machine's printers.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <optional>

namespace labelcut::test {

/// What a job brought to the printer.
struct StoredJob {
    /// The backend's arguments: job id, user, title, copies, options.
    QStringList arguments;
    QMap<QString, QString> environment;
    QByteArray data;

    /// The job's options as one text, "PageSize=DC24 KvHalfCut=ON …".
    QString options() const { return arguments.value(4); }
};

/// Runs cupsd in a temporary folder, as root or as an ordinary user. Its queues print into files.
/// The scheduler ends with this object, and with the test program however that ends.
class PrivateCupsd {
public:
    struct Options {
        /// Also listen on 127.0.0.1, see port().
        bool tcp = false;
        /// Lines for the policy in front of the one that permits everything, such as
        /// "<Limit Create-Job>\nAuthType Basic\nRequire valid-user\nOrder deny,allow\n</Limit>".
        QByteArray policy;
        /// More lines of cupsd.conf.
        QByteArray configuration;
        /// The whole of printers.conf at the first start, for queues that lpadmin need not add.
        QByteArray printers;
    };

    PrivateCupsd()
        : PrivateCupsd(Options{}) {}
    explicit PrivateCupsd(Options options);
    ~PrivateCupsd();
    PrivateCupsd(const PrivateCupsd&) = delete;
    PrivateCupsd& operator=(const PrivateCupsd&) = delete;

    /// Starts the scheduler and waits until it accepts connections.
    /// @return false when it does not within seconds; errorLog() says why.
    bool start();
    /// Ends it at once, jobs and connections included; queues are kept for the next start().
    void kill();

    QString socketPath() const { return mFolder.filePath(QStringLiteral("cups.sock")); }
    int port() const { return mPort; }
    /// A folder of the scheduler's, removed with it.
    QString folder() const { return mFolder.path(); }
    QString errorLog() const;

    /// Adds a queue, or changes it. @param ppd  path of its PPD; empty for a queue without one.
    /// @param arguments  more arguments for lpadmin, such as {"-D", "for people"}.
    bool addQueue(const QString& name, const QString& ppd, const QStringList& arguments = {});
    bool removeQueue(const QString& name);
    bool makeDefault(const QString& name);
    bool pause(const QString& name);
    bool resume(const QString& name);
    bool reject(const QString& name);
    bool accept(const QString& name);

    /// While held, jobs reach the printer but do not end.
    void holdPrinter(bool hold);
    /// From now on jobs fail when they have reached the printer, and the scheduler gives them up.
    /// @param reason  what the printer has to say about it; may be empty.
    void breakPrinter(const QByteArray& reason = {});
    /// What the printer says to the scheduler about each job that has reached it from now on, such
    /// as "PAGE: 1 1\n" or "STATE: +media-empty-error\n".
    void letPrinterSay(const QByteArray& lines);
    /// The device URI of every queue.
    QString deviceUri() const;

    /// Waits until the job has come out of the printer.
    /// @return nothing when it does not within `timeout` milliseconds.
    std::optional<StoredJob> waitForJob(int job, int timeout = 20'000) const;
    /// Whether anything of the job has reached the printer.
    bool hasReachedPrinter(int job) const;

private:
    bool prepareFolders();
    bool writeConfiguration();
    bool writeBackend();
    bool isListening() const;
    bool control(const QString& program, const QStringList& arguments);
    QString stored(int job, const char* suffix) const;

    Options mOptions;
    QTemporaryDir mFolder;
    QProcess mProcess;
    int mPort = 0;
};

} // namespace labelcut::test
