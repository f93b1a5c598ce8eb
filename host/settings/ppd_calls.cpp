// Settings: what only a host does with libcups' PPD functions.
#include "host/settings/ppd_calls.h"

#include <cups/file.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>

#include "host/texts/host_text.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace labelcut::ppd {

namespace {

struct Free {
    void operator()(char* text) const noexcept { std::free(text); }
};

/// Lengths are written in thousandths of a point; a thousandth is a third of a micrometre.
constexpr double kPartsOfPoint = 1000;

/// A list of libcups' options that frees itself.
class Options {
public:
    Options() = default;
    ~Options() { cupsFreeOptions(count, list); }
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    Settings settings() const {
        Settings all;
        for (const cups_option_t& option : std::span(list, static_cast<std::size_t>(count)))
            all.push_back({QString::fromUtf8(option.name), QString::fromUtf8(option.value)});
        return all;
    }

    int count = 0;
    cups_option_t* list = nullptr;
};

/// What `write` puts into a C stream.
template<typename Write>
QByteArray captured(Write write) {
    char* text = nullptr;
    std::size_t size = 0;
    FILE* stream = open_memstream(&text, &size);
    if (!stream)
        return {};
    write(stream);
    std::fclose(stream);
    const std::unique_ptr<char, Free> owner(text);
    return QByteArray(text, static_cast<qsizetype>(size));
}

Setting settingOf(const ppd_choice_t& choice) {
    return {QString::fromUtf8(choice.option->keyword), QString::fromUtf8(choice.choice)};
}

/// The choices that are marked, taken out of the file for the time of this object's life.
class MarksSetAside {
public:
    explicit MarksSetAside(ppd_file_t* file)
        : mFile(file) {
        for (int i = 0; i < cupsArrayCount(file->marked); ++i)
            mChoices.push_back(static_cast<ppd_choice_t*>(cupsArrayIndex(file->marked, i)));
        for (const ppd_size_t& size : sizes())
            if (size.marked)
                mSize = &size;
    }
    ~MarksSetAside() {
        markOnly(mChoices);
        // The records say of each option whether it conflicts; let them say it of the marks again.
        ppdConflicts(mFile);
    }
    MarksSetAside(const MarksSetAside&) = delete;
    MarksSetAside& operator=(const MarksSetAside&) = delete;

    const std::vector<ppd_choice_t*>& choices() const { return mChoices; }
    /// Whether the two conflict when nothing else is marked.
    bool conflict(ppd_choice_t* first, ppd_choice_t* second) {
        markOnly({first, second});
        return ppdConflicts(mFile) > 0;
    }

private:
    std::span<ppd_size_t> sizes() const {
        return {mFile->sizes, static_cast<std::size_t>(mFile->num_sizes)};
    }
    /// A mark is kept twice, by a flag of the choice and in an array of the file; that of the paper
    /// a third time, by a flag of the size, which is what constraints look at.
    void markOnly(const std::vector<ppd_choice_t*>& choices) {
        for (ppd_choice_t* choice : mChoices)
            choice->marked = 0;
        cupsArrayClear(mFile->marked);
        bool hasPaper = false;
        for (ppd_choice_t* choice : choices) {
            choice->marked = 1;
            cupsArrayAdd(mFile->marked, choice);
            const std::string_view keyword(choice->option->keyword);
            hasPaper = hasPaper || keyword == "PageSize" || keyword == "PageRegion";
        }
        for (ppd_size_t& size : sizes())
            size.marked = hasPaper && &size == mSize ? 1 : 0;
    }

