// The command line: "labelcut presets", and printing with what was kept.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>

#include "tests/support/job_fixtures.h"
#include "tests/support/program.h"

namespace labelcut::test {

using testing::HasSubstr;
using testing::StartsWith;

namespace {

class PresetsCommandTest : public testing::Test {
protected:
    /// "labelcut COMMAND… --ppd PPD MORE…", with a configuration of the test's own.
    Outcome labelcut(const char* command, const QStringList& more = {},
                     const QString& ppd = kTapePpd) const {
        return withConfiguration(words(command) + QStringList{QStringLiteral("--ppd"), ppd} + more);
    }
    Outcome withConfiguration(const QStringList& arguments) const {
        Start start;
        start.arguments = arguments;
        start.environment[QStringLiteral("XDG_CONFIG_HOME")] =
            mFolder.path(QStringLiteral("config"));
        return run(start);
    }
    std::string listed() const { return labelcut("presets list").out; }
    /// Prints the labels. @return what was said; the output is in printed().
    Outcome print(const char* more, const QString& ppd = kTapePpd) const {
        return labelcut("print", QStringList{kLabels, QStringLiteral("-o"), output()} + words(more),
                        ppd);
    }
    QString output() const { return mFolder.path(QStringLiteral("out.ps")); }
    std::string printed() const { return contentOf(output()).toStdString(); }
    /// The one file of presets.
    QString presetFile() const {
        QDirIterator files(mFolder.path(QStringLiteral("config")), {QStringLiteral("*.json")},
                           QDir::Files, QDirIterator::Subdirectories);
        return files.hasNext() ? files.next() : QString();
    }

    Folder mFolder;
};

} // namespace

TEST_F(PresetsCommandTest, WhatIsKeptIsListedShownRenamedAndRemoved) {
    const Outcome saved =
        labelcut("presets save Half --set KvHalfCut=ON --page-size T12 --copies 3");
    EXPECT_EQ(saved.status, 0) << saved.err;
    EXPECT_EQ(labelcut("presets save Plain").status, 0);
    EXPECT_EQ(listed(), "Half\nPlain\n");
    EXPECT_EQ(labelcut("presets show Half").out, "PageSize=T12\nKvHalfCut=ON\ncopies=3\n");
    const Outcome renamed = labelcut("presets rename Half Shelf");
    EXPECT_EQ(renamed.status, 0) << renamed.err;
    EXPECT_EQ(listed(), "Plain\nShelf\n");
    EXPECT_EQ(labelcut("presets rename Shelf Plain --replace").status, 0);
    EXPECT_THAT(labelcut("presets show Plain").out, HasSubstr("KvHalfCut=ON"));
    EXPECT_EQ(labelcut("presets remove Plain").status, 0);
    EXPECT_EQ(listed(), "");
}

TEST_F(PresetsCommandTest, APasswordIsNotKeptAndThatIsTold) {
    const QString ppd = mFolder.file(QStringLiteral("held.ppd"), contentOf(kTapePpd) + R"ppd(
*OpenUI *Release/Held job: PickOne
*DefaultRelease: None
*Release None/No: ""
*CloseUI: *Release
*CustomRelease True/With a password: "pop"
*ParamCustomRelease Secret/Password: 1 password 4 8
)ppd");
    const Outcome saved =
        labelcut("presets save Held --set Release=Custom.s3cr3t --set KvHalfCut=ON", {}, ppd);
    EXPECT_EQ(saved.status, 0);
    EXPECT_THAT(saved.err, HasSubstr("“Held job” holds a password, which is not kept"));
    EXPECT_FALSE(contentOf(presetFile()).contains("s3cr3t"));
    EXPECT_EQ(labelcut("presets show Held", {}, ppd).out, "KvHalfCut=ON\ncopies=1\n");
    const Outcome printed = print("--set Release=Custom.s3cr3t", ppd);
    EXPECT_EQ(printed.status, 0) << printed.err;
    EXPECT_THAT(printed.out, HasSubstr("Release=Custom.••••"));
    EXPECT_THAT(printed.out + printed.err, testing::Not(HasSubstr("s3cr3t")));
    const Outcome refused = print("--set Release=Custom.s3cr3tAndMuchTooLong", ppd);
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.out + refused.err, testing::Not(HasSubstr("s3cr3t")));
}

