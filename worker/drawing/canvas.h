// Worker: the PDF file that is drawn on.
#pragma once

#include <QFile>
#include <QPainter>
#include <QPdfWriter>
#include <QRectF>

#include <optional>

#include "worker/protocol/descriptor.h"
#include "worker/protocol/message.h"

namespace labelcut::worker {

/// Fine enough for text on tapes of a few millimetres. Dots per inch; a multiple of 72.
inline constexpr int kResolution = 1440;
inline constexpr double kPointsPerInch = 72;

/// A PDF file of pages of one paper, drawn on in points from the paper's top left corner.
class Canvas {
public:
    Canvas(Descriptor target, const Paper& paper);

    /// @return why the file cannot be written; nothing when it can.
    std::optional<Failed> begin();
    void newPage() { mWriter.newPage(); }
    /// Done, or Failed when the file did not take every byte.
    Answer end();

    /// What the printer can print on.
    const QRectF& printable() const { return mPrintable; }
    QPdfWriter& writer() { return mWriter; }
    QPainter& painter() { return mPainter; }

private:
    Failed notWritten() const;

    QFile mFile;
    QPdfWriter mWriter;
    QPainter mPainter;
    QRectF mPrintable;
};

/// Moves and turns the painter so that a picture of `size` drawn into the answered rectangle fits
/// `area`, as large as it can be.
QRectF fitted(QPainter& painter, const QSizeF& size, const QRectF& area);

} // namespace labelcut::worker
