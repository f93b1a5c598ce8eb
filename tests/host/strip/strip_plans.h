// Test support: plans of jobs, and pages that show how they lie.
#pragma once

#include <QImage>
#include <QPainter>

#include "host/plan/job_plan.h"

namespace labelcut::test {

inline QSizeF millimetres(double width, double height) {
    return QSizeF(width, height) * 72 / 25.4;
}

inline JobPaper labelPaper(double width, double height) {
    const QSizeF size = millimetres(width, height);
    return {QStringLiteral("Label"), size, QRectF(QPointF(0, 0), size)};
}

/// Pages of one measure on labels of that measure; nothing is cut.
inline PlanInput planOf(int pages, double width = 24, double height = 50) {
    auto document = std::make_shared<DocumentPages>();
    document->ofFiles = {pages};
    document->measures.assign(static_cast<std::size_t>(pages), millimetres(width, height));
    PlanInput input;
    input.document = document;
    input.paper = labelPaper(width, height);
    input.cuts.emplace();
    input.cuts->medium = PDEMedium::Tape;
    return input;
}

/// A page of that measure whose text runs down along it: it can be read when its top lies at the
/// left. Its corners have colours: red at its top left, green at its top right, blue below the red.
inline QImage pageOf(int page, QSize size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    const int corner = std::max(2, std::min(size.width(), size.height()) / 8);
    painter.fillRect(0, 0, corner, corner, Qt::red);
    painter.fillRect(size.width() - corner, 0, corner, corner, Qt::green);
    painter.fillRect(0, size.height() - corner, corner, corner, Qt::blue);
    painter.translate(size.width(), 0);
    painter.rotate(90);
    QFont font = painter.font();
    font.setPixelSize(std::max(4, size.width() / 3));
    painter.setFont(font);
    painter.drawText(QRect(0, 0, size.height(), size.width()), Qt::AlignCenter,
                     QStringLiteral("FR %1").arg(page));
    return image;
}

} // namespace labelcut::test
