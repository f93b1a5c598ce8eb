// The command line: commands that name no printer, on a real scheduler.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "tests/support/job_fixtures.h"
#include "tests/support/private_cupsd.h"
#include "tests/support/program.h"

namespace labelcut::test {

using testing::HasSubstr;

namespace {

/// Two queues, "Desk" and "Shelf", and a user who has saved nothing yet.
class DefaultPrinterTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(mCupsd.start()) << mCupsd.errorLog().toStdString();
        for (const QString& name : {QStringLiteral("Desk"), QStringLiteral("Shelf")})
            ASSERT_TRUE(mCupsd.addQueue(name, kTapePpd)) << mCupsd.errorLog().toStdString();
        ASSERT_TRUE(QDir(mHome.path({})).mkdir(QStringLiteral(".cups")));
    }
    void saveOptions(const QByteArray& lines) const {
        mHome.file(QStringLiteral(".cups/lpoptions"), lines);
    }
    Outcome runWith(const QStringList& arguments,
                    std::map<QString, QString> environment = {}) const {
        Start wanted;
        wanted.arguments = arguments;
        wanted.environment = std::move(environment);
        wanted.environment[QStringLiteral("CUPS_SERVER")] = mCupsd.socketPath();
        wanted.environment[QStringLiteral("HOME")] = mHome.path({});
        wanted.environment[QStringLiteral("XDG_CONFIG_HOME")] = mHome.path({});
        return run(wanted);
    }
    Outcome print(std::map<QString, QString> environment = {}) const {
        return runWith({QStringLiteral("print"), kLabels}, std::move(environment));
    }

    PrivateCupsd mCupsd;
    const Folder mHome;
};

const QString kDestination = QStringLiteral("LPDEST");
const QString kPrinter = QStringLiteral("PRINTER");

} // namespace

TEST_F(DefaultPrinterTest, PrintingNamesTheDefaultQueueInItsReport) {
    ASSERT_TRUE(mCupsd.makeDefault(QStringLiteral("Desk")));
    const Outcome service = print();
    EXPECT_EQ(service.status, 0) << service.err;
    EXPECT_EQ(service.err, "labelcut: The printer is the default one, \"Desk\".\n");
    EXPECT_THAT(service.out, HasSubstr("the queue \"Desk\" as job Desk-1"));

    saveOptions("Default Shelf KvHalfCut=ON\n");
    const Outcome saved = print();
    EXPECT_THAT(saved.out, HasSubstr("the queue \"Shelf\" as job Shelf-2"));
    EXPECT_THAT(saved.out, HasSubstr("KvHalfCut=ON"));

    EXPECT_THAT(print({{kPrinter, QStringLiteral("Desk")}}).out, HasSubstr("as job Desk-3"));
    EXPECT_THAT(
        print({{kPrinter, QStringLiteral("Desk")}, {kDestination, QStringLiteral("Shelf")}}).out,
        HasSubstr("as job Shelf-4"));
}

TEST_F(DefaultPrinterTest, OtherCommandsNameItBesideTheirOutput) {
    const std::map<QString, QString> shelf{{kDestination, QStringLiteral("Shelf")}};
    const char* const sentence = "labelcut: The printer is the default one, \"Shelf\".\n";
    const QString picture = mHome.path(QStringLiteral("panel.png"));
    for (const QStringList& arguments :
         {words("options"), words("snapshot -o") << picture,
          words("presets save Cut --set KvHalfCut=ON"), words("presets list"),
          words("presets show Cut"), words("presets rename Cut Half"),
          words("presets remove Half")}) {
        const Outcome outcome = runWith(arguments, shelf);
        EXPECT_EQ(outcome.status, 0) << arguments.join(u' ').toStdString();
        EXPECT_EQ(outcome.err, sentence) << arguments.join(u' ').toStdString();
    }
    EXPECT_TRUE(QFile::exists(picture));
    const Outcome named = runWith(words("options --printer Shelf"));
    EXPECT_EQ(named.status, 0);
    EXPECT_EQ(named.err, "");
}

TEST_F(DefaultPrinterTest, WithoutADefaultTheSentenceSaysWhatToName) {
    for (const QStringList& arguments :
         {QStringList{QStringLiteral("print"), kLabels}, words("options"), words("presets list"),
          words("snapshot -o picture.png")}) {
        const Outcome outcome = runWith(arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err, "labelcut: There is no default printer; name one with --printer, or "
                               "a PPD with --ppd.\n");
    }
}

TEST_F(DefaultPrinterTest, ADefaultThatDoesNotExistIsNamed) {
    const Outcome outcome = print({{kDestination, QStringLiteral("Attic")}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, testing::MatchesRegex(
                                 "labelcut: The printer is the default one, \"Attic\".\n"
                                 "labelcut: The print service at .* has no queue “Attic”.*\n"));
}

} // namespace labelcut::test
