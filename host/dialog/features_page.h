// The dialog: every option of the printer that no panel and no other page shows.
#pragma once

#include <QScrollArea>

#include <vector>

#include "host/dialog/page.h"

namespace labelcut {

class OptionEditor;

/// The PPD's options in its groups, in its language. Installable options are the printer's
/// equipment and no choice of a job; they are not shown.
class FeaturesPage : public QScrollArea, public Page {
    Q_OBJECT
public:
    explicit FeaturesPage(JobModel& model, QWidget* parent = nullptr);

    QWidget& widget() override { return *this; }
    void refresh(const JobChanges& changes) override;
    PageProblem problem() const override;

private:
    void addGroup(const ppd_group_t& group, const QStringList& elsewhere);

    JobModel& mModel;
    std::vector<OptionEditor*> mEditors;
};

} // namespace labelcut
