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

    /// A label's measure on the screen.
    QSize sizeOf(std::int64_t index) const {
        const QSizeF size = mPlan.labelSizeOf(mPlan.pageAt(index));
        const QSizeF lying = isAlong() ? size.transposed() : size;
        // A page may be absurdly long.
        const auto pixels = [this](double points) {
            return std::clamp(static_cast<int>(std::min(std::round(points * mScale), 1e5)),
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
        return isAlong() && mRoom.first == 0 && cuts && cuts->lead == PDELead::Blank;
    }
    int leadWidth() const { return hasLead() ? kLead + kJoint : 0; }
    int endWidth() const { return isAlong() ? kMouth : kMargin; }
    int top() const { return mTop; }
    int tapeHeight() const { return sizeOf(0).height(); }

private:
    bool isAlong() const { return mRoom.way == StripWay::Along; }

    double scaleFor(const QSizeF& label) const {
        const double across = std::max(isAlong() ? label.width() : label.height(), 1.0);
        const double along = std::max(isAlong() ? label.height() : label.width(), 1.0);
        const double room = std::max(mRoom.size.width() - kMouth - kLead, 1);
        const double largest = kTape * mRoom.zoom / across;
        const double fitting =
            std::max(kMostOfWindow * room * mRoom.zoom / along, kThinnest * mRoom.zoom / across);
        const double single = std::min(largest, fitting);
        const double all = scaleForAll(along);
        return all >= kSmallerForAll * single ? std::min(single, all) : single;
    }

    /// At which all labels are in sight, if they are as long as the first.
    double scaleForAll(double along) const {
        const auto labels = static_cast<double>(mPlan.labels());
        const double free = mRoom.size.width() - 2 * kMargin - endWidth() - leadWidth();
        return (free / labels - kJoint - 1) / along;
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

} // namespace

int stripHeight(int line) {
    return kMarks + kTape + kBelow + line;
}

StripScene sceneOf(const JobPlan& plan, const StripRoom& room) {
    const Row row(plan, room);
    const std::int64_t labels = plan.labels();
    StripScene scene;
    scene.scale = row.scale();
    const int free = room.size.width() - 2 * kMargin - row.endWidth();
    scene.lastFirst = firstOfEnd(row, labels, free);
    const std::int64_t first = std::clamp<std::int64_t>(room.first, 0, scene.lastFirst);
    int x = kMargin;
    if (row.hasLead()) {
        scene.lead = {x, row.top(), kLead, row.tapeHeight()};
        scene.leadJoint = {x + kLead, row.top(), kJoint, row.tapeHeight()};
        x += row.leadWidth();
    }
    const bool showsEnd = first == scene.lastFirst && x + row.widthOf(labels - 1) <= kMargin + free;
    const int moreWidth = kMoreLines * room.line;
    int end = kMargin + free;
    if (!showsEnd || firstOfEnd(row, labels, end - x) > first)
        end -= moreWidth + row.widthOf(labels - 1);
    std::int64_t index = first;
    for (; index < labels && (index == first || x + row.widthOf(index) <= end); ++index) {
        scene.cells.push_back(row.cellAt(index, x));
        x += row.widthOf(index);
    }
    if (index < labels) {
        scene.more = labels - 1 - index;
        if (scene.more > 0) {
            scene.moreRect = {x, row.top(), moreWidth, row.tapeHeight()};
            x += moreWidth;
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
