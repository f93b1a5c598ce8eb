// The job: the paper it is made for and the pages of it that are printed.
#include "host/documents/paper.h"
#include "host/job/marked_paper.h"

#include <gtest/gtest.h>

#include "tests/support/job_fixtures.h"

namespace labelcut {

TEST(PaperTest, TheMarkedPaperComesWithItsPrintableArea) {
    const ppd::File printer = test::tapePrinter();
    const auto paper = markedPaper(printer.get());
    ASSERT_TRUE(paper);
    EXPECT_EQ(paper->name, QStringLiteral("T24"));
    EXPECT_EQ(paper->size, QSizeF(68, 142));
    EXPECT_EQ(paper->printable, QRectF(3, 3, 62, 136));
}

TEST(PaperTest, ACustomPaperHasTheMeasureItWasMarkedWith) {
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::markOption(printer.get(), "PageSize", "Custom.50x300"));
    const auto paper = markedPaper(printer.get());
    ASSERT_TRUE(paper);
    EXPECT_EQ(paper->size, QSizeF(50, 300));
    EXPECT_EQ(paper->printable, QRectF(3, 3, 44, 294));
}

TEST(PaperTest, WithoutAPrinterOrAMarkThereIsNoPaper) {
    EXPECT_FALSE(markedPaper(nullptr));
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::unmarkOption(printer.get(), "PageSize"));
    EXPECT_EQ(markedPaper(printer.get()).has_value(), false);
}

TEST(PaperTest, PageRangesAreReadInEveryForm) {
    struct Row {
        const char* text;
        std::optional<PageRange> range;
    };
    const Row rows[] = {{"3-5", PageRange{3, 5}},   {"3-", PageRange{3, PageRange::kToTheEnd}},
                        {"-5", PageRange{1, 5}},    {"3", PageRange{3, 3}},
                        {" 2-2 ", PageRange{2, 2}}, {"", std::nullopt},
                        {"-", std::nullopt},        {"0", std::nullopt},
                        {"0-3", std::nullopt},      {"5-3", std::nullopt},
                        {"1-2-3", std::nullopt},    {"a", std::nullopt},
                        {"1,3", std::nullopt},      {"9999999999", std::nullopt}};
    for (const Row& row : rows)
        EXPECT_EQ(parsePageRange(QString::fromLatin1(row.text)), row.range) << row.text;
}

TEST(PaperTest, PageRangesAreWrittenAsTheyAreRead) {
    for (const char* text : {"3-5", "3-", "3"})
        EXPECT_EQ(toString(*parsePageRange(QString::fromLatin1(text))), QString::fromLatin1(text));
}

} // namespace labelcut
