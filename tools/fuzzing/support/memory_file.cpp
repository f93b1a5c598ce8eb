// Fuzzing: a file that lies in memory only.
#include "tools/fuzzing/support/memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include "tools/fuzzing/support/property.h"

namespace labelcut::fuzz {

MemoryFile::MemoryFile()
    : mDescriptor(memfd_create("labelcut-fuzz", MFD_CLOEXEC)) {
    require(mDescriptor >= 0, "there is memory for a file");
}

MemoryFile::~MemoryFile() {
    close(mDescriptor);
}

void MemoryFile::set(const QByteArray& contents) {
    const bool isEmpty = ftruncate(mDescriptor, 0) == 0 && lseek(mDescriptor, 0, SEEK_SET) == 0;
    const auto size = static_cast<std::size_t>(contents.size());
    require(isEmpty && write(mDescriptor, contents.constData(), size) == contents.size(),
            "a file in memory takes what is written");
}

QByteArray MemoryFile::contents() const {
    QByteArray all(lseek(mDescriptor, 0, SEEK_END), Qt::Uninitialized);
    require(pread(mDescriptor, all.data(), static_cast<std::size_t>(all.size()), 0) == all.size(),
            "a file in memory gives what was written");
    return all;
}

QString MemoryFile::path() const {
    return QStringLiteral("/proc/self/fd/%1").arg(mDescriptor);
}

} // namespace labelcut::fuzz
