// Performance: what the process asks of the heap. The C library's functions are replaced by ones
// that count and pass on, which holds for every library of the process.
#include "tools/benchmarks/allocations.h"

#include <atomic>
#include <cstddef>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
}

namespace {

std::atomic<std::uint64_t> calls = 0;
std::atomic<std::uint64_t> bytes = 0;

void count(std::size_t size) {
    calls.fetch_add(1, std::memory_order_relaxed);
    bytes.fetch_add(size, std::memory_order_relaxed);
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) void* malloc(std::size_t size) {
    count(size);
    return __libc_malloc(size);
}

__attribute__((visibility("default"))) void* calloc(std::size_t number, std::size_t size) {
    count(number * size);
    return __libc_calloc(number, size);
}

__attribute__((visibility("default"))) void* realloc(void* old, std::size_t size) {
    count(size);
    return __libc_realloc(old, size);
}
}

namespace labelcut::bench {

Allocations allocations() {
    return {calls.load(), bytes.load()};
}

} // namespace labelcut::bench
