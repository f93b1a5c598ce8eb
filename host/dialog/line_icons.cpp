// The dialog: its own small icons.
#include "host/dialog/line_icons.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>

#include "platform/toolkit/painted_icon.h"

namespace labelcut {

namespace {

/// Icons are drawn on a square of this many units a side.
constexpr double kGrid = 16;
constexpr double kLineWidth = 1.5;

QPainterPath pathOf(LineIcon icon) {
    QPainterPath path;
    switch (icon) {
    case LineIcon::Back: // three quarters of a turn, its head at the upper left
        path.arcMoveTo(3, 3.5, 10, 10, -150);
        path.arcTo(3, 3.5, 10, 10, -150, 290);
        path.moveTo(3.5, 2.5);
        path.lineTo(3.6, 6.4);
        path.lineTo(7.4, 6.2);
        break;
    case LineIcon::Remove:
        path.moveTo(2.5, 4.5);
        path.lineTo(13.5, 4.5);
        path.moveTo(6, 4.5);
        path.lineTo(6, 2.5);
        path.lineTo(10, 2.5);
        path.lineTo(10, 4.5);
        path.moveTo(4, 4.5);
        path.lineTo(4.7, 13.5);
        path.lineTo(11.3, 13.5);
        path.lineTo(12, 4.5);
        path.moveTo(6.8, 7);
        path.lineTo(6.8, 11);
        path.moveTo(9.2, 7);
        path.lineTo(9.2, 11);
        break;
    case LineIcon::Dismiss:
        path.moveTo(4, 4);
        path.lineTo(12, 12);
        path.moveTo(12, 4);
        path.lineTo(4, 12);
        break;
    case LineIcon::Turn:
        path.arcMoveTo(3, 4, 10, 10, 150);
        path.arcTo(3, 4, 10, 10, 150, -150);
        path.moveTo(10, 7);
        path.lineTo(13, 9.5);
        path.lineTo(15.5, 6.5);
        break;
    }
    return path;
}

QString nameInThemes(LineIcon icon) {
    switch (icon) {
    case LineIcon::Back:
        return QStringLiteral("edit-undo");
    case LineIcon::Remove:
        return QStringLiteral("edit-delete");
    case LineIcon::Turn:
        return QStringLiteral("object-rotate-right");
    case LineIcon::Dismiss:
        break;
    }
    return QStringLiteral("window-close");
}

class LineIconEngine : public PaintedIconEngine {
public:
    explicit LineIconEngine(LineIcon icon)
        : mIcon(icon) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor colour = QGuiApplication::palette().color(group, QPalette::ButtonText);
        const double side = std::min(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rect).center() - QPointF(side / 2, side / 2));
        painter->scale(side / kGrid, side / kGrid);
        painter->setPen(QPen(colour, kLineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(pathOf(mIcon));
        painter->restore();
    }

    QIconEngine* clone() const override { return new LineIconEngine(mIcon); }

private:
    LineIcon mIcon;
};

} // namespace

QIcon lineIcon(LineIcon icon) {
    return QIcon::fromTheme(nameInThemes(icon), QIcon(new LineIconEngine(icon)));
}

} // namespace labelcut
