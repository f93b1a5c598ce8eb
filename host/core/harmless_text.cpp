// Core: texts from elsewhere, such as a file's name, made fit to be read.
#include "host/core/harmless_text.h"

namespace labelcut {

namespace {

bool isHalf(const QString& text, qsizetype at) {
    const QChar c = text[at];
    if (c.isHighSurrogate())
        return at + 1 == text.size() || !text[at + 1].isLowSurrogate();
    return c.isLowSurrogate() && (at == 0 || !text[at - 1].isHighSurrogate());
}

} // namespace

bool isActedOn(QChar character) {
    const char16_t c = character.unicode();
    return character.category() == QChar::Other_Control || c == 0x2028 || c == 0x2029 ||
           (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

QString harmless(const QString& text, QStringView kept) {
    QString shown = text;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!kept.contains(text[i]) && (isActedOn(text[i]) || isHalf(text, i)))
            shown[i] = QChar::ReplacementCharacter;
    }
    return shown;
}

} // namespace labelcut
