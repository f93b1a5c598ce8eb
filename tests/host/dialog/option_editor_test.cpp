// One option as a field: lengths in the user's unit, bounds, and the way back.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QLabel>
#include <QLocale>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <cmath>

#include "host/dialog/option_editor.h"
#include "host/texts/length.h"
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

/// Options that ask for values of every kind.
constexpr char kAskingOptions[] = R"ppd(
*OpenUI *Passes/Passes: PickOne
*DefaultPasses: One
*Passes One: ""
*CloseUI: *Passes
*CustomPasses True: "pop"
*ParamCustomPasses Count/Count: 1 int 2 1500
*OpenUI *Scale/Scale: PickOne
*DefaultScale: Full
*Scale Full: ""
*CloseUI: *Scale
*CustomScale True: "pop"
*ParamCustomScale Factor/Factor: 1 real 0.1 2.5
*OpenUI *Serial/Serial text: PickOne
*DefaultSerial: None
*Serial None: ""
*CloseUI: *Serial
*CustomSerial True: "pop"
*ParamCustomSerial Words/Words: 1 string 2 5
*OpenUI *Release/Release: PickOne
*DefaultRelease: None
*Release None: ""
*CloseUI: *Release
*CustomRelease True: "pop"
*ParamCustomRelease Secret/Secret: 1 password 4 8
*OpenUI *Frame/Frame: PickOne
*DefaultFrame: None
*Frame None: ""
*CloseUI: *Frame
*CustomFrame True: "pop pop pop"
*ParamCustomFrame Width/Width: 1 points 0 72
*ParamCustomFrame Gap/Gap: 2 real 0 1
*ParamCustomFrame Note/Note: 3 string 0 9
)ppd";

/// One option of a printer that asks for values of every kind.
class AskingEditor {
public:
    explicit AskingEditor(const char* keyword)
        : mKeyword(QLatin1String(keyword)) {
        mModel.adopt(openedPpd(extendedPpd(mHome, kAskingOptions)));
        lookAnew();
    }
    /// Makes the fields anew, as another page's would be.
    void lookAnew() {
        mPage = std::make_unique<QWidget>();
        mEditor = new OptionEditor(mModel, mKeyword, *mPage);
        mPage->setLayout(mEditor);
        mPage->show();
    }
    void chooseCustom() {
        QComboBox& choices = *mEditor->choices();
        choices.setCurrentIndex(choices.findData(QStringLiteral("Custom")));
        Q_EMIT choices.activated(choices.currentIndex());
    }
    QLineEdit& field(int index = 0) const { return *mPage->findChildren<QLineEdit*>().at(index); }
    void edit(const char* text, int index = 0) const {
        field(index).setText(QString::fromUtf8(text));
        Q_EMIT field(index).editingFinished();
    }
    std::string choice() const { return mModel.choice(mKeyword).value_or(QString()).toStdString(); }
    std::string problem() const { return mEditor->problem().toStdString(); }
    std::string shown(int index = 0) const { return field(index).text().toStdString(); }
    bool hasLabel(const char* text) const {
        return std::ranges::any_of(mPage->findChildren<QLabel*>(), [&](const QLabel* label) {
            return label->isVisible() && label->text() == QString::fromUtf8(text);
        });
    }
    JobModel& model() { return mModel; }
    OptionEditor& editor() { return *mEditor; }
    QWidget& page() { return *mPage; }

private:
    Offscreen mOffscreen;
    PrivateHome mHome;
    JobModel mModel;
    QString mKeyword;
    std::unique_ptr<QWidget> mPage;
    OptionEditor* mEditor = nullptr;
};

/// Points in a hundredth of a millimetre.
constexpr double kHundredth = 72 / 2540.0;

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
    EXPECT_NEAR(points("20 MM"), 20 * 100 * kHundredth, 0.001);
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

TEST(LengthTest, InAFieldItIsExactToAHundredthOfAMillimetre) {
    {
        const Country germany("de_DE");
        EXPECT_EQ(lengthToEdit(56.693).toStdString(), "20 mm");
        EXPECT_EQ(lengthToEdit(5000.13 * 72 / 25.4).toStdString(), "5000,13 mm");
    }
    const Country america("en_US");
    EXPECT_EQ(lengthToEdit(56.693).toStdString(), "0.7874 in");
    EXPECT_EQ(lengthToEdit(90).toStdString(), "1.25 in");
    EXPECT_EQ(lengthToEdit(14173.228).toStdString(), "196.8504 in");
}

