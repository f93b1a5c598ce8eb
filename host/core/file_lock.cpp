// Core: one process at a time.
#include "host/core/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "host/core/file_name.h"
#include "host/core/same_file.h"

namespace labelcut {

namespace {

FileLock::Attempt attemptFor(int error) {
    if (error == EWOULDBLOCK)
        return FileLock::Attempt::Busy;
    const bool isForbidden = error == EACCES || error == EPERM || error == EROFS;
    return isForbidden ? FileLock::Attempt::Forbidden : FileLock::Attempt::Impossible;
}

} // namespace

FileLock::FileLock(const QString& path)
    : mName(systemName(path)) {}

FileLock::~FileLock() {
    // Still held, so that nobody else's file can have this name.
    if (mFile)
        unlink(mName.constData());
}

FileLock::Attempt FileLock::tryLock() {
    struct stat found {};
    // Not even opened: that would wake who waits at the other end of a pipe.
    if (lstat(mName.constData(), &found) == 0 && !S_ISREG(found.st_mode))
        return Attempt::NotRegular;
    worker::Descriptor file(open(mName.constData(),
                                 O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY,
                                 S_IRUSR | S_IWUSR));
    if (!file || flock(file.number(), LOCK_EX | LOCK_NB) != 0)
        return attemptFor(errno);
    struct stat opened {};
    // Whoever held it before may have removed the file since it was opened here.
    const bool isInPlace = fstat(file.number(), &opened) == 0 &&
                           lstat(mName.constData(), &found) == 0 && isSameFile(opened, found);
    if (!isInPlace)
        return Attempt::Busy;
    mFile = std::move(file);
    return Attempt::Held;
}

} // namespace labelcut
