// The dialog: one parameter of a custom value as a field.
#include "host/dialog/custom_field.h"

#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QTextDocument>

#include <utility>

#include "host/dialog/plain_label.h"
#include "host/settings/custom_value.h"
#include "host/texts/host_text.h"
#include "host/texts/length.h"

namespace labelcut {

namespace {

using Parameter = ppd::CustomParameter;
using Type = Parameter::Type;

/// How wide the field is.
constexpr int kFieldLetters = 20;

bool isText(const Parameter& parameter) {
    return parameter.type == Type::Text || parameter.type == Type::Password;
}

QString number(double value) {
    return QLocale().toString(value, 'g', QLocale::FloatingPointShortest);
}

QString forUser(const Parameter& parameter, const QString& value) {
    if (parameter.type == Type::Points)
        return lengthToEdit(value.toDouble());
    return parameter.type == Type::Real ? number(value.toDouble()) : value;
}

/// A bound may be typed as it is shown: in whole millimetres where the PPD has it in whole points.
double withShownBound(const Parameter& parameter, double points) {
    const auto shown = [](double bound) {
        return pointsFromUser(lengthForUser(bound)).value_or(bound);
    };
    if (points < parameter.minimum && points >= shown(parameter.minimum))
        return parameter.minimum;
    if (points > parameter.maximum && points <= shown(parameter.maximum))
        return parameter.maximum;
    return points;
}

std::optional<QString> within(const Parameter& parameter, double number, const QString& value) {
    return isWithinBounds(parameter, number) ? std::optional(value) : std::nullopt;
}

} // namespace

CustomField::CustomField(Parameter parameter, const QString& option, QWidget& page, QObject* parent)
    : QObject(parent)
    , mParameter(std::move(parameter))
    , mEdit(new QLineEdit(&page))
    , mLabel(fieldLabel(mParameter.text, *mEdit)) {
    mLabel->setParent(&page);
    mLabel->hide();
    mEdit->hide();
    mEdit->setAccessibleName(hostText("SettingText").arg(option, mParameter.text));
    mEdit->setAccessibleDescription(boundsText());
    mEdit->setPlaceholderText(mParameter.text);
    mEdit->setToolTip(Qt::convertFromPlainText(
        hostText("SettingText").arg(mParameter.text, boundsText()), Qt::WhiteSpaceNormal));
    mEdit->setMaximumWidth(kFieldLetters * mEdit->fontMetrics().averageCharWidth());
    if (mParameter.type == Type::Password)
        mEdit->setEchoMode(QLineEdit::Password);
    connect(mEdit, &QLineEdit::textChanged, this, &CustomField::typed);
    connect(mEdit, &QLineEdit::editingFinished, this, &CustomField::edited);
}

void CustomField::show(const QString& value) {
    const bool isTyping = mEdit->hasFocus() && mEdit->isModified();
    if (isTyping)
        return;
    mShownValue = value;
    mShownText = forUser(mParameter, value);
    if (mEdit->text() != mShownText)
        mEdit->setText(mShownText);
    mEdit->setModified(false);
}

void CustomField::showFirst() {
    if (mParameter.type == Type::Integer)
        show(QString::number(static_cast<int>(mParameter.minimum)));
    else if (!isText(mParameter))
        show(mParameter.type == Type::Points ? ppd::pointsText(mParameter.minimum)
                                             : ppd::numberText(mParameter.minimum));
}

bool CustomField::isBlank() const {
    return mEdit->text().isEmpty();
}

std::optional<QString> CustomField::value() const {
    const bool isUntouched = !mEdit->isModified() && mEdit->text() == mShownText;
    return isUntouched && !mShownValue.isEmpty() ? mShownValue : read(mEdit->text());
}

std::optional<QString> CustomField::read(const QString& text) const {
    bool isNumber = false;
    switch (mParameter.type) {
    case Type::Points: {
        const std::optional<double> points = pointsFromUser(text);
        if (!points)
            return std::nullopt;
        const QString value = ppd::pointsText(withShownBound(mParameter, *points));
        return within(mParameter, value.toDouble(), value);
    }
    case Type::Integer: {
        const int value = QLocale().toInt(text.trimmed(), &isNumber);
        return isNumber ? within(mParameter, value, QString::number(value)) : std::nullopt;
    }
    case Type::Real: {
        const double value = QLocale().toDouble(text.trimmed(), &isNumber);
        return isNumber ? within(mParameter, value, ppd::numberText(value)) : std::nullopt;
    }
    case Type::Text:
    case Type::Password:
        break;
    }
    return within(mParameter, static_cast<double>(text.toUcs4().size()), text);
}

QString CustomField::boundsText() const {
    if (mParameter.type == Type::Points)
        return hostText("FromTo").arg(lengthForUser(mParameter.minimum),
                                      lengthForUser(mParameter.maximum));
    return hostText(isText(mParameter) ? "FromToCharacters" : "FromTo")
        .arg(number(mParameter.minimum), number(mParameter.maximum));
}

} // namespace labelcut
