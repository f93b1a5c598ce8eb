// The dialog: which pages are printed, in what order, and on what labels.
#pragma once

#include "host/dialog/page.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace labelcut {

class OptionEditor;

class PagesPage : public QWidget, public Page {
    Q_OBJECT
public:
    explicit PagesPage(JobModel& model, QWidget* parent = nullptr);

    QWidget& widget() override { return *this; }
    void refresh(const JobChanges& changes) override;
    PageProblem problem() const override;

    /// As wide as the widest name of a field here or beside: fields of one kind then stand below
    /// each other.
    static int nameWidth(const QFontMetrics& metrics);

private:
    void showRange();
    void addHandling(QFormLayout& form);
    void showHandling();
    void showPaper();
    void setRangeValid(bool valid);
    void rangeEdited();

    JobModel& mModel;
    QRadioButton* mAll;
    QRadioButton* mSome;
    QLineEdit* mRange;
    QLabel* mRangeHint;
    QCheckBox* mReversed;
    QCheckBox* mCollated;
    QComboBox* mFit;
    OptionEditor* mPaper = nullptr;
    QLabel* mPaperSize;
    /// The model's range as the controls show it.
    PageSelection mShown;
    bool mRangeValid = true;
};

} // namespace labelcut
