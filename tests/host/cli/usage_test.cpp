// The command line: help, version and wrong usage.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/job_fixtures.h"
#include "tests/support/program.h"

namespace labelcut::test {

using testing::HasSubstr;

namespace {

/// Arguments, and what the sentence about them holds.
struct Mistake {
    QStringList arguments;
    const char* sentence;
};

void expectWrongUsage(const Outcome& outcome, const char* sentence, const std::string& arguments) {
    EXPECT_EQ(outcome.status, 2) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_THAT(outcome.err, HasSubstr(sentence)) << arguments;
    EXPECT_THAT(outcome.err, testing::StartsWith("labelcut: ")) << arguments;
    EXPECT_THAT(outcome.err, testing::EndsWith(" --help\")\n")) << arguments;
    EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << arguments;
}

void expectWrongUsage(std::initializer_list<Mistake> mistakes) {
    for (const Mistake& mistake : mistakes)
        expectWrongUsage(run(mistake.arguments), mistake.sentence,
                         mistake.arguments.join(u' ').toStdString());
}

} // namespace

TEST(UsageTest, HelpAndVersionAreAnsweredOnStandardOutput) {
    for (const char* arguments : {"--help", "-h", "print --help", "options --help"}) {
        const Outcome outcome = run(words(arguments));
        EXPECT_EQ(outcome.status, 0) << arguments;
        EXPECT_THAT(outcome.out, HasSubstr("Usage: labelcut")) << arguments;
        EXPECT_EQ(outcome.err, "") << arguments;
    }
    const Outcome version = run(words("--version"));
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.out, testing::MatchesRegex("labelcut [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(UsageTest, AMistypedOptionIsNamedWithTheOneThatWasLikelyMeant) {
    expectWrongUsage({
        {words("--prniter Tape"),
         "There is no option --prniter; did you mean --printer? (see \"labelcut --help\")"},
        {words("--prnter Tape"), "--prnter; did you mean --printer?"},
        {words("--printter Tape"), "--printter; did you mean --printer?"},
        {words("--prinder=Tape"), "no option --prinder; did you mean --printer?"},
        {words("print f --prniter Tape"),
         "did you mean --printer? (see \"labelcut print --help\")"},
        {words("options --jsn --ppd a"), "--jsn; did you mean --json?"},
        {words("presets save a --replcae"),
         "--replcae; did you mean --replace? (see \"labelcut presets save --help\")"},
        {words("f --verison"), "did you mean --version?"},
        {words("--frobnicate"), "There is no option --frobnicate (see \"labelcut --help\")"},
        {words("-x"), "There is no option -x (see \"labelcut --help\")"},
        {words("-printer Tape"), "There is no option -printer; did you mean --printer?"},
        {words("print f -pages=3"), "There is no option -pages; did you mean --pages?"},
        {words("options --dark"), "There is no option --dark here; \"labelcut snapshot\" has one"},
        {words("f --copies 3"), "There is no option --copies here; \"labelcut print\" has one"},
        {words("print f --version"), "There is no option --version here; \"labelcut\" has one"},
    });
}

TEST(UsageTest, AWordThatIsNeitherACommandNorAFileIsNamedWithTheCommandThatWasLikelyMeant) {
    expectWrongUsage({
        {words("prnit"), "There is neither a command nor a file \"prnit\"; did you mean \"labelcut "
                         "print\"? (see \"labelcut --help\")"},
        {words("--printer Tape otpions"), "\"otpions\"; did you mean \"labelcut options\"?"},
        {words("frobnicate"), "There is neither a command nor a file \"frobnicate\" (see"},
        {words("missing.pdf"), "neither a command nor a file \"missing.pdf\" (see"},
        {words("./print"), "neither a command nor a file \"./print\""},
        {words("-- print"), "neither a command nor a file \"print\""},
        {{QString()}, "neither a command nor a file \"\""},
        {words("presets lst"), "\"labelcut presets\" has no command \"lst\"; did you mean "
                               "\"labelcut presets list\"? (see \"labelcut presets --help\")"},
        {words("presets frobnicate"), "\"labelcut presets\" has no command \"frobnicate\" (see"},
    });
}

TEST(UsageTest, ACommandStandsInFrontOfEverythingElse) {
    const QString labels = kLabels;
    expectWrongUsage({
        {{labels, QStringLiteral("print")},
         "\"print\" is a command and stands in front of everything else"},
        {words("--printer Tape print f"), "a file of that name is written \"./print\""},
    });
}

TEST(UsageTest, AMissingValueIsNamedWithTheWayToGiveIt) {
    const char* const sentence = "--printer needs a value: --printer QUEUE (see";
    expectWrongUsage({
        {words("print f --printer"), sentence},
        {words("print f -p"), sentence},
        {words("-p"), sentence},
        {words("print f --printer --copies 3"), sentence},
        {words("print f -p -n 3"), sentence},
        {words("print --printer= f"), sentence},
        {words("--printer= f"), sentence},
        {{QStringLiteral("--printer"), QString(), QStringLiteral("f")}, sentence},
        {words("print --title= f"), "--title needs a value: --title TEXT"},
        {words("print f --set"), "--set needs a value: --set KEYWORD=CHOICE"},
        {words("print f --copies"), "--copies needs a value: --copies N (see"},
    });
}

TEST(UsageTest, AValueOutOfRangeIsNamedWithTheRange) {
    expectWrongUsage({
        {words("print f --copies 0"), "--copies 0: give a whole number from 1 to 9999 (see"},
        {words("print f --copies two"), "--copies two: give a whole number"},
        {words("print f -n 1.5"), "--copies 1.5: give a whole number"},
        {words("print f -n 010"), "--copies 010: give a whole number"},
        {words("print f -n 99999999999999999999"), "give a whole number"},
        {words("print f -n -1"), "--copies -1: give a whole number"},
        {words("presets save a -n 10000"), "--copies 10000: give a whole number from 1 to 9999"},
        {words("print f --timeout 0"), "--timeout 0: give a number from 0.1 to 3600 (see"},
        {words("print f --fit wide"), "--fit wide: give actual, scale or turn (see"},
        {words("presets save a --fit ACTUAL"), "--fit ACTUAL: give actual, scale or turn"},
        {words("options --timeout nan"), "--timeout nan: give a number"},
        {words("options --timeout inf"), "--timeout inf: give a number"},
        {words("snapshot -o a --scale nan"), "--scale nan: give a number from 0.5 to 8 (see"},
        {words("snapshot -o a --scale 0x1"), "--scale 0x1: give a number"},
    });
}

TEST(UsageTest, NumbersOfOddKindsAreRefusedByEveryArgumentThatTakesOne) {
    struct Argument {
        const char* command;
        const char* option;
        const char* wanted;
    };
    const Argument arguments[] = {
        {"print f --timeout", "--timeout", ": give a number from 0.1 to 3600 (see"},
        {"options --timeout", "--timeout", ": give a number from 0.1 to 3600 (see"},
        {"snapshot -o a --timeout", "--timeout", ": give a number from 0.1 to 3600 (see"},
        {"snapshot -o a --scale", "--scale", ": give a number from 0.5 to 8 (see"},
        {"print f --copies", "--copies", ": give a whole number from 1 to 9999 (see"},
        {"presets save a --copies", "--copies", ": give a whole number from 1 to 9999 (see"},
    };
    for (const Argument& argument : arguments)
        for (const char* odd : {"nan", "NaN", "-nan", "inf", "-inf", "infinity", "-1", "0", "1e999",
                                "1e9", "99999999999999999999", "1,000", "5 ", "0x10", "5s", ""}) {
            const QString value = QString::fromLatin1(odd);
            const QString sentence =
                value.isEmpty()
                    ? QString::fromLatin1(argument.option) + QStringLiteral(" needs a value")
                    : QString::fromLatin1(argument.option) + u' ' + value +
                          QString::fromLatin1(argument.wanted);
            expectWrongUsage(run(words(argument.command) + QStringList{value}),
                             sentence.toUtf8().constData(), argument.command);
        }
}

TEST(UsageTest, WhatIsMissingOrTooMuchIsNamed) {
    expectWrongUsage({
        {words("print"), "\"labelcut print\" needs FILE (see \"labelcut print --help\")"},
        {words("snapshot"), "\"labelcut snapshot\" needs --output PNG (see"},
        {words("presets rename a"), "\"labelcut presets rename\" needs NEW-NAME (see"},
        {words("presets"), "\"labelcut presets\" needs a command: list, show, save, remove or "
                           "rename (see \"labelcut presets --help\")"},
        {words("options tape"), "\"labelcut options\" takes only options; \"tape\" is too much"},
        {words("options -- tape"), "\"labelcut options\" takes only options; \"tape\" is too much"},
        {words("presets show a b"),
         "\"labelcut presets show\" takes NAME and its options; \"b\" is too much (see"},
        {words("print f --ppd a -p b"),
         "--printer and --ppd exclude each other; give only one of them (see"},
        {words("--ppd a -p b"), "--printer and --ppd exclude each other"},
        {words("options --ppd a --ppd b"), "--ppd is given more than once (see"},
        {words("options --json=lines"), "--json takes no value (see"},
        {words("print f --ppd a"), "--ppd needs -o FILE"},
        {words("print f --printer a -o b"), "-o goes with --ppd"},
        {words("print f -o b"), "-o goes with --ppd"},
    });
}

TEST(UsageTest, AChoiceThatIsNoneOrContradictsAnotherIsNamed) {
    expectWrongUsage({
        {words("print f --ppd a -o b --set X"), "--set X: write it as KEYWORD=CHOICE"},
        {words("print f --ppd a -o b --set =X"), "--set =X: write it as KEYWORD=CHOICE"},
        {words("print f --ppd a -o b --set X=1 --set x=2"), "x cannot be both 1 and 2"},
        {words("print f --ppd a -o b --set PageSize=A --page-size B"),
         "PageSize cannot be both B and A"},
        {words("print f --ppd a -o b --pages 5-3"),
         "--pages 5-3: write it as 3, 3-5, 3- or -5, or"},
    });
}

/// In a folder with a file whose name is that of a command, and one whose name is that of an
/// option.
TEST(UsageTest, FilesOpenTheDialogAlsoWithoutItsName) {
    const Folder folder;
    for (const char* name : {"print", "-x", "labels.pdf"})
        folder.file(QString::fromLatin1(name), "some");
    for (const char* arguments :
         {"labels.pdf", "--printer Tape labels.pdf", "labels.pdf -p Tape", "--ppd tape.ppd",
          "./print", "-- print", "-- -x", "labels.pdf -- print -x", "labels.pdf missing.pdf"}) {
        Start wanted;
        wanted.arguments = words(arguments);
        wanted.folder = folder.path({});
        const Outcome outcome = run(wanted);
        EXPECT_EQ(outcome.status, 1) << arguments;
        EXPECT_THAT(outcome.err, HasSubstr("There is no display to open the dialog on"))
            << arguments;
    }
}

TEST(UsageTest, BehindTwoHyphensEverythingIsAFile) {
    for (const char* arguments : {"print %1 --ppd %2 -o /nonexistent/job.ps -- -x.pdf",
                                  "print --ppd %2 -o /nonexistent/job.ps -- %1 -x.pdf"}) {
        const QString line = QString::fromLatin1(arguments).arg(kLabels, kTapePpd);
        const Outcome outcome = run(words(line.toLatin1().constData()));
        EXPECT_EQ(outcome.status, 1) << arguments;
        EXPECT_THAT(outcome.err, HasSubstr("-x.pdf” does not exist")) << arguments;
    }
}

TEST(UsageTest, ASettingGivenTwiceAlikeIsNoContradiction) {
    const Outcome outcome = run(words("print f --ppd a -o b --set X=1 --set X=1"));
    EXPECT_EQ(outcome.status, 1) << outcome.err;
}

} // namespace labelcut::test
