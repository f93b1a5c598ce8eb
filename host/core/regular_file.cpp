// Core: files that are read, opened in the one way that can neither wait nor go on without end.
#include "host/core/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "host/core/failure.h"
#include "host/core/file_name.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Read at a time. Bytes.
constexpr qint64 kReadAtATime = 1 << 18;

OpenAttempt refusedBySystem(int error) {
    // A circle of links leads to nothing.
    if (error == ENOENT || error == ENOTDIR || error == ELOOP)
        return {OpenedFile(), FileTrouble::Missing, {}};
    return {OpenedFile(), FileTrouble::Refused, qt_error_string(error)};
}

FileTrouble troubleOf(const struct stat& status) {
    if (S_ISREG(status.st_mode))
        return FileTrouble::None;
    return S_ISDIR(status.st_mode) ? FileTrouble::Folder : FileTrouble::NotRegular;
}

QString sentenceFor(const OpenAttempt& attempt, const QString& path) {
    switch (attempt.trouble) {
    case FileTrouble::Missing:
        return hostText("DoesNotExist").arg(path);
    case FileTrouble::Folder:
        return hostText("IsFolder").arg(path);
    case FileTrouble::NotRegular:
        return hostText("NotRegularFile").arg(path);
    case FileTrouble::None:
    case FileTrouble::Refused:
        break;
    }
    return hostText("CannotRead").arg(path, attempt.reason);
}

} // namespace

qint64 OpenedFile::size() const {
    struct stat status {};
    return fstat(descriptor(), &status) == 0 ? status.st_size : 0;
}

QByteArray OpenedFile::read(qint64 limit, QString* reason) const {
    QByteArray bytes;
    while (bytes.size() < limit) {
        const qsizetype before = bytes.size();
        const qint64 wanted = std::min(kReadAtATime, limit - before);
        bytes.resize(before + wanted);
        const ssize_t taken =
            pread(descriptor(), bytes.data() + before, static_cast<std::size_t>(wanted), before);
        bytes.resize(before + std::max<ssize_t>(taken, 0));
        if (taken < 0 && errno == EINTR)
            continue;
        if (taken < 0)
            *reason = qt_error_string(errno);
        if (taken <= 0)
            break;
    }
    return bytes;
}

QString reasonOf(const OpenAttempt& attempt) {
    if (attempt.trouble == FileTrouble::Missing)
        return qt_error_string(ENOENT);
    return attempt.trouble == FileTrouble::Refused ? attempt.reason : hostText("NoRegularFile");
}

FileContent readSmallFile(const QString& path, qint64 limit) {
    const OpenAttempt attempt = tryRegularFile(path);
    if (attempt.trouble == FileTrouble::Missing)
        return {};
    if (attempt.trouble != FileTrouble::None)
        return {true, reasonOf(attempt), {}};
    FileContent content{true, {}, {}};
    content.bytes = attempt.file.read(limit + 1, &content.reason);
    if (content.bytes.size() > limit)
        content.reason = hostText("TooManyBytes").arg(limit);
    return content;
}

OpenAttempt tryRegularFile(const QString& path) {
    const QByteArray name = systemName(path);
    struct stat status {};
    // Looked at before it is opened too: opening alone can move a device, or wake what waits at the
    // other end of a pipe.
    if (stat(name.constData(), &status) != 0)
        return refusedBySystem(errno);
    if (const FileTrouble trouble = troubleOf(status); trouble != FileTrouble::None)
        return {OpenedFile(), trouble, {}};
    OpenedFile file(open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen() || fstat(file.descriptor(), &status) != 0)
        return refusedBySystem(errno);
    if (const FileTrouble trouble = troubleOf(status); trouble != FileTrouble::None)
        return {OpenedFile(), trouble, {}};
    return {std::move(file), FileTrouble::None, {}};
}

Result<OpenedFile> openRegularFile(const QString& path) {
    OpenAttempt attempt = tryRegularFile(path);
    if (attempt.trouble != FileTrouble::None)
        return failure(sentenceFor(attempt, path));
    return std::move(attempt.file);
}

} // namespace labelcut
