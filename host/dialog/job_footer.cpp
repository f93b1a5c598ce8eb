// The dialog: what will come out, in a sentence, and the buttons; then how the job is doing.
#include "host/dialog/job_footer.h"

#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

#include "host/dialog/job_description.h"
#include "host/dialog/job_snapshot.h"
#include "host/dialog/message_bar.h"
#include "host/dialog/steady_label.h"
#include "host/dialog/window_body.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {
constexpr int kProgressWidth = 160;
const QString kTrouble = QStringLiteral("trouble");
const QString kChecked = QStringLiteral("checked");
const QString kRefusal = QStringLiteral("refusal");
} // namespace

JobFooter::JobFooter(JobModel& model, QWidget* parent)
    : QWidget(parent)
    , mModel(model)
    , mMessages(new MessageBar)
    , mSentence(new SteadyLabel(QStringLiteral("sentence")))
    , mRows(new QHBoxLayout)
    , mProgress(new QProgressBar) {
    mMessages->setObjectName(QStringLiteral("jobMessages"));
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
    mHold = addButton(*on, "HoldJob", "holdJob");
    mCancelJob = addButton(*on, "CancelJob", "cancelJob");
    mPrint = addButton(*on, "Print", "print");
    addWaysToPrint(*on);
    mCancel = addButton(*on, "Cancel", "cancel");
    mRows->addLayout(back);
    mRows->addLayout(on, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(mMessages);
    column->addWidget(mSentence);
    column->addLayout(mRows);

    mHold->hide();
    mCancelJob->hide();
    connectButtons();
    refresh(JobSnapshot::of(model), false);
}

void JobFooter::connectButtons() {
    connect(mReset, &QPushButton::clicked, &mModel, &JobModel::resetToDefaults);
    connect(mUndo, &QPushButton::clicked, &mModel, &JobModel::undo);
    // A text field that has the focus takes the key for itself.
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, mUndo,
            &QPushButton::click);
    connect(mPrint, &QPushButton::clicked, this, &JobFooter::pressPrint);
    connect(mHold, &QPushButton::clicked, this, [this] { Q_EMIT holdWanted(!mCanRelease); });
    connect(mCancelJob, &QPushButton::clicked, this, &JobFooter::cancelJobWanted);
    connect(mCancel, &QPushButton::clicked, this, &JobFooter::cancelWanted);
}

void JobFooter::pressPrint() {
    const bool others = mOffer == PrintOffer::Kind::Others;
    Q_EMIT printWanted(others ? PrintPart::Others : PrintPart::All, false);
}

void JobFooter::addWaysToPrint(QBoxLayout& row) {
    mWays = new QPushButton;
    mWays->setObjectName(QStringLiteral("waysToPrint"));
    mWays->setAccessibleName(hostText("WaysToPrint"));
    mWays->setToolTip(hostText("WaysToPrint"));
    mWays->setFixedWidth(mWays->sizeHint().height());
    mWays->setMenu(new QMenu(mWays));
    // A window of its own takes the dialog's colours only when told to.
    mWays->menu()->setAttribute(Qt::WA_WindowPropagation);
    addWay("PrintNow", "printNow", PrintPart::All, false);
    mCheck = addWay("PrintCheck", "printCheck", PrintPart::First, false);
    addWay("PrintHeld", "printHeld", PrintPart::All, true);
    row.addWidget(mWays);
}

QAction* JobFooter::addWay(const char* textKey, const char* name, PrintPart part, bool isHeld) {
    QAction* way = mWays->menu()->addAction(hostText(textKey));
    way->setObjectName(QLatin1String(name));
    connect(way, &QAction::triggered, this,
            [this, part, isHeld] { Q_EMIT printWanted(part, isHeld); });
    return way;
}

QPushButton* JobFooter::addButton(QBoxLayout& row, const char* textKey, const char* name) {
    auto* button = new QPushButton(hostText(textKey));
    button->setObjectName(QLatin1String(name));
    row.addWidget(button);
    return button;
}

