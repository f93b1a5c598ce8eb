// The dialog: the window.
#pragma once

#include <QDialog>
#include <QPointer>
#include <QTimer>

#include "host/dialog/check_print.h"
#include "host/dialog/dialog_request.h"
#include "host/dialog/job_model.h"
#include "host/dialog/print_run.h"
#include "host/dialog/printer_opener.h"

class QBoxLayout;
class QSpinBox;
class QTabWidget;

namespace labelcut {

class DocumentRow;
class JobFooter;
class MessageBar;
class PageStack;
class PresetBar;
class PrinterPicker;
class StripPane;

/// From top to bottom: document, printer, copies and presets; the strip of labels; the pages;
/// messages; what will come out, and the buttons. Each is a part of its own; the window connects
/// them.
class PrintDialog : public QDialog {
    Q_OBJECT
public:
    /// @param plugins  and system: borrowed, outlive the dialog.
    PrintDialog(const DialogRequest& request, const PluginSearch& plugins, const PDESystem& system,
                const CupsConnection& service = CupsConnection(), QWidget* parent = nullptr);
    ~PrintDialog() override;

    JobModel& model() { return mModel; }
    /// What is said about the job, and what about printers, in the lines where it shows.
    const MessageBar& messages() const { return *mMessages; }
    const MessageBar& printerMessages() const;
    QTabWidget& tabs() const;
    /// Whether a printer is on its way.
    bool awaitsPrinter() const { return mOpener.coming().has_value(); }

    StripPane& strip() const { return *mStrip; }
    /// Whether the window shows all that it will show by itself: nothing is on its way, being read,
    /// searched for or drawn.
    bool isComplete() const;

    /// Shows the window once the PPD file that it begins with is open, or cannot be opened, so that
    /// it does not flicker; at once when that takes long, or there is none.
    void showWithFirstPrinter();

    void reject() override;
    void done(int result) override;

protected:
    bool focusNextPrevChild(bool next) override;

private:
    void buildWindow();
    QWidget* buildHeader();
    QWidget* buildColumn();
    void connectParts();
    void connectRun();
    void start(const DialogRequest& request);
    void closePrinter();
    void printerOpened();
    void arrangeColumns();
    void refresh();
    void tell(const QString& sentence);
    void tellRefused(const std::vector<RefusedPlugin>& plugins);
    void print(PrintPart part, bool isHeld);
    void printIntoFile(Order order);
    Order orderNow() const;
    void runEnded(bool isOver);
    bool isReadyToPrint();
    void forgetMendedTyping();
    void startRun(const Order& order, bool isHeld);
    void setRunning(bool running);

    JobModel mModel;
    PrinterOpener mOpener;
    PrintRun mRun;
    /// Many changes in one turn of the event loop are shown once.
    QTimer mRefresh;
    QWidget* mHeader;
    QWidget* mColumn;
    QBoxLayout* mBody;
    MessageBar* mMessages;
    DocumentRow* mDocument;
    PrinterPicker* mPicker;
    QSpinBox* mCopies;
    PresetBar* mPresets;
    StripPane* mStrip;
    PageStack* mPages;
    JobFooter* mFooter;
    /// All that was chosen when Print was pressed, and which part of it was printed.
    Order mPrinted;
    PrintPart mPart = PrintPart::All;
    PrintOffer mOffer;
    /// Where the focus was when Print was pressed.
    QPointer<QWidget> mFocusBefore;
};

} // namespace labelcut
