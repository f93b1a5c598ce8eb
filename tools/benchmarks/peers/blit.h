// Performance: the least that showing a picture costs.
#pragma once

#include <QPainter>
#include <QPixmap>
#include <QWidget>

namespace labelcut::bench {

/// Shows a ready picture, unscaled, with one drawPixmap().
class BlitView : public QWidget {
public:
    BlitView(QPixmap picture, QWidget* parent)
        : QWidget(parent)
        , mPicture(std::move(picture)) {}

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QPixmap mPicture;
};

} // namespace labelcut::bench
