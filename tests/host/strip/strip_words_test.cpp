// What the strip says in words.
#include "host/strip/strip_words.h"

#include <gtest/gtest.h>

#include "tests/host/strip/strip_plans.h"

namespace labelcut {

namespace {

using test::labelPaper;
using test::planOf;

class StripWordsTest : public testing::Test {
protected:
    static std::string figures(const PlanInput& input) {
        return figuresText(JobPlan(input)).toStdString();
    }
    static std::string misfit(const PlanInput& input) {
        const JobPlan plan(input);
        const auto found = plan.misfit();
        return found ? misfitText(plan, *found).toStdString() : std::string();
    }
};

TEST_F(StripWordsTest, FiguresNameLabelsTapeAndCuts) {
    PlanInput input = planOf(12);
    input.cuts->afterEach = PDECut::Full;
    input.cuts->lead = PDELead::Blank;
    input.cuts->afterLead = PDECut::Full;
    EXPECT_EQ(figures(input), "12 labels · at least 600 mm of 24 mm tape · 13 cuts");
    input.copies = 100;
    EXPECT_EQ(figures(input), "1,200 labels · at least 60000 mm of 24 mm tape · 1,201 cuts");
}

TEST_F(StripWordsTest, OneLabelAndOneCutAreSingular) {
    PlanInput input = planOf(1);
    input.cuts->afterEach = PDECut::Full;
    EXPECT_EQ(figures(input), "1 label · 50 mm of 24 mm tape · 1 cut");
    input.cuts->afterEach = PDECut::Half;
    EXPECT_EQ(figures(input), "1 label · 50 mm of 24 mm tape · 1 half cut");
    input.cuts->afterEach = PDECut::ByHand;
    EXPECT_EQ(figures(input), "1 label · 50 mm of 24 mm tape · 1 cut by hand");
}

TEST_F(StripWordsTest, CutsOfEachKindAreCountedForThemselves) {
    PlanInput input = planOf(4);
    EXPECT_EQ(figures(input), "4 labels · 200 mm of 24 mm tape · no cut");
    input.cuts->afterEach = PDECut::Half;
    EXPECT_EQ(figures(input), "4 labels · 200 mm of 24 mm tape · 4 half cuts");
    input.cuts->afterLast = PDECut::Full;
    EXPECT_EQ(figures(input), "4 labels · 200 mm of 24 mm tape · 1 cut · 3 half cuts");
    input.cuts->afterEach = PDECut::ByHand;
    input.cuts->afterLast.reset();
    EXPECT_EQ(figures(input), "4 labels · 200 mm of 24 mm tape · 4 cuts by hand");
}

TEST_F(StripWordsTest, NothingIsSaidOfCutsThatNobodyKnows) {
    PlanInput input = planOf(2);
    input.cuts.reset();
    EXPECT_EQ(figures(input), "2 labels · 100 mm of 24 mm tape");
    input.paper.reset();
    EXPECT_EQ(figures(input), "2 labels · 100 mm");
}

TEST_F(StripWordsTest, TheLengthSaysHowSureItIs) {
    PlanInput input = planOf(2);
    input.cuts->removesBlankSpace = true;
    EXPECT_EQ(figures(input), "2 labels · at most 100 mm of 24 mm tape · no cut");
    input.cuts->medium = PDEMedium::Labels;
    EXPECT_EQ(figures(input), "2 labels · about 100 mm of 24 mm tape · no cut");
    input.cuts->removesBlankSpace = false;
    EXPECT_EQ(figures(input), "2 labels · at least 100 mm of 24 mm tape · no cut");
}

TEST_F(StripWordsTest, ALabelNamesItsNumberAndTheCutAfterIt) {
    PlanInput input = planOf(1500);
    for (const auto& [cut, words] :
         {std::pair(PDECut::None, "no cut after it"), std::pair(PDECut::Half, "half cut after it"),
          std::pair(PDECut::ByHand, "to be cut by hand after it"),
          std::pair(PDECut::Full, "full cut after it")}) {
        input.cuts->afterEach = cut;
        EXPECT_EQ(labelText(JobPlan(input), 1233).toStdString(),
                  std::string("Label 1,234 of 1,500, ") + words);
    }
}

TEST_F(StripWordsTest, WhatIsLeftOutIsANumber) {
    EXPECT_EQ(moreText(88).toStdString(), "… 88 more …");
    EXPECT_EQ(moreText(999'999'990).toStdString(), "… 999,999,990 more …");
}

TEST_F(StripWordsTest, PagesThatAreNotWholeAreNamedWithTheirMeasure) {
    PlanInput input = planOf(12);
    EXPECT_EQ(misfit(input), std::string());
    input.paper = labelPaper(24, 24);
    EXPECT_EQ(misfit(input), "The pages are 24 mm × 50 mm, the label is 24 mm × 24 mm.");
    input = planOf(1);
    input.paper = labelPaper(24, 24);
    EXPECT_EQ(misfit(input), "The page is 24 mm × 50 mm, the label is 24 mm × 24 mm.");
}

/// One of many, two of many, and so on.
TEST_F(StripWordsTest, PagesThatAreNotWholeAmongOthersAreCounted) {
    const auto withLong = [](std::initializer_list<std::size_t> pages) {
        PlanInput input = planOf(12, 24, 24);
        auto document = std::make_shared<DocumentPages>(*input.document);
        for (const std::size_t page : pages)
            document->measures[page - 1] = test::millimetres(24, 50);
        input.document = document;
        return input;
    };
    EXPECT_EQ(misfit(withLong({5})), "Page 5 is 24 mm × 50 mm, the label is 24 mm × 24 mm.");
    EXPECT_EQ(misfit(withLong({5, 9})),
              "Page 5 is 24 mm × 50 mm, the label is 24 mm × 24 mm; 1 more page "
              "does not fit either.");
    EXPECT_EQ(misfit(withLong({5, 9, 10})),
              "Page 5 is 24 mm × 50 mm, the label is 24 mm × 24 mm; 2 more pages "
              "do not fit either.");
    // What is not printed needs not fit.
    PlanInput input = withLong({5, 9});
    input.pages = PageSelection(PageRange{6, 8});
    EXPECT_EQ(misfit(input), std::string());
}

TEST_F(StripWordsTest, PagesThatAreAllPrintedOfAFewAreAllOfThem) {
    PlanInput input = planOf(12);
    input.paper = labelPaper(24, 24);
    input.pages = PageSelection(PageRange{3, 4});
    EXPECT_EQ(misfit(input), "The pages are 24 mm × 50 mm, the label is 24 mm × 24 mm.");
}

} // namespace

} // namespace labelcut