    ppd_file_t* mFile;
    const ppd_size_t* mSize = nullptr;
    std::vector<ppd_choice_t*> mChoices;
};

/// Whether `setting` is what the file has marked already.
bool isMarked(ppd_file_t* file, const Setting& setting) {
    const ppd_choice_t* choice = findMarkedChoice(file, setting.keyword.toUtf8().constData());
    return choice && setting.choice == QString::fromUtf8(choice->choice);
}

QString reasonOf(const OpenAttempt& attempt) {
    if (attempt.trouble == FileTrouble::Missing)
        return QString::fromUtf8(ppdErrorString(PPD_FILE_OPEN_ERROR));
    return attempt.trouble == FileTrouble::Refused ? attempt.reason : hostText("NoRegularFile");
}

/// A PPD that is compressed as one that is not, in memory, cut off where it is beyond all that is
/// taken; libcups would go on without a bound. Any other PPD as it is.
OpenedFile expanded(OpenedFile file) {
    constexpr std::string_view kMark = "\x1f\x8b";
    QString reason;
    if (file.read(kMark.size(), &reason) != QByteArrayView(kMark))
        return file;
    OpenedFile whole(memfd_create("ppd", MFD_CLOEXEC));
    cups_file_t* source = cupsFileOpenFd(file.release(), "r");
    std::array<char, 1 << 16> piece{};
    ssize_t size = 0;
    while (whole.size() <= kLargestFile &&
           (size = cupsFileRead(source, piece.data(), piece.size())) > 0) {
        if (write(whole.descriptor(), piece.data(), static_cast<std::size_t>(size)) != size)
            break;
    }
    cupsFileClose(source);
    lseek(whole.descriptor(), 0, SEEK_SET);
    return whole;
}

} // namespace

void Closer::operator()(ppd_file_t* file) const noexcept {
    ppdClose(file);
}

File openFile(const QString& path, OpenError* error) {
    OpenAttempt attempt = tryRegularFile(path);
    if (attempt.trouble != FileTrouble::None) {
        if (error)
            *error = {reasonOf(attempt), 0};
        return nullptr;
    }
    return open(std::move(attempt.file), error);
}

File open(OpenedFile content, OpenError* error) {
    content = expanded(std::move(content));
    if (content.size() > kLargestFile) {
        if (error)
            *error = {hostText("TooManyBytes").arg(kLargestFile), 0};
        return nullptr;
    }
    // Closed by libcups.
    File file(ppdOpenFd(content.release()));
    if (file) {
        ppdLocalize(file.get());
        return file;
    }
    if (error) {
        const ppd_status_t status = ppdLastError(&error->line);
        error->reason = QString::fromUtf8(ppdErrorString(status));
    }
    return nullptr;
}

void markDefaults(ppd_file_t* file) {
    if (file)
        ppdMarkDefaults(file);
}

bool markOption(ppd_file_t* file, const char* keyword, const char* choice) {
    // Found among the marked ones, where a look through thousands of choices can be spared.
    const ppd_choice_t* marked = findMarkedChoice(file, keyword);
    if (marked && std::strcmp(marked->choice, choice) == 0)
        return true;
    ppd_option_t* option = findOption(file, keyword);
    if (!option || !findChoice(option, choice))
        return false;
    ppdMarkOption(file, keyword, choice);
    return true;
}

bool unmarkOption(ppd_file_t* file, const char* keyword) {
    ppd_option_t* option = findOption(file, keyword);
    if (!option)
        return false;
    // The file keeps its marked choices in an array of their own, which look-ups go through.
    for (ppd_choice_t& choice :
         std::span(option->choices, static_cast<std::size_t>(option->num_choices))) {
        if (!choice.marked)
            continue;
        choice.marked = 0;
        cupsArrayRemove(file->marked, &choice);
    }
    return true;
}

const ppd_size_t* markedPageSize(ppd_file_t* file) {
    // A size's own flag stays when its choice is unmarked, so the choices decide.
    if (!findMarkedChoice(file, "PageSize") && !findMarkedChoice(file, "PageRegion"))
        return nullptr;
    return ppdPageSize(file, nullptr);
}

int conflicts(ppd_file_t* file) {
    return file ? ppdConflicts(file) : 0;
}

