// Faults of the print service, before, while and after a job is sent, for the command line and the
// dialog alike: a sentence, no choice lost, nothing left behind here or there.
#include <QDir>
#include <QLabel>

#include <csignal>
#include <string_view>

#include "host/presets/preset_store.h"
#include "host/printers/recent_printer.h"
#include "tests/faults/fault_fixtures.h"

namespace labelcut::test {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const QString kQueue = QStringLiteral("tape");
/// Larger than all buffers between the program and the service.
constexpr int kLarge = 20'000'000;
constexpr int kOfService = 20'000; // milliseconds

class ServiceFaultTest : public testing::Test {
protected:
    ServiceFaultTest() {
        EXPECT_TRUE(mService.start()) << mService.errorLog().toStdString();
        EXPECT_TRUE(mService.addQueue(kQueue, kTapePpd));
    }
    ~ServiceFaultTest() override {
        mDialog.reset();
        // What the dialog owned goes with threads of its own, soon.
        EXPECT_TRUE(turnUntil([&] { return mTemporaries.entries().isEmpty(); }))
            << mTemporaries.entries().join(u' ').toStdString();
    }
    CupsConnection direct() const {
        return CupsConnection(*ServiceAddress::fromText(mService.socketPath()));
    }
    CupsConnection held() const {
        return CupsConnection(*ServiceAddress::fromText(mProxy.address()));
    }
    QString large() const { return largePdf(mHome.path(QStringLiteral("large.pdf")), kLarge); }
    void show(const DialogRequest& request, const CupsConnection& service) {
        if (!mOffscreen)
            mOffscreen.emplace();
        mDialog = openDialog(request, service);
    }
    void open(const CupsConnection& service, const QString& document) {
        DialogRequest request;
        request.files = {document};
        request.queue = kQueue;
        show(request, service);
        ASSERT_TRUE(turnUntil(
            [&] { return mDialog->model().pageCount() > 0 && mDialog->model().hasPrinter(); }));
        settle();
        makeChoices(*mDialog);
        mMarks = mDialog->model().marks();
        saveAPreset();
    }
    void expectStillUsable() {
        EXPECT_TRUE(mDialog->isVisible());
        EXPECT_EQ(mDialog->model().marks(), mMarks);
        EXPECT_TRUE(part<QPushButton>(*mDialog, "print")->isEnabled());
        expectOneTruth(*mDialog);
        const PresetList list = PresetStore().list(PrinterIdentity::forQueue(kQueue));
        ASSERT_EQ(list.presets.size(), 1U);
        EXPECT_EQ(list.presets.front().name, QStringLiteral("Shelf"));
    }
    Outcome print(const QString& server, const QString& document,
                  const QStringList& more = {}) const {
        Start start;
        start.arguments =
            QStringList{QStringLiteral("print"), document, QStringLiteral("--printer"), kQueue} +
            more;
        start.environment[QStringLiteral("CUPS_SERVER")] = server;
        start.environment[QStringLiteral("TMPDIR")] = mTemporaries.path();
        return run(start);
    }
    /// The state of the only job there was.
    JobState stateOfJob() const {
        const auto status = direct().jobAttributes(1, {kOfService, nullptr});
        EXPECT_TRUE(status);
        return status ? status->state : JobState::Pending;
    }
    void expectNoJob() const {
        EXPECT_FALSE(direct().jobAttributes(1, {kOfService, nullptr})) << "no job was made";
    }
    /// What the service has of the first job's document.
    QByteArray spooled() const {
        return contentOf(mService.folder() + QStringLiteral("/spool/d00001-001"));
    }
    bool waitForHold() const {
        return turnUntil([&] { return mProxy.isHolding(); });
    }

    void saveAPreset() {
        Preset preset;
        preset.name = QStringLiteral("Shelf");
        preset.options.insert(QStringLiteral("KvHalfCut"), QStringLiteral("ON"));
        PresetStore store;
        EXPECT_TRUE(store.save(PrinterIdentity::forQueue(kQueue), preset, Overwrite::Yes));
    }

