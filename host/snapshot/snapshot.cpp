// Pictures of the panels, made without a display.
#include "host/snapshot/snapshot.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace labelcut {

namespace {

/// Around the panel, in points.
constexpr int kMargin = 8;

QPalette darkPalette() {
    const QColor window(0x33, 0x33, 0x33);
    const QColor base(0x1a, 0x1a, 0x1a);
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

QImage stacked(const std::vector<QImage>& images) {
    QSize size;
    for (const QImage& image : images)
        size = QSize(std::max(size.width(), image.width()), size.height() + image.height());
    QImage all(size, QImage::Format_ARGB32_Premultiplied);
    all.fill(images.front().pixelColor(0, 0));
    QPainter painter(&all);
    int y = 0;
    for (QImage image : images) {
        image.setDevicePixelRatio(1);
        painter.drawImage(0, y, image);
        y += image.height();
    }
    return all;
}

} // namespace

void setSnapshotLook(bool dark) {
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setPalette(dark ? darkPalette() : QApplication::style()->standardPalette());
}

QImage takeSnapshot(QWidget& widget) {
    const qreal scale = widget.devicePixelRatioF();
    const QSize points = widget.size() + QSize(2 * kMargin, 2 * kMargin);
    QImage image((QSizeF(points) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(widget.palette().color(QPalette::Window));
    QPainter painter(&image);
    widget.render(&painter, QPoint(kMargin, kMargin), QRegion(), QWidget::DrawChildren);
    return image;
}

Result<QImage> takePanelSnapshot(OpenedPrinter& printer) {
    std::vector<QImage> images;
    for (const PanelSet::Entry& entry : printer.panels().entries()) {
        if (entry.keys.isEmpty())
            continue;
        Unkept unkept;
        const QWidget* view = printer.showPanel(entry, &unkept);
        if (!view)
            return Error{
                ErrorKind::Other,
                QStringLiteral("The panel \"%1\" has no view: its interface file is missing or "
                               "damaged. Install Labelcut anew.")
                    .arg(entry.panel->panelName())};
        images.push_back(takeSnapshot(*entry.panel->panelView()));
    }
    if (images.empty())
        return Error{
            ErrorKind::Other,
            QStringLiteral("No panel has anything to show for this printer: its PPD offers none "
                           "of the options that the installed plug-ins handle.")};
    return stacked(images);
}

} // namespace labelcut
