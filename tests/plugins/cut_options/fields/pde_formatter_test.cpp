#include "plugins/cut_options/fields/pde_formatter.h"

#include "tests/plugins/cut_options/fields/refusals.h"

#include <gtest/gtest.h>

#include <limits>

using namespace labelcut;
using labelcut::test::append;
using labelcut::test::insertInto;
using labelcut::test::Refusals;

namespace {

const QStringList kNoRefusal;

std::string name(const std::optional<QString>& text) {
    return text ? text->toStdString() : "nothing";
}

// ---- initialisers and accessors

TEST(PDEFormatterInit, StartsWithThePlaceholderAndNoStyle) {
    const auto formatter = PDEFormatter::init();
    EXPECT_EQ(name(formatter->formatString()), "%@");
    EXPECT_EQ(formatter->textStyle(), 0);
    EXPECT_EQ(formatter->maxLength(), 0);
    EXPECT_EQ(formatter->maxValue(), 0);
    EXPECT_EQ(formatter->minValue(), 0);
    EXPECT_FALSE(formatter->isValidityMaxValue());
    EXPECT_FALSE(formatter->isValidityMinValue());
    EXPECT_FALSE(formatter->notificationObject().isValid());
    EXPECT_FALSE(formatter->calendarDate());
    EXPECT_FALSE(formatter->calendarLocale());
    EXPECT_FALSE(formatter->isInvalidCharacter(QStringLiteral("x")));
}

TEST(PDEFormatterInit, TakesStyleAndFormat) {
    EXPECT_EQ(PDEFormatter::initWithStyle(-7)->textStyle(), -7);
    EXPECT_EQ(name(PDEFormatter::initWithStyle(2)->formatString()), "%@");
    EXPECT_EQ(name(PDEFormatter::initWithFormatString(QStringLiteral("%d"))->formatString()), "%d");
    EXPECT_EQ(PDEFormatter::initWithFormatString(QStringLiteral("%d"))->textStyle(), 0);
    EXPECT_EQ(name(PDEFormatter::initWithFormatString(std::nullopt)->formatString()), "%@");
    const auto both = PDEFormatter::initWithFormatString(QStringLiteral("%d mm"), 4);
    EXPECT_EQ(name(both->formatString()), "%d mm");
    EXPECT_EQ(both->textStyle(), 4);
}

TEST(PDEFormatterInit, LeavesTheFormatOfTheDateStyleAbsent) {
    const QDateTime date(QDate(2024, 2, 29), QTime(12, 0));
    const QVariantMap locale{{QStringLiteral("LocaleName"), QStringLiteral("de_DE")}};
    const auto formatter = PDEFormatter::initWithCalendarDate(date, locale);
    EXPECT_EQ(formatter->textStyle(), 5);
    EXPECT_FALSE(formatter->formatString());
    EXPECT_EQ(formatter->calendarDate(), date);
    EXPECT_EQ(formatter->calendarLocale(), locale);
    formatter->setCalendarDate(std::nullopt);
    EXPECT_FALSE(formatter->calendarDate());
}

TEST(PDEFormatterAccessors, SetThePlaceholderWhenNoFormatIsGiven) {
    const auto formatter = PDEFormatter::initWithFormatString(QStringLiteral("%d"));
    formatter->setFormatString(std::nullopt);
    EXPECT_EQ(name(formatter->formatString()), "%@");
    formatter->setFormatString(QStringLiteral(""));
    EXPECT_EQ(name(formatter->formatString()), "");
}

TEST(PDEFormatterAccessors, SwitchACheckOnWithItsBound) {
    const auto formatter = PDEFormatter::init();
    formatter->setMaxValue(9);
    EXPECT_TRUE(formatter->isValidityMaxValue());
    EXPECT_FALSE(formatter->isValidityMinValue());
    formatter->setMinValue(-1);
    EXPECT_TRUE(formatter->isValidityMinValue());
    formatter->setValidityMaxValue(false);
    EXPECT_FALSE(formatter->isValidityMaxValue());
    EXPECT_EQ(formatter->maxValue(), 9);
    EXPECT_EQ(formatter->minValue(), -1);
}

TEST(PDEFormatterAccessors, ForgetANotificationObjectThatIsGone) {
    const auto formatter = PDEFormatter::init();
    {
        QObject owner;
        formatter->setNotificationObject(QVariant::fromValue(&owner));
        EXPECT_EQ(formatter->notificationObject().value<QObject*>(), &owner);
    }
    EXPECT_FALSE(formatter->notificationObject().isValid());
    formatter->setNotificationObject(QStringLiteral("text"));
    EXPECT_EQ(formatter->notificationObject().toString(), QStringLiteral("text"));
    formatter->setNotificationObject({});
    EXPECT_FALSE(formatter->notificationObject().isValid());
}

TEST(PDEFormatterInvalidCharacters, AreComparedAsWholesAndWithCase) {
    const auto formatter = PDEFormatter::init();
    formatter->addInvalidCharacter(QStringLiteral("ab"));
    EXPECT_TRUE(formatter->isInvalidCharacter(QStringLiteral("ab")));
    EXPECT_FALSE(formatter->isInvalidCharacter(QStringLiteral("a")));
    EXPECT_FALSE(formatter->isInvalidCharacter(QStringLiteral("AB")));
    EXPECT_FALSE(formatter->isInvalidCharacter(QStringLiteral("abc")));
    EXPECT_FALSE(formatter->isInvalidCharacter(std::nullopt));
}

TEST(PDEFormatterInvalidCharacters, RemoveTakesEveryEqualEntry) {
    const auto formatter = PDEFormatter::init();
    for (const char* entry : {"x", "y", "x"})
        formatter->addInvalidCharacter(QLatin1String(entry));
    formatter->removeInvalidCharacter(QStringLiteral("z"));
    formatter->removeInvalidCharacter(std::nullopt);
    EXPECT_TRUE(formatter->isInvalidCharacter(QStringLiteral("x")));
    formatter->removeInvalidCharacter(QStringLiteral("x"));
    EXPECT_FALSE(formatter->isInvalidCharacter(QStringLiteral("x")));
    EXPECT_TRUE(formatter->isInvalidCharacter(QStringLiteral("y")));
}

TEST(PDEFormatterInvalidCharacters, IgnoreNothingWhenAdding) {
    const auto formatter = PDEFormatter::init();
    formatter->addInvalidCharacter(std::nullopt);
    EXPECT_FALSE(formatter->isInvalidCharacter(QStringLiteral("")));
    EXPECT_FALSE(formatter->isInvalidCharacter(std::nullopt));
}

// ---- conversions

TEST(PDEFormatterConversion, FillsThePlaceholderWithTheObject) {
    const auto formatter = PDEFormatter::initWithFormatString(QStringLiteral("No. %@"), 2);
    EXPECT_EQ(name(formatter->stringForObjectValue(QStringLiteral("007"))), "No. 007");
    EXPECT_EQ(name(formatter->stringForObjectValue(12)), "No. 12");
    EXPECT_EQ(name(formatter->stringForObjectValue({})), "No. (null)");
}

TEST(PDEFormatterConversion, FillsAnIntegerFormatWithTheIntegerValueInStyles2And4) {
    for (const int style : {2, 4}) {
        const auto formatter = PDEFormatter::initWithFormatString(QStringLiteral("%03d mm"), style);
        EXPECT_EQ(name(formatter->stringForObjectValue(QStringLiteral(" 7 labels"))), "007 mm");
        EXPECT_EQ(name(formatter->stringForObjectValue(QStringLiteral("1.5"))), "001 mm");
        EXPECT_EQ(name(formatter->stringForObjectValue(QStringLiteral("none"))), "000 mm");
        EXPECT_EQ(name(formatter->stringForObjectValue(3.9)), "003 mm");
    }
}

TEST(PDEFormatterConversion, SaturatesIntegerValues) {
    const auto formatter = PDEFormatter::initWithFormatString(QStringLiteral("%d"), 2);
    EXPECT_EQ(name(formatter->stringForObjectValue(1e99)), "2147483647");
    EXPECT_EQ(name(formatter->stringForObjectValue(QStringLiteral("-99999999999"))), "-2147483648");
    EXPECT_EQ(name(formatter->stringForObjectValue(std::numeric_limits<double>::quiet_NaN())), "0");
}

TEST(PDEFormatterConversion, GivesOtherStylesTheObjectItselfWhateverTheFormat) {
    const auto formatter = PDEFormatter::initWithFormatString(QStringLiteral("%s"), 6);
    EXPECT_EQ(name(formatter->stringForObjectValue(QStringLiteral("abc"))), "abc");
}

TEST(PDEFormatterConversion, ShowsTheDateAndIgnoresTheObject) {
    const QDateTime date(QDate(2024, 2, 29), QTime(9, 5));
    const auto formatter = PDEFormatter::initWithCalendarDate(
        date, QVariantMap{{QStringLiteral("LocaleName"), QStringLiteral("de_DE")}});
    formatter->setFormatString(QStringLiteral("%d. %B %Y"));
    EXPECT_EQ(name(formatter->stringForObjectValue(QStringLiteral("ignored"))), "29. Februar 2024");
    QVariant object;
    EXPECT_TRUE(formatter->getObjectValue(&object, QStringLiteral("ignored"), nullptr));
    EXPECT_EQ(object.toString(), QStringLiteral("29. Februar 2024"));
}

TEST(PDEFormatterConversion, FallsBackToTheFormatInTheDateStyleWithoutADate) {
    const auto formatter = PDEFormatter::initWithStyle(5);
    EXPECT_EQ(name(formatter->stringForObjectValue(QStringLiteral("text"))), "text");
}

TEST(PDEFormatterConversion, PassesOnAMissingFormat) {
    const auto formatter = PDEFormatter::initWithCalendarDate(std::nullopt, std::nullopt);
    EXPECT_FALSE(formatter->stringForObjectValue(QStringLiteral("text")));
    QVariant object(7);
    EXPECT_TRUE(formatter->getObjectValue(&object, QStringLiteral("text"), nullptr));
    EXPECT_FALSE(object.isValid());
}

TEST(PDEFormatterConversion, AlwaysMakesATextOfATextAndNeverSetsAnError) {
    const auto formatter = PDEFormatter::initWithFormatString(QStringLiteral("%d"), 2);
    QVariant object;
    QString error = QStringLiteral("untouched");
    EXPECT_TRUE(formatter->getObjectValue(&object, QStringLiteral("42x"), &error));
    EXPECT_EQ(object.metaType().id(), int(QMetaType::QString));
    EXPECT_EQ(object.toString(), QStringLiteral("42"));
    EXPECT_EQ(error, QStringLiteral("untouched"));
}

TEST(PDEFormatterConversion, StoresNothingWithoutATextOrAPlaceForTheValue) {
    const auto formatter = PDEFormatter::init();
    QVariant object(7);
    EXPECT_TRUE(formatter->getObjectValue(&object, std::nullopt, nullptr));
    EXPECT_EQ(object, QVariant(7));
    EXPECT_TRUE(formatter->getObjectValue(nullptr, QStringLiteral("a"), nullptr));
}

// ---- vetting

class PDEFormatterVetting : public testing::Test {
protected:
    std::unique_ptr<PDEFormatter> style(int number) { return PDEFormatter::initWithStyle(number); }
    static std::unique_ptr<PDEFormatter> numberWithin(int low, int high, int maxLength = 0) {
        auto formatter = PDEFormatter::initWithStyle(2);
        formatter->setMinValue(low);
        formatter->setMaxValue(high);
        formatter->setMaxLength(maxLength);
        return formatter;
    }

