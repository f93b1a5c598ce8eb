// Diagnostics: memory dumps.
#include "diagnostics/pde_log.h"

#include <array>
#include <cstdio>

#include "diagnostics/plain_write.h"

namespace labelcut {

namespace {

constexpr std::size_t kGroupSize = 16;

/// Two digits for each byte, and a zero byte.
using Digits = std::array<char, 2 * kGroupSize + 1>;

Digits digitsOf(std::span<const unsigned char> group) {
    Digits digits{};
    for (std::size_t k = 0; k < group.size(); ++k)
        std::snprintf(&digits[2 * k], 3, "%02hhx", group[k]);
    return digits;
}

/// Calls `print` with each full group and then with the rest, which may be empty.
template<typename Print>
void forEachGroup(const void* bytes, std::int32_t count, Print print) {
    std::span rest(static_cast<const unsigned char*>(bytes),
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
                 [](const Digits& digits) { std::fprintf(stderr, "DEBUG:%s", digits.data()); });
}

void memoryCheckFd(std::int32_t level, int fd, const void* bytes, std::int32_t count) {
    if (level > 0 || !bytes)
        return;
    forEachGroup(bytes, count, [fd](const Digits& digits) {
        if (digits.front() == '\0')
            return;
        writePlainly(fd, digits.data());
        writePlainly(fd, "\n");
    });
}

} // namespace labelcut
