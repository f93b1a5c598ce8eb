// What the strip says to a German. The program runs with German as its language.
#include <QLocale>

#include <gtest/gtest.h>

#include "host/strip/strip_words.h"
#include "tests/host/strip/strip_plans.h"

namespace labelcut {

namespace {

using test::planOf;

class StripGermanTest : public testing::Test {
protected:
    StripGermanTest() { QLocale::setDefault(QLocale(QStringLiteral("de_DE"))); }
};

TEST_F(StripGermanTest, FiguresAreGerman) {
    PlanInput input = planOf(1200, 24, 50.5);
    input.cuts->afterEach = PDECut::Full;
    input.cuts->lead = PDELead::Blank;
    input.cuts->afterLead = PDECut::Full;
    EXPECT_EQ(figuresText(JobPlan(input)).toStdString(),
              "1.200 Etiketten · mindestens 60600 mm Band von 24 mm · 1.201 Schnitte");
    input = planOf(1, 24, 50.5);
    input.cuts->afterEach = PDECut::Half;
    EXPECT_EQ(figuresText(JobPlan(input)).toStdString(),
              "1 Etikett · 50,5 mm Band von 24 mm · 1 Halbschnitt");
}

TEST_F(StripGermanTest, LabelsAreGerman) {
    PlanInput input = planOf(12);
    input.cuts->afterEach = PDECut::Full;
    EXPECT_EQ(labelText(JobPlan(input), 2).toStdString(),
              "Etikett 3 von 12, danach ganzer Schnitt");
    EXPECT_EQ(moreText(1088).toStdString(), "… 1.088 weitere …");
}

TEST_F(StripGermanTest, WhatDoesNotFitIsGerman) {
    PlanInput input = planOf(12);
    input.paper = test::labelPaper(24, 24);
    const JobPlan plan(input);
    const auto misfit = plan.misfit();
    ASSERT_TRUE(misfit.has_value());
    EXPECT_EQ(misfitText(plan, *misfit).toStdString(),
              "Die Seiten sind 24 mm × 50 mm groß, das Etikett 24 mm × 24 mm.");
}

} // namespace

} // namespace labelcut
