// Worker's protocol: where a page comes to lie on its label.
//
// Whoever lays pages out, shows them or tells of them asks here, so that what is shown is what is
// printed. This header keeps to C++17, see worker/pdf/pdf_engine.h.
#pragma once

#include <cstdint>

namespace labelcut::worker {

/// How a page is laid out that has not its label's measure. It is always centred.
enum class Fit : std::uint8_t {
    Unchanged, ///< At its actual size, turned where it only fits so.
    Actual,    ///< At its actual size as it lies; what is beyond the label is cut off.
    Turn,      ///< The same, turned.
    Scale,     ///< Shrunk, never enlarged, to what the printer can print on; turned when it is wide
               ///< and the label high, or the other way round.
};
inline constexpr Fit kLastFit = Fit::Scale;

/// Points, 1/72 inch.
struct Size {
    double width = 0;
    double height = 0;

    Size turned() const { return {height, width}; }
};

/// What pages are laid out on, measured from the top left corner. Points.
struct Label {
    Size size;
    /// What the printer can print on.
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

/// Measures that differ by no more are the same: half a millimetre. Points.
inline constexpr double kSameMeasure = 0.5 * 72 / 25.4;
bool isSame(const Size& a, const Size& b);

/// Where a page lies on its label.
struct Placement {
    /// Whether the page has the label's measure and stays untouched.
    bool isUntouched = false;
    /// By a quarter, clockwise, before everything else.
    bool isTurned = false;
    /// At most 1.
    double scale = 1;
    /// Of the turned and scaled page, from the label's top left corner; negative where it goes
    /// beyond the label. Points.
    double left = 0;
    double top = 0;
    Size size;
    /// How much of its width and height, at both edges together, goes beyond the label. Points.
    Size lost;
    /// Whether an edge is lost, or the size changed, by more than 1 % of the page or half a
    /// millimetre, whichever is larger.
    bool losesEdge = false;
    bool changesSize = false;
};

/// @param page  as it is shown; every number finite and not negative, like the label's.
Placement placed(const Size& page, const Label& label, Fit fit);

} // namespace labelcut::worker
