// Settings: the options that "lpoptions" keeps for a queue.
#include "host/settings/saved_options.h"

#include <algorithm>

#include "host/core/copies.h"
#include "host/core/file_name.h"
#include "host/core/regular_file.h"
#include "host/core/user_folders.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Bytes of a file that are read; such files have some hundred.
constexpr qint64 kMaxFileSize = 1024 * 1024;

const QString kTrue = QStringLiteral("true");
const QString kFalse = QStringLiteral("false");

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isSame(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

void setOption(Settings& options, const QString& name, const QString& value) {
    if (name.isEmpty())
        return;
    const auto present = std::ranges::find_if(
        options, [&](const Setting& option) { return isSame(option.keyword, name); });
    if (present == options.end())
        options.push_back({name, value});
    else
        present->choice = value;
}

/// Walks over a line of settings; every function leaves it at the first byte not taken.
class OptionReader {
public:
    explicit OptionReader(const QByteArray& text)
        : mText(text) {}

    bool atEnd() const { return mAt >= mText.size(); }
    void skipBlanks() {
        while (!atEnd() && isBlank(here()))
            ++mAt;
    }
    bool take(char c) {
        if (atEnd() || here() != c)
            return false;
        ++mAt;
        return true;
    }
    QByteArray name() {
        const qsizetype begin = mAt;
        while (!atEnd() && here() != '=' && !isBlank(here()))
            ++mAt;
        return mText.mid(begin, mAt - begin);
    }
    QByteArray value() {
        QByteArray value;
        while (!atEnd() && !isBlank(here())) {
            if (here() == '\'' || here() == '"')
                takeQuoted(value);
            else if (here() == '{')
                takeBraces(value);
            else if (here() == ',')
                value += mText.at(mAt++);
            else
                takePlain(value);
        }
        return value;
    }

private:
    char here() const { return mText.at(mAt); }
    void takeOne(QByteArray& value) {
        if (here() == '\\' && mAt + 1 < mText.size())
            ++mAt;
        value += mText.at(mAt++);
    }
    void takeQuoted(QByteArray& value) {
        const char quote = mText.at(mAt++);
        while (!atEnd() && here() != quote)
            takeOne(value);
        take(quote);
    }
    /// Quotes and braces mean nothing behind a plain character, up to the next blank.
    void takePlain(QByteArray& value) {
        while (!atEnd() && !isBlank(here()))
            takeOne(value);
    }
    /// What stands in braces belongs to one value, the braces included.
    void takeBraces(QByteArray& value) {
        int depth = 0;
        do {
            depth += here() == '{' ? 1 : 0;
            depth -= here() == '}' ? 1 : 0;
            takeOne(value);
        } while (depth > 0 && !atEnd());
    }

    const QByteArray& mText;
    qsizetype mAt = 0;
};

/// The line up to a comment, which begins with '#' unless a backslash stands before it.
QByteArray withoutComment(const QByteArray& line) {
    QByteArray result;
    for (const char c : line) {
        if (c == '#' && result.endsWith('\\'))
            result.chop(1);
        else if (c == '#')
            break;
        result += c;
    }
    return result.trimmed();
}

/// Takes the bytes up to the first blank off the front of `line`.
QByteArray takeWord(QByteArray& line) {
    const auto end = std::ranges::find_if(line, isBlank);
    const QByteArray word(line.constBegin(), end - line.begin());
    line = line.mid(word.size()).trimmed();
    return word;
}

Destination destinationOf(const QByteArray& word) {
    const QString text = QString::fromUtf8(word);
    return {text.section(u'/', 0, 0), text.section(u'/', 1)};
}

bool isSame(const Destination& a, const Destination& b) {
    return isSame(a.queue, b.queue) && isSame(a.instance, b.instance);
}

SavedOptions::Entry& entryFor(SavedOptions& saved, const Destination& destination) {
    const auto find = [&](const Destination& wanted) {
        return std::ranges::find_if(saved.entries, [&](const SavedOptions::Entry& entry) {
            return isSame(entry.destination, wanted);
        });
    };
    if (const auto present = find(destination); present != saved.entries.end())
        return *present;
    const auto queue = find({destination.queue, {}});
    SavedOptions::Entry added{destination, {}};
    if (queue != saved.entries.end())
        added.options = queue->options;
    return saved.entries.emplace_back(std::move(added));
}

void addLine(SavedOptions& saved, QByteArray line) {
    const QByteArray kind = takeWord(line).toLower();
    if (kind != "dest" && kind != "default")
        return;
    const Destination destination = destinationOf(takeWord(line));
    if (destination.queue.isEmpty())
        return;
    if (kind == "default")
        saved.defaultDestination = destination;
    SavedOptions::Entry& entry = entryFor(saved, destination);
    for (const Setting& option : parseOptionText(line))
        setOption(entry.options, option.keyword, option.choice);
}

QString cannotRead(const QString& path, const QString& reason) {
    return hostText("SavedOptionsUnused").arg(path, reason);
}

/// @return nothing when the file was read or does not exist, otherwise a sentence.
std::optional<QString> addFile(SavedOptions& saved, const QString& path) {
    const FileContent content = readSmallFile(path, kMaxFileSize);
    if (!content.reason.isEmpty())
        return cannotRead(path, content.reason);
    addSavedOptions(saved, content.bytes);
    return std::nullopt;
}

bool hasPageSize(ppd_file_t* ppd, const QString& name) {
    ppd_option_t* sizes = ppd::findOption(ppd, "PageSize");
    return ppd::findChoice(sizes, name.toUtf8().constData()) != nullptr;
}

bool isOption(ppd_file_t* ppd, const QString& name) {
    return ppd::findOption(ppd, name.toUtf8().constData()) != nullptr;
}

} // namespace

