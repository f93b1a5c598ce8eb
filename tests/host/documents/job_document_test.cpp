// The job: its files as one PDF whose pages fit the paper.
#include "host/documents/job_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>

#include <atomic>
#include <chrono>
#include <thread>

#include "tests/support/job_fixtures.h"

namespace labelcut {

using testing::HasSubstr;

namespace {

const QSizeF kTape(68, 142);

JobPaper tape() {
    return {QStringLiteral("T24"), kTape, QRectF(3, 3, 62, 136)};
}

std::string refusal(const QString& path) {
    const Result<JobDocument> document = JobDocument::prepare({path}, tape());
    return document ? std::string("taken") : document.error().sentence.toStdString();
}

/// Path of the whole document, laid out on the tape.
QString laidOut(const JobDocument& document, worker::Fit fit) {
    const Result<QString> pdf = document.composed({{}, false, 1, tape(), fit});
    EXPECT_TRUE(pdf) << pdf.error().sentence.toStdString();
    return pdf ? *pdf : QString();
}

/// Whether `inner` lies within the printable area of the tape, half a point of rounding allowed.
bool isPrintable(const QRectF& inner) {
    return QRectF(3, 3, 62, 136).adjusted(-0.5, -0.5, 0.5, 0.5).contains(inner);
}

} // namespace

TEST(JobDocumentTest, APdfOfTheRightMeasureIsTakenAsItIs) {
    const test::Folder folder;
    const QString file = folder.pdf(QStringLiteral("a.pdf"), {kTape, kTape, {68.9, 141.2}});
    const Result<JobDocument> document = JobDocument::prepare({file}, tape());
    ASSERT_TRUE(document) << document.error().sentence.toStdString();
    EXPECT_EQ(test::contentOf(document->pdf()), test::contentOf(file));
    EXPECT_EQ(document->pages(), 3);
    EXPECT_EQ(document->name(), QStringLiteral("a.pdf"));
    EXPECT_TRUE(document->repaired().isEmpty());
}

TEST(JobDocumentTest, PagesOfOtherMeasuresAreLaidOutOnThePaper) {
    const test::Folder folder;
    const QString file =
        folder.pdf(QStringLiteral("a.pdf"), {kTape, {595, 842}, {142, 68}, {30, 40}});
    const Result<JobDocument> document = JobDocument::prepare({file}, tape());
    ASSERT_TRUE(document) << document.error().sentence.toStdString();
    EXPECT_EQ(test::contentOf(document->pdf()), test::contentOf(file)) << "the pages are kept";
    const QString sent = laidOut(*document, worker::Fit::Scale);
    EXPECT_EQ(test::pageSizes(sent), std::vector<QSizeF>(4, kTape));
    const std::vector<QRectF> boxes = test::inkBoxes(sent);
    ASSERT_EQ(boxes.size(), 4U);
    for (const QRectF& box : boxes)
        EXPECT_TRUE(isPrintable(box)) << box.x() << ' ' << box.y() << ' ' << box.right();
    EXPECT_GT(boxes[0].height(), 4 * boxes[1].height()) << "the large page was shrunk";
    EXPECT_NEAR(boxes[2].width(), boxes[0].height(), 1) << "the wide page was turned";
    EXPECT_NEAR(boxes[3].height(), boxes[0].height(), 0.5) << "the small page was not enlarged";
}

TEST(JobDocumentTest, ATurnedPageCountsAsItIsShown) {
    const test::Folder folder;
    QByteArray bytes = test::contentOf(folder.pdf(QStringLiteral("a.pdf"), {{142, 68}}));
    bytes.replace("/MediaBox", "/Rotate 90 /MediaBox");
    const QString file = folder.file(QStringLiteral("turned.pdf"), bytes);
    const Result<JobDocument> document = JobDocument::prepare({file}, tape());
    ASSERT_TRUE(document) << document.error().sentence.toStdString();
    ASSERT_EQ(document->pages(), 1);
    const std::vector<QRectF> boxes = test::inkBoxes(laidOut(*document, worker::Fit::Unchanged));
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_GT(boxes[0].width(), boxes[0].height()) << "a single upright figure 1 lies on its side";
}

TEST(JobDocumentTest, TellsAtWhichMeasureEachPageIsShown) {
    struct Row {
        const char* keys;
        QSizeF measure;
    };
    const Row rows[] = {
        {"/MediaBox [0 0 100 50]", {100, 50}},
        {"/MediaBox [20 70 120 20]", {100, 50}},
        {"/MediaBox [0 0 100 50] /Rotate 90", {50, 100}},
        {"/MediaBox [0 0 100 50] /Rotate -450", {50, 100}},
        {"/MediaBox [0 0 100 50] /Rotate 45", {100, 50}},
        {"/MediaBox [0 0 100 50] /UserUnit 2", {200, 100}},
        {"/MediaBox [0 0 100 50] /UserUnit -2", {100, 50}},
        {"/MediaBox [0 0 100 50] /CropBox [10 10 30 40]", {20, 30}},
        {"/MediaBox [0 0 100 50] /CropBox [10 -10 300 40]", {90, 40}},
        {"/MediaBox [0 0 100 50] /CropBox [200 0 300 40]", {100, 50}},
        {"/MediaBox [0 0 0.2835 0.2835]", {0.2835, 0.2835}}, // 0.1 mm
        {"/MediaBox [0 0 28346.5 100]", {28346.5, 100}},     // 10 m
        {"/MediaBox [0 0 3000000 100]", {1'000'000, 100}},
        {"/MediaBox [0 0 0 0]", {612, 792}},
        {"/MediaBox [0 0]", {612, 792}},
        {"", {612, 792}},
    };
    const test::Folder folder;
    const QByteArray plain = test::contentOf(folder.pdf(QStringLiteral("a.pdf"), {{7, 7}}));
    const qsizetype from = plain.indexOf("/MediaBox");
    const qsizetype to = plain.indexOf(']', from) + 1;
    QStringList files;
    for (const Row& row : rows) {
        QByteArray bytes = plain;
        bytes.replace(from, to - from, row.keys);
        files << folder.file(QStringLiteral("%1.pdf").arg(files.size()), bytes);
    }
    files << folder.pdf(QStringLiteral("two.pdf"), {{10, 20}, {30, 40}});
    const Result<JobDocument> document = JobDocument::prepare(files, std::nullopt);
    ASSERT_TRUE(document) << document.error().sentence.toStdString();
    std::vector<int> pages(std::size(rows), 1);
    pages.push_back(2);
    EXPECT_EQ(document->pagesOfFiles(), pages);
    ASSERT_EQ(document->measures().size(), std::size(rows) + 2);
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_NEAR(document->measures()[i].width(), rows[i].measure.width(), 1e-6) << rows[i].keys;
        EXPECT_NEAR(document->measures()[i].height(), rows[i].measure.height(), 1e-6)
            << rows[i].keys;
    }
    EXPECT_EQ(document->measures().back(), QSizeF(30, 40));
}

