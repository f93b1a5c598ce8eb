// Toolkit: property lists in XML. Reading is strict and bounded; writing mirrors it.
#include "platform/toolkit/property_list.h"

#include <QDateTime>
#include <QStringDecoder>
#include <QTimeZone>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace labelcut {

namespace {

// Documents without declarations of their own expand nothing but single characters.
constexpr int kEntityExpansionLimit = 16;

constexpr QStringView kPlist = u"plist";
constexpr QStringView kVersion = u"1.0";

std::optional<QString> decoded(const QByteArray& bytes) {
    const auto marked = QStringConverter::encodingForData(bytes);
    constexpr std::array kWide = {QStringConverter::Utf16LE, QStringConverter::Utf16BE};
    const bool wide = marked && std::ranges::find(kWide, *marked) != kWide.end();
    if (marked && !wide && *marked != QStringConverter::Utf8)
        return std::nullopt;
    QStringDecoder decoder(wide ? *marked : QStringConverter::Utf8);
    QString text = decoder(bytes);
    if (decoder.hasError() || text.isEmpty())
        return std::nullopt;
    return text;
}

/// The place after `end` when text at `at` starts with `begin`; -1 when it never ends, 0 when it
/// does not start so.
qsizetype afterSection(QStringView text, qsizetype at, QStringView begin, QStringView end) {
    if (!text.mid(at).startsWith(begin))
        return 0;
    const qsizetype found = text.indexOf(end, at + begin.size());
    return found < 0 ? -1 : found + end.size();
}

/// The place after the tag at `at`; -1 when it is too long, never ends or holds another "<", as a
/// document type with declarations does.
qsizetype afterTag(QStringView text, qsizetype at) {
    const qsizetype limit = std::min(text.size(), at + kPropertyListMaxTagLength);
    QChar quote;
    for (qsizetype i = at + 1; i < limit; ++i) {
        const QChar c = text.at(i);
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
        } else if (c == u'"' || c == u'\'') {
            quote = c;
        } else if (c == u'>') {
            return i + 1;
        } else if (c == u'<') {
            return -1;
        }
    }
    return -1;
}

qsizetype afterMarkup(QStringView text, qsizetype at) {
    struct Section {
        QStringView begin, end;
    };
    static constexpr Section kSections[] = {
        {u"<!--", u"-->"}, {u"<![CDATA[", u"]]>"}, {u"<?", u"?>"}};
    for (const Section& section : kSections) {
        if (const qsizetype after = afterSection(text, at, section.begin, section.end))
            return after;
    }
    return afterTag(text, at);
}

/// Whether every tag is short and nothing is declared, so that the XML reader's time and memory
/// stay in proportion to the text.
bool isTame(QStringView text) {
    qsizetype at = text.indexOf(u'<');
    while (at >= 0) {
        const qsizetype after = afterMarkup(text, at);
        if (after < 0)
            return false;
        at = text.indexOf(u'<', after);
    }
    return true;
}

std::optional<QVariant> integerFrom(const QString& text) {
    bool ok = false;
    const qlonglong number = text.toLongLong(&ok);
    if (ok)
        return number;
    const qulonglong large = text.toULongLong(&ok);
    if (!ok)
        return std::nullopt;
    return large;
}

std::optional<QVariant> realFrom(const QString& text) {
    const QString name = text.trimmed().toLower();
    if (name == u"nan")
        return std::numeric_limits<double>::quiet_NaN();
    if (name == u"infinity" || name == u"+infinity" || name == u"inf" || name == u"+inf")
        return std::numeric_limits<double>::infinity();
    if (name == u"-infinity" || name == u"-inf")
        return -std::numeric_limits<double>::infinity();
    bool ok = false;
    const double number = name.toDouble(&ok);
    if (!ok)
        return std::nullopt;
    return number;
}

std::optional<QVariant> bytesFrom(const QString& text) {
    QByteArray packed = text.toUtf8();
    packed.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    if (packed.size() % 4 != 0)
        return std::nullopt;
    const auto result =
        QByteArray::fromBase64Encoding(packed, QByteArray::AbortOnBase64DecodingErrors);
    if (!result)
        return std::nullopt;
    return *result;
}

std::optional<QVariant> dateFrom(const QString& text) {
    const QString trimmed = text.trimmed();
    if (!trimmed.endsWith(u'Z'))
        return std::nullopt;
    const QDateTime date = QDateTime::fromString(trimmed, Qt::ISODateWithMs);
    if (!date.isValid())
        return std::nullopt;
    return date.toUTC();
}

class Reader {
public:
    explicit Reader(const QString& text)
        : mXml(text) {
        mXml.setNamespaceProcessing(false);
        mXml.setEntityExpansionLimit(kEntityExpansionLimit);
    }

    std::optional<QVariant> document() {
        if (!mXml.readNextStartElement() || mXml.name() != kPlist || !isVersionRead())
            return std::nullopt;
        if (nextChild() != Child::Element)
            return std::nullopt;
        std::optional<QVariant> root = value(0);
        if (!root || nextChild() != Child::End || !isRestEmpty())
            return std::nullopt;
        return root;
    }

private:
    enum class Child { Element, End, Error };

