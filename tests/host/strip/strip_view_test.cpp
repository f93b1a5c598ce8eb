// What the strip draws, pixel by pixel, and what it does with keys, wheels and clicks.
#include "host/strip/strip_view.h"

#include <QPaintEngine>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "tests/host/strip/strip_plans.h"
#include "tests/support/expected_warnings.h"

namespace labelcut {

namespace {

using test::planOf;
using testing::ElementsAre;
using testing::IsEmpty;

bool isLike(QColor a, QColor b, int difference = 8) {
    return std::abs(a.red() - b.red()) <= difference &&
           std::abs(a.green() - b.green()) <= difference &&
           std::abs(a.blue() - b.blue()) <= difference;
}

/// A strip of a window, with pages whose corners show how they lie.
class Strip : public StripView {
public:
    explicit Strip(const PlanInput& input, StripWay way = StripWay::Along) {
        resize(760, sizeHint().height());
        setWay(way);
        setPictures(
            [this](int page) {
                const auto found = std::ranges::find(mDrawn, page, &Wish::page);
                return found != mDrawn.end() ? test::pageOf(page, found->pixels) : QImage();
            },
            [](int) { return false; });
        setPlan(JobPlan(input));
    }

    /// As the screen has it, with every wish fulfilled.
    QImage shot() {
        mDrawn = wishes();
        return grab().toImage();
    }
    /// The same without any page.
    QImage shotOfPlaces() {
        mDrawn.clear();
        return grab().toImage();
    }
    StripColours colours() const { return stripColours(palette()); }
    QScrollBar& bar() const { return *findChild<QScrollBar*>(); }
    std::int64_t first() const { return scene().cells.front().index; }

private:
    std::vector<Wish> mDrawn;
};

QRect onScreen(const QRect& rect, const QImage& shot) {
    const double ratio = shot.devicePixelRatio();
    return QRectF(rect.left() * ratio, rect.top() * ratio, rect.width() * ratio,
                  rect.height() * ratio)
        .toRect();
}

/// How many of the widget's pixels there are of that colour.
double count(const QImage& shot, const QRect& rect, QColor colour) {
    const QRect there = onScreen(rect, shot).intersected(shot.rect());
    int found = 0;
    for (int y = there.top(); y <= there.bottom(); ++y)
        for (int x = there.left(); x <= there.right(); ++x)
            found += isLike(shot.pixelColor(x, y), colour) ? 1 : 0;
    return found / (shot.devicePixelRatio() * shot.devicePixelRatio());
}

/// Whether the label shows the picture, but for its outline. @param picture  as it should lie.
void expectShows(const QImage& shot, const QRect& label, const QImage& picture) {
    const QRect there = onScreen(label, shot);
    ASSERT_EQ(there.size(), picture.size());
    const int edge = static_cast<int>(std::ceil(shot.devicePixelRatio())) + 1;
    int wrong = 0;
    for (int y = edge; y < picture.height() - edge; ++y)
        for (int x = edge; x < picture.width() - edge; ++x)
            wrong +=
                isLike(shot.pixelColor(there.topLeft() + QPoint(x, y)), picture.pixelColor(x, y), 2)
                    ? 0
                    : 1;
    EXPECT_EQ(wrong, 0);
}

void turnWheel(QWidget& widget, QPoint angle, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const QPointF middle = widget.rect().center();
    QWheelEvent event(middle, widget.mapToGlobal(middle), {}, angle, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &event);
}

class StripViewTest : public testing::Test {
protected:
    /// On the screen, with the focus.
    static void open(Strip& strip) {
        strip.show();
        strip.activateWindow();
        strip.setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&strip));
        ASSERT_TRUE(strip.hasFocus());
    }

private:
    test::ExpectedWarning mComplaint{QStringLiteral("^This plugin does not support "),
                                     test::ExpectedWarning::Arrival::Possible};
};

// What is drawn.

struct Lie {
    const char* name;
    StripWay way;
    bool isReversed;
    bool isMirrored;
    double turn;
};

class StripLies : public StripViewTest, public testing::WithParamInterface<Lie> {};

