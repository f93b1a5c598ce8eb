// Toolkit: the base of icons that are painted anew at every size.
#pragma once

#include <QIconEngine>

namespace labelcut {

/// What derives from it paints and clones; pixmaps of any size and pixel ratio come from that.
class PaintedIconEngine : public QIconEngine {
public:
    /// Null where `size` is empty.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    /// `size` is in pixels.
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                         qreal ratio) override;
};

} // namespace labelcut
