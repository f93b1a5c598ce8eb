// The command line and a print service that does not do what was hoped for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

#include "tests/support/job_fixtures.h"
#include "tests/support/private_cupsd.h"
#include "tests/support/program.h"
#include "tests/support/stand_in_server.h"

namespace labelcut::test {

using testing::HasSubstr;

namespace {

class PrintServiceTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        sService = std::make_unique<PrivateCupsd>();
        ASSERT_TRUE(sService->start()) << sService->errorLog().toStdString();
        ASSERT_TRUE(sService->addQueue(QStringLiteral("tape"), kTapePpd));
    }
    static void TearDownTestSuite() { sService.reset(); }

    Outcome runAt(const QString& server, const QStringList& arguments) const {
        Start start;
        start.arguments = arguments;
        start.environment[QStringLiteral("CUPS_SERVER")] = server;
        return run(start);
    }
    Outcome printOn(const char* queue, const QStringList& more = {}) const {
        return runAt(sService->socketPath(),
                     QStringList{QStringLiteral("print"), kLabels, QStringLiteral("--printer"),
                                 QString::fromLatin1(queue)} +
                         more);
    }
    /// The one sentence of a run that must fail.
    std::string refusal(const Outcome& outcome) const {
        EXPECT_EQ(outcome.status, 1) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
        return outcome.err;
    }

    static std::unique_ptr<PrivateCupsd> sService;
};

std::unique_ptr<PrivateCupsd> PrintServiceTest::sService;

} // namespace

TEST_F(PrintServiceTest, TheQueuesOptionsAreListed) {
    const Outcome outcome =
        runAt(sService->socketPath(),
              {QStringLiteral("options"), QStringLiteral("--printer"), QStringLiteral("tape")});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("KvHalfCut (Half cut), default OFF\n    *OFF (Off), ON"));
}

TEST_F(PrintServiceTest, TheQueuesOwnDefaultsAreTheStart) {
    ASSERT_TRUE(sService->addQueue(QStringLiteral("chain"), kTapePpd,
                                   {QStringLiteral("-o"), QStringLiteral("KvChainPrint=ON")}));
    const Outcome outcome = printOn("chain");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("(KvChainPrint=ON)"));
    const Outcome other = printOn("chain", words("--set KvChainPrint=OFF"));
    EXPECT_THAT(other.out, HasSubstr("(KvChainPrint=OFF)"));
}

TEST_F(PrintServiceTest, WhatTheUserSavedForTheQueueIsTheStart) {
    const QTemporaryDir home;
    ASSERT_TRUE(QDir(home.path()).mkdir(QStringLiteral(".cups")));
    QFile saved(home.filePath(QStringLiteral(".cups/lpoptions")));
    ASSERT_TRUE(saved.open(QIODevice::WriteOnly));
    saved.write("Dest tape KvHalfCut=ON Quality=Best NoSuchThing=1 KvMirror=SIDEWAYS\n");
    saved.close();
    const auto runAtHome = [&](const QStringList& arguments) {
        Start start;
        start.arguments = arguments + words("--printer tape");
        start.environment[QStringLiteral("CUPS_SERVER")] = sService->socketPath();
        start.environment[QStringLiteral("HOME")] = home.path();
        return run(start);
    };
    const QStringList print{QStringLiteral("print"), kLabels};

    const Outcome plain = runAtHome(print);
    EXPECT_EQ(plain.status, 0) << plain.err;
    EXPECT_THAT(plain.out, HasSubstr("(KvHalfCut=ON)"));
    EXPECT_THAT(plain.out, HasSubstr("(Quality=Best)"));
    EXPECT_THAT(plain.err, HasSubstr("SIDEWAYS")) << "nothing is dropped without a word";

    const Outcome asked = runAtHome(print + words("--set KvHalfCut=OFF --set Quality=Draft"));
    EXPECT_EQ(asked.status, 0) << asked.err;
    EXPECT_THAT(asked.out, HasSubstr("(KvHalfCut=OFF)"));
    EXPECT_THAT(asked.out, HasSubstr("(Quality=Draft)"));

    EXPECT_THAT(runAtHome({QStringLiteral("options")}).out,
                HasSubstr("KvHalfCut (Half cut), default OFF\n    OFF (Off), *ON"));
}