Settings SavedOptions::optionsOf(const Destination& destination) const {
    const auto found = std::ranges::find_if(
        entries, [&](const Entry& entry) { return isSame(entry.destination, destination); });
    return found == entries.end() ? Settings() : found->options;
}

Settings parseOptionText(const QByteArray& text) {
    const bool isBraced = text.size() > 1 && text.startsWith('{') && text.endsWith('}');
    const QByteArray line = isBraced ? text.mid(1, text.size() - 2) : text;
    OptionReader reader(line);
    Settings options;
    for (reader.skipBlanks(); !reader.atEnd(); reader.skipBlanks()) {
        const QString name = QString::fromUtf8(reader.name());
        if (name.isEmpty())
            break;
        reader.skipBlanks();
        if (reader.take('='))
            setOption(options, name, QString::fromUtf8(reader.value()));
        else if (name.startsWith(QStringLiteral("no"), Qt::CaseInsensitive))
            setOption(options, name.mid(2), kFalse);
        else
            setOption(options, name, kTrue);
    }
    return options;
}

void addSavedOptions(SavedOptions& saved, const QByteArray& contents) {
    for (const QByteArray& line : contents.split('\n'))
        addLine(saved, withoutComment(line));
}

QStringList savedOptionFiles() {
    QString system = nameFromBytes(qgetenv("CUPS_SERVERROOT"));
    if (system.isEmpty())
        system = QStringLiteral("/etc/cups");
    QStringList files{system + QStringLiteral("/lpoptions")};
    if (const std::optional<QString> home = homeFolder())
        files << *home + QStringLiteral("/.cups/lpoptions");
    return files;
}

SavedOptions readSavedOptions(const QStringList& files) {
    SavedOptions saved;
    for (const QString& file : files)
        if (const std::optional<QString> problem = addFile(saved, file))
            saved.problems << *problem;
    return saved;
}

std::optional<Destination> defaultDestination(const SavedOptions& saved) {
    for (const char* variable : {"LPDEST", "PRINTER"}) {
        const Destination named = destinationOf(qgetenv(variable).trimmed());
        // Old systems set PRINTER to "lp" for everybody.
        const bool isNoChoice = qstrcmp(variable, "PRINTER") == 0 && named.queue == u"lp";
        if (!named.queue.isEmpty() && !isNoChoice)
            return named;
    }
    return saved.defaultDestination;
}

StartingPoint startingPoint(ppd_file_t* ppd, const Settings& saved) {
    StartingPoint start;
    Settings settings;
    QString media;
    int copies = 1;
    for (const Setting& option : saved) {
        if (isOption(ppd, option.keyword))
            settings.push_back(option);
        else if (isSame(option.keyword, QStringLiteral("media")))
            media = option.choice;
        else if (isSame(option.keyword, QStringLiteral("copies")))
            copies = std::clamp(option.choice.toInt(), 1, kMaxCopies);
        else
            start.others.push_back(option);
    }
    const bool hasSize = std::ranges::any_of(settings, [](const Setting& setting) {
        return isSame(setting.keyword, QStringLiteral("PageSize"));
    });
    for (const QString& part : media.split(u',', Qt::SkipEmptyParts))
        if (!hasSize && hasPageSize(ppd, part.trimmed()))
            settings.insert(settings.begin(), {QStringLiteral("PageSize"), part.trimmed()});
    start.match = matchSettings(ppd, settings);
    start.copies = copies;
    return start;
}

} // namespace labelcut
