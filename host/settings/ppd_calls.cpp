// Settings: what only a host does with libcups' PPD functions.
#include "host/settings/ppd_calls.h"

#include <cups/file.h>

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

#include "host/settings/constraint_rules.h"
#include "host/settings/ppd_records.h"
#include "host/texts/host_text.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace labelcut::ppd {

namespace {

struct Free {
    void operator()(char* text) const noexcept { std::free(text); }
};

/// Lengths are written in thousandths of a point; a thousandth is a third of a micrometre.
constexpr double kPartsOfPoint = 1000;
/// Bytes of a text that are looked through at a time.
constexpr std::size_t kPiece = std::size_t{16} * 1024;

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

struct CloseSource {
    void operator()(cups_file_t* source) const noexcept { cupsFileClose(source); }
};
/// A text that may be compressed.
using Source = std::unique_ptr<cups_file_t, CloseSource>;

/// libcups leaves constraints alone where it has a list of them, and would otherwise go through all
/// at every mark; the list stays empty and leads to ours.
void attachRules(ppd_file_t* file) {
    file->cups_uiconstraints = cupsArrayNew(nullptr, new ConstraintRules(file));
}

ConstraintRules* attachedRules(ppd_file_t* file) {
    return static_cast<ConstraintRules*>(cupsArrayUserData(file->cups_uiconstraints));
}

ConstraintRules& rulesOf(ppd_file_t* file) {
    if (!attachedRules(file))
        attachRules(file);
    return *attachedRules(file);
}

/// Whether marking the choice does nothing but take the option's other mark away.
bool isPlain(const ppd_option_t& option, std::string_view choice) {
    constexpr std::array kTied{"PageSize", "PageRegion", "InputSlot", "ManualFeed",
                               "AP_D_InputSlot"};
    const auto isIt = [&](const char* keyword) { return qstricmp(keyword, option.keyword) == 0; };
    return option.ui != PPD_UI_PICKMANY && std::ranges::none_of(kTied, isIt) &&
           !choice.starts_with('{') && qstrnicmp(choice.data(), "Custom.", 7) != 0;
}

void markPlain(ppd_file_t* file, ppd_choice_t* old, ppd_choice_t* choice) {
    // A mark is kept twice, by a flag of the choice and in an array of the file.
    if (old) {
        old->marked = 0;
        cupsArrayRemove(file->marked, old);
    }
    choice->marked = 1;
    cupsArrayAdd(file->marked, choice);
}

} // namespace

void Closer::operator()(ppd_file_t* file) const noexcept {
    delete attachedRules(file);
    ppdClose(file);
}

File openFile(const QString& path, OpenError* error) {
    OpenAttempt attempt = tryRegularFile(path);
    if (attempt.trouble == FileTrouble::None)
        return open(std::move(attempt.file), error);
    if (error)
        *error = {attempt.trouble == FileTrouble::Missing
                      ? QString::fromUtf8(ppdErrorString(PPD_FILE_OPEN_ERROR))
                      : reasonOf(attempt),
                  0};
    return nullptr;
}

File open(OpenedFile content, OpenError* error) {
    const auto refuse = [&](const OpenError& reason) {
        if (error)
            *error = reason;
        return nullptr;
    };
    // Takes the descriptor.
    const Source source(cupsFileOpenFd(content.release(), "r"));
    if (!source)
        return refuse({QString::fromUtf8(ppdErrorString(PPD_FILE_OPEN_ERROR))});
    TextWalk text;
    std::array<char, kPiece> piece{};
    const auto read = [&] { return cupsFileRead(source.get(), piece.data(), piece.size()); };
    for (ssize_t size = read(); size > 0; size = read())
        if (!text.take({piece.data(), static_cast<std::size_t>(size)}))
            break;
    const std::optional<OpenError> brokenOff = text.end();
    if (const auto excess = text.excess())
        return refuse(*excess);
    cupsFileRewind(source.get());
    File file(ppdOpen2(source.get()));
    if (!file) {
        OpenError failed;
        failed.reason = QString::fromUtf8(ppdErrorString(ppdLastError(&failed.line)));
        return refuse(failed);
    }
    if (brokenOff)
        return refuse(*brokenOff);
    ppdLocalize(file.get());
    attachRules(file.get());
    return file;
}

void markDefaults(ppd_file_t* file) {
    if (!file)
        return;
    ppdMarkDefaults(file);
    rulesOf(file).update();
}

bool markOption(ppd_file_t* file, const char* keyword, const char* choice) {
    // Found among the marked ones, where a look through thousands of choices can be spared.
    ppd_choice_t* marked = findMarkedChoice(file, keyword);
    if (marked && std::strcmp(marked->choice, choice) == 0)
        return true;
    ppd_option_t* option = findOption(file, keyword);
    ppd_choice_t* known = findChoice(option, choice);
    if (!known)
        return false;
    if (isPlain(*option, choice)) {
        markPlain(file, marked, known);
        rulesOf(file).update(*option);
        return true;
    }
    ppdMarkOption(file, keyword, choice);
    rulesOf(file).update();
    return true;
}

bool unmarkOption(ppd_file_t* file, const char* keyword) {
    ppd_option_t* option = findOption(file, keyword);
    if (!option)
        return false;
    // The file keeps its marked choices in an array of their own, which look-ups go through.
    for (ppd_choice_t& choice : choicesOf(*option)) {
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
    return file ? rulesOf(file).update() : 0;
}

std::vector<Settings> conflictingSettings(ppd_file_t* file) {
    if (conflicts(file) == 0)
        return {};
    std::vector<Settings> all;
    for (const std::vector<ppd_choice_t*>& sides : rulesOf(file).conflicts()) {
        all.emplace_back();
        std::ranges::transform(sides, std::back_inserter(all.back()),
                               [](const ppd_choice_t* side) { return settingOf(*side); });
    }
    return all;
}

ResolvingData resolvingData(ppd_file_t* file) {
    const std::shared_ptr<const ResolvingRules> rules = rulesOf(file).copy();
    return {rules, ResolvingMarks(file, *rules)};
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
