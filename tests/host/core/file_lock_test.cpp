// One process at a time.
#include "host/core/file_lock.h"

#include <gtest/gtest.h>

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/job_fixtures.h"

namespace labelcut {

using Attempt = FileLock::Attempt;

TEST(FileLockTest, OneHoldsItUntilItIsGoneAndNoFileStays) {
    const test::Folder folder;
    const QString path = folder.path(QStringLiteral("lock"));
    {
        FileLock one(path);
        FileLock other(path);
        EXPECT_EQ(one.tryLock(), Attempt::Held);
        EXPECT_EQ(other.tryLock(), Attempt::Busy);
        EXPECT_EQ(folder.entries(), QStringList{QStringLiteral("lock")});
    }
    EXPECT_EQ(folder.entries(), QStringList());
    FileLock next(path);
    EXPECT_EQ(next.tryLock(), Attempt::Held);
}

TEST(FileLockTest, WhoOnlyTriedRemovesNobodysFile) {
    const test::Folder folder;
    const QString path = folder.path(QStringLiteral("lock"));
    FileLock one(path);
    ASSERT_EQ(one.tryLock(), Attempt::Held);
    EXPECT_EQ(FileLock(path).tryLock(), Attempt::Busy);
    EXPECT_EQ(FileLock(path).tryLock(), Attempt::Busy);
}

TEST(FileLockTest, AFileThatIsLeftOverIsTaken) {
    const test::Folder folder;
    FileLock lock(folder.file(QStringLiteral("lock"), "of a process that is gone"));
    EXPECT_EQ(lock.tryLock(), Attempt::Held);
}

TEST(FileLockTest, WhatIsNoFileStays) {
    const test::Folder folder;
    const QString pipe = folder.path(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(FileLock(pipe).tryLock(), Attempt::NotRegular);
    EXPECT_EQ(FileLock(folder.path(QStringLiteral("."))).tryLock(), Attempt::NotRegular);
    struct stat status {};
    ASSERT_EQ(stat(QFile::encodeName(pipe).constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

TEST(FileLockTest, AFolderThatIsClosedOrMissingIsToldApart) {
    const test::Folder folder;
    EXPECT_EQ(FileLock(folder.path(QStringLiteral("no/lock"))).tryLock(), Attempt::Impossible);
    ASSERT_EQ(chmod(QFile::encodeName(folder.path(QStringLiteral("."))).constData(), 0555), 0);
    const test::Unprivileged nobody;
    EXPECT_EQ(FileLock(folder.path(QStringLiteral("lock"))).tryLock(), Attempt::Forbidden);
}

} // namespace labelcut
