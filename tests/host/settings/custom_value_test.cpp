// Custom values: how they are written, put together and taken apart.
#include "host/settings/custom_value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/support/job_fixtures.h"

namespace labelcut::test {

namespace {

constexpr double kPointsPerMillimetre = 72 / 25.4;
constexpr double kHundredthOfMillimetre = kPointsPerMillimetre / 100;

/// The first size has its height in front; the libraries write the width first all the same.
constexpr char kAsking[] = R"ppd(
*VariablePaperSize: True
*MaxMediaWidth: "200"
*MaxMediaHeight: "20000"
*HWMargins: 0 0 0 0
*CustomPageSize True: "pop pop pop pop pop"
*ParamCustomPageSize Width: 2 points 10 200
*ParamCustomPageSize Height: 1 points 10 20000
*ParamCustomPageSize WidthOffset: 3 points 0 0
*ParamCustomPageSize HeightOffset: 4 points 0 0
*ParamCustomPageSize Orientation: 5 int 0 0
*OpenUI *Feed/Feed: PickOne
*DefaultFeed: None
*Feed None: ""
*CloseUI: *Feed
*CustomFeed True: "pop"
*ParamCustomFeed Length: 1 points 0 20000
*OpenUI *Scale/Scale: PickOne
*DefaultScale: Full
*Scale Full: ""
*CloseUI: *Scale
*CustomScale True: "pop"
*ParamCustomScale Factor: 1 real 0 1000
*OpenUI *Frame/Frame: PickOne
*DefaultFrame: None
*Frame None: ""
*CloseUI: *Frame
*CustomFrame True: "pop pop"
*ParamCustomFrame Width: 1 points 0 72
*ParamCustomFrame Note: 2 string 0 30
)ppd";

std::string marked(const ppd::File& ppd, const char* keyword) {
    return ppd::markedValue(ppd.get(), keyword).value_or(QString()).toStdString();
}

std::string joined(const std::optional<QStringList>& values) {
    return values ? values->join(u'|').toStdString() : "nothing";
}

} // namespace

TEST(CustomFormTest, ALengthIsReadBackToAHundredthOfAMillimetreUpToSevenMetres) {
    const ppd::File ppd = printerWith(kAsking);
    const CustomForm size(ppd.get(), QStringLiteral("PageSize"));
    const CustomForm feed(ppd.get(), QStringLiteral("Feed"));
    std::mt19937 dice(20);
    std::uniform_int_distribution<int> hundredths(400, 700'000);
    for (int i = 0; i < 5000; ++i) {
        const double points = hundredths(dice) * kHundredthOfMillimetre;
        const QString text = ppd::pointsText(points);
        const QString label = size.composed({QStringLiteral("50"), text});
        ASSERT_TRUE(ppd::markOption(ppd.get(), "PageSize", label.toUtf8().constData()));
        ASSERT_EQ(marked(ppd, "PageSize"), label.toStdString());
        const QString length = feed.composed({text});
        ASSERT_TRUE(ppd::markOption(ppd.get(), "Feed", length.toUtf8().constData()));
        ASSERT_EQ(marked(ppd, "Feed"), length.toStdString());
        const double back = feed.takenApart(length)->front().toDouble();
        ASSERT_NEAR(back, points, kHundredthOfMillimetre / 10);
    }
}

TEST(CustomFormTest, ARealNumberIsReadBackAsItWasWritten) {
    const ppd::File ppd = printerWith(kAsking);
    for (const char* number : {"0", "0.1", "1.25", "123.4567", "999.9999", "0.00001"}) {
        const QString choice = QStringLiteral("Custom.") + QLatin1String(number);
        ASSERT_TRUE(ppd::markOption(ppd.get(), "Scale", choice.toUtf8().constData()));
        EXPECT_EQ(marked(ppd, "Scale"), choice.toStdString());
    }
}

TEST(CustomFormTest, ALabelSizeAsksForWidthThenHeightWhateverThePpdsOrder) {
    const ppd::File ppd = printerWith(kAsking);
    const CustomForm form(ppd.get(), QStringLiteral("PageSize"));
    ASSERT_EQ(form.parameters().size(), 2U);
    EXPECT_EQ(form.parameters()[0].name, QStringLiteral("Width"));
    EXPECT_EQ(form.parameters()[1].name, QStringLiteral("Height"));
    EXPECT_EQ(form.composed({QStringLiteral("50"), QStringLiteral("300")}),
              QStringLiteral("Custom.50x300"));
}

TEST(CustomFormTest, WhatIsPutTogetherIsTakenApart) {
    const ppd::File ppd = printerWith(kAsking);
    const CustomForm frame(ppd.get(), QStringLiteral("Frame"));
    for (const char* note : {"", "plain", "two words", "it's", "a=b", "\"a\" b", "'\"\\", "{x}"}) {
        const QStringList values{QStringLiteral("12.5"), QString::fromUtf8(note)};
        EXPECT_EQ(frame.takenApart(frame.composed(values)), values) << note;
    }
}

TEST(CustomFormTest, UnitsAreTakenApartIntoPoints) {
    const ppd::File ppd = printerWith(kAsking);
    const auto apart = [&](const char* keyword, const char* choice) {
        return joined(
            CustomForm(ppd.get(), QLatin1String(keyword)).takenApart(QString::fromUtf8(choice)));
    };
    EXPECT_EQ(apart("PageSize", "Custom.1x2in"), "72|144");
    EXPECT_EQ(apart("PageSize", "custom.25.4X50.8mm"), "72|144");
    EXPECT_EQ(apart("PageSize", "Custom.72x144"), "72|144");
    EXPECT_EQ(apart("Feed", "Custom.2.54cm"), "72");
    EXPECT_EQ(apart("Frame", "{Note=b width=1in}"), "72|b");
    for (const char* choice : {"Letter", "Custom.50", "{Width=1 Height=2}", "Custom"})
        EXPECT_EQ(apart("PageSize", choice), "nothing") << choice;
    EXPECT_EQ(apart("Frame", "Custom.1"), "nothing");
    EXPECT_EQ(apart("Frame", "{Width=1}"), "nothing");
}

TEST(CustomFormTest, NothingIsAskedForWhereNothingCustomIsOffered) {
    const ppd::File ppd = printerWith(kAsking);
    EXPECT_TRUE(CustomForm(ppd.get(), QStringLiteral("NoSuchOption")).parameters().empty());
    EXPECT_TRUE(CustomForm(nullptr, QStringLiteral("Feed")).parameters().empty());
}

} // namespace labelcut::test
