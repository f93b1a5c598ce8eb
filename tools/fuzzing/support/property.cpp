// Fuzzing: what must hold for every input.
#include "tools/fuzzing/support/property.h"

#include <cstdio>
#include <cstdlib>

namespace labelcut::fuzz {

void require(bool holds, const char* property) {
    if (holds)
        return;
    std::fprintf(stderr, "This does not hold: %s\n", property);
    std::abort();
}

} // namespace labelcut::fuzz