TEST_P(StripLies, EveryLabelIsItsPagePixelByPixel) {
    PlanInput input = planOf(3);
    input.cuts->isMirrored = GetParam().isMirrored;
    Strip strip(input, GetParam().way);
    strip.setReversed(GetParam().isReversed);
    const QImage shot = strip.shot();
    const std::vector<StripView::Wish> wishes = strip.wishes();
    ASSERT_EQ(wishes.size(), 3U);
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const QImage page = test::pageOf(i + 1, wishes[static_cast<std::size_t>(i)].pixels);
        const QImage turned = page.transformed(QTransform().rotate(GetParam().turn));
        expectShows(shot, strip.rectOf(i), turned.mirrored(GetParam().isMirrored, false));
    }
}

INSTANTIATE_TEST_SUITE_P(All, StripLies,
                         testing::Values(Lie{"Along", StripWay::Along, false, false, -90},
                                         Lie{"Reversed", StripWay::Along, true, false, 90},
                                         Lie{"Mirrored", StripWay::Along, false, true, -90},
                                         Lie{"ReversedMirrored", StripWay::Along, true, true, 90},
                                         Lie{"Upright", StripWay::Upright, false, false, 0},
                                         Lie{"UprightMirrored", StripWay::Upright, true, true, 0}),
                         [](const auto& lie) { return lie.param.name; });

TEST_F(StripViewTest, ThePagesTopLiesAwayFromTheMouth) {
    Strip strip(planOf(1));
    for (const bool isReversed : {false, true}) {
        strip.setReversed(isReversed);
        const QImage shot = strip.shot();
        const QRect label = strip.rectOf(0);
        // Red and green are the page's upper corners.
        const QRect topHalf(isReversed ? label.center().x() : label.left(), label.top(),
                            label.width() / 2, label.height());
        EXPECT_GT(count(shot, topHalf, Qt::red), 10);
        EXPECT_GT(count(shot, topHalf, Qt::green), 10);
        EXPECT_EQ(count(shot, topHalf, Qt::blue), 0);
        EXPECT_GT(count(shot, label, Qt::blue), 10);
    }
}

TEST_F(StripViewTest, APageThatIsTurnedOntoItsLabelIsShownTurned) {
    PlanInput input = planOf(1, 50, 24);
    input.paper = test::labelPaper(24, 50);
    input.fit = worker::Fit::Turn;
    Strip strip(input);
    const QImage shot = strip.shot();
    // A quarter clockwise onto the label, and a quarter back onto the strip.
    expectShows(shot, strip.rectOf(0), test::pageOf(1, strip.wishes().front().pixels));
}

TEST_F(StripViewTest, AMirroredPageIsMirroredAsALabelNotInItsOwnPlace) {
    PlanInput input = planOf(1, 24, 20);
    input.paper = test::labelPaper(24, 50);
    // What can be printed lies at the label's end.
    const QSizeF size = input.paper->size;
    input.paper->printable = QRectF(0, size.height() / 2, size.width(), size.height() / 2);
    input.fit = worker::Fit::Scale;
    std::vector<double> redAt;
    for (const bool isMirrored : {false, true}) {
        input.cuts->isMirrored = isMirrored;
        Strip strip(input);
        const QImage shot = strip.shot();
        const QRect label = strip.rectOf(0);
        double sum = 0;
        double found = 0;
        for (int x = 0; x < label.width(); ++x) {
            const double here =
                count(shot, QRect(label.left() + x, label.top(), 1, label.height()), Qt::red);
            sum += here * (isMirrored ? label.width() - 1 - x : x);
            found += here;
        }
        ASSERT_GT(found, 0);
        redAt.push_back(sum / found);
    }
    EXPECT_NEAR(redAt[0], redAt[1], 1);
}

double markAbove(const Strip& strip, const QImage& shot, std::size_t cell = 0) {
    const QRect joint = strip.scene().cells[cell].joint;
    return count(shot, {joint.left() - 6, 0, joint.width() + 12, joint.top() - 2},
                 strip.colours().cut);
}

double inJoint(const Strip& strip, const QImage& shot, QColor colour, std::size_t cell = 0) {
    return count(shot, strip.scene().cells[cell].joint.adjusted(2, 6, -2, -2), colour);
}

