// Toolkit: the base of icons that are painted anew at every size.
#include "platform/toolkit/painted_icon.h"

#include <QPainter>

namespace labelcut {

QPixmap PaintedIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    // A button that has no room yet asks for an icon, too.
    if (size.isEmpty())
        return {};
    QPixmap result(size);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return result;
}

QPixmap PaintedIconEngine::scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                                        qreal ratio) {
    QPixmap result = pixmap(size, mode, state);
    result.setDevicePixelRatio(ratio);
    return result;
}

} // namespace labelcut
