// Our printing framework: libcups' PPD functions, called here and nowhere else.
#include "platform/printing/ppd_calls.h"

#include <QFile>

#include <cstring>
#include <span>

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace labelcut::ppd {

void Closer::operator()(ppd_file_t* file) const noexcept
{
    ppdClose(file);
}

File openFile(const QString& path, OpenError* error)
{
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

ppd_option_t* findOption(ppd_file_t* file, const char* keyword)
{
    return file && keyword ? ppdFindOption(file, keyword) : nullptr;
}

ppd_choice_t* findMarkedChoice(ppd_file_t* file, const char* keyword)
{
    return file && keyword ? ppdFindMarkedChoice(file, keyword) : nullptr;
}

ppd_choice_t* findChoice(ppd_option_t* option, const char* choice)
{
    return option && choice ? ppdFindChoice(option, choice) : nullptr;
}

ppd_attr_t* findAttr(ppd_file_t* file, const char* keyword)
{
    return file && keyword ? ppdFindAttr(file, keyword, nullptr) : nullptr;
}

ppd_attr_t* findNextAttr(ppd_file_t* file, const char* keyword)
{
    return file && keyword ? ppdFindNextAttr(file, keyword, nullptr) : nullptr;
}

void markDefaults(ppd_file_t* file)
{
    if (file)
        ppdMarkDefaults(file);
}

bool markOption(ppd_file_t* file, const char* keyword, const char* choice)
{
    ppd_option_t* option = findOption(file, keyword);
    if (!option || !findChoice(option, choice))
        return false;
    ppdMarkOption(file, keyword, choice);
    return true;
}

bool unmarkOption(ppd_file_t* file, const char* keyword)
{
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

int conflicts(ppd_file_t* file)
{
    return file ? ppdConflicts(file) : 0;
}

} // namespace labelcut::ppd
