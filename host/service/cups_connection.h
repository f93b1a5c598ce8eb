// Print service: what a host asks a print service.
//
// libcups' own network functions wait up to minutes and cannot be stopped, so that none of them is
// used. The calls here take as long as their caller allows at most, end within a fraction of a
// second when cancelled, and block: make them on a worker thread, never on the window's.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "host/core/result.h"
#include "host/service/ipp_exchange.h"
#include "host/settings/setting.h"
#include "platform/printing/print_objects.h"

namespace labelcut {

/// A print queue as the service describes it. Texts are empty where it says nothing.
struct Queue {
    QString name;
    QString info;     ///< For people: what "lpadmin -D" set.
    QString location; ///< For people: what "lpadmin -L" set.
    QString makeAndModel;
    QString uri; ///< The queue's own IPP address.
    /// The printer's address; nothing when the service does not tell.
    std::optional<QString> deviceUri;
    PMPrinterState state = PMPrinterState::Idle;
    QString stateMessage;
    QStringList stateReasons; ///< Without "none".
    bool isAccepting = true;
    bool isDefault = false;
    bool isShared = false;
    bool isRemote = false; ///< Another service's queue.
    bool isClass = false;  ///< A class of queues, which has no PPD.
};

/// One queue with everything that the service tells about it.
struct QueueDetails {
    Queue queue;
    /// MIME types of the documents it prints.
    QStringList documentFormats;
    /// Every attribute by name, values as text, several joined by commas.
    QMap<QString, QString> attributes;
};

/// A job as it is asked for.
struct JobRequest {
    QString queue;
    /// Title for people; empty: "Untitled" in the running language. The service takes 255 bytes of
    /// UTF-8, the rest is cut.
    QString title;
    /// Whose job it is; empty: the user that runs this program.
    QString user;
    /// MIME type of the document; empty: the service finds out.
    QString documentFormat;
    /// 1 or more.
    int copies = 1;
    /// The document's pages lie as they shall on what is printed on; the queue must not scale them.
    bool isLaidOut = false;
    /// PPD main keyword and choice keyword, sent as they are: "PageSize", "DC24". The service takes
    /// choices that the PPD lacks without a word and prints the default, so check them before.
    /// A medium is never sent but as PageSize: its IPP name may select another of equal measure.
    Settings options;
    /// The job waits until somebody releases it.
    bool isHeld = false;
};

/// IPP "job-state" (RFC 8011, 5.3.7).
enum class JobState {
    Pending = 3,
    Held = 4,
    Processing = 5,
    Stopped = 6,
    Canceled = 7,
    Aborted = 8,
    Completed = 9
};

/// A job as the service describes it.
struct JobStatus {
    int id = 0;
    JobState state = JobState::Pending;
    QStringList stateReasons; ///< Without "none".
    QString title;
    QString user;
    /// What the printer has to say about the job; may be empty.
    QString message;
    /// False only when the service says that it has not begun to print the job.
    bool mayHaveBegun = true;
    /// How much of it has come out, in sides that were printed, copies included; 0 where the
    /// service does not say.
    int sidesDone = 0;
    /// Every attribute by name, values as text, several joined by commas.
    QMap<QString, QString> attributes;
};

/// The way to one print service. It keeps nothing but the address and opens a connection for every
/// call, so one object may be used by several threads at once. An error's kind is one of NoService,
/// Unreachable, SilentServer, ServerGone, NotAPrintService, Cancelled, AuthenticationNeeded or
/// Other for every call, and what the call says.
class CupsConnection {
public:
    /// @param address  where the service is.
    explicit CupsConnection(ServiceAddress address = ServiceAddress::systemDefault());

    const ServiceAddress& address() const { return mAddress; }

    /// Whether something accepts connections there; nothing is asked.
    Result<Done> reach(const CallLimits& limits) const;

    /// All queues, classes included, in the service's order, asked for a hundred at a time; at most
    /// kMaxQueues. No queue at all is an empty list.
    /// @param found  told of each hundred that more follow, on the calling thread; may be empty.
    Result<std::vector<Queue>>
    listQueues(const CallLimits& limits,
               const std::function<void(const std::vector<Queue>&)>& found = {}) const;
    static constexpr std::size_t kMaxQueues = 10'000;

    /// The name of the queue that the service takes when none is named; nothing when it has none.
    Result<std::optional<QString>> defaultQueue(const CallLimits& limits) const;

    /// @param name  the queue's name. @return also NoSuchQueue.
    Result<QueueDetails> queueAttributes(const QString& name, const CallLimits& limits) const;

    /// The queue's PPD as it is now. The bytes are the caller's; no file of the service is touched.
    /// @return also NoSuchQueue and QueueWithoutPpd.
    Result<QByteArray> fetchPpd(const QString& name, const CallLimits& limits) const;

    /// Asks whether the service would take such a job now, without making one.
    /// @return also NoSuchQueue, Rejecting and FormatNotSupported.
    Result<Done> validateJob(const JobRequest& request, const CallLimits& limits) const;

    /// Makes a job that still lacks its document. @return its id, 1 or more; also NoSuchQueue and
    /// Rejecting. A paused queue takes jobs and holds them. Where the id never comes the sentence
    /// says that a job without document may be there.
    Result<int> createJob(const JobRequest& request, const CallLimits& limits) const;

    /// Sends the only document of a job, after which it can print. When that fails in any way the
    /// job is cancelled and looked at, for which kCleanUpTime is spent beyond the limits at most;
    /// the sentence then begins with what has become of it. A job that is printed by then counts
    /// as sent, whatever the service has answered.
    /// @param job       what createJob() gave for `request`.
    /// @param document  open for reading; read from where it stands to its end.
    /// @param progress  may be empty.
    /// @return also NoSuchJob, FormatNotSupported and DocumentUnreadable.
    Result<Done> sendDocument(int job, const JobRequest& request, QIODevice& document,
                              const SendProgress& progress, const CallLimits& limits) const;
    static constexpr int kCleanUpTime = 800; ///< Milliseconds.

    /// @return also NoSuchJob.
    Result<JobStatus> jobAttributes(int job, const CallLimits& limits) const;

    /// @param user  whose job it is; empty: the user that runs this program.
    /// @return also NoSuchJob; Other for a job that has ended already.
    Result<Done> cancelJob(int job, const QString& user, const CallLimits& limits) const;

    /// Keeps a job from being printed until it is released, or lets it go on.
    /// @param user  as for cancelJob().
    /// @return also NoSuchJob; Other for a job that is printing or has ended.
    Result<Done> holdJob(int job, const QString& user, const CallLimits& limits) const;
    Result<Done> releaseJob(int job, const QString& user, const CallLimits& limits) const;

    /// Whose jobs are made when a request names nobody: the account that runs this program, unless
    /// CUPS is told of another name (CUPS_USER, client.conf). USER and LOGNAME alone prove nothing.
    static QString userName();

private:
    Result<Done> upload(int job, const JobRequest& request, DocumentBody& body,
                        const Deadline& deadline) const;
    Result<Done> change(ipp_op_t operation, int job, const QString& user,
                        const CallLimits& limits) const;
    std::optional<JobFate> takeBack(int job, const QString& user, bool mayBeComplete) const;
    RequestSubject subjectOf(const JobRequest& request, int job, const CallLimits& limits) const;

    ServiceAddress mAddress;
};

} // namespace labelcut
