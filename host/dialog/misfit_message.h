// The dialog: what is said when pages are not whole on their labels.
#pragma once

#include <QString>

namespace labelcut {

class JobModel;
class JobPlan;
class MessageBar;

/// The message's name.
inline const QString kMisfitMessage = QStringLiteral("misfit");

/// Names the first page that loses an edge and offers ways out: a label size of the page's measure,
/// turning, scaling, or to have it cut off. Takes the message away when every page is whole, or the
/// user has chosen one of these.
/// @param model  and messages: borrowed, live as long as the message.
void showMisfit(JobModel& model, const JobPlan& plan, MessageBar& messages);

} // namespace labelcut
