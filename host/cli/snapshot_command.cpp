// The command line: "labelcut snapshot", pictures of panels, strip and dialog.
#include "host/cli/snapshot_command.h"

#include <QBuffer>
#include <QEventLoop>
#include <QTimer>

#include <CLI/CLI.hpp>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "host/cli/application.h"
#include "host/cli/examples.h"
#include "host/cli/open_printer.h"
#include "host/cli/runner.h"
#include "host/cli/setting_arguments.h"
#include "host/cli/value_checks.h"
#include "host/cli/wrong_usage.h"
#include "host/core/atomic_file.h"
#include "host/core/background_call.h"
#include "host/core/failure.h"
#include "host/core/file_name.h"
#include "host/core/same_file.h"
#include "host/dialog/print_dialog.h"
#include "host/dialog/strip_pane.h"
#include "host/snapshot/snapshot.h"

namespace labelcut {

namespace {

constexpr char kPanel[] = "panel";
constexpr char kStrip[] = "strip";
constexpr char kDialog[] = "dialog";
/// How long documents may be read and drawn before the picture is taken.
constexpr std::chrono::seconds kPatience{60};
constexpr std::chrono::milliseconds kLook{10};

struct SnapshotArguments {
    std::vector<std::string> files;
    std::string what = kPanel;
    PrinterArguments printer;
    SettingArguments settings;
    Settings asked;
    double scale = 1;
    bool dark = false;
    std::string language;
    std::string output;
};

Result<qint64> save(const QImage& image, const QString& path) {
    QBuffer picture;
    image.save(&picture, "PNG");
    return writeWhole(path, [&](FileSink& file) -> std::optional<QString> {
        file.write(picture.data());
        return std::nullopt;
    });
}

/// Turns the event loop until the dialog shows all that it will. @return false: not in time.
bool waitFor(const PrintDialog& dialog) {
    QEventLoop loop;
    QTimer look;
    QTimer end;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (dialog.isComplete())
            loop.exit(0);
    });
    QObject::connect(&end, &QTimer::timeout, &loop, [&] { loop.exit(1); });
    look.start(kLook);
    end.start(kPatience);
    return loop.exec() == 0;
}

/// The window, or its strip, as it opens with the files.
Result<QImage> dialogSnapshot(const SnapshotArguments& arguments, const PrinterRef& printer,
                              const Settings& choices) {
    const PluginSearch plugins = loadPlugins(pluginFolder());
    const HostSystem system;
    DialogRequest request;
    for (const std::string& file : arguments.files)
        request.files << nameFromWord(file);
    if (const QString* queue = queueName(printer))
        request.queue = *queue;
    else
        request.ppdPath = *ppdPath(printer);
    request.choices = choices;
    PrintDialog dialog(request, plugins, system);
    dialog.show();
    if (!waitFor(dialog))
        return failure(QStringLiteral("The documents took more than %1 seconds; leave some out.")
                           .arg(kPatience.count()));
    const bool isStrip = arguments.what == kStrip;
    return (isStrip ? dialog.strip().grab() : dialog.grab()).toImage();
}

Result<QImage> picture(const SnapshotArguments& arguments, std::unique_ptr<OpenedPrinter> printer) {
    const auto settings = checkedSettings(printer->ppd(), arguments.asked);
    if (!settings)
        return settings.error();
    if (arguments.what == kPanel) {
        printer->choose(*settings);
        return takePanelSnapshot(*printer);
    }
    const PrinterRef ref = printer->ref();
    printer.reset();
    return dialogSnapshot(arguments, ref, *settings);
}

int takeSnapshot(const SnapshotArguments& arguments, Runner& runner) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", QByteArray::number(arguments.scale));
    if (!arguments.language.empty())
        useLanguage(QString::fromStdString(arguments.language));
    Runner::quietLibraries();
    QApplication application(runner.argc(), runner.argv());
    setSnapshotLook(arguments.dark);
    auto printer = openPrinter(arguments.printer);
    if (!printer)
        return Runner::fail(printer.error().sentence);
    const QString output = nameFromWord(arguments.output);
    QStringList inUse;
    for (const std::string& file : arguments.files)
        inUse << nameFromWord(file);
    if (const QString* ppd = ppdPath((*printer)->ref()))
        inUse << *ppd;
    if (const auto reason = reasonAgainstReplacing(output, inUse); reason && !inUse.isEmpty())
        return Runner::fail(reason->sentence);
    const Result<QImage> image = picture(arguments, std::move(*printer));
    if (!image)
        return Runner::fail(image.error().sentence);
    const Result<qint64> saved = save(*image, output);
    BackgroundCall::farewell();
    return saved ? kDone : Runner::fail(saved.error().sentence);
}

} // namespace

void addSnapshotCommand(CLI::App& app, Runner& runner) {
    auto arguments = std::make_shared<SnapshotArguments>();
    CLI::App* command = app.add_subcommand(
        "snapshot", "Picture a printer's panels, or the dialog with documents, as a PNG file");
    command->add_option("FILE", arguments->files, "Documents, for strip and dialog")->type_name("");
    command
        ->add_option("--what", arguments->what, "What is pictured: panel, strip or dialog (panel)")
        ->type_name("PART")
        ->check(CLI::IsMember({kPanel, kStrip, kDialog}));
    arguments->printer.addTo(*command);
    arguments->settings.addTo(*command);
    command->add_option("--scale", arguments->scale, "Pixels per point (1)")
        ->type_name("FACTOR")
        ->check(number("--scale", 0.5, 8));
    command->add_flag("--dark", arguments->dark, "Dark instead of light");
    command->add_option("--language", arguments->language, "Language of the texts")
        ->type_name("de|fr|…");
    command->add_option("-o,--output", arguments->output, "Picture to write")
        ->type_name("PNG")
        ->required();
    addExamples(*command, {"labelcut snapshot --ppd tape.ppd --set KvHalfCut=ON -o panel.png",
                           "labelcut snapshot --what strip --ppd tape.ppd labels.pdf -o strip.png",
                           "labelcut snapshot --printer Tape --dark --scale 2 -o panel.png"});
    command->callback([arguments, &runner] {
        if (arguments->what == kPanel && !arguments->files.empty())
            rejectArguments(QStringLiteral("Documents go with --what strip or --what dialog"));
        arguments->asked = arguments->settings.parsed();
        runner.choose([arguments, &runner] { return takeSnapshot(*arguments, runner); });
    });
}

} // namespace labelcut
