// The job: what a user asks for, checked against what the printer offers.
#include "host/settings/checked_setting.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/job_fixtures.h"

namespace labelcut {

namespace {

/// What becomes of "Keyword=Choice": the setting as it is taken, or the refusal.
std::string checked(ppd_file_t* ppd, const QString& text) {
    const auto equals = text.indexOf(u'=');
    const Result<Setting> setting = checkedSetting(ppd, {text.left(equals), text.mid(equals + 1)});
    if (!setting)
        return setting.error().sentence.toStdString();
    return (setting->keyword + u'=' + setting->choice).toStdString();
}

} // namespace

TEST(SettingsTest, ASettingIsTakenAndSpeltAsThePpdDoes) {
    const ppd::File printer = test::tapePrinter();
    for (const auto& [asked, taken] :
         {std::pair("KvHalfCut=ON", "KvHalfCut=ON"), std::pair("kvhalfcut=on", "KvHalfCut=ON"),
          std::pair("PageSize=dc24", "PageSize=DC24"),
          std::pair("PageSize=Custom.50x300", "PageSize=Custom.50x300"),
          std::pair("PageSize=custom.18x50mm", "PageSize=Custom.18x50mm"),
          std::pair("FeedLength=Custom.30", "FeedLength=Custom.30"),
          std::pair("FeedLength=Custom.1.5cm", "FeedLength=Custom.1.5cm")})
        EXPECT_EQ(checked(printer.get(), QString::fromLatin1(asked)), taken);
}

TEST(SettingsTest, AnUnknownOptionIsNamedWithThoseThatComeClose) {
    const ppd::File printer = test::tapePrinter();
    EXPECT_EQ(checked(printer.get(), QStringLiteral("KvHalfCutt=ON")),
              "The printer has no option “KvHalfCutt”; did you mean KvHalfCut?");
    EXPECT_EQ(checked(printer.get(), QStringLiteral("HalfCut=ON")),
              "The printer has no option “HalfCut”; did you mean KvHalfCut?");
    EXPECT_EQ(checked(printer.get(), QStringLiteral("Perforation=ON")),
              "The printer has no option “Perforation”; “labelcut options” lists those of its "
              "panels.");
    EXPECT_EQ(checked(printer.get(), QStringLiteral("=ON")),
              "The printer has no option “”; “labelcut options” lists those of its panels.");
}

TEST(SettingsTest, AnUnknownChoiceIsNamedWithThoseThatThereAre) {
    const ppd::File printer = test::tapePrinter();
    EXPECT_EQ(checked(printer.get(), QStringLiteral("KvHalfCut=Yes")),
              "The option KvHalfCut has no choice “Yes”; it offers OFF, ON.");
    EXPECT_EQ(checked(printer.get(), QStringLiteral("KvHalfCut=Custom.3")),
              "The option KvHalfCut has no choice “Custom.3”; it offers OFF, ON.");
    EXPECT_EQ(checked(printer.get(), QStringLiteral("KvHalfCut=")),
              "The option KvHalfCut has no choice “”; it offers OFF, ON.");
}

TEST(SettingsTest, ALongListOfChoicesIsCut) {
    ppd::File printer = ppd::openFile(QStringLiteral(LABELCUT_SAMPLES "/roll.ppd"), nullptr);
    ASSERT_TRUE(printer);
    EXPECT_EQ(checked(printer.get(), QStringLiteral("KvCutLabel=100")),
              "The option KvCutLabel has no choice “100”; it offers 1, 2, 3, 4, 5, 6, 7, 8, 9, "
              "10, 11, 12 … 99 (99 in all).");
}

TEST(SettingsTest, ACustomValueOutsideItsLimitsIsRefused) {
    const ppd::File printer = test::tapePrinter();
    for (const char* paper : {"Custom.10x300", "Custom.50x9999", "Custom.50", "Custom.axb",
                              "Custom.50x300parsec", "Custom.-50x300", "Custom."})
        EXPECT_EQ(checked(printer.get(), QStringLiteral("PageSize=") + QLatin1String(paper)),
                  "“" + std::string(paper) +
                      "” is no custom value for PageSize; it takes Custom.WIDTHxHEIGHT in points, "
                      "or with mm, cm or in behind it, 17-102 pt wide and 34-2835 pt high.");
    for (const char* feed : {"Custom.289", "Custom.-1", "Custom.far", "Custom.1parsec", "Custom."})
        EXPECT_EQ(checked(printer.get(), QStringLiteral("FeedLength=") + QLatin1String(feed)),
                  "“" + std::string(feed) +
                      "” is no custom value for FeedLength; it takes Custom.NUMBER from 0 to 288 "
                      "points.");
}

TEST(SettingsTest, AJobSaysPaperPanelsAndWhatWasAsked) {
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::markOption(printer.get(), "FeedLength", "Custom.30"));
    ASSERT_TRUE(ppd::markOption(printer.get(), "KvHalfCut", "ON"));
    const QStringList keywords{QStringLiteral("KvHalfCut"), QStringLiteral("KvMirror"),
                               QStringLiteral("KvGone")};
    const Setting feed{QStringLiteral("FeedLength"), QStringLiteral("Custom.30")};
    const Setting halfCut{QStringLiteral("KvHalfCut"), QStringLiteral("ON")};
    const Settings expected{{QStringLiteral("PageSize"), QStringLiteral("T24")},
                            halfCut,
                            {QStringLiteral("KvMirror"), QStringLiteral("OFF")},
                            feed};
    EXPECT_EQ(jobSettings(printer.get(), keywords, {feed, halfCut}), expected);
}

} // namespace labelcut
