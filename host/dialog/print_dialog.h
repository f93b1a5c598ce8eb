// The dialog: the window.
#pragma once

#include <QDialog>
#include <QTimer>

#include <memory>
#include <vector>

#include "host/dialog/job_model.h"
#include "host/dialog/print_run.h"
#include "host/presets/preset_store.h"
#include "host/printers/printer_directory.h"

class QComboBox;
class QLabel;
class QLayout;
class QProgressBar;
class QPushButton;
class QSpinBox;
class QTabWidget;
class QToolButton;

namespace labelcut {

class FeaturesPage;
class MessageBar;
class PagesPage;
class SummaryPage;
class WheelGuard;

/// What the dialog opens with.
struct DialogRequest {
    QStringList files;
    /// Name of a queue; empty: the one used last, or the service's default.
    QString queue;
    /// Path of a PPD given by hand; empty: none.
    QString ppdPath;
    /// Choices beyond the defaults.
    Settings choices;
    int copies = 1;
    PageRange pages;
};

class PrintDialog : public QDialog {
    Q_OBJECT
public:
    /// @param plugins  and system: borrowed, outlive the dialog.
    PrintDialog(const DialogRequest& request, const PluginSearch& plugins, const PDESystem& system,
                CupsConnection service = CupsConnection(), QWidget* parent = nullptr);
    ~PrintDialog() override;

    JobModel& model() { return mModel; }
    /// What is said about the job, and what about printers, in the lines where it shows.
    const MessageBar& messages() const { return *mMessages; }
    const MessageBar& printerMessages() const { return *mPrinterMessages; }
    QTabWidget& tabs() { return *mTabs; }

    void reject() override;
    void done(int result) override;

protected:
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct ListedPrinter {
        PrinterRef ref;
        QString title;
        QString state;
        bool needsAttention = false;
    };

    void buildWindow();
    QWidget* buildHeader();
    QLayout* buildPrinterRow();
    QLayout* buildAmountRow();
    QWidget* buildFooter();
    QPushButton* addButton(const char* textKey, const char* name);
    void connectModel();

    void startWith(const DialogRequest& request);
    void queuesChanged(const std::vector<Queue>& queues);
    void listPrinters();
    void printerActivated();
    bool isInForce(const PrinterRef& printer) const;
    void openQueue(const QString& name);
    void stayWithPrinter();
    void giveUpQueue(const Error& error);
    void openPpdByHand(const QString& path, const Settings& wanted);
    void askForPpd();
    void queuePpdFetched(const QString& name, const QByteArray& bytes);
    void adoptPrinter(FoundPrinter printer, const Settings& wanted);
    void sayState(const QString& sentence, bool needsAttention);
    void sayServiceFailure(const Error& error);
    void lookAgain();
    void showPrinterState();

    /// Adds a page that is made, and put into `page`, when it is first shown.
    template<typename Page>
    void addPage(const char* titleKey, Page*& page);
    void rebuildTabs();
    void clearTabs();
    void refresh();
    void refreshConflicts();
    void refreshPresets(const QString& chosen = {});
    void choosePreset(const QString& name);
    void tell(const QString& sentence);
    void keepGeometry();
    void tellRefused(const std::vector<RefusedPlugin>& plugins);

    void askForFiles();
    void countPages();
    void documentRead(int pages, const QByteArrayList& digests);

    void applyPreset(const QString& name);
    void savePreset();
    void keepPreset(const QString& name);
    void removePreset();
    void offerPresetBack(const QString& sentence, const Preset& preset);

    void print();
    bool isReadyToPrint();
    bool hasTypingProblem();
    void forgetMendedTyping();
    void startRun(const Order& order);
    void runProgressed(const QString& sentence, int percent);
    void runEnded();
    void setRunning(bool running);

    const PluginSearch& mPlugins;
    const PDESystem& mSystem;
    Settings mWanted;
    QString mWantedQueue;
    /// The queue whose PPD could not be had; empty once another is asked for.
    QString mGivenUp;
    JobModel mModel;
    PrinterDirectory mDirectory;
    PrintRun mRun;
    BackgroundCall mCounting;
    /// What the files were when their labels were counted; empty before that.
    QByteArrayList mShown;
    PresetStore mPresets;
    std::vector<ListedPrinter> mListed;
    /// As the pop-up shows them.
    QStringList mTitles;
    std::vector<ListedPrinter> mByHand;
    QTimer mLookAgain;
    /// What was last said of the printer and of the print service: dismissed, it stays away until
    /// there is something else to say.
    QString mStateSaid;
    QString mServiceFailureSaid;
    bool mRefreshScheduled = false;
    bool mPainted = false;
    /// A queue was chosen and its PPD is not here yet; the printer before it is still in force.
    bool mFetching = false;
    /// The preset that is in force, and the marks and copies it made.
    QString mPreset;
    Settings mPresetMarks;
    int mPresetCopies = 0;

    WheelGuard* mWheel;
    QWidget* mHeader = nullptr;
    QLabel* mDocument = nullptr;
    QPushButton* mChooseFiles = nullptr;
    QSpinBox* mCopies = nullptr;
    QComboBox* mPrinters = nullptr;
    QLabel* mPrinterState = nullptr;
    QComboBox* mPresetList = nullptr;
    QPushButton* mSavePreset = nullptr;
    QToolButton* mRemovePreset = nullptr;
    QTabWidget* mTabs = nullptr;
    QLabel* mNoPrinter = nullptr;
    MessageBar* mPrinterMessages = nullptr;
    MessageBar* mMessages = nullptr;
    QLabel* mSentence = nullptr;
    QProgressBar* mProgress = nullptr;
    QPushButton* mReset = nullptr;
    QPushButton* mUndo = nullptr;
    QPushButton* mPrint = nullptr;
    QPushButton* mCancel = nullptr;
    /// Null until they are first shown.
    PagesPage* mPagesPage = nullptr;
    FeaturesPage* mFeaturesPage = nullptr;
    SummaryPage* mSummaryPage = nullptr;
};

} // namespace labelcut
