// The dialog without its widgets: the steps that a user can take back.
#pragma once

#include <optional>
#include <vector>

#include "host/core/handling.h"
#include "host/documents/paper.h"
#include "host/settings/setting.h"

namespace labelcut {

/// What a step changes and undo brings back.
struct Chosen {
    Settings marks;
    Handling handling;
    PageSelection pages;
    bool operator==(const Chosen&) const = default;
};

class UndoSteps {
public:
    /// More than anybody takes back; beyond it the oldest steps are forgotten.
    static constexpr std::size_t kMost = 100;

    /// What a step is about. Several of one kind behind each other are one step where they count
    /// up or are typed: copies and pages.
    enum class Kind { Choices, Copies, Pages };

    /// Forgets every step and starts from here.
    void restart(Chosen now);
    /// Sets the state that the next step starts from; nothing becomes a step.
    void settle(Chosen now);
    /// What differs from the state before becomes a step. Counting up and down again leaves none.
    void step(const Chosen& now, Kind kind);

    const Chosen& current() const { return mCurrent; }
    bool canUndo() const { return !mBefore.empty(); }
    /// Takes the latest step away. @return the state before it; nothing when there is no step.
    std::optional<Chosen> takeBack();

private:
    std::vector<Chosen> mBefore;
    Chosen mCurrent;
    Kind mLatest = Kind::Choices;
};

} // namespace labelcut
