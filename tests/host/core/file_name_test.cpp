// Names of files as texts that lose no byte.
#include "host/core/file_name.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <random>

#include "host/core/harmless_text.h"

namespace labelcut {

namespace {

/// Every byte that a name can have.
constexpr int kFirst = 1;
constexpr int kLast = 255;

QByteArray bytesOf(std::initializer_list<int> values) {
    QByteArray bytes;
    for (const int value : values)
        bytes += static_cast<char>(value);
    return bytes;
}

testing::AssertionResult comesBack(const QByteArray& bytes) {
    if (bytesOfName(nameFromBytes(bytes)) == bytes)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << bytes.toHex(' ').toStdString() << " became "
                                       << bytesOfName(nameFromBytes(bytes)).toHex(' ').constData();
}

} // namespace

TEST(FileNameTest, TextIsTheTextThatItIs) {
    const QString text = QStringLiteral("Größe 漢字 🏷 a\nb\"c'd\\e.pdf");
    EXPECT_EQ(nameFromBytes(text.toUtf8()), text);
    EXPECT_EQ(bytesOfName(text), text.toUtf8());
}

TEST(FileNameTest, EveryByteAloneAndInFrontOfEveryOtherComesBack) {
    for (int a = kFirst; a <= kLast; ++a) {
        ASSERT_TRUE(comesBack(bytesOf({a})));
        ASSERT_TRUE(comesBack(bytesOf({'x', a, 'y'})));
        for (int b = kFirst; b <= kLast; ++b)
            ASSERT_TRUE(comesBack(bytesOf({a, b})));
    }
}

TEST(FileNameTest, BytesInAnyOrderComeBack) {
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same names at every run
    std::uniform_int_distribution<int> any(kFirst, kLast);
    std::uniform_int_distribution<int> high(0x80, kLast);
    for (int round = 0; round < 20'000; ++round) {
        QByteArray name;
        for (int i = 0; i < 12; ++i)
            name += static_cast<char>(round % 2 == 0 ? any(random) : high(random));
        ASSERT_TRUE(comesBack(name));
    }
}

TEST(FileNameTest, WhatLooksLikeUtf8AndIsNoneStaysItsBytes) {
    const std::initializer_list<QByteArray> names = {
        bytesOf({0xC0, 0xAF}),             // a slash that takes too many bytes
        bytesOf({0xE0, 0x80, 0xAF}),       // and once more
        bytesOf({0xED, 0xB2, 0x80}),       // the half of a character that stands for 0x80
        bytesOf({0xED, 0xA0, 0x80}),       // the other half
        bytesOf({0xF4, 0x90, 0x80, 0x80}), // beyond the last character
        bytesOf({0xF0, 0x9F, 0x8F}),       // ends too early
    };
    for (const QByteArray& name : names) {
        EXPECT_TRUE(comesBack(name));
        EXPECT_EQ(nameFromBytes(name).size(), name.size());
        EXPECT_FALSE(nameFromBytes(name).contains(u'/'));
    }
}

TEST(FileNameTest, AByteOrderMarkIsPartOfTheName) {
    const QByteArray name = bytesOf({0xEF, 0xBB, 0xBF, 'a'});
    EXPECT_EQ(nameFromBytes(name), QStringLiteral("\uFEFFa"));
    EXPECT_TRUE(comesBack(name));
}

TEST(FileNameTest, NamesThatDifferInAByteDiffer) {
    EXPECT_NE(nameFromBytes("a\xE4"), nameFromBytes("a\xE5"));
    EXPECT_NE(nameFromBytes("a\xE4"), nameFromBytes("a\xC3\xA4"));
}

TEST(FileNameTest, TheLocaleDoesNotMatter) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(nameFromBytes("Gr\xC3\xB6\xC3\x9F"
                            "e"),
              QStringLiteral("Größe"));
    EXPECT_TRUE(comesBack("a\xE4z"));
    std::setlocale(LC_ALL, before.c_str());
}

TEST(FileNameTest, ALoneByteIsShownAsAReplacement) {
    EXPECT_EQ(harmless(nameFromBytes("a\xE4z")), QStringLiteral("a\uFFFDz"));
    EXPECT_EQ(harmless(nameFromBytes("\xF0\x9F\x8F\xB7\xE4")), QStringLiteral("🏷\uFFFD"));
}

TEST(FileNameTest, HalvesThatStandForNoByteAreReplaced) {
    EXPECT_EQ(bytesOfName(QString(QChar(0xD800)) + u'a'), "\xEF\xBF\xBD"
                                                          "a");
    EXPECT_EQ(bytesOfName(QString(QChar(0xDC41))), "\xEF\xBF\xBD");
}

TEST(FileNameTest, ANameWithANulIsNoneOfTheSystems) {
    EXPECT_EQ(systemName(QStringLiteral("a.ppd")), "a.ppd");
    EXPECT_EQ(systemName(QStringLiteral("a.ppd") + QChar(QChar::Null) + u'b'), QByteArray());
}

TEST(FileNameTest, ANameCountsFromTheCurrentFolderWhateverThatIsCalled) {
    const QString before = absoluteName(QStringLiteral("."));
    const QTemporaryDir folder;
    const QByteArray odd = QFile::encodeName(folder.path()) + "/in \xE4";
    ASSERT_EQ(mkdir(odd.constData(), 0700), 0);
    ASSERT_EQ(chdir(odd.constData()), 0);
    EXPECT_EQ(bytesOfName(absoluteName(QStringLiteral("./a/../b.ppd"))), odd + "/b.ppd");
    EXPECT_EQ(absoluteName(QStringLiteral("/a//b.ppd")), QStringLiteral("/a/b.ppd"));
    EXPECT_EQ(chdir(bytesOfName(before).constData()), 0);
    // Qt, which clears the folder, would not find it.
    EXPECT_EQ(rmdir(odd.constData()), 0);
}

} // namespace labelcut
