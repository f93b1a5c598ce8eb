#include "platform/toolkit/string_format.h"

#include <gmock/gmock.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

using labelcut::FormatArgument;
using labelcut::kMaxFieldWidth;
using labelcut::stringWithFormat;

namespace {

struct Label {
    QString description() const { return QStringLiteral("a label"); }
};

std::string format(const char* text, const std::vector<FormatArgument>& arguments = {}) {
    return labelcut::formatArguments(QString::fromUtf8(text), arguments).toStdString();
}

/// What the C library prints; the reference for all that C defines.
template<typename T>
std::string c(const char* text, T value) {
    char buffer[2048];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
    std::snprintf(buffer, sizeof buffer, text, value);
#pragma GCC diagnostic pop
    return buffer;
}

TEST(StringFormat, PrintsAnObjectsDescription) {
    const Label label;
    EXPECT_EQ(stringWithFormat("%@", label), QStringLiteral("a label"));
    EXPECT_EQ(stringWithFormat("%@", &label), QStringLiteral("a label"));
    EXPECT_EQ(stringWithFormat("<%@>", QStringLiteral("text")), QStringLiteral("<text>"));
    EXPECT_EQ(stringWithFormat("%@ %@ %@", 5, 1.5, "c"), QStringLiteral("5 1.5 c"));
}

TEST(StringFormat, PrintsNothingAsNull) {
    EXPECT_EQ(stringWithFormat("%@ %s", nullptr, static_cast<const char*>(nullptr)),
              QStringLiteral("(null) (null)"));
    EXPECT_EQ(stringWithFormat("%@", std::optional<QString>()), QStringLiteral("(null)"));
    EXPECT_EQ(stringWithFormat("%@", static_cast<const Label*>(nullptr)), QStringLiteral("(null)"));
    EXPECT_EQ(stringWithFormat("%@", QVariant()), QStringLiteral("(null)"));
    EXPECT_EQ(stringWithFormat("%@", static_cast<const QObject*>(nullptr)),
              QStringLiteral("(null)"));
}

TEST(StringFormat, DescribesAnObjectByClassAddressAndName) {
    QObject object;
    object.setObjectName(QStringLiteral("field"));
    char expected[64];
    std::snprintf(expected, sizeof expected, "<QObject: %p field>", static_cast<void*>(&object));
    EXPECT_EQ(stringWithFormat("%@", &object).toStdString(), expected);
    EXPECT_EQ(stringWithFormat("%@", QVariant::fromValue(&object)).toStdString(), expected);
}

TEST(StringFormat, PrintsIntegersAsTheCLibraryDoes) {
    for (const char* flags : {"", "-", "+", " ", "0", "+0", "-+", "-0", "+ "}) {
        for (const char* field : {"", "1", "7", "12", ".0", ".3", "9.4", "12.7", "4.0"}) {
            for (const int value : {0, 1, -1, 42, -12345, INT_MAX, INT_MIN}) {
                const std::string d = std::string("[%") + flags + field + "d]";
                ASSERT_EQ(format(d.c_str(), {value}), c(d.c_str(), value)) << d << ' ' << value;
            }
        }
    }
}

TEST(StringFormat, PrintsUnsignedIntegersAsTheCLibraryDoes) {
    for (const char* flags : {"", "-", "#", "0", "#0", "-#", "-0", "-#0"}) {
        for (const char* field : {"", "7", "12", ".0", ".3", "9.4", "5.0"}) {
            for (const char* conversion : {"u", "x", "X", "o"}) {
                const std::string d = std::string("[%") + flags + field + conversion + "]";
                if (std::string(flags).find('#') != std::string::npos && *conversion == 'u')
                    continue; // undefined in C
                for (const unsigned value : {0u, 1u, 255u, UINT_MAX})
                    ASSERT_EQ(format(d.c_str(), {value}), c(d.c_str(), value)) << d << ' ' << value;
            }
        }
    }
}

TEST(StringFormat, PrintsRealNumbersAsTheCLibraryDoes) {
    for (const char* flags : {"", "-", "+", " ", "0", "+0", "-+"}) {
        for (const char* field : {"", "3", "14", ".0", ".2", "14.3", ".20"}) {
            for (const char* conversion : {"f", "e", "E", "g", "G"}) {
                const std::string d = std::string("[%") + flags + field + conversion + "]";
                for (const double value : {0.0, -0.0, 1.5, -2.25, 1e10, 123456789.0, 1e-7,
                                           double(INFINITY), -double(INFINITY)})
                    ASSERT_EQ(format(d.c_str(), {value}), c(d.c_str(), value)) << d << ' ' << value;
            }
        }
    }
}

TEST(StringFormat, PutsNoZeroBehindThePointThatItsFlagKeeps) {
    for (const char* flags : {"#", "#0", "-#", "+#0", " #"}) {
        for (const char* field : {"", "9", ".0", ".1", ".2", ".3", "12.1", "12.3"}) {
            for (const char* conversion : {"g", "G"}) {
                const std::string d = std::string("[%") + flags + field + conversion + "]";
                for (const double value : {0.0, -0.0, 0.5, 5.0, 23.0, -308.0, 123456.0, 1e10, 1e-7,
                                           double(INFINITY), double(NAN)})
                    ASSERT_EQ(format(d.c_str(), {value}), c(d.c_str(), value)) << d << ' ' << value;
            }
        }
    }
}

TEST(StringFormat, CutsIntegersToTheLengthNamed) {
    EXPECT_EQ(format("%hhx", {-1}), "ff");
    EXPECT_EQ(format("%hhd", {300}), "44");
    EXPECT_EQ(format("%hd", {70000}), "4464");
    EXPECT_EQ(format("%x", {-1}), "ffffffff");
    EXPECT_EQ(format("%lx", {-1L}), "ffffffffffffffff");
    EXPECT_EQ(format("%lx", {-1}), "ffffffffffffffff");
    EXPECT_EQ(format("%lld %qd %zd %jd %td %Ld", {1LL, 2LL, 3LL, 4LL, 5LL, 6LL}), "1 2 3 4 5 6");
    EXPECT_EQ(format("%llu", {ULLONG_MAX}), "18446744073709551615");
}

TEST(StringFormat, ShowsAWideIntegerWholeWithoutALength) {
    EXPECT_EQ(format("%d", {5000000000LL}), "5000000000");
    EXPECT_EQ(format("%u", {-1LL}), "18446744073709551615");
}

TEST(StringFormat, PrintsTextsCharactersAndPointers) {
    EXPECT_EQ(format("[%s] [%5s] [%-5s] [%.2s]", {"abc", "abc", "abc", "abc"}),
              "[abc] [  abc] [abc  ] [ab]");
    EXPECT_EQ(format("%c%c%C", {'a', 0x1F3F7, 0xE9}), "a🏷é");
    EXPECT_EQ(format("%c", {0}), std::string(1, '\0'));
    EXPECT_EQ(format("%p", {static_cast<const void*>(nullptr)}), "0x0");
    EXPECT_EQ(format("%p", {reinterpret_cast<const void*>(0x1234)}), "0x1234");
    EXPECT_EQ(format("100%%"), "100%");
}

TEST(StringFormat, TakesWidthAndPrecisionFromArguments) {
    EXPECT_EQ(format("[%*d]", {5, 42}), "[   42]");
    EXPECT_EQ(format("[%*d]", {-5, 42}), "[42   ]");
    EXPECT_EQ(format("[%.*f]", {1, 2.25}), "[2.2]");
    EXPECT_EQ(format("[%.*s]", {-1, "whole"}), "[whole]");
    EXPECT_EQ(format("[%*.*s]", {6, 2, "abc"}), "[    ab]");
    EXPECT_EQ(format("[%*d]", {INT_MIN, 1}).size(), static_cast<size_t>(kMaxFieldWidth) + 2);
}

TEST(StringFormat, TakesArgumentsByPosition) {
    EXPECT_EQ(format("%2$@ %1$@", {"a", "b"}), "b a");
    EXPECT_EQ(format("%2$@ %d", {7, "b"}), "b 7");
    EXPECT_EQ(format("%3$@ %0$@", {"a", "b"}), "%3$@ %0$@");
}

TEST(StringFormat, PrintsADirectiveWithoutAnArgumentAsWritten) {
    EXPECT_EQ(format("%@"), "%@");
    EXPECT_EQ(format("%d of %d", {1}), "1 of %d");
    EXPECT_EQ(format("%-5.2f|"), "%-5.2f|");
    EXPECT_EQ(format("%*d", {5}), "%*d");
    EXPECT_EQ(format("%*d"), "%*d");
}

TEST(StringFormat, PrintsAnUnknownDirectiveAsWrittenAndTakesNothingForIt) {
    EXPECT_EQ(format("%y %d", {1}), "%y 1");
    EXPECT_EQ(format("%n %d", {1}), "%n 1");
    EXPECT_EQ(format("%*y %d", {1, 2}), "%*y 1");
    EXPECT_EQ(format("%\n"), "%\n");
    EXPECT_EQ(format("%é", {1}), "%é");
}

TEST(StringFormat, PrintsAnUnfinishedDirectiveAsWritten) {
    for (const char* text : {"%", "a%", "%5", "%-", "%5.", "%.3", "%ll", "%1$", "%*", "%-+ #0'"})
        EXPECT_EQ(format(text, {1, 2}), text);
}

TEST(StringFormat, WritesNothingThroughAPointerForN) {
    int untouched = 7;
    EXPECT_EQ(format("abc%n", {&untouched}), "abc%n");
    EXPECT_EQ(untouched, 7);
}

TEST(StringFormat, LimitsHugeWidthsAndPrecisions) {
    EXPECT_EQ(format("%99999999999999999999d", {1}).size(), static_cast<size_t>(kMaxFieldWidth));
    EXPECT_EQ(format("%.99999999999f", {0.0}).size(), static_cast<size_t>(kMaxFieldWidth) + 2);
    EXPECT_EQ(format("%2147483648$@", {1}), "%2147483648$@");
}

TEST(StringFormat, LetsNumbersBecomeEachOther) {
    EXPECT_EQ(format("%d", {2.9}), "2");
    EXPECT_EQ(format("%d", {-2.9}), "-2");
    EXPECT_EQ(format("%d", {1e300}), "9223372036854775807");
    EXPECT_EQ(format("%d", {-1e300}), "-9223372036854775808");
    EXPECT_EQ(format("%d", {std::nan("")}), "0");
    EXPECT_EQ(format("%.1f", {3}), "3.0");
    EXPECT_EQ(format("%s", {3}), "3");
}

TEST(StringFormat, DescribesAnArgumentOfTheWrongKind) {
    EXPECT_EQ(format("[%5d] [%x] [%f] [%c]", {"abc", "abc", "abc", "abc"}),
              "[  abc] [abc] [abc] [abc]");
    EXPECT_EQ(format("%p", {"text"}), "text");
    EXPECT_EQ(format("%d", {reinterpret_cast<const void*>(0x10)}), "0x10");
}

TEST(StringFormat, ReplacesCodesThatAreNoCharacters) {
    EXPECT_EQ(format("%c%c%c", {-1, 0xD800, 0x110000}), "\uFFFD\uFFFD\uFFFD");
}

TEST(StringFormat, ReplacesMalformedBytesOfCStrings) {
    EXPECT_EQ(format("%s", {"a\xFF"}), "a\uFFFD");
}

TEST(StringFormat, NeverCutsASurrogatePair) {
    const QString label = QString::fromUtf8("🏷");
    EXPECT_EQ(stringWithFormat("%.1s|", label), QStringLiteral("|"));
    EXPECT_EQ(stringWithFormat("%.2s|", label), label + u'|');
}

TEST(StringFormat, KeepsLoneSurrogatesAndZerosOfTheFormat) {
    const QString odd = QString(QChar(0xD800)) + QChar(0) + QStringLiteral("%") + QChar(0xDC00);
    EXPECT_EQ(labelcut::formatArguments(odd, {}), odd);
}

TEST(StringFormat, IgnoresArgumentsLeftOverAndQuotes) {
    EXPECT_EQ(format("x", {1, 2, 3}), "x");
    EXPECT_EQ(format("%'d", {1234567}), "1234567");
}

TEST(StringFormat, ReadsVariants) {
    EXPECT_EQ(stringWithFormat("%d", QVariant(7)), QStringLiteral("7"));
    EXPECT_EQ(stringWithFormat("%u", QVariant(-1)), QStringLiteral("4294967295"));
    EXPECT_EQ(stringWithFormat("%u", QVariant(4294967295U)), QStringLiteral("4294967295"));
    EXPECT_EQ(stringWithFormat("%lld", QVariant(qlonglong{-9007199254740993})),
              QStringLiteral("-9007199254740993"));
    EXPECT_EQ(stringWithFormat("%llu", QVariant(qulonglong{18446744073709551615U})),
              QStringLiteral("18446744073709551615"));
    EXPECT_EQ(stringWithFormat("%.1f", QVariant(0.5)), QStringLiteral("0.5"));
    EXPECT_EQ(stringWithFormat("%@", QVariant(QStringLiteral("t"))), QStringLiteral("t"));
}

/// Random formats out of the characters that matter, random arguments: nothing crashes, throws or
/// grows beyond its bound, and a format without a percent sign comes back unchanged.
TEST(StringFormat, StandsUpToAnyFormat) {
    std::mt19937 random(20240229);
    const QString alphabet =
        QStringLiteral("%%%%@diouxXfFeEgGaAcCsSpn*$.0123456789-+ #'hlqLztj\nä");
    int a = 0;
    QObject object;
    const std::vector<FormatArgument> pool = {1,       -1,         LLONG_MIN, 1e300,   std::nan(""),
                                              "s\xFF", nullptr,    &a,        &object, 0.1,
                                              'c',     ULLONG_MAX, INT_MIN,   true};
    const auto below = [&](std::size_t limit) { return static_cast<qsizetype>(random() % limit); };
    for (int round = 0; round < 20000; ++round) {
        QString text;
        for (auto length = below(24); length > 0; --length)
            text += alphabet[below(static_cast<std::size_t>(alphabet.size()))];
        std::vector<FormatArgument> arguments;
        for (auto count = below(5); count > 0; --count)
            arguments.push_back(pool[static_cast<std::size_t>(below(pool.size()))]);
        QString shown;
        ASSERT_NO_THROW(shown = labelcut::formatArguments(text, arguments)) << text.toStdString();
        ASSERT_LE(shown.size(), (text.size() + 1) * (kMaxFieldWidth + 400)) << text.toStdString();
        if (!text.contains(u'%')) {
            ASSERT_EQ(shown, text);
        }
    }
    EXPECT_EQ(a, 0);
}

} // namespace
