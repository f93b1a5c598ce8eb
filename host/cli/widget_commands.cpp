// The command line: the commands that work with real widgets.
#include "host/cli/widget_commands.h"

#include <QFile>
#include <QSaveFile>
#include <QSocketNotifier>
#include <QThread>

#include <CLI/CLI.hpp>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "host/cli/application.h"
#include "host/cli/interruption.h"
#include "host/cli/open_printer.h"
#include "host/cli/runner.h"
#include "host/cli/setting_arguments.h"
#include "host/core/background_call.h"
#include "host/dialog/print_dialog.h"
#include "host/script/panel_script.h"
#include "host/snapshot/snapshot.h"

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

QtMessageHandler usualHandler = nullptr;

/// On Wayland the toolkit leaves without exit(), from whichever thread notices first that the
/// display is gone, and all it does before is to say so.
void endWithDisplay(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    static std::atomic<bool> said = false;
    const bool isGone = message.startsWith(QLatin1String("The Wayland connection "));
    if (!isGone || !said.exchange(true))
        usualHandler(type, context, message);
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
        request.files.append(QFile::decodeName(file.c_str()));
    request.queue = QString::fromStdString(arguments.queue);
    request.ppdPath = QFile::decodeName(arguments.ppd.c_str());
    openDialog = std::make_unique<PrintDialog>(request, plugins, system);
    std::atexit(closeDialog);
    usualHandler = qInstallMessageHandler(endWithDisplay);
    interruption::install();
    QSocketNotifier interrupted(interruption::descriptor(), QSocketNotifier::Read);
    QObject::connect(&interrupted, &QSocketNotifier::activated, &application, [] {
        openDialog->done(QDialog::Rejected);
        QApplication::exit();
    });
    openDialog->show();
    QApplication::exec();
    openDialog.reset();
    return kDone;
}

int runScript(const std::string& path, Runner& runner) {
    useOffscreenWithoutDisplay();
    dropRuntimeFolderNotice();
    QApplication application(runner.argc(), runner.argv());
    QFile in;
    const QString name = QFile::decodeName(path.c_str());
    const bool opened = path.empty() ? in.open(stdin, QIODevice::ReadOnly)
                                     : (in.setFileName(name), in.open(QIODevice::ReadOnly));
    if (!opened)
        return Runner::fail(QStringLiteral("The script \"%1\" cannot be read (%2); check its name "
                                           "and permissions.")
                                .arg(name, in.errorString()));
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly))
        return Runner::fail(QStringLiteral("Standard output cannot be written to."));
    const PluginSearch plugins = loadPlugins(pluginFolder());
    return runPanelScript(in, out, plugins);
}

struct SnapshotArguments {
    PrinterArguments printer;
    SettingArguments settings;
    Settings asked;
    double scale = 1;
    bool dark = false;
    std::string language;
    std::string output;
};

Result<Done> save(const QImage& image, const QString& path) {
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && image.save(&file, "PNG") && file.commit())
        return Done();
    return Error{ErrorKind::Other,
                 QStringLiteral("The picture \"%1\" cannot be written (%2); choose another place.")
                     .arg(path, file.errorString())};
}

int takeSnapshot(const SnapshotArguments& arguments, Runner& runner) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", QByteArray::number(arguments.scale));
    if (!arguments.language.empty())
        useLanguage(QString::fromStdString(arguments.language));
    dropRuntimeFolderNotice();
    QApplication application(runner.argc(), runner.argv());
    setSnapshotLook(arguments.dark);
    const auto printer = openPrinter(arguments.printer);
    if (!printer)
        return Runner::fail(printer.error().sentence);
    const auto settings = checkedSettings((*printer)->ppd(), arguments.asked);
    if (!settings)
        return Runner::fail(settings.error().sentence);
    (*printer)->choose(*settings);
    const Result<QImage> image = takePanelSnapshot(**printer);
    if (!image)
        return Runner::fail(image.error().sentence);
    const Result<Done> saved = save(*image, QFile::decodeName(arguments.output.c_str()));
    return saved ? kDone : Runner::fail(saved.error().sentence);
}

} // namespace

void addDialogCommand(CLI::App& app, Runner& runner) {
    auto arguments = std::make_shared<DialogArguments>();
    CLI::App* command =
        app.add_subcommand("dialog", "Open the print dialog; also what runs without a command");
    command->add_option("files", arguments->files, "Documents to print")->type_name("FILE");
    auto* printer = command->add_option_group("Printer", "At most one of");
    printer->add_option("-p,--printer", arguments->queue, "Queue of the print service")
        ->type_name("QUEUE");
    printer->add_option("--ppd", arguments->ppd, "PPD file of a printer")->type_name("FILE");
    printer->require_option(0, 1);
    const auto run = [arguments, &runner] { return runDialog(*arguments, runner); };
    command->callback([run, &runner] { runner.choose(run); });
    runner.setDefault(run);
}

void addPanelScriptCommand(CLI::App& app, Runner& runner) {
    auto path = std::make_shared<std::string>();
    CLI::App* command =
        app.add_subcommand("panel-script", "Drive the panel by lines of JSON, without a display");
    command->add_option("file", *path, "Script (standard input)")->type_name("FILE");
    command->callback(
        [path, &runner] { runner.choose([path, &runner] { return runScript(*path, runner); }); });
}

void addSnapshotCommand(CLI::App& app, Runner& runner) {
    auto arguments = std::make_shared<SnapshotArguments>();
    CLI::App* command = app.add_subcommand("snapshot", "Picture a printer's panels as a PNG file");
    arguments->printer.addTo(*command);
    arguments->settings.addTo(*command);
    command->add_option("--scale", arguments->scale, "Pixels per point (1)")
        ->check(CLI::Range(0.5, 8.0));
    command->add_flag("--dark", arguments->dark, "Dark instead of light");
    command->add_option("--language", arguments->language, "Language of the texts")
        ->type_name("de|fr|…");
    command->add_option("-o,--output", arguments->output, "Picture to write")
        ->type_name("PNG")
        ->required();
    command->callback([arguments, &runner] {
        arguments->asked = arguments->settings.parsed();
        runner.choose([arguments, &runner] { return takeSnapshot(*arguments, runner); });
    });
}

} // namespace labelcut
