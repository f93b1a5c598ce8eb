// Which printer was used last.
#include "host/printers/recent_printer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>

#include "tests/support/preset_fixtures.h"

namespace labelcut {

using Kind = RecentPrinter::Kind;

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
    EXPECT_EQ(recentPrinter(file), RecentPrinter());
}

TEST_F(RecentPrinterTest, TheLastOneCountsAndTheOtherKindStays) {
    ASSERT_TRUE(rememberQueue(text("Küche"), file));
    EXPECT_EQ(recentPrinter(file), (RecentPrinter{Kind::Queue, text("Küche"), QString()}));
    ASSERT_TRUE(rememberPpdFile(text("/a/tape.ppd"), file));
    EXPECT_EQ(recentPrinter(file),
              (RecentPrinter{Kind::PpdFile, text("Küche"), text("/a/tape.ppd")}));
    ASSERT_TRUE(rememberQueue(text("roll"), file));
    EXPECT_EQ(recentPrinter(file), (RecentPrinter{Kind::Queue, text("roll"), text("/a/tape.ppd")}));
}

TEST_F(RecentPrinterTest, APathIsKeptWhole) {
    ASSERT_TRUE(rememberPpdFile(text("tape.ppd"), file));
    EXPECT_EQ(recentPrinter(file).ppdPath, QDir::current().absoluteFilePath(text("tape.ppd")));
}

TEST_F(RecentPrinterTest, DamageIsNoPrinter) {
    ASSERT_TRUE(rememberQueue(text("roll"), file));
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("x"), QByteArray("[]"),
          QByteArray(R"({"last":"queue","queue":7})"), QByteArray(R"({"last":"queue","queue":""})"),
          QByteArray(R"({"last":3})")}) {
        test::writeFile(file, bytes);
        EXPECT_EQ(recentPrinter(file).kind, Kind::None) << bytes.constData();
    }
    ASSERT_TRUE(rememberQueue(text("roll"), file));
    EXPECT_EQ(recentPrinter(file).queue, text("roll"));
}

TEST_F(RecentPrinterTest, AFullDiskLeavesTheOldOne) {
    ASSERT_TRUE(rememberQueue(text("roll"), file));
    const test::FullDisk disk(8);
    const auto kept = rememberQueue(text("tape"), file);
    ASSERT_FALSE(kept);
    EXPECT_THAT(kept.error().sentence.toStdString(), testing::HasSubstr(file.toStdString()));
    EXPECT_EQ(recentPrinter(file).queue, text("roll"));
}

TEST_F(RecentPrinterTest, TheFileIsInTheUsersConfiguration) {
    const test::Environment home("XDG_CONFIG_HOME", folder.path().toUtf8());
    EXPECT_EQ(recentPrinterFile(), file);
}

} // namespace labelcut
