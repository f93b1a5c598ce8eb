// Diagnostics: tagged lines and dumps for developers of a panel. Nothing calls them in the shipped
// system, and nothing switches them on at run time.
//
// Formats are the toolkit's string formats (platform/toolkit/string_format.h). Arguments keep their
// types, so a format that asks for more than was given, or for something else, reads nothing that
// was not given. Every function fails silently and may be called from any thread; lines written by
// two threads may interleave.
#pragma once

#include <QString>

#include <cups/ppd.h>

#include <cstdint>
#include <optional>
#include <span>

#include "platform/printing/print_objects.h"
#include "platform/toolkit/string_format.h"

namespace labelcut {

using FormatArguments = std::span<const FormatArgument>;

/// @name Tagged lines to the system log
/// "BEGIN self(<description>) <message>", and with nothing as object "BEGIN <message>"; END and LOG
/// likewise. The description becomes a part of the format: a percent sign in it is a directive and
/// takes the next argument.
/// @param object  anything with a description, such as a QObject* or a PDEChoice*; null is nothing.
/// @param format  the message's format; its directives come after the description's.
/// @{
void PDEPrologArguments(const FormatArgument& object, const QString& format, FormatArguments args);
void PDEEpilogArguments(const FormatArgument& object, const QString& format, FormatArguments args);
void PDELogArguments(const FormatArgument& object, const QString& format, FormatArguments args);

template<typename... Args>
void _PDEProlog(const FormatArgument& object, const QString& format, const Args&... args) {
    PDEPrologArguments(object, format, formatArgumentList(args...));
}
template<typename... Args>
void _PDEEpilog(const FormatArgument& object, const QString& format, const Args&... args) {
    PDEEpilogArguments(object, format, formatArgumentList(args...));
}
template<typename... Args>
void _PDELog(const FormatArgument& object, const QString& format, const Args&... args) {
    PDELogArguments(object, format, formatArgumentList(args...));
}
/// @}

/// Thirteen lines to the system log about one option and its first choice. Only "PPD file is not
/// loaded!!" or "ppdOptionName is NULL!!" without one of them; nothing for an option that the file
/// lacks. What cannot be decoded, and the choice of an option without choices, shows as "(null)".
/// @param ppd            borrowed; may be null.
/// @param ppdOptionName  main keyword without the asterisk; may be null.
void _PDELog_ppd_option_t(ppd_file_t* ppd, const char* ppdOptionName);

/// Writes print settings to the property list "<folder>/KvPDE_<name>.plist", at once or not at all.
/// @param settings  may be null, which writes nothing.
/// @param name      nothing writes nothing.
/// @param folder    without a final slash; the empty text is the root of the file system, where
///                  only a developer with the right to write there gets a file.
void _PDELog_PMPrintSettings_WriteToFile(const PMPrintSettings* settings,
                                         const std::optional<QString>& name,
                                         const QString& folder = {});

/// @name Debug messages
/// Nothing happens when the level is above 0. A character that UTF-8 cannot carry shows as "?".
/// @param level   0 or below prints.
/// @param format  the message's format.
/// @{
/// "DEBUG: ", the message up to its first zero character, and a newline, to standard error.
void debugLogArguments(std::int32_t level, const QString& format, FormatArguments args);
/// The whole message and a newline, by plain writes to an open descriptor.
void debugLogFdArguments(std::int32_t level, int fd, const QString& format, FormatArguments args);

template<typename... Args>
void debugLog(std::int32_t level, const QString& format, const Args&... args) {
    debugLogArguments(level, format, formatArgumentList(args...));
}
template<typename... Args>
void debugLogFd(std::int32_t level, int fd, const QString& format, const Args&... args) {
    debugLogFdArguments(level, fd, format, formatArgumentList(args...));
}
/// @}

/// @name Memory dumps
/// Lower-case hexadecimal digits in groups of 16 bytes. Nothing happens when the level is above 0
/// or the bytes are absent.
/// @param level  0 or below prints.
/// @param bytes  at least `count` of them; may be null.
/// @param count  in bytes; 0 or below counts as none.
/// @{
/// "DEBUG:" and the digits for each full group, and once more for what is left, without a newline
/// anywhere: a count that is a multiple of 16, 0 included, ends in a bare "DEBUG:".
void memoryCheck(std::int32_t level, const void* bytes, std::int32_t count);
/// The digits and a newline for each group, the last and shorter one only if it has a byte.
void memoryCheckFd(std::int32_t level, int fd, const void* bytes, std::int32_t count);
/// @}

} // namespace labelcut
