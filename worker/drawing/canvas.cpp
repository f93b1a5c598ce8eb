// Worker: the PDF file that is drawn on.
#include "worker/drawing/canvas.h"

#include <QPageSize>

namespace labelcut::worker {

Canvas::Canvas(Descriptor target, const Paper& paper)
    : mWriter(&mFile)
    , mPrintable(QPointF(paper.left, paper.top), QPointF(paper.right, paper.bottom)) {
    mFile.open(target.release(), QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
    mWriter.setResolution(kResolution);
    mWriter.setPageSize(QPageSize(QSizeF(paper.width, paper.height), QPageSize::Point,
                                  QString::fromStdString(paper.name), QPageSize::ExactMatch));
    mWriter.setPageMargins(QMarginsF());
}

Failed Canvas::notWritten() const {
    return {Problem::NotWritten, mFile.errorString().toStdString(), 0};
}

std::optional<Failed> Canvas::begin() {
    if (!mFile.isOpen() || !mPainter.begin(&mWriter))
        return notWritten();
    mPainter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform |
                            QPainter::LosslessImageRendering);
    mPainter.scale(kResolution / kPointsPerInch, kResolution / kPointsPerInch);
    return std::nullopt;
}

Answer Canvas::end() {
    const bool isWhole = mPainter.end() && mFile.flush() && mFile.error() == QFileDevice::NoError;
    if (isWhole)
        return Done();
    return notWritten();
}

QRectF fitted(QPainter& painter, const QSizeF& size, const QRectF& area) {
    const bool turned = (size.width() > size.height()) != (area.width() > area.height()) &&
                        size.width() != size.height();
    painter.translate(area.center());
    if (turned)
        painter.rotate(90);
    const QSizeF room = turned ? area.size().transposed() : area.size();
    const QSizeF drawn = size.scaled(room, Qt::KeepAspectRatio);
    return {QPointF(-drawn.width() / 2, -drawn.height() / 2), drawn};
}

} // namespace labelcut::worker
