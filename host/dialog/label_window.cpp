// The dialog: one label, large.
#include "host/dialog/label_window.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScreen>

#include <algorithm>

#include "host/strip/strip_painter.h"
#include "host/strip/strip_words.h"
#include "host/texts/length.h"

namespace labelcut {

namespace {

constexpr int kMargin = 16;
/// Pixels a point at most: four times the actual size on common screens.
constexpr double kLargestScale = 5;
constexpr double kPartOfScreen = 0.6;

} // namespace

LabelWindow::LabelWindow(StripView& strip, PagePictures& pictures, std::int64_t index,
                         QWidget* parent)
    : QDialog(parent)
    , mStrip(strip)
    , mPictures(pictures)
    , mIndex(index) {
    setObjectName(QStringLiteral("largeLabel"));
    connect(&mPictures, &PagePictures::drawn, this, [this] { update(); });
    // The plan may change while this is open.
    connect(&mStrip, &StripView::wishesChanged, this, [this] {
        if (!mStrip.plan() || !mStrip.isRead() || mIndex >= mStrip.plan()->labels())
            close();
        else
            showLabel(mIndex);
    });
    showLabel(index);
}

LabelWindow::~LabelWindow() {
    disconnect(&mStrip, nullptr, this, nullptr);
    // What the strip shows is wanted again.
    Q_EMIT mStrip.wishesChanged();
}

QSize LabelWindow::sizeHint() const {
    return screen()->availableSize() * kPartOfScreen;
}

void LabelWindow::showLabel(std::int64_t index) {
    mIndex = std::clamp<std::int64_t>(index, 0, mStrip.plan()->labels() - 1);
    const QString text = labelText(*mStrip.plan(), mIndex);
    const JobPlan::Label label = mStrip.plan()->label(mIndex);
    setWindowTitle(text);
    setAccessibleDescription(measureForUser(label.size.width(), label.size.height()));
    wish();
    update();
}

/// As large as the window allows, in the strip's way of lying.
QRect LabelWindow::labelRect() const {
    const QSizeF size = mStrip.plan()->label(mIndex).size;
    const QSizeF lying = mStrip.way() == StripWay::Along ? size.transposed() : size;
    const QRect room =
        rect().adjusted(kMargin, kMargin, -kMargin, -kMargin - 2 * fontMetrics().height());
    const double scale = std::min({room.width() / std::max(lying.width(), 1.0),
                                   room.height() / std::max(lying.height(), 1.0), kLargestScale});
    QRect label(QPoint(0, 0), (lying * scale).toSize().expandedTo({1, 1}));
    label.moveCenter(room.center());
    return label;
}

void LabelWindow::wish() {
    const JobPlan::Label label = mStrip.plan()->label(mIndex);
    mPictures.want(
        {{label.page, pagePixels(label, labelRect(), mStrip.way(), devicePixelRatioF())}});
}

void LabelWindow::paintEvent(QPaintEvent*) {
    if (!mStrip.plan())
        return;
    QPainter painter(this);
    StripLook look;
    look.colours = stripColours(palette());
    look.way = mStrip.way();
    look.isReversed = mStrip.isReversed();
    look.picture = [this](int page) { return mPictures.picture(page); };
    look.isFailed = [this](int page) {
        return mPictures.state(page) == PagePictures::State::Failed;
    };
    StripPainter(painter, *mStrip.plan(), look, width()).drawLabel(mIndex, labelRect());
    const JobPlan::Label label = mStrip.plan()->label(mIndex);
    painter.setPen(look.colours.text);
    const QRect below = rect().adjusted(kMargin, height() - kMargin - 2 * fontMetrics().height(),
                                        -kMargin, -kMargin / 2);
    painter.drawText(below, Qt::AlignCenter,
                     labelText(*mStrip.plan(), mIndex) + QStringLiteral(" · ") +
                         measureForUser(label.size.width(), label.size.height()));
}

void LabelWindow::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    wish();
}

void LabelWindow::keyPressEvent(QKeyEvent* event) {
    // As the labels lie on the strip.
    const std::int64_t right = mStrip.isReversed() ? -1 : 1;
    if (event->key() == Qt::Key_Right)
        return showLabel(mIndex + right);
    if (event->key() == Qt::Key_Left)
        return showLabel(mIndex - right);
    if (event->key() == Qt::Key_Down)
        return showLabel(mIndex + 1);
    if (event->key() == Qt::Key_Up)
        return showLabel(mIndex - 1);
    QDialog::keyPressEvent(event);
}

void LabelWindow::mousePressEvent(QMouseEvent*) {
    close();
}

} // namespace labelcut
