// The automation driver: the panel's real controls.
#include "host/script/panel_controls.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QJsonArray>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include <utility>

#include "host/script/script_fields.h"
#include "platform/toolkit/check_box.h"
#include "platform/toolkit/handles.h"
#include "platform/toolkit/points.h"

namespace labelcut::script {

namespace {

constexpr char kCheckBox[] = "checkBox";
constexpr char kField[] = "field";
constexpr char kStepper[] = "stepper";
constexpr char kLabel[] = "label";
constexpr char kPopUp[] = "popUp";
constexpr char kPreview[] = "preview";

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

QJsonValue field(const QWidget* view, const QString& name) {
    auto* field = find<QLineEdit>(view, name);
    if (!field)
        return {};
    QJsonObject object = common(*field);
    object.insert(QStringLiteral("text"), field->text());
    return object;
}

QJsonValue stepper(const QWidget* view, const QString& name) {
    auto* widget = find<QWidget>(view, name);
    if (!widget)
        return {};
    QJsonObject object = common(*widget);
    object.insert(QStringLiteral("value"), widget->property("value").toInt());
    return object;
}

QJsonValue label(const QWidget* view, const QString& name) {
    auto* label = find<QLabel>(view, name);
    if (!label)
        return {};
    QJsonObject object = common(*label);
    object.insert(QStringLiteral("text"), label->text());
    object.insert(QStringLiteral("grey"), showsDisabledTextColor(*label));
    return object;
}

} // namespace

PanelControls::PanelControls(QWidget* view, const QVariantMap& inspected)
    : mView(view) {
    for (const QVariant& listed : inspected.value(QStringLiteral("controls")).toList()) {
        const QVariantMap control = listed.toMap();
        mNames[control.value(QStringLiteral("kind")).toString()].append(
            control.value(QStringLiteral("name")).toString());
    }
}

QString PanelControls::first(const char* kind) const {
    const auto names = mNames.find(QLatin1String(kind));
    if (names == mNames.end())
        refuse(QStringLiteral("the panel has no %1").arg(QLatin1String(kind)));
    return names->second.front();
}

QString PanelControls::listedCheckBox(const QString& name) const {
    const auto names = mNames.find(QLatin1String(kCheckBox));
    if (names == mNames.end() || !names->second.contains(name))
        refuse(QStringLiteral("\"%1\" is not one of the panel's checkboxes").arg(name));
    return name;
}

void PanelControls::click(const QString& checkBox) const {
    usable<QCheckBox>(mView, listedCheckBox(checkBox)).click();
}

void PanelControls::enter(const QString& text) const {
    auto& field = usable<QLineEdit>(mView, first(kField));
    field.selectAll();
    if (text.isEmpty())
        field.del();
    else
        field.insert(text);
}

void PanelControls::type(const QString& text) const {
    auto& field = usable<QLineEdit>(mView, first(kField));
    field.selectAll();
    for (const char32_t character : text.toUcs4())
        press(field, QString::fromUcs4(&character, 1));
}

void PanelControls::step(int value) const {
    const QString name = first(kStepper);
    auto& widget = usable<QWidget>(mView, name);
    if (!QMetaObject::invokeMethod(&widget, "stepTo", Q_ARG(int, value)))
        refuse(QStringLiteral("the control \"%1\" is not a stepper").arg(name));
}

void PanelControls::choosePopUp(int tag) const {
    auto& box = usable<QComboBox>(mView, first(kPopUp));
    const int index = box.findData(tag, PopUpButton::kTagRole);
    if (index < 0)
        refuse(QStringLiteral("the pop-up has no entry with the tag %1").arg(tag));
    box.setCurrentIndex(index);
    Q_EMIT box.activated(index);
}

void PanelControls::setState(const QString& checkBox, int state) const {
    setCheckBoxState(present<QCheckBox>(mView, listedCheckBox(checkBox)), state);
}

QJsonObject PanelControls::all() const {
    using Look = QJsonValue (*)(const QWidget*, const QString&);
    static constexpr std::pair<const char*, Look> kLooks[] = {
        {kCheckBox, &checkBox}, {kField, &field}, {kStepper, &stepper}, {kLabel, &label}};
    QJsonObject seen;
    for (const auto& [kind, look] : kLooks) {
        const auto names = mNames.find(QLatin1String(kind));
        if (names == mNames.end())
            continue;
        for (const QString& name : names->second)
            seen.insert(name, look(mView, name));
    }
    return seen;
}

QJsonValue PanelControls::popUp() const {
    const auto names = mNames.find(QLatin1String(kPopUp));
    const auto* box = names == mNames.end() ? nullptr : find<QComboBox>(mView, names->second[0]);
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

QJsonValue PanelControls::previewPlace() const {
    const auto names = mNames.find(QLatin1String(kPreview));
    const auto* preview = names == mNames.end() ? nullptr : find<QWidget>(mView, names->second[0]);
    return preview ? QJsonValue(place(*preview)) : QJsonValue();
}

} // namespace labelcut::script
