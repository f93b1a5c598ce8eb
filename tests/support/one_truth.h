// Tests of the dialog: what is marked, shown, summed up and sent must be the same.
#pragma once

#include <QStringList>

namespace labelcut {
class PrintDialog;
}

namespace labelcut::test {

/// Fails the running test, a line for each, where two of these differ: the marks, the panel's
/// controls, the fields on the other pages, the summary, both commands and the job's choices.
///
/// Ticks that special tape excludes stay as they are on purpose and are not compared then.
void expectOneTruth(PrintDialog& dialog);

/// The words of a command as a shell reads them: blanks part, single quotes hold together.
QStringList shellWords(const QString& command);

} // namespace labelcut::test
