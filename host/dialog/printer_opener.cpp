// The dialog: opens printers, and remembers what was chosen for each while the window is there.
#include "host/dialog/printer_opener.h"

#include <QFileInfo>

#include <algorithm>
#include <memory>
#include <utility>

#include "host/core/harmless_text.h"
#include "host/printers/recent_printer.h"

namespace labelcut {

PrinterOpener::PrinterOpener(JobModel& model, const PluginSearch& plugins, const PDESystem& system,
                             CupsConnection service, QObject* parent)
    : QObject(parent)
    , mModel(model)
    , mPlugins(plugins)
    , mSystem(system)
    , mDirectory(std::move(service)) {
    connect(&mDirectory, &PrinterDirectory::printersChanged, this, &PrinterOpener::queuesChanged);
    connect(&mDirectory, &PrinterDirectory::printerFound, this, &PrinterOpener::printerFound);
    connect(
        &mDirectory, &PrinterDirectory::printerNotFound, this,
        [this](const PrinterRef& printer, const Error& error) { giveUp(printer, error.sentence); });
}

void PrinterOpener::start(const std::optional<PrinterRef>& printer, const Settings& wanted) {
    mWanted = wanted;
    if (!printer)
        mFirst = recentQueue();
    const QString* queue = printer ? queueName(*printer) : nullptr;
    mDirectory.refresh(queue ? *queue : mFirst.value_or(QString()));
    if (printer)
        open(*printer);
}

void PrinterOpener::queuesChanged(const std::vector<Queue>& queues) {
    openFirst(queues);
    const std::optional<PrinterRef> printer = inForce();
    const QString* name = printer ? queueName(*printer) : nullptr;
    if (const Queue* queue = name ? mDirectory.find(*name) : nullptr)
        mModel.setQueue(*queue);
}

void PrinterOpener::openFirst(const std::vector<Queue>& queues) {
    if (!mFirst)
        return;
    const auto first = std::ranges::find_if(queues, [this](const Queue& queue) {
        return mFirst->isEmpty() ? queue.isDefault : queue.name == *mFirst;
    });
    if (first != queues.end())
        open(QueueRef{first->name});
}

void PrinterOpener::open(const PrinterRef& printer) {
    mFirst.reset();
    mComing = printer;
    Q_EMIT comingChanged();
    mDirectory.findPrinter(printer);
}

void PrinterOpener::stay() {
    mDirectory.cancelFind();
    mComing.reset();
    Q_EMIT comingChanged();
}

std::optional<PrinterRef> PrinterOpener::inForce() const {
    return mModel.hasPrinter() ? std::optional(mModel.printer()->ref()) : std::nullopt;
}

void PrinterOpener::giveUp(const PrinterRef& printer, const QString& sentence) {
    stay();
    Q_EMIT failed(printer, sentence);
}

void PrinterOpener::printerFound(const std::shared_ptr<FoundPrinter>& printer) {
    if (const QString* queue = queueName(printer->ref)) {
        const auto remembered = rememberQueue(*queue);
        static_cast<void>(remembered); // only a convenience
    } else {
        // Copies of one PPD are told apart by the names of their files.
        const QFileInfo file(*ppdPath(printer->ref));
        printer->title = QStringLiteral("%1 (%2)").arg(printer->title, harmless(file.fileName()));
    }
    adopt(std::move(*printer));
}

void PrinterOpener::adopt(FoundPrinter printer) {
    keepChoices();
    mDirectory.cancelFind();
    mComing.reset();
    Q_EMIT aboutToOpen();
    const PrinterRef ref = printer.ref;
    const QString title = printer.title;
    const Settings* chosen = chosenFor(ref);
    const Settings wanted =
        overridden(chosen ? *chosen : Settings(), std::exchange(mWanted, Settings()));
    mModel.adopt(std::make_unique<OpenedPrinter>(std::move(printer), wanted, mPlugins, mSystem));
    Q_EMIT opened(ref, title);
}

Settings* PrinterOpener::chosenFor(const PrinterRef& printer) {
    const auto chosen = std::ranges::find(
        mChosen, printer, [](const auto& pair) -> const auto& { return pair.first; });
    return chosen == mChosen.end() ? nullptr : &chosen->second;
}

/// Of the printer in force, for the day it is chosen again.
void PrinterOpener::keepChoices() {
    const std::optional<PrinterRef> printer = inForce();
    if (!printer)
        return;
    mModel.save();
    Settings chosen = mModel.jobSettings();
    if (Settings* before = chosenFor(*printer))
        *before = std::move(chosen);
    else
        mChosen.emplace_back(*printer, std::move(chosen));
}

} // namespace labelcut
