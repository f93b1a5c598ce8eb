// Faults of the session: the program is told to end, its bus or its display goes away.
#include <QDir>
#include <QSettings>

#include <csignal>

#include "tests/faults/fault_fixtures.h"

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

/// A helper program of a session, such as a display; ends with this object.
class Helper {
public:
    /// @param arguments  make it write what it is reached by, and a line end, to standard output.
    Helper(const QString& program, const QStringList& arguments) {
        mProcess.start(program, arguments);
        EXPECT_TRUE(mProcess.waitForStarted()) << program.toStdString();
        while (!mProcess.canReadLine() && mProcess.waitForReadyRead()) {
        }
        mAddress = QString::fromUtf8(mProcess.readLine()).trimmed();
        EXPECT_FALSE(mAddress.isEmpty()) << program.toStdString();
    }
    ~Helper() { kill(); }
    Helper(const Helper&) = delete;
    Helper& operator=(const Helper&) = delete;
    QString address() const { return mAddress; }
    void kill() {
        mProcess.kill();
        mProcess.waitForFinished();
    }

private:
    QProcess mProcess;
    QString mAddress;
};

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
    EXPECT_TRUE(QFile::exists(mHome.path(QStringLiteral("config/labelcut/recent-printer.json"))));
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
    Helper display(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1"),
                                            QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    Helper bus(QStringLiteral("dbus-daemon"),
               {QStringLiteral("--session"), QStringLiteral("--nofork"),
                QStringLiteral("--print-address=1")});
    RunningProgram program(
        busyDialog(), {{QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb")},
                       {QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1")},
                       {QStringLiteral("DISPLAY"), u':' + display.address()},
                       {QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address()}});
    ASSERT_TRUE(waitUntilBusy());
    bus.kill();
    turnFor(500);
    EXPECT_TRUE(program.isRunning()) << program.err();
    program.signal(SIGTERM);
    EXPECT_EQ(program.endedBy(), SIGTERM);
    expectNothingLeft();
}

TEST_F(SignalFaultTest, ADisplayThatGoesAwayLeavesNothingBehind) {
    Helper display(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1"),
                                            QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    RunningProgram program(busyDialog(),
                           {{QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb")},
                            {QStringLiteral("DISPLAY"), u':' + display.address()}});
    ASSERT_TRUE(waitUntilBusy());
    display.kill();
    EXPECT_EQ(program.endedBy(), 0) << "it ends by itself";
    EXPECT_EQ(program.status(), 1);
    EXPECT_THAT(program.err(), HasSubstr("X11 connection broke"));
    expectNothingLeft();
}

} // namespace labelcut::test