TEST_F(PresetsCommandTest, WhatCannotBeDoneIsOneSentenceAndChangesNothing) {
    ASSERT_EQ(labelcut("presets save One --set KvHalfCut=ON").status, 0);
    ASSERT_EQ(labelcut("presets save Two").status, 0);
    const QByteArray before = contentOf(presetFile());
    const QString text = mFolder.file(QStringLiteral("text.ppd"), "hello\n");
    struct Row {
        const char* command;
        QString ppd;
        const char* sentence;
    };
    const Row rows[] = {
        {"presets save One", kTapePpd, "One"},
        {"presets rename One Two", kTapePpd, "Two"},
        {"presets rename None Three", kTapePpd, "None"},
        {"presets show None", kTapePpd, "None"},
        {"presets remove None", kTapePpd, "None"},
        {"presets save Three --set KvHalfCut=MAYBE", kTapePpd, "MAYBE"},
        {"presets list", mFolder.path(QStringLiteral("none.ppd")), "none.ppd” does not exist"},
        {"presets list", mFolder.path(QStringLiteral(".")), "is no file"},
        {"presets list", text, "text.ppd” is no usable PPD: Missing asterisk"},
        {"print f -o o --preset None", kTapePpd, "None"},
    };
    for (const Row& row : rows) {
        const Outcome outcome = labelcut(row.command, {}, row.ppd);
        EXPECT_EQ(outcome.status, 1) << row.command;
        EXPECT_EQ(outcome.out, "") << row.command;
        EXPECT_THAT(outcome.err, StartsWith("labelcut: "));
        EXPECT_THAT(outcome.err, HasSubstr(row.sentence)) << row.command;
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
        EXPECT_EQ(contentOf(presetFile()), before) << row.command;
    }
}

TEST_F(PresetsCommandTest, AQueuesPresetsNeedNoPrintServiceButToBeSaved) {
    const Outcome list = withConfiguration(words("presets list --printer shelf"));
    EXPECT_EQ(list.status, 0) << list.err;
    EXPECT_EQ(list.out + list.err, "");
    const Outcome saved = withConfiguration(words("presets save One --printer shelf"));
    EXPECT_EQ(saved.status, 1);
    EXPECT_THAT(saved.err, HasSubstr("print service"));
}

TEST_F(PresetsCommandTest, ADamagedFileIsToldAndTheRestIsDone) {
    ASSERT_EQ(labelcut("presets save One").status, 0);
    QFile file(presetFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{ broken");
    file.close();
    const Outcome list = labelcut("presets list");
    EXPECT_EQ(list.status, 0);
    EXPECT_EQ(list.out, "");
    EXPECT_THAT(list.err, HasSubstr(file.fileName().toStdString()));
}

TEST_F(PresetsCommandTest, APresetIsPrintedAndWhatIsSetBesideItWins) {
    ASSERT_EQ(labelcut("presets save Mine --set KvHalfCut=ON --set Density=Dark").status, 0);
    const Outcome kept = print("--preset Mine");
    EXPECT_EQ(kept.status, 0) << kept.err;
    EXPECT_THAT(printed(), HasSubstr("%%BeginFeature: *KvHalfCut ON"));
    EXPECT_THAT(printed(), HasSubstr("%%BeginFeature: *Density Dark"));
    const Outcome overruled = print("--preset Mine --set KvHalfCut=OFF");
    EXPECT_EQ(overruled.status, 0) << overruled.err;
    EXPECT_THAT(printed(), HasSubstr("%%BeginFeature: *KvHalfCut OFF"));
    EXPECT_THAT(printed(), HasSubstr("%%BeginFeature: *Density Dark"));
}

TEST_F(PresetsCommandTest, WhatThePrinterNoLongerHasOfAPresetIsToldAndTheRestPrinted) {
    ASSERT_EQ(labelcut("presets save Mine --set KvHalfCut=ON --set Density=Dark").status, 0);
    const QString changed =
        mFolder.file(QStringLiteral("changed.ppd"),
                     contentOf(kTapePpd).replace("Density Dark/", "Density Darker/"));
    const Outcome outcome = print("--preset Mine", changed);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("Dark"));
    EXPECT_THAT(printed(), HasSubstr("%%BeginFeature: *KvHalfCut ON"));
}

} // namespace labelcut::test
