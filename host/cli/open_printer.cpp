// The command line: the printer that a command is about, open.
#include "host/cli/open_printer.h"

#include "host/cli/interruption.h"
#include "host/cli/runner.h"
#include "host/core/failure.h"
#include "host/core/file_name.h"
#include "host/printers/default_queue.h"
#include "host/settings/saved_options.h"

namespace labelcut {

namespace {

CallLimits limitsOf(const PrinterArguments& arguments) {
    return {arguments.timeoutInMilliseconds(), &interruption::flag()};
}

const PDESystem& hostSystem() {
    static const HostSystem system;
    return system;
}

void complainOfPlugins(const OpenedPrinter& printer, const PluginSearch& plugins,
                       const QString& folder) {
    for (const RefusedPlugin& plugin : printer.refused())
        Runner::complain(
            QStringLiteral("The plug-in \"%1\" is left out: %2.").arg(plugin.file, plugin.reason));
    if (plugins.loaded.empty())
        Runner::complain(QStringLiteral("No plug-in was found in \"%1\", so there are no panels; "
                                        "install Labelcut anew.")
                             .arg(folder));
}

} // namespace

Result<PrinterRef> namedOrDefaultPrinter(const PrinterArguments& arguments) {
    if (!arguments.ppd.empty())
        return PrinterRef(PpdFileRef{nameFromWord(arguments.ppd)});
    if (!arguments.queue.empty())
        return PrinterRef(QueueRef{QString::fromStdString(arguments.queue)});
    const auto found = defaultQueue(CupsConnection(), readSavedOptions(), limitsOf(arguments));
    if (!found)
        return found.error();
    if (!*found)
        return failure(QStringLiteral("There is no default printer; name one with --printer, or a "
                                      "PPD with --ppd."));
    Runner::complain(
        QStringLiteral("The printer is the default one, \"%1\".").arg((*found)->queue));
    return PrinterRef(QueueRef{(*found)->queue});
}

Result<std::unique_ptr<OpenedPrinter>> openPrinter(const PrinterArguments& arguments) {
    const Result<PrinterRef> printerRef = namedOrDefaultPrinter(arguments);
    if (!printerRef)
        return printerRef.error();
    Result<FoundPrinter> found = findPrinter(*printerRef, CupsConnection(), limitsOf(arguments));
    if (!found)
        return found.error();
    const QString folder = pluginFolder();
    const PluginSearch plugins = loadPlugins(folder);
    auto printer = std::make_unique<OpenedPrinter>(std::move(*found), Settings(), plugins,
                                                   hostSystem(), Runner::complain);
    for (const QString& note : printer->notes())
        Runner::complain(note);
    complainOfPlugins(*printer, plugins, folder);
    return printer;
}

} // namespace labelcut
