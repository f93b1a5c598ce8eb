// The dialog: what stands above the buttons, and is scrolled where the screen is too small for it.
#pragma once

#include <QScrollArea>

namespace labelcut {

/// As large as what is in it, unless the screen has no room for that beside what stands below: then
/// the user scrolls here, and the buttons stay in reach.
class WindowBody : public QScrollArea {
public:
    /// @param content  has a layout; becomes this widget's.
    /// @param below    borrowed, outlives this; what must stay in sight.
    WindowBody(QWidget* content, const QWidget& below);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void layOut();

    const QWidget& mBelow;
};

/// How much of the screen a window may take, its frame not included.
QSize roomFor(const QWidget& window);

/// Has every layout around `widget` take its new size hint to heart, and lets the window grow if it
/// must.
void makeRoomFor(QWidget& widget);

} // namespace labelcut
