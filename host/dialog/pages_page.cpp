// The dialog: which pages are printed, in what order, and on what labels.
#include "host/dialog/pages_page.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include <algorithm>

#include "host/dialog/option_editor.h"
#include "host/dialog/plain_label.h"
#include "host/texts/host_text.h"
#include "host/texts/length.h"

namespace labelcut {

PagesPage::PagesPage(JobModel& model, QWidget* parent)
    : QWidget(parent)
    , mModel(model)
    , mAll(new QRadioButton(hostText("AllLabels")))
    , mSome(new QRadioButton(hostText("SomeLabelsFromTo")))
    , mRange(new QLineEdit)
    , mRangeHint(new QLabel)
    , mReversed(new QCheckBox(hostText("LastLabelFirst")))
    , mCollated(new QCheckBox(hostText("SetBySet")))
    , mFit(new QComboBox)
    , mPaperSize(new QLabel) {
    mRangeHint->setWordWrap(true);
    mRange->setPlaceholderText(hostText("RangeExample"));
    mRange->setAccessibleName(hostText("PageRange"));
    mRange->setObjectName(QStringLiteral("pageRange"));
    mAll->setObjectName(QStringLiteral("allLabels"));
    mSome->setObjectName(QStringLiteral("someLabels"));
    mRange->setMaximumWidth(mRange->fontMetrics().horizontalAdvance(u'0') * 14);
    auto* either = new QButtonGroup(this);
    either->addButton(mAll);
    either->addButton(mSome);
    auto* some = new QWidget;
    auto* row = new QHBoxLayout(some);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(mSome);
    row->addWidget(mRange);
    row->addWidget(mRangeHint, 1);

    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    auto* labels = new QLabel(hostText("Labels"));
    labels->setMinimumWidth(nameWidth(fontMetrics()));
    form->addRow(labels, mAll);
    form->addRow(QString(), some);
    form->addRow(QString(), mReversed);
    form->addRow(QString(), mCollated);
    if (ppd::findOption(model.ppd(), kPageSize.data())) {
        mPaper = new OptionEditor(model, kPageSize, *this);
        connect(mPaper, &OptionEditor::problemChanged, this, [this] { problemChanged(); });
        auto* label = new QLabel(hostText("Paper"));
        label->setBuddy(mPaper->choices());
        form->addRow(label, mPaper);
        form->addRow(QString(), mPaperSize);
    }
    addHandling(*form);
    mAll->setChecked(true);
    connect(mAll, &QRadioButton::toggled, this, &PagesPage::rangeEdited);
    connect(mRange, &QLineEdit::textEdited, this, [this] {
        mSome->setChecked(true);
        rangeEdited();
    });
    showRange();
    showHandling();
    showPaper();
}

void PagesPage::addHandling(QFormLayout& form) {
    using worker::Fit;
    mReversed->setObjectName(QStringLiteral("reversed"));
    mCollated->setObjectName(QStringLiteral("collated"));
    mFit->setObjectName(QStringLiteral("fit"));
    for (const auto& [key, fit] :
         {std::pair("FitUnchanged", Fit::Unchanged), std::pair("FitActual", Fit::Actual),
          std::pair("FitTurn", Fit::Turn), std::pair("FitScale", Fit::Scale)})
        mFit->addItem(hostText(key), static_cast<int>(fit));
    form.addRow(fieldLabel(hostText("FitName"), *mFit), mFit);
    connect(mReversed, &QCheckBox::clicked, &mModel, &JobModel::setReversed);
    connect(mCollated, &QCheckBox::clicked, &mModel, &JobModel::setCollated);
    connect(mFit, &QComboBox::activated, this,
            [this](int entry) { mModel.setFit(static_cast<Fit>(mFit->itemData(entry).toInt())); });
}

/// Copies set by set are of no meaning for one.
void PagesPage::showHandling() {
    mReversed->setChecked(mModel.isReversed());
    mCollated->setChecked(mModel.isCollated());
    mCollated->setEnabled(mModel.copies() > 1);
    mFit->setCurrentIndex(mFit->findData(static_cast<int>(mModel.fit())));
}

int PagesPage::nameWidth(const QFontMetrics& metrics) {
    int width = 0;
    for (const char* key : {"Copies", "Labels", "Paper", "FitName"})
        width = std::max(width, metrics.size(Qt::TextShowMnemonic, hostText(key)).width());
    return width;
}

/// The model's range, unless that is what is typed or the user is about to type one.
void PagesPage::showRange() {
    const PageSelection& pages = mModel.pages();
    if (pages == mShown)
        return;
    mShown = pages;
    const bool all = pages.isEverything();
    if (!all)
        mRange->setText(toString(pages));
    (all ? mAll : mSome)->setChecked(true);
    setRangeValid(true);
}

PageProblem PagesPage::problem() const {
    if (!mRangeValid)
        return {hostText("RangeHint"), mRange};
    return mPaper ? PageProblem{mPaper->problem(), mPaper->problemField()} : PageProblem();
}

/// While what is typed is no range, nobody promises how many labels come out.
void PagesPage::setRangeValid(bool valid) {
    mRangeValid = valid;
    mRangeHint->setText(valid ? QString() : hostText("RangeHint"));
    mModel.setRangeUnderstood(valid);
    problemChanged();
}

void PagesPage::rangeEdited() {
    const std::optional<PageSelection> pages =
        mAll->isChecked() ? PageSelection() : parsePageSelection(mRange->text());
    setRangeValid(pages.has_value());
    if (!pages)
        return;
    mShown = *pages;
    mModel.setPages(*pages);
}

void PagesPage::showPaper() {
    if (!mPaper)
        return;
    const ppd_size_t* size = ppd::markedPageSize(mModel.ppd());
    mPaperSize->setText(
        size ? measureForUser(static_cast<double>(size->width), static_cast<double>(size->length))
             : QString());
}

void PagesPage::refresh(const JobChanges& changes) {
    if (changes.amount) {
        showRange();
        showHandling();
    }
    if (!mPaper || !changes.keywords.contains(mPaper->keyword()))
        return;
    mPaper->refresh();
    showPaper();
}

} // namespace labelcut
