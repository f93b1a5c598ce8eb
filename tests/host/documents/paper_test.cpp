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
    const Row rows[] = {{"3-5", PageRange{3, 5}},    {"3-", PageRange{3, PageRange::kToTheEnd}},
                        {"-5", PageRange{1, 5}},     {"3", PageRange{3, 3}},
                        {" 2-2 ", PageRange{2, 2}},  {"", std::nullopt},
                        {"-", std::nullopt},         {"0", std::nullopt},
                        {"0-3", std::nullopt},       {"5-3", std::nullopt},
                        {"1-2-3", std::nullopt},     {"a", std::nullopt},
                        {"9999999999", std::nullopt}};
    for (const Row& row : rows) {
        const auto pages = parsePageSelection(QString::fromLatin1(row.text));
        EXPECT_EQ(pages, row.range ? std::optional(PageSelection(*row.range)) : std::nullopt)
            << row.text;
    }
}

TEST(PaperTest, PageRangesAreWrittenAsTheyAreRead) {
    for (const char* text : {"3-5", "3-", "3"})
        EXPECT_EQ(toString(*parsePageSelection(QString::fromLatin1(text))),
                  QString::fromLatin1(text));
}

TEST(PageSelection, ReadsPagesAndRangesInEveryForm) {
    struct Row {
        const char* text;
        const char* written;
    };
    const Row rows[] = {{"1,3,5-7,9-", "1,3,5-7,9-"},
                        {"3,1", "1,3"},
                        {"1-3, 4 ,2-5", "1-5"},
                        {"5-,7", "5-"},
                        {"7,5-", "5-"},
                        {"-2,2", "1-2"},
                        {"1-", ""}};
    for (const Row& row : rows) {
        const auto selection = parsePageSelection(QString::fromLatin1(row.text));
        ASSERT_TRUE(selection) << row.text;
        EXPECT_EQ(toString(*selection), QString::fromLatin1(row.written)) << row.text;
    }
    for (const char* text : {"", ",", "1,", ",1", "1;3", "3-1,5", "0", "1,0-2", "a"})
        EXPECT_FALSE(parsePageSelection(QString::fromLatin1(text))) << text;
}

TEST(PageSelection, RefusesMoreRangesThanAnybodyTypes) {
    QStringList pages;
    for (std::size_t i = 0; i < PageSelection::kMostRanges; ++i)
        pages << QString::number(2 * i + 1);
    EXPECT_EQ(parsePageSelection(pages.join(u','))->ranges().size(), PageSelection::kMostRanges);
    EXPECT_FALSE(parsePageSelection(pages.join(u',') + QStringLiteral(",9999")));
}

TEST(PageSelection, CountsAndFindsItsPages) {
    const PageSelection some = *parsePageSelection(QStringLiteral("2,4-5,9-"));
    EXPECT_EQ(some.countIn(12), 7);
    EXPECT_EQ(some.countIn(4), 2);
    EXPECT_EQ(some.countIn(1), 0);
    const int expected[] = {2, 4, 5, 9, 10, 11, 12};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(some.pageAt(i), expected[i]);
    EXPECT_EQ(some.hull(), (PageRange{2, PageRange::kToTheEnd}));
    const PageSelection all;
    EXPECT_EQ(all.countIn(12), 12);
    EXPECT_EQ(all.pageAt(11), 12);
    EXPECT_TRUE(all.hull().isEverything());
}

} // namespace labelcut
