// Toolkit: string formats, "%@" and the C conversions over a typed argument list.
#include "platform/toolkit/string_format.h"

#include <QLocale>
#include <QObject>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include <fmt/printf.h>

namespace labelcut {

namespace {

/// A directive as it was read, before its arguments are looked at.
struct Directive {
    std::optional<std::size_t> position; ///< of "n$", counted from 0
    QString flags;
    std::optional<int> width;
    bool widthFromArgument = false;
    std::optional<int> precision;
    bool precisionFromArgument = false;
    QString length;
    char16_t conversion = 0;

    bool has(char16_t flag) const { return flags.contains(QChar(flag)); }
};

template<class... Ts>
struct Overloaded : Ts... {
    using Ts::operator()...;
};
template<class... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

bool isOneOf(char16_t c, QStringView set) {
    return set.contains(QChar(c));
}

/// Reads directives from a format.
class Scanner {
public:
    explicit Scanner(QStringView format)
        : mFormat(format) {}

    bool atEnd() const { return mAt >= mFormat.size(); }
    qsizetype at() const { return mAt; }
    char16_t peek() const { return atEnd() ? u'\0' : mFormat[mAt].unicode(); }
    char16_t next() { return mFormat[mAt++].unicode(); }

    /// Reads what follows a percent sign. Nothing when that is no directive.
    std::optional<Directive> directive() {
        Directive d;
        readPosition(d);
        while (!atEnd() && isOneOf(peek(), u"-+ #0'"))
            d.flags += QChar(next());
        d.widthFromArgument = take(u'*');
        if (!d.widthFromArgument)
            d.width = number();
        if (take(u'.')) {
            d.precisionFromArgument = take(u'*');
            if (!d.precisionFromArgument)
                d.precision = number().value_or(0);
        }
        while (!atEnd() && isOneOf(peek(), u"hlqLztj"))
            d.length += QChar(next());
        if (atEnd())
            return std::nullopt;
        d.conversion = next();
        return d;
    }

private:
    bool take(char16_t c) {
        if (atEnd() || peek() != c)
            return false;
        ++mAt;
        return true;
    }

    /// Decimal digits, ending at kMaxFieldWidth; nothing without a digit.
    std::optional<int> number() {
        std::optional<int> value;
        while (peek() >= u'0' && peek() <= u'9')
            value = std::min(value.value_or(0) * 10 + (next() - u'0'), kMaxFieldWidth);
        return value;
    }

    void readPosition(Directive& d) {
        const qsizetype start = mAt;
        const std::optional<int> position = number();
        if (position.value_or(0) > 0 && take(u'$'))
            d.position = static_cast<std::size_t>(*position - 1);
        else
            mAt = start;
    }

    QStringView mFormat;
    qsizetype mAt = 0;
};

/// Hands out the arguments in order.
class Arguments {
public:
    explicit Arguments(std::span<const FormatArgument> all)
        : mAll(all) {}

