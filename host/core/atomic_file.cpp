// Core: a file that is either whole or not there.
#include "host/core/atomic_file.h"

#include <QRandomGenerator>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <thread>
#include <utility>

#include "host/core/failure.h"
#include "host/core/file_name.h"
#include "host/texts/host_text.h"
#include "worker/protocol/descriptor.h"

namespace labelcut {

using worker::Descriptor;

namespace {

/// Bytes that are handed on together.
constexpr qsizetype kHandedOn = 1 << 16;
/// Links that are followed one after the other, as many as the system follows.
constexpr int kMaxLinks = 40;
/// Names that are tried for a file in the making.
constexpr int kMaxTries = 100;
/// Milliseconds between two looks at whether somebody reads from a pipe by now.
constexpr int kNap = 50;
constexpr mode_t kOwnersAlone = S_IRUSR | S_IWUSR;
constexpr mode_t kAsTheUmaskHasIt = 0666;
constexpr mode_t kRights = 0777;

Error cannotWrite(const QString& path, const QString& reason) {
    return failure(hostText("CannotWrite").arg(path, reason));
}

/// Up to and with the last slash; empty: the current folder.
QByteArray folderOf(const QByteArray& name) {
    return name.left(name.lastIndexOf('/') + 1);
}

/// Empty: it is no link.
QByteArray targetOf(const QByteArray& name) {
    QByteArray target(PATH_MAX, Qt::Uninitialized);
    const ssize_t size = readlink(name.constData(), target.data(), PATH_MAX);
    target.truncate(std::max<ssize_t>(size, 0));
    return target;
}

/// The name that a link leads to, whether that is there or not; any other name itself.
QByteArray behindLinks(QByteArray name) {
    for (int followed = 0; followed < kMaxLinks; ++followed) {
        const QByteArray target = targetOf(name);
        if (target.isEmpty())
            break;
        name = target.startsWith('/') ? target : folderOf(name) + target;
    }
    return name;
}

/// What stands behind a name.
struct Place {
    explicit Place(const QByteArray& path)
        : name(behindLinks(path)) {
        struct stat status {};
        if (stat(path.constData(), &status) == 0)
            older = status;
        else if (errno != ENOENT)
            reason = qt_error_string(errno);
    }
    bool isFolder() const { return older && S_ISDIR(older->st_mode); }
    bool isPipe() const { return older && S_ISFIFO(older->st_mode); }
    /// Something that is there and is no file.
    bool isOther() const { return older && !S_ISREG(older->st_mode); }

