// The way to a print service, tried on a real scheduler and on servers that misbehave.
#include "host/service/cups_connection.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <functional>
#include <thread>

#include "host/settings/ppd_calls.h"
#include "tests/support/answer_proxy.h"
#include "tests/support/private_cupsd.h"
#include "tests/support/stand_in_server.h"

namespace labelcut {

namespace {

using test::PrivateCupsd;
using test::StandInServer;
using test::StoredJob;

const QString kTape = QStringLiteral("tape");
const QString kTinyPpd = QStringLiteral(LABELCUT_TEST_DATA "/tiny_tape.ppd");

/// Generous for calls that should take milliseconds; a busy machine and sanitizers in mind.
constexpr int kSoon = 1'000;
constexpr int kLong = 30'000;

CallLimits within(int milliseconds, const CancelFlag* cancel = nullptr) {
    return {milliseconds, cancel};
}

QByteArray postScript() {
    return "%!PS-Adobe-3.0\n%%Pages: 1\n%%EndComments\n%%BeginProlog\n%%EndProlog\n"
           "%%BeginSetup\n%%EndSetup\n%%Page: 1 1\n%%BeginPageSetup\n%%EndPageSetup\n"
           "newpath 10 10 moveto 20 20 lineto stroke showpage\n%%Trailer\n%%EOF\n";
}

/// PostScript of at least this many bytes.
QByteArray longPostScript(qsizetype bytes) {
    const QByteArray line = "% a comment that only makes the document longer than a buffer is\n";
    QByteArray all = postScript();
    const qsizetype at = all.indexOf("newpath");
    return all.insert(at, line.repeated(bytes / line.size() + 1));
}

JobRequest tapeJob() {
    JobRequest request;
    request.queue = kTape;
    request.title = QStringLiteral("Labels");
    request.user = QStringLiteral("somebody");
    request.documentFormat = QStringLiteral("application/postscript");
    return request;
}

/// Creates the job and sends the document. @return its id, 0 when that failed.
int printed(const CupsConnection& service, const JobRequest& request, QByteArray document) {
    const Result<int> job = service.createJob(request, within(kLong));
    EXPECT_TRUE(job) << job.error().sentence.toStdString();
    if (!job)
        return 0;
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    const auto sent = service.sendDocument(*job, request, buffer, {}, within(kLong));
    EXPECT_TRUE(sent) << sent.error().sentence.toStdString();
    return sent ? *job : 0;
}

CupsConnection standIn(const StandInServer& server) {
    return CupsConnection({QStringLiteral("127.0.0.1"), server.port()});
}

QByteArray http(const QByteArray& status, const QByteArray& type, const QByteArray& content,
                qsizetype claimed = -1) {
    return "HTTP/1.1 " + status + "\r\nContent-Type: " + type +
           "\r\nContent-Length: " + QByteArray::number(claimed < 0 ? content.size() : claimed) +
           "\r\n\r\n" + content;
}

/// Every call, each reduced to its error.
struct Call {
    const char* name;
    std::function<Error(const CupsConnection&, const CallLimits&)> run;
};

template<typename T>
Error errorOf(const Result<T>& result) {
    return result ? Error{ErrorKind::Other, QStringLiteral("(no error)")} : result.error();
}

Error sendTo(const CupsConnection& service, const CallLimits& limits, qsizetype bytes) {
    QByteArray document = longPostScript(bytes);
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return errorOf(service.sendDocument(1, tapeJob(), buffer, {}, limits));
}

const std::vector<Call>& everyCall() {
    using C = const CupsConnection&;
    using L = const CallLimits&;
    static const std::vector<Call> calls = {
        {"listQueues", [](C c, L l) { return errorOf(c.listQueues(l)); }},
        {"defaultQueue", [](C c, L l) { return errorOf(c.defaultQueue(l)); }},
        {"queueAttributes", [](C c, L l) { return errorOf(c.queueAttributes(kTape, l)); }},
        {"fetchPpd", [](C c, L l) { return errorOf(c.fetchPpd(kTape, l)); }},
        {"validateJob", [](C c, L l) { return errorOf(c.validateJob(tapeJob(), l)); }},
        {"createJob", [](C c, L l) { return errorOf(c.createJob(tapeJob(), l)); }},
        {"sendDocument", [](C c, L l) { return sendTo(c, l, 40'000'000); }},
        {"jobAttributes", [](C c, L l) { return errorOf(c.jobAttributes(1, l)); }},
        {"cancelJob", [](C c, L l) { return errorOf(c.cancelJob(1, {}, l)); }},
    };
    return calls;
}

/// Runs `call` and sets the flag from another thread after `delay` milliseconds.
/// @return milliseconds from the setting to the call's end.
qint64 timeToCancel(int delay, CancelFlag& flag, const std::function<void()>& call) {
    QElapsedTimer timer;
    std::atomic<qint64> setAt = 0;
    timer.start();
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(delay));
        setAt = timer.elapsed();
        flag.cancel();
    });
    call();
    const qint64 endedAt = timer.elapsed();
    other.join();
    EXPECT_GE(endedAt, setAt) << "ended before it was cancelled";
    return endedAt - setAt;
}

