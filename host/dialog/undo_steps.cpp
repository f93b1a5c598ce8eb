// The dialog without its widgets: the steps that a user can take back.
#include "host/dialog/undo_steps.h"

#include <utility>

namespace labelcut {

void UndoSteps::restart(Chosen now) {
    mBefore.clear();
    settle(std::move(now));
}

void UndoSteps::settle(Chosen now) {
    mCurrent = std::move(now);
    mLatest = Kind::Choices;
}

void UndoSteps::step(const Chosen& now, Kind kind) {
    if (now == mCurrent)
        return;
    const bool goesOn = kind != Kind::Choices && kind == mLatest && canUndo();
    if (!goesOn) {
        if (mBefore.size() == kMost)
            mBefore.erase(mBefore.begin());
        mBefore.push_back(mCurrent);
    }
    mCurrent = now;
    mLatest = kind;
    if (mBefore.back() == now) {
        mBefore.pop_back();
        mLatest = Kind::Choices;
    }
}

std::optional<Chosen> UndoSteps::takeBack() {
    if (mBefore.empty())
        return std::nullopt;
    Chosen before = std::move(mBefore.back());
    mBefore.pop_back();
    return before;
}

} // namespace labelcut
