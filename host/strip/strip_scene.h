// Strip: where lead, labels, joints and the printer's mouth lie on the screen.
//
// The first label lies at the left and the mouth at the right; whoever draws for a tape that runs
// the other way mirrors all of it. Pixels are the widget's own, before the screen's scale.
#pragma once

#include <QRect>
#include <QSize>
#include <QTransform>

#include <cstdint>
#include <optional>
#include <vector>

#include "host/plan/job_plan.h"

namespace labelcut {

/// How labels lie in the window.
enum class StripWay {
    Along,   ///< The tape runs along the window, each label on its side.
    Upright, ///< Labels stand upright side by side; the tape would run out at their tops.
};

/// What the scene is made for.
struct StripRoom {
    /// Of the whole strip: marks above it, numbers below it.
    QSize size;
    /// Height of a line of text.
    int line = 16;
    StripWay way = StripWay::Along;
    /// 1: as large as the room allows.
    double zoom = 1;
    /// The label at the left, counted from 0.
    std::int64_t first = 0;
};

struct StripCell {
    std::int64_t index = 0;
    QRect label;
    /// Where the tape goes on to the next label, or is cut: beside the label on a tape that runs
    /// along the window, below one that stands upright.
    QRect joint;
};

struct StripScene {
    /// Pixels a point.
    double scale = 1;
    /// Null without a blank lead in sight.
    QRect lead;
    QRect leadJoint;
    /// Labels in sight, in order.
    std::vector<StripCell> cells;
    /// Labels that are left out before the last cell, and where that is said; 0 and null: none.
    std::int64_t more = 0;
    QRect moreRect;
    QRect mouth;
    /// The largest label that makes sense as the first in sight.
    std::int64_t lastFirst = 0;
};

/// @param plan  has at least one label.
StripScene sceneOf(const JobPlan& plan, const StripRoom& room);

/// The height that a strip wants whose text is so high, and which is zoomed so far.
int stripHeight(int line, double zoom = 1);

/// From a label in points (its top left corner at 0, 0) to its rectangle on the screen.
/// @param size        of the label, in points.
/// @param isReversed  the tape runs to the left: the mouth is there.
QTransform labelToScreen(const QSizeF& size, const QRectF& rect, StripWay way, bool isReversed);

/// From a page in points to its place on the label.
/// @param page  its measure as it is shown.
QTransform pageToLabel(const QSizeF& page, const worker::Placement& place);

} // namespace labelcut
