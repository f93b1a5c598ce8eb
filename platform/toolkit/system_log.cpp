// Toolkit: the system log, one line at a time.
#include "platform/toolkit/system_log.h"

#include <atomic>

#include <syslog.h>

#include "platform/toolkit/text_encoding.h"

namespace labelcut {

namespace {

std::atomic<SystemLogSink*> currentSink{nullptr};

} // namespace

void systemLog(const QString& line) {
    if (SystemLogSink* sink = currentSink.load())
        sink->write(line);
    else
        syslog(LOG_USER | LOG_NOTICE, "%s", encodeLossyUtf8(line).constData());
}

SystemLogSink* setSystemLogSink(SystemLogSink* sink) {
    return currentSink.exchange(sink);
}

} // namespace labelcut
