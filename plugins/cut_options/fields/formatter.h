// Input fields: what a text field asks of a formatter.
#pragma once

#include <QString>
#include <QVariant>

#include <cstddef>
#include <optional>

namespace labelcut {

/// A stretch of a text in UTF-16 units. A caret is a range of length 0.
struct TextRange {
    std::size_t location = 0;
    std::size_t length = 0;
    bool operator==(const TextRange&) const = default;
};

/// Converts between a field's value and its text, and vets every edit of the text.
/// "Nothing" is an absent text, which is not the same as an empty one.
class Formatter {
public:
    virtual ~Formatter() = default;

    /// The text that shows `object`; nothing when it cannot be shown.
    virtual std::optional<QString> stringForObjectValue(const QVariant& object) const = 0;

    /// The value that `string` stands for.
    /// @param object            receives the value; null when the caller does not want it.
    /// @param string            the text, or nothing.
    /// @param errorDescription  receives a sentence for the user on failure; may be null.
    /// @return false when the text stands for no value; `object` is then left alone.
    virtual bool getObjectValue(QVariant* object, const std::optional<QString>& string,
                                QString* errorDescription) const = 0;

    /// Whether an edit may be applied.
    /// @param proposed          the whole text as it would become; null when there is none.
    /// @param proposedRange     the selection as it would become; null when there is none.
    /// @param original          the whole text before the edit.
    /// @param originalRange     the selection before the edit.
    /// @param errorDescription  receives a sentence for the user on refusal; may be null.
    /// @return false to refuse the edit. The proposed text and range may be changed only then.
    virtual bool isPartialStringValid(QString* proposed, TextRange* proposedRange,
                                      const QString& original, TextRange originalRange,
                                      QString* errorDescription) = 0;
};

} // namespace labelcut
