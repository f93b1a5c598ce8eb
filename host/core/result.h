// Core: what calls give that can fail with something to tell the user.
#pragma once

#include <QString>

#include <utility>
#include <variant>

namespace labelcut {

/// What went wrong, for programs; the sentence that goes with it is for people.
enum class ErrorKind {
    NoService,            ///< Nothing listens where the print service should be.
    Unreachable,          ///< No connection within the time given.
    SilentServer,         ///< Connected, but no full answer within the time given.
    ServerGone,           ///< The connection ended before the answer was complete.
    NotAPrintService,     ///< What answered does not speak IPP, or says far too much.
    Cancelled,            ///< The caller's cancel flag was set.
    NoSuchQueue,          ///< IPP status 0x0406 for a queue.
    NoSuchJob,            ///< IPP status 0x0406 for a job.
    QueueWithoutPpd,      ///< The queue exists and has no PPD.
    Rejecting,            ///< IPP status 0x0506: the queue takes no jobs.
    AuthenticationNeeded, ///< The service wants to know who asks, or does not permit it.
    FormatNotSupported,   ///< IPP status 0x040A.
    DocumentUnreadable,   ///< The document could not be read while it was sent.
    EdgeLost,             ///< A page is larger than its label.
    Other,                ///< The service's own words are in the sentence.
};

struct Error {
    ErrorKind kind = ErrorKind::Other;
    /// Whole sentences for the user in plain text: the thing by name, and the way out.
    QString sentence;
};

/// A value, or why there is none.
template<typename T>
class [[nodiscard]] Result {
public:
    Result(T value)
        : mState(std::in_place_index<0>, std::move(value)) {}
    Result(Error error)
        : mState(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return mState.index() == 0; }
    /// Only for a result that holds a value.
    T& value() { return *std::get_if<0>(&mState); }
    const T& value() const { return *std::get_if<0>(&mState); }
    T& operator*() { return value(); }
    const T& operator*() const { return value(); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }
    /// Only for a result that holds an error.
    const Error& error() const { return *std::get_if<1>(&mState); }

private:
    std::variant<T, Error> mState;
};

/// The value of a call that only succeeds or fails.
using Done = std::monostate;

} // namespace labelcut