TEST(JobDocumentTest, SeveralFilesOfSeveralKindsBecomeOneDocument) {
    const test::Folder folder;
    const QStringList files{
        folder.pdf(QStringLiteral("a.pdf"), {kTape, kTape}),
        folder.file(QStringLiteral("b.ps"),
                    "%!PS\n<</PageSize[68 142]>>setpagedevice 9 9 20 20 rectfill showpage\n"),
        folder.picture(QStringLiteral("c.png"), "PNG", {40, 20}),
        folder.picture(QStringLiteral("d.jpg"), "JPEG", {20, 40}),
        folder.file(QStringLiteral("e.svg"),
                    "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10 30'>"
                    "<rect width='10' height='30'/></svg>"),
        folder.file(QStringLiteral("f.txt"), "first\fsecond\n")};
    const Result<JobDocument> document = JobDocument::prepare(files, tape());
    ASSERT_TRUE(document) << document.error().sentence.toStdString();
    EXPECT_EQ(document->pages(), 8);
    EXPECT_EQ(document->name(), QStringLiteral("a.pdf"));
    EXPECT_EQ(test::pageSizes(document->pdf()), std::vector<QSizeF>(8, kTape));
    const std::vector<QRectF> boxes = test::inkBoxes(document->pdf());
    ASSERT_EQ(boxes.size(), 8U);
    for (const QRectF& box : boxes) {
        EXPECT_FALSE(box.isEmpty());
        EXPECT_TRUE(isPrintable(box)) << box.x() << ' ' << box.y() << ' ' << box.right();
    }
    EXPECT_NEAR(boxes[3].width(), 62, 1) << "the wide picture is turned and fills the width";
    EXPECT_NEAR(boxes[3].height(), 124, 1);
    EXPECT_NEAR(boxes[4].height(), 124, 1) << "the high picture stays upright";
    EXPECT_NEAR(boxes[5].height(), 136, 1) << "the drawing fills the height";
}

