// The dialog: everything that is chosen, and the same job as a command.
#pragma once

#include <QScrollArea>
#include <QStringList>

#include <vector>

#include "host/dialog/job_description.h"
#include "host/dialog/page.h"

class QFormLayout;
class QLabel;
class QPlainTextEdit;
class QVBoxLayout;

namespace labelcut {

class SummaryPage : public QScrollArea, public Page {
    Q_OBJECT
public:
    explicit SummaryPage(JobModel& model, QWidget* parent = nullptr);

    QWidget& widget() override { return *this; }
    void refresh(const JobChanges& changes) override;

private:
    void showJob();
    struct Command {
        QWidget* row;
        QPlainTextEdit* text;
    };
    Command addCommand(QVBoxLayout& column, const QString& program, const QString& name);

    void showGroups(const std::vector<SummaryGroup>& groups);
    void buildLines(const std::vector<SummaryGroup>& groups);

    JobModel& mModel;
    QFormLayout* mEntries;
    /// The headings and titles that stand there, and the labels beside the titles.
    QStringList mTitles;
    std::vector<QLabel*> mValues;
    Command mLabelcut;
    Command mLp;
    /// What the commands do not say; hidden while they say all.
    QLabel* mLeftOut;
};

} // namespace labelcut
