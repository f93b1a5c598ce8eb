// The dialog: everything that is chosen, and the same job as a command.
#pragma once

#include <QScrollArea>

#include "host/dialog/job_model.h"

class QFormLayout;
class QGroupBox;
class QPlainTextEdit;
class QVBoxLayout;

namespace labelcut {

class SummaryPage : public QScrollArea {
    Q_OBJECT
public:
    explicit SummaryPage(JobModel& model, QWidget* parent = nullptr);

    void refresh();

private:
    struct Command {
        QWidget* row;
        QPlainTextEdit* text;
    };
    Command addCommand(QVBoxLayout& column, const QString& program, const QString& name);

    JobModel& mModel;
    QFormLayout* mEntries;
    Command mLabelcut;
    Command mLp;
};

} // namespace labelcut
