// Documents: the worker, a program of ours that reads them in a cage, and what it answers.
#include "host/documents/document_worker.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "host/core/failure.h"
#include "host/documents/documents.h"
#include "host/texts/host_text.h"
#include "worker/protocol/channel.h"

extern char** environ; // POSIX has no header for it

namespace labelcut {

using worker::Descriptor;

namespace {

using Clock = std::chrono::steady_clock;

/// How often a wait looks whether it is still wanted. Milliseconds.
constexpr int kLook = 50;
/// How often a wait looks how far the worker is.
constexpr std::chrono::milliseconds kLookAtOutput(500);
/// Of what a worker says beside its answers at least so much is kept, the last of it: there stands
/// why Ghostscript gave up, and whether it has made a page. Bytes.
constexpr qsizetype kMessages = 64 << 10;
/// What Poppler says before it ends the process for want of memory.
constexpr const char* kOutOfMemory = "Out of memory";
constexpr auto kMostOutput = static_cast<qint64>(worker::kOutputLimit);

const char* nameOf(DocumentReader reader) {
    switch (reader) {
    case DocumentReader::PDF:
        return "pdf";
    case DocumentReader::Drawing:
        return "drawing";
    case DocumentReader::Pages:
        return "pages";
    case DocumentReader::Ghostscript:
        return "ghostscript";
    }
    return "";
}

QString libraryOf(DocumentReader reader) {
    switch (reader) {
    case DocumentReader::PDF:
        return QStringLiteral("pdf_engine.so");
    case DocumentReader::Drawing:
        return QStringLiteral("drawing.so");
    case DocumentReader::Pages:
        return QStringLiteral("pages.so");
    case DocumentReader::Ghostscript:
        break;
    }
    return {};
}

QString megabytes(std::uint64_t bytes) {
    return QString::number(bytes >> 20);
}

/// Ghostscript's own reason in what it said.
QString reasonIn(const QByteArray& messages) {
    const QString text = QString::fromUtf8(messages);
    static const QRegularExpression error(QStringLiteral("Error: (/\\w+ in [^\\n]*)"));
    if (const auto match = error.match(text); match.hasMatch())
        return match.captured(1).trimmed();
    for (const QString& line : text.split(u'\n', Qt::SkipEmptyParts)) {
        if (line.startsWith(QLatin1String("   **** ")))
            return line.mid(8).trimmed();
    }
    return hostText("NoReasonGiven");
}

/// Both ends of a pipe, closed in programs that are started.
struct Pipe {
    Descriptor out;
    Descriptor in;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return {};
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// What the new process finds open: nothing to read, `messages` to say things, and its end of the
/// channel.
class OpenFiles {
public:
    OpenFiles(int messages, int channel) {
        posix_spawn_file_actions_init(&mActions);
        posix_spawn_file_actions_addopen(&mActions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&mActions, messages, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&mActions, messages, STDERR_FILENO);
        posix_spawn_file_actions_adddup2(&mActions, channel, worker::kWorkersEnd);
    }
    OpenFiles(const OpenFiles&) = delete;
    OpenFiles& operator=(const OpenFiles&) = delete;
    ~OpenFiles() { posix_spawn_file_actions_destroy(&mActions); }

    const posix_spawn_file_actions_t* actions() const { return &mActions; }

private:
    posix_spawn_file_actions_t mActions{};
};

/// What the program itself blocks or ignores is not for the worker.
class PlainSignals {
public:
    PlainSignals() {
        sigset_t none;
        sigset_t usual;
        sigemptyset(&none);
        sigemptyset(&usual);
        for (const int signal : {SIGPIPE, SIGINT, SIGTERM, SIGHUP})
            sigaddset(&usual, signal);
        posix_spawnattr_init(&mAttributes);
        posix_spawnattr_setsigmask(&mAttributes, &none);
        posix_spawnattr_setsigdefault(&mAttributes, &usual);
        // A group of its own: Ctrl+C at a terminal is for who asked, who then ends the worker.
        posix_spawnattr_setpgroup(&mAttributes, 0);
        posix_spawnattr_setflags(&mAttributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                   POSIX_SPAWN_SETPGROUP);
    }
    PlainSignals(const PlainSignals&) = delete;
    PlainSignals& operator=(const PlainSignals&) = delete;
    ~PlainSignals() { posix_spawnattr_destroy(&mAttributes); }

