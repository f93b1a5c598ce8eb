// The dialog: one PPD option as a field, with its custom values and the way back to the default.
#include "host/dialog/option_editor.h"

#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include <algorithm>

#include "host/dialog/line_icons.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Columns: names of several fields, the fields, the way back. The pop-up spans the first two.
enum Column { kNames, kFields, kReset, kColumns };

} // namespace

OptionEditor::OptionEditor(JobModel& model, const QString& keyword, QWidget& page)
    : mModel(model)
    , mKeyword(keyword)
    , mTitle(model.view().title(keyword))
    , mForm(model.ppd(), keyword)
    , mChoices(new ElidingComboBox(&page))
    , mReset(new QToolButton(&page))
    , mBounds(new QLabel(&page)) {
    setColumnStretch(kFields, 1);
    buildChoices();
    buildReset();
    buildFields(page);
    mBounds->setTextFormat(Qt::PlainText);
    mBounds->setWordWrap(true);
    addWidget(mBounds, rowCount(), kNames, 1, kColumns);
    refresh();
}

void OptionEditor::buildChoices() {
    for (const PpdView::Choice& choice : mModel.view().choices(mKeyword))
        mChoices->addItem(choice.title, choice.keyword);
    mChoices->setObjectName(QStringLiteral("choices-") + mKeyword);
    connect(mChoices, &QComboBox::activated, this, &OptionEditor::choiceActivated);
    addWidget(mChoices, 0, kNames, 1, 2);
}

void OptionEditor::buildReset() {
    mReset->setObjectName(QStringLiteral("reset-") + mKeyword);
    mReset->setAutoRaise(true);
    mReset->setIcon(lineIcon(LineIcon::Back));
    mReset->setToolTip(hostText("ResetOption"));
    mReset->setAccessibleName(hostText("ResetNamedOption").arg(mTitle));
    QSizePolicy policy = mReset->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    mReset->setSizePolicy(policy);
    connect(mReset, &QToolButton::clicked, this, &OptionEditor::goBack);
    addWidget(mReset, 0, kReset);
}

void OptionEditor::buildFields(QWidget& page) {
    const bool several = mForm.parameters().size() > 1;
    for (const ppd::CustomParameter& parameter : mForm.parameters()) {
        auto* field = new CustomField(parameter, mTitle, page, this);
        mFields.push_back(field);
        const int row = rowCount();
        if (several)
            addWidget(&field->label(), row, kNames);
        addWidget(&field->edit(), row, several ? kFields : kNames, 1, several ? 1 : 2);
        connect(field, &CustomField::typed, this, &OptionEditor::showProblem);
        connect(field, &CustomField::edited, this, &OptionEditor::takeTyped);
    }
}

/// What is hidden while it has the focus hands it to the pop-up.
void OptionEditor::setShown(QWidget& part, bool shown) {
    if (!shown && part.hasFocus())
        mChoices->setFocus();
    part.setVisible(shown);
}

void OptionEditor::showFields(bool shown) {
    for (CustomField* field : mFields) {
        setShown(field->edit(), shown);
        field->label().setVisible(shown && mFields.size() > 1);
    }
}

void OptionEditor::refresh() {
    const QString choice = mModel.choice(mKeyword).value_or(QString());
    // Once something else was chosen elsewhere, what could not be taken is over.
    if (mRefusedOver && *mRefusedOver != choice)
        mRefusedOver.reset();
    const bool isCustom = mRefusedOver || isCustomValue(choice);
    mChoices->setCurrentIndex(mChoices->findData(isCustom ? QString(kCustom) : choice));
    showFields(isCustom);
    if (!mRefusedOver)
        showValues(choice);
    showProblem();
    const std::optional<QString> standard = mModel.defaultChoice(mKeyword);
    setShown(*mReset, standard && (mRefusedOver || *standard != choice));
}

void OptionEditor::showValues(const QString& choice) {
    const QStringList values = mForm.takenApart(choice).value_or(QStringList());
    for (qsizetype i = 0; i < values.size(); ++i)
        mFields[static_cast<std::size_t>(i)]->show(values[i]);
}

void OptionEditor::showProblem() {
    const CustomField* refused = mRefusedOver ? firstRefused() : nullptr;
    mBounds->setText(refused ? refused->boundsText() : QString());
    mBounds->setVisible(refused);
    Q_EMIT problemChanged();
}

void OptionEditor::choiceActivated() {
    const QString choice = mChoices->currentData().toString();
    if (choice != kCustom || mFields.empty()) {
        mRefusedOver.reset();
        mModel.choose(mKeyword, choice);
        refresh();
        return;
    }
    showFields(true);
    for (CustomField* field : mFields) {
        if (field->isBlank())
            field->showFirst();
    }
    // Whoever steps through the choices by key stays where he can go on stepping.
    if (mChoices->isPickedFromList()) {
        mFields.front()->edit().setFocus();
        mFields.front()->edit().selectAll();
    }
    takeTyped();
}

void OptionEditor::goBack() {
    mRefusedOver.reset();
    if (const std::optional<QString> standard = mModel.defaultChoice(mKeyword))
        mModel.choose(mKeyword, *standard);
    refresh();
}

QWidget* OptionEditor::problemField() const {
    CustomField* refused = mRefusedOver ? firstRefused() : nullptr;
    return refused ? static_cast<QWidget*>(&refused->edit()) : mChoices;
}

CustomField* OptionEditor::firstRefused() const {
    const auto found =
        std::ranges::find_if(mFields, [](const CustomField* field) { return !field->value(); });
    return found == mFields.end() ? nullptr : *found;
}

QString OptionEditor::problem() const {
    const CustomField* refused = mRefusedOver ? firstRefused() : nullptr;
    return refused ? hostText("OutsideBounds").arg(mTitle, refused->boundsText()) : QString();
}

/// Nothing while a field holds what cannot be taken.
std::optional<QString> OptionEditor::typedChoice() const {
    QStringList values;
    for (const CustomField* field : mFields) {
        const std::optional<QString> value = field->value();
        if (!value)
            return std::nullopt;
        values << *value;
    }
    return mForm.composed(values);
}

void OptionEditor::takeTyped() {
    // What lies outside the printer's bounds is not taken, and stays there to be put right.
    mRefusedOver.reset();
    const std::optional<QString> choice = typedChoice();
    if (!choice || !mModel.choose(mKeyword, *choice))
        mRefusedOver = mModel.choice(mKeyword).value_or(QString());
    refresh();
}

} // namespace labelcut
