// Diagnostics: writing to a descriptor.
#pragma once

#include <QByteArrayView>

#include <unistd.h>

namespace labelcut {

/// One write() whose result is ignored.
/// @param fd     an open descriptor, or any number: a failure is silent.
/// @param bytes  written as far as the descriptor takes them at once.
inline void writePlainly(int fd, QByteArrayView bytes) {
    [[maybe_unused]] const auto written =
        ::write(fd, bytes.data(), static_cast<std::size_t>(bytes.size()));
}

} // namespace labelcut
