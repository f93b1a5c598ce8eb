// Strip: the widget that shows the user's own labels as they will come out.
#include "host/strip/strip_view.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "host/strip/strip_words.h"

namespace labelcut {

namespace {

constexpr double kSmallestZoom = 0.5;
constexpr double kLargestZoom = 8;
constexpr double kZoomStep = 1.25;
/// The strip asks for no more height when it is zoomed further.
constexpr double kHighestZoom = 3;
/// So many labels are in the bar's range at most; beyond that it moves in larger steps.
constexpr std::int64_t kBarRange = 1'000'000;
constexpr int kLeastWidth = 240;

} // namespace

StripView::StripView(QWidget* parent)
    : QWidget(parent)
    , mPicture([](int) { return QImage(); })
    , mIsFailed([](int) { return false; })
    , mBar(new QScrollBar(Qt::Horizontal, this)) {
    makeStripAccessible();
    setFocusPolicy(Qt::StrongFocus);
    setObjectName(QStringLiteral("strip"));
    mBar->setFocusPolicy(Qt::NoFocus);
    mBar->hide();
    connect(mBar, &QScrollBar::valueChanged, this, [this](int value) {
        const std::int64_t last = scene().lastFirst;
        scrollTo(last <= kBarRange ? value : last * value / kBarRange);
    });
}

StripView::~StripView() = default;

void StripView::setPlan(std::optional<JobPlan> plan, bool isRead) {
    mPlan = std::move(plan);
    if (mPlan && mPlan->labels() == 0)
        mPlan.reset();
    mIsRead = isRead;
    mCurrent = mPlan ? std::clamp<std::int64_t>(mCurrent, 0, mPlan->labels() - 1) : 0;
    sceneChanged();
}

void StripView::setPictures(std::function<QImage(int)> picture, std::function<bool(int)> isFailed) {
    mPicture = std::move(picture);
    mIsFailed = std::move(isFailed);
}

void StripView::pictureChanged(int page) {
    if (!mPlan)
        return;
    for (const StripCell& cell : scene().cells)
        if (mPlan->pageAt(cell.index) == page)
            update(mirrored(cell.label).adjusted(-2, -2, 2, 2));
}

const StripScene& StripView::scene() const {
    static const StripScene kNothing;
    if (!mPlan)
        return kNothing;
    if (!mScene)
        mScene = sceneOf(*mPlan, {size(), fontMetrics().height(), mWay, mZoom, mFirst});
    return *mScene;
}

/// From the first in sight on, without those behind "… 88 more …".
std::int64_t StripView::labelsInARow() const {
    const auto cells = static_cast<std::int64_t>(scene().cells.size());
    return std::max<std::int64_t>(scene().more > 0 ? cells - 1 : cells, 1);
}

/// What the scene is made of is not what it was.
void StripView::sceneChanged() {
    mScene.reset();
    if (mPlan)
        mFirst = std::clamp<std::int64_t>(mFirst, 0, scene().lastFirst);
    const std::int64_t last = scene().lastFirst;
    const QSignalBlocker quiet(mBar);
    mBar->setVisible(last > 0);
    mBar->setRange(0, static_cast<int>(std::min(last, kBarRange)));
    mBar->setPageStep(static_cast<int>(labelsInARow()));
    // Rounded up, so that each value leads to a label that leads back to it.
    mBar->setValue(
        static_cast<int>(last <= kBarRange ? mFirst : (mFirst * kBarRange + last - 1) / last));
    // An inverted bar would page away from where it is pressed.
    mBar->setLayoutDirection(mIsReversed ? Qt::RightToLeft : Qt::LeftToRight);
    update();
    Q_EMIT wishesChanged();
}

void StripView::scrollTo(std::int64_t first) {
    const std::int64_t wanted = std::clamp<std::int64_t>(first, 0, scene().lastFirst);
    if (std::exchange(mFirst, wanted) != wanted)
        sceneChanged();
}

std::vector<StripView::Wish> StripView::wishes() const {
    std::vector<Wish> wishes;
    if (!mPlan || !mIsRead)
        return wishes;
    std::set<int> seen;
    for (const StripCell& cell : scene().cells) {
        if (rectOf(cell.index).isNull() || !seen.insert(mPlan->pageAt(cell.index)).second)
            continue;
        const JobPlan::Label label = mPlan->label(cell.index);
        wishes.push_back({label.page, pagePixels(label, cell.label, mWay, devicePixelRatioF())});
    }
    return wishes;
}

void StripView::setWay(StripWay way) {
    if (std::exchange(mWay, way) != way)
        sceneChanged();
}

void StripView::setReversed(bool isReversed) {
    if (std::exchange(mIsReversed, isReversed) != isReversed)
        sceneChanged();
}

void StripView::setZoom(double zoom) {
    const double wanted = std::clamp(zoom, kSmallestZoom, kLargestZoom);
    if (std::exchange(mZoom, wanted) == wanted)
        return;
    updateGeometry();
    sceneChanged();
}

QRect StripView::mirrored(const QRect& rect) const {
    if (!mIsReversed || rect.isNull())
        return rect;
    return {width() - rect.left() - rect.width(), rect.top(), rect.width(), rect.height()};
}

QRect StripView::rectOf(std::int64_t index) const {
    for (const StripCell& cell : scene().cells)
        if (cell.index == index && cell.label.intersects(rect()))
            return mirrored(cell.label);
    return {};
}

std::optional<std::int64_t> StripView::labelAt(const QPoint& place) const {
    for (const StripCell& cell : scene().cells)
        if (mirrored(cell.label).contains(place))
            return cell.index;
    return std::nullopt;
}

/// Makes it the one that keys act on, and brings it into sight.
void StripView::setCurrent(std::int64_t index) {
    if (!mPlan)
        return;
    const std::int64_t wanted = std::clamp<std::int64_t>(index, 0, mPlan->labels() - 1);
    const bool isOther = std::exchange(mCurrent, wanted) != wanted;
    if (mCurrent < mFirst)
        scrollTo(mCurrent);
    while (rectOf(mCurrent).isNull() && mFirst < scene().lastFirst)
        scrollTo(std::max(mFirst + 1, mCurrent - labelsInARow() + 2));
    if (isOther && hasFocus())
        tellCurrent();
    update();
}

/// Tells screen readers on which label the focus is.
void StripView::tellCurrent() {
    if (!mPlan || !mIsRead)
        return;
    QAccessibleEvent focus(this, QAccessible::Focus);
    focus.setChild(static_cast<int>(mCurrent));
    QAccessible::updateAccessibility(&focus);
}

StripLook StripView::look() const {
    StripLook look;
    look.colours = stripColours(palette());
    look.way = mWay;
    look.isReversed = mIsReversed;
    look.picture = mPicture;
    look.isFailed = mIsFailed;
    look.current = hasFocus() ? mCurrent : -1;
    look.more = moreText(scene().more);
    look.isRead = mIsRead;
    return look;
}

void StripView::paintEvent(QPaintEvent*) {
    if (!mPlan)
        return;
    QPainter painter(this);
    const StripLook how = look();
    StripPainter(painter, *mPlan, how, width()).draw(scene());
}

void StripView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const int thickness = mBar->sizeHint().height();
    mBar->setGeometry(0, height() - thickness, width(), thickness);
    sceneChanged();
}

