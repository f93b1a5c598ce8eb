// Fuzzing: string formats with arguments of every kind, against the C library where that is
// defined, and the diagnostics built on them.
#include <QStringList>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/toolkit/system_log.h"
#include "platform/toolkit/text_encoding.h"
#include "plugins/cut_options/diagnostics/pde_log.h"
#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/memory_file.h"
#include "tools/fuzzing/support/property.h"

using namespace labelcut;
using fuzz::Bytes;
using fuzz::require;

namespace {

class Lines : public SystemLogSink {
public:
    Lines() { setSystemLogSink(this); }
    ~Lines() override { setSystemLogSink(nullptr); }
    void write(const QString& line) override { all.append(line); }

    QStringList all;
};

double realOf(std::uint64_t bits) {
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

/// One argument, and the units of text that it may add to a format.
struct Argument {
    FormatArgument value;
    qsizetype size = 0;
    bool isUtf16 = true;
};

Argument textArgument(const QString& text) {
    return {text, text.size(), text.isValidUtf16()};
}

Argument argumentFrom(Bytes& bytes) {
    switch (bytes.below(10)) {
    case 0:
        return {static_cast<int>(bytes.word())};
    case 1:
        return {static_cast<unsigned>(bytes.word())};
    case 2:
        return {static_cast<long long>(bytes.word())};
    case 3:
        return {static_cast<unsigned long long>(bytes.word())};
    case 4:
        return {realOf(bytes.word())};
    case 5:
        return {reinterpret_cast<const void*>(static_cast<std::uintptr_t>(bytes.word()))};
    case 6:
        return {nullptr};
    case 7: {
        const QByteArray text = bytes.text();
        return {text.constData(), text.size()};
    }
    case 8: {
        const QString text = bytes.string();
        return {QVariant(text), text.size(), text.isValidUtf16()};
    }
    default:
        return textArgument(bytes.string());
    }
}

QString withoutPercent(QString text) {
    return text.remove(u'%');
}

std::vector<FormatArgument> valuesOf(const std::vector<Argument>& arguments) {
    std::vector<FormatArgument> values;
    values.reserve(arguments.size());
    for (const Argument& argument : arguments)
        values.push_back(argument.value);
    return values;
}

void checkAnyFormat(const QString& format, const std::vector<Argument>& arguments) {
    const std::vector<FormatArgument> values = valuesOf(arguments);
    qsizetype longest = 0;
    bool isUtf16 = format.isValidUtf16();
    for (const Argument& argument : arguments) {
        longest = std::max(longest, argument.size);
        isUtf16 = isUtf16 && argument.isUtf16;
    }
    const QString text = formatArguments(format, values);
    // A real number has up to 309 digits before the point and a sign; a percent sign and a
    // conversion make one field.
    const qsizetype field = std::max<qsizetype>(longest, kMaxFieldWidth) + kMaxFieldWidth + 400;
    require(text.size() <= format.size() + (format.size() / 2) * field, "a text stays bounded");
    require(!isUtf16 || text.isValidUtf16(), "of whole characters come whole characters");
    require(formatArguments(format, values) == text, "the same gives the same");

    const QString bare = formatArguments(format, {});
    require(withoutPercent(bare) == withoutPercent(format),
            "without arguments a format is printed as it is written");
    if (!format.contains(u'%'))
        require(text == format, "a format without directives is the text");
}

/// A directive whose meaning C defines, written for the toolkit and for the C library.
struct DefinedDirective {
    QString ours;
    QByteArray theirs;
    char conversion = 'd';
};

DefinedDirective directiveFrom(Bytes& bytes, const char* conversions, const char* flags,
                               const char* theirLength) {
    DefinedDirective d;
    d.conversion = conversions[bytes.below(static_cast<int>(std::strlen(conversions)))];
    QByteArray head = "%";
    for (const char* flag = flags; *flag; ++flag)
        if (bytes.flag())
            head += *flag;
    if (bytes.flag())
        head += QByteArray::number(1 + bytes.below(80));
    if (bytes.flag())
        head += '.' + QByteArray::number(bytes.below(60));
    d.ours = QString::fromLatin1(head) + QLatin1Char(d.conversion);
    d.theirs = head + theirLength + d.conversion;
    return d;
}

template<typename Value>
void checkAgainstC(const DefinedDirective& d, Value value) {
    std::array<char, 1024> expected{};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::snprintf(expected.data(), expected.size(), d.theirs.constData(), value);
#pragma GCC diagnostic pop
    const QString text = stringWithFormat(d.ours, value);
    if (text != QLatin1String(expected.data()))
        std::fprintf(stderr, "%s gives \"%s\", not \"%s\"\n", d.theirs.constData(),
                     qPrintable(text), expected.data());
    require(text == QLatin1String(expected.data()), "numbers look as the C library prints them");
}

void checkDefined(Bytes& bytes) {
    switch (bytes.below(6)) {
    case 0:
        return checkAgainstC(directiveFrom(bytes, "di", "-+ 0", ""),
                             static_cast<int>(bytes.word()));
    case 1:
        return checkAgainstC(directiveFrom(bytes, "di", "-+ 0", "ll"),
                             static_cast<long long>(bytes.word()));
    case 2:
        return checkAgainstC(directiveFrom(bytes, "u", "-0", ""),
                             static_cast<unsigned>(bytes.word()));
    case 3:
        return checkAgainstC(directiveFrom(bytes, "oxX", "-#0", "ll"),
                             static_cast<unsigned long long>(bytes.word()));
    case 4:
        return checkAgainstC(directiveFrom(bytes, "fFeEgG", "-+ #0", ""), realOf(bytes.word()));
    default:
        // Sixteenths print alike in every C library: nothing is rounded.
        return checkAgainstC(directiveFrom(bytes, "feg", "-+ #0", ""),
                             static_cast<double>(static_cast<int>(bytes.word())) / 16);
    }
}

void checkTaggedLines(const QString& format, const std::vector<Argument>& arguments) {
    const std::vector<FormatArgument> values = valuesOf(arguments);
    const FormatArgument object = values.empty() ? FormatArgument(nullptr) : values.front();
    Lines lines;
    PDEPrologArguments(object, format, values);
    PDEEpilogArguments(object, format, values);
    PDELogArguments(object, format, values);
    require(lines.all.size() == 3, "every call logs one line");
    require(lines.all[0].startsWith(u"BEGIN ") && lines.all[1].startsWith(u"END ") &&
                lines.all[2].startsWith(u"LOG "),
            "a line begins with its tag");
}

void checkDescriptor(const QString& format, const std::vector<Argument>& arguments) {
    const std::vector<FormatArgument> values = valuesOf(arguments);
    static fuzz::MemoryFile file;
    file.set({});
    debugLogFdArguments(0, file.descriptor(), format, values);
    require(file.contents() == encodeLossyUtf8(formatArguments(format, values)) + '\n',
            "a debug message is the formatted text and a line end");
    debugLogFdArguments(1, file.descriptor(), format, values);
    require(file.contents().count('\n') == 1 + formatArguments(format, values).count(u'\n'),
            "above level 0 nothing is written");
}

void checkMemory(const QByteArray& memory) {
    // Of exactly that size on the heap, so that a byte read too many is noticed.
    const std::vector<char> exact(memory.begin(), memory.end());
    static fuzz::MemoryFile file;
    file.set({});
    memoryCheckFd(0, file.descriptor(), exact.data(), static_cast<std::int32_t>(exact.size()));
    QByteArray expected;
    for (qsizetype at = 0; at < memory.size(); at += 16)
        expected += memory.mid(at, 16).toHex() + '\n';
    require(exact.empty() || file.contents() == expected, "a dump shows every byte once");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    if (bytes.flag()) {
        checkDefined(bytes);
        return 0;
    }
    const QString format = bytes.flag() ? QString::fromUtf8(bytes.head()) : bytes.string();
    std::vector<Argument> arguments;
    for (int i = bytes.below(6); i > 0; --i)
        arguments.push_back(argumentFrom(bytes));
    checkAnyFormat(format, arguments);
    checkTaggedLines(format, arguments);
    checkDescriptor(format, arguments);
    checkMemory(bytes.rest());
    return 0;
}
