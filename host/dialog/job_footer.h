// The dialog: what will come out, in a sentence, and the buttons; then how the job is doing.
#pragma once

#include <QWidget>

#include "host/dialog/check_print.h"
#include "host/job/job_report.h"

class QAction;
class QBoxLayout;
class QProgressBar;
class QPushButton;

namespace labelcut {

class JobModel;
class MessageBar;
class SteadyLabel;
struct JobSnapshot;

/// Where a job stands among the labels of what was chosen.
struct LabelsOfJob {
    /// Labels of all that was chosen; 0: not known.
    int all = 0;
    /// How many of them were printed by an earlier job.
    int before = 0;
};

/// Messages about the job that was sent; the sentence; and below it in one row, or in two
/// where the screen is narrow: back to the printer's defaults, undo; progress, hold or release the
/// job, cancel it, Print with other ways to print, Cancel or Close.
class JobFooter : public QWidget {
    Q_OBJECT
public:
    /// @param model  borrowed, outlives this.
    explicit JobFooter(JobModel& model, QWidget* parent = nullptr);

    QPushButton& printButton() const { return *mPrint; }
    /// Shows the model's state.
    /// @param now       what it is.
    /// @param canPrint  false while there is something to wait for beside the model.
    void refresh(const JobSnapshot& now, bool canPrint);
    /// What the Print button does next; its text follows with the next refresh().
    void setOffer(PrintOffer::Kind offer);
    /// While a job runs nothing but what is done to it can be pressed.
    void setRunning(bool running, const LabelsOfJob& labels = {});
    /// @param percent  0 to 100; less: not known.
    void showProgress(const QString& sentence, int percent);
    /// The job is the queue's.
    void showReport(const JobReport& report);
    /// What could not be done to the job, until its next report.
    void showRefusal(const QString& sentence);
    /// The service is being asked to take the job back: until it has answered there is nothing to
    /// do but to close.
    void showCancelling(const QString& sentence);

Q_SIGNALS:
    /// @param part  of the labels. @param isHeld  whether the job is to wait for its release.
    void printWanted(labelcut::PrintPart part, bool isHeld);
    /// Not to print; once a job was sent, to leave it alone and close.
    void cancelWanted();
    void cancelJobWanted();
    /// @param hold  otherwise to let the job go on.
    void holdWanted(bool hold);

private:
    QPushButton* addButton(QBoxLayout& row, const char* textKey, const char* name);
    QAction* addWay(const char* textKey, const char* name, PrintPart part, bool isHeld);
    void addWaysToPrint(QBoxLayout& row);
    void connectButtons();
    void pressPrint();
    void showJob(const JobReport& report);
    QString printText() const;
    void fitScreen();

    JobModel& mModel;
    MessageBar* mMessages;
    SteadyLabel* mSentence;
    QBoxLayout* mRows;
    QProgressBar* mProgress;
    QPushButton* mReset;
    QPushButton* mUndo;
    QPushButton* mHold;
    QPushButton* mCancelJob;
    QPushButton* mPrint;
    QPushButton* mWays;
    QAction* mCheck;
    QPushButton* mCancel;
    PrintOffer::Kind mOffer = PrintOffer::Kind::All;
    bool mRunning = false;
    /// While a job runs.
    LabelsOfJob mLabels;
    bool mCanRelease = false;
};

} // namespace labelcut
