// The dialog: what is said when choices exclude each other.
#pragma once

namespace labelcut {

class JobModel;
class MessageBar;

/// Names the first conflict of what is chosen and offers ways out, as far as they are known, and
/// has them searched for; takes the message away when there is no conflict.
/// @param model  and messages: borrowed, live as long as the message.
void showConflict(JobModel& model, MessageBar& messages);

/// The search has ended: offers the way out where the message still stands. One that the user has
/// dismissed does not come back for it.
void completeConflict(JobModel& model, MessageBar& messages);

} // namespace labelcut