    const FormatArgument* next() { return mNext < mAll.size() ? &mAll[mNext++] : nullptr; }
    const FormatArgument* at(std::size_t index) const {
        return index < mAll.size() ? &mAll[index] : nullptr;
    }
    std::size_t mark() const { return mNext; }
    void rewind(std::size_t mark) { mNext = mark; }

private:
    std::span<const FormatArgument> mAll;
    std::size_t mNext = 0;
};

std::optional<long long> saturated(double value) {
    if (std::isnan(value))
        return 0;
    if (value >= 9223372036854775808.0)
        return std::numeric_limits<long long>::max();
    if (value <= -9223372036854775808.0)
        return std::numeric_limits<long long>::min();
    return static_cast<long long>(value);
}

/// The argument as an integer of 64 bits; nothing for pointers, texts and objects.
std::optional<long long> integerOf(const FormatArgument& argument) {
    return std::visit(Overloaded{
                          [](double value) { return saturated(value); },
                          [](const void*) { return std::optional<long long>(); },
                          [](const std::optional<QString>&) { return std::optional<long long>(); },
                          [](auto value) { return std::optional(static_cast<long long>(value)); },
                      },
                      argument.value());
}

std::optional<double> realOf(const FormatArgument& argument) {
    return std::visit(Overloaded{
                          [](const void*) { return std::optional<double>(); },
                          [](const std::optional<QString>&) { return std::optional<double>(); },
                          [](auto value) { return std::optional(static_cast<double>(value)); },
                      },
                      argument.value());
}

/// "%" and what fmt needs of the directive. Flags that mean nothing for the conversion are left
/// out: C leaves some of those undefined.
std::string fmtDirective(const Directive& d, QStringView meaningfulFlags, char conversion) {
    std::string text = "%";
    for (const char16_t flag : {u'-', u'+', u' ', u'#', u'0'}) {
        if (d.has(flag) && isOneOf(flag, meaningfulFlags))
            text += static_cast<char>(flag);
    }
    if (d.width)
        text += std::to_string(*d.width);
    if (d.precision)
        text += '.' + std::to_string(*d.precision);
    return text + conversion;
}

template<typename T>
QString printed(const std::string& directive, T value) {
    return QString::fromStdString(fmt::sprintf(directive, value));
}

/// A text in its field.
QString padded(const Directive& d, const QString& text) {
    QString shown = text;
    if (d.precision && *d.precision < shown.size()) {
        qsizetype end = *d.precision;
        if (end > 0 && shown[end - 1].isHighSurrogate() && shown[end].isLowSurrogate())
            --end;
        shown.truncate(end);
    }
    const int width = d.width.value_or(0);
    return d.has(u'-') ? shown.leftJustified(width) : shown.rightJustified(width);
}

QString described(const Directive& d, const FormatArgument& argument) {
    return padded(d, argument.description().value_or(QStringLiteral("(null)")));
}

/// A field of nothing but `prefix`: zero printed with a precision of zero has no digits.
QString withoutDigits(Directive d, const QString& prefix) {
    d.precision.reset();
    return padded(d, prefix);
}

/// Calls `print` with `value` cut to the length that the directive names; without one, as it is.
template<typename Value, typename Print>
QString cut(const QString& length, Value value, Print print) {
    if (length == u"hh")
        return print(static_cast<signed char>(value));
    if (length == u"h")
        return print(static_cast<short>(value));
    if (!length.isEmpty())
        return print(static_cast<long long>(value));
    return print(value);
}

QString signedInteger(const Directive& d, const FormatArgument& argument) {
    const std::string spec = fmtDirective(d, u"-+ 0", 'd');
    const QString sign = d.has(u'+') ? QStringLiteral("+") : QString(d.has(u' '), u' ');
    const auto print = [&](auto value) {
        return value == 0 && d.precision == 0 ? withoutDigits(d, sign) : printed(spec, value);
    };
    return std::visit(Overloaded{
                          [&](double value) { return cut(d.length, *saturated(value), print); },
                          [&](const void*) { return described(d, argument); },
                          [&](const std::optional<QString>&) { return described(d, argument); },
                          [&](auto value) { return cut(d.length, value, print); },
                      },
                      argument.value());
}

QString unsignedInteger(const Directive& d, const FormatArgument& argument, char conversion) {
    const std::string spec = fmtDirective(d, u"-#0", conversion);
    const QString prefix(conversion == 'o' && d.has(u'#'), u'0');
    const auto print = [&](auto value) {
        using Unsigned = std::make_unsigned_t<decltype(value)>;
        return value == 0 && d.precision == 0 ? withoutDigits(d, prefix)
                                              : printed(spec, static_cast<Unsigned>(value));
    };
    return std::visit(Overloaded{
                          [&](double value) { return cut(d.length, *saturated(value), print); },
                          [&](const void*) { return described(d, argument); },
                          [&](const std::optional<QString>&) { return described(d, argument); },
                          [&](auto value) { return cut(d.length, value, print); },
                      },
                      argument.value());
}

/// With "#" a text of as many digits as `%g` shows can end in the point; fmt puts a zero behind it.
QString withoutAddedZero(QString text, int shownDigits) {
    if (!text.endsWith(u".0"))
        return text;
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    const auto digits = std::ranges::count_if(QStringView(text).chopped(2), isDigit);
    if (digits >= shownDigits)
        text.chop(1);
    return text;
}

/// A number in its field, with zeros behind its sign when the flag asks for them.
QString paddedNumber(const Directive& d, QString text) {
    const qsizetype missing = d.width.value_or(0) - text.size();
    if (missing <= 0)
        return text;
    if (d.has(u'-'))
        return text + QString(missing, u' ');
    if (!d.has(u'0'))
        return QString(missing, u' ') + text;
    const bool isSigned = isOneOf(text.front().unicode(), u"-+ ");
    return text.insert(isSigned ? 1 : 0, QString(missing, u'0'));
}

QString realNumber(const Directive& d, const FormatArgument& argument, char conversion) {
    const std::optional<double> value = realOf(argument);
    if (!value)
        return described(d, argument);
    const bool isGeneral = conversion == 'g' || conversion == 'G';
    if (isGeneral && d.has(u'#') && std::isfinite(*value)) {
        constexpr int kDefaultPrecision = 6;
        Directive unpadded = d;
        unpadded.width.reset();
        const QString text = printed(fmtDirective(unpadded, u"+ #", conversion), *value);
        const int shownDigits = std::max(1, d.precision.value_or(kDefaultPrecision));
        return paddedNumber(d, withoutAddedZero(text, shownDigits));
    }
    const bool zeros = std::isfinite(*value) && !d.has(u'-');
    return printed(fmtDirective(d, zeros ? u"-+ #0" : u"-+ #", conversion), *value);
}

/// The character of a code; codes that are no characters become U+FFFD.
QString character(const Directive& d, const FormatArgument& argument) {
    const std::optional<long long> code = integerOf(argument);
    if (!code)
        return described(d, argument);
    const bool isCharacter =
        *code >= 0 && *code <= 0x10FFFF && !QChar::isSurrogate(static_cast<char32_t>(*code));
    const auto shown = isCharacter ? static_cast<char32_t>(*code) : U'\uFFFD';
    return padded(d, QString::fromUcs4(&shown, 1));
}

QString pointer(const Directive& d, const FormatArgument& argument) {
    const auto* address = std::get_if<const void*>(&argument.value());
    const std::optional<long long> number = integerOf(argument);
    if (!address && !number)
        return described(d, argument);
    const auto value =
        address ? reinterpret_cast<std::uintptr_t>(*address) : static_cast<std::uintptr_t>(*number);
    return padded(d, QStringLiteral("0x") + QString::number(value, 16));
}

/// Puts the argument into the directive. Nothing when there is no such conversion.
std::optional<QString> converted(const Directive& d, const FormatArgument& argument) {
    switch (d.conversion) {
    case u'@':
    case u's':
    case u'S':
        return described(d, argument);
    case u'd':
    case u'i':
    case u'D':
        return signedInteger(d, argument);
    case u'o':
    case u'O':
        return unsignedInteger(d, argument, 'o');
    case u'u':
    case u'U':
        return unsignedInteger(d, argument, 'u');
    case u'x':
    case u'X':
        return unsignedInteger(d, argument, static_cast<char>(d.conversion));
    case u'f':
    case u'F':
    case u'e':
    case u'E':
    case u'g':
    case u'G':
    case u'a':
    case u'A':
        return realNumber(d, argument, static_cast<char>(d.conversion));
    case u'c':
    case u'C':
        return character(d, argument);
    case u'p':
        return pointer(d, argument);
    default:
        return std::nullopt;
    }
}

/// Replaces "*" by an argument. False when that is missing or no integer.
bool takeStars(Directive& d, Arguments& arguments) {
    const auto limited = [](long long value) {
        return static_cast<int>(std::clamp<long long>(value, -kMaxFieldWidth, kMaxFieldWidth));
    };
    const auto take = [&]() -> std::optional<long long> {
        const FormatArgument* argument = arguments.next();
        return argument ? integerOf(*argument) : std::nullopt;
    };
    if (d.widthFromArgument) {
        const auto width = take();
        if (!width)
            return false;
        if (*width < 0)
            d.flags += u'-';
        d.width = std::abs(limited(*width));
    }
    if (d.precisionFromArgument) {
        const auto precision = take();
        if (!precision)
            return false;
        if (*precision >= 0)
            d.precision = limited(*precision);
    }
    return true;
}

/// The directive filled, or nothing when it must be printed as it is written.
std::optional<QString> filled(Directive d, Arguments& arguments) {
    if (!takeStars(d, arguments))
        return std::nullopt;
    const FormatArgument* argument = d.position ? arguments.at(*d.position) : arguments.next();
    return argument ? converted(d, *argument) : std::nullopt;
}

} // namespace

FormatArgument::FormatArgument(const char* text)
    : mValue(text ? std::optional(QString::fromLocal8Bit(text)) : std::nullopt) {}

FormatArgument::FormatArgument(const QObject* object) {
    if (!object) {
        mValue = std::optional<QString>();
        return;
    }
    const QString name = object->objectName().isEmpty() ? QString() : u' ' + object->objectName();
    const auto address = reinterpret_cast<std::uintptr_t>(object);
    mValue = std::optional(QStringLiteral("<") + QLatin1String(object->metaObject()->className()) +
                           QStringLiteral(": 0x") + QString::number(address, 16) + name +
                           QStringLiteral(">"));
}

FormatArgument::FormatArgument(const QVariant& value) {
    switch (value.metaType().id()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        mValue = std::optional<QString>();
        return;
    case QMetaType::Bool:
    case QMetaType::Int:
        mValue = value.toInt();
        return;
    case QMetaType::UInt:
        mValue = value.toUInt();
        return;
    case QMetaType::LongLong:
        mValue = value.toLongLong();
        return;
    case QMetaType::ULongLong:
        mValue = value.toULongLong();
        return;
    case QMetaType::Float:
    case QMetaType::Double:
        mValue = value.toDouble();
        return;
    default:
        break;
    }
    if (value.canConvert<QObject*>())
        mValue = FormatArgument(static_cast<const QObject*>(value.value<QObject*>())).mValue;
    else
        mValue = std::optional(value.toString());
}

std::optional<QString> FormatArgument::description() const {
    return std::visit(
        Overloaded{
            [](double value) {
                return std::optional(QString::number(value, 'g', QLocale::FloatingPointShortest));
            },
            [](const void* value) {
                return std::optional(QStringLiteral("0x") +
                                     QString::number(reinterpret_cast<std::uintptr_t>(value), 16));
            },
            [](const std::optional<QString>& text) { return text; },
            [](auto value) { return std::optional(QString::number(value)); },
        },
        mValue);
}

QString formatArguments(const QString& format, std::span<const FormatArgument> arguments) {
    QString text;
    Scanner scanner(format);
    Arguments rest(arguments);
    while (!scanner.atEnd()) {
        const qsizetype start = scanner.at();
        const char16_t c = scanner.next();
        if (c != u'%') {
            text += QChar(c);
            continue;
        }
        if (scanner.peek() == u'%') {
            scanner.next();
            text += u'%';
            continue;
        }
        const std::optional<Directive> directive = scanner.directive();
        const std::size_t mark = rest.mark();
        const std::optional<QString> shown = directive ? filled(*directive, rest) : std::nullopt;
        if (!shown)
            rest.rewind(mark);
        text += shown.value_or(format.mid(start, scanner.at() - start));
    }
    return text;
}

} // namespace labelcut
