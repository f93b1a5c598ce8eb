// Input fields: dates as texts, through a calendar format.
#include "plugins/cut_options/fields/calendar_format.h"

#include <QLocale>
#include <QTimeZone>

#include <array>
#include <ctime>
#include <memory>
#include <type_traits>

#include <locale.h>

namespace labelcut {

namespace {

struct LocaleCloser {
    void operator()(locale_t locale) const noexcept { freelocale(locale); }
};
using CLocale = std::unique_ptr<std::remove_pointer_t<locale_t>, LocaleCloser>;

/// A date with the names to print it with.
class CalendarDate {
public:
    CalendarDate(const QDateTime& date, const QVariantMap& names)
        : mDate(date)
        , mNames(names)
        , mLocale(names.contains(QLatin1String(kCalendarLocaleName))
                      ? QLocale(names[QLatin1String(kCalendarLocaleName)].toString())
                      : QLocale::c()) {}

    QString formatted(QStringView format) const;

private:
    std::optional<QString> directive(char16_t conversion) const;
    QString listed(const char* key, int index, const QString& otherwise) const;
    QString weekday(bool isShort) const;
    QString month(bool isShort) const;
    QString halfOfDay() const;
    QString numeric(char16_t conversion) const;

    QDateTime mDate;
    QVariantMap mNames;
    QLocale mLocale;
};

QString CalendarDate::listed(const char* key, int index, const QString& otherwise) const {
    return mNames.value(QLatin1String(key)).toStringList().value(index, otherwise);
}

QString CalendarDate::weekday(bool isShort) const {
    const int day = mDate.date().dayOfWeek(); // 1 is Monday, 7 Sunday
    const auto format = isShort ? QLocale::ShortFormat : QLocale::LongFormat;
    return listed(isShort ? kCalendarShortWeekdayNames : kCalendarWeekdayNames, day % 7,
                  mLocale.standaloneDayName(day, format));
}

QString CalendarDate::month(bool isShort) const {
    const int month = mDate.date().month();
    const auto format = isShort ? QLocale::ShortFormat : QLocale::LongFormat;
    return listed(isShort ? kCalendarShortMonthNames : kCalendarMonthNames, month - 1,
                  mLocale.standaloneMonthName(month, format));
}

QString CalendarDate::halfOfDay() const {
    const bool isAfternoon = mDate.time().hour() >= 12;
    return listed(kCalendarAMPMDesignation, isAfternoon ? 1 : 0,
                  isAfternoon ? mLocale.pmText() : mLocale.amText());
}

/// What the C library prints in the "C" locale.
QString CalendarDate::numeric(char16_t conversion) const {
    static const CLocale cLocale(newlocale(LC_ALL_MASK, "C", nullptr));
    const QByteArray zone = mDate.timeZoneAbbreviation().toUtf8();
    std::tm time{};
    time.tm_sec = mDate.time().second();
    time.tm_min = mDate.time().minute();
    time.tm_hour = mDate.time().hour();
    time.tm_mday = mDate.date().day();
    time.tm_mon = mDate.date().month() - 1;
    time.tm_year = mDate.date().year() - 1900;
    time.tm_wday = mDate.date().dayOfWeek() % 7;
    time.tm_yday = mDate.date().dayOfYear() - 1;
    time.tm_isdst = mDate.isDaylightTime() ? 1 : 0;
    time.tm_gmtoff = mDate.offsetFromUtc();
    time.tm_zone = zone.constData();
    const char format[] = {'%', static_cast<char>(conversion), '\0'};
    std::array<char, 128> text{};
    const std::size_t length = strftime_l(text.data(), text.size(), format, &time, cLocale.get());
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(length));
}

/// The text for a directive, or nothing when there is no such directive.
std::optional<QString> CalendarDate::directive(char16_t conversion) const {
    switch (conversion) {
    case u'a':
        return weekday(true);
    case u'A':
        return weekday(false);
    case u'b':
    case u'h':
        return month(true);
    case u'B':
        return month(false);
    case u'p':
        return halfOfDay();
    case u'P':
        return mLocale.toLower(halfOfDay());
    case u'c':
        return formatted(u"%a %b %e %H:%M:%S %Y");
    case u'r':
        return formatted(u"%I:%M:%S %p");
    default:
        break;
    }
    if (QStringView(u"CdDeFgGHIjklmMnRStTuUVwWxXyYzZ%").contains(conversion))
        return numeric(conversion);
    return std::nullopt;
}

QString CalendarDate::formatted(QStringView format) const {
    QString text;
    for (qsizetype i = 0; i < format.size(); ++i) {
        if (format[i] != u'%') {
            text += format[i];
            continue;
        }
        const qsizetype start = i++;
        if (i + 1 < format.size() && (format[i] == u'E' || format[i] == u'O'))
            ++i;
        const std::optional<QString> shown =
            i < format.size() ? directive(format[i].unicode()) : std::nullopt;
        text += shown.value_or(format.mid(start, i + 1 - start).toString());
    }
    return text;
}

} // namespace

QString formatCalendarDate(const QDateTime& date, const std::optional<QString>& format,
                           const QVariantMap& locale) {
    return CalendarDate(date, locale)
        .formatted(format.value_or(QStringLiteral("%Y-%m-%d %H:%M:%S %z")));
}

} // namespace labelcut
