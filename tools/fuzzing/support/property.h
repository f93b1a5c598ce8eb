// Fuzzing: what must hold for every input.
#pragma once

namespace labelcut::fuzz {

/// Ends the process with `property` on standard error when it does not hold, which makes the input
/// a finding. @param property  a sentence that says what must hold.
void require(bool holds, const char* property);

} // namespace labelcut::fuzz
