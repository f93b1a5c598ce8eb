// Fuzzing: an input's bytes, read as what a target needs. Whatever is asked for, past the end there
// are zeros.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>

namespace labelcut::fuzz {

/// What separates a text at the head of an input from the choices behind it. None of the formats
/// that are read here can hold this byte.
inline constexpr char kHeadEnd = '\0';

class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size)
        : mRest(data, size) {}

    bool atEnd() const { return mRest.empty(); }

    /// The bytes before the first kHeadEnd, which is taken too; all of them when there is none.
    QByteArray head();
    /// All that is left.
    QByteArray rest();

    std::uint8_t byte();
    /// A number from 0 to `limit` - 1. @param limit  1 to 65536.
    int below(int limit);
    bool flag() { return below(2) == 1; }
    /// Eight bytes, the lowest first.
    std::uint64_t word();
    /// A length byte, and that many bytes at most.
    QByteArray text();
    /// The same decoded as UTF-8; or, by a flag, as UTF-16 units of any kind, two bytes each.
    QString string();

private:
    std::span<const std::uint8_t> mRest;
};

} // namespace labelcut::fuzz
