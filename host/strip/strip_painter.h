// Strip: draws a scene.
#pragma once

#include <QImage>
#include <QPainter>

#include <functional>

#include "host/strip/strip_colours.h"
#include "host/strip/strip_scene.h"

namespace labelcut {

/// Everything that a strip is drawn from.
struct StripLook {
    StripColours colours;
    StripWay way = StripWay::Along;
    /// The tape runs to the left.
    bool isReversed = false;
    /// A page's picture, upright; null while there is none.
    std::function<QImage(int page)> picture;
    /// Whether the page will never be drawn.
    std::function<bool(int page)> isFailed;
    /// The label that keys act on; -1: none is marked.
    std::int64_t current = -1;
    /// The words of "… 88 more …".
    QString more;
    /// "Unknown" until the document has been read: labels are then blank and have no number.
    bool isRead = true;
};

/// Where the page lies on the screen, on whole pixels; it may go beyond its label.
/// @param rect  of the label.
QRect pageOnScreen(const JobPlan::Label& label, const QRect& rect, StripWay way, bool isReversed,
                   bool isMirrored);
/// The picture of the page, upright, that fills that place pixel by pixel.
/// @param pixelRatio  pixels of the screen for each of the widget's.
QSize pagePixels(const JobPlan::Label& label, const QRect& rect, StripWay way, double pixelRatio);

/// Draws scene after scene; a value that is made for each painting.
class StripPainter {
public:
    /// @param painter  and plan, look: borrowed. @param width  of the widget, to mirror in.
    StripPainter(QPainter& painter, const JobPlan& plan, const StripLook& look, int width);

    void draw(const StripScene& scene);
    /// One label alone, in `rect`, with what goes beyond it around it.
    void drawLabel(std::int64_t index, const QRect& rect);

private:
    QRect placed(const QRect& rect) const;
    void drawNumbers(const StripScene& scene);
    void drawFeed(const StripScene& scene);
    void drawTape(const StripScene& scene);
    void drawPiece(int left, int right, const QRect& like);
    void drawLead(const StripScene& scene);
    void drawJoint(const QRect& joint, PDECut cut);
    void drawJointBelow(const QRect& joint, PDECut cut);
    void drawPage(const JobPlan::Label& label, const QRect& rect);
    void drawPlaceholder(const JobPlan::Label& label, std::int64_t index, const QRect& rect,
                         bool isFailed);
    void drawLost(const JobPlan::Label& label, const QRect& rect);
    void drawMouth(const QRect& rect);
    PDEMedium medium() const;

    QPainter& mPainter;
    const JobPlan& mPlan;
    const StripLook& mLook;
    int mWidth;
};

} // namespace labelcut
