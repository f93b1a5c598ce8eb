// Where lead, labels, joints and the printer's mouth lie.
#include "host/strip/strip_scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/host/strip/strip_plans.h"

namespace labelcut {

namespace {

using test::millimetres;
using test::planOf;

constexpr int kWidth = 760;
constexpr int kLine = 16;

StripRoom room(int width = kWidth, std::int64_t first = 0, StripWay way = StripWay::Along,
               double zoom = 1) {
    return {QSize(width, stripHeight(kLine)), kLine, way, zoom, first};
}

PlanInput withLead(PlanInput input) {
    input.cuts->lead = PDELead::Blank;
    return input;
}

/// Labels of any measure, without a paper.
PlanInput loose(const std::vector<QSizeF>& measures) {
    auto document = std::make_shared<DocumentPages>();
    document->ofFiles = {static_cast<int>(measures.size())};
    document->measures = measures;
    PlanInput input;
    input.document = document;
    input.cuts.emplace();
    return input;
}

/// Labels from the first in sight on that follow each other without a gap.
std::size_t inARow(const StripScene& scene) {
    return scene.cells.size() - (scene.more > 0 ? 1 : 0);
}

/// What holds for every scene, whatever it is made of.
void expectInOrder(const JobPlan& plan, const StripRoom& room) {
    const StripScene scene = sceneOf(plan, room);
    const std::int64_t first = std::clamp<std::int64_t>(room.first, 0, scene.lastFirst);
    ASSERT_FALSE(scene.cells.empty());
    EXPECT_GT(scene.scale, 0);
    EXPECT_GE(scene.lastFirst, 0);
    EXPECT_LT(scene.lastFirst, plan.labels());
    EXPECT_EQ(scene.cells.front().index, first);
    EXPECT_EQ(scene.cells.back().index, plan.labels() - 1);
    const std::size_t row = inARow(scene);
    for (std::size_t i = 0; i < row; ++i)
        EXPECT_EQ(scene.cells[i].index, first + static_cast<std::int64_t>(i));
    if (scene.more > 0) {
        EXPECT_EQ(scene.more, plan.labels() - 1 - first - static_cast<std::int64_t>(row));
    }
    EXPECT_EQ(scene.more > 0, !scene.moreRect.isNull());
    EXPECT_EQ(scene.lead.isNull(), scene.leadJoint.isNull());
    int x = scene.lead.isNull() ? 0 : scene.leadJoint.right() + 1;
    for (const StripCell& cell : scene.cells) {
        EXPECT_GE(cell.label.left(), x);
        EXPECT_GE(cell.label.width(), 1);
        EXPECT_GE(cell.label.height(), 1);
        x = cell.label.right() + 1;
    }
}

TEST(StripScene, LaysLabelsBesideEachOtherWithAJointBehindEach) {
    const JobPlan plan(planOf(3));
    const StripScene scene = sceneOf(plan, room());
    ASSERT_EQ(scene.cells.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        const StripCell& cell = scene.cells[i];
        EXPECT_EQ(cell.joint.left(), cell.label.right() + 1);
        EXPECT_EQ(cell.joint.top(), cell.label.top());
        EXPECT_EQ(cell.joint.height(), cell.label.height());
        const int next = i < 2 ? scene.cells[i + 1].label.left() : scene.mouth.left();
        EXPECT_EQ(cell.joint.right() + 1, next);
        // A label of 24 × 50 mm lies with its 50 mm along the strip.
        EXPECT_NEAR(cell.label.width(), millimetres(24, 50).height() * scene.scale, 0.51);
        EXPECT_NEAR(cell.label.height(), millimetres(24, 50).width() * scene.scale, 0.51);
    }
    EXPECT_LE(scene.mouth.right(), kWidth);
    EXPECT_LT(scene.mouth.top(), scene.cells.front().label.top());
    EXPECT_GT(scene.mouth.bottom(), scene.cells.front().label.bottom());
    EXPECT_TRUE(scene.lead.isNull());
    EXPECT_EQ(scene.more, 0);
    EXPECT_EQ(scene.lastFirst, 0);
}

TEST(StripScene, JointsOfLabelsThatStandUprightLieBelowThem) {
    const JobPlan plan(withLead(planOf(3, 30, 40)));
    const StripScene scene = sceneOf(plan, room(kWidth, 0, StripWay::Upright));
    ASSERT_EQ(scene.cells.size(), 3U);
    for (const StripCell& cell : scene.cells) {
        EXPECT_GT(cell.label.height(), cell.label.width());
        EXPECT_EQ(cell.joint.top(), cell.label.bottom() + 1);
        EXPECT_EQ(cell.joint.left(), cell.label.left());
        EXPECT_EQ(cell.joint.width(), cell.label.width());
        EXPECT_LE(cell.joint.bottom(), stripHeight(kLine));
    }
    EXPECT_TRUE(scene.mouth.isNull());
    EXPECT_TRUE(scene.lead.isNull());
}

TEST(StripScene, TheBlankLeadLiesInFrontOfTheFirstLabelAlone) {
    const JobPlan plan(withLead(planOf(40)));
    const StripScene start = sceneOf(plan, room());
    ASSERT_FALSE(start.lead.isNull());
    EXPECT_EQ(start.leadJoint.left(), start.lead.right() + 1);
    EXPECT_EQ(start.cells.front().label.left(), start.leadJoint.right() + 1);
    EXPECT_EQ(start.lead.top(), start.cells.front().label.top());
    EXPECT_EQ(start.lead.height(), start.cells.front().label.height());
    const StripScene later = sceneOf(plan, room(kWidth, 1));
    EXPECT_TRUE(later.lead.isNull());
    EXPECT_TRUE(later.leadJoint.isNull());
    EXPECT_EQ(later.scale, start.scale);
    EXPECT_EQ(later.lastFirst, start.lastFirst);
}

TEST(StripScene, TheLeadIsThereWhenMoreWasScrolledThanThereIs) {
    const StripScene scene = sceneOf(JobPlan(withLead(planOf(2))), room(kWidth, 30));
    EXPECT_EQ(scene.cells.front().index, 0);
    EXPECT_FALSE(scene.lead.isNull());
}

/// Nobody could see the label that is left out otherwise.
TEST(StripScene, ScrollsPastALeadThatLeavesNoRoomForTheLabels) {
    int cases = 0;
    for (int width = 200; width < 1200; ++width) {
        const JobPlan plan(withLead(loose(
            {millimetres(24, 50), millimetres(24, 60), millimetres(24, 90), millimetres(24, 50)})));
        const StripScene scene = sceneOf(plan, room(width));
        if (scene.more == 0)
            continue;
        ++cases;
        EXPECT_GE(scene.lastFirst, 1) << width;
    }
    EXPECT_GT(cases, 0);
}

TEST(StripScene, ShowsAllLabelsWhereTheyNeedNotBeMuchSmallerForThat) {
    const double full = sceneOf(JobPlan(planOf(1)), room(4000)).scale;
    bool wasAll = true;
    for (int labels = 1; labels < 30; ++labels) {
        const StripScene scene = sceneOf(JobPlan(planOf(labels)), room());
        const bool isAll = scene.cells.size() == static_cast<std::size_t>(labels);
        // So many of them fit at a smallest scale, and from then on none of the scales is smaller.
        const double needed = ((kWidth - 42.0) / labels - 15) / millimetres(24, 50).height() / full;
        EXPECT_EQ(isAll, needed >= 0.6 || labels == 1) << labels;
        EXPECT_TRUE(wasAll || !isAll) << labels;
        EXPECT_GE(scene.scale, 0.6 * full) << labels;
        EXPECT_NEAR(scene.scale, isAll ? std::min(full, needed * full) : full, 1e-9) << labels;
        wasAll = isAll;
    }
    EXPECT_FALSE(wasAll);
}

TEST(StripScene, ReckonsWhatIsLeftOutForEveryPlaceToScrollTo) {
    for (const bool hasLead : {false, true}) {
        for (const StripWay way : {StripWay::Along, StripWay::Upright}) {
            PlanInput input = planOf(40);
            const JobPlan plan(hasLead ? withLead(input) : input);
            for (std::int64_t first = -1; first <= 41; ++first) {
                SCOPED_TRACE(first);
                expectInOrder(plan, room(kWidth, first, way));
            }
        }
    }
}

TEST(StripScene, TheLastLabelIsAlwaysInSight) {
    for (const double length : {10.0, 50.0, 90.0, 220.0})
        for (const int labels : {1, 2, 3, 4, 9, 100})
            for (const int width : {700, 760, 1024, 1900}) {
                const JobPlan plan(withLead(planOf(labels, 24, length)));
                const std::int64_t end = sceneOf(plan, room(width)).lastFirst;
                for (std::int64_t first = 0; first <= end; ++first) {
                    const StripScene scene = sceneOf(plan, room(width, first));
                    EXPECT_LE(scene.mouth.right(), width)
                        << labels << " of " << length << " from " << first << " in " << width;
                }
            }
}

TEST(StripScene, ScrollingEndsWhereTheRestIsInSight) {
    const JobPlan plan(planOf(100));
    const std::int64_t end = sceneOf(plan, room()).lastFirst;
    EXPECT_GT(end, 90);
    const StripScene atEnd = sceneOf(plan, room(kWidth, end));
    EXPECT_EQ(atEnd.more, 0);
    EXPECT_EQ(atEnd.cells.size(), static_cast<std::size_t>(100 - end));
    EXPECT_GT(sceneOf(plan, room(kWidth, end - 1)).cells.size(), 1U);
    EXPECT_EQ(sceneOf(plan, room(kWidth, end + 50)).cells.front().index, end);
    // One label more would not have fitted.
    const int before = atEnd.cells.front().joint.right() + 1 - atEnd.cells.front().label.left();
    EXPECT_GT(atEnd.mouth.right() + before, kWidth - 6);
}

TEST(StripScene, ALabelAloneLeavesSomeOfTheWindowFree) {
    const StripScene scene = sceneOf(JobPlan(planOf(1, 24, 200)), room());
    ASSERT_EQ(scene.cells.size(), 1U);
    EXPECT_LE(scene.cells.front().label.width(), 0.6 * kWidth);
    EXPECT_EQ(scene.lastFirst, 0);
}

TEST(StripScene, LabelsOfDifferentMeasuresHaveOneScale) {
    const std::vector<QSizeF> sizes{millimetres(24, 50), millimetres(24, 30), millimetres(12, 60)};
    const StripScene scene = sceneOf(JobPlan(loose(sizes)), room());
    ASSERT_EQ(scene.cells.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(scene.cells[i].label.width(), sizes[i].height() * scene.scale, 0.51);
        EXPECT_NEAR(scene.cells[i].label.height(), sizes[i].width() * scene.scale, 0.51);
    }
}

TEST(StripScene, ALabelThatIsMuchLargerThanTheFirstStaysInSight) {
    const std::vector<QSizeF> sizes{millimetres(12, 20), millimetres(120, 20),
                                    millimetres(12, 2000), millimetres(12, 20)};
    const JobPlan plan(loose(sizes));
    for (std::int64_t first = 0; first <= sceneOf(plan, room()).lastFirst; ++first) {
        for (const StripCell& cell : sceneOf(plan, room(kWidth, first)).cells) {
            EXPECT_LE(cell.label.bottom(), stripHeight(kLine) - kLine) << cell.index;
            // No thinner than a finger, though it is longer than the window then.
            EXPECT_GE(cell.label.height(), 23) << cell.index;
        }
    }
}

TEST(StripScene, MeasuresThatNobodyPrintsHavePlacesToo) {
    const QSizeF absurd[] = {{0, 0},     {0, 142}, {68, 0},  {1e6, 68},    {68, 1e6},
                             {1e6, 1e6}, {1e9, 1}, {1, 1e9}, {1e-9, 1e-9}, {28346, 28346}};
    for (const QSizeF& size : absurd)
        for (const int labels : {1, 2, 12})
            for (const StripWay way : {StripWay::Along, StripWay::Upright})
                for (const int width : {0, 1, 60, 240, kWidth}) {
                    SCOPED_TRACE(testing::Message()
                                 << size.width() << " x " << size.height() << " in " << width);
                    const JobPlan plan(
                        withLead(loose(std::vector(static_cast<std::size_t>(labels), size))));
                    expectInOrder(plan, room(width, 0, way));
                    expectInOrder(plan, room(width, 1, way, 8));
                }
}

/// Nothing is made for labels that are out of sight, or this would never end.
TEST(StripScene, ABillionLabelsTakeNoMorePlacesThanAHundred) {
    PlanInput input = planOf(10);
    input.copies = 100'000'000;
    const JobPlan plan(input);
    ASSERT_EQ(plan.labels(), 1'000'000'000);
    const std::size_t cells = sceneOf(JobPlan(planOf(100)), room()).cells.size();
    for (const std::int64_t first :
         {std::int64_t{0}, std::int64_t{500'000'000}, std::int64_t{999'999'999}}) {
        expectInOrder(plan, room(kWidth, first));
        EXPECT_LE(sceneOf(plan, room(kWidth, first)).cells.size(), cells + 1);
    }
}

TEST(StripScene, EveryStepOfTheZoomChangesTheScale) {
    // Three labels are shown smaller than they could be, so that all are in sight.
    for (const int labels : {1, 3, 40}) {
        const JobPlan plan(planOf(labels));
        StripRoom high = room();
        high.size.setHeight(1000);
        double before = 0;
        for (double zoom = 0.5; zoom <= 8; zoom *= 1.25) {
            high.zoom = zoom;
            const double scale = sceneOf(plan, high).scale;
            if (before > 0) {
                EXPECT_NEAR(scale / before, 1.25, 1e-6) << labels << " at " << zoom;
            }
            before = scale;
        }
    }
}

TEST(StripScene, NoZoomMakesTheTapeHigherThanTheStrip) {
    for (const int height : {stripHeight(kLine), 300}) {
        StripRoom large = room();
        large.zoom = 8;
        large.size.setHeight(height);
        const StripScene scene = sceneOf(JobPlan(planOf(4)), large);
        EXPECT_LE(scene.cells.front().label.bottom(), height - kLine);
    }
}

struct Corners {
    QPointF topLeft, topRight, bottomLeft;
};

Corners mapped(const QTransform& transform, const QSizeF& size) {
    return {transform.map(QPointF(0, 0)), transform.map(QPointF(size.width(), 0)),
            transform.map(QPointF(0, size.height()))};
}

void expectCorners(const Corners& found, QPointF topLeft, QPointF topRight, QPointF bottomLeft) {
    const auto expectNear = [](QPointF is, QPointF expected) {
        EXPECT_NEAR(is.x(), expected.x(), 1e-6);
        EXPECT_NEAR(is.y(), expected.y(), 1e-6);
    };
    expectNear(found.topLeft, topLeft);
    expectNear(found.topRight, topRight);
    expectNear(found.bottomLeft, bottomLeft);
}

TEST(StripTransform, AnUprightLabelLiesAsItIsRead) {
    const QSizeF size(68, 142);
    const QRectF rect(10, 20, 34, 71);
    for (const bool isReversed : {false, true})
        expectCorners(mapped(labelToScreen(size, rect, StripWay::Upright, isReversed), size),
                      {10, 20}, {44, 20}, {10, 91});
}

/// The top leaves the printer first.
TEST(StripTransform, ALabelOnTheTapeLiesWithItsTopAwayFromTheMouth) {
    const QSizeF size(68, 142);
    const QRectF rect(10, 20, 71, 34);
    expectCorners(mapped(labelToScreen(size, rect, StripWay::Along, false), size), {10, 54},
                  {10, 20}, {81, 54});
    expectCorners(mapped(labelToScreen(size, rect, StripWay::Along, true), size), {81, 20},
                  {81, 54}, {10, 20});
}

TEST(StripTransform, NoMeasureMakesItDivideByNothing) {
    for (const StripWay way : {StripWay::Along, StripWay::Upright}) {
        const QPointF place = labelToScreen({0, 0}, {1, 2, 4, 4}, way, false).map(QPointF(0, 0));
        EXPECT_TRUE(std::isfinite(place.x()));
        EXPECT_TRUE(std::isfinite(place.y()));
    }
}

TEST(StripTransform, APageLiesOnItsLabelAsTheJobLaysIt) {
    const QSizeF page(100, 50);
    worker::Placement place;
    place.scale = 0.5;
    place.left = 7;
    place.top = -3;
    expectCorners(mapped(pageToLabel(page, place), page), {7, -3}, {57, -3}, {7, 22});
    // A quarter clockwise: its top left corner comes to the right, its bottom to the left.
    place.isTurned = true;
    expectCorners(mapped(pageToLabel(page, place), page), {32, -3}, {32, 47}, {7, -3});
}

} // namespace

} // namespace labelcut
