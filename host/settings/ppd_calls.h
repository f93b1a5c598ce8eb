// Settings: what only a host does with libcups' PPD functions.
//
// libcups marks them deprecated, and a successor carries them under other names. They are called in
// this file's source and in platform/printing/ppd_lookup.cpp, and nowhere else. The records
// (ppd_file_t, ppd_option_t, ppd_choice_t, ppd_size_t) are public layouts of <cups/ppd.h>; they are
// borrowed from the file.
#pragma once

#include <QByteArray>
#include <QString>

#include <cups/ppd.h>

#include <memory>
#include <optional>
#include <vector>

#include "host/core/regular_file.h"
#include "host/settings/ppd_text.h"
#include "host/settings/resolving_data.h"
#include "host/settings/setting.h"
#include "platform/printing/ppd_lookup.h"

namespace labelcut::ppd {

struct Closer {
    void operator()(ppd_file_t* file) const noexcept;
};
/// An opened PPD that closes itself.
using File = std::unique_ptr<ppd_file_t, Closer>;

/// Opens and localises the PPD at `path` in the language of the locale environment. One that ends
/// in the middle, so that options may be lacking, or goes beyond the limits of ppd_text.h is
/// refused.
/// @param path  a name as nameFromBytes() gives it. What it names is never waited for.
/// @param error  receives the reason on failure; may be null.
/// @return the file, or null.
File openFile(const QString& path, OpenError* error);
/// The same for one that is open already. @param content  at its begin.
File open(OpenedFile content, OpenError* error);

/// Marks the defaults of every option.
void markDefaults(ppd_file_t* file);
/// Marks a choice. @return false, and nothing marked, when the PPD lacks the option or choice.
/// "Custom.…" choices are accepted where the PPD offers custom values.
bool markOption(ppd_file_t* file, const char* keyword, const char* choice);
/// Clears every mark of one option. @return false when the PPD lacks it.
bool unmarkOption(ppd_file_t* file, const char* keyword);
/// The record of the marked "PageSize" (or "PageRegion"), with the measure and margins of a custom
/// size filled in; or null.
const ppd_size_t* markedPageSize(ppd_file_t* file);
/// How many of the PPD's constraints the marked choices break.
int conflicts(ppd_file_t* file);

/// One number or text that the PPD lets the user give for an option's "Custom" choice.
struct CustomParameter {
    enum class Type { Integer, Real, Points, Text, Password };
    QString name;
    /// For the user, in the PPD's language.
    QString text;
    Type type = Type::Text;
    /// Bounds of a number; of a text's length in characters.
    double minimum = 0;
    double maximum = 0;
};
/// What the option's custom choice asks for, in the PPD's order; empty when it has none.
std::vector<CustomParameter> customParameters(ppd_file_t* file, const char* keyword);
/// The marked choice as it is marked anew: a choice keyword, "Custom.value", or
/// "{name=value …}" for several parameters. Nothing when none is marked.
std::optional<QString> markedValue(ppd_file_t* file, const char* keyword);

/// A number of a custom value as a PPD has it: with a point, without exponent, and as short as it
/// can be while libcups, which keeps floats, reads back the same.
QString numberText(double number);
/// The same for a length in points, to a thousandth of a point.
QString pointsText(double points);

/// Several custom values as one choice: "{name=value …}", values in quotes where blanks and the
/// like stand in them.
QString customCollection(const Settings& values);

/// The marked choices that exclude each other, by UIConstraints and their successor alike,
/// installable options included: each pair once, in the file's order of options; a choice that is
/// excluded whatever else is marked stands alone. When only more than two together conflict, all of
/// them at once. No mark changes.
std::vector<Settings> conflictingSettings(ppd_file_t* file);
/// What a search for a way out of conflicts reads, as it is now. No mark changes.
/// @param file  not null.
ResolvingData resolvingData(ppd_file_t* file);

/// The code of every marked choice that belongs to `section`, in the order that OrderDependency
/// gives, each guarded and between its feature comments; empty when there is none.
QByteArray emitSection(ppd_file_t* file, ppd_section_t section);
/// What stands before a job's PostScript: the PPD's job control opening, its job control options
/// and the switch to PostScript. Empty for a PPD without job control.
/// @param user  and title: plain ASCII without line ends; job control languages know no more.
QByteArray emitJobControl(ppd_file_t* file, const QByteArray& user, const QByteArray& title);
/// What stands behind it, or nothing.
QByteArray emitJobControlEnd(ppd_file_t* file);

} // namespace labelcut::ppd