    bool isVersionRead() const {
        const QXmlStreamAttributes attributes = mXml.attributes();
        const QStringView version = attributes.value(QStringLiteral("version"));
        return version.isEmpty() || version == kVersion;
    }

    /// Goes to the next element within the current one, or to its end, over blanks and comments.
    Child nextChild() {
        for (;;) {
            switch (mXml.readNext()) {
            case QXmlStreamReader::StartElement:
                return Child::Element;
            case QXmlStreamReader::EndElement:
                return Child::End;
            case QXmlStreamReader::Comment:
            case QXmlStreamReader::ProcessingInstruction:
                break;
            case QXmlStreamReader::Characters:
                if (mXml.isWhitespace())
                    break;
                return Child::Error;
            default:
                return Child::Error;
            }
        }
    }

    /// The text of an element without elements in it, whose start was just read.
    std::optional<QString> text() {
        QString all;
        for (;;) {
            switch (mXml.readNext()) {
            case QXmlStreamReader::Characters:
                all += mXml.text();
                break;
            case QXmlStreamReader::EndElement:
                return all;
            case QXmlStreamReader::Comment:
            case QXmlStreamReader::ProcessingInstruction:
                break;
            default:
                return std::nullopt;
            }
        }
    }

    bool isRestEmpty() {
        while (!mXml.atEnd())
            mXml.readNext();
        return !mXml.hasError();
    }

    /// The value whose start element was just read. @param depth  containers around it.
    std::optional<QVariant> value(int depth) {
        if (++mNodes > kPropertyListMaxNodes)
            return std::nullopt;
        const QStringView name = mXml.name();
        if (name == u"dict")
            return dictionary(depth + 1);
        if (name == u"array")
            return array(depth + 1);
        if (name == u"true" || name == u"false")
            return truth(name == u"true");
        return scalar(name.toString());
    }

    std::optional<QVariant> scalar(const QString& name) {
        const std::optional<QString> content = text();
        if (!content)
            return std::nullopt;
        if (name == u"string")
            return *content;
        if (name == u"integer")
            return integerFrom(*content);
        if (name == u"real")
            return realFrom(*content);
        if (name == u"data")
            return bytesFrom(*content);
        if (name == u"date")
            return dateFrom(*content);
        return std::nullopt;
    }

    std::optional<QVariant> truth(bool is) {
        if (nextChild() != Child::End)
            return std::nullopt;
        return is;
    }

    std::optional<QVariant> array(int depth) {
        if (depth > kPropertyListMaxDepth)
            return std::nullopt;
        QVariantList list;
        Child child = nextChild();
        for (; child == Child::Element; child = nextChild()) {
            std::optional<QVariant> element = value(depth);
            if (!element)
                return std::nullopt;
            list.append(*std::move(element));
        }
        return child == Child::End ? std::optional<QVariant>(list) : std::nullopt;
    }

    std::optional<QVariant> dictionary(int depth) {
        if (depth > kPropertyListMaxDepth)
            return std::nullopt;
        QVariantMap map;
        Child child = nextChild();
        for (; child == Child::Element; child = nextChild()) {
            if (mXml.name() != u"key")
                return std::nullopt;
            const std::optional<QString> key = text();
            if (!key || nextChild() != Child::Element)
                return std::nullopt;
            std::optional<QVariant> element = value(depth);
            if (!element)
                return std::nullopt;
            map.insert(*key, *std::move(element));
        }
        return child == Child::End ? std::optional<QVariant>(map) : std::nullopt;
    }

    QXmlStreamReader mXml;
    int mNodes = 0;
};

bool isXmlCharacter(QStringView text, qsizetype at) {
    const QChar c = text.at(at);
    if (c.isHighSurrogate())
        return at + 1 < text.size() && text.at(at + 1).isLowSurrogate();
    if (c.isLowSurrogate())
        return at > 0 && text.at(at - 1).isHighSurrogate();
    if (c < u' ')
        return c == u'\t' || c == u'\n' || c == u'\r';
    return c != QChar(0xFFFE) && c != QChar(0xFFFF);
}

QString xmlText(const QString& text) {
    QString result = text;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!isXmlCharacter(text, i))
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}

/// Brings values into the types of a list, and counts them against the limits on the way.
class Normaliser {
public:
    std::optional<QVariant> value(const QVariant& value, int depth) {
        if (++mNodes > kPropertyListMaxNodes)
            return std::nullopt;
        switch (value.typeId()) {
        case QMetaType::QVariantMap:
            return dictionary(value.toMap(), depth + 1);
        case QMetaType::QVariantList:
        case QMetaType::QStringList:
            return array(value.toList(), depth + 1);
        case QMetaType::QString:
            return xmlText(value.toString());
        case QMetaType::Bool:
        case QMetaType::QByteArray:
            return value;
        case QMetaType::QDateTime:
            return date(value.toDateTime());
        default:
            return number(value);
        }
    }

