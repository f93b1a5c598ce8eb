// One option as a field: lengths in the user's unit, bounds, and the way back.
#include <gtest/gtest.h>

#include <QLocale>

#include <cmath>

#include "host/dialog/length.h"
#include "host/dialog/option_editor.h"
#include "tests/host/dialog/dialog_fixtures.h"

namespace labelcut::test {

namespace {

/// While one lives, numbers and units are those of another country.
class Country {
public:
    explicit Country(const char* name) { QLocale::setDefault(QLocale(QLatin1String(name))); }
    ~Country() { QLocale::setDefault(mBefore); }
    Country(const Country&) = delete;
    Country& operator=(const Country&) = delete;

private:
    QLocale mBefore;
};

double points(const char* text) {
    return pointsFromUser(QString::fromUtf8(text)).value_or(-1);
}

} // namespace

TEST(LengthTest, IsShownInTheCountrysUnit) {
    {
        const Country germany("de_DE");
        EXPECT_EQ(lengthForUser(288).toStdString(), "101,6 mm");
        EXPECT_EQ(lengthForUser(0).toStdString(), "0 mm");
    }
    const Country america("en_US");
    EXPECT_EQ(lengthForUser(72).toStdString(), "1 in");
    EXPECT_EQ(lengthForUser(90).toStdString(), "1.25 in");
}

TEST(LengthTest, AWholeMillimetreThatAPpdRoundedToPointsIsShownAsThat) {
    const Country germany("de_DE");
    for (int millimetres = 1; millimetres <= 1000; ++millimetres) {
        const double rounded = std::round(millimetres * 72 / 25.4);
        EXPECT_EQ(lengthForUser(rounded).toStdString(), std::to_string(millimetres) + " mm");
    }
}

TEST(LengthTest, IsReadInAnyUnit) {
    const Country germany("de_DE");
    EXPECT_NEAR(points("25,4 mm"), 72, 0.001);
    EXPECT_NEAR(points("25,4"), 72, 0.001) << "the country's unit";
    EXPECT_NEAR(points("2.54cm"), 72, 0.001) << "a point is understood as well";
    EXPECT_NEAR(points(" 1 in "), 72, 0.001);
    EXPECT_NEAR(points("72pt"), 72, 0.001);
    for (const char* nonsense : {"", "mm", "1 km", "-5 mm", "1e3 mm", "ten"})
        EXPECT_EQ(points(nonsense), -1) << nonsense;
}

TEST(LengthTest, WhatIsShownIsReadBack) {
    for (const char* country : {"de_DE", "en_US", "fr_FR", "ja_JP"}) {
        const Country here(country);
        for (int value = 0; value < 3000; value += 7)
            EXPECT_NEAR(pointsFromUser(lengthForUser(value)).value_or(-1), value, 0.51) << country;
    }
}

TEST(OptionEditorTest, EveryBoundOfACustomValueCanBeChosen) {
    for (const char* country : {"de_DE", "en_US"}) {
        const Country here(country);
        JobModel model(plugins(), hostSystem());
        PrinterChoice printer;
        printer.ppdPath = kTapePpd;
        model.openPrinter(printer, ppd::openFile(kTapePpd, nullptr), kTapePpd, {});
        OptionEditor editor(model, QStringLiteral("PageSize"));
        editor.choices()->setCurrentIndex(editor.choices()->findData(QStringLiteral("Custom")));
        Q_EMIT editor.choices()->activated(editor.choices()->currentIndex());
        EXPECT_EQ(editor.problem().toStdString(), "") << country << ": the smallest";
        EXPECT_EQ(model.choice(QStringLiteral("PageSize"))->toStdString(), "Custom.17x34");
        const auto fields = editor.findChildren<QLineEdit*>();
        ASSERT_EQ(fields.size(), 2);
        fields[0]->setText(lengthForUser(102));
        fields[1]->setText(lengthForUser(2835));
        Q_EMIT fields[1]->editingFinished();
        EXPECT_EQ(editor.problem().toStdString(), "") << country << ": the largest";
        EXPECT_EQ(model.choice(QStringLiteral("PageSize"))->toStdString(), "Custom.102x2835");
        fields[0]->setText(lengthForUser(110));
        Q_EMIT fields[0]->editingFinished();
        EXPECT_NE(editor.problem().toStdString(), "") << country << ": beyond";
        EXPECT_EQ(model.choice(QStringLiteral("PageSize"))->toStdString(), "Custom.102x2835");
    }
}

} // namespace labelcut::test
