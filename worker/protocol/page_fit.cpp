// Worker's protocol: where a page comes to lie on its label.
#include "worker/protocol/page_fit.h"

#include <algorithm>
#include <cmath>

namespace labelcut::worker {

namespace {

/// Half a point more, since measures of labels are often rounded to whole points.
constexpr double kRounding = 0.5;
constexpr double kSmallPart = 0.01;

bool lieDifferently(const Size& a, const Size& b) {
    return (a.width - a.height) * (b.width - b.height) < 0;
}

/// Whether anybody minds that a page's measure of `whole` points changes by `difference`.
bool isNoticed(double difference, double whole) {
    return difference > std::max(kSmallPart * whole, kSameMeasure + kRounding);
}

double beyond(double page, double label) {
    return std::max(0.0, page - label);
}

bool losesEdge(const Size& page, const Size& label) {
    return isNoticed(beyond(page.width, label.width), page.width) ||
           isNoticed(beyond(page.height, label.height), page.height);
}

bool isToBeTurned(const Size& page, const Label& label, Fit fit) {
    switch (fit) {
    case Fit::Unchanged:
        return losesEdge(page, label.size) && !losesEdge(page.turned(), label.size);
    case Fit::Actual:
        return false;
    case Fit::Turn:
        return true;
    case Fit::Scale:
        return lieDifferently(page, label.size);
    }
    return false;
}

/// The most by which a page may stay as large as it is within `room`, at most 1.
double scaleInto(const Size& page, const Size& room) {
    double scale = 1;
    if (page.width > room.width)
        scale = room.width / page.width;
    if (page.height * scale > room.height)
        scale = room.height / page.height;
    return scale;
}

} // namespace

bool isSame(const Size& a, const Size& b) {
    return std::abs(a.width - b.width) <= kSameMeasure + kRounding &&
           std::abs(a.height - b.height) <= kSameMeasure + kRounding;
}

Placement placed(const Size& page, const Label& label, Fit fit) {
    Placement place;
    place.isTurned = isToBeTurned(page, label, fit);
    const Size lying = place.isTurned ? page.turned() : page;
    place.isUntouched = !place.isTurned && isSame(page, label.size);
    const bool isShrunk = fit == Fit::Scale && !isSame(lying, label.size);
    const Size room =
        isShrunk ? Size{label.right - label.left, label.bottom - label.top} : label.size;
    const double left = isShrunk ? label.left : 0;
    const double top = isShrunk ? label.top : 0;
    place.scale = isShrunk ? scaleInto(lying, room) : 1;
    place.size = {lying.width * place.scale, lying.height * place.scale};
    place.left = left + (room.width - place.size.width) / 2;
    place.top = top + (room.height - place.size.height) / 2;
    place.lost = {beyond(place.size.width, label.size.width),
                  beyond(place.size.height, label.size.height)};
    place.losesEdge = losesEdge(place.size, label.size);
    place.changesSize = isNoticed(lying.width - place.size.width, lying.width) ||
                        isNoticed(lying.height - place.size.height, lying.height);
    return place;
}

} // namespace labelcut::worker