    std::optional<QVariant> dictionary(const QVariantMap& map, int depth) {
        if (depth > kPropertyListMaxDepth)
            return std::nullopt;
        QVariantMap result;
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            std::optional<QVariant> element = value(it.value(), depth);
            if (!element)
                return std::nullopt;
            result.insert(xmlText(it.key()), *std::move(element));
        }
        return result;
    }

private:
    std::optional<QVariant> array(const QVariantList& list, int depth) {
        if (depth > kPropertyListMaxDepth)
            return std::nullopt;
        QVariantList result;
        for (const QVariant& item : list) {
            std::optional<QVariant> element = value(item, depth);
            if (!element)
                return std::nullopt;
            result.append(*std::move(element));
        }
        return result;
    }

    static std::optional<QVariant> date(const QDateTime& date) {
        const QDateTime utc = date.toUTC();
        if (!utc.isValid() || utc.date().year() < 1 || utc.date().year() > 9999)
            return std::nullopt;
        return utc;
    }

    static std::optional<QVariant> number(const QVariant& value) {
        switch (value.typeId()) {
        case QMetaType::Double:
        case QMetaType::Float:
            return value.toDouble();
        case QMetaType::ULongLong:
        case QMetaType::ULong:
            return unsignedNumber(value.toULongLong());
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::LongLong:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Char:
        case QMetaType::SChar:
        case QMetaType::UChar:
            return value.toLongLong();
        default:
            return std::nullopt;
        }
    }

    static QVariant unsignedNumber(qulonglong number) {
        if (number <= static_cast<qulonglong>(std::numeric_limits<qlonglong>::max()))
            return static_cast<qlonglong>(number);
        return number;
    }

    int mNodes = 0;
};

QString realText(double number) {
    if (std::isnan(number))
        return QStringLiteral("nan");
    if (std::isinf(number))
        return number > 0 ? QStringLiteral("+infinity") : QStringLiteral("-infinity");
    return QString::number(number, 'g', std::numeric_limits<double>::max_digits10);
}

/// Writes values that are already in the types of a list.
class Writer {
public:
    QByteArray document(const QVariantMap& map) {
        mOut = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                              "<plist version=\"1.0\">\n");
        dictionary(map, 0);
        mOut += u"</plist>\n";
        return mOut.toUtf8();
    }

private:
    void value(const QVariant& value, int level) {
        switch (value.typeId()) {
        case QMetaType::QVariantMap:
            return dictionary(value.toMap(), level);
        case QMetaType::QVariantList:
            return array(value.toList(), level);
        case QMetaType::Bool:
            return line(level,
                        value.toBool() ? QStringLiteral("<true/>") : QStringLiteral("<false/>"));
        case QMetaType::QByteArray:
            return element(level, u"data", QString::fromLatin1(value.toByteArray().toBase64()));
        case QMetaType::QDateTime:
            return element(level, u"date", dateText(value.toDateTime()));
        case QMetaType::Double:
            return element(level, u"real", realText(value.toDouble()));
        case QMetaType::QString:
            return element(level, u"string", value.toString());
        default:
            return element(level, u"integer", value.toString());
        }
    }

    void dictionary(const QVariantMap& map, int level) {
        line(level, QStringLiteral("<dict>"));
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            element(level + 1, u"key", it.key());
            value(it.value(), level + 1);
        }
        line(level, QStringLiteral("</dict>"));
    }

    void array(const QVariantList& list, int level) {
        line(level, QStringLiteral("<array>"));
        for (const QVariant& item : list)
            value(item, level + 1);
        line(level, QStringLiteral("</array>"));
    }

    static QString dateText(const QDateTime& date) {
        const bool fraction = date.time().msec() != 0;
        return date.toString(fraction ? Qt::ISODateWithMs : Qt::ISODate);
    }

    /// A carriage return is written as a reference: XML readers turn a bare one into a line feed.
    static QString escaped(const QString& text) {
        QString result = text.toHtmlEscaped();
        return result.replace(u'\r', QStringLiteral("&#13;"));
    }

    void element(int level, QStringView name, const QString& text) {
        line(level, QStringLiteral("<%1>%2</%1>").arg(name, escaped(text)));
    }

    void line(int level, const QString& text) {
        mOut += QString(level, u'\t');
        mOut += text;
        mOut += u'\n';
    }

    QString mOut;
};

} // namespace

std::optional<QVariant> propertyListFromXml(const QByteArray& xml) {
    if (xml.size() > kPropertyListMaxBytes)
        return std::nullopt;
    const std::optional<QString> text = decoded(xml);
    if (!text || !isTame(*text))
        return std::nullopt;
    return Reader(*text).document();
}

QByteArray propertyListToXml(const QVariantMap& list) {
    const std::optional<QVariant> value = propertyListValue(list);
    if (!value)
        return {};
    QByteArray xml = Writer().document(value->toMap());
    return xml.size() <= kPropertyListMaxBytes ? xml : QByteArray();
}

std::optional<QVariant> propertyListValue(const QVariant& value) {
    return Normaliser().value(value, 0);
}

} // namespace labelcut
