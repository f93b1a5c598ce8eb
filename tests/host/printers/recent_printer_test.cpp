// Which queue was used last.
#include "host/printers/recent_printer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/preset_fixtures.h"

namespace labelcut {

namespace {

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

} // namespace

class RecentPrinterTest : public testing::Test {
protected:
    test::Folder folder;
    const QString file = folder.path(text("labelcut/recent-printer.json"));
};

TEST_F(RecentPrinterTest, AtFirstThereIsNone) {
    EXPECT_EQ(recentQueue(file), QString());
}

TEST_F(RecentPrinterTest, TheLastOneCounts) {
    ASSERT_TRUE(rememberQueue(text("Küche"), file));
    EXPECT_EQ(recentQueue(file), text("Küche"));
    ASSERT_TRUE(rememberQueue(text("roll"), file));
    EXPECT_EQ(recentQueue(file), text("roll"));
}

TEST_F(RecentPrinterTest, OfAFileThatNamesAPpdAsTheLastTheQueueCounts) {
    ASSERT_TRUE(rememberQueue(text("roll"), file));
    for (const char* bytes : {R"({"last":"ppd","queue":"Küche","ppd":"/a/tape.ppd"})",
                              R"({"last":"queue","queue":"Küche","ppd":""})"}) {
        test::writeFile(file, bytes);
        EXPECT_EQ(recentQueue(file), text("Küche")) << bytes;
    }
    test::writeFile(file, R"({"last":"ppd","queue":"","ppd":"/a/tape.ppd"})");
    EXPECT_EQ(recentQueue(file), QString());
}

TEST_F(RecentPrinterTest, DamageIsNoPrinter) {
    ASSERT_TRUE(rememberQueue(text("roll"), file));
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("x"), QByteArray("[]"),
          QByteArray(R"({"last":"queue","queue":7})"), QByteArray(R"({"last":"queue","queue":""})"),
          QByteArray(R"({"last":3})")}) {
        test::writeFile(file, bytes);
        EXPECT_EQ(recentQueue(file), QString()) << bytes.constData();
    }
    ASSERT_TRUE(rememberQueue(text("roll"), file));
    EXPECT_EQ(recentQueue(file), text("roll"));
}

TEST_F(RecentPrinterTest, AFullDiskLeavesTheOldOne) {
    ASSERT_TRUE(rememberQueue(text("roll"), file));
    const test::FullDisk disk(8);
    const auto kept = rememberQueue(text("tape"), file);
    ASSERT_FALSE(kept);
    EXPECT_THAT(kept.error().sentence.toStdString(), testing::HasSubstr(file.toStdString()));
    EXPECT_EQ(recentQueue(file), text("roll"));
}

TEST_F(RecentPrinterTest, TheFileIsInTheUsersConfiguration) {
    const test::Environment home("XDG_CONFIG_HOME", folder.path().toUtf8());
    EXPECT_EQ(recentPrinterFile(), file);
}

} // namespace labelcut
