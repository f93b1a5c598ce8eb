// What a PPD makes of kept choices.
#include "host/settings/setting_match.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/preset_fixtures.h"

namespace labelcut {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Reason = MissingChoice::Reason;

namespace {

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

Setting setting(const char* keyword, const char* choice) {
    return {text(keyword), text(choice)};
}

} // namespace

void PrintTo(const MissingChoice& missing, std::ostream* out) {
    *out << missing.keyword.toStdString() << '=' << missing.choice.toStdString() << " ("
         << static_cast<int>(missing.reason) << ')';
}

namespace ppd {
void PrintTo(const Setting& one, std::ostream* out) {
    *out << one.keyword.toStdString() << '=' << one.choice.toStdString();
}
} // namespace ppd

TEST(SettingMatchTest, AllThatThePrinterHasIsApplied) {
    const ppd::File ppd = test::tapePrinter();
    const SettingMatch match = matchSettings(ppd.get(), test::samplePreset(text("a")).settings());
    EXPECT_THAT(match.applicable,
                ElementsAre(setting("PageSize", "DC12"), setting("KvHalfCut", "ON"),
                            setting("KvMargin", "Custom.7")));
    EXPECT_THAT(match.missing, IsEmpty());
    for (const Setting& one : match.applicable)
        EXPECT_TRUE(ppd::markOption(ppd.get(), one.keyword.toUtf8().constData(),
                                    one.choice.toUtf8().constData()));
    EXPECT_EQ(ppd::markedValue(ppd.get(), "KvMargin"), text("Custom.7"));
    EXPECT_EQ(ppd::markedValue(ppd.get(), "PageSize"), text("DC12"));
}

TEST(SettingMatchTest, NoMarkChanges) {
    const ppd::File ppd = test::tapePrinter();
    matchSettings(ppd.get(), test::samplePreset(text("a")).settings());
    EXPECT_EQ(ppd::markedValue(ppd.get(), "PageSize"), text("DC24"));
    EXPECT_EQ(ppd::markedValue(ppd.get(), "KvHalfCut"), text("OFF"));
    EXPECT_EQ(ppd::markedValue(ppd.get(), "KvMargin"), text("None"));
}

TEST(SettingMatchTest, WhatThePrinterLacksIsTold) {
    const ppd::File ppd = test::tapePrinter();
    Preset preset = test::samplePreset(text("a"));
    preset.pageSize = text("DC99");
    preset.options.insert(text("KvGone"), text("ON"));
    preset.options.insert(text("KvCutLabel"), text("3"));
    const SettingMatch match = matchSettings(ppd.get(), preset.settings());
    EXPECT_THAT(match.missing,
                ElementsAre(MissingChoice{text("PageSize"), text("DC99"), Reason::NoSuchChoice},
                            MissingChoice{text("KvCutLabel"), text("3"), Reason::NoSuchChoice},
                            MissingChoice{text("KvGone"), text("ON"), Reason::NoSuchOption}));
    EXPECT_EQ(match.applicable.size(), 2U);
    const QStringList sentences = describe(ppd.get(), match.missing);
    ASSERT_EQ(sentences.size(), 3);
    EXPECT_THAT(sentences.at(0).toStdString(), HasSubstr("“Tape” of this printer"));
    EXPECT_THAT(sentences.at(1).toStdString(), HasSubstr("KvCutLabel=3"));
    EXPECT_THAT(sentences.at(2).toStdString(), HasSubstr("no option “KvGone”"));
}

TEST(SettingMatchTest, WithoutAPpdEverythingIsMissing) {
    const SettingMatch match = matchSettings(nullptr, test::samplePreset(text("a")).settings());
    EXPECT_THAT(match.applicable, IsEmpty());
    EXPECT_EQ(match.missing.size(), 3U);
}

TEST(SettingMatchTest, SpellingIsThePrintersAndThePageSizeComesFirst) {
    const ppd::File ppd = test::tapePrinter();
    const SettingMatch match =
        matchSettings(ppd.get(), {setting("kvhalfcut", "on"), setting("pagesize", "dc12")});
    EXPECT_THAT(match.applicable,
                ElementsAre(setting("PageSize", "DC12"), setting("KvHalfCut", "ON")));
}

struct CustomRow {
    const char* keyword;
    const char* choice;
    bool isGood;
};

class CustomValueTest : public testing::TestWithParam<CustomRow> {};

TEST_P(CustomValueTest, StaysWithinThePrintersBounds) {
    const ppd::File ppd = test::tapePrinter();
    const auto [keyword, choice, isGood] = GetParam();
    const SettingMatch match = matchSettings(ppd.get(), {setting(keyword, choice)});
    if (isGood) {
        EXPECT_THAT(match.applicable, ElementsAre(setting(keyword, choice)));
        EXPECT_TRUE(ppd::markOption(ppd.get(), keyword, choice));
    } else {
        ASSERT_EQ(match.missing.size(), 1U) << keyword << '=' << choice;
        EXPECT_NE(match.missing.front().reason, Reason::NoSuchOption);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CustomValueTest,
    testing::Values(
        CustomRow{"PageSize", "Custom.50x500", true},
        CustomRow{"PageSize", "Custom.20x300mm", true},
        CustomRow{"PageSize", "Custom.24x352.8mm", true}, // the limits in rounded millimetres
        CustomRow{"PageSize", "Custom.2x30cm", true}, CustomRow{"PageSize", "Custom.0.5x5in", true},
        CustomRow{"PageSize", "Custom.50x5000", false},
        CustomRow{"PageSize", "Custom.5x500", false}, CustomRow{"PageSize", "Custom.500x50", false},
        CustomRow{"PageSize", "Custom.50", false}, CustomRow{"PageSize", "Custom.", false},
        CustomRow{"PageSize", "Custom.axb", false}, CustomRow{"PageSize", "Custom.50x500km", false},
        CustomRow{"PageSize", "{a=1}", false}, CustomRow{"KvMargin", "Custom.0", true},
        CustomRow{"KvMargin", "Custom.50", true}, CustomRow{"KvMargin", "Custom.51", false},
        CustomRow{"KvMargin", "Custom.-1", false}, CustomRow{"KvMargin", "Custom.x", false},
        CustomRow{"KvMargin", "Custom.1.5", false}, CustomRow{"KvMargin", "{Amount=7}", true},
        CustomRow{"KvMargin", "{Other=7}", false}, CustomRow{"KvText", "Custom.ab", true},
        CustomRow{"KvText", "Custom.äöüßé", true}, CustomRow{"KvText", "Custom.a", false},
        CustomRow{"KvText", "Custom.abcdef", false},
        CustomRow{"KvFrame", "{Width=3 Gap=0.5}", true},
        CustomRow{"KvFrame", "{gap=1 width=2mm}", true}, CustomRow{"KvFrame", "{Width=3}", false},
        CustomRow{"KvFrame", "{Width=30 Gap=1}", false},
        CustomRow{"KvFrame", "{Width=3 Gap=1 More=1}", false},
        CustomRow{"KvFrame", "{Width=3 Gap=1", false}, CustomRow{"KvFrame", "Custom.3", false},
        CustomRow{"KvHalfCut", "Custom.3", false}, CustomRow{"KvHalfCut", "{a=1}", false}));

} // namespace labelcut
