// Strip: draws a scene.
#include "host/strip/strip_painter.h"

#include <QLocale>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

#include "host/strip/strip_marks.h"
#include "host/texts/length.h"

namespace labelcut {

namespace {

constexpr int kMarkSize = 28;
/// How far the backing of die-cut labels shows around them, and their corners' radius.
constexpr int kBacking = 4;
constexpr int kCorner = 6;
/// What the placeholder of a page says needs so much room.
constexpr int kLeastTextWidth = 24;

void fillHatched(QPainter& painter, const QRect& rect, const QColor& fill, const QColor& lines) {
    painter.fillRect(rect, fill);
    painter.fillRect(rect, QBrush(lines, Qt::BDiagPattern));
}

QTransform pageToScreen(const JobPlan::Label& label, const QRect& rect, StripWay way,
                        bool isReversed) {
    return pageToLabel(label.pageSize, label.place) *
           labelToScreen(label.size, rect, way, isReversed);
}

void drawDashes(QPainter& painter, const QLine& line, const QColor& colour, int width) {
    QPen pen(colour, width);
    pen.setDashPattern({3, 2});
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    painter.drawLine(line);
}

} // namespace

QRect pageOnScreen(const JobPlan::Label& label, const QRect& rect, StripWay way, bool isReversed,
                   bool isMirrored) {
    QRect page = pageToScreen(label, rect, way, isReversed)
                     .mapRect(QRectF(QPointF(0, 0), label.pageSize))
                     .toRect();
    if (isMirrored)
        page.moveLeft(rect.left() + rect.right() - page.right());
    return page;
}

QSize pagePixels(const JobPlan::Label& label, const QRect& rect, StripWay way, double pixelRatio) {
    const QTransform toScreen = pageToScreen(label, rect, way, false);
    const QSize lying = pageOnScreen(label, rect, way, false, false).size();
    const QSize page = qFuzzyIsNull(toScreen.m11()) ? lying.transposed() : lying;
    const auto pixels = [pixelRatio](int length) {
        constexpr double kLargest = 4'000;
        return static_cast<int>(std::clamp(std::round(length * pixelRatio), 1.0, kLargest));
    };
    return {pixels(page.width()), pixels(page.height())};
}

StripPainter::StripPainter(QPainter& painter, const JobPlan& plan, const StripLook& look, int width)
    : mPainter(painter)
    , mPlan(plan)
    , mLook(look)
    , mWidth(width) {}

QRect StripPainter::placed(const QRect& rect) const {
    if (!mLook.isReversed)
        return rect;
    return {mWidth - rect.left() - rect.width(), rect.top(), rect.width(), rect.height()};
}

PDEMedium StripPainter::medium() const {
    const auto& cuts = mPlan.input().cuts;
    return cuts ? cuts->medium : PDEMedium::Unsaid;
}

void StripPainter::draw(const StripScene& scene) {
    drawTape(scene);
    drawLead(scene);
    for (const StripCell& cell : scene.cells)
        drawLabel(cell.index, placed(cell.label));
    for (const StripCell& cell : scene.cells) {
        const PDECut cut = mPlan.cutAfter(cell.index);
        if (mLook.way == StripWay::Along)
            drawJoint(placed(cell.joint), cut);
        else
            drawJointBelow(placed(cell.joint), cut);
    }
    mPainter.setPen(mLook.colours.text);
    if (mLook.way == StripWay::Along && mLook.isRead)
        drawNumbers(scene);
    if (mLook.way == StripWay::Upright)
        drawFeed(scene);
    if (scene.more > 0)
        mPainter.drawText(placed(scene.moreRect), Qt::AlignCenter | Qt::TextWordWrap, mLook.more);
    if (!scene.mouth.isNull())
        drawMouth(placed(scene.mouth));
}

/// Which label it is, below each that has room for it.
void StripPainter::drawNumbers(const StripScene& scene) {
    const QFontMetrics metrics = mPainter.fontMetrics();
    for (const StripCell& cell : scene.cells) {
        const QString number = QLocale().toString(qlonglong{cell.index} + 1);
        const QRect below(cell.label.left(), cell.label.bottom() + kBacking, cell.label.width(),
                          metrics.height());
        if (metrics.horizontalAdvance(number) <= below.width())
            mPainter.drawText(placed(below), Qt::AlignCenter, number);
    }
}

/// An arrow beside labels that stand upright: the way in which the tape leaves the printer.
void StripPainter::drawFeed(const StripScene& scene) {
    if (scene.cells.empty())
        return;
    const QRect last = placed(scene.cells.back().label);
    const double x =
        mLook.isReversed ? last.left() - kMarkSize / 2.0 : last.right() + kMarkSize / 2.0;
    const double top = last.top() + 4;
    mPainter.save();
    mPainter.setRenderHint(QPainter::Antialiasing);
    mPainter.setPen(QPen(mLook.colours.text, 2));
    mPainter.drawLine(QPointF(x, top), QPointF(x, top + kMarkSize));
    mPainter.drawPolyline(QPolygonF({{x - 5, top + 6}, {x, top}, {x + 5, top + 6}}));
    mPainter.restore();
}

/// The tape in pieces, from one full cut to the next, below labels and lead.
void StripPainter::drawTape(const StripScene& scene) {
    if (mLook.way == StripWay::Upright || scene.cells.empty())
        return;
    const QRect like = scene.cells.front().label;
    int left = scene.lead.isNull() ? like.left() : scene.lead.left();
    const auto& cuts = mPlan.input().cuts;
    if (!scene.lead.isNull() && cuts->afterLead == PDECut::Full) {
        drawPiece(left, scene.lead.right() + 1, like);
        left = like.left();
    }
    for (std::size_t i = 0; i < scene.cells.size(); ++i) {
        const StripCell& cell = scene.cells[i];
        const bool isGap = i > 0 && cell.index != scene.cells[i - 1].index + 1;
        if (isGap) {
            drawPiece(left, scene.cells[i - 1].joint.right() + 1, like);
            left = cell.label.left();
        }
        if (mPlan.cutAfter(cell.index) != PDECut::Full)
            continue;
        drawPiece(left, cell.label.right() + 1, like);
        left = cell.joint.right() + 1;
    }
    if (left < scene.mouth.left())
        drawPiece(left, scene.mouth.left(), like);
}

void StripPainter::drawPiece(int left, int right, const QRect& like) {
    if (right - left < 2)
        return;
    const bool isBacking = medium() == PDEMedium::Labels;
    const QRect piece = placed(QRect(left, like.top(), right - left, like.height()))
                            .adjusted(0, isBacking ? -kBacking : 0, 0, isBacking ? kBacking : 0);
    const QColor fill = isBacking                            ? mLook.colours.backing
                        : medium() == PDEMedium::SpecialTape ? mLook.colours.cloth
                                                             : mLook.colours.paper;
    mPainter.fillRect(piece, fill);
    if (medium() == PDEMedium::SpecialTape)
        mPainter.fillRect(piece, QBrush(mLook.colours.fold, Qt::Dense7Pattern));
    mPainter.setPen(mLook.colours.edge);
    mPainter.setBrush(Qt::NoBrush);
    mPainter.drawRect(piece.adjusted(0, 0, -1, -1));
}

void StripPainter::drawLead(const StripScene& scene) {
    if (scene.lead.isNull())
        return;
    fillHatched(mPainter, placed(scene.lead).adjusted(1, 1, -1, -1), mLook.colours.waste,
                mLook.colours.hatch);
    drawJoint(placed(scene.leadJoint), mPlan.input().cuts->afterLead);
}

void StripPainter::drawJoint(const QRect& joint, PDECut cut) {
    const int middle = joint.left() + joint.width() / 2;
    const QColor& colour = mLook.colours.cut;
    if (cut == PDECut::None) {
        drawDashes(mPainter, {middle, joint.top() + 2, middle, joint.bottom() - 2},
                   mLook.colours.fold, 1);
        return;
    }
    if (cut == PDECut::Half) {
        // The notch from the top; the backing goes on below it.
        const QRect notch(middle - 2, joint.top(), 4, joint.height() - joint.height() / 6);
        mPainter.fillRect(notch, mLook.colours.seam);
    }
    if (cut == PDECut::ByHand)
        drawDashes(mPainter, {middle, joint.top() + 2, middle, joint.bottom() - 2},
                   mLook.colours.seam, 3);
    mPainter.save();
    mPainter.translate(middle + 0.5, joint.top() + (cut == PDECut::Full ? 2 : 0));
    drawCutMark(mPainter, cut, kMarkSize, colour);
    mPainter.restore();
}

/// The edge of a label that stands upright, with its mark beside it.
void StripPainter::drawJointBelow(const QRect& joint, PDECut cut) {
    const int middle = joint.top() + 3;
    const QLine edge(joint.left(), middle, joint.right(), middle);
    if (cut == PDECut::None) {
        drawDashes(mPainter, edge, mLook.colours.fold, 1);
        return;
    }
    const int thickness = cut == PDECut::Full ? 3 : 2;
    if (cut == PDECut::Full)
        mPainter.fillRect(QRect(joint.left(), middle - 1, joint.width(), thickness),
                          mLook.colours.cut);
    else
        drawDashes(mPainter, edge, mLook.colours.cut, thickness);
    mPainter.save();
    mPainter.translate(joint.left() + joint.width() / 2.0, middle + 2);
    mPainter.rotate(180);
    drawCutMark(mPainter, cut, joint.height() - 5, mLook.colours.cut);
    mPainter.restore();
}

void StripPainter::drawLabel(std::int64_t index, const QRect& rect) {
    const JobPlan::Label label = mPlan.label(index);
    mPainter.save();
    const bool isRounded = medium() == PDEMedium::Labels;
    QPainterPath outline;
    const double corner = isRounded ? kCorner : 0;
    outline.addRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
    mPainter.setRenderHint(QPainter::Antialiasing, isRounded);
    mPainter.fillPath(outline, mLook.colours.paper);
    mPainter.setClipPath(outline, Qt::IntersectClip);
    if (mLook.isRead && !mLook.picture(label.page).isNull())
        drawPage(label, rect);
    else if (mLook.isRead)
        drawPlaceholder(label, index, rect, mLook.isFailed(label.page));
    drawLost(label, rect);
    mPainter.setClipping(false);
    mPainter.setPen(QPen(mLook.colours.edge, 1));
    mPainter.setBrush(Qt::NoBrush);
    mPainter.drawPath(outline);
    mPainter.restore();
    if (index == mLook.current) {
        mPainter.setPen(QPen(mLook.colours.current, 2));
        mPainter.setBrush(Qt::NoBrush);
        mPainter.drawRect(rect.adjusted(-2, -2, 1, 1));
    }
}

/// The picture is turned as a whole and laid on whole pixels, so that it stays as sharp as it was
/// drawn.
void StripPainter::drawPage(const JobPlan::Label& label, const QRect& rect) {
    const QTransform toScreen = pageToScreen(label, rect, mLook.way, mLook.isReversed);
    const QTransform turn(qFuzzyIsNull(toScreen.m11()) ? 0 : 1,
                          qFuzzyIsNull(toScreen.m12()) ? 0 : (toScreen.m12() > 0 ? 1 : -1),
                          qFuzzyIsNull(toScreen.m21()) ? 0 : (toScreen.m21() > 0 ? 1 : -1),
                          qFuzzyIsNull(toScreen.m22()) ? 0 : 1, 0, 0);
    const QImage picture = mLook.picture(label.page);
    const bool isMirrored = mPlan.input().cuts && mPlan.input().cuts->isMirrored;
    const QImage turned = picture.transformed(turn).mirrored(isMirrored, false);
    const QRect target = pageOnScreen(label, rect, mLook.way, mLook.isReversed, isMirrored);
    mPainter.setRenderHint(QPainter::SmoothPixmapTransform);
    mPainter.drawImage(target, turned);
}

void StripPainter::drawPlaceholder(const JobPlan::Label& label, std::int64_t index,
                                   const QRect& rect, bool isFailed) {
    if (isFailed)
        mPainter.fillRect(rect, QBrush(mLook.colours.hatch, Qt::Dense7Pattern));
    if (rect.width() < kLeastTextWidth)
        return;
    mPainter.setPen(mLook.colours.ink);
    const QString text = QLocale().toString(qlonglong{index} + 1) + u'\n' +
                         measureForUser(label.pageSize.width(), label.pageSize.height());
    mPainter.drawText(rect.adjusted(2, 2, -2, -2), Qt::AlignCenter | Qt::TextWordWrap, text);
}

/// A bar along every edge where something of the page is lost.
void StripPainter::drawLost(const JobPlan::Label& label, const QRect& rect) {
    if (!label.place.losesEdge)
        return;
    const bool isAlong = mLook.way == StripWay::Along;
    const double beside = isAlong ? label.place.lost.height : label.place.lost.width;
    const double above = isAlong ? label.place.lost.width : label.place.lost.height;
    const QBrush brush(mLook.colours.seam, Qt::Dense4Pattern);
    constexpr int kBar = 5;
    if (beside > 0) {
        mPainter.fillRect(QRect(rect.left(), rect.top(), kBar, rect.height()), brush);
        mPainter.fillRect(QRect(rect.right() - kBar + 1, rect.top(), kBar, rect.height()), brush);
    }
    if (above > 0) {
        mPainter.fillRect(QRect(rect.left(), rect.top(), rect.width(), kBar), brush);
        mPainter.fillRect(QRect(rect.left(), rect.bottom() - kBar + 1, rect.width(), kBar), brush);
    }
}

void StripPainter::drawMouth(const QRect& rect) {
    mPainter.setRenderHint(QPainter::Antialiasing);
    mPainter.setPen(Qt::NoPen);
    mPainter.setBrush(mLook.colours.mouth);
    mPainter.drawRoundedRect(rect, 3, 3);
    mPainter.setRenderHint(QPainter::Antialiasing, false);
}

} // namespace labelcut
