// Security: what is written is its owner's alone, whatever the umask is.
#include <sys/stat.h>

#include <QDir>
#include <QDirIterator>

#include <csignal>

#include "host/presets/preset_store.h"
#include "host/printers/recent_printer.h"
#include "tests/faults/fault_fixtures.h"

namespace labelcut::test {

namespace {

/// While one lives, files are made with the most rights that are asked for.
class OpenUmask {
public:
    OpenUmask()
        : mBefore(umask(0)) {}
    ~OpenUmask() { umask(mBefore); }
    OpenUmask(const OpenUmask&) = delete;
    OpenUmask& operator=(const OpenUmask&) = delete;

private:
    mode_t mBefore;
};

mode_t modeOf(const QString& path) {
    struct stat status {};
    EXPECT_EQ(lstat(QFile::encodeName(path).constData(), &status), 0) << path.toStdString();
    return status.st_mode & 07777;
}

class FileSecurityTest : public testing::Test {
protected:
    std::optional<Offscreen> mOffscreen;
    PrivateHome mHome;
    /// Has temporary files, too, which are not looked at.
    PrivateCupsd mService;
    PrivateTemporaries mTemporaries;
    OpenUmask mUmask;
};

} // namespace

TEST_F(FileSecurityTest, TemporaryFilesArePrivateWhileADocumentIsWorkedOn) {
    RunningProgram program({QStringLiteral("print"),
                            endlessPostScript(mHome.path(QStringLiteral("endless.ps"))),
                            QStringLiteral("--ppd"), kTapePpd, QStringLiteral("-o"),
                            mHome.path(QStringLiteral("out.ps"))});
    ASSERT_TRUE(turnUntil([&] { return !mTemporaries.entries().isEmpty(); }));
    turnFor(200);
    ASSERT_EQ(mTemporaries.entries().size(), 1) << "one folder that holds all";
    const QString folder = mTemporaries.entries().front();
    EXPECT_TRUE(folder.endsWith(u'/'));
    EXPECT_EQ(modeOf(mTemporaries.path() + u'/' + folder), 0700U);
    program.signal(SIGTERM);
    EXPECT_EQ(program.endedBy(), SIGTERM);
    EXPECT_TRUE(mTemporaries.entries().isEmpty());
}

TEST_F(FileSecurityTest, TemporaryNamesCannotBeForeseen) {
    QSet<QString> names;
    for (int i = 0; i < 20; ++i) {
        const auto document = JobDocument::prepare({kLabels}, std::nullopt);
        ASSERT_TRUE(document);
        names.insert(document->folder());
    }
    EXPECT_EQ(names.size(), 20);
}

TEST_F(FileSecurityTest, ThePpdOfAQueueIsLeftNowhere) {
    ASSERT_TRUE(mService.start()) << mService.errorLog().toStdString();
    ASSERT_TRUE(mService.addQueue(QStringLiteral("tape"), kTapePpd));
    DialogRequest request;
    request.queue = QStringLiteral("tape");
    mOffscreen.emplace();
    auto dialog =
        openDialog(request, CupsConnection(*ServiceAddress::fromText(mService.socketPath())));
    ASSERT_TRUE(turnUntil([&] { return dialog->model().hasPrinter(); }));
    settle();
    EXPECT_EQ(mTemporaries.entries(), QStringList()) << "the PPD is in memory once it is open";
}

TEST_F(FileSecurityTest, ConfigurationIsItsOwnersAlone) {
    {
        mOffscreen.emplace();
        const auto dialog = openDialog(kTapePpd);
        EXPECT_TRUE(rememberQueue(QStringLiteral("tape")));
        Preset preset;
        preset.name = QStringLiteral("Shelf");
        PresetStore store;
        ASSERT_TRUE(
            store.save(PrinterIdentity::forPpd(dialog->model().ppd()), preset, Overwrite::No));
        dialog->done(QDialog::Rejected);
    }
    const QString config = mHome.path(QStringLiteral("config"));
    int files = 0;
    QDirIterator all(config, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                     QDirIterator::Subdirectories);
    EXPECT_EQ(modeOf(config), 0700U);
    while (all.hasNext()) {
        all.next();
        const bool isFolder = all.fileInfo().isDir();
        files += isFolder ? 0 : 1;
        EXPECT_EQ(modeOf(all.filePath()), isFolder ? 0700U : 0600U) << all.filePath().toStdString();
    }
    EXPECT_EQ(files, 3) << "presets, the last printer, the window's size";
}

TEST_F(FileSecurityTest, AConfigurationMadeByTheWindowAloneIsPrivateToo) {
    {
        DialogRequest request;
        mOffscreen.emplace();
        const auto dialog = openDialog(request);
        dialog->done(QDialog::Rejected);
    }
    EXPECT_EQ(modeOf(mHome.path(QStringLiteral("config/labelcut"))), 0700U);
    EXPECT_EQ(modeOf(mHome.path(QStringLiteral("config/labelcut/labelcut.ini"))), 0600U);
}

TEST_F(FileSecurityTest, AFileIsReplacedAndNotWrittenThrough) {
    // Who has the old file open, or another name for it, sees nothing of the new one.
    const QString output = fileWith(mHome.path(QStringLiteral("out.ps")), "older");
    const QString other = mHome.path(QStringLiteral("other"));
    ASSERT_EQ(link(QFile::encodeName(output).constData(), QFile::encodeName(other).constData()), 0);
    const Outcome outcome = run({QStringLiteral("print"), kLabels, QStringLiteral("--ppd"),
                                 kTapePpd, QStringLiteral("-o"), output});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(contentOf(other), "older");
    EXPECT_TRUE(contentOf(output).startsWith("%!PS"));
}

} // namespace labelcut::test
