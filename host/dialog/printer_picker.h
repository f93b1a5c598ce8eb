// The dialog: which printer prints, how it is doing, and what is wrong with it.
#pragma once

#include <QTimer>
#include <QWidget>

#include <vector>

#include "host/dialog/printer_list.h"
#include "host/printers/printer_directory.h"

class QLabel;

namespace labelcut {

class MessageBar;
class PrinterOpener;

/// The list of printers, below it a quiet line about the state of the one in force, and messages
/// where somebody has to do something. It looks again from time to time, while the window is in
/// sight and it is enabled itself.
class PrinterPicker : public QWidget {
    Q_OBJECT
public:
    /// @param opener  borrowed, outlives this.
    explicit PrinterPicker(PrinterOpener& opener, QWidget* parent = nullptr);

    /// To be put above this, beside the label that names it: screen readers look for a field's
    /// label among its siblings.
    PrinterList& list() const { return *mList; }
    const MessageBar& messages() const { return *mMessages; }

private:
    void connectDirectory();
    void showPrinters();
    void showState();
    void sayState(const QString& sentence, bool needsAttention);
    void choose(const PrinterRef& printer);
    void askForFile();
    void opened(const PrinterRef& printer, const QString& title);
    void failed(const PrinterRef& printer, const QString& sentence);
    void sayServiceFailure();
    void lookAgain();

    PrinterOpener& mOpener;
    PrinterDirectory& mDirectory;
    PrinterList* mList;
    QLabel* mState;
    MessageBar* mMessages;
    QTimer mLookAgain;
    /// The PPD files that were opened in this window.
    std::vector<ListedPrinter> mFiles;
    /// What was last said of the printer: dismissed, it stays away until there is something else
    /// to say.
    QString mStateSaid;
    /// What is wrong with the print service; empty while it answers.
    QString mServiceFailure;
};

} // namespace labelcut
