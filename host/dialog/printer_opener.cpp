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
    connect(&mDirectory, &PrinterDirectory::queueFound, this, &PrinterOpener::queueFound);
    connect(&mDirectory, &PrinterDirectory::queueNotFound, this,
            [this](const QString& name, const Error& error) {
                giveUp(QueueRef{name}, error.sentence);
            });
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
    if (const QString* path = ppdPath(printer)) {
        openFile(*path);
        return;
    }
    mComing = *queueName(printer);
    Q_EMIT comingChanged();
    mDirectory.findQueue(mComing);
}

void PrinterOpener::stay() {
    mDirectory.cancelFind();
    mComing.clear();
    Q_EMIT comingChanged();
}

std::optional<PrinterRef> PrinterOpener::coming() const {
    return mComing.isEmpty() ? std::nullopt : std::optional<PrinterRef>(QueueRef{mComing});
}

std::optional<PrinterRef> PrinterOpener::inForce() const {
    return mModel.hasPrinter() ? std::optional(mModel.printer()->ref()) : std::nullopt;
}

void PrinterOpener::giveUp(const PrinterRef& printer, const QString& sentence) {
    stay();
    Q_EMIT failed(printer, sentence);
}

void PrinterOpener::openFile(const QString& path) {
    Result<FoundPrinter> found = findPpdFile(path);
    if (!found) {
        giveUp(PpdFileRef{path}, found.error().sentence);
        return;
    }
    // Copies of one PPD are told apart by the names of their files.
    found->title =
        QStringLiteral("%1 (%2)").arg(found->title, harmless(QFileInfo(path).fileName()));
    adopt(std::move(*found));
}

void PrinterOpener::queueFound(const std::shared_ptr<FoundPrinter>& printer) {
    const auto remembered = rememberQueue(*queueName(printer->ref));
    static_cast<void>(remembered); // only a convenience
    adopt(std::move(*printer));
}

void PrinterOpener::adopt(FoundPrinter printer) {
    keepChoices();
    mDirectory.cancelFind();
    mComing.clear();
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
