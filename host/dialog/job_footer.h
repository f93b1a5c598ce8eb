// The dialog: what will come out, in a sentence, and the buttons.
#pragma once

#include <QWidget>

class QBoxLayout;
class QProgressBar;
class QPushButton;

namespace labelcut {

class JobModel;
class SteadyLabel;
struct JobSnapshot;

/// The sentence, and below it in one row, or in two where the screen is narrow: back to the
/// printer's defaults, undo; progress, Print, Cancel.
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
    /// While a job runs nothing but Cancel can be pressed.
    void setRunning(bool running);
    /// @param percent  0 to 100; less: not known.
    /// @param isSent   whether the job needs this program no more.
    void showProgress(const QString& sentence, int percent, bool isSent);

Q_SIGNALS:
    void printWanted();
    void cancelWanted();

private:
    QPushButton* addButton(QBoxLayout& row, const char* textKey, const char* name);
    void fitScreen();

    JobModel& mModel;
    SteadyLabel* mSentence;
    QBoxLayout* mRows;
    QProgressBar* mProgress;
    QPushButton* mReset;
    QPushButton* mUndo;
    QPushButton* mPrint;
    QPushButton* mCancel;
    bool mRunning = false;
};

} // namespace labelcut
