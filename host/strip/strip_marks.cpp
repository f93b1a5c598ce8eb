// Strip: the marks at joints.
#include "host/strip/strip_marks.h"

#include <QPainterPath>

namespace labelcut {

namespace {

/// Shapes are drawn on a field so high, their point at (0, kField).
constexpr double kField = 32;

void drawScissors(QPainter& painter, const QColor& colour) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, 3));
    for (const double side : {-1.0, 1.0})
        painter.drawEllipse(QPointF(side * 8, 7.5), 6, 6);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    for (const double side : {-1.0, 1.0})
        painter.drawPolygon(QPolygonF(
            {{side * 8, 13}, {side * 3, 13}, {side * -4, 25}, {side * -4, 32}, {side * 1, 24}}));
}

void drawBlade(QPainter& painter, const QColor& colour) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(QPolygonF({{-7, 18}, {7, 18}, {0, 31}}));
}

void drawHand(QPainter& painter, const QColor& colour) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, 4, Qt::SolidLine, Qt::RoundCap));
    for (const QPointF& finger : {QPointF(-7, 6), QPointF(-1, 3), QPointF(5, 4), QPointF(11, 8)})
        painter.drawLine(finger, QPointF(finger.x(), 18));
    painter.setPen(QPen(colour, 5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(-13, 16), QPointF(-5, 25));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    QPainterPath palm(QPointF(-9, 16));
    palm.lineTo(13, 16);
    palm.lineTo(13, 23);
    palm.quadTo(13, 30, 5, 30);
    palm.lineTo(-1, 30);
    palm.quadTo(-5, 30, -8, 26);
    palm.closeSubpath();
    painter.drawPath(palm);
}

} // namespace

void drawCutMark(QPainter& painter, PDECut cut, double size, const QColor& colour) {
    if (cut == PDECut::None)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / kField, size / kField);
    painter.translate(0, -kField);
    if (cut == PDECut::Full)
        drawScissors(painter, colour);
    else if (cut == PDECut::Half)
        drawBlade(painter, colour);
    else
        drawHand(painter, colour);
    painter.restore();
}

} // namespace labelcut
