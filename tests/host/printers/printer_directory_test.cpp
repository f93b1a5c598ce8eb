// Queues that are asked for in the background, from a real scheduler and from servers that
// misbehave.
#include "host/printers/printer_directory.h"
#include "host/printers/printer_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QThread>

#include <algorithm>

#include "host/printers/printer_state.h"
#include "tests/support/event_loop.h"
#include "tests/support/private_cupsd.h"
#include "tests/support/stand_in_server.h"

namespace labelcut::test {

using testing::HasSubstr;

namespace {

const QString kPpd = QStringLiteral(LABELCUT_TEST_DATA "/tiny_tape.ppd");
const QString kTape = QStringLiteral("tape");

/// What one directory has said.
struct Said {
    explicit Said(PrinterDirectory& directory) {
        using D = PrinterDirectory;
        QObject::connect(&directory, &D::printersChanged, &context, [&](const auto& printers) {
            lists.push_back(printers);
            thread = QThread::currentThread();
        });
        QObject::connect(&directory, &D::failed, &context,
                         [&](const Error& e) { errors.push_back(e); });
        QObject::connect(&directory, &D::finished, &context, [&] { ++finished; });
        QObject::connect(&directory, &D::printerFound, &context,
                         [&](const auto& printer) { found.push_back(printer); });
        QObject::connect(&directory, &D::printerNotFound, &context,
                         [&](const PrinterRef&, const Error& e) { errors.push_back(e); });
    }
    bool waitForEnd(int count = 1) {
        return turnUntil([&] { return finished >= count; });
    }

