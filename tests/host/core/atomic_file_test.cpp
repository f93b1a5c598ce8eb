// The job: a file that is either whole or not there.
#include "host/core/atomic_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include "tests/support/job_fixtures.h"

namespace labelcut {

using testing::HasSubstr;

namespace {

std::optional<QString> oneMegabyte(FileSink& target) {
    target.write(QByteArray(1 << 20, 'x'));
    return std::nullopt;
}

} // namespace

TEST(AtomicFileTest, TheFileHoldsWhatWasWritten) {
    const test::Folder folder;
    const QString path = folder.file(QStringLiteral("out.ps"), "older and longer");
    const Result<qint64> size = writeWhole(path, [](FileSink& target) -> std::optional<QString> {
        target.write("new");
        return std::nullopt;
    });
    ASSERT_TRUE(size) << size.error().sentence.toStdString();
    EXPECT_EQ(*size, 3);
    EXPECT_EQ(test::contentOf(path), "new");
}

TEST(AtomicFileTest, AWriterThatGivesUpLeavesTheOlderFile) {
    const test::Folder folder;
    const QString path = folder.file(QStringLiteral("out.ps"), "older");
    const Result<qint64> size = writeWhole(path, [](FileSink& target) -> std::optional<QString> {
        target.write("half");
        return QStringLiteral("gave up");
    });
    ASSERT_FALSE(size);
    EXPECT_EQ(size.error().sentence, QStringLiteral("gave up"));
    EXPECT_EQ(test::contentOf(path), "older");
    EXPECT_EQ(folder.entries(), QStringList{QStringLiteral("out.ps")});
}

TEST(AtomicFileTest, AFullDiskLeavesNoFile) {
    const test::Folder folder;
    const QString path = folder.path(QStringLiteral("out.ps"));
    const test::FullDisk disk(64 << 10);
    const Result<qint64> size = writeWhole(path, oneMegabyte);
    ASSERT_FALSE(size);
    EXPECT_THAT(size.error().sentence.toStdString(), HasSubstr("out.ps” cannot be written"));
    EXPECT_EQ(folder.entries(), QStringList());
}

TEST(AtomicFileTest, AFullDeviceIsReportedAndStaysADevice) {
    const QString path = QStringLiteral("/dev/full");
    const Result<qint64> size = writeWhole(path, oneMegabyte);
    ASSERT_FALSE(size);
    EXPECT_THAT(size.error().sentence.toStdString(),
                HasSubstr("“/dev/full” cannot be written (No space left on device)"));
    struct stat status = {};
    ASSERT_EQ(stat("/dev/full", &status), 0);
    EXPECT_TRUE(S_ISCHR(status.st_mode));
}

TEST(AtomicFileTest, APlaceThatMayNotBeWrittenIsNamed) {
    const test::Folder folder;
    const QString path = folder.path(QStringLiteral("out.ps"));
    ASSERT_EQ(chmod(QFile::encodeName(folder.path(QStringLiteral("."))).constData(), 0555), 0);
    const test::Unprivileged nobody;
    const Result<qint64> size = writeWhole(path, oneMegabyte);
    ASSERT_FALSE(size);
    EXPECT_THAT(size.error().sentence.toStdString(),
                HasSubstr("out.ps” cannot be written (Permission denied)"));
}

TEST(AtomicFileTest, AMissingFolderAndAFolderEachHaveTheirSentence) {
    const test::Folder folder;
    const Result<qint64> missing =
        writeWhole(folder.path(QStringLiteral("no/out.ps")), oneMegabyte);
    ASSERT_FALSE(missing);
    EXPECT_THAT(missing.error().sentence.toStdString(), HasSubstr("No such file or directory"));
    const Result<qint64> taken = writeWhole(folder.path(QStringLiteral(".")), oneMegabyte);
    ASSERT_FALSE(taken);
    EXPECT_THAT(taken.error().sentence.toStdString(), HasSubstr("is a folder"));
}

TEST(AtomicFileTest, ALinkIsFollowedAndStays) {
    const test::Folder folder;
    const QString file = folder.file(QStringLiteral("older"), "older");
    const QString link = folder.path(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(QStringLiteral("older"), link));
    ASSERT_TRUE(writeWhole(link, oneMegabyte));
    EXPECT_EQ(test::contentOf(file).size(), 1 << 20);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
}

TEST(AtomicFileTest, ALinkThatLeadsToNoFolderIsNamedWithItsEnd) {
    const test::Folder folder;
    const QString link = folder.path(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(QStringLiteral("gone/out.ps"), link));
    const Result<qint64> size = writeWhole(link, oneMegabyte);
    ASSERT_FALSE(size);
    EXPECT_THAT(size.error().sentence.toStdString(),
                testing::AllOf(HasSubstr("link” is a link to"), HasSubstr("gone/out.ps”")));
}

TEST(AtomicFileTest, RightsOfTheOlderFileStayAndAReadOnlyOneIsNotReplaced) {
    const test::Folder folder;
    const QString path = folder.file(QStringLiteral("out.ps"), "older");
    const QByteArray name = QFile::encodeName(path);
    struct stat status {};
    ASSERT_EQ(chmod(name.constData(), 0640), 0);
    ASSERT_TRUE(writeWhole(path, oneMegabyte));
    ASSERT_EQ(stat(name.constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);

    ASSERT_EQ(chmod(name.constData(), 0444), 0);
    ASSERT_EQ(chmod(QFile::encodeName(folder.path(QStringLiteral("."))).constData(), 0777), 0);
    const test::Unprivileged nobody;
    EXPECT_FALSE(writeWhole(path, oneMegabyte));
}

TEST(AtomicFileTest, WhatIsPrivateIsItsOwnersAloneWhateverWasThere) {
    const test::Folder folder;
    const QString path = folder.file(QStringLiteral("kept"), "older");
    const QByteArray name = QFile::encodeName(path);
    struct stat status {};
    ASSERT_EQ(chmod(name.constData(), 0666), 0);
    EXPECT_EQ(writePrivately(path, "new"), std::nullopt);
    EXPECT_EQ(test::contentOf(path), "new");
    ASSERT_EQ(stat(name.constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    EXPECT_EQ(writePrivately(folder.path(QStringLiteral("no/kept")), "new"),
              QStringLiteral("No such file or directory"));
}

} // namespace labelcut
