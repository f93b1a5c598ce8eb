// The dialog: what will come out, in a sentence, and the buttons.
#include "host/dialog/job_footer.h"

#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "host/dialog/job_description.h"
#include "host/dialog/job_snapshot.h"
#include "host/dialog/steady_label.h"
#include "host/dialog/window_body.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {
constexpr int kProgressWidth = 160;
} // namespace

JobFooter::JobFooter(JobModel& model, QWidget* parent)
    : QWidget(parent)
    , mModel(model)
    , mSentence(new SteadyLabel(QStringLiteral("sentence")))
    , mRows(new QHBoxLayout)
    , mProgress(new QProgressBar) {
    mProgress->setObjectName(QStringLiteral("progress"));
    mProgress->setAccessibleName(hostText("Progress"));
    mProgress->setMaximumWidth(kProgressWidth);
    // It is the first to give way where the buttons need the room.
    mProgress->setMinimumWidth(1);
    QSizePolicy policy = mProgress->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    mProgress->setSizePolicy(policy);
    mProgress->hide();

    auto* back = new QHBoxLayout;
    mReset = addButton(*back, "ResetAll", "reset");
    mUndo = addButton(*back, "UndoLast", "undo");
    back->addStretch(1);
    auto* on = new QHBoxLayout;
    on->addStretch(1);
    on->addWidget(mProgress);
    mPrint = addButton(*on, "Print", "print");
    mCancel = addButton(*on, "Cancel", "cancel");
    mRows->addLayout(back);
    mRows->addLayout(on, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(mSentence);
    column->addLayout(mRows);

    connect(mReset, &QPushButton::clicked, &mModel, &JobModel::resetToDefaults);
    connect(mUndo, &QPushButton::clicked, &mModel, &JobModel::undo);
    // A text field that has the focus takes the key for itself.
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, mUndo,
            &QPushButton::click);
    connect(mPrint, &QPushButton::clicked, this, &JobFooter::printWanted);
    connect(mCancel, &QPushButton::clicked, this, &JobFooter::cancelWanted);
    refresh(JobSnapshot::of(model), false);
}

QPushButton* JobFooter::addButton(QBoxLayout& row, const char* textKey, const char* name) {
    auto* button = new QPushButton(hostText(textKey));
    button->setObjectName(QLatin1String(name));
    row.addWidget(button);
    return button;
}

void JobFooter::refresh(const JobSnapshot& now, bool canPrint) {
    const int labels = mModel.labelCount();
    if (!mRunning)
        mSentence->setText(jobSentence(mModel));
    mPrint->setText(labels > 0 ? hostText("PrintOne", "PrintMany", labels) : hostText("Print"));
    mPrint->setEnabled(!mRunning && canPrint && mModel.hasPrinter() && !now.files.isEmpty());
    mReset->setEnabled(!mRunning && !mModel.areDefaults(now.choices));
    mUndo->setEnabled(!mRunning && mModel.canUndo());
    fitScreen();
}

void JobFooter::setRunning(bool running) {
    mRunning = running;
    mProgress->setVisible(running);
    mCancel->setText(hostText("Cancel"));
    if (running)
        mCancel->setFocus();
}

void JobFooter::showProgress(const QString& sentence, int percent, bool isSent) {
    mSentence->setText(sentence);
    mProgress->setRange(0, percent < 0 ? 0 : 100);
    mProgress->setValue(percent);
    mCancel->setText(hostText(isSent ? "Close" : "Cancel"));
}

/// Buttons that have no room beside each other stand in two rows.
void JobFooter::fitScreen() {
    const int both = mRows->itemAt(0)->minimumSize().width() +
                     mRows->itemAt(1)->minimumSize().width() + mRows->spacing();
    const int margins = 4 * fontMetrics().height();
    const bool fits = both <= roomFor(*this).width() - margins;
    mRows->setDirection(fits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

} // namespace labelcut