TEST_F(PrintServiceTest, AQueueThatDoesNotExistIsNamed) {
    EXPECT_THAT(refusal(printOn("nosuch")), HasSubstr("has no queue “nosuch”"));
}

TEST_F(PrintServiceTest, AQueueWithoutAPpdIsNamed) {
    ASSERT_TRUE(sService->addQueue(QStringLiteral("raw"), QString()));
    EXPECT_THAT(refusal(printOn("raw")), HasSubstr("“raw” has no printer description (PPD)"));
}

TEST_F(PrintServiceTest, ARejectingQueueIsNamed) {
    ASSERT_TRUE(sService->addQueue(QStringLiteral("closed"), kTapePpd));
    ASSERT_TRUE(sService->reject(QStringLiteral("closed")));
    EXPECT_THAT(refusal(printOn("closed")), HasSubstr("“closed” takes no new jobs"));
}

TEST_F(PrintServiceTest, APausedQueueTakesTheJobAndSaysThatItWaits) {
    ASSERT_TRUE(sService->addQueue(QStringLiteral("paused"), kTapePpd));
    ASSERT_TRUE(sService->pause(QStringLiteral("paused")));
    const Outcome outcome = printOn("paused");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("into the queue \"paused\" as job paused-"));
    EXPECT_THAT(outcome.err, HasSubstr("The queue \"paused\" is paused; the job waits"));
}

TEST_F(PrintServiceTest, ChoicesAreCheckedBeforeTheServiceSeesAJob) {
    EXPECT_THAT(refusal(printOn("tape", words("--set KvHalfCut=MAYBE"))),
                HasSubstr("The option KvHalfCut has no choice “MAYBE”"));
    EXPECT_THAT(refusal(printOn("tape", words("--set KvSpecialTape=ON"))),
                HasSubstr("exclude each other. Add --set KvAutoTapeCut=OFF."));
}

TEST_F(PrintServiceTest, NoPrintServiceIsNamed) {
    const QTemporaryDir folder;
    const QString nowhere = folder.filePath(QStringLiteral("none.sock"));
    EXPECT_THAT(refusal(runAt(nowhere, {QStringLiteral("options"), QStringLiteral("--printer"),
                                        QStringLiteral("tape")})),
                HasSubstr("There is no print service at " + nowhere.toStdString()));
}

TEST_F(PrintServiceTest, AServiceThatDoesNotAnswerIsGivenUpInTime) {
    using Behaviour = StandInServer::Behaviour;
    const std::pair<Behaviour, const char*> rows[] = {
        {Behaviour::NotAccepting, "could not be reached within 0.5 seconds"},
        {Behaviour::Silent, "did not answer within 0.5 seconds"},
        {Behaviour::ClosingAtOnce, "ended the connection before it had answered"},
    };
    for (const auto& [behaviour, sentence] : rows) {
        const StandInServer server(behaviour);
        ASSERT_GT(server.port(), 0);
        QElapsedTimer timer;
        timer.start();
        EXPECT_THAT(refusal(runAt(QStringLiteral("127.0.0.1:%1").arg(server.port()),
                                  words("options --printer tape --timeout 0.5"))),
                    HasSubstr(sentence));
        // Far below the half minute that an unbounded call takes, far above a busy machine's noise.
        EXPECT_LT(timer.elapsed(), 8000) << sentence;
    }
}

TEST_F(PrintServiceTest, WhatIsNoPrintServiceIsNamed) {
    const StandInServer server(StandInServer::Behaviour::Answering,
                               "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n"
                               "Content-Length: 5\r\n\r\nhello");
    EXPECT_THAT(refusal(runAt(QStringLiteral("127.0.0.1:%1").arg(server.port()),
                              words("options --printer tape --timeout 2"))),
                HasSubstr("is not a print service"));
}

} // namespace labelcut::test
