// The dialog without its widgets: what is chosen, told as a summary, a sentence, and commands.
#pragma once

#include <QString>

#include <utility>
#include <vector>

#include "host/dialog/job_model.h"

namespace labelcut {

/// What one panel says of one of its choices.
struct SummaryEntry {
    QString panel;
    QString title;
    QString value;
    /// What it adds to a sentence: its title for a yes, nothing for a no, both otherwise.
    QString inSentence;
};

/// One heading of the summary, with title and value of each line below it.
struct SummaryGroup {
    QString heading;
    std::vector<std::pair<QString, QString>> lines;
};

/// What is chosen in the panels, in the order that each panel wants.
std::vector<SummaryEntry> panelSummary(const JobModel& model);

/// Everything that is chosen: printer, label size, labels and copies; what each panel says; and
/// those of the printer's other options that are not as the printer has them by default.
std::vector<SummaryGroup> wholeSummary(const JobModel& model);

/// What will happen, in one sentence; empty without a printer.
QString jobSentence(const JobModel& model);

/// The same job as a command for a shell, without passwords: of Labelcut, and of CUPS (empty
/// without a queue). There is a printer.
QString labelcutCommand(const JobModel& model);
QString lpCommand(const JobModel& model);
/// Titles of the options whose passwords the commands leave out.
QStringList leftOutOfCommands(const JobModel& model);

} // namespace labelcut
