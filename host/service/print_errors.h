// Print service: the sentences for what can go wrong with a print service.
#pragma once

#include <QString>

#include <cups/http.h>
#include <cups/ipp.h>

#include "host/core/call_limits.h"
#include "host/core/result.h"

namespace labelcut {

/// What a request was about, for the sentences about its failure.
struct RequestSubject {
    QString service;      ///< Where the print service is: "host", "host:port" or a socket's path.
    int timeout = 0;      ///< Milliseconds that the call was given.
    QString queue;        ///< Queue name; empty when the request is not about one.
    int job = 0;          ///< Job id; 0 when the request is not about one.
    QString documentType; ///< MIME type of the document; empty when there is none.
};

/// What has become of a job whose way to the queue failed, as far as that can be known.
enum class JobFate {
    Gone,       ///< Nothing is printed, and no job is left.
    Empty,      ///< One may have been made; its number never came, nor did it get a document.
    Unfinished, ///< It may still be there, without a whole document.
    Begun,      ///< It was removed after the printer had perhaps begun.
    Unknown,    ///< It may be printed, or waiting.
    Sent,       ///< The queue has it, but does not say how it is doing.
};

namespace printerrors {

/// What the request's subject alone says about a failure.
/// @param kind  any but DocumentUnreadable and Other, for which words must be given.
Error about(ErrorKind kind, const RequestSubject& subject);

/// Nothing listens at the service's address. @param reason  the system's words; may be empty.
Error noService(const RequestSubject& subject, const QString& reason);
/// The same for a socket in the file system that is missing or that nobody serves.
Error nothingAtSocket(const RequestSubject& subject);
Error documentUnreadable(const QString& reason);

/// The service's address is no address. @param subject  whose `service` is what was given.
Error noServerNamed(const RequestSubject& subject);
/// The answer goes beyond the limits of ipp_answer.h.
Error tooMuch(const RequestSubject& subject);
/// The answer has another request's number.
Error notAsked(const RequestSubject& subject);

/// For an HTTP status that is not 200.
Error fromHttp(http_status_t status, const RequestSubject& subject);
/// For an IPP status of 0x0100 and above. @param message  the "status-message"; may be empty.
Error fromIpp(ipp_status_t status, const QString& message, const RequestSubject& subject);

/// Why an exchange that had begun failed: cancelled, out of time, or the other side went away.
Error brokenOff(const Deadline& deadline, const RequestSubject& subject);

/// The failure with what has become of the job in front of it: whoever prints again must know that
/// first. Where the job may be printed nothing of the rest asks to try again.
/// @param subject  of the request that failed; job and queue are the job's.
Error withFate(const Error& failure, JobFate fate, const RequestSubject& subject);

} // namespace printerrors

} // namespace labelcut