TEST(OptionEditorTest, EveryBoundOfACustomValueCanBeChosen) {
    for (const auto& [country, largest] :
         {std::pair("de_DE", "Custom.102x2834.646"), std::pair("en_US", "Custom.102x2835")}) {
        const Country here(country);
        JobModel model;
        model.adopt(openedPpd(kTapePpd));
        QWidget page;
        auto& editor = *new OptionEditor(model, QStringLiteral("PageSize"), page);
        page.setLayout(&editor);
        editor.choices()->setCurrentIndex(editor.choices()->findData(QStringLiteral("Custom")));
        Q_EMIT editor.choices()->activated(editor.choices()->currentIndex());
        EXPECT_EQ(editor.problem().toStdString(), "") << country << ": the smallest";
        EXPECT_EQ(model.choice(QStringLiteral("PageSize"))->toStdString(), "Custom.17x34");
        const auto fields = page.findChildren<QLineEdit*>();
        ASSERT_EQ(fields.size(), 2);
        fields[0]->setText(lengthForUser(102));
        fields[1]->setText(lengthForUser(2835));
        Q_EMIT fields[1]->editingFinished();
        EXPECT_EQ(editor.problem().toStdString(), "") << country << ": the largest";
        // A printer has 36 mm in whole points; 1000 mm are within its bounds, and sent as they are.
        EXPECT_EQ(model.choice(QStringLiteral("PageSize"))->toStdString(), std::string(largest));
        fields[0]->setText(lengthForUser(110));
        Q_EMIT fields[0]->editingFinished();
        EXPECT_NE(editor.problem().toStdString(), "") << country << ": beyond";
        EXPECT_EQ(model.choice(QStringLiteral("PageSize"))->toStdString(), std::string(largest));
    }
}

struct CustomRow {
    const char* country;
    const char* keyword;
    const char* typed;
    const char* choice;
    /// How a page shows it that is made afterwards; null: as it was typed.
    const char* shown = nullptr;
};

class CustomValueTest : public testing::TestWithParam<CustomRow> {};

TEST_P(CustomValueTest, IsChosenAsTypedAndShownAsTheCountryWritesIt) {
    const CustomRow& row = GetParam();
    const Country here(row.country);
    AskingEditor asking(row.keyword);
    asking.chooseCustom();
    asking.edit(row.typed);
    EXPECT_EQ(asking.problem(), "");
    EXPECT_EQ(asking.choice(), row.choice);
    asking.lookAnew();
    EXPECT_EQ(asking.shown(), row.shown ? row.shown : row.typed);
    EXPECT_TRUE(asking.field().isVisible());
    asking.edit(asking.shown().c_str());
    EXPECT_EQ(asking.problem(), "");
    EXPECT_EQ(asking.choice(), row.choice) << "read back";
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CustomValueTest,
    testing::Values(CustomRow{"en_US", "Passes", "2", "Custom.2"},
                    CustomRow{"en_US", "Passes", " 7 ", "Custom.7", "7"},
                    CustomRow{"en_US", "Passes", "1,500", "Custom.1500", "1500"},
                    CustomRow{"de_DE", "Passes", "1.500", "Custom.1500", "1500"},
                    CustomRow{"en_US", "Scale", "1.25", "Custom.1.25"},
                    CustomRow{"de_DE", "Scale", "1,25", "Custom.1.25"},
                    CustomRow{"de_DE", "Scale", "0,1", "Custom.0.1"},
                    CustomRow{"de_DE", "Scale", "2,5", "Custom.2.5"},
                    CustomRow{"fr_FR", "Scale", " 2 ", "Custom.2", "2"},
                    CustomRow{"en_US", "Serial", "ab", "Custom.ab"},
                    CustomRow{"en_US", "Serial", "a.b c", "Custom.a.b c"},
                    CustomRow{"ja_JP", "Serial", "連番🏷🏷🏷", "Custom.連番🏷🏷🏷"},
                    CustomRow{"en_US", "Release", "1234", "Custom.1234"}));

struct RefusedRow {
    const char* country;
    const char* keyword;
    const char* typed;
    const char* sentence;
};

class RefusedValueTest : public testing::TestWithParam<RefusedRow> {};

