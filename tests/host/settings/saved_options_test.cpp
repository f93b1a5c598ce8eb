// The options that are kept for queues, read from files.
#include "host/settings/saved_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>

#include "tests/support/preset_fixtures.h"

namespace labelcut {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

Setting option(const char* name, const char* value) {
    return {text(name), text(value)};
}

SavedOptions saved(const QByteArray& contents) {
    SavedOptions all;
    addSavedOptions(all, contents);
    return all;
}

} // namespace

TEST(OptionTextTest, EveryFormIsTaken) {
    EXPECT_THAT(
        parseOptionText("KvHalfCut=ON  sides=one\tcopies=2"),
        ElementsAre(option("KvHalfCut", "ON"), option("sides", "one"), option("copies", "2")));
    EXPECT_THAT(parseOptionText("fit-to-page nocollate no"),
                ElementsAre(option("fit-to-page", "true"), option("collate", "false")));
    EXPECT_THAT(parseOptionText(R"(a="two words" b='it is' c=back\ slash d="q\"q" e=)"),
                ElementsAre(option("a", "two words"), option("b", "it is"),
                            option("c", "back slash"), option("d", "q\"q"), option("e", "")));
    EXPECT_THAT(parseOptionText("a={x=1 y={z=2}} b=1"),
                ElementsAre(option("a", "{x=1 y={z=2}}"), option("b", "1")));
    EXPECT_THAT(parseOptionText("{Width=3 Gap=1}"),
                ElementsAre(option("Width", "3"), option("Gap", "1")));
    EXPECT_THAT(parseOptionText("a=1 A=2"), ElementsAre(option("a", "2")));
    EXPECT_THAT(parseOptionText("job-sheets=none,none"),
                ElementsAre(option("job-sheets", "none,none")));
}

TEST(OptionTextTest, DamageEndsItQuietly) {
    EXPECT_THAT(parseOptionText(""), IsEmpty());
    EXPECT_THAT(parseOptionText("   "), IsEmpty());
    EXPECT_THAT(parseOptionText("=x"), IsEmpty());
    EXPECT_THAT(parseOptionText("a=\"open"), ElementsAre(option("a", "open")));
    EXPECT_THAT(parseOptionText("a={open"), ElementsAre(option("a", "{open")));
    EXPECT_THAT(parseOptionText("a=x\\"), ElementsAre(option("a", "x\\")));
    EXPECT_THAT(parseOptionText("{"), ElementsAre(option("{", "true")));
}

TEST(SavedOptionsTest, LinesAreReadAndOthersPassedOver) {
    const SavedOptions all = saved("# a comment\n"
                                   "\n"
                                   "Dest tape KvHalfCut=ON # not this\n"
                                   "dest roll/Big KvCutLabel=9\n"
                                   "Default roll\n"
                                   "Nonsense tape KvHalfCut=OFF\n"
                                   "Dest\n"
                                   "Dest /x a=b\n"
                                   "\xff\xfe zzz\n"
                                   "Dest note text=\"number \\#1\"");
    EXPECT_THAT(all.optionsOf({text("tape"), {}}), ElementsAre(option("KvHalfCut", "ON")));
    EXPECT_THAT(all.optionsOf({text("TAPE"), {}}), ElementsAre(option("KvHalfCut", "ON")));
    EXPECT_THAT(all.optionsOf({text("roll"), text("Big")}), ElementsAre(option("KvCutLabel", "9")));
    EXPECT_THAT(all.optionsOf({text("roll"), {}}), IsEmpty());
    EXPECT_THAT(all.optionsOf({text("none"), {}}), IsEmpty());
    EXPECT_THAT(all.optionsOf({text("note"), {}}), ElementsAre(option("text", "number #1")));
    EXPECT_EQ(all.defaultDestination, (Destination{text("roll"), {}}));
}

TEST(SavedOptionsTest, TheUsersFileOverridesTheSystems) {
    const test::Folder folder;
    const QString system = folder.path(text("system"));
    const QString user = folder.path(text("user"));
    test::writeFile(system, "Default tape KvHalfCut=ON KvCutLabel=2\n");
    test::writeFile(user, "Dest tape KvCutLabel=9\nDest tape/narrow PageSize=DC12\n");
    const SavedOptions all = readSavedOptions({system, user, folder.path(text("missing"))});
    EXPECT_THAT(all.problems, IsEmpty());
    EXPECT_THAT(all.optionsOf({text("tape"), {}}),
                ElementsAre(option("KvHalfCut", "ON"), option("KvCutLabel", "9")));
    EXPECT_THAT(all.optionsOf({text("tape"), text("narrow")}),
                ElementsAre(option("KvHalfCut", "ON"), option("KvCutLabel", "9"),
                            option("PageSize", "DC12")))
        << "an instance begins with the options of its queue";
    EXPECT_EQ(all.defaultDestination, (Destination{text("tape"), {}}));
}