    /// Behind all links.
    QByteArray name;
    /// What is there; nothing: there is nothing, or `reason` says why it cannot be seen.
    std::optional<struct stat> older;
    QString reason;
};

/// A file in the making, beside the one whose place it takes. Goes with its object unless it was
/// put there.
class Replacement {
public:
    /// @param rights  of the new file; those of an older one go before.
    Replacement(const Place& place, mode_t rights)
        : mTarget(place.name)
        , mReason(place.reason)
        , mFile(place.reason.isEmpty() ? create(place.older, rights) : -1) {}
    ~Replacement() {
        if (!mName.isEmpty())
            unlink(mName.constData());
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// -1: none could be made, see reason().
    int descriptor() const { return mFile.number(); }
    /// @return whether the file has taken the place.
    bool put() {
        const bool isPut = fsync(mFile.number()) == 0 && mFile.close() &&
                           rename(mName.constData(), mTarget.constData()) == 0;
        if (isPut)
            mName.clear();
        else
            mReason = qt_error_string(errno);
        return isPut;
    }
    const QString& reason() const { return mReason; }

private:
    int create(const std::optional<struct stat>& older, mode_t rights) {
        // Who may not write to the older one is not meant to replace it either.
        if (older && faccessat(AT_FDCWD, mTarget.constData(), W_OK, AT_EACCESS) != 0)
            return refused();
        int file = -1;
        for (int tries = 0; file < 0 && tries < kMaxTries; ++tries) {
            mName = folderOf(mTarget) + ".labelcut-" +
                    QByteArray::number(QRandomGenerator::system()->generate64(), 36);
            file = open(mName.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, rights);
            if (file < 0 && errno != EEXIST)
                break;
        }
        if (file < 0)
            return refused();
        if (older && rights != kOwnersAlone)
            static_cast<void>(fchmod(file, older->st_mode & kRights));
        return file;
    }
    int refused() {
        mReason = qt_error_string(errno);
        mName.clear();
        return -1;
    }

    QByteArray mTarget;
    QByteArray mName;
    QString mReason;
    Descriptor mFile;
};

/// Opens what is no file for writing. A pipe that nobody reads from is waited for.
int openDirectly(const QByteArray& name, bool isPipe, const CancelFlag* cancel) {
    for (;;) {
        const int file =
            open(name.constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | O_APPEND);
        const bool isWorthWaiting = file < 0 && isPipe && errno == ENXIO;
        if (!isWorthWaiting || isCancelled(cancel))
            return file;
        std::this_thread::sleep_for(std::chrono::milliseconds(kNap));
    }
}

Result<qint64> writeDirectly(const QString& path, const FileWriter& write, bool isPipe,
                             const CancelFlag* cancel) {
    Descriptor file(openDirectly(systemName(path), isPipe, cancel));
    const int error = errno;
    if (isCancelled(cancel))
        return cancelled();
    if (file.number() < 0)
        return cannotWrite(path, qt_error_string(error));
    FileSink sink(file.number(), cancel);
    if (const auto refusal = write(sink))
        return failure(*refusal);
    if (!sink.flush())
        return isCancelled(cancel) ? cancelled() : cannotWrite(path, sink.reason());
    return file.close() ? Result<qint64>(sink.size()) : cannotWrite(path, qt_error_string(errno));
}

} // namespace

void FileSink::write(const QByteArray& bytes) {
    if (!isWhole())
        return;
    mWaiting += bytes;
    mSize += bytes.size();
    if (mWaiting.size() >= kHandedOn)
        flush();
}

bool FileSink::flush() {
    // A device that takes only some of the bytes reports no error before it is asked again.
    qsizetype done = 0;
    while (isWhole() && done < mWaiting.size()) {
        const ssize_t taken = ::write(mDescriptor, mWaiting.constData() + done,
                                      static_cast<std::size_t>(mWaiting.size() - done));
        if (taken >= 0)
            done += taken;
        else if (errno != EINTR && (errno != EAGAIN || !waitForRoom()))
            mReason = qt_error_string(errno);
    }
    mWaiting.clear();
    return isWhole();
}

bool FileSink::waitForRoom() {
    pollfd room{mDescriptor, POLLOUT, 0};
    while (poll(&room, 1, kNap) == 0) {
        if (isCancelled(mCancel)) {
            errno = ECANCELED;
            return false;
        }
    }
    return true;
}

Result<qint64> writeWhole(const QString& path, const FileWriter& write, const CancelFlag* cancel) {
    const QByteArray name = systemName(path);
    const Place place(name);
    if (place.isFolder())
        return failure(hostText("IsFolder").arg(path));
    if (place.isOther())
        return writeDirectly(path, write, place.isPipe(), cancel);
    Replacement file(place, kAsTheUmaskHasIt);
    if (file.descriptor() < 0 && place.name != name)
        return failure(
            hostText("LinkedCannotWrite").arg(path, nameFromBytes(place.name), file.reason()));
    if (file.descriptor() < 0)
        return cannotWrite(path, file.reason());
    FileSink sink(file.descriptor());
    if (const auto refusal = write(sink))
        return failure(*refusal);
    if (!sink.flush())
        return cannotWrite(path, sink.reason());
    if (!file.put())
        return cannotWrite(path, file.reason());
    return sink.size();
}

std::optional<QString> writePrivately(const QString& path, const QByteArray& bytes) {
    const Place place(systemName(path));
    if (place.isOther())
        return hostText("NoRegularFile");
    Replacement file(place, kOwnersAlone);
    if (file.descriptor() < 0)
        return file.reason();
    FileSink sink(file.descriptor());
    sink.write(bytes);
    if (!sink.flush())
        return sink.reason();
    return file.put() ? std::nullopt : std::optional(file.reason());
}

} // namespace labelcut
