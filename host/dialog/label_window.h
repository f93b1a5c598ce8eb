// The dialog: one label, large.
#pragma once

#include <QDialog>

#include <cstdint>

#include "host/documents/page_pictures.h"
#include "host/strip/strip_view.h"

namespace labelcut {

/// Shows a label of the strip as large as fits, its number, measure and what is cut after it.
/// Arrow keys go to the next and the one before; Escape and a click close it.
class LabelWindow : public QDialog {
    Q_OBJECT
public:
    /// @param strip     and pictures: borrowed, outlive this.
    /// @param index  of the label, counted from 0.
    LabelWindow(StripView& strip, PagePictures& pictures, std::int64_t index, QWidget* parent);
    ~LabelWindow() override;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void showLabel(std::int64_t index);
    void wish();
    QRect labelRect() const;

    StripView& mStrip;
    PagePictures& mPictures;
    std::int64_t mIndex;
};

} // namespace labelcut
