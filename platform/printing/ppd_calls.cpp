// Our printing framework: libcups' PPD functions, called here and nowhere else.
#include "platform/printing/ppd_calls.h"

#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace labelcut::ppd {

namespace {

struct Free {
    void operator()(char* text) const noexcept { std::free(text); }
};

/// A list of libcups' options that frees itself.
class Options {
public:
    Options() = default;
    ~Options() { cupsFreeOptions(count, list); }
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    std::vector<Setting> settings() const {
        std::vector<Setting> all;
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

/// Whether `setting` is what the file has marked already.
bool isMarked(ppd_file_t* file, const Setting& setting) {
    const ppd_choice_t* choice = findMarkedChoice(file, setting.keyword.toUtf8().constData());
    return choice && setting.choice == QString::fromUtf8(choice->choice);
}

} // namespace

void Closer::operator()(ppd_file_t* file) const noexcept {
    ppdClose(file);
}

File openFile(const QString& path, OpenError* error) {
    File file(ppdOpenFile(QFile::encodeName(path).constData()));
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

ppd_option_t* findOption(ppd_file_t* file, const char* keyword) {
    return file && keyword ? ppdFindOption(file, keyword) : nullptr;
}

ppd_choice_t* findMarkedChoice(ppd_file_t* file, const char* keyword) {
    return file && keyword ? ppdFindMarkedChoice(file, keyword) : nullptr;
}

ppd_choice_t* findChoice(ppd_option_t* option, const char* choice) {
    return option && choice ? ppdFindChoice(option, choice) : nullptr;
}

ppd_attr_t* findAttr(ppd_file_t* file, const char* keyword) {
    return file && keyword ? ppdFindAttr(file, keyword, nullptr) : nullptr;
}

ppd_attr_t* findNextAttr(ppd_file_t* file, const char* keyword) {
    return file && keyword ? ppdFindNextAttr(file, keyword, nullptr) : nullptr;
}

void markDefaults(ppd_file_t* file) {
    if (file)
        ppdMarkDefaults(file);
}

bool markOption(ppd_file_t* file, const char* keyword, const char* choice) {
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
    return file ? ppdPageSize(file, nullptr) : nullptr;
}

int conflicts(ppd_file_t* file) {
    return file ? ppdConflicts(file) : 0;
}

std::vector<Setting> conflictsOf(ppd_file_t* file, const char* keyword, const char* choice) {
    if (!file || !keyword || !choice)
        return {};
    Options found;
    found.count = cupsGetConflicts(file, keyword, choice, &found.list);
    return found.settings();
}

std::optional<std::vector<Setting>> resolutionFor(ppd_file_t* file, const char* keyword,
                                                  const char* choice) {
    if (!file || !keyword || !choice)
        return std::nullopt;
    Options changes;
    if (!cupsResolveConflicts(file, keyword, choice, &changes.count, &changes.list))
        return std::nullopt;
    std::vector<Setting> settings = changes.settings();
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

} // namespace labelcut::ppd
