// The dialog: every option of the printer that no panel and no other page shows.
#pragma once

#include <QScrollArea>

#include <vector>

#include "host/dialog/job_model.h"

namespace labelcut {

class OptionEditor;

/// The PPD's options in its groups, in its language. Installable options are the printer's
/// equipment and no choice of a job; they are not shown.
class FeaturesPage : public QScrollArea {
    Q_OBJECT
public:
    explicit FeaturesPage(JobModel& model, QWidget* parent = nullptr);

    void refresh();
    bool isEmpty() const { return mEditors.empty(); }
    /// What is wrong with a typed value, as a sentence; empty while all can be taken.
    QString problem() const;

Q_SIGNALS:
    /// What problem() says may be something else now.
    void problemChanged();

private:
    void addGroup(const ppd_group_t& group, const QStringList& elsewhere);

    JobModel& mModel;
    std::vector<OptionEditor*> mEditors;
};

} // namespace labelcut