PlanInput cutBy(PDECut cut, int pages = 3) {
    PlanInput input = planOf(pages);
    input.cuts->afterEach = cut;
    return input;
}

TEST_F(StripViewTest, AFullCutPartsTheTapeBelowScissors) {
    Strip strip(cutBy(PDECut::Full));
    const QImage shot = strip.shotOfPlaces();
    EXPECT_GT(markAbove(strip, shot), 60);
    // The window shows between the two pieces.
    const QRect joint = strip.scene().cells.front().joint.adjusted(2, 6, -2, -2);
    EXPECT_EQ(inJoint(strip, shot, strip.palette().color(QPalette::Window)),
              joint.width() * joint.height());
}

TEST_F(StripViewTest, AHalfCutIsANotchThatLeavesTheBacking) {
    Strip strip(cutBy(PDECut::Half));
    const QImage shot = strip.shotOfPlaces();
    const QRect joint = strip.scene().cells.front().joint;
    EXPECT_GT(markAbove(strip, shot), 20);
    const QRect upper(joint.left(), joint.top() + 6, joint.width(), joint.height() / 2);
    EXPECT_GE(count(shot, upper, strip.colours().seam), 4 * upper.height() - 4);
    const QRect lowest(joint.left(), joint.bottom() - 8, joint.width(), 6);
    EXPECT_EQ(count(shot, lowest, strip.colours().seam), 0);
    EXPECT_GT(count(shot, lowest, strip.colours().paper), 5 * lowest.height());
}

TEST_F(StripViewTest, WithoutACutTheTapeRunsOnBehindDashes) {
    Strip strip(cutBy(PDECut::None));
    const QImage shot = strip.shotOfPlaces();
    EXPECT_EQ(markAbove(strip, shot), 0);
    const double dashes = inJoint(strip, shot, strip.colours().fold);
    const int high = strip.scene().cells.front().joint.height();
    EXPECT_GT(dashes, 0.3 * high);
    EXPECT_LT(dashes, 0.9 * high);
    EXPECT_EQ(inJoint(strip, shot, strip.colours().seam), 0);
}

TEST_F(StripViewTest, ACutByHandIsAHandAboveThickDashes) {
    Strip strip(cutBy(PDECut::ByHand));
    const QImage shot = strip.shotOfPlaces();
    EXPECT_GT(markAbove(strip, shot), 60);
    const double dashes = inJoint(strip, shot, strip.colours().seam);
    const int high = strip.scene().cells.front().joint.height();
    EXPECT_GT(dashes, 1.0 * high);
    EXPECT_LT(dashes, 2.7 * high);
}

TEST_F(StripViewTest, CutsAreWhereTheirNumberSays) {
    PlanInput input = planOf(4);
    input.cuts->afterGroup = PDECut::Full;
    input.cuts->groupSize = 2;
    Strip strip(input);
    for (const bool isReversed : {false, true}) {
        strip.setReversed(isReversed);
        const QImage shot = strip.shotOfPlaces();
        for (std::size_t i = 0; i < 4; ++i) {
            QRect joint = strip.scene().cells[i].joint;
            if (isReversed)
                joint.moveLeft(strip.width() - joint.left() - joint.width());
            const QRect above(joint.left() - 6, 0, joint.width() + 12, joint.top() - 2);
            EXPECT_EQ(count(shot, above, strip.colours().cut) > 0, i % 2 == 1) << i;
        }
    }
}

TEST_F(StripViewTest, CutsOfUprightLabelsLieBelowThem) {
    for (const PDECut cut : {PDECut::None, PDECut::Half, PDECut::ByHand, PDECut::Full}) {
        Strip strip(cutBy(cut), StripWay::Upright);
        const QImage shot = strip.shotOfPlaces();
        for (const StripCell& cell : strip.scene().cells) {
            const double marks = count(shot, cell.joint, strip.colours().cut);
            EXPECT_EQ(marks > 0, cut != PDECut::None);
            EXPECT_EQ(count(shot, cell.joint, strip.colours().fold) > 0, cut == PDECut::None);
        }
    }
}

