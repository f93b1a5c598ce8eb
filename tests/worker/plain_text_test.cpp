// The worker: text in files.
#include "worker/kinds/plain_text.h"

#include <gtest/gtest.h>

#include <QString>
#include <QStringDecoder>

namespace labelcut::worker {

namespace {

using namespace std::string_view_literals;

} // namespace

TEST(PlainTextTest, IsDecodedFromItsByteOrderMark) {
    EXPECT_EQ(decodedText("Gr\xc3\xb6\xc3\x9f"
                          "e"),
              u"Größe");
    EXPECT_EQ(decodedText("\xef\xbb\xbf"
                          "A"),
              u"A");
    EXPECT_EQ(decodedText("\xfe\xff\0A"sv), u"A");
    EXPECT_EQ(decodedText("\xff\xfe"
                          "A\0\x3d\xd8\x00\xde"sv),
              u"A\U0001F600");
    EXPECT_EQ(decodedText("\0\0\xfe\xff\0\x01\xf6\0"sv), u"\U0001F600");
    EXPECT_EQ(decodedText("\xff\xfe\0\0A\0\0\0"sv), u"A");
    EXPECT_EQ(decodedText(""), u"");
}

TEST(PlainTextTest, WhatIsCutOffOrOverlongOrASurrogateIsNone) {
    for (const std::string_view bytes :
         {"\xc3"sv, "\xc3("sv, "\xe2\x82"sv, "\xc0\x80"sv, "\xc1\xbf"sv, "\xe0\x80\x80"sv,
          "\xf0\x8f\xbf\xbf"sv, "\xed\xa0\x80"sv, "\xf4\x90\x80\x80"sv, "\xf8\x88\x80\x80\x80"sv,
          "\x80"sv, "\xff"sv, "\xff\xfe\0"sv, "\xff\xfe\0\xd8"sv, "\xff\xfe\0\xdc\0\xd8"sv,
          "\xff\xfe\0\xd8"
          "A\0"sv,
          "\0\0\xfe\xff\0\0\xd8\0"sv, "\0\0\xfe\xff\0\x11\0\0"sv, "\0\0\xfe\xff\0\0"sv})
        EXPECT_EQ(decodedText(bytes), std::nullopt);
}

TEST(PlainTextTest, ControlCharactersButThoseOfLinesAndPagesAreNone) {
    EXPECT_EQ(decodedText("a\tb\r\nc\f"), u"a\tb\r\nc\f");
    for (const std::string_view bytes : {"bell\a"sv, "\0"sv, "\x1b[0m"sv, "\x7f"sv, "\xc2\x85"sv})
        EXPECT_EQ(decodedText(bytes), std::nullopt);
}

TEST(PlainTextTest, EverySequenceOfThreeBytesIsTakenJustAsTheToolkitTakesIt) {
    for (unsigned value = 0; value < 1U << 24; value += 1) {
        const std::string bytes{static_cast<char>(value >> 16), static_cast<char>(value >> 8),
                                static_cast<char>(value)};
        // Marks of other encodings, and controls, are looked at above.
        if ((value >> 16) >= 0xef || (value >> 16) < 0x20 || ((value >> 8) & 0xff) < 0x20 ||
            (value & 0xff) < 0x20)
            continue;
        if ((value & 0x7f) != 0x21 && (value & 0x3f) != 0 && (value & 0x3f) != 0x3f)
            continue; // third bytes at their borders
        const std::optional<std::u16string> ours = decodedText(bytes);
        QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
        const QString theirs =
            decoder.decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
        const bool hasControl = std::any_of(theirs.begin(), theirs.end(), [](QChar c) {
            return c.category() == QChar::Other_Control;
        });
        ASSERT_EQ(ours.has_value(), !decoder.hasError() && !hasControl) << std::hex << value;
        if (ours) {
            ASSERT_EQ(QString::fromStdU16String(*ours), theirs) << std::hex << value;
        }
    }
}

} // namespace labelcut::worker
