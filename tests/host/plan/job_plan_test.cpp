// The job label by label, beside a reckoning that walks through every label.
#include "host/plan/job_plan.h"

#include <gtest/gtest.h>

#include <random>

namespace labelcut {

namespace {

constexpr PDECut kAllCuts[] = {PDECut::None, PDECut::Half, PDECut::ByHand, PDECut::Full};

std::shared_ptr<const DocumentPages> documentOf(std::vector<int> ofFiles,
                                                QSizeF measure = {68, 142}) {
    auto pages = std::make_shared<DocumentPages>();
    pages->ofFiles = std::move(ofFiles);
    for (const int count : pages->ofFiles)
        pages->measures.insert(pages->measures.end(), static_cast<std::size_t>(count), measure);
    return pages;
}

JobPaper paper(double width = 68, double height = 142) {
    return {QStringLiteral("DC24"), {width, height}, {3, 3, width - 6, height - 6}};
}

PlanInput inputOf(int pages) {
    PlanInput input;
    input.document = documentOf({pages});
    input.paper = paper();
    input.cuts.emplace();
    return input;
}

QList<int> pagesOf(const JobPlan& plan) {
    QList<int> pages;
    for (std::int64_t i = 0; i < plan.labels(); ++i)
        pages << plan.pageAt(i);
    return pages;
}

} // namespace

TEST(JobPlan, PutsLabelsInTheirOrder) {
    PlanInput input = inputOf(5);
    input.pages = *parsePageSelection(QStringLiteral("1,3-4"));
    input.copies = 2;
    EXPECT_EQ(pagesOf(JobPlan(input)), (QList<int>{1, 3, 4, 1, 3, 4}));
    input.isReversed = true;
    EXPECT_EQ(pagesOf(JobPlan(input)), (QList<int>{4, 3, 1, 4, 3, 1}));
    input.isCollated = false;
    EXPECT_EQ(pagesOf(JobPlan(input)), (QList<int>{4, 4, 3, 3, 1, 1}));
    EXPECT_EQ(JobPlan(input).label(3).copy, 2);
}

TEST(JobPlan, OfPagesThatAreNotThereHasNoLabels) {
    PlanInput input = inputOf(3);
    input.pages = *parsePageSelection(QStringLiteral("4-"));
    const JobPlan plan(input);
    EXPECT_EQ(plan.labels(), 0);
    EXPECT_EQ(plan.figures().fullCuts, 0);
    EXPECT_EQ(plan.figures().length, 0);
    EXPECT_FALSE(plan.misfit());
}

TEST(JobPlan, MakesTheStrongestCutThatComesToAPlace) {
    PlanInput input = inputOf(3);
    input.copies = 2;
    input.cuts->afterEach = PDECut::Half;
    input.cuts->afterSet = PDECut::Full;
    const JobPlan plan(input);
    EXPECT_EQ(plan.cutAfter(1), PDECut::Half);
    EXPECT_EQ(plan.cutAfter(2), PDECut::Full);
    EXPECT_EQ(plan.cutAfter(5), PDECut::Full);
}

TEST(JobPlan, ThePrinterKnowsNoSetsOfCopiesThatComeTogether) {
    PlanInput input = inputOf(3);
    input.copies = 2;
    input.isCollated = false;
    input.cuts->afterSet = PDECut::Full;
    const JobPlan plan(input);
    EXPECT_EQ(plan.figures().fullCuts, 1);
    EXPECT_EQ(plan.cutAfter(5), PDECut::Full);
}

TEST(JobPlan, TheLastLabelFollowsARuleOfItsOwn) {
    PlanInput input = inputOf(4);
    input.cuts->afterEach = PDECut::Full;
    EXPECT_EQ(JobPlan(input).cutAfter(3), PDECut::Full);
    input.cuts->afterLast = PDECut::None;
    EXPECT_EQ(JobPlan(input).cutAfter(3), PDECut::None);
    EXPECT_EQ(JobPlan(input).cutAfter(2), PDECut::Full);
}

TEST(JobPlan, CountsCutsAsAWalkThroughAllLabelsDoes) {
    std::mt19937 random(7);
    const auto upTo = [&random](int most) {
        return std::uniform_int_distribution<int>(0, most)(random);
    };
    for (int round = 0; round < 3'000; ++round) {
        PlanInput input = inputOf(1 + upTo(20));
        input.copies = 1 + upTo(6);
        input.isReversed = upTo(1) == 1;
        input.isCollated = upTo(1) == 1;
        if (upTo(1) == 1)
            input.pages = PageSelection({{1 + upTo(9), 10 + upTo(15)}, {3 + upTo(3), 7}});
        PDECutPlan& cuts = *input.cuts;
        cuts.afterEach = kAllCuts[upTo(3)];
        cuts.afterGroup = kAllCuts[upTo(3)];
        cuts.groupSize = upTo(7) - 1;
        cuts.afterSet = kAllCuts[upTo(3)];
        if (upTo(1) == 1)
            cuts.afterLast = kAllCuts[upTo(3)];
        cuts.lead = upTo(1) == 1 ? PDELead::Blank : PDELead::Chained;
        cuts.afterLead = kAllCuts[upTo(3)];
        const JobPlan plan(input);
        std::map<PDECut, std::int64_t> counted;
        for (std::int64_t i = 0; i < plan.labels(); ++i)
            ++counted[plan.cutAfter(i)];
        if (cuts.lead == PDELead::Blank && plan.labels() > 0)
            ++counted[cuts.afterLead];
        const PlanFigures figures = plan.figures();
        EXPECT_EQ(figures.fullCuts, counted[PDECut::Full]) << round;
        EXPECT_EQ(figures.halfCuts, counted[PDECut::Half]) << round;
        EXPECT_EQ(figures.handCuts, counted[PDECut::ByHand]) << round;
    }
}

TEST(JobPlan, MeasuresTheTape) {
    PlanInput input = inputOf(3);
    input.copies = 4;
    EXPECT_EQ(JobPlan(input).figures().length, 12 * 142.0);
    input.paper.reset();
    auto pages = std::make_shared<DocumentPages>();
    pages->ofFiles = {2};
    pages->measures = {{68, 100}, {68, 30}};
    input.document = pages;
    EXPECT_EQ(JobPlan(input).figures().length, 4 * 130.0);
}

TEST(JobPlan, SaysWhereTheDescriptionDoesNotSettleTheLength) {
    using Meaning = PlanFigures::Meaning;
    struct Row {
        PDELead lead;
        PDEMedium medium;
        bool removes;
        Meaning expected;
    };
    const Row rows[] = {{PDELead::Chained, PDEMedium::Tape, false, Meaning::Exactly},
                        {PDELead::Blank, PDEMedium::Tape, false, Meaning::AtLeast},
                        {PDELead::Blank, PDEMedium::Tape, true, Meaning::About},
                        {PDELead::Chained, PDEMedium::Tape, true, Meaning::AtMost},
                        {PDELead::Unsaid, PDEMedium::Labels, false, Meaning::AtLeast}};
    for (const Row& row : rows) {
        PlanInput input = inputOf(3);
        input.cuts->lead = row.lead;
        input.cuts->medium = row.medium;
        input.cuts->removesBlankSpace = row.removes;
        EXPECT_EQ(JobPlan(input).figures().lengthIs, row.expected);
        EXPECT_EQ(JobPlan(input).figures().hasWaste, row.lead == PDELead::Blank);
    }
    PlanInput unknown = inputOf(3);
    unknown.cuts.reset();
    EXPECT_EQ(JobPlan(unknown).figures().lengthIs, Meaning::Exactly);
    EXPECT_EQ(JobPlan(unknown).figures().fullCuts, 0);
}

TEST(JobPlan, FindsThePagesThatAreNotWhole) {
    PlanInput input = inputOf(1);
    auto pages = std::make_shared<DocumentPages>();
    pages->ofFiles = {4};
    pages->measures = {{68, 142}, {68, 200}, {200, 68}, {68, 210}};
    input.document = pages;
    const auto misfit = JobPlan(input).misfit();
    ASSERT_TRUE(misfit);
    EXPECT_EQ(misfit->pages, 3);
    EXPECT_EQ(misfit->firstPage, 2);
    EXPECT_EQ(misfit->measure, QSizeF(68, 200));
    EXPECT_TRUE(misfit->place.losesEdge);
    input.pages = PageSelection(PageRange{1, 1});
    EXPECT_FALSE(JobPlan(input).misfit());
}

TEST(JobPlan, ReckonsMillionsOfLabelsWithoutWalkingThroughThem) {
    PlanInput input = inputOf(100'000);
    input.copies = 9'999;
    input.cuts->afterGroup = PDECut::Full;
    input.cuts->groupSize = 99;
    const JobPlan plan(input);
    EXPECT_EQ(plan.labels(), 999'900'000);
    EXPECT_EQ(plan.figures().fullCuts, 999'900'000 / 99);
}

TEST(JobPlan, FindsPagesInTheirFiles) {
    const auto document = documentOf({3, 1, 2});
    const std::pair<int, int> expected[] = {{1, 1}, {1, 2}, {1, 3}, {2, 1}, {3, 1}, {3, 2}};
    for (int page = 1; page <= 6; ++page) {
        const PageOfFile place = pageOfFile(*document, page);
        EXPECT_EQ(place.file, expected[page - 1].first);
        EXPECT_EQ(place.page, expected[page - 1].second);
    }
}

} // namespace labelcut
