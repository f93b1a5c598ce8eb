// Core: names of files, which are bytes, as texts that lose none of them.
#include "host/core/file_name.h"

#include <QDir>

// Macros alone: nothing of ICU is linked.
#include <unicode/utf8.h>
#include <unistd.h>

#include <climits>

// ICU's macros narrow what they have masked before.
#pragma GCC diagnostic ignored "-Wconversion"

namespace labelcut {

namespace {

constexpr char16_t kFirstByte = 0xDC80; // stands for the byte 0x80
constexpr char16_t kLastByte = 0xDCFF;
constexpr char16_t kByteOffset = 0xDC00;

} // namespace

QString nameFromBytes(const QByteArray& bytes) {
    QString name;
    name.reserve(bytes.size());
    for (qsizetype at = 0; at < bytes.size();) {
        qsizetype next = at;
        UChar32 character = 0;
        U8_NEXT(bytes.constData(), next, bytes.size(), character);
        const bool isCharacter = character >= 0;
        if (isCharacter)
            name += QChar::fromUcs4(static_cast<char32_t>(character));
        else
            name += QChar(kByteOffset + static_cast<unsigned char>(bytes[at]));
        at = isCharacter ? next : at + 1;
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
