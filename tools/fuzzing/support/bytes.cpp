// Fuzzing: an input's bytes, read as what a target needs.
#include "tools/fuzzing/support/bytes.h"

#include <algorithm>

namespace labelcut::fuzz {

namespace {

QByteArray arrayOf(std::span<const std::uint8_t> bytes) {
    return QByteArray(reinterpret_cast<const char*>(bytes.data()),
                      static_cast<qsizetype>(bytes.size()));
}

} // namespace

QByteArray Bytes::head() {
    const auto end = std::ranges::find(mRest, static_cast<std::uint8_t>(kHeadEnd));
    const auto size = static_cast<std::size_t>(end - mRest.begin());
    const QByteArray all = arrayOf(mRest.first(size));
    mRest = mRest.subspan(std::min(size + 1, mRest.size()));
    return all;
}

QByteArray Bytes::rest() {
    const QByteArray all = arrayOf(mRest);
    mRest = {};
    return all;
}

std::uint8_t Bytes::byte() {
    if (mRest.empty())
        return 0;
    const std::uint8_t first = mRest.front();
    mRest = mRest.subspan(1);
    return first;
}

int Bytes::below(int limit) {
    const int high = limit > 256 ? byte() : 0;
    return (high * 256 + byte()) % limit;
}

std::uint64_t Bytes::word() {
    std::uint64_t value = 0;
    for (unsigned shift = 0; shift < 64; shift += 8)
        value |= std::uint64_t{byte()} << shift;
    return value;
}

QByteArray Bytes::text() {
    const std::size_t wanted = byte();
    const std::size_t size = std::min(wanted, mRest.size());
    const QByteArray all = arrayOf(mRest.first(size));
    mRest = mRest.subspan(size);
    return all;
}

QString Bytes::string() {
    const bool isUtf16 = flag();
    const QByteArray bytes = text();
    if (!isUtf16)
        return QString::fromUtf8(bytes);
    QString units;
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
        units += QChar(static_cast<uchar>(bytes[i]), static_cast<uchar>(bytes[i + 1]));
    return units;
}

} // namespace labelcut::fuzz
