// The worker: what kind of file a document is, told by its content and never by its name.
#include "worker/kinds/document_kind.h"

#include <gtest/gtest.h>

#include <fcntl.h>

#include "tests/support/job_fixtures.h"
#include "worker/protocol/descriptor.h"

namespace labelcut::worker {

namespace {

Answer answerFor(const QByteArray& content) {
    const test::Folder folder;
    const QString path = folder.file(QStringLiteral("label.pdf"), content);
    const Descriptor file(open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
    return documentKind(file.number());
}

/// A byte order mark and what follows it.
QByteArray wide(const char* bytes, qsizetype size) {
    return {bytes, size};
}

} // namespace

TEST(DocumentKindTest, IsToldByTheContent) {
    struct Row {
        QByteArray content;
        DocumentKind kind;
    };
    const Row rows[] = {
        {"%PDF-1.4\n", DocumentKind::PDF},
        {"junk in front\n%PDF-1.7\n", DocumentKind::PDF},
        {"%!PS-Adobe-3.0\n", DocumentKind::PostScript},
        {"\x04%!PS\n", DocumentKind::PostScript},
        {wide("\x89PNG\r\n\x1a\n\0\0", 10), DocumentKind::PNG},
        {"\xff\xd8\xff\xe0", DocumentKind::JPEG},
        {"<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg'/>", DocumentKind::SVG},
        {"<!-- drawn --><s:svg xmlns:s='http://www.w3.org/2000/svg'/>", DocumentKind::SVG},
        {"\xef\xbb\xbf\n<!DOCTYPE svg [<!ENTITY a '<html>'>]>\n<svg>", DocumentKind::SVG},
        {"<?xml-stylesheet href='a.css'?><svg\nwidth='1'>", DocumentKind::SVG},
        {"<html>about <svg></html>", DocumentKind::PlainText},
        {"<!-- <svg> without an end", DocumentKind::PlainText},
        {"<svgx/>", DocumentKind::PlainText},
        {"<", DocumentKind::PlainText},
        {"Shelf 4\tB\r\nfragile\f", DocumentKind::PlainText},
        {"Gr\xc3\xb6\xc3\x9f"
         "e",
         DocumentKind::PlainText},
        {wide("\xff\xfe"
              "A\0",
              4),
         DocumentKind::PlainText},
    };
    for (const Row& row : rows) {
        const Answer answer = answerFor(row.content);
        const auto* kind = std::get_if<Kind>(&answer);
        ASSERT_TRUE(kind) << row.content.toStdString();
        EXPECT_EQ(kind->kind, row.kind) << row.content.toStdString();
    }
}

TEST(DocumentKindTest, OfAnythingElseIsUnknown) {
    const QByteArray others[] = {"PK\x03\x04 archive", wide("text\0text", 9),
                                 "Gr\xf6\xdf"
                                 "e in Latin-1",
                                 wide("\xff\xfe\0\xd8", 4)};
    for (const QByteArray& content : others) {
        const Answer answer = answerFor(content);
        const auto* failed = std::get_if<Failed>(&answer);
        ASSERT_TRUE(failed) << content.toStdString();
        EXPECT_EQ(failed->problem, Problem::UnknownKind) << content.toStdString();
    }
}

TEST(DocumentKindTest, ATextIsTooLongBeyondItsLimitAndAnArchiveIsNot) {
    const QByteArray longest(kLargestText, 'x');
    EXPECT_TRUE(std::holds_alternative<Kind>(answerFor(longest)));
    const Answer longer = answerFor(longest + 'x');
    ASSERT_TRUE(std::holds_alternative<Failed>(longer));
    EXPECT_EQ(std::get<Failed>(longer).problem, Problem::TextTooLong);
    const Answer archive = answerFor("PK\x03\x04" + longest);
    ASSERT_TRUE(std::holds_alternative<Failed>(archive));
    EXPECT_EQ(std::get<Failed>(archive).problem, Problem::UnknownKind);
}

} // namespace labelcut::worker
