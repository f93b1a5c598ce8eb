// Worker: text in files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace labelcut::worker {

/// The text in `bytes`: UTF-8, or UTF-16 or UTF-32 with a byte order mark, with no control
/// characters but tab, line ends and form feed. Nothing when they are no such text.
std::optional<std::u16string> decodedText(std::string_view bytes);

} // namespace labelcut::worker
