// Plug-in frame: text utilities.
#pragma once

#include <QString>

#include <optional>

namespace labelcut {

/// Static members only. "Nothing" is an absent text, which is not the same as an empty one.
class PDEUtils_String {
public:
    PDEUtils_String() = delete;

    /// How many bytes a text takes outside the process.
    /// @param string  the text, or nothing.
    /// @return its length in bytes in the system's default encoding if it can be converted to that,
    ///         otherwise in the first available encoding that can take it; 0 for nothing, and when
    ///         no encoding can take it.
    static qsizetype stringLengthConvertedToEncoding(const std::optional<QString>& string);

    /// Whether a text holds another, compared literally and with case.
    /// @param string      the text that is searched, from end to end; nothing holds nothing.
    /// @param intoString  what is looked for; nothing and the empty text are never found.
    static bool scanString(const std::optional<QString>& string,
                           const std::optional<QString>& intoString);

    /// A copy of a text without the first occurrence of another.
    /// @param string      the text that is copied.
    /// @param intoString  what is removed.
    /// @return nothing when scanString() would not find it; an empty text when nothing is left.
    static std::optional<QString> deleteString(const std::optional<QString>& string,
                                               const std::optional<QString>& intoString);
};

} // namespace labelcut
