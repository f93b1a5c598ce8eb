// Core: how often a job may be printed.
#pragma once

namespace labelcut {

/// The most copies that a job is asked for, on the command line, in the window and in presets.
inline constexpr int kMaxCopies = 9'999;

} // namespace labelcut
