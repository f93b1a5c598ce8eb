// Preview: the view that shows what the chosen combination of cut options does to the labels.
#include "plugins/cut_options/preview/option_view.h"

#include <QPainter>

#include <algorithm>
#include <utility>

#include "platform/toolkit/points.h"

namespace labelcut {

namespace {

bool isOn(const Button& box) {
    return box && !box.isHidden() && box.state() == 1;
}

int slotRV(const CutCombination& c) {
    const int cut = c.autoCut ? 2 : (c.cutAtEnd ? 1 : 0);
    return cut + (c.mirror ? 3 : 0);
}

int slotSG(const CutCombination& c) {
    const int mirror = c.mirror ? 1 : 0;
    if (c.specialTape)
        return 16 + mirror;
    return (c.autoCut ? 8 : 0) + (c.halfCut ? 4 : 0) + (c.chainPrint ? 2 : 0) + mirror;
}

} // namespace

CutCombination readCombination(const CutCheckBoxes& boxes) {
    CutCombination c;
    c.specialTape = isOn(boxes.specialTape);
    const bool cutEvery = !c.specialTape && isOn(boxes.cutEvery);
    c.cutAtEnd = isOn(boxes.cutAndEnd);
    c.mirror = isOn(boxes.mirrorPrint);
    if (c.specialTape)
        return c;
    c.halfCut = isOn(boxes.halfCut);
    c.autoCut = isOn(boxes.autoCut) || cutEvery;
    c.chainPrint = isOn(boxes.chainPrint);
    return c;
}

int pictureSlot(const CutCombination& combination, bool isRV) {
    return isRV ? slotRV(combination) : slotSG(combination);
}

OptionView13_v400_::OptionView13_v400_(bool isRV)
    : mIsRV(isRV) {}

OptionView13_v400_::~OptionView13_v400_() = default;

std::unique_ptr<OptionView13_v400_>
OptionView13_v400_::initWithFrame(const Frame& frame, std::shared_ptr<const PDEBundle> bundle,
                                  bool isRV) {
    std::unique_ptr<OptionView13_v400_> view(new OptionView13_v400_(isRV));
    points::setRect(*view, QRectF(frame.origin.x, 0, frame.size.width, frame.size.height));
    view->mBundle = std::move(bundle);
    if (!view->mBundle)
        return view;
    const auto load = [&](auto& slots, const auto& names) {
        std::ranges::transform(names, slots.begin(), [&](const char* name) {
            return view->loadedImage(*view->mBundle, name);
        });
    };
    if (view->isRV())
        load(view->mOptionImgRV, kPictureNamesRV);
    else
        load(view->mOptionImgSG, kPictureNamesSG);
    return view;
}

OptionView13_v400_::Image OptionView13_v400_::loadedImage(const PDEBundle& bundle,
                                                          const char* name) {
    return Picture::fromFile(bundle.pathForImageResource(QLatin1String(name)));
}

int OptionView13_v400_::targetSlot() const {
    return pictureSlot(readCombination(mBoxes), mIsRV);
}

const Picture* OptionView13_v400_::targetDrawImage() const {
    const auto slot = static_cast<std::size_t>(targetSlot());
    const Picture* picture = mIsRV ? mOptionImgRV[slot].get() : mOptionImgSG[slot].get();
    // A file without a picture in it leaves its slot empty; that shows when it is first looked at.
    return picture && !picture->size().isEmpty() ? picture : nullptr;
}

QString OptionView13_v400_::targetImageName() const {
    return targetDrawImage() ? QString::fromLatin1(targetName()) : QString();
}

const char* OptionView13_v400_::targetName() const {
    const auto slot = static_cast<std::size_t>(targetSlot());
    return mIsRV ? kPictureNamesRV[slot] : kPictureNamesSG[slot];
}

void OptionView13_v400_::setNeedsDisplay(bool needed) {
    if (!needed)
        return;
    update();
    if (mBundle)
        setAccessibleDescription(
            mBundle->localizedStringForKey(QStringLiteral("AX_") + QLatin1String(targetName())));
}

void OptionView13_v400_::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    const Picture* picture = targetDrawImage();
    if (!picture)
        return;
    const QSizeF size = picture->size() * points::scale(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // Unscaled, its lower-left corner on the view's: the view's y runs upward, the widget's down.
    picture->draw(painter, QRectF(QPointF(0, height() - size.height()), size), isDark(palette()));
}

} // namespace labelcut
