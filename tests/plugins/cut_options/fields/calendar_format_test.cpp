#include "plugins/cut_options/fields/calendar_format.h"

#include <gtest/gtest.h>

#include <array>
#include <ctime>
#include <random>

#include <locale.h>

using labelcut::formatCalendarDate;

namespace {

const QDateTime kDate(QDate(2024, 2, 29), QTime(15, 4, 5), Qt::OffsetFromUTC, 3600);

std::string format(const char* text, const QVariantMap& locale = {}) {
    return formatCalendarDate(kDate, QString::fromUtf8(text), locale).toStdString();
}

TEST(CalendarFormat, HasADefault) {
    EXPECT_EQ(formatCalendarDate(kDate, std::nullopt, {}),
              QStringLiteral("2024-02-29 15:04:05 +0100"));
}

TEST(CalendarFormat, AgreesWithTheCLibraryInTheCLocale) {
    const char* const directives = "aAbBcCdDeFgGhHIjklmMnpPrRStTuUVwWxXyYz%";
    const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        const auto seconds = static_cast<qint64>(random()) - 1'000'000'000;
        const QDateTime date = QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
        const std::time_t time = seconds;
        std::tm broken{};
        gmtime_r(&time, &broken);
        for (const char* directive = directives; *directive; ++directive) {
            const char text[] = {'%', *directive, '\0'};
            std::array<char, 128> expected{};
            strftime_l(expected.data(), expected.size(), text, &broken, c);
            ASSERT_EQ(formatCalendarDate(date, QLatin1String(text), {}).toStdString(),
                      expected.data())
                << text << ' ' << seconds;
        }
    }
    freelocale(c);
}

TEST(CalendarFormat, TakesNamesFromTheNamedLocale) {
    const QVariantMap german{{QStringLiteral("LocaleName"), QStringLiteral("de_DE")}};
    EXPECT_EQ(format("%A, %d. %B %Y", german), "Donnerstag, 29. Februar 2024");
    EXPECT_EQ(format("%A, %d. %B %Y"), "Thursday, 29. February 2024");
}

TEST(CalendarFormat, TakesNamesFromListsFirst) {
    const QVariantMap locale{
        {QStringLiteral("MonthNames"), QStringList{QStringLiteral("I"), QStringLiteral("II")}},
        {QStringLiteral("WeekdayNames"), QStringList{QStringLiteral("So")}},
        {QStringLiteral("AMPMDesignation"), QStringList{QStringLiteral("v"), QStringLiteral("n")}}};
    EXPECT_EQ(format("%B %A %p", locale), "II Thursday n");
}

TEST(CalendarFormat, PrintsUnknownAndUnfinishedDirectivesAsWritten) {
    EXPECT_EQ(format("%Q %@ %"), "%Q %@ %");
    EXPECT_EQ(format("%E"), "%E");
    EXPECT_EQ(format("%Ey"), "24");
    EXPECT_EQ(format("é 🏷"), "é 🏷");
}

TEST(CalendarFormat, PrintsInTheDatesOwnZone) {
    EXPECT_EQ(format("%H:%M %z %Z"), "15:04 +0100 UTC+01:00");
}

} // namespace
