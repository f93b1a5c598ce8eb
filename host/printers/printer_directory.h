// Printers: the queues of a print service, and what opening a printer takes, asked for without ever
// making the caller wait.
#pragma once

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

#include "host/core/background_call.h"
#include "host/printers/printer_source.h"
#include "host/service/cups_connection.h"

namespace labelcut {

/// Asks for queues, and finds printers, in the background. Every function returns at once, also
/// with a service that never answers, and every signal comes later, on this object's own thread;
/// its event loop must run for them. Destroying it, and every new request, drops the request of the
/// same kind that is under way: nothing of that one is heard any more.
class PrinterDirectory : public QObject {
    Q_OBJECT
public:
    static constexpr int kDefaultTimeout = 10'000; ///< Milliseconds.

    explicit PrinterDirectory(CupsConnection service = CupsConnection(), QObject* parent = nullptr);
    ~PrinterDirectory() override;

    const CupsConnection& service() const { return mService; }
    /// @param milliseconds  for each request from now on as a whole.
    void setTimeout(int milliseconds) { mTimeout = milliseconds; }

    /// Asks for all queues, which are told of as they are found. Those known before stay until the
    /// new list is complete.
    /// @param first  a queue that is shown before the others are there, such as the one used last;
    ///               it is asked for alone. Empty: none.
    void refresh(const QString& first = {});
    /// Drops the refresh that is running; nothing more is heard of it.
    void cancelRefresh();
    bool isRefreshing() const { return mRefreshing; }
    /// What is known so far, in the service's order, each name once.
    const std::vector<Queue>& printers() const { return mPrinters; }
    /// Borrowed until the next change; null when there is none of that name.
    const Queue* find(const QString& name) const;

    /// Finds a printer with all that opening it takes, which printerFound() or printerNotFound()
    /// answers. A PPD file asks no service; reading it may take its time all the same.
    void findPrinter(const PrinterRef& printer);
    void cancelFind() { mFind.drop(); }

Q_SIGNALS:
    /// The list has changed, in full or so far.
    void printersChanged(const std::vector<labelcut::Queue>& printers);
    /// The refresh failed; the queues known before stay known. finished() follows.
    void failed(const labelcut::Error& error);
    /// The refresh has ended by itself, one way or the other.
    void finished();
    /// The receiver may take the printer out; there is one.
    void printerFound(const std::shared_ptr<labelcut::FoundPrinter>& printer);
    void printerNotFound(const labelcut::PrinterRef& printer, const labelcut::Error& error);

private:
    void showFound(const std::vector<Queue>& found);
    void showAll(std::vector<Queue> queues);
    void endRefresh();

    CupsConnection mService;
    int mTimeout = kDefaultTimeout;
    bool mRefreshing = false;
    std::vector<Queue> mPrinters;
    BackgroundCall mRefresh;
    BackgroundCall mFind;
};

} // namespace labelcut
