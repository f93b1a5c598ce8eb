// Pictures of the panel, made without a display.
#include "host/snapshot/snapshot.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QStyle>
#include <QWidget>

namespace labelcut {

namespace {

/// Around the panel, in points.
constexpr int kMargin = 8;

QPalette darkPalette() {
    const QColor window(0x2b, 0x2b, 0x2b);
    const QColor base(0x1e, 0x1e, 0x1e);
    const QColor text(0xf0, 0xf0, 0xf0);
    const QColor faint(0x9a, 0x9a, 0x9a);
    QPalette palette(text, QColor(0x3a, 0x3a, 0x3a), QColor(0x50, 0x50, 0x50),
                     QColor(0x18, 0x18, 0x18), QColor(0x70, 0x70, 0x70), text, base);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x7e, 0xd0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb0, 0xff));
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::ToolTipText, text);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

} // namespace

void setSnapshotLook(const SnapshotLook& look) {
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setPalette(look.dark ? darkPalette() : QApplication::style()->standardPalette());
}

QImage takeSnapshot(QWidget& widget, const SnapshotLook& look) {
    const QSize points = widget.size() + QSize(2 * kMargin, 2 * kMargin);
    QImage image(points * look.scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(look.scale);
    image.fill(widget.palette().color(QPalette::Window));
    QPainter painter(&image);
    widget.render(&painter, QPoint(kMargin, kMargin), QRegion(), QWidget::DrawChildren);
    return image;
}

} // namespace labelcut
