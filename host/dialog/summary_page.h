// The dialog: everything that is chosen, and the same job as a command.
#pragma once

#include <QScrollArea>

#include "host/dialog/job_model.h"

class QFormLayout;
class QLabel;
class QLineEdit;

namespace labelcut {

class SummaryPage : public QScrollArea {
    Q_OBJECT
public:
    explicit SummaryPage(JobModel& model, QWidget* parent = nullptr);

    void refresh();

private:
    QLineEdit* addCommand(QFormLayout& form, const QString& label, const QString& copyName);

    JobModel& mModel;
    QFormLayout* mEntries;
    QLineEdit* mLabelcut;
    QLineEdit* mLp;
    QWidget* mLpRow = nullptr;
};

} // namespace labelcut
