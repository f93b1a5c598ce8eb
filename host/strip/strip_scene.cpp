// Strip: where lead, labels, joints and the printer's mouth lie on the screen.
#include "host/strip/strip_scene.h"

#include <algorithm>
#include <cmath>

namespace labelcut {

namespace {

constexpr int kMarks = 32; ///< Room for scissors above the tape,
constexpr int kAbove = 8;  ///< and above labels that stand upright: their marks are below them.
constexpr int kTape = 80;  ///< The tape's width on the screen at a zoom of 1.
constexpr int kThinnest = 24;
constexpr int kJoint = 14;
constexpr int kJointBelow = 24;
constexpr int kBelow = 20; ///< Around the numbers below the tape, and the bar.
constexpr int kLead = 30;
constexpr int kMouth = 30;
constexpr int kMargin = 6;
constexpr int kMoreLines = 7; ///< Room for "… 88 more …", in lines of text.
/// A label takes at most so much of the window, so that there is always more than one to be seen.
constexpr double kMostOfWindow = 0.6;
/// All labels are shown when they need not be smaller for that than so much of what they could be.
constexpr double kSmallerForAll = 0.6;
/// No label is drawn smaller, whatever its measure.
constexpr int kSmallest = 4;

/// Labels beside each other, from left to right.
class Row {
public:
    Row(const JobPlan& plan, const StripRoom& room)
        : mPlan(plan)
        , mRoom(room)
        , mTop(room.way == StripWay::Along ? kMarks : kAbove)
        , mScale(scaleFor(plan.label(0).size)) {}

    double scale() const { return mScale; }

