// Strip: colours by what they stand for; the same roles as in the panel's pictures.
#pragma once

#include <QColor>

class QPalette;

namespace labelcut {

struct StripColours {
    QColor paper;   ///< A label that nothing is printed on yet.
    QColor ink;     ///< Numbers and sizes on it.
    QColor edge;    ///< The outline of labels and tape.
    QColor backing; ///< What die-cut labels lie on.
    QColor cloth;   ///< Special tape.
    QColor fold;    ///< Where tape runs on between labels.
    QColor waste;   ///< The blank lead,
    QColor hatch;   ///< and the lines over it.
    QColor cut;     ///< Scissors, blade and hand beside the tape,
    QColor seam;    ///< and cuts on it; edges at which something is lost.
    QColor mouth;   ///< The printer.
    QColor current; ///< Around the label that keys act on.
    QColor text;    ///< Beside the strip.
};

/// For a window of that palette.
StripColours stripColours(const QPalette& palette);

} // namespace labelcut