    std::optional<Offscreen> mOffscreen;
    PrivateHome mHome;
    PrivateCupsd mService;
    PrivateTemporaries mTemporaries;
    HoldingProxy mProxy{mService.socketPath()};
    std::unique_ptr<PrintDialog> mDialog;
    Settings mMarks;
};

/// Something that happens to the queue or service between opening and printing.
struct Fault {
    const char* name;
    void (*happens)(PrivateCupsd& service);
    const char* said;
};

void PrintTo(const Fault& fault, std::ostream* out) {
    *out << fault.name;
}

constexpr Fault kFaultsBefore[] = {
    {"ServiceKilled", [](PrivateCupsd& service) { service.kill(); }, "There is no print service"},
    {"QueueDeleted", [](PrivateCupsd& s) { EXPECT_TRUE(s.removeQueue(kQueue)); },
     "has no queue “tape”"},
    {"QueueRejecting", [](PrivateCupsd& service) { EXPECT_TRUE(service.reject(kQueue)); },
     "“tape” takes no new jobs"},
    {"OptionGone",
     [](PrivateCupsd& service) {
         const QString ppd = changedPpd(service.folder() + QStringLiteral("/changed.ppd"),
                                        "KvHalfCut", "KvFullCut");
         EXPECT_TRUE(service.addQueue(kQueue, ppd));
     },
     "KvHalfCut"},
    {"ChoiceGone",
     [](PrivateCupsd& service) {
         const QString ppd = changedPpd(service.folder() + QStringLiteral("/changed.ppd"),
                                        "Density Dark/", "Density Darker/");
         EXPECT_TRUE(service.addQueue(kQueue, ppd));
     },
     "Density"},
};

class FaultBeforeTest : public ServiceFaultTest, public testing::WithParamInterface<Fault> {};

} // namespace

