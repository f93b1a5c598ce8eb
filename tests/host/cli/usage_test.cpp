// The command line: help, version and wrong usage.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/program.h"

namespace labelcut::test {

using testing::HasSubstr;

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

TEST(UsageTest, WrongUsageIsOneSentenceThatNamesTheThing) {
    struct Row {
        const char* arguments;
        const char* sentence;
    };
    const Row rows[] = {
        {"frobnicate", "frobnicate (see \"labelcut --help\")"},
        {"print --ppd a -o b", "files is required (see \"labelcut print --help\")"},
        {"print f", "Exactly 1 option from [-p,--printer,--ppd] is required"},
        {"print f --ppd a -p b", "Exactly 1 option from [-p,--printer,--ppd] is required and 2"},
        {"print f --ppd a", "--ppd needs -o FILE"},
        {"print f --printer a -o b", "-o goes with --ppd"},
        {"print f --ppd a -o b --set X", "--set X: write it as KEYWORD=CHOICE"},
        {"print f --ppd a -o b --set =X", "--set =X: write it as KEYWORD=CHOICE"},
        {"print f --ppd a -o b --set X=1 --set x=2", "x cannot be both 1 and 2"},
        {"print f --ppd a -o b --set PageSize=A --page-size B", "PageSize cannot be both B and A"},
        {"print f --ppd a -o b --pages 5-3", "--pages 5-3: write it as 3, 3-5, 3- or -5"},
        {"print f --ppd a -o b --copies 0", "--copies: Value 0 not in range"},
        {"print f --ppd a -o b --copies two", "--copies"},
        {"print f --printer a --timeout 0", "--timeout: Value 0 not in range"},
        {"options", "Exactly 1 option from [-p,--printer,--ppd] is required"},
        {"options --ppd a --jason", "--jason (see \"labelcut options --help\")"},
    };
    for (const Row& row : rows) {
        const Outcome outcome = run(words(row.arguments));
        EXPECT_EQ(outcome.status, 2) << row.arguments;
        EXPECT_EQ(outcome.out, "") << row.arguments;
        EXPECT_THAT(outcome.err, HasSubstr(row.sentence)) << row.arguments;
        EXPECT_THAT(outcome.err, testing::StartsWith("labelcut: ")) << row.arguments;
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << row.arguments;
    }
}

TEST(UsageTest, ASettingGivenTwiceAlikeIsNoContradiction) {
    const Outcome outcome = run(words("print f --ppd a -o b --set X=1 --set X=1"));
    EXPECT_EQ(outcome.status, 1) << outcome.err;
}

} // namespace labelcut::test
