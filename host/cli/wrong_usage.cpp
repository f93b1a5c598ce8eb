// The command line: what is wrong with the arguments, in a sentence that names it.
#include "host/cli/wrong_usage.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>

#include "host/cli/near_word.h"
#include "host/cli/runner.h"

namespace labelcut {

namespace {

using Options = std::vector<const CLI::Option*>;

/// Nothing behind it is an option or a command.
const std::string kMark = "--";

/// A sentence of ours, as an exception of the parser's.
class WrongUsage : public CLI::ParseError {
public:
    explicit WrongUsage(const QString& sentence)
        : CLI::ParseError("WrongUsage", sentence.toStdString(), kWrongUsage) {}
};

QString quoted(const std::string& text) {
    return u'"' + QString::fromLocal8Bit(text.c_str()) + u'"';
}

/// Commands right below, or the nameless groups of options.
std::vector<const CLI::App*> below(const CLI::App& command, bool named) {
    return command.get_subcommands(
        [named](const CLI::App* app) { return app->get_name().empty() != named; });
}

/// Null: there is none of that name right below.
const CLI::App* commandNamed(const CLI::App& command, const std::string& name) {
    const auto commands = below(command, true);
    const auto found = std::ranges::find(commands, name, &CLI::App::get_name);
    return found == commands.end() ? nullptr : *found;
}

/// The options of a command, those in groups included.
Options optionsOf(const CLI::App& command) {
    Options all = command.get_options();
    for (const CLI::App* group : below(command, false)) {
        const Options more = group->get_options();
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

bool takesValue(const CLI::Option* option) {
    return option->nonpositional() && option->get_items_expected_max() > 0;
}

bool takesFiles(const CLI::App& command) {
    return std::ranges::any_of(command.get_options(), &CLI::Option::get_positional);
}

/// "--copies=3" without its value.
std::string nameIn(const std::string& word) {
    return word.substr(0, word.find('='));
}

/// The option that a word such as "--copies", "--copies=3" or "-n" names; null: none.
const CLI::Option* optionNamed(const Options& options, const std::string& word) {
    const std::string name = nameIn(word);
    if (name.size() < 2 || name.front() != '-')
        return nullptr;
    const auto found = std::ranges::find_if(
        options, [&](const CLI::Option* option) { return option->check_name(name); });
    return found == options.end() ? nullptr : *found;
}

/// "--copies", or "FILE".
QString nameOf(const CLI::Option* option) {
    return QString::fromStdString(option->get_name());
}

/// "N", without the range that follows it in the help.
QString valueOf(const CLI::Option* option) {
    return QString::fromStdString(option->get_type_name()).section(u':', 0, 0);
}

QString needsValue(const CLI::Option* option) {
    return QStringLiteral("%1 needs a value: %1 %2").arg(nameOf(option), valueOf(option));
}

/// "FILE", or "--output PNG".
QString usageOf(const CLI::Option* option) {
    return option->nonpositional() ? nameOf(option) + u' ' + valueOf(option) : nameOf(option);
}

void requireValues(CLI::App& options, const CLI::App& command) {
    for (CLI::Option* option : options.get_options(takesValue))
        option->check(CLI::Validator(
            [option, &command](std::string& value) {
                if (value.empty() || optionNamed(optionsOf(command), value))
                    rejectArguments(needsValue(option));
                return std::string();
            },
            std::string()));
}

/// The first command that has an option of this name, from `command` down; null: none.
const CLI::App* commandWith(const CLI::App& command, const std::string& name) {
    if (optionNamed(optionsOf(command), name))
        return &command;
    for (const CLI::App* next : below(command, true))
        if (const CLI::App* found = commandWith(*next, name))
            return found;
    return nullptr;
}

QString unknownOption(const CLI::App& app, const CLI::App& command, const std::string& word) {
    const std::string typed = nameIn(word);
    const QString sentence =
        QStringLiteral("There is no option %1").arg(QString::fromLocal8Bit(typed.c_str()));
    if (const CLI::App* other = commandWith(app, typed))
        return QStringLiteral("%1 here; \"%2\" has one").arg(sentence, commandLine(*other));
    std::vector<std::string> known;
    for (const CLI::Option* option : optionsOf(command))
        known.insert(known.end(), option->get_lnames().begin(), option->get_lnames().end());
    const auto meant = nearWord(typed.substr(typed.find_first_not_of('-')), known);
    return meant ? QStringLiteral("%1; did you mean --%2?")
                       .arg(sentence, QString::fromStdString(*meant))
                 : sentence;
}

QString unknownCommand(const CLI::App& command, const std::string& word) {
    const QString start = commandLine(command);
    const QString sentence = QStringLiteral("\"%1\" has no command %2").arg(start, quoted(word));
    const auto meant = nearCommand(command, word);
    return meant ? QStringLiteral("%1; did you mean \"%2 %3\"?").arg(sentence, start, *meant)
                 : sentence;
}

/// "list, show or save".
QString listed(QStringList names) {
    const QString last = names.takeLast();
    return names.isEmpty() ? last : names.join(QLatin1String(", ")) + QLatin1String(" or ") + last;
}

QString tooMany(const CLI::App& command, const std::string& word) {
    QStringList taken;
    for (const CLI::Option* option : command.get_options())
        if (option->get_positional())
            taken << nameOf(option);
    return QStringLiteral("\"%1\" takes %2 options; %3 is too much")
        .arg(commandLine(command),
             taken.isEmpty() ? QStringLiteral("only")
                             : taken.join(u' ') + QStringLiteral(" and its"),
             quoted(word));
}

/// What the command lacks, or which options exclude each other.
std::optional<QString> unmetRequirement(const CLI::App& command) {
    const auto commands = below(command, true);
    if (command.get_require_subcommand_min() > 0 && command.get_subcommands().empty()) {
        QStringList names;
        for (const CLI::App* one : commands)
            names << QString::fromStdString(one->get_name());
        return QStringLiteral("\"%1\" needs a command: %2")
            .arg(commandLine(command), listed(names));
    }
    for (const CLI::Option* option : optionsOf(command))
        if (option->get_required() && option->count() == 0)
            return QStringLiteral("\"%1\" needs %2").arg(commandLine(command), usageOf(option));
    for (const CLI::App* group : below(command, false)) {
        QStringList given;
        for (const CLI::Option* option : group->get_options())
            if (option->count() > 0)
                given << nameOf(option);
        if (group->get_require_option_max() > 0 &&
            static_cast<std::size_t>(given.size()) > group->get_require_option_max())
            return QStringLiteral("%1 exclude each other; give only one of them")
                .arg(given.join(QLatin1String(" and ")));
    }
    return std::nullopt;
}

/// An option that takes one value and was given several.
std::optional<QString> repeatedOption(const CLI::App& command) {
    for (const CLI::Option* option : optionsOf(command))
        if (takesValue(option) && option->count() > 1 &&
            option->get_multi_option_policy() == CLI::MultiOptionPolicy::Throw)
            return QStringLiteral("%1 is given more than once").arg(nameOf(option));
    return std::nullopt;
}

/// A flag with a value that is neither yes nor no, such as "--json=lines".
std::optional<QString> flagWithValue(const CLI::App& command, const Words& words) {
    const Options options = optionsOf(command);
    for (const std::string& word : words) {
        const CLI::Option* option = optionNamed(options, word);
        if (option && !takesValue(option) && nameIn(word) != word)
            return QStringLiteral("%1 takes no value").arg(nameOf(option));
    }
    return std::nullopt;
}

/// An option at the end of the words, where no value can follow it.
std::optional<QString> valueMissingAtEnd(const CLI::App& command, const Words& words) {
    const CLI::Option* last =
        words.empty() ? nullptr : optionNamed(optionsOf(command), words.back());
    return last ? std::optional(needsValue(last)) : std::nullopt;
}

/// What is wrong by itself, whatever else is.
std::optional<QString> unexpectedWord(const CLI::App& app, const CLI::App& command) {
    const Words unexpected = app.remaining(true);
    for (const std::string& word : unexpected)
        if (word.size() > 1 && word.front() == '-' && word != kMark)
            return unknownOption(app, command, word);
    const auto first =
        std::ranges::find_if(unexpected, [](const std::string& word) { return word != kMark; });
    if (first == unexpected.end())
        return std::nullopt;
    return below(command, true).empty() ? tooMany(command, *first)
                                        : unknownCommand(command, *first);
}

/// A command behind files or options of the program itself.
std::optional<QString> lateCommand(const CLI::App& app) {
    const Options options = optionsOf(app);
    const auto chosen = app.get_subcommands();
    const bool isLate =
        !chosen.empty() &&
        std::ranges::any_of(options, [](const CLI::Option* option) { return option->count() > 0; });
    if (!isLate)
        return std::nullopt;
    return QStringLiteral("%1 is a command and stands in front of everything else; a file of that "
                          "name is written \"./%2\"")
        .arg(quoted(chosen.front()->get_name()),
             QString::fromStdString(chosen.front()->get_name()));
}

/// A word on the way to the parser.
struct ReadWord {
    std::string text;
    /// Neither an option, nor its value, nor a command.
    bool isFile = false;
};

const std::string& textOf(const ReadWord& word) {
    return word.text;
}

void rejectLongNameBehindOneHyphen(const Options& options, const std::string& word) {
    const bool isShort = word.size() > 2 && word.front() == '-' && word[1] != '-';
    if (isShort && optionNamed(options, '-' + word))
        rejectArguments(QStringLiteral("There is no option %1; did you mean -%1?")
                            .arg(QString::fromStdString(nameIn(word))));
}

/// Reads on to the mark or the end.
/// @param word  the first one; becomes where reading has ended.
/// @param command  what the words belong to; becomes the command that was named last.
std::vector<ReadWord> readUpToMark(Words::const_iterator& word, Words::const_iterator end,
                                   const CLI::App*& command) {
    std::vector<ReadWord> read;
    for (; word != end && *word != kMark; ++word) {
        const Options options = optionsOf(*command);
        rejectLongNameBehindOneHyphen(options, *word);
        const CLI::Option* option = optionNamed(options, *word);
        const CLI::App* next = commandNamed(*command, *word);
        const bool wantsValue = option && takesValue(option);
        if (wantsValue && word->back() == '=') {
            read.push_back({nameIn(*word)});
            read.push_back({});
        } else if (wantsValue && nameIn(*word) == *word && word + 1 != end) {
            read.push_back({*word});
            read.push_back({*++word});
        } else {
            read.push_back({*word, !next && !word->starts_with('-')});
        }
        command = next ? next : command;
    }
    return read;
}

} // namespace

void rejectArguments(const QString& sentence) {
    throw WrongUsage(sentence);
}

void requireValues(CLI::App& app) {
    requireValues(app, app);
    for (CLI::App* command : app.get_subcommands([](CLI::App*) { return true; })) {
        if (command->get_name().empty())
            requireValues(*command, app);
        else
            requireValues(*command);
    }
}

Words readable(const Words& words, const CLI::App& app) {
    const CLI::App* command = &app;
    auto mark = words.begin();
    std::vector<ReadWord> read = readUpToMark(mark, words.end(), command);
    const bool isMarked = mark != words.end();
    const auto files =
        isMarked && command != &app
            ? std::stable_partition(read.begin(), read.end(), std::not_fn(&ReadWord::isFile))
            : read.end();
    Words all;
    std::transform(read.begin(), files, std::back_inserter(all), &textOf);
    if (isMarked && takesFiles(*command))
        all.push_back(kMark);
    std::transform(files, read.end(), std::back_inserter(all), &textOf);
    all.insert(all.end(), isMarked ? mark + 1 : mark, words.end());
    return all;
}

void rejectLateCommand(const CLI::App& app) {
    if (const auto late = lateCommand(app))
        rejectArguments(*late);
}

QString mistakeIn(const CLI::App& app, const Words& words, const CLI::ParseError& error) {
    const CLI::App& command = namedCommand(app);
    const auto own = [&]() -> std::optional<QString> {
        if (auto late = lateCommand(app))
            return late;
        if (dynamic_cast<const WrongUsage*>(&error))
            return QString::fromUtf8(error.what());
        if (auto unexpected = unexpectedWord(app, command))
            return unexpected;
        if (dynamic_cast<const CLI::RequiredError*>(&error))
            return unmetRequirement(command);
        if (dynamic_cast<const CLI::ConversionError*>(&error))
            return flagWithValue(command, words);
        if (!dynamic_cast<const CLI::ArgumentMismatch*>(&error))
            return std::nullopt;
        const auto repeated = repeatedOption(command);
        return repeated ? repeated : valueMissingAtEnd(command, words);
    }();
    return own.value_or(QString::fromUtf8(error.what()).simplified());
}

std::optional<QString> nearCommand(const CLI::App& command, const std::string& word) {
    std::vector<std::string> names;
    for (const CLI::App* one : below(command, true))
        names.push_back(one->get_name());
    const auto meant = nearWord(word, names);
    return meant ? std::optional(QString::fromStdString(*meant)) : std::nullopt;
}

const CLI::App& namedCommand(const CLI::App& app) {
    const CLI::App* command = &app;
    while (!command->get_subcommands().empty())
        command = command->get_subcommands().front();
    return *command;
}

QString commandLine(const CLI::App& command) {
    const QString name = QString::fromStdString(command.get_name());
    return command.get_parent() ? commandLine(*command.get_parent()) + u' ' + name : name;
}

} // namespace labelcut
