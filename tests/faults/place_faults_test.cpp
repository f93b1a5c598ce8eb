// Faults of places: full disks, and folders that nobody may write to, for everything that is kept.
#include <QDir>

#include <QInputDialog>

#include "tests/faults/fault_fixtures.h"

namespace labelcut::test {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class PlaceFaultTest : public testing::Test {
protected:
    /// Even root can put nothing below a regular file.
    QString nowhere(const QString& name) {
        return fileWith(mHome.path(QStringLiteral("file")), "") + u'/' + name;
    }
    void open() {
        mOffscreen.emplace();
        mDialog = openDialog(kTapePpd);
        makeChoices(*mDialog);
        mMarks = mDialog->model().marks();
    }
    void savePreset(const char* name) {
        click(*part<QPushButton>(*mDialog, "savePreset"));
        auto* ask = mDialog->findChild<QInputDialog*>();
        ASSERT_TRUE(ask);
        ask->setTextValue(QLatin1String(name));
        ask->accept();
        settle();
    }
    void expectStillUsable() {
        EXPECT_TRUE(mDialog->isVisible());
        EXPECT_EQ(mDialog->model().marks(), mMarks);
        EXPECT_TRUE(part<QPushButton>(*mDialog, "print")->isEnabled());
        expectOneTruth(*mDialog);
    }
    Outcome runWith(const QStringList& arguments, const char* name, const QString& value) {
        Start start;
        start.arguments = arguments;
        start.environment[QStringLiteral("TMPDIR")] = mTemporaries.path();
        start.environment[QString::fromLatin1(name)] = value;
        return run(start);
    }
    QStringList printInto(const QString& output) const {
        return {QStringLiteral("print"), kLabels, QStringLiteral("--ppd"), kTapePpd,
                QStringLiteral("-o"),    output};
    }

    std::optional<Offscreen> mOffscreen;
    PrivateHome mHome;
    PrivateTemporaries mTemporaries;
    std::unique_ptr<PrintDialog> mDialog;
    Settings mMarks;
};

} // namespace