    /// A label's measure on the screen; one that is much larger than the first is drawn smaller.
    QSize sizeOf(std::int64_t index) const {
        const QSizeF size = mPlan.labelSizeOf(mPlan.pageAt(index));
        const double scale = std::min(mScale, largestFor(size));
        const QSizeF lying = isAlong() ? size.transposed() : size;
        // A page may be absurdly long.
        const auto pixels = [scale](double points) {
            return std::clamp(static_cast<int>(std::min(std::round(points * scale), 1e5)),
                              kSmallest, 100'000);
        };
        return {pixels(lying.width()), pixels(lying.height())};
    }
    int widthOf(std::int64_t index) const { return sizeOf(index).width() + kJoint; }

    StripCell cellAt(std::int64_t index, int left) const {
        const QSize size = sizeOf(index);
        const QRect label(QPoint(left, mTop), size);
        const QRect beside(label.right() + 1, label.top(), kJoint, label.height());
        const QRect below(label.left(), label.bottom() + 1, label.width(), kJointBelow);
        return {index, label, isAlong() ? beside : below};
    }

    bool hasLead() const {
        const auto& cuts = mPlan.input().cuts;
        return isAlong() && cuts && cuts->lead == PDELead::Blank;
    }
    int leadWidth() const { return hasLead() ? kLead + kJoint : 0; }
    /// For labels, and the lead in front of the first.
    int free() const { return mRoom.size.width() - 2 * kMargin - (isAlong() ? kMouth : kMargin); }
    int moreWidth() const { return kMoreLines * mRoom.line; }
    int top() const { return mTop; }
    int tapeHeight() const { return sizeOf(0).height(); }

private:
    struct Lengths {
        double along = 1;
        double across = 1;
    };

    bool isAlong() const { return mRoom.way == StripWay::Along; }

    /// Along the window and across it; points.
    Lengths lengthsOf(const QSizeF& label) const {
        const QSizeF lying = isAlong() ? label.transposed() : label;
        return {std::max(lying.width(), 1.0), std::max(lying.height(), 1.0)};
    }

    /// What a label may take of the window at a zoom of 1, so that the last is in sight beside it.
    double mostAlong() const {
        const double most = kMostOfWindow * std::max(mRoom.size.width() - kMouth - kLead, 1);
        const double both = (free() - leadWidth() - moreWidth()) / 2.0 - kJoint - 1;
        return mPlan.labels() > 2 ? std::min(most, both) : most;
    }

    /// At a zoom of 1, for a label on its own.
    double singleScale(const Lengths& label) const {
        const double fitting = std::max(mostAlong() / label.along, kThinnest / label.across);
        return std::min(kTape / label.across, fitting);
    }

    /// The tape grows with the zoom as far as the strip is high enough.
    double zoomed(double scale, const Lengths& label) const {
        const int high = mRoom.size.height() - mTop - kBelow - mRoom.line;
        return std::min(scale * mRoom.zoom, std::max(kTape, high) / label.across);
    }

    double largestFor(const QSizeF& label) const {
        const Lengths lengths = lengthsOf(label);
        return zoomed(singleScale(lengths), lengths);
    }

    double scaleFor(const QSizeF& label) const {
        const Lengths lengths = lengthsOf(label);
        const double single = singleScale(lengths);
        const double all = scaleForAll(lengths.along);
        return zoomed(all >= kSmallerForAll * single ? std::min(single, all) : single, lengths);
    }

    /// At which all labels are in sight, if they are as long as the first.
    double scaleForAll(double along) const {
        const auto labels = static_cast<double>(mPlan.labels());
        return ((free() - leadWidth()) / labels - kJoint - 1) / along;
    }

    const JobPlan& mPlan;
    const StripRoom& mRoom;
    int mTop;
    double mScale;
};

/// The first label from which on all fit into `room` pixels, counted from the end.
std::int64_t firstOfEnd(const Row& row, std::int64_t labels, int room) {
    std::int64_t first = labels - 1;
    int taken = row.widthOf(first);
    while (first > 0 && taken + row.widthOf(first - 1) <= room)
        taken += row.widthOf(--first);
    return first;
}

/// The lead takes room as well, but only in front of the first label.
std::int64_t lastFirstOf(const Row& row, std::int64_t labels) {
    const std::int64_t first = firstOfEnd(row, labels, row.free());
    const bool isPushedOut =
        first == 0 && firstOfEnd(row, labels, row.free() - row.leadWidth()) > 0;
    return isPushedOut ? 1 : first;
}

} // namespace

int stripHeight(int line, double zoom) {
    return kMarks + static_cast<int>(kTape * zoom) + kBelow + line;
}

StripScene sceneOf(const JobPlan& plan, const StripRoom& room) {
    const Row row(plan, room);
    const std::int64_t labels = plan.labels();
    StripScene scene;
    scene.scale = row.scale();
    scene.lastFirst = lastFirstOf(row, labels);
    const std::int64_t first = std::clamp<std::int64_t>(room.first, 0, scene.lastFirst);
    int x = kMargin;
    if (row.hasLead() && first == 0) {
        scene.lead = {x, row.top(), kLead, row.tapeHeight()};
        scene.leadJoint = {x + kLead, row.top(), kJoint, row.tapeHeight()};
        x += row.leadWidth();
    }
    int end = kMargin + row.free();
    if (first < scene.lastFirst)
        end -= row.moreWidth() + row.widthOf(labels - 1);
    std::int64_t index = first;
    for (; index < labels && (index == first || x + row.widthOf(index) <= end); ++index) {
        scene.cells.push_back(row.cellAt(index, x));
        x += row.widthOf(index);
    }
    if (index < labels) {
        scene.more = labels - 1 - index;
        if (scene.more > 0) {
            scene.moreRect = {x, row.top(), row.moreWidth(), row.tapeHeight()};
            x += row.moreWidth();
        }
        scene.cells.push_back(row.cellAt(labels - 1, x));
        x += row.widthOf(labels - 1);
    }
    if (room.way == StripWay::Along)
        scene.mouth = {x, row.top() - 6, kMouth, row.tapeHeight() + 12};
    return scene;
}

QTransform labelToScreen(const QSizeF& size, const QRectF& rect, StripWay way, bool isReversed) {
    const double width = std::max(size.width(), 1e-6);
    const double height = std::max(size.height(), 1e-6);
    QTransform transform;
    if (way == StripWay::Upright)
        return transform.translate(rect.left(), rect.top())
            .scale(rect.width() / width, rect.height() / height);
    const double along = rect.width() / height;
    const double across = rect.height() / width;
    // The label's top comes out first: it lies away from the mouth.
    if (isReversed)
        return {0, across, -along, 0, rect.left() + rect.width(), rect.top()};
    return {0, -across, along, 0, rect.left(), rect.top() + rect.height()};
}

QTransform pageToLabel(const QSizeF& page, const worker::Placement& place) {
    if (!place.isTurned)
        return {place.scale, 0, 0, place.scale, place.left, place.top};
    return {0, place.scale, -place.scale, 0, place.left + page.height() * place.scale, place.top};
}

} // namespace labelcut
