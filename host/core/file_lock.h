// Core: one process at a time.
#pragma once

#include <QByteArray>
#include <QString>

#include "worker/protocol/descriptor.h"

namespace labelcut {

/// A lock that is held by an open file of its own, which goes with it; a process that ends, in
/// whatever way, holds none. Threads of one process exclude each other too.
class FileLock {
public:
    enum class Attempt {
        Held,
        Busy,       ///< Somebody else holds it; try again.
        NotRegular, ///< What has its name is a pipe, a folder or the like, and stays.
        Forbidden,  ///< The folder does not let the user.
        Impossible, ///< The system refuses it for another reason.
    };

    /// @param path  the lock's own file, as nameFromBytes() names it.
    explicit FileLock(const QString& path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Tries to take it. Never waits.
    Attempt tryLock();

private:
    QByteArray mName;
    worker::Descriptor mFile;
};

} // namespace labelcut
