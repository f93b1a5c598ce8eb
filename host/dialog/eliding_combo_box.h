// The dialog: a pop-up for texts of any length.
#pragma once

#include <QComboBox>

namespace labelcut {

/// As wide as its longest entry where there is room, and as narrow as a few letters where there is
/// none: an entry that does not fit ends in "…" and is whole in a tool tip. The open list is as
/// wide as its entries, up to the screen's width. Entries that come after the first show do not
/// make it wider.
class ElidingComboBox : public QComboBox {
    Q_OBJECT
public:
    explicit ElidingComboBox(QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;
    void showPopup() override;

    /// Whether the latest choice was picked from the open list, not stepped to by key or wheel.
    bool isPickedFromList() const { return mPickedFromList; }

protected:
    /// What it could not be narrower than if it cut no text.
    QSize wholeMinimumSizeHint() const { return QComboBox::minimumSizeHint(); }

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    int widthForText() const;
    QString elidedText() const;

    bool mPickedFromList = false;
};

} // namespace labelcut