TEST_F(StripViewTest, TheLeadThatIsThrownAwayIsHatched) {
    PlanInput input = cutBy(PDECut::Full);
    input.cuts->lead = PDELead::Blank;
    input.cuts->afterLead = PDECut::Full;
    Strip strip(input);
    const QImage shot = strip.shotOfPlaces();
    const QRect lead = strip.scene().lead.adjusted(2, 2, -2, -2);
    const double all = lead.width() * lead.height();
    const double lines = count(shot, lead, strip.colours().hatch);
    EXPECT_GT(lines, 0.05 * all);
    EXPECT_GT(count(shot, lead, strip.colours().waste), 0.3 * all);
    const QRect joint = strip.scene().leadJoint;
    EXPECT_GT(count(shot, {joint.left(), 0, joint.width(), joint.top()}, strip.colours().cut), 60);
}

TEST_F(StripViewTest, BarsStandWhereAnEdgeIsLost) {
    PlanInput input = planOf(1);
    input.paper = test::labelPaper(24, 24);
    input.fit = worker::Fit::Actual;
    Strip strip(input);
    const QImage shot = strip.shotOfPlaces();
    const QRect label = strip.rectOf(0);
    const QColor seam = strip.colours().seam;
    // 50 mm on 24 mm: what is lost lies along the tape.
    EXPECT_GT(count(shot, QRect(label.left(), label.top() + 6, 5, label.height() - 12), seam), 20);
    EXPECT_GT(count(shot, QRect(label.right() - 4, label.top() + 6, 5, label.height() - 12), seam),
              20);
    EXPECT_EQ(count(shot, label.adjusted(6, 0, -6, 0), seam), 0);
    strip.setWay(StripWay::Upright);
    const QImage upright = strip.shotOfPlaces();
    const QRect standing = strip.rectOf(0);
    EXPECT_GT(count(upright, QRect(standing.left() + 6, standing.top(), 40, 5), seam), 20);
    EXPECT_EQ(count(upright, standing.adjusted(0, 6, 0, -6), seam), 0);
}

TEST_F(StripViewTest, APageThatIsWholeHasNoBars) {
    Strip strip(planOf(1));
    EXPECT_EQ(count(strip.shotOfPlaces(), strip.rectOf(0), strip.colours().seam), 0);
}

/// Remembers the texts that are drawn on it.
class Catcher : public QPaintDevice, private QPaintEngine {
public:
    Catcher()
        : QPaintEngine(QPaintEngine::AllFeatures) {}
    QStringList texts;

    QPaintEngine* paintEngine() const override { return const_cast<Catcher*>(this); }

protected:
    int metric(PaintDeviceMetric metric) const override {
        constexpr int kSide = 2000;
        constexpr int kDpi = 96;
        switch (metric) {
        case PdmWidth:
        case PdmHeight:
            return kSide;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return kDpi;
        case PdmDevicePixelRatio:
            return 1;
        default:
            return QPaintDevice::metric(metric);
        }
    }

private:
    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState&) override {}
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
    void drawPath(const QPainterPath&) override {}
    void drawImage(const QRectF&, const QImage&, const QRectF&, Qt::ImageConversionFlags) override {
    }
    void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
    void drawTextItem(const QPointF&, const QTextItem& item) override { texts << item.text(); }
    Type type() const override { return User; }
};

QString wordsOn(const JobPlan& plan, bool isRead, std::int64_t first = 0) {
    Catcher catcher;
    StripLook look;
    look.picture = [](int) { return QImage(); };
    look.isFailed = [](int) { return false; };
    look.isRead = isRead;
    look.more = QStringLiteral("MORE");
    QPainter painter(&catcher);
    StripPainter(painter, plan, look, 760)
        .draw(sceneOf(plan, {QSize(760, 148), 16, StripWay::Along, 1, first}));
    painter.end();
    return catcher.texts.join(u'|').remove(u' ');
}

TEST_F(StripViewTest, APageThatIsNotDrawnYetShowsItsNumberAndSize) {
    const QString words = wordsOn(JobPlan(planOf(2, 24, 50)), true);
    EXPECT_TRUE(words.contains(QStringLiteral("24mm×50mm"))) << qPrintable(words);
    EXPECT_TRUE(words.startsWith(QStringLiteral("1|"))) << qPrintable(words);
    EXPECT_TRUE(words.contains(QStringLiteral("|2|"))) << qPrintable(words);
}

