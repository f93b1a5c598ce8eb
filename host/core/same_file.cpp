// Core: whether two names lead to one file.
#include "host/core/same_file.h"

#include <sys/stat.h>

#include "host/core/failure.h"
#include "host/core/file_name.h"
#include "host/texts/host_text.h"

namespace labelcut {

bool isSameFile(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

std::optional<QString> sameFileAmong(const QString& path, const QStringList& files) {
    struct stat one {};
    if (stat(systemName(path).constData(), &one) != 0)
        return std::nullopt;
    for (const QString& file : files) {
        struct stat other {};
        if (stat(systemName(file).constData(), &other) == 0 && isSameFile(one, other))
            return file;
    }
    return std::nullopt;
}

std::optional<Error> reasonAgainstReplacing(const QString& output, const QStringList& inUse) {
    const std::optional<QString> used = sameFileAmong(output, inUse);
    if (!used)
        return std::nullopt;
    return failure(hostText("OutputInUse").arg(output, *used));
}

} // namespace labelcut