TEST(JobDocumentTest, LongTextIsWrappedAndRunsOverPages) {
    const test::Folder folder;
    const QByteArray words = QByteArray("label ").repeated(600);
    const QByteArray oneWord(200, 'W');
    for (const QByteArray& text : {words, oneWord}) {
        const QString file = folder.file(QStringLiteral("long.txt"), text);
        const Result<JobDocument> document = JobDocument::prepare({file}, tape());
        ASSERT_TRUE(document) << document.error().sentence.toStdString();
        for (const QRectF& box : test::inkBoxes(document->pdf()))
            EXPECT_TRUE(isPrintable(box)) << box.x() << ' ' << box.right();
    }
    const Result<JobDocument> document =
        JobDocument::prepare({folder.file(QStringLiteral("words.txt"), words)}, tape());
    ASSERT_TRUE(document);
    EXPECT_GT(document->pages(), 3);
    EXPECT_EQ(test::inkBoxes(document->pdf()).size(), static_cast<std::size_t>(document->pages()));
}

TEST(JobDocumentTest, WithoutAPaperPagesKeepTheirMeasure) {
    const test::Folder folder;
    const QString file = folder.pdf(QStringLiteral("a.pdf"), {{595, 842}, {30, 40}});
    const Result<JobDocument> document = JobDocument::prepare({file}, std::nullopt);
    ASSERT_TRUE(document);
    EXPECT_EQ(test::contentOf(document->pdf()), test::contentOf(file));
}

TEST(JobDocumentTest, AnEncryptedPdfIsRefusedByName) {
    const test::Folder folder;
    EXPECT_THAT(refusal(folder.encryptedPdf(QStringLiteral("locked.pdf"))),
                HasSubstr("locked.pdf” is encrypted and asks for a password"));
}

TEST(JobDocumentTest, ABrokenPdfIsRefusedByName) {
    const test::Folder folder;
    const QByteArray whole = test::contentOf(folder.pdf(QStringLiteral("a.pdf"), {kTape}));
    EXPECT_THAT(refusal(folder.file(QStringLiteral("broken.pdf"), "%PDF-1.7\nnothing more")),
                HasSubstr("broken.pdf” is a broken PDF file ("));
    EXPECT_THAT(refusal(folder.file(QStringLiteral("cut.pdf"), whole.left(60))),
                HasSubstr("cut.pdf” is a broken PDF file ("));
}

TEST(JobDocumentTest, ADamagedPdfThatCanBeRepairedIsPrintedAndReported) {
    const test::Folder folder;
    QByteArray bytes = test::contentOf(folder.pdf(QStringLiteral("a.pdf"), {kTape, kTape}));
    bytes.truncate(bytes.indexOf("xref"));
    bytes += "trailer\n<< /Root 1 0 R /Size 8 >>\n";
    const QString file = folder.file(QStringLiteral("damaged.pdf"), bytes);
    const Result<JobDocument> document = JobDocument::prepare({file}, tape());
    ASSERT_TRUE(document) << document.error().sentence.toStdString();
    EXPECT_EQ(document->pages(), 2);
    EXPECT_EQ(document->repaired(), QStringList{file});
    EXPECT_NE(test::contentOf(document->pdf()), bytes);
    EXPECT_EQ(test::inkBoxes(document->pdf()).size(), 2U);
}

