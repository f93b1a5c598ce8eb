// Faults behind a document that has arrived: what the program says of a job that may be printed, on
// a print service that does its work and whose answers are spoilt.
#include "tests/faults/fault_fixtures.h"
#include "tests/support/answer_proxy.h"

namespace labelcut::test {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

const QString kQueue = QStringLiteral("tape");
constexpr int kOfService = 20'000; // milliseconds

AnswerProxy::Reply ipp(int status, const QByteArray& id, const QByteArray& groups = {}) {
    return {httpWithIpp(ippAnswer(status, id, groups))};
}

/// How an answer is spoilt.
struct Spoiling {
    const char* name;
    AnswerProxy::Reply (*reply)(const AnswerProxy::Exchange& asked);
    /// What is said of it.
    const char* said;
};

void PrintTo(const Spoiling& spoiling, std::ostream* out) {
    *out << spoiling.name;
}

constexpr Spoiling kSpoilings[] = {
    {"Lost", [](const AnswerProxy::Exchange&) { return AnswerProxy::Reply(); },
     "ended the connection before it had answered"},
    {"Cut",
     [](const AnswerProxy::Exchange& asked) { return AnswerProxy::Reply{asked.answer.chopped(5)}; },
     "ended the connection before it had answered"},
    {"Silent",
     [](const AnswerProxy::Exchange&) {
         return AnswerProxy::Reply{{}, true};
     },
     "did not answer within 5 seconds"},
    {"OfAnotherRequest",
     [](const AnswerProxy::Exchange& asked) {
         return ipp(0, QByteArray(asked.id).replace(0, 1, "\x7f"));
     },
     "belongs to another request"},
    {"TooDeep",
     [](const AnswerProxy::Exchange& asked) { return ipp(0, asked.id, nestedCollections(10'000)); },
     "nested too deeply"},
    {"NoIpp",
     [](const AnswerProxy::Exchange&) {
         return AnswerProxy::Reply{"HTTP/1.1 200 OK\r\nContent-Length: 7\r\n\r\nWelcome"};
     },
     "is not a print service"},
    {"OfAGateway",
     [](const AnswerProxy::Exchange&) {
         return AnswerProxy::Reply{"HTTP/1.1 504 Gateway Timeout\r\nContent-Length: 0\r\n\r\n"};
     },
     "504"},
    {"AFailureOfTheService",
     [](const AnswerProxy::Exchange& asked) { return ipp(0x0500, asked.id); },
     "server-error-internal-error"},
};

class JobFateTest : public testing::TestWithParam<Spoiling> {
protected:
    void startService(PrivateCupsd::Options options = {}) {
        mService.emplace(std::move(options));
        ASSERT_TRUE(mService->start()) << mService->errorLog().toStdString();
        ASSERT_TRUE(mService->addQueue(kQueue, kTapePpd));
    }
    /// Prints on a way where the answer to `operation` is spoilt, and where no request arrives
    /// after it when `isLast`. @param meanwhile  runs before that answer.
    Outcome print(int operation, bool isLast, const std::function<void()>& meanwhile = {}) {
        AnswerProxy* self = nullptr;
        AnswerProxy way(mService->socketPath(), [&](const AnswerProxy::Exchange& asked) {
            if (asked.operation != operation)
                return AnswerProxy::Reply{asked.answer};
            if (isLast)
                self->cut();
            if (meanwhile)
                meanwhile();
            return GetParam().reply(asked);
        });
        self = &way;
        Start start;
        start.arguments = words("print --timeout 5 --printer tape") + QStringList{kLabels};
        start.environment[QStringLiteral("CUPS_SERVER")] = way.address();
        return run(start);
    }
    CupsConnection direct() const {
        return CupsConnection(*ServiceAddress::fromText(mService->socketPath()));
    }
    bool waitForState(JobState state) const {
        return turnUntil([&] {
            const auto status = direct().jobAttributes(1, {kOfService, nullptr});
            return status && status->state == state;
        });
    }
    void expectFailure(const Outcome& outcome, const char* begin) {
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, StartsWith(std::string("labelcut: ") + begin));
        EXPECT_THAT(outcome.err, HasSubstr(GetParam().said));
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
    }

    std::optional<PrivateCupsd> mService;
};

} // namespace

TEST_P(JobFateTest, AJobThatNobodyCanAskAboutMayBePrintedAndHowToLookIsSaidFirst) {
    startService();
    const Outcome outcome = print(IPP_OP_SEND_DOCUMENT, true);
    expectFailure(outcome,
                  "Job 1 may have been taken and printed: look at the printer and at “lpstat -W "
                  "all -o tape” before you print again. ");
    EXPECT_THAT(outcome.err, AllOf(Not(HasSubstr("try again")), Not(HasSubstr("Nothing"))));
    EXPECT_TRUE(mService->waitForJob(1)) << "it is printed indeed";
}

TEST_P(JobFateTest, AJobThatIsPrintedCountsAsPrinted) {
    startService();
    const Outcome outcome =
        print(IPP_OP_SEND_DOCUMENT, false, [&] { waitForState(JobState::Completed); });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("tape-1"));
}

TEST_P(JobFateTest, AJobThatThePrinterHasBegunIsTakenBackAndToldSo) {
    startService();
    mService->holdPrinter(true);
    const Outcome outcome =
        print(IPP_OP_SEND_DOCUMENT, false, [&] { waitForState(JobState::Processing); });
    expectFailure(outcome, "Job 1 was removed, but some of its labels may be printed already: look "
                           "at the printer before you print again. ");
    EXPECT_THAT(outcome.err, Not(HasSubstr("try again")));
    EXPECT_TRUE(waitForState(JobState::Canceled));
    mService->holdPrinter(false);
}

TEST_P(JobFateTest, AJobThatWaitsIsTakenBackAndNothingIsPrinted) {
    startService();
    ASSERT_TRUE(mService->pause(kQueue));
    const Outcome outcome = print(IPP_OP_SEND_DOCUMENT, false);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("labelcut: Nothing was printed. "));
    EXPECT_TRUE(waitForState(JobState::Canceled));
    ASSERT_TRUE(mService->resume(kQueue));
    EXPECT_FALSE(mService->waitForJob(1, 1'000));
}

TEST_P(JobFateTest, AJobThatIsPrintedAndForgottenMayBePrinted) {
    PrivateCupsd::Options options;
    options.configuration = "PreserveJobHistory No\n";
    startService(options);
    const Outcome outcome = print(IPP_OP_SEND_DOCUMENT, false, [&] {
        turnUntil([&] {
            const auto status = direct().jobAttributes(1, {kOfService, nullptr});
            return !status && status.error().kind == ErrorKind::NoSuchJob;
        });
    });
    expectFailure(outcome, "Job 1 may have been taken and printed: ");
    EXPECT_THAT(outcome.err, Not(HasSubstr("try again")));
}

TEST_P(JobFateTest, AJobWhoseNumberNeverComesHasNothingToPrint) {
    startService();
    const Outcome outcome = print(IPP_OP_CREATE_JOB, true);
    const std::string_view name = GetParam().name;
    const bool isRefusal = name == "OfAGateway" || name == "AFailureOfTheService";
    expectFailure(outcome, isRefusal ? "The print service at "
                                     : "Nothing was printed. An empty job may have been left in "
                                       "the queue “tape”: “lpstat -o tape” shows it. ");
    EXPECT_FALSE(mService->hasReachedPrinter(1));
}

TEST(DeepAnswerTest, EveryCommandAndTheWindowRefuseItByTheServersName) {
    const PrivateHome home;
    const AnswerProxy server({}, [](const AnswerProxy::Exchange& asked) {
        return ipp(0, asked.id, nestedCollections(10'000));
    });
    const std::string refusal = "labelcut: The print service at " + server.address().toStdString() +
                                " answered with more than any print service needs, or with data "
                                "nested too deeply";
    for (const QString& printer : {QString(), QStringLiteral("--printer tape")})
        for (const char* command : {"options", "snapshot -o never.png", "print"}) {
            Start start;
            start.arguments = words(command) + printer.split(u' ', Qt::SkipEmptyParts);
            if (start.arguments.constFirst() == u"print")
                start.arguments << kLabels;
            start.environment[QStringLiteral("CUPS_SERVER")] = server.address();
            start.folder = home.path({});
            const Outcome outcome = run(start);
            EXPECT_EQ(outcome.status, 1) << command;
            EXPECT_EQ(outcome.out, "") << command;
            EXPECT_THAT(outcome.err, StartsWith(refusal)) << command;
            EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
        }
    DialogRequest request;
    request.files = {kLabels};
    const Offscreen offscreen;
    const auto dialog =
        openDialog(request, CupsConnection(*ServiceAddress::fromText(server.address())));
    EXPECT_TRUE(turnUntilTold(*dialog, "nested too deeply")) << messagesOf(*dialog);
}

TEST(NoServerNamedTest, ACommandNamesWhatItWasGiven) {
    for (const char* given : {":631", "[::1", "a b"}) {
        Start start;
        start.arguments = words("options --printer tape");
        start.environment[QStringLiteral("CUPS_SERVER")] = QString::fromLatin1(given);
        const Outcome outcome = run(start);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, "labelcut: “" + std::string(given) +
                                   "” names no print service. Write CUPS_SERVER as HOST, "
                                   "HOST:PORT or the path of a socket.\n");
    }
}

INSTANTIATE_TEST_SUITE_P(Answers, JobFateTest, testing::ValuesIn(kSpoilings),
                         [](const auto& spoiling) { return std::string(spoiling.param.name); });

} // namespace labelcut::test
