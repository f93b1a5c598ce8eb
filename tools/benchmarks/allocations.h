// Performance: what the process asks of the heap.
#pragma once

#include <cstdint>

namespace labelcut::bench {

struct Allocations {
    std::uint64_t calls = 0;
    std::uint64_t bytes = 0;
};

/// Everything since the start, by any library and any thread.
Allocations allocations();

} // namespace labelcut::bench
