// The dialog: one PPD option as a field, with its custom values and the way back to the default.
#include "host/dialog/option_editor.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <span>

#include "host/dialog/length.h"
#include "host/dialog/line_icons.h"
#include "host/dialog/plain_label.h"
#include "host/settings/saved_options.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

using Parameter = ppd::CustomParameter;

constexpr char kCustom[] = "Custom";
/// How wide a field for a custom value is.
constexpr int kFieldLetters = 20;
/// The user sees lengths as if they were of whole points.
constexpr double kHalfPoint = 0.5;

/// What is read back of a bound that was rounded for the user is that bound.
double withRoundedBound(const Parameter& parameter, double points) {
    for (const double bound : {parameter.minimum, parameter.maximum}) {
        if (std::abs(points - bound) <= kHalfPoint)
            return bound;
    }
    return points;
}

bool isText(const Parameter& parameter) {
    return parameter.type == Parameter::Type::Text || parameter.type == Parameter::Type::Password;
}

/// What the user sees of a parameter's raw value, and back.
QString forUser(const Parameter& parameter, const QString& raw) {
    if (parameter.type == Parameter::Type::Points)
        return lengthForUser(raw.toDouble());
    if (parameter.type == Parameter::Type::Real)
        return QLocale().toString(raw.toDouble(), 'g', QLocale::FloatingPointShortest);
    return raw;
}

/// Bounds of a text are those of its length; it begins empty.
QString firstForUser(const Parameter& parameter) {
    return isText(parameter) ? QString() : forUser(parameter, QString::number(parameter.minimum));
}

std::optional<QString> rawFromUser(const Parameter& parameter, const QString& text) {
    const auto within = [&](double value) {
        return parameter.minimum <= value && value <= parameter.maximum;
    };
    switch (parameter.type) {
    case Parameter::Type::Points: {
        const std::optional<double> typed = pointsFromUser(text);
        const double points = withRoundedBound(parameter, typed.value_or(-1));
        return typed && within(points) ? std::optional(QString::number(points)) : std::nullopt;
    }
    case Parameter::Type::Integer: {
        bool ok = false;
        const int value = QLocale().toInt(text.trimmed(), &ok);
        return ok && within(value) ? std::optional(QString::number(value)) : std::nullopt;
    }
    case Parameter::Type::Real: {
        bool ok = false;
        const double value = QLocale().toDouble(text.trimmed(), &ok);
        return ok && within(value) ? std::optional(QString::number(value)) : std::nullopt;
    }
    default:
        return within(static_cast<double>(text.toUcs4().size())) ? std::optional(text)
                                                                 : std::nullopt;
    }
}

QString boundsText(const Parameter& parameter) {
    if (parameter.type == Parameter::Type::Points)
        return hostText("FromTo").arg(lengthForUser(parameter.minimum),
                                      lengthForUser(parameter.maximum));
    const auto number = [](double bound) {
        return QLocale().toString(bound, 'g', QLocale::FloatingPointShortest);
    };
    return hostText(isText(parameter) ? "FromToCharacters" : "FromTo")
        .arg(number(parameter.minimum), number(parameter.maximum));
}

/// What the user is asked for. Of a paper that is width and height; how it is fed is the printer's
/// business.
std::vector<Parameter> askedFor(ppd_file_t* ppd, const QString& keyword) {
    std::vector<Parameter> parameters = ppd::customParameters(ppd, keyword.toUtf8().constData());
    if (keyword == QLatin1String(kPageSize)) {
        std::erase_if(parameters, [](const Parameter& parameter) {
            return parameter.name != QLatin1String("Width") &&
                   parameter.name != QLatin1String("Height");
        });
    }
    return parameters;
}

} // namespace

OptionEditor::OptionEditor(JobModel& model, const QString& keyword, QWidget* parent)
    : QWidget(parent)
    , mModel(model)
    , mKeyword(keyword)
    , mChoices(new QComboBox)
    , mReset(new QToolButton)
    , mBounds(new QLabel) {
    const QByteArray key = keyword.toUtf8();
    const ppd_option_t* option = ppd::findOption(model.ppd(), key.constData());
    const QString title = QString::fromUtf8(option->text);
    for (const ppd_choice_t& choice :
         std::span(option->choices, static_cast<std::size_t>(option->num_choices))) {
        const QString name = QString::fromUtf8(choice.choice);
        mChoices->addItem(QString::fromUtf8(choice.text), name);
    }
    mChoices->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    mChoices->setAccessibleName(title);
    mChoices->setObjectName(QStringLiteral("choices-") + keyword);
    connect(mChoices, &QComboBox::activated, this, &OptionEditor::choiceActivated);

    mReset->setAutoRaise(true);
    mReset->setIcon(lineIcon(LineIcon::Back));
    mReset->setToolTip(hostText("ResetOption"));
    mReset->setAccessibleName(hostText("ResetNamedOption").arg(title));
    QSizePolicy policy = mReset->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    mReset->setSizePolicy(policy);
    connect(mReset, &QToolButton::clicked, this, [this] {
        mRefusedOver.reset();
        if (const std::optional<QString> standard = mModel.defaultChoice(mKeyword))
            mModel.choose(mKeyword, *standard);
        refresh();
    });

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mChoices, 1);
    addCustomFields();
    mBounds->setTextFormat(Qt::PlainText);
    layout->addWidget(mBounds);
    layout->addWidget(mReset);
    refresh();
}

