// The dialog: which printer prints, how it is doing, and what is wrong with it.
#include "host/dialog/printer_picker.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

#include "host/core/harmless_text.h"
#include "host/dialog/message_bar.h"
#include "host/dialog/plain_label.h"
#include "host/dialog/printer_opener.h"
#include "host/printers/printer_state.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// How long after a look at the print service's queues the next one follows, and from how many
/// queues on it waits longer. Milliseconds.
constexpr int kLookInterval = 5'000;
constexpr int kLongLookInterval = 60'000;
constexpr std::size_t kManyQueues = 100;

const QString kServiceMessage = QStringLiteral("service");
const QString kPrinterMessage = QStringLiteral("printer");
const QString kStateMessage = QStringLiteral("state");

} // namespace

PrinterPicker::PrinterPicker(PrinterOpener& opener, QWidget* parent)
    : QWidget(parent)
    , mOpener(opener)
    , mDirectory(opener.directory())
    , mList(new PrinterList)
    , mState(plainLabel())
    , mMessages(new MessageBar) {
    mList->setParent(this);
    mState->setObjectName(QStringLiteral("printerState"));
    mState->setWordWrap(true);
    mState->hide();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(mState);
    column->addWidget(mMessages);
    setFocusProxy(mList);
    connect(mList, &PrinterList::printerChosen, this, &PrinterPicker::choose);
    connect(mList, &PrinterList::anotherFileWanted, this, &PrinterPicker::askForFile);
    connect(mList, &PrinterList::aboutToOpen, this, &PrinterPicker::sayServiceFailure);
    connect(&opener, &PrinterOpener::comingChanged, this, &PrinterPicker::showState);
    connect(&opener, &PrinterOpener::opened, this, &PrinterPicker::opened);
    connect(&opener, &PrinterOpener::failed, this, &PrinterPicker::failed);
    connectDirectory();
}

void PrinterPicker::connectDirectory() {
    connect(&mDirectory, &PrinterDirectory::printersChanged, this, [this] {
        mServiceFailure.clear();
        mMessages->remove(kServiceMessage);
        showPrinters();
        showState();
    });
    connect(&mDirectory, &PrinterDirectory::failed, this, [this](const Error& error) {
        if (error.sentence == std::exchange(mServiceFailure, error.sentence))
            return;
        // A printer that is known by its PPD needs no print service.
        const auto printer = mOpener.inForce();
        if (!printer || queueName(*printer))
            sayServiceFailure();
    });
    mLookAgain.setSingleShot(true);
    connect(&mLookAgain, &QTimer::timeout, this, &PrinterPicker::lookAgain);
    connect(&mDirectory, &PrinterDirectory::finished, this, [this] {
        mList->setPlaceholderText(hostText("ChoosePrinter"));
        showState();
        mLookAgain.start(mDirectory.printers().size() > kManyQueues ? kLongLookInterval
                                                                    : kLookInterval);
    });
}

void PrinterPicker::showPrinters() {
    std::vector<ListedPrinter> queues;
    for (const Queue& queue : mDirectory.printers())
        queues.push_back({QueueRef{queue.name}, titleOf(queue)});
    mList->setPrinters(std::move(queues), mFiles);
}

/// What is said of the printer in force, or of the one that is on its way.
void PrinterPicker::showState() {
    const std::optional<PrinterRef> coming = mOpener.coming();
    const std::optional<PrinterRef> printer = coming ? coming : mOpener.inForce();
    mList->setCurrent(printer);
    if (!printer) {
        sayState(QString(), false);
        return;
    }
    const QString* name = queueName(*printer);
    const Queue* queue = name ? mDirectory.find(*name) : nullptr;
    if (coming && name)
        sayState(hostText("FetchingPpd").arg(*name), false);
    else if (coming)
        sayState(hostText("ReadingPpd").arg(harmless(QFileInfo(*ppdPath(*coming)).fileName())),
                 false);
    else if (!name)
        sayState(hostText("PrintsIntoFile"), false);
    else if (queue)
        sayState(stateSentence(*queue), needsAttention(*queue));
    else if (!mDirectory.isRefreshing())
        sayState(goneSentence(*name), true);
}

/// In a quiet line, or as a message when somebody has to do something.
void PrinterPicker::sayState(const QString& sentence, bool needsAttention) {
    if (sentence == std::exchange(mStateSaid, sentence))
        return;
    mState->setText(needsAttention ? QString() : sentence);
    mState->setVisible(!mState->text().isEmpty());
    if (needsAttention)
        mMessages->show(kStateMessage, MessageBar::Kind::Warning, sentence);
    else
        mMessages->remove(kStateMessage);
}

void PrinterPicker::choose(const PrinterRef& printer) {
    mMessages->remove(kPrinterMessage);
    if (mOpener.coming() && printer == mOpener.inForce())
        mOpener.stay();
    else
        mOpener.open(printer);
}

void PrinterPicker::askForFile() {
    auto* chooser = new QFileDialog(this, hostText("ChoosePpdTitle"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::ExistingFile);
    chooser->setNameFilters({hostText("PpdFiles") + QStringLiteral(" (*.ppd *.ppd.gz)"),
                             hostText("AllFiles") + QStringLiteral(" (*)")});
    connect(chooser, &QFileDialog::fileSelected, this,
            [this](const QString& path) { choose(PpdFileRef{path}); });
    chooser->open();
}

void PrinterPicker::opened(const PrinterRef& printer, const QString& title) {
    mMessages->remove(kPrinterMessage);
    mMessages->remove(kServiceMessage);
    const bool isNewFile =
        ppdPath(printer) && std::ranges::find(mFiles, printer, &ListedPrinter::ref) == mFiles.end();
    if (isNewFile)
        mFiles.push_back({printer, title});
    showPrinters();
    showState();
}

void PrinterPicker::failed(const PrinterRef& printer, const QString& sentence) {
    std::vector<MessageAction> ways;
    if (queueName(printer))
        ways.push_back({hostText("TryAgain"), [this, printer] { choose(printer); }});
    mMessages->show(kPrinterMessage, MessageBar::Kind::Warning, sentence, ways);
}

void PrinterPicker::sayServiceFailure() {
    // The printer's own failure says it already, and offers the same.
    if (mServiceFailure.isEmpty() || mMessages->texts().contains(mServiceFailure))
        return;
    mMessages->show(kServiceMessage, MessageBar::Kind::Warning, mServiceFailure,
                    {{hostText("TryAgain"), [this] {
                          mMessages->remove(kServiceMessage);
                          mServiceFailure.clear();
                          mDirectory.refresh();
                      }}});
}

/// Printers come and go, and so do their states. A list that is open stays as it is.
void PrinterPicker::lookAgain() {
    if (!isVisible() || !isEnabled() || mOpener.coming() || mList->isOpen()) {
        mLookAgain.start(kLookInterval);
        return;
    }
    const std::optional<PrinterRef> printer = mOpener.inForce();
    const QString* name = printer ? queueName(*printer) : nullptr;
    mDirectory.refresh(name ? *name : QString());
}

} // namespace labelcut
