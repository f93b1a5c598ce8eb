// Plug-in frame: text utilities.
#include "plugins/cut_options/frame/pde_utils_string.h"

#include "platform/toolkit/text_encoding.h"

namespace labelcut {

namespace {

/// Where `sought` begins in `text`, or -1.
qsizetype find(const std::optional<QString>& text, const std::optional<QString>& sought) {
    if (!text || !sought || sought->isEmpty())
        return -1;
    return text->indexOf(*sought, 0, Qt::CaseSensitive);
}

} // namespace

qsizetype PDEUtils_String::stringLengthConvertedToEncoding(const std::optional<QString>& string) {
    if (!string)
        return 0;
    if (const auto length = encodedLength(*string, TextEncoding::SystemDefault))
        return *length;
    for (const QByteArray& name : availableEncodings()) {
        if (const auto length = encodedLengthByName(*string, name))
            return *length;
    }
    return 0;
}

bool PDEUtils_String::scanString(const std::optional<QString>& string,
                                 const std::optional<QString>& intoString) {
    return find(string, intoString) >= 0;
}

std::optional<QString> PDEUtils_String::deleteString(const std::optional<QString>& string,
                                                     const std::optional<QString>& intoString) {
    const qsizetype position = find(string, intoString);
    if (position < 0)
        return std::nullopt;
    QString shortened = *string;
    shortened.remove(position, intoString->size());
    return shortened;
}

} // namespace labelcut
