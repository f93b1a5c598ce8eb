// Settings: the options that "lpoptions" keeps for a queue, for the system and for the user.
//
// Only files are read here; no print service is asked.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

#include "host/settings/ppd_calls.h"
#include "host/settings/setting_match.h"

namespace labelcut {

/// A queue, or one of the variants that users may keep of it ("queue/instance").
struct Destination {
    QString queue;
    QString instance; ///< Empty: the queue itself.
    bool operator==(const Destination&) const = default;
};

/// What files of saved options say. Option names are those of PPDs and of the print service alike.
struct SavedOptions {
    struct Entry {
        Destination destination;
        /// In the order of first appearance, each name once, the last value.
        Settings options;
    };
    std::vector<Entry> entries;
    /// The destination of the last "Default" line.
    std::optional<Destination> defaultDestination;
    /// Sentences for the user: files that could not be read, or not to their end.
    QStringList problems;

    /// The options of a destination; empty when nothing is kept. Queue names are compared without
    /// the case of ASCII letters, instances too.
    Settings optionsOf(const Destination& destination) const;
};

/// A line of option settings: `name=value`, `name` (true), `noname` (false), values in single or
/// double quotes, with a backslash before single characters, or in braces; blanks between them.
/// Takes any text. A name that stands twice is there once, with its last value.
Settings parseOptionText(const QByteArray& text);

/// Adds the contents of one file to `saved`; later files override earlier ones. A new instance
/// begins with the options of its queue. Lines that are none of its kind are passed over.
void addSavedOptions(SavedOptions& saved, const QByteArray& contents);

/// lpoptions in CUPS_SERVERROOT or /etc/cups, and .cups/lpoptions in the user's home.
QStringList savedOptionFiles();
/// The system's file, then the user's.
/// @param files  in that order; ones that do not exist are passed over.
SavedOptions readSavedOptions(const QStringList& files = savedOptionFiles());

/// The destination to begin with when nothing else is known: the environment's LPDEST or PRINTER,
/// else the files' default. Nothing: the print service's own default.
std::optional<Destination> defaultDestination(const SavedOptions& saved);

/// What saved options make of a printer that has its PPD's defaults.
struct StartingPoint {
    /// To be marked over the defaults; see SettingMatch. Options that are no PPD keyword are no
    /// loss: they are in `others`.
    SettingMatch match;
    /// Options for the print service, such as "job-sheets", "copies" and "media" left out.
    Settings others;
    /// 1 to kMaxCopies; 1 where none are saved.
    int copies = 1;
};

/// "media" gives the page size when it names one of the PPD's and "PageSize" is not there; "copies"
/// gives the copies. Changes no mark.
StartingPoint startingPoint(ppd_file_t* ppd, const Settings& saved);

} // namespace labelcut