TEST_F(StripViewTest, WhatIsNotReadYetShowsNeitherNumberNorSize) {
    EXPECT_EQ(wordsOn(JobPlan(planOf(2)), false), QString());
}

TEST_F(StripViewTest, SaysHowManyLabelsAreLeftOut) {
    const JobPlan plan(planOf(100));
    EXPECT_TRUE(wordsOn(plan, true).contains(QStringLiteral("MORE")));
    EXPECT_FALSE(wordsOn(plan, true, 99).contains(QStringLiteral("MORE")));
}

// What is wished.

std::vector<int> pagesOf(const std::vector<StripView::Wish>& wishes) {
    std::vector<int> pages;
    for (const StripView::Wish& wish : wishes)
        pages.push_back(wish.page);
    return pages;
}

TEST_F(StripViewTest, WishesForPagesInSightAlone) {
    Strip strip(planOf(100));
    std::vector<int> inSight;
    for (const StripCell& cell : strip.scene().cells)
        inSight.push_back(static_cast<int>(cell.index) + 1);
    EXPECT_EQ(pagesOf(strip.wishes()), inSight);
    EXPECT_LT(inSight.size(), 12U);
    EXPECT_EQ(inSight.back(), 100);
}

TEST_F(StripViewTest, WishesForEachPageOnce) {
    PlanInput input = planOf(2);
    input.copies = 2;
    EXPECT_THAT(pagesOf(Strip(input).wishes()), ElementsAre(1, 2));
    input.isReversed = true;
    EXPECT_THAT(pagesOf(Strip(input).wishes()), ElementsAre(2, 1));
}

TEST_F(StripViewTest, WishesForNothingThatLiesBeyondTheWindow) {
    Strip strip(planOf(3, 24, 3000));
    EXPECT_THAT(pagesOf(strip.wishes()), ElementsAre(1));
}

TEST_F(StripViewTest, WishesForNoPageOfADocumentThatIsNotRead) {
    Strip strip(planOf(2));
    strip.setPlan(JobPlan(planOf(2)), false);
    EXPECT_THAT(strip.wishes(), IsEmpty());
    strip.setPlan(std::nullopt);
    EXPECT_THAT(strip.wishes(), IsEmpty());
}

TEST_F(StripViewTest, WishesForThePixelsOfTheScreen) {
    for (const StripWay way : {StripWay::Along, StripWay::Upright}) {
        Strip strip(planOf(2), way);
        const QSize label = strip.rectOf(0).size() * strip.devicePixelRatioF();
        EXPECT_EQ(strip.wishes().front().pixels,
                  way == StripWay::Along ? label.transposed() : label);
    }
}

TEST_F(StripViewTest, NoPageIsWishedForInAbsurdSize) {
    for (const QSizeF& size : {QSizeF(0, 0), QSizeF(1e6, 1e-3), QSizeF(1e-3, 1e6)}) {
        PlanInput input = planOf(1);
        auto document = std::make_shared<DocumentPages>(*input.document);
        document->measures = {size};
        input.document = document;
        input.fit = worker::Fit::Actual;
        for (const StripView::Wish& wish : Strip(input).wishes()) {
            EXPECT_GE(std::min(wish.pixels.width(), wish.pixels.height()), 1);
            EXPECT_LE(std::max(wish.pixels.width(), wish.pixels.height()), 4000);
        }
    }
}

// What hands do.

TEST_F(StripViewTest, ArrowKeysGoFromLabelToLabel) {
    Strip strip(planOf(100));
    open(strip);
    QTest::keyClick(&strip, Qt::Key_Right);
    EXPECT_EQ(strip.current(), 1);
    for (int i = 2; i < 30; ++i) {
        QTest::keyClick(&strip, Qt::Key_Right);
        ASSERT_EQ(strip.current(), i);
        ASSERT_FALSE(strip.rectOf(i).isNull()) << i;
    }
    for (int i = 28; i >= 0; --i) {
        QTest::keyClick(&strip, Qt::Key_Left);
        ASSERT_FALSE(strip.rectOf(i).isNull()) << i;
    }
    QTest::keyClick(&strip, Qt::Key_Left);
    EXPECT_EQ(strip.current(), 0);
    EXPECT_EQ(strip.first(), 0);
}

