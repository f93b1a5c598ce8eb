// The dialog: which pages are printed, and on what paper.
#pragma once

#include <QWidget>

#include "host/dialog/job_model.h"

class QLabel;
class QLineEdit;
class QRadioButton;

namespace labelcut {

class OptionEditor;

class PagesPage : public QWidget {
    Q_OBJECT
public:
    explicit PagesPage(JobModel& model, QWidget* parent = nullptr);

    void refresh();
    /// What is wrong with a typed range or size, as a sentence; empty while all can be taken.
    QString problem() const;

Q_SIGNALS:
    /// What problem() says may be something else now.
    void problemChanged();

private:
    void showRange();
    void rangeEdited();

    JobModel& mModel;
    QRadioButton* mAll;
    QRadioButton* mSome;
    QLineEdit* mRange;
    QLabel* mRangeHint;
    OptionEditor* mPaper = nullptr;
    QLabel* mPaperSize;
    /// The model's range as the controls show it.
    PageRange mShown;
    bool mRangeValid = true;
};

} // namespace labelcut