TEST(JobDocumentTest, APdfWithoutPagesIsRefused) {
    const test::Folder folder;
    EXPECT_THAT(refusal(folder.pdf(QStringLiteral("none.pdf"), {})), HasSubstr("has no pages"));
}

TEST(JobDocumentTest, DamagedPicturesDrawingsAndProgramsAreRefusedByName) {
    const test::Folder folder;
    const QByteArray png =
        test::contentOf(folder.picture(QStringLiteral("a.png"), "PNG", {40, 20}));
    EXPECT_THAT(refusal(folder.file(QStringLiteral("cut.png"), png.left(20))),
                HasSubstr("cut.png” is a damaged or too large picture"));
    EXPECT_THAT(refusal(folder.file(QStringLiteral("wrong.ps"), "%!PS\nnoSuchOperator\n")),
                HasSubstr("wrong.ps” cannot be interpreted by Ghostscript: /undefined in "
                          "noSuchOperator"));
}

TEST(JobDocumentTest, ADocumentCannotReadOtherFiles) {
    const test::Folder folder;
    const QString secret = folder.file(QStringLiteral("secret.txt"), "secret");
    const QString file =
        folder.file(QStringLiteral("spy.ps"),
                    "%!PS\n(" + QFile::encodeName(secret) + ") (r) file pop showpage\n");
    EXPECT_THAT(refusal(file), HasSubstr("spy.ps” cannot be interpreted by Ghostscript: "
                                         "/invalidfileaccess in --file--"));
}

TEST(JobDocumentTest, WhatBecomesOfTheFileAfterwardsChangesNothing) {
    const test::Folder folder;
    const QString file = folder.pdf(QStringLiteral("a.pdf"), {kTape, kTape});
    const QByteArray before = test::contentOf(file);
    const Result<JobDocument> document = JobDocument::prepare({file}, tape());
    ASSERT_TRUE(document);
    folder.file(QStringLiteral("a.pdf"), before.left(100));
    EXPECT_EQ(test::contentOf(document->pdf()), before);
}

TEST(JobDocumentTest, TheDigestsTellAChangedFileFromTheOthers) {
    const test::Folder folder;
    const auto digests = [&](const QByteArray& second) {
        const QStringList files{folder.file(QStringLiteral("a.txt"), "same"),
                                folder.file(QStringLiteral("b.txt"), second)};
        const Result<JobDocument> document = JobDocument::prepare(files, tape());
        return document ? document->digests() : QByteArrayList();
    };
    const QByteArrayList before = digests("one");
    ASSERT_EQ(before.size(), 2);
    EXPECT_EQ(digests("one"), before);
    const QByteArrayList after = digests("two");
    ASSERT_EQ(after.size(), 2);
    EXPECT_EQ(after[0], before[0]);
    EXPECT_NE(after[1], before[1]);
}

TEST(JobDocumentTest, AFileThatIsBeingWrittenIsRefusedByName) {
    const test::Folder folder;
    const QString path =
        folder.file(QStringLiteral("growing.ps"), "%!PS\n" + QByteArray(20'000'000, ' '));
    std::atomic<bool> isOver = false;
    std::thread writer([&] {
        QFile file(path);
        if (!file.open(QIODevice::Append | QIODevice::Unbuffered))
            return;
        while (!isOver) {
            file.write(" ");
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    const std::string said = refusal(path);
    isOver = true;
    writer.join();
    EXPECT_THAT(said, HasSubstr("growing.ps” was being changed while it was read"));
}

TEST(JobDocumentTest, ThePrivateFolderGoesWithTheDocument) {
    const test::Folder folder;
    QString inner;
    {
        const Result<JobDocument> document = JobDocument::prepare(
            {folder.picture(QStringLiteral("c.png"), "PNG", {40, 20})}, tape());
        ASSERT_TRUE(document);
        inner = document->folder();
        EXPECT_TRUE(QFile::exists(inner));
    }
    EXPECT_FALSE(QFile::exists(inner));
}

} // namespace labelcut
