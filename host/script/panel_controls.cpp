// The automation driver: the panel's real controls.
#include "host/script/panel_controls.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QJsonArray>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include <array>

#include "host/script/script_fields.h"
#include "platform/toolkit/check_box.h"
#include "platform/toolkit/handles.h"
#include "platform/toolkit/points.h"

namespace labelcut::script {

namespace {

constexpr std::array kCheckBoxes = {
    "mCutEveryChkBx", "mCutAndEndChkBx",  "mMirrorPrintChkBx", "mAutoCutChkBx",
    "mHalfCutChkBx",  "mChainPrintChkBx", "mSpecialTapeChkBx", "mRemoveBlkSpaceChkBx",
};
constexpr char kCountField[] = "mCutEveryTxBx";
constexpr char kStepper[] = "mCutEveryStpr";
constexpr char kCountLabel[] = "mCutEveryStr";
constexpr char kPopUp[] = "mOptionPopUpButton";
constexpr char kPreview[] = "mOptionView";

template<typename Widget>
Widget* find(const QWidget* view, const QString& name) {
    return view ? view->findChild<Widget*>(name) : nullptr;
}

template<typename Widget>
Widget& present(const QWidget* view, const QString& name) {
    auto* widget = find<Widget>(view, name);
    if (!widget)
        refuse(QStringLiteral("there is no control \"%1\"").arg(name));
    return *widget;
}

template<typename Widget>
Widget& usable(const QWidget* view, const QString& name) {
    auto& widget = present<Widget>(view, name);
    const View handle(&widget);
    if (handle.isHidden())
        refuse(QStringLiteral("the control \"%1\" is hidden").arg(name));
    if (!handle.isEnabled())
        refuse(QStringLiteral("the control \"%1\" is disabled").arg(name));
    return widget;
}

QString checkBoxName(const QString& name) {
    for (const char* box : kCheckBoxes) {
        if (name == QLatin1String(box))
            return name;
    }
    refuse(QStringLiteral("\"%1\" is not one of the panel's checkboxes").arg(name));
}

void press(QWidget& widget, const QString& characters) {
    for (const QEvent::Type phase : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(phase, 0, Qt::NoModifier, characters);
        QApplication::sendEvent(&widget, &event);
    }
}

QJsonObject place(const QWidget& widget) {
    const QRectF rect = points::rect(widget);
    return {{QStringLiteral("x"), rect.left()}, {QStringLiteral("below"), rect.bottom()}};
}

QJsonObject common(QWidget& widget) {
    QJsonObject object = place(widget);
    const QRectF rect = points::rect(widget);
    object.insert(QStringLiteral("width"), rect.width());
    object.insert(QStringLiteral("height"), rect.height());
    const View handle(&widget);
    object.insert(QStringLiteral("enabled"), handle.isEnabled());
    object.insert(QStringLiteral("hidden"), handle.isHidden());
    return object;
}

QJsonValue checkBox(const QWidget* view, const QString& name) {
    auto* box = find<QCheckBox>(view, name);
    if (!box)
        return {};
    QJsonObject object = common(*box);
    object.insert(QStringLiteral("state"), checkBoxState(*box));
    object.insert(QStringLiteral("title"), Button(box).title());
    return object;
}

QJsonValue countField(const QWidget* view) {
    auto* field = find<QLineEdit>(view, QLatin1String(kCountField));
    if (!field)
        return {};
    QJsonObject object = common(*field);
    object.insert(QStringLiteral("text"), field->text());
    return object;
}

QJsonValue stepper(const QWidget* view) {
    auto* widget = find<QWidget>(view, QLatin1String(kStepper));
    if (!widget)
        return {};
    QJsonObject object = common(*widget);
    object.insert(QStringLiteral("value"), widget->property("value").toInt());
    return object;
}

QJsonValue countLabel(const QWidget* view) {
    auto* label = find<QLabel>(view, QLatin1String(kCountLabel));
    if (!label)
        return {};
    QJsonObject object = common(*label);
    object.insert(QStringLiteral("text"), label->text());
    object.insert(QStringLiteral("grey"), showsDisabledTextColor(*label));
    return object;
}

} // namespace

void click(QWidget* view, const QString& control) {
    usable<QCheckBox>(view, checkBoxName(control)).click();
}

void enter(QWidget* view, const QString& text) {
    auto& field = usable<QLineEdit>(view, QLatin1String(kCountField));
    field.selectAll();
    if (text.isEmpty())
        field.del();
    else
        field.insert(text);
}

void type(QWidget* view, const QString& text) {
    auto& field = usable<QLineEdit>(view, QLatin1String(kCountField));
    field.selectAll();
    for (const char32_t character : text.toUcs4())
        press(field, QString::fromUcs4(&character, 1));
}

void step(QWidget* view, int value) {
    auto& widget = usable<QWidget>(view, QLatin1String(kStepper));
    if (!QMetaObject::invokeMethod(&widget, "stepTo", Q_ARG(int, value)))
        refuse(QStringLiteral("the control \"%1\" is not a stepper").arg(QLatin1String(kStepper)));
}

void choosePopUp(QWidget* view, int tag) {
    auto& box = usable<QComboBox>(view, QLatin1String(kPopUp));
    const int index = box.findData(tag, PopUpButton::kTagRole);
    if (index < 0)
        refuse(QStringLiteral("the pop-up has no entry with the tag %1").arg(tag));
    box.setCurrentIndex(index);
    Q_EMIT box.activated(index);
}

void setState(QWidget* view, const QString& control, int state) {
    setCheckBoxState(present<QCheckBox>(view, checkBoxName(control)), state);
}

QJsonObject controls(const QWidget* view) {
    QJsonObject all;
    for (const char* name : kCheckBoxes)
        all.insert(QLatin1String(name), checkBox(view, QLatin1String(name)));
    all.insert(QLatin1String(kCountField), countField(view));
    all.insert(QLatin1String(kStepper), stepper(view));
    all.insert(QLatin1String(kCountLabel), countLabel(view));
    return all;
}

QJsonValue popUp(const QWidget* view) {
    const auto* box = find<QComboBox>(view, QLatin1String(kPopUp));
    if (!box)
        return {};
    QJsonArray entries;
    for (int i = 0; i < box->count(); ++i)
        entries.append(
            QJsonObject{{QStringLiteral("tag"), box->itemData(i, PopUpButton::kTagRole).toInt()},
                        {QStringLiteral("title"), box->itemText(i)}});
    const QVariant selected = box->currentData(PopUpButton::kTagRole);
    return QJsonObject{{QStringLiteral("entries"), entries},
                       {QStringLiteral("selected"),
                        selected.isValid() ? QJsonValue(selected.toInt()) : QJsonValue()}};
}

QJsonValue previewPlace(const QWidget* view) {
    const auto* preview = find<QWidget>(view, QLatin1String(kPreview));
    return preview ? QJsonValue(place(*preview)) : QJsonValue();
}

} // namespace labelcut::script