/// A device that breaks after its first bytes.
class BrokenDevice : public QIODevice {
public:
    BrokenDevice() { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override {
        if (mBroken) {
            setErrorString(QStringLiteral("the disk is on fire"));
            return -1;
        }
        mBroken = true;
        std::fill_n(data, size, '%');
        return size;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    bool mBroken = false;
};

class CupsConnectionTest : public testing::Test {
protected:
    void startService(PrivateCupsd::Options options = {}) {
        mCupsd.emplace(std::move(options));
        ASSERT_TRUE(mCupsd->start()) << mCupsd->errorLog().toStdString();
    }
    void startWithTape(PrivateCupsd::Options options = {}) {
        startService(std::move(options));
        ASSERT_TRUE(mCupsd->addQueue(kTape, kTinyPpd)) << mCupsd->errorLog().toStdString();
    }
    CupsConnection service() const { return CupsConnection({mCupsd->socketPath()}); }

    JobState stateOf(int job) const {
        const auto status = service().jobAttributes(job, within(kLong));
        EXPECT_TRUE(status);
        return status ? status->state : JobState::Pending;
    }

    std::optional<PrivateCupsd> mCupsd;
};

} // namespace

TEST(ServiceAddress, readsEveryForm) {
    struct Row {
        const char* text;
        const char* host;
        int port;
        const char* shown;
    };
    const Row rows[] = {
        {"printserver", "printserver", 631, "printserver"},
        {"printserver:8631", "printserver", 8631, "printserver:8631"},
        {"printserver:631", "printserver", 631, "printserver"},
        {"192.0.2.1:1", "192.0.2.1", 1, "192.0.2.1:1"},
        {"[2001:db8::1]", "2001:db8::1", 631, "[2001:db8::1]"},
        {"[2001:db8::1]:65535", "2001:db8::1", 65535, "[2001:db8::1]:65535"},
        {"2001:db8::1", "2001:db8::1", 631, "[2001:db8::1]"},
        {"/run/cups/cups.sock", "/run/cups/cups.sock", 631, "/run/cups/cups.sock"},
        {"/run/odd:name", "/run/odd:name", 631, "/run/odd:name"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        const auto address = ServiceAddress::fromText(QLatin1String(row.text));
        ASSERT_TRUE(address);
        EXPECT_EQ(*address, (ServiceAddress{QLatin1String(row.host), row.port}));
        EXPECT_EQ(address->text(), QLatin1String(row.shown));
    }
    for (const char* text : {"", ":631", "host:", "host:0", "host:65536", "host:ipp", "host:-1",
                             "[::1", "[::1]631", "[]", "[]:631"})
        EXPECT_FALSE(ServiceAddress::fromText(QLatin1String(text))) << text;
}

TEST(ServiceAddress, followsTheEnvironment) {
    const QByteArray before = qgetenv("CUPS_SERVER");
    const auto addressWith = [](const QByteArray& value) {
        qputenv("CUPS_SERVER", value);
        ServiceAddress address;
        // libcups reads the environment once in each thread.
        std::thread([&] { address = ServiceAddress::systemDefault(); }).join();
        return address;
    };
    EXPECT_EQ(addressWith("/some/cups.sock").host, QStringLiteral("/some/cups.sock"));
    EXPECT_EQ(addressWith("printserver:8631"),
              (ServiceAddress{QStringLiteral("printserver"), 8631}));
    EXPECT_EQ(addressWith(":631").text(), QStringLiteral(":631"));
    EXPECT_EQ(addressWith("[::1").text(), QStringLiteral("[::1"));
    EXPECT_EQ(addressWith("[2001:db8::1]:8631").text(), QStringLiteral("[2001:db8::1]:8631"));
    qputenv("CUPS_SERVER", before);
}

TEST(ServiceAddress, thatIsNoneIsNamedAsItWasGiven) {
    for (const ServiceAddress& address :
         {ServiceAddress{QString(), 631}, ServiceAddress{QStringLiteral("[:"), 1},
          ServiceAddress{QStringLiteral("a b"), 8631}, ServiceAddress{QStringLiteral(":abc"), 631},
          ServiceAddress{QStringLiteral("http://host"), 631}}) {
        const Error error = errorOf(CupsConnection(address).reach(within(kLong)));
        EXPECT_EQ(error.kind, ErrorKind::NoService);
        EXPECT_EQ(error.sentence,
                  QStringLiteral("“%1” names no print service. Write CUPS_SERVER as HOST, "
                                 "HOST:PORT or the path of a socket.")
                      .arg(address.text()));
    }
}

TEST_F(CupsConnectionTest, listsNoQueueWhereThereIsNone) {
    startService();
    EXPECT_TRUE(service().reach(within(kLong)));
    const auto queues = service().listQueues(within(kLong));
    ASSERT_TRUE(queues) << queues.error().sentence.toStdString();
    EXPECT_TRUE(queues->empty());
}

TEST_F(CupsConnectionTest, listsQueuesWithAllThatIsKnown) {
    startWithTape();
    const QString other = QStringLiteral("Größe-24");
    ASSERT_TRUE(mCupsd->addQueue(other, {},
                                 {QStringLiteral("-D"), QStringLiteral("Breites Band"),
                                  QStringLiteral("-L"), QStringLiteral("Büro 2")}));
    ASSERT_TRUE(mCupsd->pause(other));
    ASSERT_TRUE(mCupsd->reject(other));

    const auto queues = service().listQueues(within(kLong));
    ASSERT_TRUE(queues) << queues.error().sentence.toStdString();
    ASSERT_EQ(queues->size(), 2U);
    const Queue& wide = queues->at(0).name == other ? queues->at(0) : queues->at(1);
    const Queue& tape = queues->at(0).name == other ? queues->at(1) : queues->at(0);

    EXPECT_EQ(tape.name, kTape);
    EXPECT_EQ(tape.makeAndModel, QStringLiteral("Tiny Tape, 1.0"));
    EXPECT_EQ(tape.deviceUri, mCupsd->deviceUri());
    EXPECT_TRUE(tape.uri.endsWith(QStringLiteral("/printers/tape"))) << tape.uri.toStdString();
    EXPECT_EQ(tape.state, PMPrinterState::Idle);
    EXPECT_TRUE(tape.stateReasons.isEmpty());
    EXPECT_TRUE(tape.isAccepting);
    EXPECT_FALSE(tape.isRemote);
    EXPECT_FALSE(tape.isClass);

    EXPECT_EQ(wide.name, other);
    EXPECT_EQ(wide.info, QStringLiteral("Breites Band"));
    EXPECT_EQ(wide.location, QStringLiteral("Büro 2"));
    EXPECT_EQ(wide.state, PMPrinterState::Stopped);
    EXPECT_EQ(wide.stateReasons, QStringList({QStringLiteral("paused")}));
    EXPECT_FALSE(wide.isAccepting);
    EXPECT_FALSE(wide.isDefault);
}

TEST_F(CupsConnectionTest, tellsTheDefaultQueue) {
    startWithTape();
    ASSERT_TRUE(mCupsd->addQueue(QStringLiteral("other"), {}));
    ASSERT_TRUE(mCupsd->makeDefault(QStringLiteral("other")));
    const auto queues = service().listQueues(within(kLong));
    ASSERT_TRUE(queues);
    for (const Queue& queue : *queues)
        EXPECT_EQ(queue.isDefault, queue.name == QStringLiteral("other"));
    const auto named = service().defaultQueue(within(kLong));
    ASSERT_TRUE(named) << named.error().sentence.toStdString();
    EXPECT_EQ(*named, QStringLiteral("other"));
}

TEST_F(CupsConnectionTest, tellsThatThereIsNoDefaultQueue) {
    startWithTape();
    const auto named = service().defaultQueue(within(kLong));
    ASSERT_TRUE(named) << named.error().sentence.toStdString();
    EXPECT_EQ(*named, std::nullopt);
}

TEST_F(CupsConnectionTest, listsMoreQueuesThanOneAnswerHolds) {
    PrivateCupsd::Options options;
    for (int i = 0; i < 250; ++i)
        options.printers += "<Printer q" + QByteArray::number(i) +
                            ">\nDeviceURI file:/dev/null\nState Idle\nAccepting Yes\n</Printer>\n";
    startService(options);
    const auto queues = service().listQueues(within(kLong));
    ASSERT_TRUE(queues) << queues.error().sentence.toStdString();
    QSet<QString> names;
    for (const Queue& queue : *queues)
        names.insert(queue.name);
    EXPECT_EQ(queues->size(), 250U);
    EXPECT_EQ(names.size(), 250);
}

TEST_F(CupsConnectionTest, describesOneQueue) {
    startWithTape();
    const auto details = service().queueAttributes(kTape, within(kLong));
    ASSERT_TRUE(details) << details.error().sentence.toStdString();
    EXPECT_EQ(details->queue.name, kTape);
    EXPECT_EQ(details->queue.deviceUri, mCupsd->deviceUri());
    EXPECT_TRUE(details->documentFormats.contains(QStringLiteral("application/postscript")));
    EXPECT_EQ(details->attributes.value(QStringLiteral("printer-state")), QStringLiteral("idle"));
    EXPECT_EQ(details->attributes.value(QStringLiteral("printer-name")), kTape);
}

TEST_F(CupsConnectionTest, fetchesThePpdAsItIsNow) {
    startWithTape();
    const auto bytes = service().fetchPpd(kTape, within(kLong));
    ASSERT_TRUE(bytes) << bytes.error().sentence.toStdString();
    QTemporaryFile copy;
    ASSERT_TRUE(copy.open());
    copy.write(*bytes);
    copy.close();
    const ppd::File file = ppd::openFile(copy.fileName(), nullptr);
    ASSERT_TRUE(file);
    EXPECT_TRUE(ppd::findChoice(ppd::findOption(file.get(), "KvHalfCut"), "ON"));

    ASSERT_TRUE(mCupsd->addQueue(kTape, QStringLiteral(LABELCUT_SAMPLES "/roll.ppd")));
    const auto changed = service().fetchPpd(kTape, within(kLong));
    ASSERT_TRUE(changed);
    EXPECT_NE(*changed, *bytes);
    EXPECT_TRUE(changed->contains("KvCutLabel"));
}

TEST_F(CupsConnectionTest, fetchesThePpdOfAnOddlyNamedQueue) {
    startService();
    for (const char* name : {"Größe-24", "a%41b", "a+b&c=d", "100%"}) {
        const QString queue = QString::fromUtf8(name);
        SCOPED_TRACE(name);
        ASSERT_TRUE(mCupsd->addQueue(queue, kTinyPpd));
        const auto bytes = service().fetchPpd(queue, within(kLong));
        EXPECT_TRUE(bytes) << bytes.error().sentence.toStdString();
        const auto details = service().queueAttributes(queue, within(kLong));
        ASSERT_TRUE(details) << details.error().sentence.toStdString();
        EXPECT_EQ(details->queue.name, queue);
    }
}

TEST_F(CupsConnectionTest, tellsAQueueWithoutPpdFromNone) {
    startService();
    ASSERT_TRUE(mCupsd->addQueue(QStringLiteral("raw"), {}));
    const Error without = errorOf(service().fetchPpd(QStringLiteral("raw"), within(kLong)));
    EXPECT_EQ(without.kind, ErrorKind::QueueWithoutPpd);
    EXPECT_TRUE(without.sentence.contains(QStringLiteral("“raw”")));
    const Error none = errorOf(service().fetchPpd(QStringLiteral("none"), within(kLong)));
    EXPECT_EQ(none.kind, ErrorKind::NoSuchQueue);
    EXPECT_TRUE(none.sentence.contains(QStringLiteral("“none”")));
}

TEST_F(CupsConnectionTest, tellsThatThereIsNoSuchQueueOrJob) {
    startWithTape();
    for (const char* text : {"gone", "", "../tape", "tape/../tape", "tape?x", "tape#x", "\n"}) {
        SCOPED_TRACE(text);
        const QString name = QLatin1String(text);
        JobRequest request = tapeJob();
        request.queue = name;
        const auto limits = within(kLong);
        EXPECT_EQ(errorOf(service().queueAttributes(name, limits)).kind, ErrorKind::NoSuchQueue);
        EXPECT_EQ(errorOf(service().fetchPpd(name, limits)).kind, ErrorKind::NoSuchQueue);
        EXPECT_EQ(errorOf(service().validateJob(request, limits)).kind, ErrorKind::NoSuchQueue);
        const Error error = errorOf(service().createJob(request, limits));
        EXPECT_EQ(error.kind, ErrorKind::NoSuchQueue);
        EXPECT_TRUE(error.sentence.contains(u'“' + name + u'”'));
    }
    EXPECT_EQ(errorOf(service().jobAttributes(999, within(kLong))).kind, ErrorKind::NoSuchJob);
    const Error error = errorOf(service().cancelJob(999, {}, within(kLong)));
    EXPECT_EQ(error.kind, ErrorKind::NoSuchJob);
    EXPECT_TRUE(error.sentence.contains(QStringLiteral("999")));
    QByteArray document = postScript();
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    EXPECT_EQ(errorOf(service().sendDocument(999, tapeJob(), buffer, {}, within(kLong))).kind,
              ErrorKind::NoSuchJob);
}

TEST_F(CupsConnectionTest, noticesAQueueThatWasDeleted) {
    startWithTape();
    ASSERT_TRUE(service().queueAttributes(kTape, within(kLong)));
    ASSERT_TRUE(mCupsd->removeQueue(kTape));
    EXPECT_EQ(errorOf(service().createJob(tapeJob(), within(kLong))).kind, ErrorKind::NoSuchQueue);
}

TEST_F(CupsConnectionTest, carriesChoicesToThePrinter) {
    startWithTape();
    JobRequest request = tapeJob();
    request.title = QStringLiteral("Größe & \"Maß\"");
    request.copies = 2;
    request.isLaidOut = true;
    request.options = {{QStringLiteral("PageSize"), QStringLiteral("DC12")},
                       {QStringLiteral("KvHalfCut"), QStringLiteral("ON")}};
    EXPECT_TRUE(service().validateJob(request, within(kLong)));
    const int job = printed(service(), request, postScript());
    ASSERT_GT(job, 0);

    const auto stored = mCupsd->waitForJob(job);
    ASSERT_TRUE(stored) << mCupsd->errorLog().toStdString();
    EXPECT_EQ(stored->arguments.value(0), QString::number(job));
    EXPECT_EQ(stored->arguments.value(1), QStringLiteral("somebody"));
    EXPECT_EQ(stored->arguments.value(2), request.title);
    const QStringList options = stored->options().split(u' ');
    EXPECT_TRUE(options.contains(QStringLiteral("PageSize=DC12")))
        << stored->options().toStdString();
    EXPECT_TRUE(options.contains(QStringLiteral("KvHalfCut=ON")));
    EXPECT_TRUE(options.contains(QStringLiteral("print-scaling=none")));
    EXPECT_FALSE(stored->options().contains(QStringLiteral("media=")));
    EXPECT_TRUE(stored->data.contains("%%BeginFeature: *KvHalfCut ON\n% half cut on"));
    EXPECT_TRUE(stored->data.contains("%%BeginFeature: *PageSize DC12"));

    const auto status = service().jobAttributes(job, within(kLong));
    ASSERT_TRUE(status) << status.error().sentence.toStdString();
    EXPECT_EQ(status->id, job);
    EXPECT_EQ(status->title, request.title);
    EXPECT_EQ(status->user, QStringLiteral("somebody"));
    EXPECT_EQ(status->attributes.value(QStringLiteral("PageSize")), QStringLiteral("DC12"));
    EXPECT_EQ(status->attributes.value(QStringLiteral("KvHalfCut")), QStringLiteral("ON"));
    EXPECT_EQ(status->attributes.value(QStringLiteral("copies")), QStringLiteral("2"));
}

TEST_F(CupsConnectionTest, printsThroughTcpAsWell) {
    PrivateCupsd::Options options;
    options.tcp = true;
    startWithTape(options);
    const CupsConnection tcp({QStringLiteral("localhost"), mCupsd->port()});
    const int job = printed(tcp, tapeJob(), longPostScript(3'000'000));
    ASSERT_GT(job, 0);
    const auto stored = mCupsd->waitForJob(job);
    ASSERT_TRUE(stored) << mCupsd->errorLog().toStdString();
    EXPECT_GT(stored->data.size(), 3'000'000);
}

TEST_F(CupsConnectionTest, cutsTextsThatNoServiceTakes) {
    startWithTape();
    JobRequest request = tapeJob();
    request.title = QString(QStringLiteral("a")) + QString(200, QChar(0xE4));
    const int job = printed(service(), request, postScript());
    const auto status = service().jobAttributes(job, within(kLong));
    ASSERT_TRUE(status) << status.error().sentence.toStdString();
    EXPECT_EQ(status->title, QString(QStringLiteral("a")) + QString(127, QChar(0xE4)));

    request.title.clear();
    const auto untitled =
        service().jobAttributes(printed(service(), request, postScript()), within(kLong));
    ASSERT_TRUE(untitled);
    EXPECT_EQ(untitled->title, QStringLiteral("Untitled"));
}

TEST_F(CupsConnectionTest, reportsProgress) {
    startWithTape();
    const auto job = service().createJob(tapeJob(), within(kLong));
    ASSERT_TRUE(job);
    QByteArray document = longPostScript(1'000'000);
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    qint64 last = 0;
    int calls = 0;
    const auto progress = [&](qint64 sent, qint64 total) {
        EXPECT_GT(sent, last);
        EXPECT_EQ(total, document.size());
        last = sent;
        ++calls;
    };
    ASSERT_TRUE(service().sendDocument(*job, tapeJob(), buffer, progress, within(kLong)));
    EXPECT_EQ(last, document.size());
    EXPECT_GT(calls, 2);
}

TEST_F(CupsConnectionTest, leavesJobsWithAPausedQueue) {
    startWithTape();
    ASSERT_TRUE(mCupsd->pause(kTape));
    const int job = printed(service(), tapeJob(), postScript());
    ASSERT_GT(job, 0);
    EXPECT_EQ(stateOf(job), JobState::Pending);
    EXPECT_FALSE(mCupsd->hasReachedPrinter(job));
    ASSERT_TRUE(mCupsd->resume(kTape));
    EXPECT_TRUE(mCupsd->waitForJob(job));
}

TEST_F(CupsConnectionTest, tellsThatAQueueRejectsJobs) {
    startWithTape();
    ASSERT_TRUE(mCupsd->reject(kTape));
    EXPECT_EQ(errorOf(service().validateJob(tapeJob(), within(kLong))).kind, ErrorKind::Rejecting);
    const Error error = errorOf(service().createJob(tapeJob(), within(kLong)));
    EXPECT_EQ(error.kind, ErrorKind::Rejecting);
    EXPECT_TRUE(error.sentence.contains(QStringLiteral("“tape”")));
    ASSERT_TRUE(mCupsd->accept(kTape));
    EXPECT_TRUE(service().createJob(tapeJob(), within(kLong)));
}

TEST_F(CupsConnectionTest, tellsThatSigningInIsNeeded) {
    PrivateCupsd::Options options;
    options.policy = "<Limit Create-Job>\nAuthType Basic\nRequire valid-user\n"
                     "Order deny,allow\n</Limit>\n";
    startWithTape(options);
    const Error error = errorOf(service().createJob(tapeJob(), within(kLong)));
    EXPECT_EQ(error.kind, ErrorKind::AuthenticationNeeded);
    EXPECT_TRUE(error.sentence.contains(mCupsd->socketPath()));
}

TEST_F(CupsConnectionTest, tellsThatADocumentsTypeIsNotSupported) {
    startWithTape();
    JobRequest request = tapeJob();
    request.documentFormat = QStringLiteral("application/x-unheard-of");
    EXPECT_EQ(errorOf(service().validateJob(request, within(kLong))).kind,
              ErrorKind::FormatNotSupported);
    const auto job = service().createJob(request, within(kLong));
    ASSERT_TRUE(job);
    QByteArray document = postScript();
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    const Error error = errorOf(service().sendDocument(*job, request, buffer, {}, within(kLong)));
    EXPECT_EQ(error.kind, ErrorKind::FormatNotSupported);
    EXPECT_TRUE(error.sentence.contains(request.documentFormat));
    EXPECT_EQ(stateOf(*job), JobState::Canceled) << "nothing unfinished is left";
}

TEST_F(CupsConnectionTest, cancelsJobs) {
    startWithTape();
    mCupsd->holdPrinter(true);
    const int job = printed(service(), tapeJob(), postScript());
    EXPECT_TRUE(service().cancelJob(job, QStringLiteral("somebody"), within(kLong)));
    EXPECT_EQ(stateOf(job), JobState::Canceled);
    const Error again = errorOf(service().cancelJob(job, {}, within(kLong)));
    EXPECT_EQ(again.kind, ErrorKind::Other);
    EXPECT_TRUE(again.sentence.contains(QStringLiteral("already canceled")))
        << "the service's own words: " << again.sentence.toStdString();
}

TEST_F(CupsConnectionTest, stopsInTheMiddleOfADocumentAndLeavesNothing) {
    startWithTape();
    const auto job = service().createJob(tapeJob(), within(kLong));
    ASSERT_TRUE(job);
    QByteArray document = longPostScript(40'000'000);
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    CancelFlag flag;
    QElapsedTimer sinceCancelled;
    const auto progress = [&](qint64 sent, qint64) {
        if (sent > 1'000'000 && !flag.isCancelled()) {
            sinceCancelled.start();
            flag.cancel();
        }
    };
    const auto sent =
        service().sendDocument(*job, tapeJob(), buffer, progress, within(kLong, &flag));
    ASSERT_TRUE(sinceCancelled.isValid());
    EXPECT_LT(sinceCancelled.elapsed(), kSoon);
    EXPECT_EQ(errorOf(sent).kind, ErrorKind::Cancelled);
    EXPECT_LT(buffer.pos(), document.size() / 2);
    EXPECT_EQ(stateOf(*job), JobState::Canceled);
    EXPECT_FALSE(mCupsd->hasReachedPrinter(*job));
    EXPECT_GT(printed(service(), tapeJob(), postScript()), 0) << "the service goes on";
}

TEST_F(CupsConnectionTest, cancelsTheJobOfADocumentThatBreaks) {
    startWithTape();
    const auto job = service().createJob(tapeJob(), within(kLong));
    ASSERT_TRUE(job);
    BrokenDevice device;
    const Error error = errorOf(service().sendDocument(*job, tapeJob(), device, {}, within(kLong)));
    EXPECT_EQ(error.kind, ErrorKind::DocumentUnreadable);
    EXPECT_TRUE(error.sentence.contains(QStringLiteral("the disk is on fire")));
    EXPECT_EQ(stateOf(*job), JobState::Canceled);
    EXPECT_FALSE(mCupsd->hasReachedPrinter(*job));
}

TEST_F(CupsConnectionTest, tellsThatTheServiceWentAwayAndFindsItAgain) {
    startWithTape();
    const auto job = service().createJob(tapeJob(), within(kLong));
    ASSERT_TRUE(job);
    QByteArray document = longPostScript(40'000'000);
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    bool killed = false;
    const auto progress = [&](qint64 sent, qint64) {
        if (sent > 1'000'000 && !std::exchange(killed, true))
            mCupsd->kill();
    };
    QElapsedTimer timer;
    timer.start();
    const Error error =
        errorOf(service().sendDocument(*job, tapeJob(), buffer, progress, within(kLong)));
    EXPECT_LT(timer.elapsed(), kLong / 2);
    EXPECT_EQ(error.kind, ErrorKind::ServerGone);
    EXPECT_TRUE(error.sentence.contains(QStringLiteral("may still be in the queue")));
    EXPECT_EQ(errorOf(service().listQueues(within(kLong))).kind, ErrorKind::NoService);

    ASSERT_TRUE(mCupsd->start()) << mCupsd->errorLog().toStdString();
    const int next = printed(service(), tapeJob(), postScript());
    EXPECT_TRUE(mCupsd->waitForJob(next));
}

TEST(CupsConnectionTimes, tellsThatThereIsNoService) {
    const StandInServer closed(StandInServer::Behaviour::Silent);
    int freed = 0;
    {
        const StandInServer server(StandInServer::Behaviour::Silent);
        freed = server.port();
    }
    const ServiceAddress addresses[] = {
        {QStringLiteral("/nonexistent/cups.sock")},
        {u'/' + QString(200, u'a')},
        {QStringLiteral("127.0.0.1"), freed},
        {QStringLiteral("no-such-host.invalid")},
    };
    for (const ServiceAddress& address : addresses) {
        SCOPED_TRACE(address.text().toStdString());
        const CupsConnection service(address);
        EXPECT_EQ(errorOf(service.reach(within(kLong))).kind, ErrorKind::NoService);
        for (const Call& call : everyCall()) {
            const Error error = call.run(service, within(kLong));
            EXPECT_EQ(error.kind, ErrorKind::NoService) << call.name;
            EXPECT_TRUE(error.sentence.contains(address.text())) << call.name;
        }
    }
}

TEST(CupsConnectionTimes, tellsThatNothingListensAtASocket) {
    const QTemporaryDir folder;
    const QString unserved = folder.filePath(QStringLiteral("cups.sock"));
    QFile file(unserved);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    for (const QString& path : {QStringLiteral("/nonexistent/%1.sock"), unserved}) {
        const Error error = errorOf(CupsConnection({path}).reach(within(kLong)));
        EXPECT_EQ(error.kind, ErrorKind::NoService);
        EXPECT_TRUE(error.sentence.startsWith(QStringLiteral("There is no print service at ") +
                                              path + QStringLiteral(": nothing listens at")))
            << error.sentence.toStdString();
    }
}

TEST(CupsConnectionTimes, givesUpOnAnUnreachableService) {
    const StandInServer server(StandInServer::Behaviour::NotAccepting);
    ASSERT_GT(server.port(), 0);
    for (const Call& call : everyCall()) {
        QElapsedTimer timer;
        timer.start();
        const Error error = call.run(standIn(server), within(300));
        EXPECT_EQ(error.kind, ErrorKind::Unreachable) << call.name;
        EXPECT_TRUE(error.sentence.contains(QStringLiteral("within 0.3 seconds"))) << call.name;
        EXPECT_GE(timer.elapsed(), 290) << call.name;
        EXPECT_LT(timer.elapsed(), 300 + CupsConnection::kCleanUpTime + kSoon) << call.name;
    }
}

TEST(CupsConnectionTimes, givesUpOnAServiceThatDoesNotAnswer) {
    using Behaviour = StandInServer::Behaviour;
    const QByteArray answer = http("200 OK", "application/ipp", QByteArray(5'000, '\0'));
    for (const Behaviour behaviour :
         {Behaviour::Silent, Behaviour::NotReading, Behaviour::Trickling}) {
        const StandInServer server(behaviour, answer);
        EXPECT_TRUE(standIn(server).reach(within(kLong)));
        for (const Call& call : everyCall()) {
            SCOPED_TRACE(std::string(call.name) + ", behaviour " +
                         std::to_string(static_cast<int>(behaviour)));
            QElapsedTimer timer;
            timer.start();
            const Error error = call.run(standIn(server), within(300));
            EXPECT_EQ(error.kind, ErrorKind::SilentServer) << error.sentence.toStdString();
            EXPECT_GE(timer.elapsed(), 290);
            EXPECT_LT(timer.elapsed(), 300 + CupsConnection::kCleanUpTime + kSoon);
        }
    }
}

TEST(CupsConnectionTimes, endsSoonWhenCancelled) {
    using Behaviour = StandInServer::Behaviour;
    const QByteArray answer = http("200 OK", "application/ipp", QByteArray(5'000, '\0'));
    for (const Behaviour behaviour : {Behaviour::NotAccepting, Behaviour::Silent,
                                      Behaviour::NotReading, Behaviour::Trickling}) {
        const StandInServer server(behaviour, answer);
        for (const Call& call : everyCall()) {
            SCOPED_TRACE(std::string(call.name) + ", behaviour " +
                         std::to_string(static_cast<int>(behaviour)));
            CancelFlag flag;
            Error error;
            const qint64 took = timeToCancel(
                200, flag, [&] { error = call.run(standIn(server), within(kLong, &flag)); });
            EXPECT_EQ(error.kind, ErrorKind::Cancelled) << error.sentence.toStdString();
            EXPECT_LT(took, CupsConnection::kCleanUpTime + kSoon / 2);
        }
    }
}

TEST(CupsConnectionTimes, doesNothingOnceCancelledOrOutOfTime) {
    const StandInServer server(StandInServer::Behaviour::Silent);
    CancelFlag flag;
    flag.cancel();
    for (const Call& call : everyCall()) {
        if (std::string(call.name) == "sendDocument")
            continue; // which cleans up behind itself, see below
        EXPECT_EQ(call.run(standIn(server), within(kLong, &flag)).kind, ErrorKind::Cancelled);
        EXPECT_EQ(call.run(standIn(server), within(0)).kind, ErrorKind::Unreachable);
    }
    EXPECT_EQ(server.connections(), 0);
    EXPECT_EQ(sendTo(standIn(server), within(kLong, &flag), 1).kind, ErrorKind::Cancelled);
    EXPECT_EQ(server.connections(), 1) << "to cancel the job only";
}

TEST(CupsConnectionTimes, tellsThatTheServiceEndedTheConnection) {
    using Behaviour = StandInServer::Behaviour;
    const QByteArray ipp("\x02\x00\x00\x00\x00\x00\x00\x01\x01", 9);
    struct Row {
        const char* what;
        Behaviour behaviour;
        QByteArray answer;
    };
    const Row rows[] = {
        {"before an answer", Behaviour::ClosingAtOnce, {}},
        {"without an answer", Behaviour::Answering, {}},
        {"within the status", Behaviour::Answering, "HTTP/1.1 20"},
        {"within the header", Behaviour::Answering, "HTTP/1.1 200 OK\r\nContent-Le"},
        {"within the content", Behaviour::Answering, http("200 OK", "application/ipp", ipp, 5'000)},
    };
    for (const Row& row : rows) {
        const StandInServer server(row.behaviour, row.answer);
        for (const Call& call : everyCall()) {
            SCOPED_TRACE(std::string(call.name) + ", " + row.what);
            QElapsedTimer timer;
            timer.start();
            const Error error = call.run(standIn(server), within(kLong));
            EXPECT_EQ(error.kind, ErrorKind::ServerGone) << error.sentence.toStdString();
            EXPECT_LT(timer.elapsed(), kLong / 3);
        }
    }
}

TEST(CupsConnectionTimes, tellsWhatElseMayAnswer) {
    struct Row {
        QByteArray answer;
        ErrorKind kind;
        const char* words;
    };
    const QByteArray empty;
    const Row rows[] = {
        {http("200 OK", "text/html", "<html><body>Welcome</body></html>"),
         ErrorKind::NotAPrintService, "not a print service"},
        {http("200 OK", "application/ipp", QByteArray(64, '\xff')), ErrorKind::NotAPrintService,
         "not a print service"},
        {http("401 Unauthorized", "text/plain", empty), ErrorKind::AuthenticationNeeded,
         "signing in"},
        {http("403 Forbidden", "text/plain", empty), ErrorKind::AuthenticationNeeded, "signing in"},
        {http("426 Upgrade Required", "text/plain", empty), ErrorKind::Other, "CUPS_ENCRYPTION"},
        {http("500 Internal Server Error", "text/plain", empty), ErrorKind::Other, "500"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.words);
        const StandInServer server(StandInServer::Behaviour::Answering, row.answer);
        const Error error = errorOf(standIn(server).listQueues(within(kLong)));
        EXPECT_EQ(error.kind, row.kind);
        EXPECT_TRUE(error.sentence.contains(QLatin1String(row.words)))
            << error.sentence.toStdString();
    }
}

TEST(CupsConnectionTimes, tellsTheServicesOwnWords) {
    const test::AnswerProxy server({}, [](const test::AnswerProxy::Exchange& asked) {
        const QByteArray words("\x01\x41\x00\x0estatus-message\x00\x0cout of tape.",
                               1 + 1 + 2 + 14 + 2 + 12);
        return test::AnswerProxy::Reply{
            test::httpWithIpp(test::ippAnswer(0x0500, asked.id, words))};
    });
    const CupsConnection service({QStringLiteral("127.0.0.1"), server.port()});
    const Error error = errorOf(service.listQueues(within(kLong)));
    EXPECT_EQ(error.kind, ErrorKind::Other);
    EXPECT_TRUE(
        error.sentence.contains(QStringLiteral("out of tape (server-error-internal-error).")))
        << error.sentence.toStdString();
}

TEST(CupsConnectionTimes, readsNoEndlessAnswer) {
    const QByteArray much(kMaxAnswerBytes + 1, 'a');
    const StandInServer ppd(StandInServer::Behaviour::Answering, http("200 OK", "a/b", much));
    EXPECT_EQ(errorOf(standIn(ppd).fetchPpd(kTape, within(kLong))).kind,
              ErrorKind::NotAPrintService);

    // One group of ever the same attribute, a text of 32 kB.
    const QByteArray attribute = QByteArray("\x41\x00\x01x\x7f\xff", 6) + QByteArray(0x7fff, 'a');
    const QByteArray ipp = QByteArray("\x02\x00\x00\x00\x00\x00\x00\x01\x04", 9) +
                           attribute.repeated(kMaxAnswerBytes / attribute.size() + 1);
    const StandInServer list(StandInServer::Behaviour::Answering,
                             http("200 OK", "application/ipp", ipp));
    EXPECT_EQ(errorOf(standIn(list).listQueues(within(kLong))).kind, ErrorKind::NotAPrintService);
}

} // namespace labelcut
