// The dialog: one label to check, then the others; and what the Print button stands for meanwhile.
#pragma once

#include <optional>

#include "host/job/order.h"
#include "host/plan/job_plan.h"

namespace labelcut {

/// Which labels of what is chosen are printed.
enum class PrintPart {
    All,
    First,  ///< The first one, to check it.
    Others, ///< From the second on.
};

/// The order for a part of another one's labels. @param order  the whole. @param plan  its own.
/// @return nothing for a part of one label alone.
std::optional<Order> partOf(const Order& order, const JobPlan& plan, PrintPart part);

/// Whether one label can be checked before the others.
bool canCheck(const JobPlan& plan);

/// What pressing Print does next. It follows from how the last job has ended, as long as the user
/// changes nothing.
class PrintOffer {
public:
    enum class Kind {
        All,
        Again,  ///< All of it, once more.
        Others, ///< Those behind the label that was checked.
    };

    /// The first label of that order has come out.
    void noteChecked(const Order& order) { note(order, Kind::Others); }
    /// A job of it that was sent has come to nothing, or nobody knows.
    void noteLost(const Order& order) { note(order, Kind::Again); }
    void forget() { mOrder.reset(); }

    /// Whether there is anything to compare an order with.
    bool isNoted() const { return mOrder.has_value(); }
    /// @param now  what would be printed; nothing: nothing can be.
    Kind kindFor(const std::optional<Order>& now) const;

private:
    void note(const Order& order, Kind kind);

    std::optional<Order> mOrder;
    Kind mKind = Kind::All;
};

} // namespace labelcut