TEST(SavedOptionsTest, AFileThatCannotBeReadIsToldAndTheOthersCount) {
    const test::Folder folder;
    const QString huge = folder.path(text("huge"));
    const QString closed = folder.path(text("closed"));
    const QString pipe = folder.path(text("pipe"));
    const QString good = folder.path(text("good"));
    test::writeFile(huge, QByteArray(1024 * 1024 + 1, '#'));
    test::writeFile(closed, "Dest tape a=1\n");
    test::writeFile(good, "Dest tape b=2\n");
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    ASSERT_EQ(chmod(QFile::encodeName(closed).constData(), 0000), 0);
    ASSERT_EQ(chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
    const test::Unprivileged user;
    const SavedOptions all = readSavedOptions({huge, closed, folder.path(), pipe, good});
    ASSERT_EQ(all.problems.size(), 4);
    EXPECT_THAT(all.problems.at(1).toStdString(), HasSubstr(closed.toStdString()));
    EXPECT_THAT(all.optionsOf({text("tape"), {}}), ElementsAre(option("b", "2")));
}

TEST(SavedOptionsTest, TheFilesAreWhereTheSystemSays) {
    const test::Environment root("CUPS_SERVERROOT", "/somewhere");
    EXPECT_EQ(savedOptionFiles(), (QStringList{text("/somewhere/lpoptions"),
                                               QDir::homePath() + text("/.cups/lpoptions")}));
    const test::Environment none("CUPS_SERVERROOT", "");
    EXPECT_EQ(savedOptionFiles().front(), text("/etc/cups/lpoptions"));
}

TEST(SavedOptionsTest, TheEnvironmentNamesTheDefault) {
    const SavedOptions all = saved("Default tape/narrow\n");
    const test::Environment lpdest("LPDEST", "");
    const test::Environment printer("PRINTER", "");
    EXPECT_EQ(defaultDestination(all), (Destination{text("tape"), text("narrow")}));
    EXPECT_EQ(defaultDestination({}), std::nullopt);
    qputenv("PRINTER", "lp");
    EXPECT_EQ(defaultDestination(all)->queue, text("tape"));
    qputenv("PRINTER", "roll/Big");
    EXPECT_EQ(defaultDestination(all), (Destination{text("roll"), text("Big")}));
    qputenv("LPDEST", "lp");
    EXPECT_EQ(defaultDestination(all)->queue, text("lp"));
}

TEST(StartingPointTest, OptionsAreSortedByWhoTheyAreFor) {
    const ppd::File ppd = test::tapePrinter();
    const StartingPoint start = startingPoint(
        ppd.get(), {option("KvHalfCut", "ON"), option("copies", "4"), option("job-sheets", "none"),
                    option("KvCutLabel", "77"), option("media", "Roll,DC12")});
    EXPECT_THAT(start.match.applicable,
                ElementsAre(option("PageSize", "DC12"), option("KvHalfCut", "ON")));
    ASSERT_EQ(start.match.missing.size(), 1U);
    EXPECT_EQ(start.match.missing.front().keyword, text("KvCutLabel"));
    EXPECT_THAT(start.others, ElementsAre(option("job-sheets", "none")));
    EXPECT_EQ(start.copies, 4);
}

TEST(StartingPointTest, APageSizeGoesBeforeAMedium) {
    const ppd::File ppd = test::tapePrinter();
    const StartingPoint start =
        startingPoint(ppd.get(), {option("media", "DC12"), option("PageSize", "DC24")});
    EXPECT_THAT(start.match.applicable, ElementsAre(option("PageSize", "DC24")));
}

TEST(StartingPointTest, CopiesStayWithinReason) {
    for (const auto& [value, copies] :
         {std::pair("0", 1), std::pair("x", 1), std::pair("-3", 1), std::pair("123456", 9'999)})
        EXPECT_EQ(startingPoint(nullptr, {option("copies", value)}).copies, copies);
}

} // namespace labelcut
