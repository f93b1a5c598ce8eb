// What a document that has taken over its reader might try.
#pragma once

#include <string>
#include <string_view>

namespace labelcut::test {

/// Carries out the deed in the second line of a document: its name, a space and what it is about.
/// @param target  a file that may be written. @return "refused" with the system's reason, or
/// "succeeded"; some deeds do not return.
std::string carryOutDeed(std::string_view document, int target);

} // namespace labelcut::test
