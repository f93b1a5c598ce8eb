// Print service: one request to a print service and its answer, bounded and cancellable.
//
// Every request has a connection of its own. One that is kept may have gone stale, and libcups
// then reconnects by itself, for half a minute and deaf to any cancel flag. For the same reason
// only libcups' plain HTTP and IPP calls are used here, none that sends a whole request.
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

#include "host/core/call_limits.h"
#include "host/core/result.h"
#include "host/service/ipp_answer.h"
#include "host/service/print_errors.h"

class QIODevice;

namespace labelcut {

/// Where a print service is.
struct ServiceAddress {
    /// A host name, an IP address without brackets, or the absolute path of a socket.
    QString host;
    /// TCP port, 1 to 65535; without meaning for a socket.
    int port = 631;

    /// What CUPS_SERVER, else the system's configuration, names; else the local service.
    static ServiceAddress systemDefault();
    /// @param text  "host", "host:port", "[IPv6]", "[IPv6]:port", an IPv6 address, or "/socket".
    /// @return nothing for an empty text, an empty host or a port out of range.
    static std::optional<ServiceAddress> fromText(const QString& text);
    /// The form that fromText() takes, the usual port left out.
    QString text() const;
    bool isSocket() const { return host.startsWith(u'/'); }
    bool operator==(const ServiceAddress&) const = default;
};

/// Told how far a document has been sent. It runs on the sending thread and may cancel.
/// @param sent   bytes of the document so far.
/// @param total  bytes of the document; -1 when that is not known before its end.
using SendProgress = std::function<void(qint64 sent, qint64 total)>;

/// A document on its way; `data` is open for reading, borrowed, read to its end.
struct DocumentBody {
    QIODevice& data;
    SendProgress progress;
    /// Becomes true before its end is sent: from then on the service may have all of it.
    bool mayBeComplete = false;
};

/// Only connects, and closes again.
Result<Done> ippReach(const ServiceAddress& address, const Deadline& deadline);

/// Sends an IPP request and reads the answer.
/// @param path     resource to post to, such as "/" or "/jobs/".
/// @param body     sent behind the request; may be null.
/// @param subject  what the request is about; its service and timeout are filled in here.
/// @return the answer, of a status below 0x0100 and to this very request; otherwise why there is
///         none. One that is larger or deeper than ipp_answer.h allows is not read.
Result<IppMessage> ippExchange(const ServiceAddress& address, const Deadline& deadline,
                               const IppMessage& request, const char* path, DocumentBody* body,
                               RequestSubject subject);

/// Fetches a resource.
/// @param path  in UTF-8, not percent-encoded. @return its bytes; nothing when there is no such
/// resource (404).
Result<std::optional<QByteArray>> httpFetch(const ServiceAddress& address, const Deadline& deadline,
                                            const QByteArray& path, RequestSubject subject);

} // namespace labelcut
