// Fuzzing: files of saved options, against the print service's own library, and what they make of
// a printer.
#include <cups/cups.h>

#include <algorithm>

#include "host/core/copies.h"
#include "host/settings/saved_options.h"
#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/property.h"

using namespace labelcut;
using fuzz::Bytes;
using fuzz::require;

namespace {

bool isSame(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

void checkOnce(const Settings& options) {
    for (auto one = options.begin(); one != options.end(); ++one) {
        require(!one->keyword.isEmpty(), "an option has a name");
        require(
            std::none_of(std::next(one), options.end(),
                         [&](const Setting& other) { return isSame(one->keyword, other.keyword); }),
            "an option is there once");
    }
}

/// In ASCII the library's reading is the measure; it orders options by their names.
void checkAgainstLibrary(const QByteArray& line, const Settings& ours) {
    cups_option_t* theirs = nullptr;
    const int count = cupsParseOptions(line.constData(), 0, &theirs);
    bool areSame = static_cast<std::size_t>(count) == ours.size();
    for (const Setting& option : ours) {
        const char* value = cupsGetOption(option.keyword.toUtf8().constData(), count, theirs);
        areSame = areSame && value && option.choice == QString::fromUtf8(value);
    }
    cupsFreeOptions(count, theirs);
    require(areSame, "options are read as the print service's library reads them");
}

bool isAscii(const QByteArray& text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

void checkLine(const QByteArray& line) {
    const Settings options = parseOptionText(line);
    checkOnce(options);
    if (isAscii(line))
        checkAgainstLibrary(line, options);
}

void checkFile(const QByteArray& contents) {
    SavedOptions saved;
    addSavedOptions(saved, contents);
    for (const SavedOptions::Entry& entry : saved.entries) {
        checkOnce(entry.options);
        require(saved.optionsOf(entry.destination).size() <= entry.options.size() ||
                    saved.entries.size() > 1,
                "a destination has its options");
    }
    SavedOptions twice = saved;
    addSavedOptions(twice, contents);
    require(twice.entries.size() == saved.entries.size(), "the same file adds no destination");
    for (std::size_t i = 0; i < saved.entries.size(); ++i)
        require(twice.entries[i].destination == saved.entries[i].destination,
                "the same file keeps its destinations");

    static ppd_file_t* const printer =
        ppd::openFile(QStringLiteral(LABELCUT_FUZZ_PRINTERS "/tape.ppd"), nullptr).release();
    ppd::markDefaults(printer);
    for (const SavedOptions::Entry& entry : saved.entries) {
        const StartingPoint start = startingPoint(printer, entry.options);
        require(start.copies >= 1 && start.copies <= kMaxCopies, "copies are in their range");
        for (const Setting& setting : start.match.applicable)
            require(ppd::markOption(printer, setting.keyword.toUtf8().constData(),
                                    setting.choice.toUtf8().constData()),
                    "what is applicable can be marked");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray contents = Bytes(data, size).rest();
    checkFile(contents);
    for (const QByteArray& line : contents.split('\n'))
        checkLine(line);
    return 0;
}
