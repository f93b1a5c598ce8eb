// The command line: the commands that work with real widgets.
#include "host/cli/widget_commands.h"

#include <QFile>
#include <QSocketNotifier>
#include <QThread>

#include <CLI/CLI.hpp>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "host/cli/application.h"
#include "host/cli/examples.h"
#include "host/cli/interruption.h"
#include "host/cli/runner.h"
#include "host/cli/wrong_usage.h"
#include "host/core/background_call.h"
#include "host/core/file_name.h"
#include "host/core/harmless_text.h"
#include "host/core/regular_file.h"
#include "host/dialog/print_dialog.h"
#include "host/script/panel_script.h"

namespace labelcut {

namespace {

struct DialogArguments {
    std::vector<std::string> files;
    std::string queue;
    std::string ppd;
};

std::unique_ptr<PrintDialog> openDialog;

/// The toolkit leaves by exit() when its display goes away. Temporary files and an unfinished job
/// are the dialog's, and go with it.
void closeDialog() {
    if (!openDialog)
        return;
    openDialog.reset();
    BackgroundCall::farewell();
}

QtMessageHandler handlerBeforeDialog = nullptr;

/// On Wayland the toolkit leaves without exit(), from whichever thread notices first that the
/// display is gone, and all it does before is to say so.
void endWithDisplay(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    static std::atomic<bool> said = false;
    const bool isGone = message.startsWith(QLatin1String("The Wayland connection "));
    if (!isGone || !said.exchange(true))
        handlerBeforeDialog(type, context, message);
    if (!isGone)
        return;
    if (QThread::currentThread() != qApp->thread()) {
        QMetaObject::invokeMethod(
            qApp, [] { std::exit(kFailed); }, Qt::QueuedConnection);
        // The main thread ends the program; should it be stuck, the toolkit does.
        QThread::sleep(interruption::kGrace);
        return;
    }
    closeDialog();
    BackgroundCall::farewell();
}

int runDialog(const DialogArguments& arguments, Runner& runner) {
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return Runner::fail(QStringLiteral(
            "There is no display to open the dialog on; print with \"labelcut print\" instead."));
    QApplication application(runner.argc(), runner.argv());
    QApplication::setApplicationName(QStringLiteral("labelcut"));
    QApplication::setDesktopFileName(QStringLiteral("org.labelcut.Labelcut"));
    const PluginSearch plugins = loadPlugins(pluginFolder());
    const HostSystem system;
    DialogRequest request;
    for (const std::string& file : arguments.files)
        request.files.append(nameFromWord(file));
    request.queue = QString::fromStdString(arguments.queue);
    request.ppdPath = nameFromWord(arguments.ppd);
    request.complain = [](const QString& sentence) { Runner::complain(sentence); };
    openDialog = std::make_unique<PrintDialog>(request, plugins, system);
    std::atexit(closeDialog);
    handlerBeforeDialog = qInstallMessageHandler(endWithDisplay);
    interruption::install();
    QSocketNotifier interrupted(interruption::descriptor(), QSocketNotifier::Read);
    QObject::connect(&interrupted, &QSocketNotifier::activated, &application, [] {
        openDialog->done(QDialog::Rejected);
        QApplication::exit();
    });
    openDialog->showWithFirstPrinter();
    QApplication::exec();
    openDialog.reset();
    return kDone;
}

/// Why the script at `path` could not be opened.
QString sentenceFor(const OpenAttempt& attempt, const QString& path) {
    if (attempt.trouble == FileTrouble::NotRegular)
        return QStringLiteral("The script \"%1\" is not a regular file; give what it says on "
                              "standard input.")
            .arg(path);
    const QString reason =
        attempt.trouble == FileTrouble::Folder ? qt_error_string(EISDIR) : reasonOf(attempt);
    return QStringLiteral("The script \"%1\" cannot be read (%2); check its name and permissions.")
        .arg(path, reason);
}

int runScript(const std::string& path, Runner& runner) {
    useOffscreenWithoutDisplay();
    dropRuntimeFolderNotice();
    QApplication application(runner.argc(), runner.argv());
    OpenAttempt script;
    if (!path.empty())
        script = tryRegularFile(nameFromWord(path));
    if (script.trouble != FileTrouble::None)
        return Runner::fail(sentenceFor(script, nameFromWord(path)));
    QFile in;
    const bool opened = path.empty() ? in.open(stdin, QIODevice::ReadOnly)
                                     : in.open(script.file.descriptor(), QIODevice::ReadOnly);
    if (!opened)
        return Runner::fail(
            QStringLiteral("The script cannot be read (%1).").arg(in.errorString()));
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly))
        return Runner::fail(QStringLiteral("Standard output cannot be written to."));
    const PluginSearch plugins = loadPlugins(pluginFolder());
    return runPanelScript(in, out, plugins);
}

void addDialogArguments(CLI::App& command, DialogArguments& arguments) {
    command.add_option("FILE", arguments.files, "Documents to print")->type_name("");
    auto* printer = command.add_option_group("Printer", "The one used last, or one of");
    printer->add_option("-p,--printer", arguments.queue, "Queue of the print service")
        ->type_name("QUEUE");
    printer->add_option("--ppd", arguments.ppd, "PPD file of a printer")->type_name("FILE");
    printer->require_option(0, 1);
}

/// What stands where a command may stand, and is none, must be a file.
void rejectMistypedCommand(const CLI::App& app, const std::string& word) {
    const QString name = nameFromWord(word);
    if (tryRegularFile(name).trouble != FileTrouble::Missing)
        return;
    const auto meant = nearCommand(app, word);
    const QString sentence =
        QStringLiteral("There is neither a command nor a file \"%1\"").arg(harmless(name));
    rejectArguments(meant
                        ? QStringLiteral("%1; did you mean \"labelcut %2\"?").arg(sentence, *meant)
                        : sentence);
}

} // namespace

void addDialogCommand(CLI::App& app, Runner& runner) {
    auto arguments = std::make_shared<DialogArguments>();
    const auto run = [arguments, &runner] { return runDialog(*arguments, runner); };
    CLI::App* command =
        app.add_subcommand("dialog", "Open the print dialog; also what runs without a command");
    addDialogArguments(*command, *arguments);
    addExamples(*command, {"labelcut dialog labels.pdf", "labelcut dialog --ppd tape.ppd"});
    command->callback([run, &runner] { runner.choose(run); });

    addDialogArguments(app, *arguments);
    addExamples(app, {"labelcut labels.pdf", "labelcut --printer Tape labels.pdf",
                      "labelcut print labels.pdf --printer Tape", "labelcut print --help"});
    app.callback([arguments, &app] {
        if (app.get_subcommands().empty() && !arguments->files.empty())
            rejectMistypedCommand(app, arguments->files.front());
    });
    runner.setDefault(run);
}

void addPanelScriptCommand(CLI::App& app, Runner& runner) {
    auto path = std::make_shared<std::string>();
    CLI::App* command =
        app.add_subcommand("panel-script", "Drive the panel by lines of JSON, without a display");
    command->add_option("FILE", *path, "Script (standard input)")->type_name("");
    addExamples(*command,
                {"labelcut panel-script script.jsonl",
                 "echo '{\"do\":\"open\",\"ppd\":\"tape.ppd\"}' | labelcut panel-script"});
    command->callback(
        [path, &runner] { runner.choose([path, &runner] { return runScript(*path, runner); }); });
}

} // namespace labelcut