TEST_F(StripViewTest, ArrowKeysFollowTheDirectionOfTheTape) {
    Strip strip(planOf(5));
    strip.setReversed(true);
    open(strip);
    QTest::keyClick(&strip, Qt::Key_Left);
    EXPECT_EQ(strip.current(), 1);
    EXPECT_LT(strip.rectOf(1).right(), strip.rectOf(0).left());
    QTest::keyClick(&strip, Qt::Key_Right);
    EXPECT_EQ(strip.current(), 0);
}

TEST_F(StripViewTest, HomeEndAndPageKeysReachEveryLabel) {
    Strip strip(planOf(100));
    open(strip);
    const auto row = static_cast<std::int64_t>(strip.scene().cells.size()) - 1;
    QTest::keyClick(&strip, Qt::Key_PageDown);
    EXPECT_EQ(strip.current(), row);
    EXPECT_FALSE(strip.rectOf(row).isNull());
    QTest::keyClick(&strip, Qt::Key_PageUp);
    EXPECT_EQ(strip.current(), 0);
    QTest::keyClick(&strip, Qt::Key_End);
    EXPECT_EQ(strip.current(), 99);
    EXPECT_FALSE(strip.rectOf(99).isNull());
    QTest::keyClick(&strip, Qt::Key_Left);
    EXPECT_EQ(strip.current(), 98);
    EXPECT_FALSE(strip.rectOf(98).isNull());
    QTest::keyClick(&strip, Qt::Key_Home);
    EXPECT_EQ(strip.current(), 0);
    EXPECT_EQ(strip.first(), 0);
}

TEST_F(StripViewTest, KeysBringALabelIntoSightThatIsBeyondTheWindow) {
    Strip strip(planOf(2, 24, 3000));
    open(strip);
    EXPECT_TRUE(strip.rectOf(1).isNull());
    QTest::keyClick(&strip, Qt::Key_Right);
    EXPECT_TRUE(strip.rectOf(1).intersects(strip.rect()));
}

TEST_F(StripViewTest, ReturnAndSpaceAskForTheLabelLarge) {
    Strip strip(planOf(5));
    open(strip);
    const QSignalSpy wanted(&strip, &StripView::labelWanted);
    QTest::keyClick(&strip, Qt::Key_Right);
    QTest::keyClick(&strip, Qt::Key_Return);
    QTest::keyClick(&strip, Qt::Key_Space);
    ASSERT_EQ(wanted.count(), 2);
    EXPECT_EQ(wanted.at(0).at(0).toLongLong(), 1);
}

TEST_F(StripViewTest, AClickAsksForTheLabelThatLiesThere) {
    Strip strip(planOf(5));
    open(strip);
    for (const bool isReversed : {false, true}) {
        strip.setReversed(isReversed);
        const QSignalSpy wanted(&strip, &StripView::labelWanted);
        QTest::mouseClick(&strip, Qt::LeftButton, {}, strip.rectOf(3).center());
        QTest::mouseClick(&strip, Qt::RightButton, {}, strip.rectOf(2).center());
        QTest::mouseClick(&strip, Qt::LeftButton, {}, QPoint(2, 2));
        ASSERT_EQ(wanted.count(), 1);
        EXPECT_EQ(wanted.at(0).at(0).toLongLong(), 3);
        EXPECT_EQ(strip.current(), 3);
    }
}

/// The focus comes with the click, and would bring the label of the keys into sight.
TEST_F(StripViewTest, AClickIntoAScrolledStripFindsTheLabelThatWasThere) {
    Strip strip(planOf(100));
    open(strip);
    strip.clearFocus();
    for (int i = 0; i < 20; ++i)
        turnWheel(strip, {0, -120});
    ASSERT_EQ(strip.first(), 20);
    const QSignalSpy wanted(&strip, &StripView::labelWanted);
    QTest::mouseClick(&strip, Qt::LeftButton, {}, strip.rectOf(21).center());
    EXPECT_TRUE(strip.hasFocus());
    ASSERT_EQ(wanted.count(), 1);
    EXPECT_EQ(wanted.at(0).at(0).toLongLong(), 21);
    EXPECT_EQ(strip.first(), 20);
}