std::vector<Settings> conflictingSettings(ppd_file_t* file) {
    if (conflicts(file) == 0)
        return {};
    MarksSetAside marks(file);
    std::vector<ppd_choice_t*> involved = marks.choices();
    std::erase_if(involved, [](const ppd_choice_t* choice) { return !choice->option->conflicted; });
    std::ranges::stable_sort(involved, {},
                             [](const ppd_choice_t* choice) { return choice->option; });

    std::vector<Settings> all;
    for (auto first = involved.begin(); first != involved.end(); ++first)
        for (auto second = std::next(first); second != involved.end(); ++second)
            if (marks.conflict(*first, *second))
                all.push_back({settingOf(**first), settingOf(**second)});
    if (!all.empty())
        return all;
    Settings together;
    std::ranges::transform(involved, std::back_inserter(together),
                           [](const ppd_choice_t* choice) { return settingOf(*choice); });
    return {together};
}

std::optional<Settings> resolutionFor(ppd_file_t* file, const char* keyword, const char* choice) {
    if (!file || !keyword || !choice)
        return std::nullopt;
    Options changes;
    if (!cupsResolveConflicts(file, keyword, choice, &changes.count, &changes.list))
        return std::nullopt;
    Settings settings = changes.settings();
    std::erase_if(settings, [&](const Setting& setting) {
        return setting.keyword.compare(QLatin1String(keyword), Qt::CaseInsensitive) == 0 ||
               isMarked(file, setting);
    });
    return settings;
}

QByteArray emitSection(ppd_file_t* file, ppd_section_t section) {
    if (!file)
        return {};
    const std::unique_ptr<char, Free> code(ppdEmitString(file, section, 0.0F));
    return QByteArray(code.get());
}

QByteArray emitJobControl(ppd_file_t* file, const QByteArray& user, const QByteArray& title) {
    if (!file)
        return {};
    return captured(
        [&](FILE* stream) { ppdEmitJCL(file, stream, 0, user.constData(), title.constData()); });
}

QByteArray emitJobControlEnd(ppd_file_t* file) {
    // Without an end of its own libcups gives a lone ^D, which is no part of a file.
    if (!file || !file->jcl_end)
        return {};
    return captured([&](FILE* stream) { ppdEmitJCLEnd(file, stream); });
}

namespace {

CustomParameter::Type parameterType(ppd_cptype_t type) {
    switch (type) {
    case PPD_CUSTOM_INT:
        return CustomParameter::Type::Integer;
    case PPD_CUSTOM_POINTS:
        return CustomParameter::Type::Points;
    case PPD_CUSTOM_PASSCODE:
    case PPD_CUSTOM_PASSWORD:
        return CustomParameter::Type::Password;
    case PPD_CUSTOM_STRING:
        return CustomParameter::Type::Text;
    default:
        return CustomParameter::Type::Real;
    }
}

std::vector<ppd_cparam_t*> parametersOf(ppd_file_t* file, const char* keyword) {
    std::vector<ppd_cparam_t*> all;
    ppd_coption_t* option = file && keyword ? ppdFindCustomOption(file, keyword) : nullptr;
    if (!option)
        return all;
    for (void* p = cupsArrayFirst(option->params); p; p = cupsArrayNext(option->params))
        all.push_back(static_cast<ppd_cparam_t*>(p));
    std::ranges::stable_sort(all, {}, &ppd_cparam_t::order);
    return all;
}

double wide(int bound) {
    return bound;
}

/// The largest float has 39 digits before the point, the smallest 149 behind it.
using Digits = std::array<char, 192>;

/// The number that stands in the PPD: 0.1 as a float is more than 0.1, which would be refused.
double wide(float bound) {
    Digits digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), bound).ptr;
    double number = 0;
    std::from_chars(digits.begin(), end, number);
    return number;
}

template<typename Limit>
std::pair<double, double> bounds(const Limit& minimum, const Limit& maximum) {
    return {wide(minimum), wide(maximum)};
}

