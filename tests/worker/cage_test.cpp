// The cage attacked on purpose: the worker as it is installed, beside libraries, and a Ghostscript,
// that do what their documents ask for. Each deed is refused, stopped or told, in all four cages.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <chrono>
#include <thread>

#include "host/core/failure.h"
#include "host/documents/document_worker.h"
#include "tests/support/job_fixtures.h"
#include "worker/cage/cage.h"
#include "worker/protocol/descriptor.h"

namespace labelcut {

using namespace std::chrono_literals;
using testing::HasSubstr;
using worker::Descriptor;

namespace {

/// A listening end that nobody reaches from the cage.
Descriptor listeningAt(const QString& path) {
    Descriptor end(socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.toStdString().copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(bind(end.number(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(end.number(), 1), 0);
    return end;
}

class CageTest : public testing::TestWithParam<DocumentReader> {
protected:
    /// What is said of a document that asks for the deed.
    std::string said(const QByteArray& deed, std::chrono::milliseconds patience = 20s,
                     const CancelFlag* cancel = nullptr) {
        const Result<worker::Answer> answer = attempt(deed, patience, cancel);
        return answer ? "not told" : answer.error().sentence.toStdString();
    }

    test::Folder mFolder;

private:
    Result<worker::Answer> attempt(const QByteArray& deed, std::chrono::milliseconds patience,
                                   const CancelFlag* cancel) {
        const test::Environment path("PATH", LABELCUT_ATTACKER);
        Result<DocumentWorker> started = DocumentWorker::start(
            GetParam(), QStringLiteral(LABELCUT_ATTACKER "/document_worker"), patience);
        if (!started)
            return started.error();
        DocumentWorker& reader = *started;
        const QString target = mFolder.path(QStringLiteral("run/output"));
        QDir(mFolder.path(QStringLiteral("run"))).removeRecursively();
        QDir().mkpath(mFolder.path(QStringLiteral("run")));
        const QString input = mFolder.file(QStringLiteral("run/input"), start() + deed + '\n');
        WorkerTask task{QStringLiteral("evil.pdf"), {}, target, cancel};
        const Descriptor document = opened(input, O_RDONLY);
        switch (GetParam()) {
        case DocumentReader::PDF: {
            task.descriptors = {document.number()};
            const Result<worker::Answer> answer = reader.ask(worker::Open(), task);
            if (!answer)
                return answer;
            const Descriptor made = opened(target, O_RDWR | O_CREAT);
            task.descriptors = {made.number()};
            return reader.ask(worker::Join(), task);
        }
        case DocumentReader::Drawing: {
            const Descriptor made = opened(target, O_RDWR | O_CREAT);
            task.descriptors = {document.number(), made.number()};
            return reader.ask(worker::Draw{worker::DocumentKind::PNG, {}}, task);
        }
        case DocumentReader::Pages: {
            task.descriptors = {document.number()};
            const Result<worker::Answer> shown = reader.ask(worker::Show(), task);
            if (!shown)
                return shown;
            const Descriptor made = opened(target, O_RDWR | O_CREAT);
            task.descriptors = {made.number()};
            return reader.ask(worker::Render(), task);
        }
        case DocumentReader::Ghostscript:
            break;
        }
        const Descriptor folder = opened(mFolder.path(QStringLiteral("run")), O_RDONLY);
        task.descriptors = {folder.number()};
        task.target = mFolder.path(QStringLiteral("run"));
        const Result<QByteArray> messages = reader.run(worker::Interpret(), task);
        if (messages)
            return worker::Answer(worker::Done());
        return messages.error();
    }

    static QByteArray start() {
        return GetParam() == DocumentReader::PDF ? "%PDF-1.4\n" : "document\n";
    }
    static Descriptor opened(const QString& path, int flags) {
        return Descriptor(
            open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, S_IRUSR | S_IWUSR));
    }
};

std::string nameOf(const testing::TestParamInfo<DocumentReader>& info) {
    switch (info.param) {
    case DocumentReader::PDF:
        return "Pdf";
    case DocumentReader::Drawing:
        return "Drawing";
    case DocumentReader::Pages:
        return "Pages";
    case DocumentReader::Ghostscript:
        break;
    }
    return "Ghostscript";
}

} // namespace

TEST_P(CageTest, NoFileOfTheUserIsOpenedMadeOrRemoved) {
    const QByteArray secret =
        QFile::encodeName(mFolder.file(QStringLiteral("secret.txt"), "secret"));
    const QByteArray fresh = QFile::encodeName(mFolder.path(QStringLiteral("fresh.txt")));
    EXPECT_THAT(said("read " + secret), HasSubstr("refused"));
    EXPECT_THAT(said("write " + secret), HasSubstr("refused"));
    EXPECT_THAT(said("write " + fresh), HasSubstr("refused"));
    EXPECT_THAT(said("remove " + secret), HasSubstr("refused"));
    for (const char* path : {"/etc/passwd", "/proc/self/environ", "/etc/hostname", "/root", "/tmp"})
        EXPECT_THAT(said(QByteArray("read ") + path), HasSubstr("refused")) << path;
    EXPECT_FALSE(QFile::exists(QFile::decodeName(fresh)));
    EXPECT_EQ(test::contentOf(QFile::decodeName(secret)), "secret");
}

TEST_P(CageTest, NobodyIsReachedOverANetworkOrASocket) {
    Descriptor server(socket(AF_INET, SOCK_STREAM, 0));
    ASSERT_EQ(listen(server.number(), 1), 0);
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ASSERT_EQ(getsockname(server.number(), reinterpret_cast<sockaddr*>(&address), &size), 0);
    EXPECT_THAT(said("connect " + QByteArray::number(ntohs(address.sin_port))),
                HasSubstr("refused"));
    const QString path = mFolder.path(QStringLiteral("socket"));
    const Descriptor local = listeningAt(path);
    EXPECT_THAT(said("connect-locally " + QFile::encodeName(path)), HasSubstr("refused"));
}

TEST_P(CageTest, NoProgramAndNoSecondProcessIsStarted) {
    EXPECT_THAT(said("shell"), HasSubstr("refused"));
    EXPECT_THAT(said("program /bin/true"), HasSubstr("refused"));
    EXPECT_THAT(said("fork"), HasSubstr("refused"));
}

TEST_P(CageTest, NoOtherProcessIsTouchedAndNoRightGained) {
    EXPECT_THAT(said("signal"), HasSubstr("refused"));
    EXPECT_THAT(said("trace"), HasSubstr("refused"));
    EXPECT_THAT(said("escape"), HasSubstr("refused"));
}

TEST_P(CageTest, TenGigabytesAreNotWritten) {
    EXPECT_THAT(said("fill"), HasSubstr("evil.pdf” is larger than 2048 MB, or becomes so"));
}

TEST_P(CageTest, ManyFilesAreNotWrittenEither) {
    const char* expected = GetParam() == DocumentReader::Ghostscript
                               ? "evil.pdf” is larger than 2048 MB, or becomes so"
                               : "refused";
    EXPECT_THAT(said("scatter"), HasSubstr(expected));
}

TEST_P(CageTest, TenGigabytesOfMemoryAreNotGiven) {
    EXPECT_THAT(said("eat"), HasSubstr("evil.pdf” takes more than 384 MB of memory"));
}

TEST_P(CageTest, WhatMakesNoProgressIsGivenUpWhateverSignalsItIgnores) {
    for (const char* deed : {"spin", "spin-through-signals"})
        EXPECT_THAT(said(deed, 300ms), HasSubstr("evil.pdf” was given up: reading it made no "
                                                 "progress for 1 s"))
            << deed;
}

TEST_P(CageTest, CancellingEndsAWorkerAtWorkSoon) {
    CancelFlag cancel;
    std::thread user([&] {
        std::this_thread::sleep_for(200ms);
        cancel.cancel();
    });
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(said("spin-through-signals", 20s, &cancel), cancelled().sentence.toStdString());
    EXPECT_LT(timer.elapsed(), 2'000);
    user.join();
}

TEST_P(CageTest, ACrashIsOneSentence) {
    EXPECT_THAT(said("crash"), HasSubstr("evil.pdf” cannot be read: the program that reads "
                                         "documents broke down over it (Segmentation fault)"));
}

TEST_P(CageTest, NonsenseInPlaceOfAnAnswerIsGivenUp) {
    // The channel of the reader of PostScript is closed before Ghostscript begins.
    const char* expected = GetParam() == DocumentReader::Ghostscript
                               ? "refused ("
                               : "evil.pdf” cannot be read: the program that reads documents";
    EXPECT_THAT(said("babble", 300ms), HasSubstr(expected));
}

INSTANTIATE_TEST_SUITE_P(Readers, CageTest,
                         testing::Values(DocumentReader::PDF, DocumentReader::Drawing,
                                         DocumentReader::Pages, DocumentReader::Ghostscript),
                         nameOf);

TEST(WorkerTest, AMissingWorkerIsNamed) {
    const Result<DocumentWorker> started =
        DocumentWorker::start(DocumentReader::PDF, QStringLiteral("/nonexistent/document_worker"));
    ASSERT_FALSE(started);
    EXPECT_THAT(started.error().sentence.toStdString(),
                HasSubstr("“/nonexistent/document_worker” cannot be started (No such file"));
}

} // namespace labelcut
