// Toolkit: null-safe handles onto the widgets of an interface file.
#include "platform/toolkit/handles.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFontMetricsF>
#include <QKeySequence>
#include <QLabel>
#include <QStyle>
#include <QStyleOptionButton>

#include <cmath>

#include "platform/toolkit/check_box.h"
#include "platform/toolkit/int_value.h"
#include "platform/toolkit/points.h"
#include "platform/toolkit/stepper.h"

namespace labelcut {

namespace {

double parentHeight(const QWidget& widget) {
    const QWidget* parent = widget.parentWidget();
    return parent ? points::rect(*parent).height() : 0.0;
}

/// In the texts of checkboxes "&" marks a shortcut; doubled it stands for itself.
QString escaped(QString title) {
    return title.replace(u'&', QStringLiteral("&&"));
}

QString unescaped(QString title) {
    return title.replace(QStringLiteral("&&"), QStringLiteral("&"));
}

} // namespace

Frame View::frame() const {
    if (!mWidget)
        return {};
    const QRectF rect = points::rect(*mWidget);
    const double y = mWidget->parentWidget() ? parentHeight(*mWidget) - rect.bottom() : 0.0;
    return {{rect.left(), y}, {rect.width(), rect.height()}};
}

void View::setFrameOrigin(Point origin) {
    if (!mWidget)
        return;
    QRectF rect = points::rect(*mWidget);
    rect.moveLeft(origin.x);
    rect.moveBottom(parentHeight(*mWidget) - origin.y);
    points::setRect(*mWidget, rect);
}

void View::setFrameSize(Size size) {
    if (mWidget)
        points::setRootSize(*mWidget, QSizeF(size.width, size.height));
}

bool View::isHidden() const {
    return mWidget && mWidget->isHidden();
}

void View::setHidden(bool hidden) {
    if (mWidget)
        mWidget->setHidden(hidden);
}

bool View::isEnabled() const {
    return mWidget && !mWidget->testAttribute(Qt::WA_ForceDisabled);
}

void View::setEnabled(bool enabled) {
    if (mWidget)
        mWidget->setEnabled(enabled);
}

View View::superview() const {
    return View(mWidget ? mWidget->parentWidget() : nullptr);
}

void View::replaceSubview(View& old, const View& replacement) {
    QWidget* const gone = old.widget();
    QWidget* const fresh = replacement.widget();
    if (!mWidget || !gone || !fresh || gone->parentWidget() != mWidget)
        return;
    const QRectF rect = points::rect(*gone);
    const bool hidden = gone->isHidden();
    fresh->setParent(mWidget);
    fresh->stackUnder(gone);
    points::setRect(*fresh, rect);
    fresh->setHidden(hidden);
    delete gone;
}

void View::setToolTip(const QString& text) {
    if (!mWidget)
        return;
    const QString plain = Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text;
    // Setting a tool tip sends an event even when the text is the same.
    if (plain != mWidget->toolTip())
        mWidget->setToolTip(plain);
}

Button::Button(QCheckBox* box)
    : View(box) {}

QCheckBox* Button::box() const {
    return static_cast<QCheckBox*>(widget());
}

int Button::state() const {
    return box() ? checkBoxState(*box()) : 0;
}

void Button::setState(int state) {
    if (box())
        setCheckBoxState(*box(), state);
}

QString Button::title() const {
    return box() ? unescaped(box()->text()) : QString();
}

void Button::setTitle(const QString& title) {
    if (!box())
        return;
    // A new text takes the shortcut away with it; the interface file's stays.
    const QKeySequence shortcut = box()->shortcut();
    box()->setText(escaped(title));
    box()->setShortcut(shortcut);
}

double Button::widthForTitle(const QString& title) const {
    if (!box())
        return 0;
    QStyleOptionButton option;
    option.initFrom(box());
    // Only beside a text styles leave a gap.
    option.text = escaped(title);
    // As wide as it becomes when disabled: some styles etch the text then.
    const QSize text =
        box()
            ->style()
            ->itemTextRect(box()->fontMetrics(), QRect(), Qt::TextShowMnemonic, false, option.text)
            .size();
    const QSize needed =
        box()->style()->sizeFromContents(QStyle::CT_CheckBox, &option, text, box());
    return std::ceil(needed.width() / points::scale(*box()));
}

TextField::TextField(QLineEdit* field)
    : View(field) {}

TextField::TextField(QLabel* label)
    : View(label) {
    if (label)
        label->setTextFormat(Qt::PlainText);
}

QString TextField::stringValue() const {
    if (const auto* field = qobject_cast<QLineEdit*>(widget()))
        return field->text();
    const auto* label = qobject_cast<QLabel*>(widget());
    return label ? label->text() : QString();
}

void TextField::setStringValue(const QString& text) {
    if (auto* field = qobject_cast<QLineEdit*>(widget()))
        field->setText(text);
    else if (auto* label = qobject_cast<QLabel*>(widget()))
        label->setText(text);
}

std::int32_t TextField::intValue() const {
    return labelcut::intValue(stringValue());
}

// The placeholder's role is the toolkit's greyed text on windows of any palette, so that a change
// between light and dark is followed without anybody setting colours again.
void TextField::setTextColor(TextColor color) {
    if (widget())
        widget()->setForegroundRole(color == TextColor::Control ? QPalette::WindowText
                                                                : QPalette::PlaceholderText);
}

double TextField::widthForText(const QString& text) const {
    if (!widget())
        return 0;
    return std::ceil(QFontMetricsF(widget()->font()).horizontalAdvance(text) /
                     points::scale(*widget()));
}

bool showsDisabledTextColor(const QWidget& label) {
    return label.foregroundRole() == QPalette::PlaceholderText;
}

StepperHandle::StepperHandle(Stepper* stepper)
    : View(stepper) {}

Stepper* StepperHandle::stepper() const {
    return static_cast<Stepper*>(widget());
}

std::int32_t StepperHandle::intValue() const {
    return stepper() ? stepper()->value() : 0;
}

void StepperHandle::setIntValue(std::int32_t value) {
    if (stepper())
        stepper()->setValue(value);
}

PopUpButton::PopUpButton(QComboBox* box)
    : View(box) {}

QComboBox* PopUpButton::box() const {
    return static_cast<QComboBox*>(widget());
}

QStringList PopUpButton::itemTitles() const {
    QStringList titles;
    for (int i = 0; i < count(); ++i)
        titles.append(box()->itemText(i));
    return titles;
}

int PopUpButton::count() const {
    return box() ? box()->count() : 0;
}

void PopUpButton::removeItemWithTitle(const QString& title) {
    if (!box())
        return;
    const int index = box()->findText(title, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0)
        return;
    const bool wasSelected = index == box()->currentIndex();
    box()->removeItem(index);
    if (wasSelected && count() > 0)
        box()->setCurrentIndex(0);
}

void PopUpButton::setTitleAt(int index, const QString& title) {
    if (box())
        box()->setItemText(index, title);
}

std::int64_t PopUpButton::selectedTag() const {
    return box() ? box()->currentData(kTagRole).toLongLong() : 0;
}

void PopUpButton::selectItemWithTag(std::int64_t tag) {
    if (!box())
        return;
    const int index = box()->findData(QVariant::fromValue(static_cast<int>(tag)), kTagRole);
    if (index >= 0)
        box()->setCurrentIndex(index);
}

KeyWindow keyWindow(const View& view) {
    const QWidget* window = QApplication::activeWindow();
    if (!window)
        return {};
    const double factor = view.widget() ? points::scale(*view.widget()) : 1.0;
    return {true, window->frameGeometry().height() / factor};
}

} // namespace labelcut
