// The command line: being told to end, by a key, a session that closes or a kill.
#pragma once

#include "host/core/call_limits.h"

/// A command that would leave something behind asks to be told instead of being killed: SIGINT,
/// SIGTERM and SIGHUP then set a flag, the command cleans up and returns, and main() passes the
/// signal on. A command that is not done kGrace after the signal, or gets a second one, is killed.
namespace labelcut::interruption {

inline constexpr unsigned kGrace = 5; ///< Seconds.

/// From here on signals set the flag. One that the program was started to ignore stays ignored.
void install();
/// Set by the first signal; for the limits of calls.
const CancelFlag& flag();
/// Becomes readable with the first signal, for event loops; -1 when there is none.
int descriptor();
/// Ends the process by the signal that came, as if it had never been caught; does nothing when none
/// came.
void passOn();

} // namespace labelcut::interruption
