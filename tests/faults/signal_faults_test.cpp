// Faults of the session: the program is told to end, its bus or its display goes away.
#include <QDir>
#include <QSettings>

#include <csignal>

#include "tests/faults/fault_fixtures.h"
#include "tests/support/made_pdf.h"

namespace labelcut::test {

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class SignalFaultTest : public testing::Test {
protected:
    /// A dialog that has Ghostscript at work on a document without end.
    QStringList busyDialog() const {
        return {QStringLiteral("dialog"), QStringLiteral("--ppd"), kTapePpd,
                endlessPostScript(mHome.path(QStringLiteral("endless.ps")))};
    }
    /// Whether it has begun: Ghostscript is in the folder that it works in.
    bool waitUntilBusy() const {
        return turnUntil([&] { return !workersLeft().isEmpty(); });
    }
    /// Programs whose folder of work is one of the temporary ones.
    QStringList workersLeft() const {
        QStringList all;
        const QDir processes(QStringLiteral("/proc"));
        for (const QString& id : processes.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            const QString folder =
                QFile::symLinkTarget(processes.filePath(id) + QStringLiteral("/cwd"));
            if (folder.startsWith(mTemporaries.path()))
                all << id;
        }
        return all;
    }
    void expectNothingLeft() const {
        EXPECT_TRUE(turnUntil([&] { return workersLeft().isEmpty(); }, 2'000));
        EXPECT_THAT(mTemporaries.entries(), IsEmpty());
    }

    PrivateHome mHome;
    PrivateTemporaries mTemporaries;
};

/// A display without a screen, which is named once it can be reached.
constexpr char kWayland[] = R"(
(until [ -S "$XDG_RUNTIME_DIR/labels" ]; do sleep 0.05; done; echo labels) &
exec weston --no-config --backend=headless-backend.so --shell=kiosk-shell.so --socket=labels \
    --idle-time=0 --log=/dev/null
)";

class EndingTest : public SignalFaultTest, public testing::WithParamInterface<int> {};

} // namespace

TEST_P(EndingTest, ADialogAtWorkGoesAndLeavesNothing) {
    RunningProgram program(busyDialog());
    ASSERT_TRUE(waitUntilBusy());
    program.signal(GetParam());
    EXPECT_EQ(program.endedBy(), GetParam());
    expectNothingLeft();
    // As on every close.
    const QSettings kept(mHome.path(QStringLiteral("config/labelcut/labelcut.ini")),
                         QSettings::IniFormat);
    EXPECT_TRUE(kept.contains(QStringLiteral("dialog/geometry")));
}

TEST_P(EndingTest, ACommandAtWorkGoesAndLeavesNothing) {
    const QString output = fileWith(mHome.path(QStringLiteral("out.ps")), "older");
    RunningProgram program({QStringLiteral("print"),
                            endlessPostScript(mHome.path(QStringLiteral("endless.ps"))),
                            QStringLiteral("--ppd"), kTapePpd, QStringLiteral("-o"), output});
    ASSERT_TRUE(waitUntilBusy());
    program.signal(GetParam());
    EXPECT_EQ(program.endedBy(), GetParam());
    EXPECT_EQ(program.err(), "labelcut: Cancelled; nothing is printed.\n");
    EXPECT_EQ(contentOf(output), "older");
    expectNothingLeft();
}

TEST_P(EndingTest, ACommandAtManyPagesGoesSoonAndLeavesNothing) {
    const QString document =
        fileWith(mHome.path(QStringLiteral("many.pdf")), pdfOfPages(kManyPages));
    RunningProgram program({QStringLiteral("print"), document, QStringLiteral("--ppd"), kTapePpd,
                            QStringLiteral("--fit"), QStringLiteral("scale"), QStringLiteral("-o"),
                            mHome.path(QStringLiteral("out.ps"))});
    ASSERT_TRUE(turnUntil([&] { return !mTemporaries.entries().isEmpty(); }));
    turnFor(500);
    program.signal(GetParam());
    int ended = 0;
    EXPECT_LT(timeOf([&] { ended = program.endedBy(); }), 2'000);
    EXPECT_EQ(ended, GetParam());
    EXPECT_EQ(program.err(), "labelcut: Cancelled; nothing is printed.\n");
    EXPECT_FALSE(QFile::exists(mHome.path(QStringLiteral("out.ps"))));
    expectNothingLeft();
}

TEST_P(EndingTest, ADialogAtManyPagesGoesAndLeavesNothing) {
    RunningProgram program(
        {QStringLiteral("dialog"), QStringLiteral("--ppd"), kTapePpd,
         fileWith(mHome.path(QStringLiteral("many.pdf")), pdfOfPages(kManyPages))});
    ASSERT_TRUE(turnUntil([&] { return !mTemporaries.entries().isEmpty(); }));
    turnFor(300);
    program.signal(GetParam());
    EXPECT_EQ(program.endedBy(), GetParam());
    expectNothingLeft();
}

INSTANTIATE_TEST_SUITE_P(Signals, EndingTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_F(SignalFaultTest, ASignalThatIsToBeIgnoredIs) {
    // As under nohup.
    std::signal(SIGHUP, SIG_IGN);
    RunningProgram program(busyDialog());
    std::signal(SIGHUP, SIG_DFL);
    ASSERT_TRUE(waitUntilBusy());
    program.signal(SIGHUP);
    turnFor(300);
    EXPECT_TRUE(program.isRunning());
    program.signal(SIGTERM);
    EXPECT_EQ(program.endedBy(), SIGTERM);
    expectNothingLeft();
}

TEST_F(SignalFaultTest, AKilledProgramTakesGhostscriptWithIt) {
    RunningProgram program(busyDialog());
    ASSERT_TRUE(waitUntilBusy());
    program.signal(SIGKILL);
    EXPECT_EQ(program.endedBy(), SIGKILL);
    EXPECT_TRUE(turnUntil([&] { return workersLeft().isEmpty(); }, 2'000));
}

TEST_F(SignalFaultTest, ABusThatGoesAwayIsNoReasonToGo) {
    Desktop desktop;
    RunningProgram program(busyDialog(), desktop.environment());
    ASSERT_TRUE(waitUntilBusy());
    desktop.bus().kill();
    turnFor(500);
    EXPECT_TRUE(program.isRunning()) << program.err();
    program.signal(SIGTERM);
    EXPECT_EQ(program.endedBy(), SIGTERM);
    expectNothingLeft();
}

TEST_F(SignalFaultTest, ADisplayThatGoesAwayLeavesNothingBehind) {
    Desktop desktop;
    RunningProgram program(busyDialog(), desktop.environment());
    ASSERT_TRUE(waitUntilBusy());
    desktop.display().kill();
    EXPECT_EQ(program.endedBy(), 0) << "it ends by itself";
    EXPECT_EQ(program.status(), 1);
    EXPECT_THAT(program.err(), HasSubstr("X11 connection broke"));
    expectNothingLeft();
}

TEST_F(SignalFaultTest, AWaylandDisplayThatGoesAwayLeavesNothingBehind) {
    const QString folder = mHome.path(QStringLiteral("run"));
    ASSERT_TRUE(QDir().mkdir(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                         QFileDevice::ExeOwner));
    const Environment runtime("XDG_RUNTIME_DIR", QFile::encodeName(folder));
    Helper display(QStringLiteral("sh"), {QStringLiteral("-c"), QLatin1String(kWayland)});
    RunningProgram program(busyDialog(),
                           {{QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("wayland")},
                            {QStringLiteral("WAYLAND_DISPLAY"), display.address()}});
    ASSERT_TRUE(waitUntilBusy()) << program.err();
    display.kill();
    EXPECT_EQ(program.endedBy(), 0) << "it ends by itself";
    EXPECT_EQ(program.status(), 1);
    EXPECT_EQ(program.err(), "The Wayland connection broke. Did the Wayland compositor die?\n");
    expectNothingLeft();
}

} // namespace labelcut::test
