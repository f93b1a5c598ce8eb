// Where pages come to lie on labels.
#include "worker/protocol/page_fit.h"

#include <gtest/gtest.h>

namespace labelcut::worker {

namespace {

constexpr double mm(double millimetres) {
    return millimetres * 72 / 25.4;
}

/// 24 x 50 mm with 1 mm around it on which nothing can be printed.
Label label() {
    return {{mm(24), mm(50)}, mm(1), mm(1), mm(23), mm(49)};
}

Placement placedPage(double width, double height, Fit fit) {
    return placed({mm(width), mm(height)}, label(), fit);
}

constexpr Fit kAll[] = {Fit::Unchanged, Fit::Actual, Fit::Turn, Fit::Scale};

} // namespace

TEST(PageFit, LeavesAPageOfTheLabelsMeasureUntouched) {
    for (const Fit fit : {Fit::Unchanged, Fit::Actual, Fit::Scale}) {
        for (const double off : {-0.5, 0.0, 0.5}) {
            const Placement place = placedPage(24 + off, 50 - off, fit);
            EXPECT_TRUE(place.isUntouched);
            EXPECT_FALSE(place.losesEdge);
            EXPECT_FALSE(place.changesSize);
        }
    }
}

TEST(PageFit, CentresASmallerPageAtItsSize) {
    for (const Fit fit : {Fit::Unchanged, Fit::Actual, Fit::Scale}) {
        const Placement place = placedPage(14, 40, fit);
        EXPECT_EQ(place.scale, 1);
        EXPECT_FALSE(place.isTurned);
        EXPECT_NEAR(place.left, mm(5), 1e-9);
        EXPECT_NEAR(place.top, mm(5), 1e-9);
        EXPECT_FALSE(place.losesEdge || place.changesSize);
    }
}

TEST(PageFit, TurnsAPageByItselfOnlyWhereItOnlyFitsSo) {
    EXPECT_TRUE(placedPage(50, 24, Fit::Unchanged).isTurned);
    EXPECT_FALSE(placedPage(50, 24, Fit::Unchanged).losesEdge);
    EXPECT_FALSE(placedPage(20, 10, Fit::Unchanged).isTurned) << "it fits as it lies";
    EXPECT_FALSE(placedPage(60, 30, Fit::Unchanged).isTurned) << "it fits neither way";
    EXPECT_FALSE(placedPage(50, 24, Fit::Actual).isTurned);
    EXPECT_TRUE(placedPage(24, 50, Fit::Turn).isTurned);
}

TEST(PageFit, TellsWhatIsLostAtActualSize) {
    const Placement place = placedPage(24, 60, Fit::Actual);
    EXPECT_TRUE(place.losesEdge);
    EXPECT_NEAR(place.lost.height, mm(10), 1e-9);
    EXPECT_NEAR(place.top, mm(-5), 1e-9);
    EXPECT_EQ(place.lost.width, 0);
    EXPECT_TRUE(placedPage(50, 24, Fit::Actual).losesEdge);
}

TEST(PageFit, MindsMoreThanAHundredthOrHalfAMillimetre) {
    EXPECT_FALSE(placedPage(24.6, 50, Fit::Actual).losesEdge);
    EXPECT_TRUE(placedPage(24.8, 50, Fit::Actual).losesEdge);
    const Label banner{{mm(24), mm(1000)}, 0, 0, mm(24), mm(1000)};
    EXPECT_FALSE(placed({mm(24), mm(1009)}, banner, Fit::Actual).losesEdge);
    EXPECT_TRUE(placed({mm(24), mm(1011)}, banner, Fit::Actual).losesEdge);
}

TEST(PageFit, ShrinksIntoWhatThePrinterCanPrintOnAndNeverEnlarges) {
    const Placement wide = placedPage(48, 50, Fit::Scale);
    EXPECT_NEAR(wide.scale, 22.0 / 48, 1e-9);
    EXPECT_NEAR(wide.left, mm(1), 1e-9);
    EXPECT_TRUE(wide.changesSize);
    EXPECT_FALSE(wide.losesEdge);
    const Placement lying = placedPage(100, 48, Fit::Scale);
    EXPECT_TRUE(lying.isTurned);
    EXPECT_NEAR(lying.scale, 22.0 / 48, 1e-9);
    EXPECT_EQ(placedPage(2, 3, Fit::Scale).scale, 1);
}

TEST(PageFit, StandsAbsurdMeasures) {
    for (const Fit fit : kAll) {
        for (const double width : {0.0, 1e-3, 28346.0, 1e9}) {
            for (const double height : {0.0, 1e-3, 28346.0, 1e9}) {
                const Placement place = placed({width, height}, label(), fit);
                EXPECT_GT(place.scale, 0);
                EXPECT_LE(place.scale, 1);
                EXPECT_NO_THROW(placed({width, height}, Label{}, fit));
            }
        }
    }
}

} // namespace labelcut::worker