TEST_P(RefusedValueTest, ChangesNothingAndIsToldWithItsBounds) {
    const RefusedRow& row = GetParam();
    const Country here(row.country);
    AskingEditor asking(row.keyword);
    asking.chooseCustom();
    const std::string before = asking.choice();
    asking.edit(row.typed);
    EXPECT_EQ(asking.problem(), row.sentence);
    EXPECT_EQ(asking.choice(), before);
    EXPECT_EQ(asking.shown(), row.typed) << "stays to be put right";
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RefusedValueTest,
    testing::Values(
        RefusedRow{"en_US", "Passes", "1", "“Passes” takes values from 2 to 1,500."},
        RefusedRow{"de_DE", "Passes", "1501", "“Passes” takes values from 2 to 1.500."},
        RefusedRow{"en_US", "Passes", "2.5", "“Passes” takes values from 2 to 1,500."},
        RefusedRow{"en_US", "Passes", "", "“Passes” takes values from 2 to 1,500."},
        RefusedRow{"en_US", "Scale", "0.05", "“Scale” takes values from 0.1 to 2.5."},
        RefusedRow{"de_DE", "Scale", "2,51", "“Scale” takes values from 0,1 to 2,5."},
        RefusedRow{"de_DE", "Scale", "nan", "“Scale” takes values from 0,1 to 2,5."},
        RefusedRow{"en_US", "Scale", "much", "“Scale” takes values from 0.1 to 2.5."},
        RefusedRow{"en_US", "Serial", "a", "“Serial text” takes values from 2 to 5 characters."},
        RefusedRow{"en_US", "Serial", "äöüßéè",
                   "“Serial text” takes values from 2 to 5 characters."},
        RefusedRow{"en_US", "Release", "123", "“Release” takes values from 4 to 8 characters."}));

TEST(OptionEditorTest, WhatWasRefusedIsOverOnceSomethingElseIsChosenElsewhere) {
    AskingEditor asking("Passes");
    asking.chooseCustom();
    asking.edit("1");
    EXPECT_NE(asking.problem(), "");
    ASSERT_TRUE(asking.model().choose(QStringLiteral("Passes"), QStringLiteral("One")));
    asking.editor().refresh();
    EXPECT_EQ(asking.problem(), "");
    EXPECT_FALSE(asking.field().isVisible());
}

TEST(OptionEditorTest, ATextBeginsEmptyAndANumberWithItsSmallest) {
    for (const auto& [keyword, start] :
         {std::pair("Passes", "2"), std::pair("Scale", "0.1"), std::pair("Serial", "")}) {
        AskingEditor asking(keyword);
        asking.chooseCustom();
        EXPECT_EQ(asking.shown(), start) << keyword;
    }
}

TEST(OptionEditorTest, OnlyAPasswordIsHidden) {
    EXPECT_EQ(AskingEditor("Release").field().echoMode(), QLineEdit::Password);
    EXPECT_EQ(AskingEditor("Serial").field().echoMode(), QLineEdit::Normal);
}

TEST(OptionEditorTest, SeveralValuesAreOneChoice) {
    const Country germany("de_DE");
    AskingEditor asking("Frame");
    EXPECT_FALSE(asking.field(0).isVisible()) << "nothing is asked before Custom is chosen";
    asking.chooseCustom();
    EXPECT_TRUE(asking.field(2).isVisible());
    for (const char* label : {"Width", "Gap", "Note"})
        EXPECT_TRUE(asking.hasLabel(label)) << label;
    asking.edit("25,4 mm", 0);
    asking.edit("0,5", 1);
    EXPECT_EQ(asking.choice(), "{Width=72 Gap=0.5 Note=}");
    for (const auto& [note, written] :
         {std::pair("plain", "plain"), std::pair("two words", "'two words'"),
          std::pair("it's", "\"it's\""), std::pair("a=b", "a=b"), std::pair("", ""),
          std::pair("\"a\" b", "'\"a\" b'"), std::pair("'\"\\", "'\\'\"\\\\'")}) {
        asking.edit(note, 2);
        EXPECT_EQ(asking.problem(), "") << note;
        EXPECT_EQ(asking.choice(), std::string("{Width=72 Gap=0.5 Note=") + written + '}');
        asking.lookAnew();
        EXPECT_EQ(asking.shown(0), "25,4 mm");
        EXPECT_EQ(asking.shown(1), "0,5");
        EXPECT_EQ(asking.shown(2), note);
    }
    const std::string before = asking.choice();
    asking.edit("much", 1);
    EXPECT_EQ(asking.problem(), "“Frame” takes values from 0 to 1.")
        << "of the one that is refused";
    EXPECT_EQ(asking.choice(), before);
    asking.edit("1", 1);
    EXPECT_EQ(asking.problem(), "");
    EXPECT_EQ(asking.choice(), "{Width=72 Gap=1 Note='\\'\"\\\\'}");
}

TEST(OptionEditorTest, WhatIsTypedIsWhatIsSentWhateverTheCountryShows) {
    const Country america("en_US");
    AskingEditor asking("Frame");
    asking.chooseCustom();
    asking.edit("20mm", 0);
    EXPECT_EQ(asking.choice(), "{Width=56.693 Gap=0 Note=}");
    EXPECT_EQ(asking.shown(0), "0.7874 in");
    Q_EMIT asking.field(0).editingFinished();
    asking.edit("b", 2);
    EXPECT_EQ(asking.choice(), "{Width=56.693 Gap=0 Note=b}") << "not read from its rounded text";
    asking.lookAnew();
    asking.edit("c", 2);
    EXPECT_EQ(asking.choice(), "{Width=56.693 Gap=0 Note=c}");
}

