// Printers: the queues of a print service.
#include "host/printers/printer_directory.h"

#include <algorithm>
#include <utility>

namespace labelcut {

PrinterDirectory::PrinterDirectory(CupsConnection service, QObject* parent)
    : QObject(parent)
    , mService(std::move(service))
    , mRefresh(this)
    , mFind(this) {}

PrinterDirectory::~PrinterDirectory() = default;

void PrinterDirectory::refresh(const QString& first) {
    mRefreshing = true;
    mRefresh.start(
        [this, service = mService, first, timeout = mTimeout](const BackgroundCall::Link& link) {
            // `this` is only for the reports, which are not run once it is gone.
            const auto end = [&](const Error& error) {
                link.tell([this, error] {
                    Q_EMIT failed(error);
                    endRefresh();
                });
            };
            const Deadline deadline({timeout, &link.cancelFlag()});
            if (!first.isEmpty()) {
                const auto found = service.queueAttributes(first, deadline.limits());
                if (found)
                    link.tell([this, queue = found->queue] { showFound({queue}); });
                else if (found.error().kind != ErrorKind::NoSuchQueue)
                    return end(found.error());
            }
            // Shown whenever their number has doubled, so that showing stays cheap however many.
            std::vector<Queue> unshown;
            std::size_t shown = 0;
            auto queues = service.listQueues(
                {deadline.remaining(), &link.cancelFlag()}, [&](const std::vector<Queue>& found) {
                    unshown.insert(unshown.end(), found.begin(), found.end());
                    if (unshown.size() < shown)
                        return;
                    shown += unshown.size();
                    link.tell([this, queues = std::exchange(unshown, {})] { showFound(queues); });
                });
            if (!queues)
                return end(queues.error());
            link.tell([this, all = std::move(*queues)]() mutable {
                showAll(std::move(all));
                endRefresh();
            });
        });
}

void PrinterDirectory::cancelRefresh() {
    mRefresh.drop();
    mRefreshing = false;
}

const Queue* PrinterDirectory::find(const QString& name) const {
    const auto queue = std::ranges::find(mPrinters, name, &Queue::name);
    return queue == mPrinters.end() ? nullptr : &*queue;
}

void PrinterDirectory::findPrinter(const PrinterRef& printer) {
    mFind.start(
        [this, service = mService, printer, timeout = mTimeout](const BackgroundCall::Link& link) {
            auto found = labelcut::findPrinter(printer, service, {timeout, &link.cancelFlag()});
            if (!found) {
                link.tell([this, printer, error = found.error()] {
                    Q_EMIT printerNotFound(printer, error);
                });
                return;
            }
            const auto opened = std::make_shared<FoundPrinter>(std::move(*found));
            link.tell([this, opened] { Q_EMIT printerFound(opened); });
        });
}

void PrinterDirectory::showFound(const std::vector<Queue>& found) {
    for (const Queue& queue : found) {
        const auto known = std::ranges::find(mPrinters, queue.name, &Queue::name);
        if (known == mPrinters.end())
            mPrinters.push_back(queue);
        else
            *known = queue;
    }
    Q_EMIT printersChanged(mPrinters);
}

void PrinterDirectory::showAll(std::vector<Queue> queues) {
    mPrinters = std::move(queues);
    Q_EMIT printersChanged(mPrinters);
}

void PrinterDirectory::endRefresh() {
    mRefreshing = false;
    Q_EMIT finished();
}

} // namespace labelcut
