// Core: one process at a time.
#include "host/core/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "host/core/file_name.h"

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
    if (mFile < 0)
        return;
    // Still held, so that nobody else's file can have this name.
    unlink(mName.constData());
    close(mFile);
}

FileLock::Attempt FileLock::tryLock() {
    struct stat found {};
    // Not even opened: that would wake who waits at the other end of a pipe.
    if (lstat(mName.constData(), &found) == 0 && !S_ISREG(found.st_mode))
        return Attempt::NotRegular;
    const int file =
        open(mName.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY,
             S_IRUSR | S_IWUSR);
    if (file < 0)
        return attemptFor(errno);
    struct stat opened {};
    const bool isHeld = flock(file, LOCK_EX | LOCK_NB) == 0;
    const Attempt failed = attemptFor(errno);
    // Whoever held it before may have removed the file since it was opened here.
    const bool isInPlace = isHeld && fstat(file, &opened) == 0 &&
                           lstat(mName.constData(), &found) == 0 && opened.st_dev == found.st_dev &&
                           opened.st_ino == found.st_ino;
    if (isInPlace) {
        mFile = file;
        return Attempt::Held;
    }
    close(file);
    return isHeld ? Attempt::Busy : failed;
}

} // namespace labelcut
