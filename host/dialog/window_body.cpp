// The dialog: what stands above the buttons, and is scrolled where the screen is too small for it.
#include "host/dialog/window_body.h"

#include <QEvent>
#include <QLayout>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>

namespace labelcut {

namespace {
/// Margins and spacing around body and buttons, in lines of text.
constexpr QSize kLinesAround(2, 3);
} // namespace

WindowBody::WindowBody(QWidget* content, const QWidget& below)
    : mBelow(below) {
    setFrameShape(QFrame::NoFrame);
    // What is in it takes the focus, and is scrolled to.
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    setWidget(content);
    content->setAutoFillBackground(false);
    content->installEventFilter(this);
}

QSize WindowBody::sizeHint() const {
    return widget()->sizeHint().boundedTo(roomFor(*this)).expandedTo(minimumSizeHint());
}

QSize WindowBody::minimumSizeHint() const {
    const QSize around = kLinesAround * fontMetrics().height();
    const QSize room = roomFor(*this) - around - QSize(0, mBelow.sizeHint().height());
    return widget()->minimumSizeHint().boundedTo(room.expandedTo(QScrollArea::minimumSizeHint()));
}

void WindowBody::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    layOut();
}

bool WindowBody::eventFilter(QObject* watched, QEvent* event) {
    const bool handled = QScrollArea::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        layOut();
    }
    return handled;
}

/// The content fills the room, and is larger only where it cannot be so small.
void WindowBody::layOut() {
    const QSize room = maximumViewportSize();
    const QSize least = widget()->minimumSizeHint();
    const auto sizeOf = [&](int width) {
        const QLayout& layout = *widget()->layout();
        const int height =
            layout.hasHeightForWidth() ? layout.minimumHeightForWidth(width) : least.height();
        return QSize(width, qMax(height, least.height()));
    };
    QSize needed = sizeOf(qMax(room.width(), least.width()));
    // The bar at the side takes some of the width.
    if (needed.height() > room.height())
        needed =
            sizeOf(qMax(room.width() - verticalScrollBar()->sizeHint().width(), least.width()));
    const int belowBar =
        needed.width() > room.width() ? horizontalScrollBar()->sizeHint().height() : 0;
    needed.setHeight(qMax(needed.height(), room.height() - belowBar));
    widget()->resize(needed);
}

QSize roomFor(const QWidget& window) {
    const QStyle& style = *window.style();
    const int frame = 2 * style.pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const int title = style.pixelMetric(QStyle::PM_TitleBarHeight);
    return window.screen()->availableSize() - QSize(frame, frame + title);
}

void makeRoomFor(QWidget& widget) {
    for (QWidget* around = &widget; around; around = around->parentWidget()) {
        around->updateGeometry();
        if (around->layout()) {
            around->layout()->invalidate();
            around->layout()->activate();
        }
        if (around->isWindow())
            return;
    }
}

} // namespace labelcut
