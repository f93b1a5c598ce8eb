// Diagnostics: memory dumps.
#include "plugins/cut_options/diagnostics/pde_log.h"

#include <QByteArray>

#include <cstdio>
#include <span>

#include "plugins/cut_options/diagnostics/plain_write.h"

namespace labelcut {

namespace {

constexpr std::size_t kGroupSize = 16;

/// Two digits for each byte.
QByteArray digitsOf(std::span<const char> group) {
    return QByteArray(group.data(), std::ssize(group)).toHex();
}

/// Calls `print` with each full group and then with the rest, which may be empty.
template<typename Print>
void forEachGroup(const void* bytes, std::int32_t count, Print print) {
    std::span rest(static_cast<const char*>(bytes),
                   count > 0 ? static_cast<std::size_t>(count) : 0);
    for (; rest.size() >= kGroupSize; rest = rest.subspan(kGroupSize))
        print(digitsOf(rest.first(kGroupSize)));
    print(digitsOf(rest));
}

} // namespace

void memoryCheck(std::int32_t level, const void* bytes, std::int32_t count) {
    if (level > 0 || !bytes)
        return;
    forEachGroup(bytes, count,
                 [](const QByteArray& digits) { std::fprintf(stderr, "DEBUG:%s", digits.data()); });
}

void memoryCheckFd(std::int32_t level, int fd, const void* bytes, std::int32_t count) {
    if (level > 0 || !bytes)
        return;
    forEachGroup(bytes, count, [fd](const QByteArray& digits) {
        if (digits.isEmpty())
            return;
        writePlainly(fd, digits);
        writePlainly(fd, "\n");
    });
}

} // namespace labelcut
