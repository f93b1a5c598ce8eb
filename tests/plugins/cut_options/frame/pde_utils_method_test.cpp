// Tests of the readings of the printer's PPD.
#include "plugins/cut_options/frame/pde_utils_method.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>

#include "tests/plugins/cut_options/frame/raw_choice.h"
#include "tests/support/ppd_builder.h"

namespace labelcut::test {
namespace {

using Utils = PDEUtilsMethod13;

TEST(AttributeValue, IsTheTextBehindTheKeyword) {
    const ppd::File ppd = PpdBuilder()
                              .attribute("KvPlain", "some value")
                              .attribute("KvEmpty", "")
                              .attribute("KvUtf8", "\xC3\xA9t\xC3\xA9")
                              .attribute("KvSpec Left/Links", "with an option keyword")
                              .attribute("KvTwice One", "first")
                              .attribute("KvTwice Two", "second")
                              .open();
    EXPECT_EQ(Utils::ppdAttrValStr(ppd.get(), "KvPlain"), QStringLiteral("some value"));
    EXPECT_EQ(Utils::ppdAttrValStr(ppd.get(), "KvUtf8"), QStringLiteral("été"));
    EXPECT_EQ(Utils::ppdAttrValStr(ppd.get(), "KvSpec"), QStringLiteral("with an option keyword"));
    EXPECT_EQ(Utils::ppdAttrValStr(ppd.get(), "KvTwice"), QStringLiteral("first"));
    const std::optional<QString> empty = Utils::ppdAttrValStr(ppd.get(), "KvEmpty");
    EXPECT_TRUE(empty && empty->isEmpty()) << "an empty value is a value";
}

TEST(AttributeValue, IsNothingWhenThereIsNoneOrItCannotBeDecoded) {
    const ppd::File ppd = PpdBuilder().attribute("KvBytes", "\xE9t\xE9").open();
    ASSERT_STREQ(ppd::findAttr(ppd.get(), "KvBytes")->value, "\xE9t\xE9");
    EXPECT_EQ(Utils::ppdAttrValStr(ppd.get(), "KvBytes"), std::nullopt);
    EXPECT_EQ(Utils::ppdAttrValStr(ppd.get(), "KvMissing"), std::nullopt);
    EXPECT_EQ(Utils::ppdAttrValStr(ppd.get(), nullptr), std::nullopt);
    EXPECT_EQ(Utils::ppdAttrValStr(nullptr, "KvBytes"), std::nullopt);
}

TEST(AttributeValue, IsNothingForAnAttributeWithoutValue) {
    const ppd::File ppd = PpdBuilder().attribute("KvPlain", "value").open();
    ppd_attr_t* attribute = ppd::findAttr(ppd.get(), "KvPlain");
    char* const held = std::exchange(attribute->value, nullptr);
    EXPECT_EQ(Utils::ppdAttrValStr(ppd.get(), "KvPlain"), std::nullopt);
    EXPECT_FALSE(Utils::isSupportedItem(ppd.get(), "KvPlain"));
    EXPECT_EQ(Utils::originItem(ppd.get(), "KvPlain"), Point{});
    attribute->value = held;
}

TEST(OptionText, IsTheOptionsTranslatedText) {
    const ppd::File ppd = PpdBuilder()
                              .onOff("KvMirror", "OFF", "Mirror \xC3\xA9")
                              .onOff("KvHalfCut", "OFF", "\xE9")
                              .onOff("KvChainPrint")
                              .open();
    EXPECT_EQ(Utils::ppdOptionTextStr(ppd.get(), "KvMirror"), QStringLiteral("Mirror é"));
    EXPECT_EQ(Utils::ppdOptionTextStr(ppd.get(), "KvHalfCut"), std::nullopt);
    EXPECT_EQ(Utils::ppdOptionTextStr(ppd.get(), "KvChainPrint"), QStringLiteral("KvChainPrint"))
        << "libcups gives an option without a text its keyword";
    EXPECT_EQ(Utils::ppdOptionTextStr(ppd.get(), "KvSpecialTape"), std::nullopt);
    EXPECT_EQ(Utils::ppdOptionTextStr(ppd.get(), nullptr), std::nullopt);
    EXPECT_EQ(Utils::ppdOptionTextStr(nullptr, "KvMirror"), std::nullopt);
}

TEST(SupportedItem, IsOneWhoseHidingIsFalse) {
    struct Case {
        const char* value;
        bool isSupported;
    };
    for (const Case& c :
         {Case{"False", true}, Case{"false", false}, Case{"FALSE", false}, Case{"True", false},
          Case{"False ", false}, Case{" False", false}, Case{"Falsee", false}, Case{"Fals", false},
          Case{"0", false}, Case{"", false}, Case{"False\xE9", false}}) {
        const ppd::File ppd = PpdBuilder().attribute("KvHidden", c.value).open();
        ASSERT_STREQ(ppd::findAttr(ppd.get(), "KvHidden")->value, c.value);
        EXPECT_EQ(Utils::isSupportedItem(ppd.get(), "KvHidden"), c.isSupported)
            << '"' << c.value << '"';
        EXPECT_FALSE(Utils::isSupportedItem(ppd.get(), "KvOther"));
    }
    EXPECT_FALSE(Utils::isSupportedItem(nullptr, "KvHidden"));
}

struct PointCase {
    const char* text;
    Point point;
};

const PointCase kPoints[] = {
    {"{1, 2}", {1, 2}},
    {"{1,2}", {1, 2}},
    {"{0,0}", {0, 0}},
    {"{-1.5, 2.25}", {-1.5, 2.25}},
    {"{+3,4e1}", {3, 40}},
    {"  {  7  ,  8  }  ", {7, 8}},
    {"{5,6} and more", {5, 6}},
    {"{a,2}", {0, 2}},
    {"{1,b}", {1, 0}},
    {"{,2}", {0, 2}},
    {"{1,}", {1, 0}},
    {"{,}", {0, 0}},
    {"{1 1,2}", {0, 2}},
    {"{nan,inf}", {0, 0}},
    {"{1e999,-inf}", {0, 0}},
    {"", {0, 0}},
    {"1,2", {0, 0}},
    {"(1,2)", {0, 0}},
    {"{1}", {0, 0}},
    {"{1;2}", {0, 0}},
    {"{1,2", {0, 0}},
    {"1,2}", {0, 0}},
    {"x{1,2}", {0, 0}},
    {"{1,2,3}", {0, 0}},
    {"{{1,2},{3,4}}", {0, 0}},
};

TEST(PointFromString, ReadsTwoNumbersInBraces) {
    for (const PointCase& c : kPoints)
        EXPECT_EQ(pointFromString(QString::fromLatin1(c.text)), c.point) << c.text;
    EXPECT_EQ(pointFromString(QString()), Point{});
}

TEST(PointFromString, EndsSoonWithHugeTexts) {
    QElapsedTimer timer;
    timer.start();
    constexpr qsizetype kMany = 1'000'000;
    EXPECT_EQ(pointFromString(QString(kMany, u' ')), Point{});
    EXPECT_EQ(pointFromString(u'{' + QString(kMany, u' ')), Point{});
    EXPECT_EQ(pointFromString(u'{' + QString(kMany, u' ') + QStringLiteral("1,2}")), (Point{1, 2}));
    EXPECT_EQ(pointFromString(u'{' + QString(kMany, u'1') + u','), Point{});
    EXPECT_LT(timer.elapsed(), 5000);
}

TEST(OriginItem, IsTheAttributesPoint) {
    for (const PointCase& c : kPoints) {
        const ppd::File ppd = PpdBuilder().attribute("KvOrigin", c.text).open();
        EXPECT_EQ(Utils::originItem(ppd.get(), "KvOrigin"), c.point) << c.text;
    }
    const ppd::File ppd = PpdBuilder().attribute("KvBytes", "{1,2}\xE9").open();
    EXPECT_EQ(Utils::originItem(ppd.get(), "KvBytes"), Point{});
    EXPECT_EQ(Utils::originItem(ppd.get(), "KvMissing"), Point{});
    EXPECT_EQ(Utils::originItem(nullptr, "KvOrigin"), Point{});
}

TEST(ChoiceArray, HoldsEveryChoiceInThePpdsOrder) {
    const ppd::File ppd = PpdBuilder().option("KvHalfCut", "", {"Z", "A", "M"}, "A").open();
    const ppd_option_t* option = ppd::findOption(ppd.get(), "KvHalfCut");
    const PDEChoices choices = Utils::arrayFromPPDOption(option);
    ASSERT_TRUE(choices);
    ASSERT_EQ(choices->size(), 3U);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ((*choices)[i].choice(), &option->choices[i]);
    EXPECT_EQ((*choices)[0].ppdTitle(), QStringLiteral("Z"));
    EXPECT_EQ((*choices)[2].ppdTitle(), QStringLiteral("M"));
}

TEST(ChoiceArray, IsNothingForNoOptionAndEmptyForOneWithoutChoices) {
    EXPECT_FALSE(Utils::arrayFromPPDOption(nullptr));
    ppd_option_t option{};
    for (const int count : {0, -1, -5}) {
        option.num_choices = count;
        const PDEChoices choices = Utils::arrayFromPPDOption(&option);
        ASSERT_TRUE(choices) << count;
        EXPECT_TRUE(choices->empty()) << count;
    }
}

TEST(FindChoice, TakesTheFirstWithThatKeywordExactly) {
    const ppd::File ppd =
        PpdBuilder().option("KvHalfCut", "", {"OFF/ON", "ON/OFF", "E/On"}, "ON").open();
    renameChoice(ppd, "KvHalfCut", 2, "\xC3\xA9");
    const PDEChoices one = Utils::arrayFromPPDOption(ppd::findOption(ppd.get(), "KvHalfCut"));
    PDEChoiceArray twice = *one;
    twice.insert(twice.end(), one->begin(), one->end());
    const PDEChoices choices = twice;
    EXPECT_EQ(Utils::findChoiceForString(QStringLiteral("OFF"), choices), &choices->front());
    EXPECT_EQ(Utils::findChoiceForString(QStringLiteral("ON"), choices), &(*choices)[1]);
    for (const QString& absent : {QStringLiteral("on"), QStringLiteral("ON "), QStringLiteral(""),
                                  QStringLiteral("On"), QStringLiteral("é"), QString()})
        EXPECT_EQ(Utils::findChoiceForString(absent, choices), nullptr) << absent.toStdString();
}

TEST(FindChoice, TakesTheFirstDefaultWithoutAText) {
    const ppd::File ppd = PpdBuilder().option("KvHalfCut", "", {"A", "B"}, "B").open();
    const PDEChoices one = Utils::arrayFromPPDOption(ppd::findOption(ppd.get(), "KvHalfCut"));
    PDEChoiceArray twice = *one;
    twice.insert(twice.end(), one->begin(), one->end());
    const PDEChoices choices = twice;
    EXPECT_EQ(Utils::findChoiceForString(std::nullopt, choices), &(*choices)[1]);

    const ppd::File other = PpdBuilder().option("KvHalfCut", "", {"A", "B"}, "C").open();
    EXPECT_EQ(Utils::findChoiceForString(std::nullopt, Utils::arrayFromPPDOption(ppd::findOption(
                                                           other.get(), "KvHalfCut"))),
              nullptr);
}

TEST(FindChoice, GivesNothingFromAnAbsentOrEmptyArray) {
    for (const PDEChoices& choices : {PDEChoices(), PDEChoices(PDEChoiceArray())}) {
        EXPECT_EQ(Utils::findChoiceForString(QStringLiteral("ON"), choices), nullptr);
        EXPECT_EQ(Utils::findChoiceForString(std::nullopt, choices), nullptr);
    }
}

TEST(NewTitles, AreTheTextsInUtf8) {
    const ppd::File ppd =
        PpdBuilder()
            .option("KvMirror", "Mirror \xC3\xA9", {"OFF/Aus\xC3\xA9", "ON/\xE9"}, "OFF")
            .onOff("KvHalfCut", "OFF", "\xE9")
            .open();
    const ppd_option_t* option = ppd::findOption(ppd.get(), "KvMirror");
    EXPECT_EQ(Utils::newOptionTitle(option), QStringLiteral("Mirror é"));
    EXPECT_EQ(Utils::newChoiceTitle(&option->choices[0]), QStringLiteral("Ausé"));
    EXPECT_EQ(Utils::newChoiceTitle(&option->choices[1]), std::nullopt);
    EXPECT_EQ(Utils::newOptionTitle(ppd::findOption(ppd.get(), "KvHalfCut")), std::nullopt);
    EXPECT_EQ(Utils::newOptionTitle(nullptr), std::nullopt);
    EXPECT_EQ(Utils::newChoiceTitle(nullptr), std::nullopt);
}

TEST(EnabledText, HasTheNormalColourExactlyForOne) {
    QLabel label;
    TextField field(&label);
    struct Case {
        int enabled;
        bool disabledColour;
    };
    for (const Case& c : {Case{0, true}, Case{1, false}, Case{2, true}, Case{1, false},
                          Case{-1, true}, Case{1, false}, Case{255, true}}) {
        Utils::setEnabledForText(c.enabled, field);
        EXPECT_EQ(showsDisabledTextColor(label), c.disabledColour) << c.enabled;
    }
}

TEST(EnabledText, LeavesControlsWithoutTextColourAlone) {
    QCheckBox box;
    Button button(&box);
    const QPalette palette = box.palette();
    const QPalette::ColorRole role = box.foregroundRole();
    Utils::setEnabledForText(0, button);
    EXPECT_EQ(box.palette(), palette);
    EXPECT_EQ(box.foregroundRole(), role);
    EXPECT_TRUE(button.isEnabled());

    TextField absent;
    Utils::setEnabledForText(1, absent);
    EXPECT_FALSE(absent);
}

TEST(RunningOn105OrLater, IsAlwaysTrue) {
    EXPECT_TRUE(Utils::runningOn105OrLater());
}

} // namespace
} // namespace labelcut::test
