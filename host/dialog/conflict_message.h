// The dialog: what is said when choices exclude each other.
#pragma once

namespace labelcut {

class JobModel;
class MessageBar;

/// Names the first conflict of what is chosen and offers ways out; takes the message away when
/// there is none.
/// @param model  and messages: borrowed, live as long as the message.
void showConflict(JobModel& model, MessageBar& messages);

} // namespace labelcut
