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
    /// Whether the typed page range can be read; when not, the field says so and nothing is taken.
    bool isRangeValid() const { return mRangeValid; }

private:
    void rangeEdited();

    JobModel& mModel;
    QRadioButton* mAll;
    QRadioButton* mSome;
    QLineEdit* mRange;
    QLabel* mRangeHint;
    OptionEditor* mPaper = nullptr;
    QLabel* mPaperSize;
    bool mRangeValid = true;
};

} // namespace labelcut
