// Documents: which files are taken, and how those that are not are told.
#include "host/documents/documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>

#include "tests/support/job_fixtures.h"

namespace labelcut {

using testing::HasSubstr;

namespace {

std::string refusal(const QString& path) {
    const Result<JobDocument> document = JobDocument::prepare({path}, std::nullopt);
    return document ? std::string("taken") : document.error().sentence.toStdString();
}

} // namespace

TEST(DocumentsTest, AnythingElseIsRefusedByName) {
    const test::Folder folder;
    const QByteArray others[] = {"PK\x03\x04 archive",
                                 "\x1f\x8b\x08 packed",
                                 "\x7f"
                                 "ELF\x02",
                                 QByteArray("text\0text", 9),
                                 "Gr\xf6\xdf"
                                 "e in Latin-1",
                                 "\x1b%-12345X@PJL\n",
                                 "GIF89a\x01\x02"};
    for (const QByteArray& content : others) {
        const QString path = folder.file(QStringLiteral("thing.pdf"), content);
        EXPECT_THAT(refusal(path), HasSubstr("thing.pdf” is not a PDF, PostScript, PNG, JPEG, SVG "
                                             "or plain text file; save it as PDF first"))
            << content.toStdString();
    }
}

TEST(DocumentsTest, AMissingFileAFolderAnEmptyFileAndAPipeEachHaveTheirSentence) {
    const test::Folder folder;
    EXPECT_THAT(refusal(folder.path(QStringLiteral("none.pdf"))),
                HasSubstr("none.pdf” does not exist"));
    EXPECT_THAT(refusal(folder.path(QStringLiteral("."))), HasSubstr("is a folder"));
    EXPECT_THAT(refusal(folder.file(QStringLiteral("empty.pdf"), "")),
                HasSubstr("empty.pdf” is empty"));
    const QString pipe = folder.path(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_THAT(refusal(pipe), HasSubstr("pipe” is not a regular file"));
}

TEST(DocumentsTest, AFileThatMayNotBeReadIsNamed) {
    const test::Folder folder;
    const QString path = folder.file(QStringLiteral("secret.pdf"), "%PDF-1.4\n");
    ASSERT_EQ(chmod(QFile::encodeName(path).constData(), 0), 0);
    ASSERT_EQ(chmod(QFile::encodeName(folder.path(QStringLiteral("."))).constData(), 0755), 0);
    const test::Unprivileged nobody;
    EXPECT_THAT(refusal(path), HasSubstr("secret.pdf” cannot be read (Permission denied)"));
}

TEST(DocumentsTest, AnEnormousFileIsRefusedBeforeItIsCopied) {
    const test::Folder folder;
    const QString path = folder.file(QStringLiteral("sparse.pdf"), "%PDF-1.4\n");
    ASSERT_TRUE(QFile::resize(path, kLargestDocument + 1));
    EXPECT_THAT(refusal(path), HasSubstr("sparse.pdf” is larger than 2048 MB"));
}

} // namespace labelcut