std::pair<double, double> boundsOf(const ppd_cparam_t& p) {
    switch (p.type) {
    case PPD_CUSTOM_INT:
        return bounds(p.minimum.custom_int, p.maximum.custom_int);
    case PPD_CUSTOM_POINTS:
        return bounds(p.minimum.custom_points, p.maximum.custom_points);
    case PPD_CUSTOM_PASSCODE:
    case PPD_CUSTOM_PASSWORD:
    case PPD_CUSTOM_STRING:
        return bounds(p.minimum.custom_string, p.maximum.custom_string);
    default:
        return bounds(p.minimum.custom_real, p.maximum.custom_real);
    }
}

QString currentValue(const ppd_cparam_t& p) {
    switch (p.type) {
    case PPD_CUSTOM_INT:
        return QString::number(p.current.custom_int);
    case PPD_CUSTOM_POINTS:
        return pointsText(static_cast<double>(p.current.custom_points));
    case PPD_CUSTOM_PASSCODE:
    case PPD_CUSTOM_PASSWORD:
    case PPD_CUSTOM_STRING:
        return QString::fromUtf8(p.current.custom_string ? p.current.custom_string : "");
    default:
        return numberText(static_cast<double>(p.current.custom_real));
    }
}

/// A value as it is read back from among others.
QString inQuotesIfNeeded(QString value) {
    const auto isSpecial = [](QChar c) {
        return c.isSpace() || QStringLiteral("'\"\\{}").contains(c);
    };
    if (std::ranges::none_of(value, isSpecial))
        return value;
    const QChar quote = value.contains(u'\'') && !value.contains(u'"') ? u'"' : u'\'';
    value.replace(u'\\', QStringLiteral("\\\\"));
    value.replace(quote, QStringLiteral("\\") + quote);
    return quote + value + quote;
}

} // namespace

QString numberText(double number) {
    Digits digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), static_cast<float>(number),
                                   std::chars_format::fixed)
                         .ptr;
    return QString::fromLatin1(digits.data(), end - digits.begin());
}

QString pointsText(double points) {
    return numberText(std::round(points * kPartsOfPoint) / kPartsOfPoint);
}

QString customCollection(const Settings& values) {
    QStringList pairs;
    for (const Setting& value : values)
        pairs.append(value.keyword + u'=' + inQuotesIfNeeded(value.choice));
    return u'{' + pairs.join(u' ') + u'}';
}

std::vector<CustomParameter> customParameters(ppd_file_t* file, const char* keyword) {
    std::vector<CustomParameter> all;
    for (const ppd_cparam_t* p : parametersOf(file, keyword)) {
        const auto [minimum, maximum] = boundsOf(*p);
        all.push_back({QString::fromUtf8(p->name), QString::fromUtf8(p->text),
                       parameterType(p->type), minimum, maximum});
    }
    return all;
}

std::optional<QString> markedValue(ppd_file_t* file, const char* keyword) {
    const ppd_choice_t* choice = findMarkedChoice(file, keyword);
    if (!choice)
        return std::nullopt;
    const QString name = QString::fromUtf8(choice->choice);
    if (name != QLatin1String("Custom"))
        return name;
    if (qstricmp(keyword, "PageSize") == 0) {
        const ppd_size_t* size = markedPageSize(file);
        if (!size)
            return name;
        return QStringLiteral("Custom.%1x%2")
            .arg(pointsText(static_cast<double>(size->width)),
                 pointsText(static_cast<double>(size->length)));
    }
    const std::vector<ppd_cparam_t*> parameters = parametersOf(file, keyword);
    if (parameters.empty())
        return name;
    if (parameters.size() == 1)
        return QStringLiteral("Custom.") + currentValue(*parameters.front());
    Settings values;
    values.reserve(parameters.size());
    for (const ppd_cparam_t* p : parameters)
        values.push_back({QString::fromUtf8(p->name), currentValue(*p)});
    return customCollection(values);
}

} // namespace labelcut::ppd
