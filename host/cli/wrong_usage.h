// The command line: what is wrong with the arguments, in a sentence that names it.
#pragma once

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace labelcut {

/// The words of a command line behind the program's name, in their order.
using Words = std::vector<std::string>;

/// Ends the parsing with a sentence about what was typed; only for use while arguments are parsed.
/// @param sentence  without a full stop: where to read on follows it.
[[noreturn]] void rejectArguments(const QString& sentence);

/// Has every option of the app and of its commands that takes a value refuse an empty one, and one
/// that is an option of the same command. Call it once, with all options in place.
void requireValues(CLI::App& app);

/// The words as the parser reads them rightly. It would fill the empty value of "--title=" with the
/// next word, and leave a command at "--" when that has a file already.
/// Rejects a long name behind a single hyphen, which it would read as a short option with a value.
Words readable(const Words& words, const CLI::App& app);

/// Rejects a command that stands behind arguments of the program itself, which come to nothing
/// then.
void rejectLateCommand(const CLI::App& app);

/// What was wrong, without a full stop.
/// @param app    as its parsing has left it. @param words  what it parsed.
/// @param error  what ended the parsing.
QString mistakeIn(const CLI::App& app, const Words& words, const CLI::ParseError& error);

/// The command that was named last, such as `presets list`; the app itself when none was.
const CLI::App& namedCommand(const CLI::App& app);
/// The name of the command right below `command` that a mistyped word was likely meant to be.
std::optional<QString> nearCommand(const CLI::App& command, const std::string& word);
/// "labelcut presets list".
QString commandLine(const CLI::App& command);

} // namespace labelcut
