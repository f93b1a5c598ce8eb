// The dialog: where the Tab key goes, and what has the focus is in sight.
#include "host/dialog/tab_order.h"

#include <QApplication>
#include <QScrollArea>
#include <QWidget>

#include <algorithm>

namespace labelcut {

namespace {

/// The widget, or what is in it, where the Tab key stops now. @param widget  null: nothing.
std::vector<QWidget*> tabStopsIn(QWidget* widget) {
    const auto isStop = [](const QWidget& candidate) {
        return (candidate.focusPolicy() & Qt::TabFocus) && !candidate.focusProxy() &&
               candidate.isVisible() && candidate.isEnabled();
    };
    if (!widget)
        return {};
    if (isStop(*widget))
        return {widget};
    std::vector<QWidget*> stops;
    for (QWidget* next = widget->nextInFocusChain(); next != widget;
         next = next->nextInFocusChain()) {
        if (widget->isAncestorOf(next) && isStop(*next))
            stops.push_back(next);
    }
    return stops;
}

void scrollTo(QWidget& widget) {
    for (QWidget* around = &widget; around; around = around->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(around))
            area->ensureWidgetVisible(&widget);
    }
}

} // namespace

bool moveFocus(const QWidget& window, const std::vector<QWidget*>& parts, bool next) {
    std::vector<QWidget*> stops;
    for (QWidget* part : parts) {
        const std::vector<QWidget*> inPart = tabStopsIn(part);
        stops.insert(stops.end(), inPart.begin(), inPart.end());
    }
    if (stops.empty())
        return false;
    const auto here = std::ranges::find(stops, window.focusWidget());
    const std::size_t last = stops.size() - 1;
    const auto index = static_cast<std::size_t>(here - stops.begin());
    const std::size_t after = index >= last ? 0 : index + 1;
    const std::size_t before = index == 0 || here == stops.end() ? last : index - 1;
    QWidget* stop = stops[next ? after : before];
    stop->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void keepFocusInSight(QWidget& window) {
    QObject::connect(qApp, &QApplication::focusChanged, &window, [&window](QWidget*, QWidget* now) {
        const bool byMouse = QApplication::mouseButtons() != Qt::NoButton;
        if (now && window.isAncestorOf(now) && !byMouse)
            scrollTo(*now);
    });
}

} // namespace labelcut
