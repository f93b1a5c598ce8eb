// Diagnostics: tagged lines to the system log, debug messages.
#include "plugins/cut_options/diagnostics/pde_log.h"

#include <cstdio>

#include "platform/toolkit/system_log.h"
#include "platform/toolkit/text_encoding.h"
#include "plugins/cut_options/diagnostics/plain_write.h"

namespace labelcut {

namespace {

/// The format of a tagged line.
QString Format(const FormatArgument& object, const QString& tag, const QString& format) {
    const std::optional<QString> description = object.description();
    if (!description)
        return stringWithFormat(QStringLiteral("%@ %@"), tag, format);
    return stringWithFormat(QStringLiteral("%@ self(%@) %@"), tag, *description, format);
}

void logTagged(const QString& tag, const FormatArgument& object, const QString& format,
               FormatArguments args) {
    systemLog(formatArguments(Format(object, tag, format), args));
}

} // namespace

void PDEPrologArguments(const FormatArgument& object, const QString& format, FormatArguments args) {
    logTagged(QStringLiteral("BEGIN"), object, format, args);
}

void PDEEpilogArguments(const FormatArgument& object, const QString& format, FormatArguments args) {
    logTagged(QStringLiteral("END"), object, format, args);
}

void PDELogArguments(const FormatArgument& object, const QString& format, FormatArguments args) {
    logTagged(QStringLiteral("LOG"), object, format, args);
}

void debugLogArguments(std::int32_t level, const QString& format, FormatArguments args) {
    if (level > 0)
        return;
    std::fwrite("DEBUG: ", 1, 7, stderr);
    const QByteArray message = encodeLossyUtf8(formatArguments(format, args));
    std::fprintf(stderr, "%.*s\n", static_cast<int>(message.size()), message.constData());
}

void debugLogFdArguments(std::int32_t level, int fd, const QString& format, FormatArguments args) {
    if (level > 0)
        return;
    writePlainly(fd, encodeLossyUtf8(formatArguments(format, args)));
    writePlainly(fd, "\n");
}

} // namespace labelcut