    const posix_spawnattr_t* attributes() const { return &mAttributes; }

private:
    posix_spawnattr_t mAttributes{};
};

/// Of a file, or of all files in a folder.
qint64 bytesAt(const QString& path) {
    if (const QFileInfo info(path); !info.isDir())
        return info.size();
    qint64 all = 0;
    for (const QFileInfo& file : QDir(path).entryInfoList(QDir::Files))
        all += file.size();
    return all;
}

/// How long something has not come nearer to its end, by what it says and by what it writes.
class Stillness {
public:
    Stillness(std::chrono::milliseconds patience, const WorkerTask& task)
        : mPatience(patience)
        , mTask(task) {}

    void interrupt() { mSince = Clock::now(); }
    bool isTooLong() {
        const Clock::time_point now = Clock::now();
        if (!mTask.target.isEmpty() && now - mLooked > kLookAtOutput) {
            mLooked = now;
            if (const qint64 written = bytesAt(mTask.target); written != mWritten) {
                mWritten = written;
                interrupt();
            }
        }
        return now - mSince > mPatience;
    }
    /// How much was there at the last look. Bytes.
    qint64 written() const { return mWritten; }

private:
    std::chrono::milliseconds mPatience;
    const WorkerTask& mTask;
    qint64 mWritten = 0;
    Clock::time_point mSince = Clock::now();
    Clock::time_point mLooked = mSince;
};

} // namespace

/// The process and what it says. Killed and collected when it goes.
struct DocumentWorker::Process {
    Process(DocumentReader itsReader, std::chrono::milliseconds itsPatience)
        : reader(itsReader)
        , patience(itsPatience) {}
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() { kill(); }

    void kill() {
        if (id <= 0)
            return;
        ::kill(id, SIGKILL);
        collect();
    }
    /// Waits for the end. Once.
    void collect() {
        while (id > 0 && waitpid(id, &status, 0) < 0 && errno == EINTR) {
        }
        id = 0;
    }
    /// @return whether more may come.
    bool readMessages() {
        std::array<char, 4096> bytes{};
        const ssize_t size = read(messages.number(), bytes.data(), bytes.size());
        if (size <= 0)
            return false;
        said.append(bytes.data(), size);
        if (said.size() > 2 * kMessages)
            said = said.last(kMessages);
        return true;
    }
    /// Waits until something comes from the worker, or for a moment.
    void wait() {
        std::array<pollfd, 2> sources{pollfd{channel.number(), POLLIN, 0},
                                      pollfd{messages.number(), POLLIN, 0}};
        poll(sources.data(), sources.size(), kLook);
        if ((sources[1].revents & (POLLIN | POLLHUP)) != 0 && !readMessages())
            messages.close();
        if ((sources[0].revents & (POLLIN | POLLHUP)) != 0)
            receive();
    }
    void receive() {
        worker::Packet packet;
        const worker::Reception reception = worker::receivePacket(channel.number(), false, packet);
        if (reception == worker::Reception::Nothing)
            return;
        if (reception == worker::Reception::Packet)
            answer = worker::decodeAnswer(packet.bytes);
        if (answer)
            return;
        channel.close();
        // What makes no sense comes from a worker that a document has taken over.
        if (reception == worker::Reception::Packet)
            ::kill(id, SIGKILL);
    }
    bool isGone() const { return !channel && !messages; }

