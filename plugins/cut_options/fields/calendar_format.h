// Input fields: dates as texts, through a calendar format.
//
// The syntax is that of strftime: %a %A %b %B %c %C %d %D %e %F %g %G %h %H %I %j %k %l %m %M %n %p
// %P %r %R %S %t %T %u %U %V %w %W %x %X %y %Y %z %Z %%, with the modifiers E and O read and
// ignored. Everything but names looks as in the "C" locale, whatever the process's locale is;
// the names come from the locale given. Any other directive is printed as it is written.
#pragma once

#include <QDateTime>
#include <QString>
#include <QVariantMap>

#include <optional>

namespace labelcut {

/// @name Keys of a calendar locale
/// All are optional. Names that a list lacks are those of kCalendarLocaleName.
/// @{
/// A locale's name such as "de_DE"; absent: "C", which is English.
inline constexpr char kCalendarLocaleName[] = "LocaleName";
/// Lists of texts that begin with January.
inline constexpr char kCalendarMonthNames[] = "MonthNames";
inline constexpr char kCalendarShortMonthNames[] = "ShortMonthNames";
/// Lists of texts that begin with Sunday.
inline constexpr char kCalendarWeekdayNames[] = "WeekdayNames";
inline constexpr char kCalendarShortWeekdayNames[] = "ShortWeekdayNames";
/// A list of two texts: before and after noon.
inline constexpr char kCalendarAMPMDesignation[] = "AMPMDesignation";
/// @}

/// @param date    a valid date and time; printed in its own time zone.
/// @param format  see above; nothing stands for "%Y-%m-%d %H:%M:%S %z".
/// @param locale  names, by the keys above.
QString formatCalendarDate(const QDateTime& date, const std::optional<QString>& format,
                           const QVariantMap& locale);

} // namespace labelcut