void OptionEditor::addCustomFields() {
    const std::vector<Parameter> parameters = askedFor(mModel.ppd(), mKeyword);
    for (const Parameter& parameter : parameters) {
        QLabel* label = nullptr;
        auto* edit = new QLineEdit;
        if (parameters.size() > 1) {
            label = plainLabel(parameter.text);
            layout()->addWidget(label);
        }
        edit->setAccessibleName(parameter.text);
        edit->setPlaceholderText(parameter.text);
        edit->setToolTip(Qt::convertFromPlainText(
            QStringLiteral("%1: %2").arg(parameter.text, boundsText(parameter))));
        edit->setMaximumWidth(kFieldLetters * edit->fontMetrics().averageCharWidth());
        if (parameter.type == Parameter::Type::Password)
            edit->setEchoMode(QLineEdit::Password);
        connect(edit, &QLineEdit::editingFinished, this, &OptionEditor::customEdited);
        layout()->addWidget(edit);
        mCustom.push_back({parameter, label, edit});
    }
}

void OptionEditor::showCustomFields(bool shown) {
    for (const CustomField& field : mCustom) {
        field.edit->setVisible(shown);
        if (field.label)
            field.label->setVisible(shown);
    }
}

void OptionEditor::refresh() {
    const QString value = mModel.choice(mKeyword).value_or(QString());
    // Once something else was chosen elsewhere, what could not be taken is over.
    if (mRefusedOver && *mRefusedOver != value)
        mRefusedOver.reset();
    const bool custom = value.startsWith(QLatin1String("Custom.")) || value.startsWith(u'{');
    mChoices->setCurrentIndex(mChoices->findData(custom ? QLatin1String(kCustom) : value));
    showCustomFields(custom || mRefusedOver);
    if (mRefusedOver)
        mChoices->setCurrentIndex(mChoices->findData(QLatin1String(kCustom)));
    else if (custom)
        showCustomValue(value);
    const CustomField* refused = mRefusedOver ? firstRefused() : nullptr;
    mBounds->setText(refused ? boundsText(refused->parameter) : QString());
    mBounds->setVisible(refused);
    const std::optional<QString> standard = mModel.defaultChoice(mKeyword);
    mReset->setVisible(standard && (mRefusedOver || *standard != value));
}

void OptionEditor::showCustomValue(const QString& value) {
    QStringList raw;
    if (value.startsWith(u'{')) {
        for (const Setting& part : parseOptionText(value.toUtf8()))
            raw.append(part.choice);
    } else {
        const QString plain = value.section(u'.', 1);
        raw = mCustom.size() == 1 ? QStringList{plain} : plain.split(u'x');
    }
    for (std::size_t i = 0; i < mCustom.size() && static_cast<qsizetype>(i) < raw.size(); ++i) {
        if (!mCustom[i].edit->hasFocus())
            mCustom[i].edit->setText(forUser(mCustom[i].parameter, raw[static_cast<qsizetype>(i)]));
    }
}

void OptionEditor::choiceActivated() {
    const QString choice = mChoices->currentData().toString();
    if (choice != QLatin1String(kCustom) || mCustom.empty()) {
        mRefusedOver.reset();
        mModel.choose(mKeyword, choice);
        refresh();
        return;
    }
    showCustomFields(true);
    for (const CustomField& field : mCustom) {
        if (field.edit->text().isEmpty())
            field.edit->setText(firstForUser(field.parameter));
    }
    mCustom.front().edit->setFocus();
    mCustom.front().edit->selectAll();
    customEdited();
}

const OptionEditor::CustomField* OptionEditor::firstRefused() const {
    const auto found = std::ranges::find_if(mCustom, [](const CustomField& field) {
        return !rawFromUser(field.parameter, field.edit->text());
    });
    return found == mCustom.end() ? nullptr : &*found;
}

QString OptionEditor::problem() const {
    const CustomField* refused = mRefusedOver ? firstRefused() : nullptr;
    return refused ? hostText("OutsideBounds")
                         .arg(mChoices->accessibleName(), boundsText(refused->parameter))
                   : QString();
}

/// As it is marked. What was typed can be taken.
QString OptionEditor::customValue() const {
    QStringList raw;
    for (const CustomField& field : mCustom)
        raw.append(rawFromUser(field.parameter, field.edit->text()).value_or(QString()));
    if (mKeyword == QLatin1String(kPageSize) || raw.size() == 1)
        return QStringLiteral("Custom.") + raw.join(u'x');
    Settings values;
    for (std::size_t i = 0; i < mCustom.size(); ++i)
        values.push_back({mCustom[i].parameter.name, raw[static_cast<qsizetype>(i)]});
    return ppd::customCollection(values);
}

void OptionEditor::customEdited() {
    // What lies outside the printer's bounds is not taken, and stays there to be put right.
    mRefusedOver.reset();
    if (firstRefused() || !mModel.choose(mKeyword, customValue()))
        mRefusedOver = mModel.choice(mKeyword).value_or(QString());
    refresh();
}

} // namespace labelcut