TEST_P(FaultBeforeTest, IsToldByDialogAndCommandAndNothingIsPrinted) {
    open(direct(), kLabels);
    GetParam().happens(mService);
    pressPrint(*mDialog);
    ASSERT_TRUE(turnUntilTold(*mDialog, GetParam().said)) << messagesOf(*mDialog);
    expectStillUsable();
    const Outcome outcome =
        print(mService.socketPath(), kLabels, words("--set KvHalfCut=ON --set Density=Dark"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr(GetParam().said));
    EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultBeforeTest, testing::ValuesIn(kFaultsBefore),
                         [](const auto& fault) { return std::string(fault.param.name); });

TEST_F(ServiceFaultTest, AQueuePausedMeanwhileTakesTheJobAndTheWindowSaysThatItWaits) {
    open(direct(), kLabels);
    ASSERT_TRUE(mService.pause(kQueue));
    pressPrint(*mDialog);
    ASSERT_TRUE(turnUntilTold(*mDialog, "Paused: jobs are held until it is resumed"));
    click(*part<QPushButton>(*mDialog, "cancel"));
    ASSERT_TRUE(turnUntil([&] { return !mDialog->isVisible(); }));
    EXPECT_EQ(stateOfJob(), JobState::Pending);
}

TEST_F(ServiceFaultTest, AServiceThatDiesWhileTheDocumentIsSentIsToldByTheDialog) {
    open(held(), large());
    pressPrint(*mDialog);
    ASSERT_TRUE(waitForHold());
    mService.kill();
    mProxy.cut();
    ASSERT_TRUE(turnUntilTold(*mDialog, "ended the connection before it had answered"));
    EXPECT_THAT(messagesOf(*mDialog), HasSubstr("The unfinished job 1 may still be in the queue; "
                                                "“cancel 1” removes it."));
    expectStillUsable();
}

TEST_F(ServiceFaultTest, AServiceThatDiesWhileTheDocumentIsSentIsToldByTheCommand) {
    const QString document = large();
    RunningProgram program({QStringLiteral("print"), document, QStringLiteral("--printer"), kQueue},
                           {{QStringLiteral("CUPS_SERVER"), mProxy.address()}});
    ASSERT_TRUE(waitForHold());
    mService.kill();
    mProxy.cut();
    EXPECT_EQ(program.endedBy(), 0);
    EXPECT_EQ(program.status(), 1);
    EXPECT_EQ(program.out(), "");
    EXPECT_THAT(program.err(), AllOf(HasSubstr("ended the connection before it had answered"),
                                     HasSubstr("“cancel 1” removes it")));
}

TEST_F(ServiceFaultTest, AConnectionThatIsCutTakesTheUnfinishedJobWithIt) {
    open(held(), large());
    pressPrint(*mDialog);
    ASSERT_TRUE(waitForHold());
    mProxy.cut();
    ASSERT_TRUE(turnUntilTold(*mDialog, "ended the connection before it had answered"));
    EXPECT_THAT(messagesOf(*mDialog), testing::Not(HasSubstr("unfinished")));
    EXPECT_EQ(stateOfJob(), JobState::Canceled);
    expectStillUsable();
}

TEST_F(ServiceFaultTest, CancelInTheMiddleOfADocumentLeavesNoJob) {
    open(held(), large());
    pressPrint(*mDialog);
    ASSERT_TRUE(waitForHold());
    click(*part<QPushButton>(*mDialog, "cancel"));
    ASSERT_TRUE(turnUntilTold(*mDialog, "Cancelled; nothing is printed."));
    EXPECT_EQ(stateOfJob(), JobState::Canceled);
    EXPECT_FALSE(mService.hasReachedPrinter(1));
    expectStillUsable();
}

// --- the document, while it is sent ---

struct ChangeOfFile {
    const char* name;
    void (*happens)(const QString& path);
};

void PrintTo(const ChangeOfFile& change, std::ostream* out) {
    *out << change.name;
}

constexpr ChangeOfFile kChanges[] = {
    {"CutOff", [](const QString& path) { EXPECT_TRUE(QFile::resize(path, 150'000)); }},
    {"OtherBytes", [](const QString& path) { largePdf(path, 1'000'000); }},
    {"Deleted", [](const QString& path) { EXPECT_TRUE(QFile::remove(path)); }},
    {"AFolder",
     [](const QString& path) {
         EXPECT_TRUE(QFile::remove(path));
         EXPECT_TRUE(QDir().mkdir(path));
     }},
};

class ChangeWhileSendingTest : public ServiceFaultTest,
                               public testing::WithParamInterface<ChangeOfFile> {};

TEST_P(ChangeWhileSendingTest, OfTheDialogsDocumentIsNoneOfTheJobs) {
    const QString document = large();
    const QByteArray shown = contentOf(document);
    mService.holdPrinter(true);
    open(held(), document);
    pressPrint(*mDialog);
    ASSERT_TRUE(waitForHold());
    GetParam().happens(document);
    mProxy.release();
    ASSERT_TRUE(turnUntil([&] {
        return part<QPushButton>(*mDialog, "cancel")->text() == QStringLiteral("Close");
    })) << messagesOf(*mDialog);
    EXPECT_TRUE(spooled() == shown) << "byte for byte";
    mService.holdPrinter(false);
}

TEST_P(ChangeWhileSendingTest, OfTheCommandsDocumentIsNoneOfTheJobs) {
    const QString document = large();
    const QByteArray asked = contentOf(document);
    mService.holdPrinter(true);
    RunningProgram program({QStringLiteral("print"), document, QStringLiteral("--printer"), kQueue},
                           {{QStringLiteral("CUPS_SERVER"), mProxy.address()}});
    ASSERT_TRUE(waitForHold());
    GetParam().happens(document);
    mProxy.release();
    EXPECT_EQ(program.endedBy(), 0);
    EXPECT_EQ(program.status(), 0) << program.err();
    EXPECT_TRUE(spooled() == asked) << "byte for byte";
    mService.holdPrinter(false);
}

INSTANTIATE_TEST_SUITE_P(Changes, ChangeWhileSendingTest, testing::ValuesIn(kChanges),
                         [](const auto& change) { return std::string(change.param.name); });

TEST_F(ServiceFaultTest, AWindowThatGoesInTheMiddleOfADocumentLeavesNoJob) {
    open(held(), large());
    pressPrint(*mDialog);
    ASSERT_TRUE(waitForHold());
    // As when the program is told to end.
    mDialog->done(QDialog::Rejected);
    mDialog.reset();
    EXPECT_TRUE(turnUntil([&] { return stateOfJob() == JobState::Canceled; }));
}

TEST_F(ServiceFaultTest, AServiceThatDiesAfterwardsLeavesTheJobToItself) {
    ASSERT_TRUE(mService.pause(kQueue));
    open(direct(), kLabels);
    pressPrint(*mDialog);
    ASSERT_TRUE(turnUntil(
        [&] { return part<QPushButton>(*mDialog, "cancel")->text() == QStringLiteral("Close"); }));
    mService.kill();
    ASSERT_TRUE(turnUntilTold(*mDialog, "There is no print service"));
    click(*part<QPushButton>(*mDialog, "cancel"));
    ASSERT_TRUE(turnUntil([&] { return !mDialog->isVisible(); }));
    EXPECT_EQ(mDialog->result(), QDialog::Accepted);
    ASSERT_TRUE(mService.start());
    EXPECT_EQ(stateOfJob(), JobState::Pending);
}

// --- the command, told to end in the middle of a document ---

class InterruptedSendingTest : public ServiceFaultTest, public testing::WithParamInterface<int> {};

TEST_P(InterruptedSendingTest, LeavesNoJobAndNoFileAndEndsByTheSignal) {
    const QString document = large();
    RunningProgram program({QStringLiteral("print"), document, QStringLiteral("--printer"), kQueue},
                           {{QStringLiteral("CUPS_SERVER"), mProxy.address()}});
    ASSERT_TRUE(waitForHold());
    EXPECT_FALSE(mTemporaries.entries().isEmpty());
    program.signal(GetParam());
    EXPECT_EQ(program.endedBy(), GetParam());
    EXPECT_EQ(program.err(), "labelcut: Cancelled; nothing is printed.\n");
    EXPECT_EQ(program.out(), "");
    EXPECT_EQ(stateOfJob(), JobState::Canceled);
    EXPECT_FALSE(mService.hasReachedPrinter(1));
    EXPECT_THAT(mTemporaries.entries(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptedSendingTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

/// The dialog as a program of its own, in which Print is pressed from outside.
class EndedDialogTest : public ServiceFaultTest, public testing::WithParamInterface<int> {
protected:
    void startSending(const QString& server, const QString& document) {
        saveAPreset();
        std::map<QString, QString> environment = mDesktop.environment();
        environment[QStringLiteral("CUPS_SERVER")] = server;
        mProgram.emplace(
            QStringList{QStringLiteral("dialog"), document, QStringLiteral("--printer"), kQueue},
            environment);
        ASSERT_TRUE(mDesktop.press(*mProgram, "Print 1 label")) << mProgram->err();
    }
    void expectEndedBy(int signal) {
        mProgram->signal(signal);
        int ended = 0;
        EXPECT_LT(timeOf([&] { ended = mProgram->endedBy(); }), 4'000);
        EXPECT_EQ(ended, signal);
        EXPECT_THAT(mTemporaries.entries(), IsEmpty());
        const PresetList list = PresetStore().list(PrinterIdentity::forQueue(kQueue));
        ASSERT_EQ(list.presets.size(), 1U);
        EXPECT_EQ(list.presets.front().name, QStringLiteral("Shelf"));
        EXPECT_EQ(recentQueue(), kQueue);
    }

    Desktop mDesktop;
    std::optional<RunningProgram> mProgram;
};

TEST_P(EndedDialogTest, InTheMiddleOfADocumentLeavesNoJobAndNoFileAndKeepsWhatWasKept) {
    startSending(mProxy.address(), large());
    ASSERT_TRUE(waitForHold());
    EXPECT_FALSE(mTemporaries.entries().isEmpty());
    expectEndedBy(GetParam());
    EXPECT_EQ(stateOfJob(), JobState::Canceled);
    EXPECT_FALSE(mService.hasReachedPrinter(1));
}

TEST_P(EndedDialogTest, AfterTheDocumentLeavesTheWholeJobToTheService) {
    ASSERT_TRUE(mService.pause(kQueue));
    const QString document = large();
    const QByteArray shown = contentOf(document);
    startSending(mService.socketPath(), document);
    ASSERT_TRUE(mDesktop.waitFor(*mProgram, "Close")) << "which then ends the watching only";
    expectEndedBy(GetParam());
    EXPECT_EQ(stateOfJob(), JobState::Pending);
    EXPECT_TRUE(spooled() == shown) << "byte for byte";
}

INSTANTIATE_TEST_SUITE_P(Signals, EndedDialogTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

// --- services that never answer, at each step ---

TEST_F(ServiceFaultTest, ASilentServiceIsGivenUpByTheDialogOnTheUsersWish) {
    StandInServer silent(StandInServer::Behaviour::Silent);
    open(direct(), kLabels);
    mDialog.reset();
    DialogRequest request;
    request.files = {kLabels};
    request.queue = kQueue;
    show(request, CupsConnection({QStringLiteral("127.0.0.1"), silent.port()}));
    turnFor(200);
    EXPECT_FALSE(part<QPushButton>(*mDialog, "print")->isEnabled()) << "nothing to print on";
    click(*part<QPushButton>(*mDialog, "cancel"));
    EXPECT_FALSE(mDialog->isVisible());
}

TEST_F(ServiceFaultTest, AServiceThatTakesTheWholeDocumentInSilenceIsGivenUpInTime) {
    // The proxy holds the document: to the program that is a service which has stopped reading.
    const QString document = large();
    QElapsedTimer timer;
    timer.start();
    const Outcome outcome = print(mProxy.address(), document, words("--timeout 1"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("did not answer within 1 second"));
    EXPECT_LT(timer.elapsed(), 15'000);
    EXPECT_TRUE(turnUntil([&] { return stateOfJob() == JobState::Canceled; }));
}

// --- the queue is known, and its PPD does not come ---

/// How many bytes of the answer arrive before the silence; the PPD has more.
class SilentPpdTest : public ServiceFaultTest, public testing::WithParamInterface<qint64> {
protected:
    SilentPpdTest() { EXPECT_TRUE(mService.addQueue(kOther, kRollPpd)); }
    void silence(const QString& queue) {
        mProxy.silence("/printers/" + queue.toUtf8() + ".ppd", GetParam());
    }
    void ask(const QString& queue) {
        auto* printers = part<QComboBox>(*mDialog, "printers");
        choose(*printers, printers->findText(queue));
    }
    std::string state() const {
        return part<QLabel>(*mDialog, "printerState")->text().toStdString();
    }
    std::string inForce() const {
        return part<QComboBox>(*mDialog, "printers")->currentText().toStdString();
    }
    void expectTold(const char* queue) {
        ASSERT_TRUE(turnUntilTold(*mDialog, "did not answer within 10 seconds"))
            << messagesOf(*mDialog);
        EXPECT_THAT(messagesOf(*mDialog),
                    HasSubstr("description (PPD) of “" + std::string(queue) + "” has not arrived"));
    }

    const QString kOther = QStringLiteral("roll");
};

TEST_P(SilentPpdTest, TheWindowSaysWhatItWaitsForAndKeepsThePrinterThatIsInForce) {
    open(held(), kLabels);
    ASSERT_TRUE(
        turnUntil([&] { return part<QComboBox>(*mDialog, "printers")->findText(kOther) >= 0; }));
    silence(kOther);
    Pulse pulse;
    ask(kOther);
    EXPECT_EQ(state(), "Asking the print service about “roll”…");
    ASSERT_TRUE(turnUntil([&] { return mProxy.silenced() > 0; }));
    EXPECT_FALSE(part<QPushButton>(*mDialog, "print")->isEnabled());
    expectTold("roll");
    EXPECT_LT(pulse.longestPause(), 3'000);
    EXPECT_EQ(inForce(), "tape");
    expectStillUsable();

    // What is said stays until the user has done something about it.
    turnFor(6'000);
    expectTold("roll");
    mProxy.silence({});
    QPushButton* again = offer(mDialog->printerMessages(), QStringLiteral("Try"));
    ASSERT_TRUE(again) << "the way out";
    click(*again);
    EXPECT_TRUE(turnUntil([&] { return queueOf(mDialog->model()) == kOther; }));
    EXPECT_EQ(inForce(), "roll");
    EXPECT_THAT(messagesOf(*mDialog), testing::Not(HasSubstr("has not arrived")));
}

TEST_P(SilentPpdTest, TheUserNeedNotWaitButCanGoBackOrElsewhere) {
    ASSERT_TRUE(mService.addQueue(QStringLiteral("third"), kRollPpd));
    open(held(), kLabels);
    ASSERT_TRUE(turnUntil([&] {
        return part<QComboBox>(*mDialog, "printers")->findText(QStringLiteral("third")) >= 0;
    }));
    silence(kOther);
    ask(kOther);
    ASSERT_TRUE(turnUntil([&] { return mProxy.silenced() > 0; }));
    ask(kQueue);
    EXPECT_EQ(inForce(), "tape");
    expectStillUsable();
    ask(kOther);
    ASSERT_TRUE(turnUntil([&] { return mProxy.silenced() > 1; }));
    ask(QStringLiteral("third"));
    EXPECT_TRUE(turnUntil([&] { return queueOf(mDialog->model()) == u"third"; }, kSoon * 5));
    EXPECT_EQ(inForce(), "third");
    EXPECT_TRUE(turnUntil([&] { return part<QPushButton>(*mDialog, "print")->isEnabled(); }));
}

TEST_P(SilentPpdTest, AWindowThatOpensOnThatQueueNamesItOnceAndCanUseAnother) {
    silence(kQueue);
    DialogRequest request;
    request.files = {kLabels};
    request.queue = kQueue;
    show(request, held());
    ASSERT_TRUE(turnUntil([&] { return mProxy.silenced() > 0; }));
    EXPECT_EQ(state(), "Asking the print service about “tape”…");
    expectTold("tape");
    EXPECT_FALSE(part<QPushButton>(*mDialog, "print")->isEnabled()) << "nothing to print on";
    // The window looks at the queues again and again, which is no reason to take the words back.
    turnFor(7'000);
    expectTold("tape");
    EXPECT_EQ(mProxy.silenced(), 1);
    ask(kOther);
    EXPECT_TRUE(turnUntil([&] { return queueOf(mDialog->model()) == kOther; }));
    EXPECT_TRUE(part<QPushButton>(*mDialog, "print")->isEnabled());
    EXPECT_EQ(messagesOf(*mDialog), "");
}

TEST_P(SilentPpdTest, BeforeAJobItIsToldAndNothingIsPrinted) {
    open(held(), kLabels);
    silence(kQueue);
    pressPrint(*mDialog);
    ASSERT_TRUE(turnUntilTold(*mDialog, "Asking the print service about “tape”"));
    click(*part<QPushButton>(*mDialog, "cancel"));
    ASSERT_TRUE(turnUntilTold(*mDialog, "Cancelled; nothing is printed."));
    pressPrint(*mDialog);
    expectTold("tape");
    expectStillUsable();
    EXPECT_EQ(part<QPushButton>(*mDialog, "cancel")->text(), QStringLiteral("Cancel"));
    mProxy.silence({});
    pressPrint(*mDialog);
    EXPECT_TRUE(turnUntil([&] { return mService.hasReachedPrinter(1); })) << "the first job";
}

TEST_P(SilentPpdTest, CommandsGiveUpInTimeAndNameIt) {
    silence(kQueue);
    const QString server = mProxy.address();
    for (const char* command : {"options", "print"}) {
        Start start;
        start.arguments = words(command) + words("--timeout 1 --printer") + QStringList{kQueue};
        if (command == std::string_view("print"))
            start.arguments << kLabels;
        start.environment[QStringLiteral("CUPS_SERVER")] = server;
        Outcome outcome;
        EXPECT_LT(timeOf([&] { outcome = run(start); }), 10'000) << command;
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_EQ(outcome.out, "") << command;
        EXPECT_THAT(outcome.err,
                    AllOf(HasSubstr("description (PPD) of “tape” has not arrived"),
                          HasSubstr("did not answer within 1 second"), HasSubstr("try again")))
            << command;
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
    }
    EXPECT_FALSE(mService.hasReachedPrinter(1));
}

INSTANTIATE_TEST_SUITE_P(Answers, SilentPpdTest, testing::Values(0, 6'000), [](const auto& bytes) {
    return std::string(bytes.param == 0 ? "NoneAtAll" : "StopInTheMiddle");
});

TEST_F(ServiceFaultTest, ARefusedConnectionIsNamedByTheCommandAndTheDialog) {
    int port = 0;
    {
        const StandInServer gone(StandInServer::Behaviour::Silent);
        port = gone.port();
    }
    const QString address = QStringLiteral("127.0.0.1:%1").arg(port);
    const Outcome outcome = print(address, kLabels);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err,
                AllOf(HasSubstr("There is no print service at " + address.toStdString()),
                      HasSubstr("systemctl start cups"), testing::Not(HasSubstr("down"))));
    DialogRequest request;
    request.files = {kLabels};
    show(request, CupsConnection({QStringLiteral("127.0.0.1"), port}));
    ASSERT_TRUE(turnUntilTold(*mDialog, "There is no print service"));
    EXPECT_TRUE(offer(mDialog->printerMessages(), QStringLiteral("Try"))) << "the way out";
}

} // namespace labelcut::test