    Refusals refusals;
};

/// Which ASCII characters a style allows in a single insertion into an empty field, written from
/// the characters' numbers.
bool isAllowed(int style, int c) {
    const bool digit = c >= 0x30 && c <= 0x39;
    const bool letter = (c >= 0x41 && c <= 0x5A) || (c >= 0x61 && c <= 0x7A);
    const bool codabar = digit || c == 0x24 || (c >= 0x2D && c <= 0x2F) || c == 0x2B || c == 0x3A;
    switch (style) {
    case 2:
        return digit;
    case 4:
        return digit || c == 0x2E;
    case 6:
        return digit || letter || c == 0x20;
    case 7:
        return digit || letter || c == 0x20 || c == 0x24 || c == 0x25 || c == 0x2B ||
               (c >= 0x2D && c <= 0x2F);
    case 8:
        return codabar;
    case 9:
        return codabar || (c >= 0x41 && c <= 0x44) || (c >= 0x61 && c <= 0x64);
    case 10:
        return c >= 0x20 && c <= 0x7E;
    case 11:
        return digit || letter || (c >= 0x20 && c <= 0x22) || c == 0x25 ||
               (c >= 0x27 && c <= 0x2F) || (c >= 0x3A && c <= 0x3F) || c == 0x5F;
    default:
        return c < 0x80;
    }
}

TEST_F(PDEFormatterVetting, AllowsInEveryStyleExactlyItsCharacters) {
    std::vector<QString> characters;
    for (int c = 0; c <= 0xFF; ++c)
        characters.push_back(QString(QChar(c)));
    // Beyond: in Mac OS Roman (œ, €, Ω, ﬁ), not in it (日, soft hyphen's kin, full-width 5, emoji).
    for (const char* text : {"œ", "€", "Ω", "ﬁ", "日", "\u200B", "５", "\u0660", "🏷"})
        characters.push_back(QString::fromUtf8(text));
    for (const int number : {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 100}) {
        const auto formatter = style(number);
        for (const QString& text : characters) {
            const int code = text.size() == 1 ? text[0].unicode() : 0x10000;
            const bool expected = number == 0 || (code < 0x80 && isAllowed(number, code));
            SCOPED_TRACE(testing::Message() << "style " << number << ", character " << code);
            ASSERT_EQ(append(*formatter, QString(), text), expected);
            ASSERT_EQ(refusals.take(), expected ? kNoRefusal : Refusals::invalidCharacter());
        }
    }
}

TEST_F(PDEFormatterVetting, NamesTheCharacterOnlyWhenItIsForeignToMacOSRoman) {
    const auto formatter = style(6);
    EXPECT_FALSE(append(*formatter, QString(), QStringLiteral("日")));
    EXPECT_EQ(refusals.object.toString(), QStringLiteral("日"));
    EXPECT_FALSE(append(*formatter, QString(), QStringLiteral("é")));
    EXPECT_EQ(refusals.object.value<QObject*>(), formatter.get());
}

TEST_F(PDEFormatterVetting, NamesTheLastCharacterOfAForeignPaste) {
    const auto formatter = style(6);
    EXPECT_FALSE(append(*formatter, QString(), QStringLiteral("a日b")));
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    EXPECT_EQ(refusals.object.toString(), QStringLiteral("b"));
}

TEST_F(PDEFormatterVetting, AcceptsAnyTextInStyle0) {
    const auto formatter = style(0);
    EXPECT_TRUE(append(*formatter, QString(), QString::fromUtf8("日🏷\n") + QChar(0xD800)));
    EXPECT_EQ(refusals.take(), kNoRefusal);
}

TEST_F(PDEFormatterVetting, AcceptsAtOnceWhatProposesNothing) {
    const auto formatter = numberWithin(5, 6);
    TextRange caret{1, 0};
    QString text = QStringLiteral("x");
    QString empty;
    EXPECT_TRUE(formatter->isPartialStringValid(nullptr, &caret, {}, {}, nullptr));
    EXPECT_TRUE(formatter->isPartialStringValid(&empty, &caret, text, {0, 1}, nullptr));
    EXPECT_TRUE(formatter->isPartialStringValid(&text, nullptr, {}, {}, nullptr));
    EXPECT_EQ(refusals.take(), kNoRefusal);
}

TEST_F(PDEFormatterVetting, NeverVetsAnEditThatLeavesTheCaretAtOrBeforeTheOldSelection) {
    const auto formatter = style(2);
    QString text = QStringLiteral("xyz");
    for (const std::size_t location : {0u, 1u, 2u}) {
        TextRange caret{location, 0};
        EXPECT_TRUE(
            formatter->isPartialStringValid(&text, &caret, QStringLiteral("w"), {2, 0}, nullptr));
    }
    TextRange past{3, 0};
    EXPECT_FALSE(
        formatter->isPartialStringValid(&text, &past, QStringLiteral("w"), {2, 0}, nullptr));
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
}

TEST_F(PDEFormatterVetting, ComparesLocationsAsUnsignedNumbersAndAcceptsRangesOutsideTheText) {
    const auto formatter = style(2);
    QString text = QStringLiteral("x");
    const std::size_t notFound = std::numeric_limits<std::size_t>::max();
    TextRange beyond{2, 0};
    EXPECT_TRUE(formatter->isPartialStringValid(&text, &beyond, {}, {0, 0}, nullptr));
    TextRange caret{1, 0};
    EXPECT_TRUE(formatter->isPartialStringValid(&text, &caret, {}, {notFound, 0}, nullptr));
    TextRange nowhere{notFound, 0};
    EXPECT_TRUE(formatter->isPartialStringValid(&text, &nowhere, {}, {0, 0}, nullptr));
    EXPECT_EQ(refusals.take(), kNoRefusal);
}

TEST_F(PDEFormatterVetting, ChangesNeitherTextNorRangeNorError) {
    const auto formatter = style(2);
    QString text = QStringLiteral("1x");
    TextRange caret{2, 0};
    QString error = QStringLiteral("untouched");
    EXPECT_FALSE(
        formatter->isPartialStringValid(&text, &caret, QStringLiteral("1"), {1, 0}, &error));
    EXPECT_EQ(text, QStringLiteral("1x"));
    EXPECT_EQ(caret, (TextRange{2, 0}));
    EXPECT_EQ(error, QStringLiteral("untouched"));
}

TEST_F(PDEFormatterVetting, VetsOnlyTheInsertedPartOfTheText) {
    const auto formatter = style(2);
    EXPECT_TRUE(insertInto(*formatter, QStringLiteral("ab"), {1, 0}, QStringLiteral("7")));
    EXPECT_FALSE(insertInto(*formatter, QStringLiteral("12"), {0, 2}, QStringLiteral("x")));
}

TEST_F(PDEFormatterVetting, AcceptsDeletionsThatLeaveABrokenTextInEveryStyle) {
    for (int number = 0; number < 14; ++number) {
        const auto formatter = style(number);
        formatter->setMaxLength(1);
        formatter->setMinValue(100);
        formatter->addInvalidCharacter(QStringLiteral("日x"));
        QString rest = QStringLiteral("日x");
        TextRange caret{2, 0};
        EXPECT_TRUE(formatter->isPartialStringValid(&rest, &caret, QStringLiteral("日xy"), {2, 1},
                                                    nullptr));
    }
    EXPECT_EQ(refusals.take(), kNoRefusal);
}

TEST_F(PDEFormatterVetting, RefusesATextOfTooManyBytesInEveryStyle) {
    for (int number = 0; number < 14; ++number) {
        const auto formatter = style(number);
        formatter->setMaxLength(2);
        EXPECT_TRUE(append(*formatter, QStringLiteral("1"), QStringLiteral("1"))) << number;
        EXPECT_FALSE(append(*formatter, QStringLiteral("11"), QStringLiteral("1"))) << number;
        EXPECT_EQ(refusals.take(), Refusals::invalidCharacter()) << number;
        EXPECT_EQ(refusals.object.value<QObject*>(), formatter.get());
    }
}

TEST_F(PDEFormatterVetting, CountsTheBytesOfTheWholeText) {
    const auto formatter = style(0);
    formatter->setMaxLength(3);
    EXPECT_TRUE(append(*formatter, QString(), QStringLiteral("日")));
    EXPECT_FALSE(append(*formatter, QStringLiteral("日"), QStringLiteral("a")));
    EXPECT_FALSE(insertInto(*formatter, QStringLiteral("日"), {0, 0}, QStringLiteral("a")));
}

TEST_F(PDEFormatterVetting, CountsCharactersOfATextThatCannotBeConverted) {
    const auto formatter = style(0);
    formatter->setMaxLength(2);
    const QString lone = QString(QChar(0xD800));
    EXPECT_TRUE(append(*formatter, QStringLiteral("é"), lone)) << "two characters";
    EXPECT_FALSE(append(*formatter, QStringLiteral("éa"), lone)) << "three";
}

TEST_F(PDEFormatterVetting, RefusesEverythingUnderANegativeLimit) {
    const auto formatter = style(0);
    formatter->setMaxLength(-1);
    EXPECT_FALSE(append(*formatter, QString(), QStringLiteral("a")));
}

TEST_F(PDEFormatterVetting, SendsTheNotificationObjectWhenItIsSet) {
    QObject owner;
    const auto formatter = style(2);
    formatter->setNotificationObject(QVariant::fromValue(&owner));
    EXPECT_FALSE(append(*formatter, QString(), QStringLiteral("a")));
    EXPECT_EQ(refusals.object.value<QObject*>(), &owner);
}

TEST_F(PDEFormatterVetting, BeepsBeforeItPosts) {
    EXPECT_FALSE(append(*style(2), QString(), QStringLiteral("a")));
    EXPECT_EQ(refusals.events, (QStringList{QStringLiteral("beep"),
                                            QStringLiteral("InvalidCharacterNotification")}));
}

using PDEFormatterStyle0 = PDEFormatterVetting;

TEST_F(PDEFormatterStyle0, RefusesAnInvalidStringAndNamesIt) {
    const auto formatter = style(0);
    formatter->addInvalidCharacter(QStringLiteral("x"));
    EXPECT_FALSE(append(*formatter, QString(), QStringLiteral("x")));
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    EXPECT_EQ(refusals.object.metaType().id(), int(QMetaType::QString));
    EXPECT_EQ(refusals.object.toString(), QStringLiteral("x"));
}

TEST_F(PDEFormatterStyle0, AcceptsAPasteThatOnlyContainsAnInvalidString) {
    const auto formatter = style(0);
    formatter->addInvalidCharacter(QStringLiteral("x"));
    EXPECT_TRUE(append(*formatter, QString(), QStringLiteral("xy")));
    EXPECT_EQ(refusals.take(), kNoRefusal);
}

TEST_F(PDEFormatterStyle0, NamesTheLastCharacterOfAnInvalidStringOfSeveral) {
    const auto formatter = style(0);
    formatter->addInvalidCharacter(QStringLiteral("xy"));
    EXPECT_TRUE(append(*formatter, QString(), QStringLiteral("x")));
    EXPECT_FALSE(append(*formatter, QString(), QStringLiteral("xy")));
    EXPECT_EQ(refusals.object.toString(), QStringLiteral("y"));
}

TEST_F(PDEFormatterStyle0, EnforcesNoRange) {
    const auto formatter = style(0);
    formatter->setMinValue(5);
    formatter->setMaxValue(6);
    EXPECT_TRUE(append(*formatter, QString(), QStringLiteral("1")));
}

using PDEFormatterStyle2 = PDEFormatterVetting;

TEST_F(PDEFormatterStyle2, AcceptsADigitInAnEmptyFieldWithoutBounds) {
    EXPECT_TRUE(append(*style(2), QString(), QStringLiteral("7")));
    EXPECT_EQ(refusals.take(), kNoRefusal);
}

TEST_F(PDEFormatterStyle2, RefusesANumberBelowItsBoundAsAFormatError) {
    EXPECT_FALSE(append(*numberWithin(1, 99), QString(), QStringLiteral("0")));
    EXPECT_EQ(refusals.take(), Refusals::formatError());
}

TEST_F(PDEFormatterStyle2, RefusesANumberAboveItsBoundAsAFormatError) {
    const auto formatter = numberWithin(1, 99);
    EXPECT_TRUE(append(*formatter, QStringLiteral("9"), QStringLiteral("9")));
    EXPECT_FALSE(append(*formatter, QStringLiteral("10"), QStringLiteral("0")));
    EXPECT_EQ(refusals.take(), Refusals::formatError());
}

TEST_F(PDEFormatterStyle2, RefusesALetterWithItselfAsObjectNotTheLetter) {
    const auto formatter = numberWithin(1, 99);
    EXPECT_FALSE(append(*formatter, QString(), QStringLiteral("a")));
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    EXPECT_EQ(refusals.object.value<QObject*>(), formatter.get());
}

TEST_F(PDEFormatterStyle2, EnforcesTheRangeOnlyAtFullLength) {
    const auto formatter = numberWithin(5, 20, 2);
    EXPECT_TRUE(append(*formatter, QString(), QStringLiteral("1")));
    EXPECT_TRUE(append(*formatter, QStringLiteral("1"), QStringLiteral("3")));
    EXPECT_TRUE(append(*formatter, QString(), QStringLiteral("2")));
    EXPECT_EQ(refusals.take(), kNoRefusal);
    EXPECT_FALSE(append(*formatter, QStringLiteral("2"), QStringLiteral("5")));
    EXPECT_EQ(refusals.take(), Refusals::formatError());
    EXPECT_FALSE(append(*formatter, QStringLiteral("13"), QStringLiteral("1")));
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
}

TEST_F(PDEFormatterStyle2, EnforcesNoBoundThatIsSwitchedOff) {
    const auto formatter = numberWithin(5, 20);
    formatter->setValidityMaxValue(false);
    EXPECT_TRUE(append(*formatter, QStringLiteral("9"), QStringLiteral("9")));
    formatter->setValidityMinValue(false);
    EXPECT_TRUE(append(*formatter, QString(), QStringLiteral("0")));
    EXPECT_EQ(refusals.take(), kNoRefusal);
}

TEST_F(PDEFormatterStyle2, SaturatesANumberBeyond32Bits) {
    const auto formatter = numberWithin(0, std::numeric_limits<std::int32_t>::max());
    EXPECT_TRUE(append(*formatter, QString(), QStringLiteral("99999999999999999999")));
}

TEST_F(PDEFormatterStyle2, LetsTheLastRefusalNameTheNotification) {
    const auto formatter = numberWithin(1, 99);
    EXPECT_FALSE(append(*formatter, QString(), QStringLiteral("0a")));
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    EXPECT_FALSE(append(*formatter, QString(), QStringLiteral("a0")));
    EXPECT_EQ(refusals.take(), Refusals::formatError());
}

TEST_F(PDEFormatterStyle2, RemembersARefusalThoughLaterCharactersPass) {
    EXPECT_FALSE(append(*style(2), QString(), QStringLiteral("a1")));
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
}

using PDEFormatterStyle4 = PDEFormatterVetting;

TEST_F(PDEFormatterStyle4, RefusesSecondPointWhenTextBeforeHoldsOne) {
    EXPECT_FALSE(append(*style(4), QStringLiteral("1.5"), QStringLiteral(".")));
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
}

TEST_F(PDEFormatterStyle4, RefusesAPointOverASelectedPointToo) {
    EXPECT_FALSE(insertInto(*style(4), QStringLiteral("1.5"), {1, 1}, QStringLiteral(".")));
}

TEST_F(PDEFormatterStyle4, AcceptsSeveralPointsPastedIntoAnEmptyField) {
    EXPECT_TRUE(append(*style(4), QString(), QStringLiteral("1.2.3")));
    EXPECT_EQ(refusals.take(), kNoRefusal);
}

TEST_F(PDEFormatterStyle4, MeasuresTheIntegerPartAgainstTheRange) {
    const auto formatter = style(4);
    formatter->setMaxValue(1);
    EXPECT_TRUE(append(*formatter, QStringLiteral("1."), QStringLiteral("9")));
    EXPECT_FALSE(append(*formatter, QStringLiteral("1"), QStringLiteral("0")));
    EXPECT_EQ(refusals.take(), Refusals::formatError());
}

TEST_F(PDEFormatterStyle4, ChecksTheRangeForAPointAsWell) {
    const auto formatter = style(4);
    formatter->setMinValue(1);
    EXPECT_FALSE(append(*formatter, QString(), QStringLiteral(".")));
    EXPECT_EQ(refusals.take(), Refusals::formatError());
}

TEST_F(PDEFormatterVetting, EnforcesNoRangeInOtherStyles) {
    for (const int number : {1, 3, 5, 6, 7, 8, 9, 10, 11, 12}) {
        const auto formatter = style(number);
        formatter->setMinValue(5);
        formatter->setMaxValue(6);
        EXPECT_TRUE(append(*formatter, QString(), QStringLiteral("1"))) << number;
    }
}

} // namespace