    DocumentReader reader;
    std::chrono::milliseconds patience;
    pid_t id = 0;
    int status = 0;
    Descriptor channel;
    Descriptor messages;
    QByteArray said;
    std::optional<worker::Answer> answer;
};

namespace {

Error tooSlow(const QString& about, std::chrono::milliseconds patience) {
    return failure(hostText("DocumentTooSlow")
                       .arg(about, QString::number(
                                       std::chrono::ceil<std::chrono::seconds>(patience).count())));
}

Error crashed(const QString& about, int status) {
    const int signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    const QString reason =
        signal == 0 ? hostText("NoReasonGiven") : QString::fromLocal8Bit(strsignal(signal));
    return failure(hostText("DocumentCrashed").arg(about, reason));
}

Error outOfMemory(const QString& about) {
    return failure(hostText("DocumentOutOfMemory").arg(about, megabytes(worker::kMemoryLimit)));
}

/// Whether the cage has refused bytes; Ghostscript's reasons do not say.
bool isAtOutputLimit(const WorkerTask& task) {
    return bytesAt(task.target) >= kMostOutput;
}

Error notWritten(const WorkerTask& task, const QString& detail) {
    if (isAtOutputLimit(task))
        return tooLarge(task.about, kMostOutput);
    return failure(hostText("CannotWriteTemporaryBecause").arg(task.target, detail));
}

/// What a worker's failure is to the user.
Error sentenceFor(const worker::Failed& failed, const WorkerTask& task, DocumentReader reader) {
    using worker::Problem;
    const QString about =
        failed.file == worker::kNoFile ? task.about : task.files.value(failed.file, task.about);
    const QString detail =
        failed.detail.empty() ? hostText("NoReasonGiven") : QString::fromStdString(failed.detail);
    switch (failed.problem) {
    case Problem::UnknownKind:
        return failure(hostText("UnknownKind").arg(about));
    case Problem::Encrypted:
        return failure(hostText("PdfEncrypted").arg(about));
    case Problem::Broken:
        return failure(hostText("PdfBroken").arg(about, detail));
    case Problem::WithoutPages:
        return failure(hostText("WithoutPages").arg(about));
    case Problem::TooManyPages:
        return failure(
            hostText("DocumentTooManyPages").arg(about, QString::number(worker::kMostPages)));
    case Problem::TextTooLong:
        return failure(hostText("TextTooLong").arg(about, megabytes(worker::kLargestText)));
    case Problem::PictureDamaged:
        return failure(hostText("PictureDamaged").arg(about, detail));
    case Problem::DrawingDamaged:
        return failure(hostText("DrawingDamaged").arg(about));
    case Problem::NotWritten:
        return notWritten(task, detail);
    case Problem::OutOfMemory:
        return outOfMemory(about);
    case Problem::GhostscriptMissing:
        return failure(hostText("GhostscriptMissing"));
    case Problem::ModuleMissing:
        return failure(hostText("ReaderLibraryMissing").arg(libraryOf(reader), detail));
    case Problem::NoCage:
        return failure(hostText("ReaderWithoutCage").arg(detail));
    case Problem::Misunderstood:
        break;
    }
    return crashed(about, 0);
}

} // namespace

DocumentWorker::DocumentWorker(std::unique_ptr<Process> process)
    : mProcess(std::move(process)) {}
DocumentWorker::DocumentWorker(DocumentWorker&&) noexcept = default;
DocumentWorker& DocumentWorker::operator=(DocumentWorker&&) noexcept = default;
DocumentWorker::~DocumentWorker() = default;

QString DocumentWorker::installedProgram() {
    const QString folder = QCoreApplication::applicationDirPath();
    for (const char* libraries : {LABELCUT_LIBRARIES_FROM_PROGRAM, "../lib/labelcut"}) {
        const QDir beside(folder + u'/' + QLatin1String(libraries));
        if (beside.exists(QStringLiteral("document_worker")))
            return beside.canonicalPath() + QStringLiteral("/document_worker");
    }
    return QStringLiteral(LABELCUT_INSTALLED_LIBRARIES "/document_worker");
}

Result<DocumentWorker> DocumentWorker::start(DocumentReader reader, const QString& program,
                                             std::chrono::milliseconds patience) {
    auto process = std::make_unique<Process>(reader, patience);
    worker::Channel channel = worker::makeChannel();
    Pipe messages = makePipe();
    const auto cannotStart = [&](int error) {
        return failure(hostText("ReaderNotStarted")
                           .arg(program, QString::fromLocal8Bit(std::strerror(error))));
    };
    if (!channel.ours || !messages.out)
        return cannotStart(errno);
    const OpenFiles files(messages.in.number(), channel.theirs.number());
    const PlainSignals signals;
    QByteArray path = QFile::encodeName(program);
    QByteArray own = QByteArray::number(getpid());
    QByteArray name = nameOf(reader);
    std::array<char*, 4> words{path.data(), name.data(), own.data(), nullptr};
    const int error = posix_spawn(&process->id, path.constData(), files.actions(),
                                  signals.attributes(), words.data(), environ);
    if (error != 0)
        return cannotStart(error);
    process->channel = std::move(channel.ours);
    process->messages = std::move(messages.out);
    return DocumentWorker(std::move(process));
}

Result<std::optional<worker::Answer>> DocumentWorker::nextAnswer(const WorkerTask& task) {
    Process& process = *mProcess;
    Stillness stillness(process.patience, task);
    while (!process.isGone()) {
        if (isCancelled(task.cancel)) {
            process.kill();
            return cancelled();
        }
        process.wait();
        const auto answer = std::exchange(process.answer, std::nullopt);
        if (answer && !std::holds_alternative<worker::Progress>(*answer))
            return answer;
        if (answer)
            stillness.interrupt();
        if (stillness.isTooLong()) {
            process.kill();
            return tooSlow(task.about, process.patience);
        }
        // The cage limits each file, not how many there are.
        if (stillness.written() > kMostOutput) {
            process.kill();
            return tooLarge(task.about, kMostOutput);
        }
    }
    process.collect();
    return std::optional<worker::Answer>();
}

Result<worker::Answer> DocumentWorker::ask(const worker::Request& request, const WorkerTask& task) {
    // Whether it went shows in the answer.
    worker::sendPacket(mProcess->channel.number(), worker::encode(request), task.descriptors);
    const Result<std::optional<worker::Answer>> answer = nextAnswer(task);
    if (!answer)
        return answer.error();
    if (!*answer && mProcess->said.contains(kOutOfMemory))
        return outOfMemory(task.about);
    if (!*answer)
        return crashed(task.about, mProcess->status);
    if (const auto* failed = std::get_if<worker::Failed>(&**answer))
        return sentenceFor(*failed, task, mProcess->reader);
    return **answer;
}

Result<QByteArray> DocumentWorker::run(const worker::Interpret& request, const WorkerTask& task) {
    worker::sendPacket(mProcess->channel.number(), worker::encode(request), task.descriptors);
    const Result<std::optional<worker::Answer>> answer = nextAnswer(task);
    if (!answer)
        return answer.error();
    // An answer is a refusal: a worker that becomes Ghostscript gives none.
    if (*answer) {
        const auto* failed = std::get_if<worker::Failed>(&**answer);
        return sentenceFor(failed ? *failed : worker::Failed(), task, mProcess->reader);
    }
    const int status = mProcess->status;
    if (WIFSIGNALED(status))
        return crashed(task.about, status);
    if (status == 0)
        return mProcess->said;
    if (mProcess->said.contains("/VMerror") || mProcess->said.contains("nsufficient memory"))
        return outOfMemory(task.about);
    if (isAtOutputLimit(task))
        return tooLarge(task.about, kMostOutput);
    return failure(hostText("GhostscriptFailed")
                       .arg(hostText("Quoted").arg(task.about), reasonIn(mProcess->said)));
}

} // namespace labelcut
