// The dialog: everything that is chosen, and the same job as a command.
#include "host/dialog/summary_page.h"

#include <QApplication>
#include <QClipboard>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "host/texts/host_text.h"

namespace labelcut {

namespace {

QLabel* plainLabel(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

SummaryPage::SummaryPage(JobModel& model, QWidget* parent)
    : QScrollArea(parent)
    , mModel(model) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* choices = new QGroupBox(hostText("SummaryChoices"));
    mEntries = new QFormLayout(choices);
    layout->addWidget(choices);
    auto* commands = new QGroupBox(hostText("SameAsCommand"));
    auto* form = new QFormLayout(commands);
    mLabelcut = addCommand(*form, QStringLiteral("labelcut"), QStringLiteral("copyLabelcut"));
    mLp = addCommand(*form, QStringLiteral("lp"), QStringLiteral("copyLp"));
    mLpRow = mLp->parentWidget();
    layout->addWidget(commands);
    layout->addStretch(1);
    setWidget(page);
    refresh();
}

QLineEdit* SummaryPage::addCommand(QFormLayout& form, const QString& label,
                                   const QString& copyName) {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* line = new QLineEdit;
    line->setReadOnly(true);
    line->setAccessibleName(hostText("CommandFor").arg(label));
    auto* copy = new QPushButton(hostText("Copy"));
    copy->setObjectName(copyName);
    copy->setAutoDefault(false);
    copy->setAccessibleName(hostText("CopyCommandFor").arg(label));
    connect(copy, &QPushButton::clicked, line,
            [line] { QApplication::clipboard()->setText(line->text()); });
    layout->addWidget(line, 1);
    layout->addWidget(copy);
    form.addRow(label, row);
    return line;
}

void SummaryPage::refresh() {
    while (mEntries->rowCount() > 0)
        mEntries->removeRow(0);
    for (const JobModel::SummaryEntry& entry : mModel.summary())
        mEntries->addRow(plainLabel(entry.title), plainLabel(entry.value));
    if (mEntries->rowCount() == 0)
        mEntries->addRow(plainLabel(hostText("NothingChosen")));
    // Shown from its beginning: what differs from call to call stands there.
    mLabelcut->setText(mModel.labelcutCommand());
    mLabelcut->setCursorPosition(0);
    const QString lp = mModel.lpCommand();
    mLp->setText(lp);
    mLp->setCursorPosition(0);
    auto* form = qobject_cast<QFormLayout*>(mLpRow->parentWidget()->layout());
    form->setRowVisible(mLpRow, !lp.isEmpty());
}

} // namespace labelcut