TEST_F(StripViewTest, TheWheelScrollsALabelAStep) {
    Strip strip(planOf(100));
    turnWheel(strip, {0, -120});
    EXPECT_EQ(strip.first(), 1);
    turnWheel(strip, {0, -240});
    EXPECT_EQ(strip.first(), 3);
    turnWheel(strip, {0, 120});
    EXPECT_EQ(strip.first(), 2);
    turnWheel(strip, {0, 1200});
    EXPECT_EQ(strip.first(), 0);
    turnWheel(strip, {0, -120'000});
    EXPECT_EQ(strip.first(), strip.scene().lastFirst);
}

TEST_F(StripViewTest, PartsOfAStepOfTheWheelAddUp) {
    Strip strip(planOf(100));
    turnWheel(strip, {0, 0});
    EXPECT_EQ(strip.first(), 0);
    for (int i = 0; i < 7; ++i)
        turnWheel(strip, {0, -15});
    EXPECT_EQ(strip.first(), 0);
    turnWheel(strip, {0, -15});
    EXPECT_EQ(strip.first(), 1);
    turnWheel(strip, {0, 0}, Qt::ControlModifier);
    EXPECT_EQ(strip.first(), 1);
}

TEST_F(StripViewTest, ATurnSidewaysFollowsTheTape) {
    Strip strip(planOf(100));
    turnWheel(strip, {-120, 0});
    EXPECT_EQ(strip.first(), 1);
    strip.setReversed(true);
    turnWheel(strip, {120, 0});
    EXPECT_EQ(strip.first(), 2);
}

TEST_F(StripViewTest, TheWheelIsTheWindowsWhereNothingScrolls) {
    Strip strip(planOf(2));
    const QPointF middle(5, 5);
    QWheelEvent event(middle, middle, {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&strip, &event);
    EXPECT_FALSE(event.isAccepted());
}

TEST_F(StripViewTest, CtrlAndTheWheelZoomWithinBounds) {
    Strip strip(planOf(40));
    strip.resize(760, 1000);
    const double whole = strip.scene().scale;
    turnWheel(strip, {0, 120}, Qt::ControlModifier);
    EXPECT_NEAR(strip.scene().scale, 1.25 * whole, 1e-9);
    EXPECT_EQ(strip.first(), 0);
    for (int i = 0; i < 30; ++i)
        turnWheel(strip, {0, 120}, Qt::ControlModifier);
    EXPECT_NEAR(strip.scene().scale, 8 * whole, 1e-9);
    for (int i = 0; i < 60; ++i)
        turnWheel(strip, {0, -120}, Qt::ControlModifier);
    EXPECT_NEAR(strip.scene().scale, 0.5 * whole, 1e-9);
}

TEST_F(StripViewTest, AZoomedStripAsksForMoreHeight) {
    Strip strip(planOf(40));
    const int before = strip.sizeHint().height();
    const int least = strip.minimumSizeHint().height();
    strip.setZoom(2);
    EXPECT_EQ(strip.sizeHint().height(), before + 80);
    EXPECT_EQ(strip.minimumSizeHint().height(), least);
    strip.setZoom(0.5);
    EXPECT_EQ(strip.sizeHint().height(), before);
}

// The bar.

TEST_F(StripViewTest, TheBarSaysWhatIsInSight) {
    Strip strip(planOf(100));
    open(strip);
    EXPECT_TRUE(strip.bar().isVisible());
    EXPECT_EQ(strip.bar().value(), 0);
    EXPECT_EQ(strip.bar().maximum(), strip.scene().lastFirst);
    EXPECT_EQ(strip.bar().pageStep(), static_cast<int>(strip.scene().cells.size()) - 1);
    turnWheel(strip, {0, -360});
    EXPECT_EQ(strip.bar().value(), 3);
    strip.bar().setValue(40);
    EXPECT_EQ(strip.first(), 40);
    strip.setPlan(JobPlan(planOf(2)));
    EXPECT_FALSE(strip.bar().isVisible());
}

/// A press beside the thumb pages towards it: the thumb lies where the first label does.
TEST_F(StripViewTest, TheBarRunsWithTheTape) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft})
        for (const bool isReversed : {false, true}) {
            SCOPED_TRACE(testing::Message() << direction << isReversed);
            Strip strip(planOf(100));
            strip.setLayoutDirection(direction);
            strip.setReversed(isReversed);
            open(strip);
            EXPECT_EQ(strip.rectOf(0).left() > strip.rectOf(1).left(), isReversed);
            QScrollBar& bar = strip.bar();
            const int middle = bar.height() / 2;
            const QPoint begin(isReversed ? bar.width() - 25 : 25, middle);
            const QPoint end(isReversed ? 25 : bar.width() - 25, middle);
            QTest::mouseClick(&bar, Qt::LeftButton, {}, begin);
            EXPECT_EQ(strip.first(), 0);
            QTest::mouseClick(&bar, Qt::LeftButton, {}, end);
            EXPECT_EQ(strip.first(), bar.pageStep());
        }
}

