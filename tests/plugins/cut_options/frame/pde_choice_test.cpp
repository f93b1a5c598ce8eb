// Tests of one choice of a PPD option.
#include "plugins/cut_options/frame/pde_choice.h"

#include <gtest/gtest.h>

#include <cstring>

#include "plugins/cut_options/frame/pde_utils_method.h"
#include "tests/plugins/cut_options/frame/raw_choice.h"
#include "tests/support/ppd_builder.h"

namespace labelcut::test {
namespace {

/// A record and its option made by hand, for what no PPD can say.
struct HandMadeChoice {
    HandMadeChoice() {
        choice.option = &option;
        option.choices = &choice;
        option.num_choices = 1;
    }
    template<std::size_t N>
    static void write(char (&field)[N], const QByteArray& text) {
        ASSERT_LE(static_cast<std::size_t>(text.size()), N);
        std::memset(field, 0, N);
        std::memcpy(field, text.constData(), static_cast<std::size_t>(text.size()));
    }

    ppd_option_t option{};
    ppd_choice_t choice{};
};

TEST(ChoiceTitles, AreTheTextAndTheKeyword) {
    const ppd::File ppd =
        PpdBuilder().option("KvMirror", "Mirror", {"OFF/Aus\xC3\xA9", "ON/Ein"}, "OFF").open();
    ppd_option_t* option = ppd::findOption(ppd.get(), "KvMirror");
    const PDEChoice choice = PDEChoice::choiceWithChoice(&option->choices[0]);
    EXPECT_EQ(choice.userTitle(), QStringLiteral("Ausé"));
    EXPECT_EQ(choice.ppdTitle(), QStringLiteral("OFF"));
    EXPECT_EQ(choice.choice(), &option->choices[0]);
}

TEST(ChoiceTitles, AreBuiltOnFirstRequestAndKept) {
    HandMadeChoice made;
    const PDEChoice choice(&made.choice);
    HandMadeChoice::write(made.choice.text, "first");
    HandMadeChoice::write(made.choice.choice, "FIRST");
    EXPECT_EQ(choice.userTitle(), QStringLiteral("first")) << "nothing was read before";
    EXPECT_EQ(choice.ppdTitle(), QStringLiteral("FIRST"));
    HandMadeChoice::write(made.choice.text, "second");
    HandMadeChoice::write(made.choice.choice, "SECOND");
    EXPECT_EQ(choice.userTitle(), QStringLiteral("first"));
    EXPECT_EQ(choice.ppdTitle(), QStringLiteral("FIRST"));
    EXPECT_EQ(&*choice.userTitle(), &*choice.userTitle()) << "the same object";
}

TEST(ChoiceTitles, AreAbsentWhenTheirBytesAreNotUtf8OrNotAscii) {
    const ppd::File ppd =
        PpdBuilder().option("KvMirror", "Mirror", {"OFF/\xE9", "ON/On", "E/Eacute"}, "OFF").open();
    renameChoice(ppd, "KvMirror", 1, "\xE9X");
    renameChoice(ppd, "KvMirror", 2, "\xC3\xA9");
    const PDEChoices choices =
        PDEUtilsMethod13::arrayFromPPDOption(ppd::findOption(ppd.get(), "KvMirror"));
    ASSERT_EQ(choices->size(), 3U);
    EXPECT_STREQ((*choices)[0].choice()->text, "\xE9") << "the bytes came through";
    EXPECT_EQ((*choices)[0].userTitle(), std::nullopt);
    EXPECT_EQ((*choices)[0].ppdTitle(), QStringLiteral("OFF")) << "one does not cost the other";
    EXPECT_EQ((*choices)[1].ppdTitle(), std::nullopt);
    EXPECT_EQ((*choices)[1].userTitle(), QStringLiteral("On"));
    EXPECT_EQ((*choices)[2].ppdTitle(), std::nullopt) << "good UTF-8 is not ASCII";
}

TEST(ChoiceTitles, ThatAreAbsentStayAbsent) {
    HandMadeChoice made;
    HandMadeChoice::write(made.choice.text, "\xE9");
    HandMadeChoice::write(made.choice.choice, "\xE9");
    const PDEChoice choice(&made.choice);
    EXPECT_EQ(choice.userTitle(), std::nullopt);
    EXPECT_EQ(choice.ppdTitle(), std::nullopt);
    HandMadeChoice::write(made.choice.text, "now it is fine");
    HandMadeChoice::write(made.choice.choice, "FINE");
    EXPECT_EQ(choice.userTitle(), std::nullopt);
    EXPECT_EQ(choice.ppdTitle(), std::nullopt);
}

TEST(DefaultChoice, IsTheOneThatTheOptionNames) {
    const ppd::File ppd = PpdBuilder().option("KvHalfCut", "", {"A", "B", "b"}, "B").open();
    const PDEChoices choices =
        PDEUtilsMethod13::arrayFromPPDOption(ppd::findOption(ppd.get(), "KvHalfCut"));
    EXPECT_FALSE((*choices)[0].isDefaultChoice());
    EXPECT_TRUE((*choices)[1].isDefaultChoice());
    EXPECT_FALSE((*choices)[2].isDefaultChoice()) << "case counts";
}

TEST(DefaultChoice, IsNoneWhenTheOptionNamesNoExistingOne) {
    const ppd::File ppd = PpdBuilder().option("KvHalfCut", "", {"A", "B"}, "C").open();
    const PDEChoices choices =
        PDEUtilsMethod13::arrayFromPPDOption(ppd::findOption(ppd.get(), "KvHalfCut"));
    EXPECT_FALSE((*choices)[0].isDefaultChoice());
    EXPECT_FALSE((*choices)[1].isDefaultChoice());
}

TEST(DefaultChoice, IsComparedOver41BytesAndNoFurther) {
    HandMadeChoice made;
    HandMadeChoice::write(made.option.defchoice, QByteArray(41, 'K'));
    HandMadeChoice::write(made.choice.choice, QByteArray(41, 'K'));
    HandMadeChoice::write(made.option.text, "one text");
    HandMadeChoice::write(made.choice.text, "another text");
    const PDEChoice choice(&made.choice);
    EXPECT_TRUE(choice.isDefaultChoice()) << "what follows the field is not compared";

    HandMadeChoice::write(made.choice.choice, QByteArray(40, 'K') + 'L');
    EXPECT_FALSE(choice.isDefaultChoice()) << "byte 41 counts";
    HandMadeChoice::write(made.choice.choice, QByteArray(40, 'K'));
    EXPECT_FALSE(choice.isDefaultChoice()) << "as does the end";
}

QString addressOf(const PDEChoice& choice) {
    return QStringLiteral("0x") + QString::number(reinterpret_cast<quintptr>(&choice), 16);
}

TEST(ChoiceDescription, OfTheThirdOfFiveTellsMarkAndPosition) {
    const ppd::File ppd =
        PpdBuilder()
            .option("KvHalfCut", "", {"A/a", "B/b", "C/%1 \xC3\xA9", "D/d", "E/e"}, "A")
            .open();
    const PDEChoices choices =
        PDEUtilsMethod13::arrayFromPPDOption(ppd::findOption(ppd.get(), "KvHalfCut"));
    const PDEChoice& third = (*choices)[2];
    EXPECT_EQ(third.description(),
              QStringLiteral("<PDEChoice %1 userTitle:\"").arg(addressOf(third)) +
                  QStringLiteral("%1 é\" ppdTitle:\"C\" marked:NO choice:3 of 5>"));

    ASSERT_TRUE(ppd::markOption(ppd.get(), "KvHalfCut", "C"));
    EXPECT_EQ(third.description(),
              QStringLiteral("<PDEChoice %1 userTitle:\"").arg(addressOf(third)) +
                  QStringLiteral("%1 é\" ppdTitle:\"C\" marked:YES choice:3 of 5>"));
    EXPECT_TRUE((*choices)[0].description().endsWith(
        QStringLiteral(" userTitle:\"a\" ppdTitle:\"A\" marked:NO choice:1 of 5>")));
    EXPECT_TRUE((*choices)[4].description().endsWith(QStringLiteral("choice:5 of 5>")));
}

TEST(ChoiceDescription, ShowsTitlesThatAreAbsent) {
    HandMadeChoice made;
    HandMadeChoice::write(made.choice.text, "\xE9");
    HandMadeChoice::write(made.choice.choice, "\xE9");
    const PDEChoice choice(&made.choice);
    EXPECT_EQ(choice.description(),
              QStringLiteral("<PDEChoice %1 userTitle:\"(null)\" ppdTitle:\"(null)\" marked:NO "
                             "choice:1 of 1>")
                  .arg(addressOf(choice)));
}

} // namespace
} // namespace labelcut::test
