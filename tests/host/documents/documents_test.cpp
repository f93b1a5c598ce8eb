// The job: what kind of file a document is, told by its content and never by its name.
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
    const Result<DocumentKind> kind = documentKind(path);
    return kind ? std::string("taken") : kind.error().sentence.toStdString();
}

} // namespace

TEST(DocumentsTest, TheKindIsToldByTheContent) {
    const test::Folder folder;
    struct Row {
        QByteArray content;
        DocumentKind kind;
    };
    const Row rows[] = {
        {"%PDF-1.4\n", DocumentKind::PDF},
        {"junk in front\n%PDF-1.7\n", DocumentKind::PDF},
        {"%!PS-Adobe-3.0\n", DocumentKind::PostScript},
        {"\x04%!PS\n", DocumentKind::PostScript},
        {QByteArray("\x89PNG\r\n\x1a\n\0\0", 10), DocumentKind::PNG},
        {"\xff\xd8\xff\xe0", DocumentKind::JPEG},
        {"<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg'/>", DocumentKind::SVG},
        {"<!-- drawn --><s:svg xmlns:s='http://www.w3.org/2000/svg'/>", DocumentKind::SVG},
        {"<html>about <svg></html>", DocumentKind::PlainText},
        {"Shelf 4\tB\r\nfragile\f", DocumentKind::PlainText},
        {"Gr\xc3\xb6\xc3\x9f"
         "e",
         DocumentKind::PlainText},
        {QByteArray("\xff\xfe"
                    "A\0",
                    4),
         DocumentKind::PlainText},
    };
    for (const Row& row : rows) {
        const QString path = folder.file(QStringLiteral("label.pdf"), row.content);
        const Result<DocumentKind> kind = documentKind(path);
        ASSERT_TRUE(kind) << row.content.toStdString() << kind.error().sentence.toStdString();
        EXPECT_EQ(*kind, row.kind) << row.content.toStdString();
    }
}

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

TEST(DocumentsTest, TextIsDecodedFromItsByteOrderMark) {
    EXPECT_EQ(decodedText("Gr\xc3\xb6\xc3\x9f"
                          "e"),
              QStringLiteral("Größe"));
    EXPECT_EQ(decodedText("\xef\xbb\xbf"
                          "A"),
              QStringLiteral("A"));
    EXPECT_EQ(decodedText(QByteArray("\xfe\xff\0A", 4)), QStringLiteral("A"));
    EXPECT_EQ(decodedText("bell\a"), std::nullopt);
}

} // namespace labelcut