TEST_F(PlaceFaultTest, AFullDiskWhileAFileIsWrittenKeepsTheDialogAndTheOlderFile) {
    open();
    const QString output = fileWith(mHome.path(QStringLiteral("out.ps")), "older");
    {
        // Pages that are drawn meanwhile would have no room either.
        ASSERT_TRUE(turnUntil([&] { return mDialog->isComplete(); }));
        // Less than the job has.
        const FullDisk disk(20'000);
        pressPrint(*mDialog, output);
        ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    }
    EXPECT_THAT(messagesOf(*mDialog), HasSubstr("make room"));
    EXPECT_EQ(contentOf(output), "older");
    expectStillUsable();
    pressPrint(*mDialog, output);
    ASSERT_TRUE(turnUntil([&] { return !mDialog->isVisible(); }));
    EXPECT_TRUE(contentOf(output).contains("%%BeginFeature: *KvHalfCut ON"));
}

TEST_F(PlaceFaultTest, ADeviceThatIsFullIsNamedByTheDialog) {
    open();
    pressPrint(*mDialog, QStringLiteral("/dev/full"));
    ASSERT_TRUE(turnUntilTold(*mDialog, "“/dev/full” cannot be written (No space left"));
    expectStillUsable();
}

TEST_F(PlaceFaultTest, APresetThatCannotBeKeptIsToldAndTheOthersStay) {
    open();
    savePreset("Shelf");
    ASSERT_THAT(messagesOf(*mDialog), IsEmpty());
    {
        const FullDisk disk(16);
        savePreset("Drawer");
    }
    EXPECT_THAT(messagesOf(*mDialog), HasSubstr("Make room on the disk"));
    EXPECT_EQ(part<QComboBox>(*mDialog, "presets")->count(), 1);
    expectStillUsable();
    savePreset("Drawer");
    EXPECT_EQ(part<QComboBox>(*mDialog, "presets")->count(), 2);
}

TEST_F(PlaceFaultTest, WithoutAPlaceForConfigurationTheDialogWorksAndSaysWhatItCannotKeep) {
    const Environment config("XDG_CONFIG_HOME", QFile::encodeName(nowhere(QStringLiteral("c"))));
    const QString output = mHome.path(QStringLiteral("out.ps"));
    open();
    savePreset("Shelf");
    EXPECT_THAT(messagesOf(*mDialog), HasSubstr("cannot be written"));
    expectStillUsable();
    pressPrint(*mDialog, output);
    ASSERT_TRUE(turnUntil([&] { return !mDialog->isVisible(); })) << messagesOf(*mDialog);
    EXPECT_TRUE(QFile::exists(output));
}

TEST_F(PlaceFaultTest, WithoutAPlaceForConfigurationACommandPrintsAndPresetsSayWhy) {
    const QString config = nowhere(QStringLiteral("c"));
    const QString output = mHome.path(QStringLiteral("out.ps"));
    EXPECT_EQ(runWith(printInto(output), "XDG_CONFIG_HOME", config).status, 0);
    EXPECT_TRUE(QFile::exists(output));
    const Outcome saved = runWith({QStringLiteral("presets"), QStringLiteral("save"),
                                   QStringLiteral("--ppd"), kTapePpd, QStringLiteral("--set"),
                                   QStringLiteral("KvHalfCut=ON"), QStringLiteral("Shelf")},
                                  "XDG_CONFIG_HOME", config);
    EXPECT_EQ(saved.status, 1);
    EXPECT_THAT(saved.err, AllOf(HasSubstr(config.toStdString()), HasSubstr("then try again")));
}

TEST_F(PlaceFaultTest, WithoutAPlaceForTemporaryFilesTheWayOutIsNamed) {
    const QString output = mHome.path(QStringLiteral("out.ps"));
    const QString folder = nowhere(QStringLiteral("t"));
    const Outcome outcome = runWith(printInto(output), "TMPDIR", folder);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("No temporary folder can be made"),
                                   HasSubstr("set TMPDIR to a folder with room")));
    EXPECT_FALSE(QFile::exists(output));

    open();
    {
        const Environment temporary("TMPDIR", QFile::encodeName(folder));
        pressPrint(*mDialog, output);
        ASSERT_TRUE(turnUntilTold(*mDialog, "No temporary folder can be made"));
    }
    expectStillUsable();
}

TEST_F(PlaceFaultTest, AFullDiskAtAnySizeLeavesNothingBehind) {
    const QString output = mHome.path(QStringLiteral("out.ps"));
    for (const rlim_t size : {rlim_t{0}, rlim_t{1'000}, rlim_t{20'000}, rlim_t{60'000}}) {
        Start start;
        start.arguments = printInto(output);
        start.environment[QStringLiteral("TMPDIR")] = mTemporaries.path();
        // Where a profile is taken, it would be cut short, too.
        start.environment[QStringLiteral("GCOV_PREFIX")] = mHome.path(QStringLiteral("profile"));
        start.environment[QStringLiteral("GCOV_ERROR_FILE")] = QStringLiteral("/dev/null");
        start.prepare = [size] {
            const rlimit limit{size, size};
            setrlimit(RLIMIT_FSIZE, &limit);
        };
        const Outcome outcome = run(start);
        EXPECT_EQ(outcome.status, 1) << size;
        EXPECT_THAT(outcome.err, testing::StartsWith("labelcut: ")) << size;
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
        EXPECT_THAT(mTemporaries.entries(), IsEmpty()) << size;
        EXPECT_FALSE(QFile::exists(output)) << size;
        EXPECT_EQ(QDir(mHome.path(QString())).entryList({QStringLiteral("out*")}).size(), 0);
    }
}

TEST_F(PlaceFaultTest, StandardOutputThatIsFullIsAFailure) {
    Start start;
    start.arguments = {QStringLiteral("options"), QStringLiteral("--ppd"), kTapePpd};
    start.prepare = [] {
        if (!std::freopen("/dev/full", "w", stdout))
            _exit(99);
    };
    const Outcome outcome = run(start);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err,
                HasSubstr("cannot be written to standard output (No space left on device)"));
}

} // namespace labelcut::test
