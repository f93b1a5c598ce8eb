// The job: which of the marked choices exclude each other, and what would help.
#include "host/settings/constraints.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/job_fixtures.h"

namespace labelcut {

namespace {

std::vector<std::string> sentences(ppd_file_t* ppd) {
    std::vector<std::string> all;
    for (const Conflict& conflict : findConflicts(ppd))
        all.push_back(describe(ppd, conflict).toStdString());
    return all;
}

constexpr char kModernConstraint[] =
    "*cupsUIConstraints Cut: \"*Knife ON *Tape Thick\"\n*cupsUIResolver Cut: \"*Knife OFF\"\n"
    "*OpenUI *Knife/The knife: PickOne\n*OrderDependency: 10 AnySetup *Knife\n*DefaultKnife: OFF\n"
    "*Knife OFF/Rests: \"\"\n*Knife ON/Cuts: \"\"\n*CloseUI: *Knife\n"
    "*OpenUI *Tape/The tape: PickOne\n*OrderDependency: 10 AnySetup *Tape\n*DefaultTape: Thin\n"
    "*Tape Thin/Thin: \"\"\n*Tape Thick/Thick: \"\"\n*CloseUI: *Tape\n";

} // namespace

TEST(ConstraintsTest, DefaultsDoNotConflict) {
    EXPECT_TRUE(findConflicts(test::tapePrinter().get()).empty());
    EXPECT_TRUE(findConflicts(nullptr).empty());
}

TEST(ConstraintsTest, AConflictNamesBothOptionsAndChoicesOnce) {
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::markOption(printer.get(), "KvSpecialTape", "ON"));
    EXPECT_EQ(sentences(printer.get()),
              std::vector<std::string>{"“Auto cut: On (KvAutoTapeCut=ON)” and “Special tape: On "
                                       "(KvSpecialTape=ON)” exclude each other."});
}

TEST(ConstraintsTest, EveryConflictIsFound) {
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::markOption(printer.get(), "KvSpecialTape", "ON"));
    ASSERT_TRUE(ppd::markOption(printer.get(), "KvHalfCut", "ON"));
    ASSERT_TRUE(ppd::markOption(printer.get(), "KvChainPrint", "ON"));
    EXPECT_EQ(sentences(printer.get()).size(), 3U);
}

TEST(ConstraintsTest, AResolutionLeavesTheWantedChoiceAlone) {
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::markOption(printer.get(), "KvSpecialTape", "ON"));
    const Setting wanted{QStringLiteral("KvSpecialTape"), QStringLiteral("ON")};
    const auto changes = proposeResolution(printer.get(), wanted);
    ASSERT_TRUE(changes);
    const Settings expected{{QStringLiteral("KvAutoTapeCut"), QStringLiteral("OFF")}};
    EXPECT_EQ(*changes, expected);
    EXPECT_STREQ(ppd::findMarkedChoice(printer.get(), "KvAutoTapeCut")->choice, "ON");
}

TEST(ConstraintsTest, AResolutionThatTouchesWhatIsKeptIsNone) {
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::markOption(printer.get(), "KvSpecialTape", "ON"));
    const Setting wanted{QStringLiteral("KvSpecialTape"), QStringLiteral("ON")};
    const Setting kept{QStringLiteral("KvAutoTapeCut"), QStringLiteral("ON")};
    EXPECT_FALSE(proposeResolution(printer.get(), wanted, {kept}));
}

TEST(ConstraintsTest, ConstraintsOfTheNewerFormCountAsWell) {
    const ppd::File printer = test::printerWith(kModernConstraint);
    ASSERT_TRUE(ppd::markOption(printer.get(), "Knife", "ON"));
    EXPECT_TRUE(findConflicts(printer.get()).empty());
    ASSERT_TRUE(ppd::markOption(printer.get(), "Tape", "Thick"));
    EXPECT_EQ(sentences(printer.get()),
              std::vector<std::string>{"“The knife: Cuts (Knife=ON)” and “The tape: Thick "
                                       "(Tape=Thick)” exclude each other."});
}

TEST(ConstraintsTest, ThreeThatOnlyConflictTogetherAreNamedTogether) {
    const ppd::File printer = test::printerWith(
        QByteArray(kModernConstraint)
            .replace("\"*Knife ON *Tape Thick\"", "\"*Knife ON *Tape Thick *PageSize P\""));
    ASSERT_TRUE(ppd::markOption(printer.get(), "Knife", "ON"));
    ASSERT_TRUE(ppd::markOption(printer.get(), "Tape", "Thick"));
    EXPECT_EQ(sentences(printer.get()),
              std::vector<std::string>{"“Size: P (PageSize=P)”, “The knife: Cuts (Knife=ON)” "
                                       "and “The tape: Thick (Tape=Thick)” exclude each other."});
}

TEST(ConstraintsTest, APaperConflictsOnlyWithWhatItExcludes) {
    const ppd::File printer = test::printerWith(
        QByteArray(kModernConstraint) + "*cupsUIConstraints Wide: \"*PageSize P *Tape Thick\"\n");
    ASSERT_TRUE(ppd::markOption(printer.get(), "Knife", "ON"));
    ASSERT_TRUE(ppd::markOption(printer.get(), "Tape", "Thick"));
    EXPECT_EQ(sentences(printer.get()),
              (std::vector<std::string>{
                  "“Size: P (PageSize=P)” and “The tape: Thick (Tape=Thick)” exclude each other.",
                  "“The knife: Cuts (Knife=ON)” and “The tape: Thick (Tape=Thick)” exclude each "
                  "other."}));
    EXPECT_STREQ(ppd::markedPageSize(printer.get())->name, "P");
}

TEST(ConstraintsTest, LookingForConflictsLeavesTheMarks) {
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::markOption(printer.get(), "KvSpecialTape", "ON"));
    ASSERT_TRUE(ppd::markOption(printer.get(), "PageSize", "DC24"));
    EXPECT_EQ(findConflicts(printer.get()).size(), 1U);
    EXPECT_EQ(ppd::conflicts(printer.get()), 1);
    EXPECT_EQ(ppd::findOption(printer.get(), "KvSpecialTape")->conflicted, 1);
    EXPECT_EQ(ppd::findOption(printer.get(), "KvHalfCut")->conflicted, 0);
    EXPECT_STREQ(ppd::findMarkedChoice(printer.get(), "PageSize")->choice, "DC24");
    EXPECT_STREQ(ppd::findMarkedChoice(printer.get(), "KvSpecialTape")->choice, "ON");
    EXPECT_STREQ(ppd::findMarkedChoice(printer.get(), "Density")->choice, "Medium");
}

} // namespace labelcut
