// Toolkit: where widgets stand, in points.
#include "platform/toolkit/points.h"

#include <QFontMetricsF>
#include <QStyle>
#include <QVariant>
#include <QWidget>

#include <algorithm>

namespace labelcut::points {

namespace {

constexpr char kRect[] = "labelcutPoints";
constexpr char kScale[] = "labelcutScale";

/// Interface files are drawn for fonts up to this height (points); DejaVu Sans 10 pt is 16.
constexpr double kDesignFontHeight = 18.0;

QRect toPixels(const QRectF& rect, double factor) {
    const QPoint topLeft(qRound(rect.left() * factor), qRound(rect.top() * factor));
    const QSize size(qRound(rect.width() * factor), qRound(rect.height() * factor));
    return {topLeft, size};
}

void place(QWidget& widget) {
    QRect pixels = toPixels(rect(widget), scale(widget));
    if (const QWidget* parent = widget.parentWidget())
        pixels = QStyle::visualRect(parent->layoutDirection(), parent->rect(), pixels);
    widget.setGeometry(pixels);
}

} // namespace

QRectF rect(const QWidget& widget) {
    const QVariant kept = widget.property(kRect);
    return kept.isValid() ? kept.toRectF() : QRectF(widget.geometry());
}

void setRect(QWidget& widget, const QRectF& rect) {
    widget.setProperty(kRect, rect);
    place(widget);
}

void setRootSize(QWidget& root, const QSizeF& size) {
    root.setProperty(kRect, QRectF(rect(root).topLeft(), size));
    const double factor = scale(root);
    root.setFixedSize(qRound(size.width() * factor), qRound(size.height() * factor));
    for (QWidget* child : root.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (child->property(kRect).isValid())
            place(*child);
    }
}

double scale(const QWidget& widget) {
    for (const QWidget* w = &widget; w; w = w->parentWidget()) {
        const QVariant kept = w->property(kScale);
        if (kept.isValid())
            return kept.toDouble();
    }
    return 1.0;
}

void adopt(QWidget& root, double factor) {
    for (QWidget* child : root.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        child->setProperty(kRect, QRectF(child->geometry()));
    root.setProperty(kScale, factor);
    setRootSize(root, QSizeF(root.size()));
}

double scaleForFont(const QWidget& widget) {
    return std::max(1.0, QFontMetricsF(widget.font()).height() / kDesignFontHeight);
}

} // namespace labelcut::points
