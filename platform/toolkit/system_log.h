// Toolkit: the system log, one line at a time.
#pragma once

#include <QString>

namespace labelcut {

/// Where log lines go. Lines may arrive from any thread.
class SystemLogSink {
public:
    virtual ~SystemLogSink() = default;
    /// @param line  one message, without a final newline, time stamp or process name.
    virtual void write(const QString& line) = 0;
};

/// Writes a line to the system log: syslog, which the journal gathers, unless a sink is set. The
/// log itself adds the time and the process. A zero character ends the line, and what cannot be
/// UTF-8 becomes "?".
void systemLog(const QString& line);

/// Sends the lines elsewhere from now on.
/// @param sink  must live until another is set; null stands for syslog.
/// @return the sink that was set before, or null.
SystemLogSink* setSystemLogSink(SystemLogSink* sink);

} // namespace labelcut