    QObject context;
    std::vector<std::vector<Queue>> lists;
    std::vector<Error> errors;
    std::vector<std::shared_ptr<FoundPrinter>> found;
    int finished = 0;
    QThread* thread = nullptr;
};

CupsConnection to(const PrivateCupsd& service) {
    return CupsConnection({service.socketPath(), 0});
}

CupsConnection to(const StandInServer& server) {
    return CupsConnection({QStringLiteral("127.0.0.1"), server.port()});
}

QStringList names(const std::vector<Queue>& queues) {
    QStringList all;
    for (const Queue& queue : queues)
        all << queue.name;
    return all;
}

/// A configuration of many queues, which is quicker than adding them.
QByteArray manyQueues(int count) {
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += "<Printer q" + QByteArray::number(i).rightJustified(4, '0') + ">\nInfo Number " +
                QByteArray::number(i) +
                "\nDeviceURI file:///dev/null\nState Idle\nAccepting Yes\n</Printer>\n";
    return text;
}

} // namespace

TEST(PrinterDirectoryTest, QueuesArriveWithTheirStates) {
    PrivateCupsd service;
    ASSERT_TRUE(service.start()) << service.errorLog().toStdString();
    ASSERT_TRUE(
        service.addQueue(kTape, kPpd, {QStringLiteral("-D"), QStringLiteral("By the door")}));
    ASSERT_TRUE(service.addQueue(QStringLiteral("held"), kPpd));
    ASSERT_TRUE(service.addQueue(QStringLiteral("shut"), kPpd));
    ASSERT_TRUE(service.pause(QStringLiteral("held")));
    ASSERT_TRUE(service.reject(QStringLiteral("shut")));

    PrinterDirectory directory(to(service));
    Said said(directory);
    directory.refresh();
    EXPECT_TRUE(directory.isRefreshing());
    EXPECT_TRUE(said.lists.empty()) << "signals come later";
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_FALSE(directory.isRefreshing());
    EXPECT_TRUE(said.errors.empty());
    EXPECT_EQ(said.thread, QThread::currentThread());
    ASSERT_EQ(said.lists.size(), 1U);
    EXPECT_EQ(names(directory.printers()),
              (QStringList{QStringLiteral("held"), QStringLiteral("shut"), kTape}));
    EXPECT_EQ(directory.find(kTape)->info, QStringLiteral("By the door"));
    EXPECT_THAT(stateSentence(*directory.find(QStringLiteral("held"))).toStdString(),
                HasSubstr("Paused: jobs are held"));
    EXPECT_THAT(stateSentence(*directory.find(QStringLiteral("shut"))).toStdString(),
                HasSubstr("Takes no jobs"));
    EXPECT_EQ(directory.find(QStringLiteral("none")), nullptr);

    // A queue that is removed is gone after the next look.
    ASSERT_TRUE(service.removeQueue(QStringLiteral("shut")));
    directory.refresh();
    EXPECT_NE(directory.find(QStringLiteral("shut")), nullptr) << "known until then";
    ASSERT_TRUE(said.waitForEnd(2));
    EXPECT_EQ(directory.find(QStringLiteral("shut")), nullptr);
}

TEST(PrinterDirectoryTest, TheWantedQueueComesFirst) {
    PrivateCupsd service;
    ASSERT_TRUE(service.start()) << service.errorLog().toStdString();
    ASSERT_TRUE(service.addQueue(QStringLiteral("another"), kPpd));
    ASSERT_TRUE(service.addQueue(kTape, kPpd));
    PrinterDirectory directory(to(service));
    Said said(directory);
    directory.refresh(kTape);
    ASSERT_TRUE(said.waitForEnd());
    ASSERT_EQ(said.lists.size(), 2U);
    EXPECT_EQ(names(said.lists.front()), QStringList{kTape});
    EXPECT_EQ(names(said.lists.back()), (QStringList{QStringLiteral("another"), kTape}));

    // One that is gone holds nothing up.
    directory.refresh(QStringLiteral("gone"));
    ASSERT_TRUE(said.waitForEnd(2));
    EXPECT_TRUE(said.errors.empty());
    EXPECT_EQ(said.lists.size(), 3U);
}

TEST(PrinterDirectoryTest, AThousandQueuesDoNotStopTheEventLoop) {
    PrivateCupsd::Options options;
    options.printers = manyQueues(1'000);
    PrivateCupsd service(options);
    ASSERT_TRUE(service.start()) << service.errorLog().toStdString();
    PrinterDirectory directory(to(service));
    directory.setTimeout(kLong);
    Said said(directory);
    Pulse pulse;
    directory.refresh(QStringLiteral("q0999"));
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_TRUE(said.errors.empty());
    EXPECT_EQ(directory.printers().size(), 1'000U);
    EXPECT_EQ(directory.find(QStringLiteral("q0999"))->info, QStringLiteral("Number 999"));
    EXPECT_EQ(names(said.lists.front()), QStringList{QStringLiteral("q0999")});
    std::vector<std::size_t> sizes;
    for (const auto& list : said.lists)
        sizes.push_back(list.size());
    // Shown as they are found, ever more at a time.
    EXPECT_TRUE(std::ranges::is_sorted(sizes));
    EXPECT_EQ(sizes[1], 101U);
    EXPECT_GE(sizes.size(), 4U);
    EXPECT_LE(sizes.size(), 8U);
    EXPECT_LT(pulse.longestPause(), kSoon);
}

TEST(PrinterDirectoryTest, NoServiceIsToldByItsName) {
    PrinterDirectory directory(CupsConnection({QStringLiteral("/nonexistent/cups.sock"), 0}));
    Said said(directory);
    directory.refresh(kTape);
    ASSERT_TRUE(said.waitForEnd());
    ASSERT_EQ(said.errors.size(), 1U);
    EXPECT_EQ(said.errors.front().kind, ErrorKind::NoService);
    EXPECT_THAT(said.errors.front().sentence.toStdString(), HasSubstr("/nonexistent/cups.sock"));
    EXPECT_TRUE(said.lists.empty());
}

TEST(PrinterDirectoryTest, AFailureKeepsWhatWasKnown) {
    PrivateCupsd service;
    ASSERT_TRUE(service.start()) << service.errorLog().toStdString();
    ASSERT_TRUE(service.addQueue(kTape, kPpd));
    PrinterDirectory directory(to(service));
    Said said(directory);
    directory.refresh();
    ASSERT_TRUE(said.waitForEnd());
    service.kill();
    directory.refresh();
    ASSERT_TRUE(said.waitForEnd(2));
    EXPECT_EQ(said.errors.size(), 1U);
    EXPECT_EQ(names(directory.printers()), QStringList{kTape});
}

// --- servers that misbehave ---

class SilentServerTest : public testing::TestWithParam<StandInServer::Behaviour> {};

TEST_P(SilentServerTest, TheEventLoopKeepsTurningUntilTheTimeIsOver) {
    const StandInServer server(GetParam());
    PrinterDirectory directory(to(server));
    directory.setTimeout(1'500);
    Said said(directory);
    Pulse pulse;
    EXPECT_LT(timeOf([&] { directory.refresh(kTape); }), kSoon);
    EXPECT_LT(timeOf([&] { directory.findPrinter(QueueRef{kTape}); }), kSoon);
    ASSERT_TRUE(turnUntil([&] { return said.errors.size() == 2; }));
    EXPECT_EQ(said.finished, 1);
    // One pulse in 10 ms; far fewer do on a busy machine, none in a blocked one.
    EXPECT_GT(pulse.ticks(), 20);
    EXPECT_LT(pulse.longestPause(), kSoon);
}

TEST_P(SilentServerTest, ANewRefreshAndTheEndDoNotWait) {
    const StandInServer server(GetParam());
    PrivateCupsd service;
    ASSERT_TRUE(service.start()) << service.errorLog().toStdString();
    auto directory = std::make_unique<PrinterDirectory>(to(server));
    directory->setTimeout(kLong);
    Said said(*directory);
    directory->refresh(kTape);
    directory->findPrinter(QueueRef{kTape});
    turnFor(100);
    EXPECT_LT(timeOf([&] { directory->refresh(); }), kSoon);
    EXPECT_LT(timeOf([&] { directory->findPrinter(QueueRef{kTape}); }), kSoon);
    EXPECT_LT(timeOf([&] { directory->cancelRefresh(); }), kSoon);
    EXPECT_FALSE(directory->isRefreshing());
    directory->refresh();
    turnFor(100);
    EXPECT_LT(timeOf([&] { directory.reset(); }), kSoon);
    turnFor(500);
    EXPECT_TRUE(said.errors.empty()) << said.errors.front().sentence.toStdString();
    EXPECT_EQ(said.finished, 0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, SilentServerTest,
                         testing::Values(StandInServer::Behaviour::Silent,
                                         StandInServer::Behaviour::NotReading,
                                         StandInServer::Behaviour::NotAccepting));

TEST(PrinterDirectoryTest, ARefreshAfterASilentOneIsAnsweredAtOnce) {
    const StandInServer server(StandInServer::Behaviour::Silent);
    PrinterDirectory directory(to(server));
    directory.setTimeout(kLong);
    Said said(directory);
    directory.refresh();
    turnFor(100);
    // The next call does not stand in a line behind the first.
    QElapsedTimer timer;
    timer.start();
    directory.setTimeout(200);
    directory.refresh();
    ASSERT_TRUE(said.waitForEnd());
    EXPECT_LT(timer.elapsed(), 5'000);
    EXPECT_EQ(said.errors.size(), 1U);
}

// --- PPDs ---

TEST(PrinterDirectoryTest, AQueueIsFoundWithItsPpd) {
    PrivateCupsd service;
    ASSERT_TRUE(service.start()) << service.errorLog().toStdString();
    ASSERT_TRUE(service.addQueue(kTape, kPpd));
    ASSERT_TRUE(service.addQueue(QStringLiteral("raw"), {}));
    PrinterDirectory directory(to(service));
    Said said(directory);
    directory.findPrinter(QueueRef{kTape});
    ASSERT_TRUE(turnUntil([&] { return said.found.size() == 1; }));
    const FoundPrinter& tape = *said.found.front();
    EXPECT_EQ(tape.ref, PrinterRef(QueueRef{kTape}));
    ASSERT_TRUE(tape.queue);
    EXPECT_EQ(tape.queue->name, kTape);
    EXPECT_TRUE(tape.queue->deviceUri) << "which panels are told";
    EXPECT_NE(ppd::findOption(tape.ppd.get(), "KvHalfCut"), nullptr);

    directory.findPrinter(QueueRef{QStringLiteral("raw")});
    ASSERT_TRUE(turnUntil([&] { return said.errors.size() == 1; }));
    EXPECT_EQ(said.errors.back().kind, ErrorKind::QueueWithoutPpd);
    directory.findPrinter(QueueRef{QStringLiteral("gone")});
    ASSERT_TRUE(turnUntil([&] { return said.errors.size() == 2; }));
    EXPECT_EQ(said.errors.back().kind, ErrorKind::NoSuchQueue);

    // Only the last wish counts.
    directory.findPrinter(QueueRef{QStringLiteral("raw")});
    directory.findPrinter(QueueRef{kTape});
    ASSERT_TRUE(turnUntil([&] { return said.found.size() == 2; }));
    turnFor(100);
    EXPECT_EQ(said.errors.size(), 2U);
}

TEST(PrinterDirectoryTest, APpdFileIsFoundLaterAndCanBeGivenUp) {
    PrinterDirectory directory(CupsConnection({QStringLiteral("/nonexistent/cups.sock"), 0}));
    Said said(directory);
    directory.findPrinter(PpdFileRef{kPpd});
    EXPECT_TRUE(said.found.empty()) << "signals come later";
    ASSERT_TRUE(turnUntil([&] { return said.found.size() == 1; }));
    EXPECT_EQ(said.found.front()->ref, PrinterRef(PpdFileRef{kPpd}));
    directory.findPrinter(PpdFileRef{QStringLiteral("/nonexistent.ppd")});
    ASSERT_TRUE(turnUntil([&] { return said.errors.size() == 1; }));
    directory.findPrinter(PpdFileRef{kPpd});
    directory.cancelFind();
    turnFor(100);
    EXPECT_EQ(said.found.size(), 1U);
    EXPECT_EQ(said.errors.size(), 1U);
}

TEST(PrinterDirectoryTest, BytesThatAreNoPpdAreASentence) {
    for (const QByteArray& bytes : {QByteArray(), QByteArray("hello")}) {
        const Result<ppd::File> ppd = openPpd(bytes, kTape);
        ASSERT_FALSE(ppd);
        EXPECT_THAT(ppd.error().sentence.toStdString(), HasSubstr("“tape”"));
    }
}

TEST(PrinterDirectoryTest, NoFileOfAPpdStays) {
    QFile source(kPpd);
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    const QTemporaryDir folder;
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", QFile::encodeName(folder.path()));
    const Result<ppd::File> ppd = openPpd(source.readAll(), kTape);
    before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
    EXPECT_TRUE(ppd);
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

} // namespace labelcut::test
