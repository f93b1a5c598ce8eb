#include "plugins/cut_options/diagnostics/pde_log.h"

#include "tests/plugins/cut_options/diagnostics/captured_output.h"

#include <gtest/gtest.h>

#include <QObject>

#include <random>

using namespace labelcut;
using labelcut::test::LogLines;
using labelcut::test::ScratchFile;
using labelcut::test::standardErrorOf;

namespace {

struct Described {
    QString text;
    QString description() const { return text; }
};

class TaggedLog : public testing::Test {
protected:
    std::string only() const {
        return log.lines.size() == 1 ? log.lines.first().toStdString()
                                     : std::to_string(log.lines.size()) + " lines";
    }
    LogLines log;
};

TEST_F(TaggedLog, NamesTagObjectAndMessage) {
    const Described panel{QStringLiteral("panel")};
    _PDEProlog(&panel, QStringLiteral("a %d"), 1);
    _PDEEpilog(&panel, QStringLiteral("b %@"), QStringLiteral("x"));
    _PDELog(&panel, QStringLiteral("c"));
    EXPECT_EQ(log.lines, (QStringList{QStringLiteral("BEGIN self(panel) a 1"),
                                      QStringLiteral("END self(panel) b x"),
                                      QStringLiteral("LOG self(panel) c")}));
}

TEST_F(TaggedLog, LeavesOutSelfWithoutAnObject) {
    _PDEProlog(nullptr, QStringLiteral("a"));
    _PDEEpilog(static_cast<const QObject*>(nullptr), QStringLiteral("b"));
    _PDELog(nullptr, QStringLiteral("half cut is %s"), "ON");
    EXPECT_EQ(log.lines, (QStringList{QStringLiteral("BEGIN a"), QStringLiteral("END b"),
                                      QStringLiteral("LOG half cut is ON")}));
}

TEST_F(TaggedLog, ReadsPercentSignsOfTheDescriptionAsDirectives) {
    const Described odd{QStringLiteral("%d%%")};
    _PDELog(&odd, QStringLiteral("%d"), 1, 2);
    EXPECT_EQ(only(), "LOG self(1%) 2");
}

TEST_F(TaggedLog, ReadsNoArgumentThatWasNotGivenWhateverTheDescriptionHolds) {
    const Described hostile{QStringLiteral("%s %n %@ %999999d %*d %9$@")};
    _PDELog(&hostile, QStringLiteral("%@ %x"));
    EXPECT_EQ(only(), "LOG self(%s %n %@ %999999d %*d %9$@) %@ %x");
}

TEST_F(TaggedLog, TakesTheArgumentsForTheDescriptionFirst) {
    const Described greedy{QStringLiteral("%@")};
    _PDELog(&greedy, QStringLiteral("%@"), QStringLiteral("mine"));
    EXPECT_EQ(only(), "LOG self(mine) %@");
}

TEST_F(TaggedLog, DescribesAQtObjectByClassAndAddress) {
    QObject object;
    _PDELog(&object, QStringLiteral("x"));
    EXPECT_TRUE(only().starts_with("LOG self(<QObject: 0x")) << only();
}

TEST_F(TaggedLog, StandsUpToRandomDescriptionsAndFormats) {
    std::mt19937 random(11);
    const QString alphabet = QStringLiteral("%%%@dsnfxcp*$.0159-+ #'lhzaé") + QChar(0xD800);
    const auto text = [&] {
        QString made;
        for (auto length = random() % 16; length > 0; --length)
            made += alphabet[static_cast<qsizetype>(random() %
                                                    static_cast<std::size_t>(alphabet.size()))];
        return made;
    };
    for (int round = 0; round < 5000; ++round) {
        const Described object{text()};
        const QString format = text();
        ASSERT_NO_THROW(_PDELog(&object, format, 1, "two", 3.0, nullptr))
            << object.text.toStdString() << " / " << format.toStdString();
        ASSERT_TRUE(log.lines.takeLast().startsWith(QStringLiteral("LOG self(")));
    }
}

TEST(DebugLog, PrintsPrefixMessageAndNewline) {
    EXPECT_EQ(standardErrorOf([] { debugLog(0, QStringLiteral("cut every %d"), 5); }),
              "DEBUG: cut every 5\n");
    EXPECT_EQ(standardErrorOf([] { debugLog(-5, QStringLiteral("x")); }), "DEBUG: x\n");
}

TEST(DebugLog, PrintsNothingAboveLevel0) {
    EXPECT_EQ(standardErrorOf([] { debugLog(1, QStringLiteral("x")); }), "");
}

TEST(DebugLog, PrintsPrefixAndNewlineForAnEmptyMessage) {
    EXPECT_EQ(standardErrorOf([] { debugLog(0, QString()); }), "DEBUG: \n");
}

TEST(DebugLog, PrintsUtf8AndAQuestionMarkForWhatItCannotCarry) {
    const QString message = QStringLiteral("é%%") + QChar(0xDC00);
    EXPECT_EQ(standardErrorOf([&] { debugLog(0, message); }), "DEBUG: é%?\n");
}

TEST(DebugLog, EndsAtAZeroCharacter) {
    const QString message = QStringLiteral("a") + QChar(0) + QStringLiteral("b");
    EXPECT_EQ(standardErrorOf([&] { debugLog(0, message); }), "DEBUG: a\n");
}

TEST(DebugLogFd, WritesMessageAndNewlineWithoutPrefix) {
    const ScratchFile file;
    debugLogFd(0, file.fd(), QStringLiteral("n = %d"), 3);
    debugLogFd(-1, file.fd(), QStringLiteral("a") + QChar(0) + QChar(0xD800));
    debugLogFd(1, file.fd(), QStringLiteral("never"));
    EXPECT_EQ(file.content(), std::string("n = 3\na\0?\n", 10));
}

TEST(DebugLogFd, IsSilentAboutADescriptorThatIsNotOpen) {
    EXPECT_EQ(standardErrorOf([] { debugLogFd(0, -1, QStringLiteral("x")); }), "");
}

class MemoryCheck : public testing::Test {
protected:
    static std::string printed(std::int32_t count, std::int32_t level = 0) {
        return standardErrorOf([=] { memoryCheck(level, bytes(), count); });
    }
    static std::string written(std::int32_t count, std::int32_t level = 0) {
        const ScratchFile file;
        memoryCheckFd(level, file.fd(), bytes(), count);
        return file.content();
    }
    /// 00 01 … 0f f0 f1 … ff 00 …
    static const unsigned char* bytes() {
        static const auto all = [] {
            std::array<unsigned char, 48> made{};
            for (unsigned i = 0; i < made.size(); ++i)
                made[i] = static_cast<unsigned char>(i < 16 ? i : 0xE0 + i);
            return made;
        }();
        return all.data();
    }
    const std::string first = "000102030405060708090a0b0c0d0e0f";
    const std::string second = "f0f1f2f3f4f5f6f7f8f9fafbfcfdfeff";
};

TEST_F(MemoryCheck, EndsAFullGroupWithABarePrefix) {
    EXPECT_EQ(printed(16), "DEBUG:" + first + "DEBUG:");
    EXPECT_EQ(printed(32), "DEBUG:" + first + "DEBUG:" + second + "DEBUG:");
}

TEST_F(MemoryCheck, PrintsARestAfterTheGroups) {
    EXPECT_EQ(printed(17), "DEBUG:" + first + "DEBUG:f0");
    EXPECT_EQ(printed(15), "DEBUG:" + first.substr(0, 30));
    EXPECT_EQ(printed(1), "DEBUG:00");
}

TEST_F(MemoryCheck, PrintsABarePrefixForNoBytes) {
    EXPECT_EQ(printed(0), "DEBUG:");
    EXPECT_EQ(printed(-1), "DEBUG:");
    EXPECT_EQ(printed(std::numeric_limits<std::int32_t>::min()), "DEBUG:");
}

TEST_F(MemoryCheck, PrintsNothingAboveLevel0OrWithoutBytes) {
    EXPECT_EQ(printed(16, 1), "");
    EXPECT_EQ(printed(16, -3), "DEBUG:" + first + "DEBUG:");
    EXPECT_EQ(standardErrorOf([] { memoryCheck(0, nullptr, 16); }), "");
}

using MemoryCheckFd = MemoryCheck;

TEST_F(MemoryCheckFd, WritesOneLineForAFullGroupAndNothingMore) {
    EXPECT_EQ(written(16), first + "\n");
    EXPECT_EQ(written(32), first + "\n" + second + "\n");
}

TEST_F(MemoryCheckFd, WritesARestOnALineOfItsOwn) {
    EXPECT_EQ(written(17), first + "\nf0\n");
    EXPECT_EQ(written(2), "0001\n");
}

TEST_F(MemoryCheckFd, WritesNothingForNoBytesOrAboveLevel0) {
    EXPECT_EQ(written(0), "");
    EXPECT_EQ(written(-1), "");
    EXPECT_EQ(written(16, 1), "");
    const ScratchFile file;
    memoryCheckFd(0, file.fd(), nullptr, 16);
    EXPECT_EQ(file.content(), "");
}

} // namespace