TEST(OptionEditorTest, EveryLengthWithinTheBoundsIsSentToAHundredthOfAMillimetre) {
    for (const char* country : {"en_US", "de_DE"}) {
        const Country here(country);
        AskingEditor asking("Frame");
        asking.chooseCustom();
        for (int hundredths = 0; hundredths <= 2540; ++hundredths) {
            const QString typed =
                QLocale().toString(hundredths / 100.0, 'f', 2) + QStringLiteral(" mm");
            asking.edit(typed.toUtf8().constData(), 0);
            ASSERT_EQ(asking.problem(), "") << typed.toStdString();
            const CustomForm form(asking.model().ppd(), QStringLiteral("Frame"));
            const auto sent = form.takenApart(QString::fromStdString(asking.choice()));
            ASSERT_TRUE(sent);
            ASSERT_NEAR(sent->front().toDouble(), hundredths * kHundredth, kHundredth / 10);
        }
    }
}

TEST(OptionEditorTest, AValueThatWasNotTypedHereStaysAsItIs) {
    const Country germany("de_DE");
    AskingEditor asking("Frame");
    ASSERT_TRUE(
        asking.model().choose(QStringLiteral("Frame"), QStringLiteral("{Width=57 Gap=0.5 Note=}")));
    asking.editor().refresh();
    EXPECT_EQ(asking.shown(0), "20 mm") << "as the printer means it";
    Q_EMIT asking.field(0).editingFinished();
    EXPECT_EQ(asking.choice(), "{Width=57 Gap=0.5 Note=}");
}

TEST(OptionEditorTest, TheBoundsGoAsSoonAsWhatIsTypedIsRight) {
    const Country america("en_US");
    AskingEditor asking("Passes");
    asking.chooseCustom();
    asking.edit("1");
    EXPECT_TRUE(asking.hasLabel("2 to 1,500"));
    int changes = 0;
    QObject::connect(&asking.editor(), &OptionEditor::problemChanged, [&] { ++changes; });
    asking.field().setFocus();
    QTest::keyClicks(&asking.field(), QStringLiteral("7"));
    EXPECT_EQ(asking.shown(), "17");
    EXPECT_FALSE(asking.hasLabel("2 to 1,500"));
    EXPECT_EQ(asking.problem(), "");
    EXPECT_GT(changes, 0);
    EXPECT_EQ(asking.choice(), "Custom.2") << "taken when the field is left";
    Q_EMIT asking.field().editingFinished();
    EXPECT_EQ(asking.choice(), "Custom.17");
    EXPECT_FALSE(asking.hasLabel("2 to 1,500"));
}

TEST(OptionEditorTest, ASteppingKeyGoesOnThroughTheChoicesAndOnlyThePickedCustomTakesTheFocus) {
    AskingEditor asking("Passes");
    asking.page().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&asking.page()));
    QComboBox& choices = *asking.editor().choices();
    choices.setFocus();
    QTest::keyClick(&choices, Qt::Key_Down);
    EXPECT_EQ(asking.choice(), "Custom.2");
    EXPECT_TRUE(choices.hasFocus());
    QTest::keyClick(&choices, Qt::Key_Up);
    EXPECT_EQ(asking.choice(), "One");
    choose(choices, QStringLiteral("Custom"));
    EXPECT_EQ(asking.choice(), "Custom.2");
    EXPECT_TRUE(asking.field().hasFocus());
}

TEST(OptionEditorTest, TheFocusNeverLeavesWithAPartThatIsHidden) {
    AskingEditor asking("Passes");
    asking.page().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&asking.page()));
    QComboBox& choices = *asking.editor().choices();
    choose(choices, QStringLiteral("Custom"));
    ASSERT_TRUE(asking.field().hasFocus());
    ASSERT_TRUE(asking.model().choose(QStringLiteral("Passes"), QStringLiteral("One")));
    asking.editor().refresh();
    EXPECT_TRUE(choices.hasFocus()) << "the field went";
    asking.chooseCustom();
    auto* back = asking.page().findChild<QToolButton*>();
    back->setFocus();
    QTest::keyClick(back, Qt::Key_Space);
    EXPECT_EQ(asking.choice(), "One");
    EXPECT_TRUE(choices.hasFocus()) << "the button went";
}

} // namespace labelcut::test
