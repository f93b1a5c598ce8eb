// Files that are read: regular ones, by any name, without waiting.
#include "host/core/regular_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "host/core/file_name.h"
#include "tests/support/job_fixtures.h"

namespace labelcut {

using testing::HasSubstr;

namespace {

/// Makes a file of any name in the folder.
QString written(const test::Folder& folder, const QByteArray& name, const QByteArray& content) {
    const QByteArray path = QFile::encodeName(folder.path(QStringLiteral("."))) + '/' + name;
    const int file = open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    EXPECT_GE(file, 0) << path.toHex().constData();
    EXPECT_EQ(write(file, content.constData(), static_cast<std::size_t>(content.size())),
              content.size());
    close(file);
    return nameFromBytes(path);
}

std::string sentenceFor(const QString& path) {
    const Result<OpenedFile> file = openRegularFile(path);
    return file ? "opened" : file.error().sentence.toStdString();
}

} // namespace

TEST(RegularFileTest, AFileOfAnyNameIsRead) {
    const test::Folder folder;
    for (const QByteArray& name :
         {QByteArray("a\xE4"
                     "b.pdf"),
          QByteArray("two\nlines"), QByteArray("q'u\"o`te$\\"), QByteArray(255, '\xFF'),
          QByteArray(" -o |x"), QByteArray("\xEF\xBB\xBFmark")}) {
        const QString path = written(folder, name, "content of " + name);
        const Result<OpenedFile> file = openRegularFile(path);
        ASSERT_TRUE(file) << file.error().sentence.toStdString();
        QString reason;
        EXPECT_EQ(file->read(1000, &reason), "content of " + name);
        EXPECT_EQ(file->size(), name.size() + 11);
        EXPECT_EQ(reason, QString());
        // Qt, which clears the folder, would not find it.
        EXPECT_EQ(unlink(bytesOfName(path).constData()), 0);
    }
}

TEST(RegularFileTest, AFileIsReadFromItsBeginAndUpToTheLimit) {
    const test::Folder folder;
    const QByteArray content = QByteArray(300'000, 'x') + QByteArray(300'000, 'y');
    const Result<OpenedFile> file = openRegularFile(folder.file(QStringLiteral("large"), content));
    ASSERT_TRUE(file);
    QString reason;
    EXPECT_EQ(file->read(10, &reason), QByteArray(10, 'x'));
    EXPECT_EQ(file->read(300'001, &reason), content.left(300'001));
    EXPECT_EQ(file->read(1 << 20, &reason), content);
}

TEST(RegularFileTest, WhatIsNoRegularFileIsRefusedByNameAtOnce) {
    const test::Folder folder;
    const QString pipe = folder.path(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_THAT(sentenceFor(pipe), HasSubstr("pipe” is not a regular file"));
    EXPECT_THAT(sentenceFor(QStringLiteral("/dev/zero")),
                HasSubstr("“/dev/zero” is not a regular file"));
    EXPECT_THAT(sentenceFor(folder.path(QStringLiteral("."))), HasSubstr("is a folder"));

    const QString link = folder.path(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(pipe, link));
    EXPECT_THAT(sentenceFor(link), HasSubstr("link” is not a regular file"));

    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(folder.path(QStringLiteral("socket")));
    ASSERT_LT(static_cast<std::size_t>(name.size()), sizeof address.sun_path);
    std::copy(name.begin(), name.end(), address.sun_path);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_THAT(sentenceFor(folder.path(QStringLiteral("socket"))),
                HasSubstr("socket” is not a regular file"));
    close(listener);
}

TEST(RegularFileTest, WhatIsNotThereIsMissing) {
    const test::Folder folder;
    const QString file = folder.file(QStringLiteral("file"), "x");
    EXPECT_THAT(sentenceFor(folder.path(QStringLiteral("none"))), HasSubstr("does not exist"));
    EXPECT_THAT(sentenceFor(file + QStringLiteral("/in")), HasSubstr("does not exist"));
    EXPECT_THAT(sentenceFor(QString()), HasSubstr("does not exist"));
    // Nor is the file meant whose name ends where a NUL stands.
    EXPECT_THAT(sentenceFor(file + QChar(QChar::Null)), HasSubstr("does not exist"));

    const QString link = folder.path(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(folder.path(QStringLiteral("none")), link));
    EXPECT_THAT(sentenceFor(link), HasSubstr("link” does not exist"));
}

TEST(RegularFileTest, WhatMayNotBeReadIsToldInTheWordsOfTheSystem) {
    const test::Folder folder;
    const QString file = folder.file(QStringLiteral("secret"), "x");
    ASSERT_EQ(chmod(QFile::encodeName(file).constData(), 0), 0);
    EXPECT_THAT(sentenceFor(folder.path(QString(300, u'x'))),
                HasSubstr("cannot be read (File name too long)"));
    const test::Unprivileged nobody;
    EXPECT_THAT(sentenceFor(file), HasSubstr("secret” cannot be read (Permission denied)"));
}

TEST(RegularFileTest, TheFileIsClosedOnceWithItsOwner) {
    const test::Folder folder;
    int descriptor = -1;
    {
        Result<OpenedFile> file = openRegularFile(folder.file(QStringLiteral("file"), "x"));
        ASSERT_TRUE(file);
        const OpenedFile owner = std::move(*file);
        descriptor = owner.descriptor();
        EXPECT_FALSE(file->isOpen());
        EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
    }
    EXPECT_EQ(fcntl(descriptor, F_GETFD), -1);
}

} // namespace labelcut