void StripView::wheelEvent(QWheelEvent* event) {
    const bool isZoom = event->modifiers().testFlag(Qt::ControlModifier);
    // Where there is nothing to scroll the window around may.
    if (!mPlan || (!isZoom && scene().lastFirst == 0))
        return event->ignore();
    event->accept();
    const QPoint turn = event->angleDelta();
    const bool isSideways = std::abs(turn.x()) > std::abs(turn.y());
    const int back = isSideways && mIsReversed ? -turn.x() : isSideways ? turn.x() : turn.y();
    // Fine wheels and touchpads tell of parts of a step.
    if ((back < 0) != (mTurned < 0))
        mTurned = 0;
    mTurned += back;
    const int steps = mTurned / QWheelEvent::DefaultDeltasPerStep;
    mTurned %= QWheelEvent::DefaultDeltasPerStep;
    if (steps == 0)
        return;
    if (isZoom)
        setZoom(mZoom * std::pow(kZoomStep, steps));
    else
        scrollTo(mFirst - steps);
}

void StripView::keyPressEvent(QKeyEvent* event) {
    if (!mPlan)
        return QWidget::keyPressEvent(event);
    const std::int64_t forward = mIsReversed ? -1 : 1;
    switch (event->key()) {
    case Qt::Key_Right:
        return setCurrent(mCurrent + forward);
    case Qt::Key_Left:
        return setCurrent(mCurrent - forward);
    case Qt::Key_PageDown:
        return setCurrent(mCurrent + labelsInARow());
    case Qt::Key_PageUp:
        return setCurrent(mCurrent - labelsInARow());
    case Qt::Key_Home:
        return setCurrent(0);
    case Qt::Key_End:
        return setCurrent(mPlan->labels() - 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return Q_EMIT labelWanted(mCurrent);
    default:
        QWidget::keyPressEvent(event);
    }
}

void StripView::mousePressEvent(QMouseEvent* event) {
    const auto label = labelAt(event->position().toPoint());
    if (!label || event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    setCurrent(*label);
    Q_EMIT labelWanted(*label);
}

void StripView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    // A press of the mouse is meant for the label that lies there now.
    if (event->reason() != Qt::MouseFocusReason)
        setCurrent(mCurrent);
    tellCurrent();
    update();
}

void StripView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

void StripView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange)
        sceneChanged();
}

bool StripView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || !mPlan)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const auto label = labelAt(help->pos());
    QToolTip::showText(help->globalPos(), label && mIsRead ? labelText(*mPlan, *label) : QString(),
                       this);
    return true;
}

QSize StripView::sizeHint() const {
    const int zoomed = stripHeight(fontMetrics().height(), std::clamp(mZoom, 1.0, kHighestZoom));
    return {2 * kLeastWidth, zoomed};
}

QSize StripView::minimumSizeHint() const {
    return {kLeastWidth, stripHeight(fontMetrics().height())};
}

} // namespace labelcut