/// More labels than the bar has steps.
TEST_F(StripViewTest, EveryStepOfTheBarLeadsToOtherLabels) {
    PlanInput input = planOf(10);
    input.copies = 150'001;
    Strip strip(input);
    QScrollBar& bar = strip.bar();
    std::int64_t before = -1;
    for (const int start : {0, 1, 2, 3, 499'999, 999'990})
        for (int step = 0; step < 5; ++step) {
            bar.setValue(start + step);
            ASSERT_EQ(bar.value(), start + step);
            ASSERT_TRUE(strip.first() > before || step == 0);
            before = strip.first();
        }
    bar.setValue(bar.maximum());
    EXPECT_EQ(strip.first(), strip.scene().lastFirst);
}

// Plans that change.

TEST_F(StripViewTest, APlanThatShrinksWhileItIsScrolledIsShownFromItsStart) {
    PlanInput input = planOf(100);
    input.cuts->lead = PDELead::Blank;
    Strip strip(input);
    strip.setCurrent(99);
    turnWheel(strip, {0, -120'000});
    ASSERT_GT(strip.first(), 50);
    input = planOf(2);
    input.cuts->lead = PDELead::Blank;
    strip.setPlan(JobPlan(input));
    EXPECT_EQ(strip.first(), 0);
    EXPECT_EQ(strip.current(), 1);
    EXPECT_EQ(strip.scene().cells.size(), 2U);
    EXPECT_EQ(strip.scene().more, 0);
    EXPECT_FALSE(strip.scene().lead.isNull());
    EXPECT_FALSE(strip.rectOf(1).isNull());
}

TEST_F(StripViewTest, APlanOfNoLabelsAndNoPlanShowNothing) {
    Strip strip(planOf(3));
    PlanInput none = planOf(3);
    none.pages = PageSelection(PageRange{7, 9});
    strip.setPlan(JobPlan(none));
    EXPECT_FALSE(strip.plan().has_value());
    open(strip);
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_End, Qt::Key_PageDown, Qt::Key_Return})
        QTest::keyClick(&strip, key);
    turnWheel(strip, {0, -120});
    turnWheel(strip, {0, -120}, Qt::ControlModifier);
    QTest::mouseClick(&strip, Qt::LeftButton, {}, strip.rect().center());
    EXPECT_TRUE(strip.rectOf(0).isNull());
    const QImage shot = strip.shot();
    EXPECT_EQ(count(shot, strip.rect(), strip.palette().color(QPalette::Window)),
              strip.width() * strip.height());
}

TEST_F(StripViewTest, StripsOfOnePixelAreDrawn) {
    for (const QSize size : {QSize(1, 1), QSize(1, 200), QSize(2000, 1)}) {
        Strip strip(planOf(12));
        strip.setMinimumSize(1, 1);
        strip.resize(size);
        EXPECT_FALSE(strip.shot().isNull());
    }
}

} // namespace

} // namespace labelcut
