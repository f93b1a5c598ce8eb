// Faults: the program and the dialog in surroundings of the test's own, and what they leave there.
#include "tests/faults/fault_fixtures.h"

#include <QDir>
#include <QFileDialog>
#include <QLabel>

#include <csignal>

namespace labelcut::test {

QStringList PrivateTemporaries::entries() const {
    QStringList all;
    for (const QFileInfo& entry : QDir(mFolder.path())
                                      .entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot |
                                                     QDir::Hidden | QDir::System)) {
        if (!entry.fileName().startsWith(QStringLiteral("runtime-")))
            all << entry.fileName() + (entry.isDir() ? QStringLiteral("/") : QString());
    }
    return all;
}

RunningProgram::RunningProgram(const QStringList& arguments,
                               const std::map<QString, QString>& environment,
                               const QString& folder) {
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    all.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    for (const auto& [name, value] : environment)
        all.insert(name, value);
    mProcess.setProcessEnvironment(all);
    mProcess.setWorkingDirectory(folder);
    mProcess.start(QStringLiteral(LABELCUT_PROGRAM), arguments);
    EXPECT_TRUE(mProcess.waitForStarted());
}

RunningProgram::~RunningProgram() {
    if (!isRunning())
        return;
    mProcess.kill();
    mProcess.waitForFinished();
}

void RunningProgram::signal(int number) const {
    ::kill(static_cast<pid_t>(mProcess.processId()), number);
}

int RunningProgram::endedBy(int timeout) {
    EXPECT_TRUE(isRunning() ? mProcess.waitForFinished(timeout) : true);
    // Qt gives the signal's number as the exit code of what crashed.
    return mProcess.exitStatus() == QProcess::CrashExit ? mProcess.exitCode() : 0;
}

Helper::Helper(const QString& program, const QStringList& arguments) {
    mProcess.start(program, arguments);
    EXPECT_TRUE(mProcess.waitForStarted()) << program.toStdString();
    while (!mProcess.canReadLine() && mProcess.waitForReadyRead()) {
    }
    mAddress = QString::fromUtf8(mProcess.readLine()).trimmed();
    EXPECT_FALSE(mAddress.isEmpty()) << program.toStdString();
}

void Helper::kill() {
    mProcess.kill();
    mProcess.waitForFinished();
}

Desktop::Desktop()
    : mDisplay(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1"),
                                        QStringLiteral("-nolisten"), QStringLiteral("tcp")})
    , mBus(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                           QStringLiteral("--print-address=1")}) {}

std::map<QString, QString> Desktop::environment() const {
    return {{QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb")},
            {QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1")},
            {QStringLiteral("DISPLAY"), u':' + mDisplay.address()},
            {QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), mBus.address()}};
}

bool Desktop::press(const RunningProgram& program, const char* text) const {
    return runHand(program, text, "press");
}

bool Desktop::waitFor(const RunningProgram& program, const char* text) const {
    return runHand(program, text, "find");
}

bool Desktop::runHand(const RunningProgram& program, const char* text, const char* deed) const {
    QProcess hand;
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    for (const auto& [name, value] : environment())
        all.insert(name, value);
    hand.setProcessEnvironment(all);
    hand.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // Debian's own interpreter, which the packages of the bus are for.
    hand.start(QStringLiteral("/usr/bin/python3"),
               {QStringLiteral(LABELCUT_PRESS_BUTTON), QString::fromUtf8(deed),
                QString::number(program.id()), QStringLiteral("Print Labels"),
                QString::fromUtf8(text)});
    return hand.waitForFinished(60'000) && hand.exitStatus() == QProcess::NormalExit &&
           hand.exitCode() == 0;
}

QString fileWith(const QString& path, const QByteArray& contents) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    EXPECT_EQ(file.write(contents), contents.size());
    return path;
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

QString largePdf(const QString& path, int bytes) {
    // The tape's own measure, so that the file is sent as it is.
    const QByteArray objects[] = {
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 68 142] /Contents 4 0 R >>",
        "<< /Length " + QByteArray::number(bytes) + " >>\nstream\n" + QByteArray(bytes, ' ') +
            "\nendstream",
    };
    QByteArray pdf = "%PDF-1.4\n";
    QByteArray table;
    int number = 0;
    for (const QByteArray& object : objects) {
        table += QByteArray::number(pdf.size()).rightJustified(10, '0') + " 00000 n \n";
        pdf += QByteArray::number(++number) + " 0 obj\n" + object + "\nendobj\n";
    }
    const qsizetype begin = pdf.size();
    pdf += "xref\n0 5\n0000000000 65535 f \n" + table +
           "trailer\n<< /Size 5 /Root 1 0 R >>\nstartxref\n" + QByteArray::number(begin) +
           "\n%%EOF\n";
    return fileWith(path, pdf);
}

QString endlessPostScript(const QString& path) {
    return fileWith(path, "%!PS\n{} loop\n");
}

QString changedPpd(const QString& path, const QByteArray& before, const QByteArray& after) {
    QByteArray text = contentOf(kTapePpd);
    EXPECT_TRUE(text.contains(before));
    return fileWith(path, text.replace(before, after));
}

std::string messagesOf(const PrintDialog& dialog) {
    return (dialog.messages().texts() + dialog.printerMessages().texts() +
            part<MessageBar>(dialog, "jobMessages")->texts())
        .join(u'\n')
        .toStdString();
}

bool turnUntilTold(const PrintDialog& dialog, const char* words) {
    return turnUntil([&] {
        return messagesOf(dialog).find(words) != std::string::npos ||
               part<QLabel>(dialog, "sentence")->text().contains(QString::fromUtf8(words));
    });
}

void makeChoices(PrintDialog& dialog) {
    openTab(dialog, kPanelTab);
    click(*part<QCheckBox>(dialog, "mHalfCutChkBx"));
    click(*part<QCheckBox>(dialog, "mChainPrintChkBx"));
    openTab(dialog, kFeaturesTab);
    choose(optionBox(dialog, "Density"), QStringLiteral("Dark"));
}

void pressPrint(PrintDialog& dialog, const QString& path) {
    click(*part<QPushButton>(dialog, "print"));
    if (path.isEmpty())
        return;
    auto* chooser = dialog.findChild<QFileDialog*>();
    ASSERT_TRUE(chooser) << "no file is asked for";
    Q_EMIT chooser->fileSelected(path);
    chooser->close();
}

} // namespace labelcut::test
