// Print service: an answer's bytes, looked at before libcups reads them.
//
// libcups reads and frees a collection within a collection by calling itself, as deep as the bytes
// say, and keeps every text sorted in one array. Some bytes that a service sends could so overflow
// the stack or keep a reader busy for minutes. This is the only place where answers are read.
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cups/ipp.h>

#include <memory>

#include "host/core/call_limits.h"

namespace labelcut {

struct IppDeleter {
    void operator()(ipp_t* message) const noexcept { ippDelete(message); }
};
using IppMessage = std::unique_ptr<ipp_t, IppDeleter>;

/// Bytes of one answer that are read at most; a page of a hundred queues has some hundred thousand.
inline constexpr qint64 kMaxAnswerBytes = 16 * 1024 * 1024;
/// Collections within each other; the deepest that is registered (media-col-database) has three.
inline constexpr int kMaxAnswerDepth = 16;
/// Values, names of members and groups together; a queue with every paper's measures has some
/// thousand.
inline constexpr int kMaxAnswerParts = 50'000;

/// What the bytes of a message are, as far as they have arrived.
enum class IppShape {
    Unfinished, ///< Nothing is wrong so far; the end has not come.
    Whole,
    Malformed, ///< Not as RFC 8010 has it.
    TooMuch,   ///< Deeper than kMaxAnswerDepth, or of more parts than kMaxAnswerParts.
};

/// Walks over a message while it arrives, and looks at each byte of it about once.
class IppScan {
public:
    /// Goes on where the last call has ended; what was found once other than Unfinished stays.
    /// @param bytes  all that has arrived, from the message's first byte on.
    IppShape look(QByteArrayView bytes);
    /// How many bytes have been walked over; all of the message once it is Whole, without what
    /// follows it.
    qsizetype length() const { return mPosition; }

private:
    bool takeNext(QByteArrayView bytes);
    bool takeDelimiter(int tag);
    bool takeValue(int tag, QByteArrayView bytes);
    bool enter(int tag, int nameLength, int valueLength);
    bool end(IppShape shape);

    IppShape mShape = IppShape::Unfinished;
    qsizetype mPosition = 0;
    int mDepth = 0;
    int mParts = 0;
};

/// Has libcups read a message.
/// @param message  must be Whole. @param deadline  ends the reading when it is over.
/// @return null when it is over, or a value is none of its type.
IppMessage readIpp(QByteArrayView message, const Deadline& deadline);

} // namespace labelcut
