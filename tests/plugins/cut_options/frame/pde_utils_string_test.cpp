#include "plugins/cut_options/frame/pde_utils_string.h"

#include "platform/toolkit/text_encoding.h"

#include <gtest/gtest.h>

using labelcut::PDEUtils_String;

namespace {

TEST(StringLengthConvertedToEncoding, IsZeroForNothingAndForTheEmptyText) {
    EXPECT_EQ(PDEUtils_String::stringLengthConvertedToEncoding(std::nullopt), 0);
    EXPECT_EQ(PDEUtils_String::stringLengthConvertedToEncoding(QStringLiteral("")), 0);
}

TEST(StringLengthConvertedToEncoding, CountsBytesOfTheDefaultEncoding) {
    EXPECT_EQ(PDEUtils_String::stringLengthConvertedToEncoding(QStringLiteral("abc")), 3);
    EXPECT_EQ(PDEUtils_String::stringLengthConvertedToEncoding(QStringLiteral("é日")), 5);
}

TEST(StringLengthConvertedToEncoding, TakesTheFirstEncodingOfTheListThatCanConvert) {
    const QString lone = QStringLiteral("a") + QChar(0xD800);
    ASSERT_FALSE(labelcut::canEncode(lone, labelcut::TextEncoding::SystemDefault));
    qsizetype expected = 0;
    for (const QByteArray& name : labelcut::availableEncodings()) {
        if (const auto length = labelcut::encodedLengthByName(lone, name)) {
            expected = *length;
            break;
        }
    }
    EXPECT_EQ(PDEUtils_String::stringLengthConvertedToEncoding(lone), expected);
    EXPECT_GT(expected, 0) << "some encoding carries any UTF-16 unit";
}

TEST(ScanString, FindsATextAnywhereLiterallyAndWithCase) {
    EXPECT_TRUE(PDEUtils_String::scanString(QStringLiteral("KVSGUSB"), QStringLiteral("USB")));
    EXPECT_TRUE(PDEUtils_String::scanString(QStringLiteral("USB"), QStringLiteral("USB")));
    EXPECT_FALSE(PDEUtils_String::scanString(QStringLiteral("kvsgusb"), QStringLiteral("USB")));
    EXPECT_FALSE(PDEUtils_String::scanString(QStringLiteral("axb"), QStringLiteral("a.b")));
    // Composed and decomposed are equal to a reader, not literally.
    EXPECT_FALSE(PDEUtils_String::scanString(QStringLiteral("é"), QStringLiteral("e\u0301")));
}

TEST(ScanString, NeverFindsNothingOrTheEmptyText) {
    EXPECT_FALSE(PDEUtils_String::scanString(QStringLiteral("a"), QStringLiteral("")));
    EXPECT_FALSE(PDEUtils_String::scanString(QStringLiteral("a"), std::nullopt));
    EXPECT_FALSE(PDEUtils_String::scanString(std::nullopt, QStringLiteral("a")));
}

TEST(DeleteString, RemovesOnlyTheFirstOccurrence) {
    EXPECT_EQ(PDEUtils_String::deleteString(QStringLiteral("xabyabz"), QStringLiteral("ab")),
              QStringLiteral("xyabz"));
}

TEST(DeleteString, LeavesAnEmptyTextWhenAllIsRemoved) {
    const auto rest = PDEUtils_String::deleteString(QStringLiteral("ab"), QStringLiteral("ab"));
    ASSERT_TRUE(rest);
    EXPECT_TRUE(rest->isEmpty());
}

TEST(DeleteString, GivesNothingWhenTheTextDoesNotOccur) {
    EXPECT_FALSE(PDEUtils_String::deleteString(QStringLiteral("ab"), QStringLiteral("c")));
    EXPECT_FALSE(PDEUtils_String::deleteString(QStringLiteral("ab"), QStringLiteral("")));
    EXPECT_FALSE(PDEUtils_String::deleteString(std::nullopt, QStringLiteral("c")));
}

TEST(DeleteString, LeavesTheOriginalAlone) {
    const QString original = QStringLiteral("ab");
    PDEUtils_String::deleteString(original, QStringLiteral("a"));
    EXPECT_EQ(original, QStringLiteral("ab"));
}

} // namespace
