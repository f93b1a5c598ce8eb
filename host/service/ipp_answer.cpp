// Print service: an answer's bytes, looked at before libcups reads them.
#include "host/service/ipp_answer.h"

#include <cstring>

namespace labelcut {

namespace {

/// Version, status and request-id.
constexpr qsizetype kHeaderBytes = 8;
constexpr qsizetype kLengthBytes = 2;
/// RFC 8010, 3.1: lengths are signed.
constexpr int kMaxLength = 0x7fff;

int byteAt(QByteArrayView bytes, qsizetype position) {
    return static_cast<unsigned char>(bytes[position]);
}

/// @return -1 when it has not arrived.
int lengthAt(QByteArrayView bytes, qsizetype position) {
    if (position + kLengthBytes > bytes.size())
        return -1;
    return byteAt(bytes, position) << 8 | byteAt(bytes, position + 1);
}

/// A message in memory on its way to libcups.
struct Reading {
    QByteArrayView rest;
    const Deadline& deadline;

    /// All of `size` bytes or a failure, as ippReadIO() wants it. @param reading  a Reading.
    static ssize_t exactly(void* reading, ipp_uchar_t* buffer, std::size_t size) {
        auto* self = static_cast<Reading*>(reading);
        const auto wanted = static_cast<qsizetype>(size);
        if (wanted > self->rest.size() || self->deadline.isOver())
            return -1;
        std::memcpy(buffer, self->rest.data(), size);
        self->rest = self->rest.sliced(wanted);
        return static_cast<ssize_t>(size);
    }
};

} // namespace

IppShape IppScan::look(QByteArrayView bytes) {
    if (mPosition == 0 && bytes.size() >= kHeaderBytes)
        mPosition = kHeaderBytes;
    while (mShape == IppShape::Unfinished && mPosition >= kHeaderBytes && takeNext(bytes)) {
    }
    return mShape;
}

/// Walks over one delimiter or one value with its name. @return false: the next one has not
/// arrived in full, or there is none.
bool IppScan::takeNext(QByteArrayView bytes) {
    if (mPosition >= bytes.size())
        return false;
    const int tag = byteAt(bytes, mPosition);
    if (tag == IPP_TAG_EXTENSION) // the true tag stands elsewhere, and no value has one
        return end(IppShape::Malformed);
    if (mParts >= kMaxAnswerParts)
        return end(IppShape::TooMuch);
    return tag < IPP_TAG_UNSUPPORTED_VALUE ? takeDelimiter(tag) : takeValue(tag, bytes);
}

/// The beginning of a group, or the end of the message; neither stands in a collection.
bool IppScan::takeDelimiter(int tag) {
    if (mDepth > 0 || tag == IPP_TAG_ZERO)
        return end(IppShape::Malformed);
    ++mPosition;
    ++mParts;
    return tag == IPP_TAG_END ? end(IppShape::Whole) : true;
}

bool IppScan::takeValue(int tag, QByteArrayView bytes) {
    const qsizetype nameAt = mPosition + 1 + kLengthBytes;
    const int nameLength = lengthAt(bytes, nameAt - kLengthBytes);
    if (nameLength < 0)
        return false;
    const qsizetype valueAt = nameAt + nameLength + kLengthBytes;
    const int valueLength = lengthAt(bytes, valueAt - kLengthBytes);
    if (nameLength > kMaxLength || valueLength > kMaxLength)
        return end(IppShape::Malformed);
    if (valueLength < 0 || valueAt + valueLength > bytes.size())
        return false;
    if (!enter(tag, nameLength, valueLength))
        return false;
    mPosition = valueAt + valueLength;
    ++mParts;
    return true;
}

/// Follows collections in and out, by the rules that libcups follows too: where it would read on
/// at another byte than this does, the message is malformed.
bool IppScan::enter(int tag, int nameLength, int valueLength) {
    switch (tag) {
    case IPP_TAG_BEGIN_COLLECTION:
        if (valueLength > 0)
            return end(IppShape::Malformed);
        return ++mDepth <= kMaxAnswerDepth || end(IppShape::TooMuch);
    case IPP_TAG_END_COLLECTION:
        return (nameLength == 0 && valueLength == 0 && --mDepth >= 0) || end(IppShape::Malformed);
    case IPP_TAG_MEMBERNAME:
        return (nameLength == 0 && mDepth > 0) || end(IppShape::Malformed);
    default:
        return true;
    }
}

bool IppScan::end(IppShape shape) {
    mShape = shape;
    return false;
}

IppMessage readIpp(QByteArrayView message, const Deadline& deadline) {
    IppMessage read(ippNew());
    Reading reading{message, deadline};
    ipp_state_t state = IPP_STATE_IDLE;
    while (state != IPP_STATE_DATA && state != IPP_STATE_ERROR)
        state = ippReadIO(&reading, Reading::exactly, 1, nullptr, read.get());
    return state == IPP_STATE_DATA ? std::move(read) : nullptr;
}

} // namespace labelcut
