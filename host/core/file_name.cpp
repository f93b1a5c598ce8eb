// Core: names of files, which are bytes, as texts that lose none of them.
#include "host/core/file_name.h"

#include <QDir>

#include <unistd.h>

#include <array>
#include <climits>

namespace labelcut {

namespace {

constexpr char16_t kFirstByte = 0xDC80; // stands for the byte 0x80
constexpr char16_t kLastByte = 0xDCFF;
constexpr char16_t kByteOffset = 0xDC00;

/// A character at the front of some bytes; of length 0: what stands there is not UTF-8.
struct Decoded {
    char32_t character = 0;
    qsizetype length = 0;
};

/// How sequences of one length begin, and which character is the first that takes so many.
struct Form {
    unsigned char mask;
    unsigned char lead;
    char32_t lowest;
};
constexpr std::array<Form, 4> kForms{
    {{0x80, 0x00, 0x0}, {0xE0, 0xC0, 0x80}, {0xF0, 0xE0, 0x800}, {0xF8, 0xF0, 0x10000}}};

bool isCharacter(char32_t c, char32_t lowest) {
    return c >= lowest && c <= QChar::LastValidCodePoint && !QChar::isSurrogate(c);
}

Decoded decoded(const QByteArray& bytes, qsizetype at) {
    const auto byte = [&](qsizetype i) { return static_cast<unsigned char>(bytes[at + i]); };
    qsizetype length = 0;
    for (const Form& form : kForms) {
        ++length;
        if ((byte(0) & form.mask) != form.lead)
            continue;
        if (bytes.size() - at < length)
            return {};
        char32_t character = byte(0) & static_cast<unsigned char>(~form.mask);
        for (qsizetype i = 1; i < length; ++i) {
            if ((byte(i) & 0xC0) != 0x80)
                return {};
            character = character << 6 | (byte(i) & 0x3F);
        }
        return isCharacter(character, form.lowest) ? Decoded{character, length} : Decoded();
    }
    return {};
}

} // namespace

QString nameFromBytes(const QByteArray& bytes) {
    QString name;
    name.reserve(bytes.size());
    for (qsizetype at = 0; at < bytes.size();) {
        const Decoded next = decoded(bytes, at);
        if (next.length == 0)
            name += QChar(kByteOffset + static_cast<unsigned char>(bytes[at++]));
        else
            name += QChar::fromUcs4(next.character);
        at += next.length;
    }
    return name;
}

QString nameFromWord(const std::string& word) {
    return nameFromBytes(QByteArray::fromStdString(word));
}

QByteArray bytesOfName(const QString& name) {
    QByteArray bytes;
    bytes.reserve(name.size());
    for (qsizetype at = 0; at < name.size();) {
        const bool isPair =
            name[at].isHighSurrogate() && at + 1 < name.size() && name[at + 1].isLowSurrogate();
        const char16_t c = name[at].unicode();
        if (!isPair && c >= kFirstByte && c <= kLastByte)
            bytes += static_cast<char>(c - kByteOffset);
        else if (!isPair && name[at].isSurrogate())
            bytes += QString(QChar::ReplacementCharacter).toUtf8();
        else
            bytes += QStringView(name).mid(at, isPair ? 2 : 1).toUtf8();
        at += isPair ? 2 : 1;
    }
    return bytes;
}

QByteArray systemName(const QString& name) {
    return name.contains(QChar::Null) ? QByteArray() : bytesOfName(name);
}

QString absoluteName(const QString& name) {
    if (name.startsWith(u'/'))
        return QDir::cleanPath(name);
    QByteArray folder(PATH_MAX, Qt::Uninitialized);
    if (!getcwd(folder.data(), PATH_MAX))
        return name;
    return QDir::cleanPath(nameFromBytes(folder.constData()) + u'/' + name);
}

} // namespace labelcut
