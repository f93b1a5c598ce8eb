// Worker's protocol: open files, which travel beside the messages; whoever has one closes it.
#pragma once

#include <unistd.h>

#include <utility>

namespace labelcut::worker {

/// An open file of the system. Moved, not copied; closed with this object.
class Descriptor {
public:
    Descriptor() = default;
    /// @param number  taken over; -1: none.
    explicit Descriptor(int number)
        : mNumber(number) {}
    Descriptor(Descriptor&& other) noexcept
        : mNumber(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(mNumber, other.mNumber);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    explicit operator bool() const { return mNumber >= 0; }
    /// Stays this object's. -1: none.
    int number() const { return mNumber; }
    /// From here on the caller's, who closes it.
    int release() { return std::exchange(mNumber, -1); }
    /// @return what the system says to it, see errno: some file systems only notice here that a
    /// disk is full.
    bool close() { return mNumber < 0 || ::close(release()) == 0; }

private:
    int mNumber = -1;
};

} // namespace labelcut::worker
