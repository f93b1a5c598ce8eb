#include "platform/toolkit/text_encoding.h"

#include <gmock/gmock.h>

#include <QStringEncoder>

#include <algorithm>
#include <array>
#include <set>

using namespace labelcut;

namespace {

const QString kLoneSurrogate = QString(QChar(0xD800));
const QString kEmoji = QString::fromUtf8("\xF0\x9F\x8F\xB7"); // U+1F3F7, a label

TEST(TextEncoding, TakesTheLocalesEncodingWhichIsUtf8) {
    EXPECT_EQ(encodeText(QStringLiteral("é"), TextEncoding::SystemDefault), QByteArray("\xC3\xA9"));
    EXPECT_EQ(decodeText("\xC3\xA9", TextEncoding::SystemDefault), QStringLiteral("é"));
}

TEST(TextEncoding, MeasuresBytesNotCharacters) {
    EXPECT_EQ(encodedLength(QStringLiteral("ab"), TextEncoding::SystemDefault), 2);
    EXPECT_EQ(encodedLength(QStringLiteral("é"), TextEncoding::SystemDefault), 2);
    EXPECT_EQ(encodedLength(QStringLiteral("日"), TextEncoding::SystemDefault), 3);
    EXPECT_EQ(encodedLength(kEmoji, TextEncoding::SystemDefault), 4);
    EXPECT_EQ(encodedLength(QString(), TextEncoding::SystemDefault), 0);
    EXPECT_EQ(encodedLength(QStringLiteral("é"), TextEncoding::MacOSRoman), 1);
}

TEST(TextEncoding, GivesNothingForALoneSurrogate) {
    for (const auto encoding : {TextEncoding::Ascii, TextEncoding::Utf8, TextEncoding::MacOSRoman,
                                TextEncoding::SystemDefault}) {
        EXPECT_FALSE(canEncode(kLoneSurrogate, encoding));
        EXPECT_FALSE(encodeText(kLoneSurrogate, encoding));
    }
}

TEST(TextEncoding, AgreesWithQtsMacOSRomanOnEveryCharacterOfTheBasicPlane) {
    int convertible = 0;
    for (int code = 0; code < 0x10000; ++code) {
        if (QChar::isSurrogate(static_cast<char32_t>(code)))
            continue; // half a character, for which an encoder waits
        const QString text{QChar(code)};
        QStringEncoder encoder("macintosh");
        const QByteArray expected = encoder.encode(text);
        const bool expectedToFit = !encoder.hasError();
        ASSERT_EQ(canEncode(text, TextEncoding::MacOSRoman), expectedToFit) << code;
        if (!expectedToFit)
            continue;
        ++convertible;
        ASSERT_EQ(encodeText(text, TextEncoding::MacOSRoman), expected) << code;
    }
    EXPECT_GE(convertible, 256);
}

TEST(TextEncoding, EncodesAsciiOnlyBelow0x80) {
    EXPECT_TRUE(canEncode(QString(QChar(0x7F)), TextEncoding::Ascii));
    EXPECT_FALSE(canEncode(QString(QChar(0x80)), TextEncoding::Ascii));
    EXPECT_TRUE(canEncode(QString(QChar(0)), TextEncoding::Ascii));
}

TEST(TextEncoding, DecodesAsciiOnlyBelow0x80) {
    EXPECT_EQ(decodeText("KvHalfCut", TextEncoding::Ascii), QStringLiteral("KvHalfCut"));
    EXPECT_FALSE(decodeText("Kv\x80", TextEncoding::Ascii));
}

TEST(TextEncoding, RefusesMalformedUtf8) {
    const QByteArray malformed[] = {
        "\x80",             // continuation alone
        "a\xC3",            // cut short
        "\xC0\xAF",         // overlong
        "\xED\xA0\x80",     // surrogate
        "\xF4\x90\x80\x80", // above U+10FFFF
        "\xFF",
        "\xE6\x97",
    };
    for (const QByteArray& bytes : malformed)
        EXPECT_FALSE(decodeText(bytes, TextEncoding::Utf8)) << bytes.toHex().toStdString();
}

TEST(TextEncoding, DecodesEveryUtf8LengthAndKeepsZerosAndMarks) {
    EXPECT_EQ(decodeText("\xF0\x9F\x8F\xB7", TextEncoding::Utf8), kEmoji);
    EXPECT_EQ(decodeText(QByteArray("a\0b", 3), TextEncoding::Utf8)->size(), 3);
    EXPECT_EQ(decodeText("\xEF\xBB\xBFx", TextEncoding::Utf8), QStringLiteral("\uFEFFx"));
    const auto empty = decodeText("", TextEncoding::Utf8);
    ASSERT_TRUE(empty);
    EXPECT_FALSE(empty->isNull());
}

TEST(TextEncoding, DecodesNoTextFromANullCString) {
    EXPECT_FALSE(decodeCString(nullptr, TextEncoding::Utf8));
    EXPECT_EQ(decodeCString("x", TextEncoding::Utf8), QStringLiteral("x"));
}

TEST(TextEncoding, ListsEncodingsOnceAndAlwaysInTheSameOrder) {
    const auto& names = availableEncodings();
    EXPECT_GT(names.size(), 100u);
    EXPECT_EQ(std::set<QByteArray>(names.begin(), names.end()).size(), names.size());
    EXPECT_THAT(names, testing::Contains(QByteArray("UTF-8")));
    EXPECT_EQ(&names, &availableEncodings());
    for (const QByteArray& name : names)
        EXPECT_TRUE(encodedLengthByName(QString(), name)) << name.toStdString();
}

TEST(TextEncoding, MeasuresByNameAndKnowsNoUnknownName) {
    EXPECT_EQ(encodedLengthByName(QStringLiteral("é"), "ISO-8859-1"), 1);
    EXPECT_EQ(encodedLengthByName(QStringLiteral("é"), "UTF-8"), 2);
    EXPECT_FALSE(encodedLengthByName(QStringLiteral("日"), "ISO-8859-1"));
    EXPECT_FALSE(encodedLengthByName(QStringLiteral("a"), "no-such-encoding"));
    EXPECT_FALSE(encodedLengthByName(QStringLiteral("a"), ""));
}

TEST(TextEncoding, ShowsEachInconvertibleCharacterAsOneQuestionMark) {
    EXPECT_EQ(encodeLossyUtf8(QStringLiteral("é")), QByteArray("\xC3\xA9"));
    EXPECT_EQ(encodeLossyUtf8(u'a' + kLoneSurrogate + u'b'), QByteArray("a?b"));
    EXPECT_EQ(encodeLossyUtf8(kLoneSurrogate + kEmoji + QChar(0xDC00)),
              QByteArray("?\xF0\x9F\x8F\xB7?"));
    EXPECT_EQ(encodeLossyUtf8(kLoneSurrogate + kLoneSurrogate), QByteArray("??"));
}

TEST(CFStringGetCString, FillsABufferThatJustFits) {
    std::array<char, 4> buffer{'x', 'x', 'x', 'x'};
    ASSERT_TRUE(CFStringGetCString(QStringLiteral("abc"), buffer, TextEncoding::Utf8));
    EXPECT_STREQ(buffer.data(), "abc");
}

TEST(CFStringGetCString, LeavesTheBufferEmptyWhenTheTerminatorDoesNotFit) {
    std::array<char, 3> buffer{'x', 'x', 'x'};
    EXPECT_FALSE(CFStringGetCString(QStringLiteral("abc"), buffer, TextEncoding::Utf8));
    EXPECT_EQ(buffer[0], '\0');
    EXPECT_EQ(buffer[1], 'x');
}

TEST(CFStringGetCString, LeavesTheBufferEmptyForATextThatCannotBeEncoded) {
    std::array<char, 8> buffer{'x'};
    EXPECT_FALSE(CFStringGetCString(QStringLiteral("é"), buffer, TextEncoding::Ascii));
    EXPECT_EQ(buffer[0], '\0');
}

TEST(CFStringGetCString, FailsWithoutABuffer) {
    EXPECT_FALSE(CFStringGetCString(QString(), {}, TextEncoding::Utf8));
}

TEST(CFStringGetCString, CountsBytesForNonAsciiTexts) {
    std::array<char, 3> three{};
    EXPECT_TRUE(CFStringGetCString(QStringLiteral("é"), three, TextEncoding::Utf8));
    std::array<char, 2> two{};
    EXPECT_FALSE(CFStringGetCString(QStringLiteral("é"), two, TextEncoding::Utf8));
}

} // namespace
