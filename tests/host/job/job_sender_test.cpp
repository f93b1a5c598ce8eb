// Jobs on their way to a queue, and what is said about them.
#include "host/job/job_sender.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QThread>

#include <atomic>

#include "tests/support/event_loop.h"
#include "tests/support/private_cupsd.h"
#include "tests/support/stand_in_server.h"

namespace labelcut::test {

using testing::HasSubstr;

namespace {

const QString kPpd = QStringLiteral(LABELCUT_TEST_DATA "/tiny_tape.ppd");
const QString kTape = QStringLiteral("tape");

/// PostScript of at least so many bytes.
QByteArray postScript(qsizetype bytes = 0) {
    const QByteArray line = "% a comment that only makes the document longer than a buffer is\n";
    return "%!PS-Adobe-3.0\n%%Pages: 1\n%%EndComments\n%%BeginProlog\n%%EndProlog\n"
           "%%BeginSetup\n%%EndSetup\n%%Page: 1 1\n%%BeginPageSetup\n%%EndPageSetup\n" +
           line.repeated(bytes / line.size()) +
           "newpath 10 10 moveto 20 20 lineto stroke showpage\n%%Trailer\n%%EOF\n";
}

/// What one sender has said, in order where that counts.
struct Said {
    explicit Said(JobSender& sender) {
        using S = JobSender;
        QObject::connect(&sender, &S::progress, &context, [&](qint64 sent, qint64 total) {
            log << QStringLiteral("progress");
            lastSent = sent;
            lastTotal = total;
            ++reports;
        });
        QObject::connect(&sender, &S::jobCreated, &context, [&](int id) {
            log << QStringLiteral("created");
            job = id;
        });
        QObject::connect(&sender, &S::documentSent, &context,
                         [&] { log << QStringLiteral("sent"); });
        QObject::connect(&sender, &S::reported, &context, [&](const JobReport& report) {
            states << report.sentences();
            last = report;
        });
        QObject::connect(&sender, &S::refused, &context,
                         [&](const Error& e) { refusals.push_back(e); });
        QObject::connect(&sender, &S::failed, &context,
                         [&](const Error& e) { errors.push_back(e); });
        QObject::connect(&sender, &S::done, &context, [&](JobEnd end) { ends.push_back(end); });
        log.reserve(8);
    }
    bool waitForEnd(int timeout = kLong) {
        return turnUntil([&] { return !errors.empty() || !ends.empty(); }, timeout);
    }
    std::string lastState() const { return states.isEmpty() ? "" : states.back().toStdString(); }
    std::string sentence() const {
        return errors.empty() ? "(no error)" : errors.front().sentence.toStdString();
    }

    QObject context;
    QStringList log;
    QStringList states;
    JobReport last;
    std::vector<Error> refusals;
    std::vector<Error> errors;
    std::vector<JobEnd> ends;
    qint64 lastSent = 0;
    qint64 lastTotal = 0;
    int reports = 0;
    int job = 0;
};

CupsConnection to(const StandInServer& server) {
    return CupsConnection({QStringLiteral("127.0.0.1"), server.port()});
}

JobSender::Limits quick() {
    JobSender::Limits limits;
    limits.request = kLong;
    limits.poll = 100;
    return limits;
}

} // namespace

class JobSenderTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(service.start()) << service.errorLog().toStdString();
        ASSERT_TRUE(service.addQueue(kTape, kPpd));
        sender.setLimits(quick());
    }
    JobToSend job(const QByteArray& document = postScript()) {
        const QString path = folder.filePath(QStringLiteral("label.ps"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(document), document.size());
        JobToSend all;
        all.documentPath = path;
        all.request.queue = kTape;
        all.request.title = QStringLiteral("Labels");
        all.request.user = QStringLiteral("somebody");
        all.request.documentFormat = QStringLiteral("application/postscript");
        all.request.options = {{QStringLiteral("PageSize"), QStringLiteral("DC12")},
                               {QStringLiteral("KvHalfCut"), QStringLiteral("ON")}};
        return all;
    }
    JobState stateOf(int id) const {
        const auto status = connection.jobAttributes(id, {kLong, nullptr});
        EXPECT_TRUE(status);
        return status ? status->state : JobState::Pending;
    }

    QTemporaryDir folder;
    PrivateCupsd service;
    const CupsConnection connection{{service.socketPath(), 0}};
    JobSender sender{connection};
    Said said{sender};
};