void JobFooter::refresh(const JobSnapshot& now, bool canPrint) {
    if (!mRunning)
        mSentence->setText(jobSentence(mModel));
    mPrint->setText(printText());
    mPrint->setEnabled(!mRunning && canPrint && mModel.hasPrinter() && !now.files.isEmpty());
    // A file is neither held nor checked.
    mWays->setEnabled(mPrint->isEnabled() && queueName(mModel.printer()->ref()));
    const std::optional<JobPlan> plan = mWays->isEnabled() ? mModel.plan() : std::nullopt;
    mCheck->setEnabled(plan && canCheck(*plan));
    mReset->setEnabled(!mRunning && !mModel.areDefaults(now.choices));
    mUndo->setEnabled(!mRunning && mModel.canUndo());
    fitScreen();
}

QString JobFooter::printText() const {
    const int labels = mModel.labelCount();
    if (mOffer == PrintOffer::Kind::Again)
        return hostText("PrintAgain");
    if (mOffer == PrintOffer::Kind::Others)
        return hostText("PrintOther", "PrintOthers", labels - 1);
    return labels > 0 ? hostText("PrintOne", "PrintMany", labels) : hostText("Print");
}

void JobFooter::setOffer(PrintOffer::Kind offer) {
    if (offer == mOffer)
        return;
    mOffer = offer;
    if (offer == PrintOffer::Kind::Others)
        mMessages->show(kChecked, MessageBar::Kind::Information,
                        hostText("CheckPrinted").arg(mModel.labelCount()));
    else
        mMessages->remove(kChecked);
}

void JobFooter::setRunning(bool running, const LabelsOfJob& labels) {
    mRunning = running;
    mLabels = labels;
    mProgress->setVisible(running);
    mHold->hide();
    mCancelJob->hide();
    mCancelJob->setEnabled(true);
    mMessages->remove(kTrouble);
    mMessages->remove(kRefusal);
    mCancel->setText(hostText("Cancel"));
    mCancel->setToolTip(QString());
    if (running)
        mCancel->setFocus();
}

void JobFooter::showProgress(const QString& sentence, int percent) {
    mSentence->setText(sentence);
    mProgress->setRange(0, percent < 0 ? 0 : 100);
    mProgress->setValue(percent);
}

void JobFooter::showReport(const JobReport& report) {
    mCancel->setText(hostText("Close"));
    mCancel->setToolTip(hostText("CloseLeavesJob"));
    mCancelJob->show();
    mCanRelease = report.canRelease;
    mHold->setText(hostText(report.canRelease ? "ReleaseJob" : "HoldJob"));
    mHold->setVisible(report.canHold || report.canRelease);
    mMessages->remove(kRefusal);
    if (report.trouble.isEmpty())
        mMessages->remove(kTrouble);
    else
        mMessages->show(kTrouble, MessageBar::Kind::Warning, report.trouble);
    showJob(report);
    fitScreen();
}

/// The bar moves only while labels come out, and stands where their number is known.
void JobFooter::showJob(const JobReport& report) {
    const int number = std::min(mLabels.before + report.labelsDone, mLabels.all);
    const bool isCounted = report.labelsDone > 0 && mLabels.all > 0;
    mSentence->setText(
        isCounted ? hostText("LabelOfJob")
                        .arg(QString::number(number), QString::number(mLabels.all), report.sentence)
                  : report.sentence);
    mProgress->setVisible(report.state == JobState::Processing || isCounted);
    mProgress->setRange(0, isCounted ? mLabels.all : 0);
    mProgress->setValue(isCounted ? number : -1);
}

void JobFooter::showRefusal(const QString& sentence) {
    mMessages->show(kRefusal, MessageBar::Kind::Warning, sentence);
}

void JobFooter::showCancelling(const QString& sentence) {
    mSentence->setText(sentence);
    mCancelJob->setEnabled(false);
    mHold->hide();
    mCancel->setFocus();
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
