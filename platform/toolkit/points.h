// Toolkit: where widgets stand, in points.
//
// Interface files and panels place widgets in points. On screen a point is `scale` pixels: 1 for
// the fonts that the files were drawn for, more for larger ones, so that rows of fixed pitch never
// overlap. Every placed widget keeps its rectangle in points (top-left based, y downward, relative
// to its parent) as a dynamic property; pixels are derived from it and never read back.
#pragma once

#include <QRectF>
#include <QSizeF>

class QWidget;

namespace labelcut::points {

/// The widget's rectangle; its pixel geometry at scale 1 when it was never placed.
QRectF rect(const QWidget& widget);

/// Gives the widget a rectangle and moves it there, mirrored within its parent when the
/// interface runs from right to left.
void setRect(QWidget& widget, const QRectF& rect);

/// Gives a root view its size and places its direct children anew (mirroring depends on the width).
void setRootSize(QWidget& root, const QSizeF& size);

/// Pixels per point of the tree that the widget belongs to; 1 when none was set.
double scale(const QWidget& widget);

/// Adopts the geometry of a freshly loaded tree as points and draws it at that scale.
void adopt(QWidget& root, double factor);

/// The scale at which rows drawn for the design font hold the given widget's font; at least 1.
double scaleForFont(const QWidget& widget);

} // namespace labelcut::points