TEST_F(JobSenderTest, AJobArrivesAsItWasAskedFor) {
    const JobToSend wanted = job(postScript(400'000));
    EXPECT_LT(timeOf([&] { sender.send(wanted); }), kSoon);
    EXPECT_TRUE(sender.isBusy());
    EXPECT_TRUE(said.log.isEmpty()) << "signals come later";
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_EQ(said.ends, std::vector{JobEnd::Printed}) << said.sentence();
    EXPECT_FALSE(sender.isBusy());
    EXPECT_EQ(said.log.front(), QStringLiteral("created"));
    EXPECT_EQ(said.log.back(), QStringLiteral("sent"));
    EXPECT_EQ(said.lastSent, QFile(wanted.documentPath).size());
    EXPECT_EQ(said.lastTotal, said.lastSent);
    EXPECT_GT(said.job, 0);
    EXPECT_EQ(sender.jobId(), said.job);
    EXPECT_TRUE(sender.isSent());
    EXPECT_THAT(said.lastState(), HasSubstr("the printer has all of it"));
    const auto stored = service.waitForJob(said.job);
    ASSERT_TRUE(stored);
    EXPECT_THAT(stored->options().toStdString(), HasSubstr("KvHalfCut=ON"));
    EXPECT_THAT(stored->options().toStdString(), HasSubstr("PageSize=DC12"));
}

TEST_F(JobSenderTest, ThePpdIsLookedAtBeforeAJobIsMade) {
    const auto here = QThread::currentThread();
    std::atomic<bool> wasElsewhere = false;
    std::atomic<bool> hadOption = false;
    JobToSend wanted = job();
    wanted.checkPpd = [&](const QByteArray& ppd) -> std::optional<Error> {
        wasElsewhere = QThread::currentThread() != here;
        hadOption = ppd.contains("KvHalfCut");
        return Error{ErrorKind::Other, QStringLiteral("not like this")};
    };
    sender.send(wanted);
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_EQ(said.sentence(), "not like this");
    EXPECT_TRUE(wasElsewhere);
    EXPECT_TRUE(hadOption);
    EXPECT_EQ(said.job, 0);
    EXPECT_FALSE(connection.jobAttributes(1, {kLong, nullptr})) << "no job was made";
}

TEST_F(JobSenderTest, AnOptionThatIsGoneIsToldAndNothingIsPrinted) {
    JobToSend wanted = job();
    wanted.checkPpd =
        choicesStillThere(kTape, {{QStringLiteral("PageSize"), QStringLiteral("DC12")},
                                  {QStringLiteral("KvHalfCut"), QStringLiteral("ON")}});
    sender.send(wanted);
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_EQ(said.ends, std::vector{JobEnd::Printed}) << said.sentence();

    // The queue gets another PPD while the user looks at the old one.
    QFile source(kPpd);
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    QFile changed(folder.filePath(QStringLiteral("changed.ppd")));
    ASSERT_TRUE(changed.open(QIODevice::WriteOnly));
    changed.write(source.readAll().replace("KvHalfCut", "KvFullCut"));
    changed.close();
    ASSERT_TRUE(service.addQueue(kTape, changed.fileName()));
    said.ends.clear();
    sender.send(wanted);
    ASSERT_TRUE(said.waitForEnd());
    ASSERT_EQ(said.errors.size(), 1U);
    EXPECT_THAT(said.sentence(), HasSubstr("KvHalfCut=ON"));
    EXPECT_THAT(said.sentence(), HasSubstr("nothing was printed"));
    EXPECT_THAT(said.sentence(), testing::Not(HasSubstr("DC12")));
}

TEST_F(JobSenderTest, APausedQueueHoldsTheJobAndSaysSo) {
    ASSERT_TRUE(service.pause(kTape));
    sender.send(job());
    ASSERT_TRUE(turnUntil([&] { return !said.states.isEmpty(); }));
    EXPECT_THAT(said.lastState(), HasSubstr("waits for its turn"));
    EXPECT_THAT(said.lastState(), HasSubstr("Paused: jobs are held until it is resumed"));
    ASSERT_TRUE(service.resume(kTape));
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_EQ(said.ends, std::vector{JobEnd::Printed}) << said.sentence();
}

TEST_F(JobSenderTest, WatchingCanEndBeforeTheJob) {
    ASSERT_TRUE(service.pause(kTape));
    sender.send(job());
    ASSERT_TRUE(turnUntil([&] { return sender.isSent(); }));
    EXPECT_LT(timeOf([&] { sender.stopWatching(); }), kSoon);
    ASSERT_TRUE(said.waitForEnd(kSoon));
    EXPECT_EQ(said.ends, std::vector{JobEnd::StillQueued});
    EXPECT_EQ(stateOf(said.job), JobState::Pending);

    JobSender::Limits limits = quick();
    limits.watch = 300;
    sender.setLimits(limits);
    said.ends.clear();
    sender.send(job());
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_EQ(said.ends, std::vector{JobEnd::StillQueued});
}

TEST_F(JobSenderTest, CancelTakesAWaitingJobBack) {
    ASSERT_TRUE(service.pause(kTape));
    sender.send(job());
    ASSERT_TRUE(turnUntil([&] { return !said.states.isEmpty(); }));
    EXPECT_LT(timeOf([&] { sender.cancel(); }), kSoon);
    ASSERT_TRUE(said.waitForEnd());
    ASSERT_EQ(said.errors.size(), 1U);
    EXPECT_EQ(said.errors.front().kind, ErrorKind::Cancelled);
    EXPECT_EQ(said.sentence(), "Cancelled; nothing is printed.");
    EXPECT_EQ(stateOf(said.job), JobState::Canceled);
    EXPECT_FALSE(sender.isBusy());
}

TEST_F(JobSenderTest, CancelOfAJobThatThePrinterHasBegunSaysThatLabelsMayBeOut) {
    service.holdPrinter(true);
    sender.send(job());
    ASSERT_TRUE(turnUntil([&] { return service.hasReachedPrinter(said.job); }));
    sender.cancel();
    ASSERT_TRUE(said.waitForEnd());
    ASSERT_EQ(said.errors.size(), 1U);
    EXPECT_EQ(said.errors.front().kind, ErrorKind::Cancelled);
    EXPECT_THAT(said.sentence(),
                testing::StartsWith("Job " + std::to_string(said.job) +
                                    " was removed, but some of its labels may be printed"));
    EXPECT_EQ(stateOf(said.job), JobState::Canceled);
    service.holdPrinter(false);
}

TEST_F(JobSenderTest, CancelWhileSendingLeavesNoJob) {
    // Slow enough to be caught in the middle: the first report comes with the first bytes.
    QObject::connect(&sender, &JobSender::progress, &sender, [&] { sender.cancel(); });
    sender.send(job(postScript(200'000'000)));
    Pulse pulse;
    ASSERT_TRUE(said.waitForEnd());
    ASSERT_EQ(said.errors.size(), 1U);
    EXPECT_EQ(said.errors.front().kind, ErrorKind::Cancelled);
    EXPECT_FALSE(sender.isSent());
    EXPECT_LT(said.lastSent, said.lastTotal);
    EXPECT_LT(pulse.longestPause(), kSoon);
    EXPECT_EQ(stateOf(said.job), JobState::Canceled);
    EXPECT_FALSE(service.hasReachedPrinter(said.job));
}

TEST_F(JobSenderTest, ItsEndWhileSendingLeavesNoJobEither) {
    auto own = std::make_unique<JobSender>(connection);
    own->setLimits(quick());
    int created = 0;
    bool hasBegun = false;
    QObject::connect(own.get(), &JobSender::jobCreated, &said.context,
                     [&](int id) { created = id; });
    QObject::connect(own.get(), &JobSender::progress, &said.context, [&] { hasBegun = true; });
    own->send(job(postScript(200'000'000)));
    ASSERT_TRUE(turnUntil([&] { return hasBegun; }));
    EXPECT_LT(timeOf([&] { own.reset(); }), kSoon);
    EXPECT_TRUE(turnUntil([&] { return stateOf(created) == JobState::Canceled; }));
}

TEST_F(JobSenderTest, ItsEndAfterSendingLeavesTheJobAlone) {
    ASSERT_TRUE(service.pause(kTape));
    auto own = std::make_unique<JobSender>(connection);
    own->setLimits(quick());
    bool isSent = false;
    QObject::connect(own.get(), &JobSender::documentSent, &said.context, [&] { isSent = true; });
    own->send(job());
    ASSERT_TRUE(turnUntil([&] { return isSent; }));
    const int id = own->jobId();
    own.reset();
    turnFor(500);
    EXPECT_EQ(stateOf(id), JobState::Pending);
}

TEST_F(JobSenderTest, SomebodyElseRemovesTheJob) {
    ASSERT_TRUE(service.pause(kTape));
    sender.send(job());
    ASSERT_TRUE(turnUntil([&] { return !said.states.isEmpty(); }));
    ASSERT_TRUE(connection.cancelJob(said.job, QStringLiteral("somebody"), {kLong, nullptr}));
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_EQ(said.ends, std::vector{JobEnd::Removed}) << said.sentence();
}

TEST_F(JobSenderTest, AJobThatTheServiceGivesUpIsAFailureWithItsReason) {
    for (const auto& [reason, start] :
         {std::pair("", "The print service gave up job %1. Its error log"),
          std::pair("The tape is jammed.",
                    "The print service gave up job %1 (The tape is jammed.). Its error log")}) {
        said.errors.clear();
        service.breakPrinter(reason);
        sender.send(job());
        ASSERT_TRUE(said.waitForEnd());
        ASSERT_EQ(said.errors.size(), 1U);
        EXPECT_EQ(said.errors.front().kind, ErrorKind::Other);
        EXPECT_THAT(said.sentence(),
                    testing::StartsWith(QString::fromUtf8(start).arg(said.job).toStdString()));
        EXPECT_EQ(stateOf(said.job), JobState::Aborted);
    }
    EXPECT_TRUE(said.ends.empty());
}

TEST_F(JobSenderTest, AJobThatWaitsForItsReleaseIsSaidSo) {
    JobToSend held = job();
    held.request.options.emplace_back(QStringLiteral("job-hold-until"),
                                      QStringLiteral("indefinite"));
    sender.send(held);
    ASSERT_TRUE(turnUntil([&] { return !said.states.isEmpty(); }));
    EXPECT_EQ(said.lastState(),
              "Job " + std::to_string(said.job) + " is held until somebody releases it.");
    EXPECT_TRUE(sender.isBusy());
}

TEST_F(JobSenderTest, AJobIsHeldFromTheStartAndReleased) {
    JobToSend held = job();
    held.request.isHeld = true;
    sender.send(held);
    ASSERT_TRUE(turnUntil([&] { return said.last.canRelease; })) << said.lastState();
    EXPECT_EQ(said.last.state, JobState::Held);
    EXPECT_FALSE(said.last.canHold);
    EXPECT_EQ(said.last.trouble.toStdString(), "");
    turnFor(500);
    EXPECT_FALSE(service.hasReachedPrinter(said.job));
    sender.release();
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_EQ(said.ends, std::vector{JobEnd::Printed}) << said.sentence();
    EXPECT_TRUE(said.refusals.empty());
}

TEST_F(JobSenderTest, AWaitingJobIsHeldThoughItsPrinterGoesOn) {
    ASSERT_TRUE(service.pause(kTape));
    sender.send(job());
    ASSERT_TRUE(turnUntil([&] { return said.last.canHold; })) << said.lastState();
    EXPECT_THAT(said.last.trouble.toStdString(), HasSubstr("Paused"));
    sender.hold();
    ASSERT_TRUE(turnUntil([&] { return said.last.canRelease; })) << said.lastState();
    EXPECT_EQ(said.last.trouble.toStdString(), "") << "not the printer holds it up";
    ASSERT_TRUE(service.resume(kTape));
    turnFor(500);
    EXPECT_EQ(stateOf(said.job), JobState::Held);
    sender.release();
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_EQ(said.ends, std::vector{JobEnd::Printed}) << said.sentence();
}

TEST_F(JobSenderTest, AJobThatMustNotBeHeldIsToldAndGoesOn) {
    PrivateCupsd::Options options;
    options.policy =
        "<Limit Hold-Job>\nAuthType Basic\nRequire valid-user\nOrder deny,allow\n</Limit>\n";
    PrivateCupsd strict(options);
    ASSERT_TRUE(strict.start()) << strict.errorLog().toStdString();
    ASSERT_TRUE(strict.addQueue(kTape, kPpd));
    ASSERT_TRUE(strict.pause(kTape));
    JobSender other(CupsConnection({strict.socketPath(), 0}));
    other.setLimits(quick());
    Said heard(other);
    other.send(job());
    ASSERT_TRUE(turnUntil([&] { return heard.last.canHold; }));
    other.hold();
    ASSERT_TRUE(turnUntil([&] { return !heard.refusals.empty(); }));
    EXPECT_EQ(heard.refusals.front().kind, ErrorKind::AuthenticationNeeded);
    ASSERT_TRUE(strict.resume(kTape));
    ASSERT_TRUE(heard.waitForEnd());
    EXPECT_EQ(heard.ends, std::vector{JobEnd::Printed}) << heard.sentence();
    EXPECT_EQ(heard.refusals.size(), 1U);
}

TEST_F(JobSenderTest, LabelsAreCountedAsTheQueueReportsThem) {
    service.letPrinterSay("PAGE: 1 1\nPAGE: 2 1\nPAGE: 3 1\n");
    service.holdPrinter(true);
    sender.send(job());
    EXPECT_TRUE(turnUntil([&] { return said.last.labelsDone >= 3; }));
    EXPECT_EQ(said.last.state, JobState::Processing);
    service.holdPrinter(false);
    ASSERT_TRUE(said.waitForEnd());
}

TEST_F(JobSenderTest, WhatThePrinterLacksIsTheJobsTrouble) {
    service.letPrinterSay("STATE: +media-empty-error\n");
    service.holdPrinter(true);
    sender.send(job());
    ASSERT_TRUE(turnUntil([&] { return !said.last.trouble.isEmpty(); })) << said.lastState();
    EXPECT_THAT(said.last.trouble.toStdString(), HasSubstr("Paper or tape is used up."));
    EXPECT_THAT(said.last.trouble.toStdString(), HasSubstr("See to it at the printer"));
    service.holdPrinter(false);
    ASSERT_TRUE(said.waitForEnd());
}

TEST_F(JobSenderTest, AJobThatAFilterBreaksHasComeToAStop) {
    QFile source(kPpd);
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    QFile changed(folder.filePath(QStringLiteral("failing.ppd")));
    ASSERT_TRUE(changed.open(QIODevice::WriteOnly));
    changed.write(source.readAll().replace("cups-postscript 0 -", "cups-postscript 0 /bin/false"));
    changed.close();
    ASSERT_TRUE(service.addQueue(kTape, changed.fileName()));
    sender.send(job());
    const std::string stopped = "has come to a stop";
    EXPECT_TRUE(turnUntil([&] { return said.lastState().find(stopped) != std::string::npos; }))
        << said.lastState() << said.sentence();
    EXPECT_TRUE(sender.isBusy()) << "somebody may let it go on";
}

TEST_F(JobSenderTest, AServiceThatForgetsEndedJobsLeavesTheirEndOpen) {
    PrivateCupsd::Options options;
    options.configuration = "PreserveJobHistory No\n";
    PrivateCupsd forgetful(options);
    ASSERT_TRUE(forgetful.start()) << forgetful.errorLog().toStdString();
    ASSERT_TRUE(forgetful.addQueue(kTape, kPpd));
    JobSender other(CupsConnection({forgetful.socketPath(), 0}));
    other.setLimits(quick());
    Said heard(other);
    other.send(job());
    ASSERT_TRUE(heard.waitForEnd());
    EXPECT_EQ(heard.ends, std::vector{JobEnd::Unknown}) << heard.sentence();
}

TEST_F(JobSenderTest, AJobThatEndedBeforeItsCancellationIsDone) {
    JobSender::Limits limits = quick();
    limits.poll = kLong;
    sender.setLimits(limits);
    service.holdPrinter(true);
    sender.send(job());
    ASSERT_TRUE(turnUntil([&] { return !said.states.isEmpty(); }));
    service.holdPrinter(false);
    ASSERT_TRUE(turnUntil([&] { return stateOf(said.job) == JobState::Completed; }));
    sender.cancel();
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_EQ(said.ends, std::vector{JobEnd::Printed}) << said.sentence();
}

TEST_F(JobSenderTest, AJobThatMustNotBeRemovedIsTold) {
    PrivateCupsd::Options options;
    options.policy =
        "<Limit Cancel-Job>\nAuthType Basic\nRequire valid-user\nOrder deny,allow\n</Limit>\n";
    PrivateCupsd strict(options);
    ASSERT_TRUE(strict.start()) << strict.errorLog().toStdString();
    ASSERT_TRUE(strict.addQueue(kTape, kPpd));
    ASSERT_TRUE(strict.pause(kTape));
    const CupsConnection way({strict.socketPath(), 0});
    JobSender other(way);
    other.setLimits(quick());
    Said heard(other);
    other.send(job());
    ASSERT_TRUE(turnUntil([&] { return !heard.states.isEmpty(); }));
    other.cancel();
    ASSERT_TRUE(heard.waitForEnd());
    EXPECT_TRUE(heard.ends.empty());
    EXPECT_EQ(heard.errors.front().kind, ErrorKind::AuthenticationNeeded) << heard.sentence();
    EXPECT_THAT(heard.sentence(),
                testing::StartsWith("Job 1 may have been taken and printed: look at the printer "
                                    "and at “lpstat -W all -o tape” before you print again."));
    EXPECT_EQ(way.jobAttributes(heard.job, {kLong, nullptr})->state, JobState::Pending);
}

TEST_F(JobSenderTest, CancelBeforeThereIsAJobMakesNone) {
    QSemaphore begun;
    QSemaphore cancelled;
    JobToSend wanted = job();
    wanted.checkPpd = [&](const QByteArray&) {
        begun.release();
        cancelled.acquire();
        return std::optional<Error>();
    };
    sender.send(wanted);
    begun.acquire();
    sender.cancel();
    cancelled.release();
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_EQ(said.errors.front().kind, ErrorKind::Cancelled) << said.sentence();
    EXPECT_FALSE(connection.jobAttributes(1, {kLong, nullptr})) << "no job was made";
}

TEST(ChoicesStillThereTest, WhatIsNoPpdIsTold) {
    const std::optional<Error> error = choicesStillThere(kTape, {})("no PPD at all\n");
    ASSERT_TRUE(error);
    EXPECT_THAT(error->sentence.toStdString(), HasSubstr("tape"));
}

TEST_F(JobSenderTest, TheServiceMayGoAndComeBackWhileAJobWaits) {
    ASSERT_TRUE(service.pause(kTape));
    sender.send(job());
    ASSERT_TRUE(turnUntil([&] { return !said.states.isEmpty(); }));
    service.kill();
    ASSERT_TRUE(turnUntil([&] { return said.states.size() > 1; }));
    EXPECT_THAT(said.lastState(), testing::StartsWith("Job 1 has been sent; "));
    EXPECT_THAT(said.lastState(), HasSubstr("no print service"));
    EXPECT_TRUE(said.errors.empty());
    ASSERT_TRUE(service.start());
    ASSERT_TRUE(turnUntil([&] { return said.lastState().find("waits") != std::string::npos; }));
    sender.cancel();
    ASSERT_TRUE(said.waitForEnd());
}

TEST_F(JobSenderTest, FailuresBeforeTheJobAreSentences) {
    const auto failsWith = [&](const JobToSend& wanted, ErrorKind kind) {
        said.errors.clear();
        sender.send(wanted);
        ASSERT_TRUE(said.waitForEnd());
        ASSERT_EQ(said.errors.size(), 1U);
        EXPECT_EQ(said.errors.front().kind, kind) << said.sentence();
        EXPECT_FALSE(sender.isBusy());
    };
    JobToSend wanted = job();
    wanted.documentPath = folder.filePath(QStringLiteral("missing.ps"));
    failsWith(wanted, ErrorKind::DocumentUnreadable);
    wanted.documentPath = folder.path();
    failsWith(wanted, ErrorKind::DocumentUnreadable);
    wanted = job();
    wanted.request.queue = QStringLiteral("gone");
    failsWith(wanted, ErrorKind::NoSuchQueue);
    wanted.checkPpd = [](const QByteArray&) { return std::optional<Error>(); };
    failsWith(wanted, ErrorKind::NoSuchQueue);
    wanted = job();
    wanted.request.documentFormat = QStringLiteral("application/nonsense");
    failsWith(wanted, ErrorKind::FormatNotSupported);
    ASSERT_TRUE(service.reject(kTape));
    failsWith(job(), ErrorKind::Rejecting);
    EXPECT_TRUE(said.ends.empty());
}

TEST_F(JobSenderTest, OnlyOneJobAtATime) {
    ASSERT_TRUE(service.pause(kTape));
    sender.send(job());
    sender.send(job());
    ASSERT_TRUE(turnUntil([&] { return sender.isSent(); }));
    sender.stopWatching();
    ASSERT_TRUE(said.waitForEnd());
    turnFor(200);
    EXPECT_EQ(said.ends.size(), 1U);
    EXPECT_FALSE(connection.jobAttributes(said.job + 1, {kLong, nullptr}));
}

// --- servers that misbehave ---

class SilentSenderTest : public JobSenderTest,
                         public testing::WithParamInterface<StandInServer::Behaviour> {};

TEST_P(SilentSenderTest, TheEventLoopTurnsAndCancelReturnsAtOnce) {
    const StandInServer server(GetParam());
    JobSender silent(to(server));
    JobSender::Limits limits = quick();
    silent.setLimits(limits);
    Said heard(silent);
    Pulse pulse;
    for (const bool checks : {true, false}) {
        heard.errors.clear();
        JobToSend wanted = job();
        if (checks)
            wanted.checkPpd = [](const QByteArray&) { return std::optional<Error>(); };
        silent.send(wanted);
        turnFor(300);
        ASSERT_TRUE(heard.errors.empty()) << heard.sentence();
        EXPECT_LT(timeOf([&] { silent.cancel(); }), kSoon);
        silent.cancel(); // twice is once
        ASSERT_TRUE(heard.waitForEnd(JobSender::kCancelTime + kSoon));
        ASSERT_EQ(heard.errors.size(), 1U);
        EXPECT_EQ(heard.errors.front().kind, ErrorKind::Cancelled);
        // Looking at the PPD makes no job; what was asked for behind it is still under way.
        EXPECT_THAT(heard.sentence(), checks ? testing::StartsWith("Cancelled; nothing is printed.")
                                             : testing::StartsWith("The job may still be printed"));
        EXPECT_FALSE(silent.isBusy());
    }
    limits.request = 300;
    silent.setLimits(limits);
    heard.errors.clear();
    silent.send(job());
    ASSERT_TRUE(heard.waitForEnd());
    EXPECT_NE(heard.errors.front().kind, ErrorKind::Cancelled);
    EXPECT_GT(pulse.ticks(), 20);
    EXPECT_LT(pulse.longestPause(), kSoon);
}

INSTANTIATE_TEST_SUITE_P(Kinds, SilentSenderTest,
                         testing::Values(StandInServer::Behaviour::Silent,
                                         StandInServer::Behaviour::NotReading,
                                         StandInServer::Behaviour::NotAccepting));

} // namespace labelcut::test
