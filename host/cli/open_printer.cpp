// The command line: the printer that a command is about, open.
#include "host/cli/open_printer.h"

#include <QDir>
#include <QFile>

#include "host/cli/interruption.h"
#include "host/cli/runner.h"

namespace labelcut {

namespace {

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

PrinterRef printerNamed(const PrinterArguments& arguments) {
    if (!arguments.ppd.empty())
        return PpdFileRef{QFile::decodeName(arguments.ppd.c_str())};
    return QueueRef{QString::fromStdString(arguments.queue)};
}

Result<std::unique_ptr<OpenedPrinter>> openPrinter(const PrinterArguments& arguments) {
    Result<FoundPrinter> found =
        findPrinter(printerNamed(arguments), CupsConnection(),
                    {arguments.timeoutInMilliseconds(), &interruption::flag()});
    if (!found)
        return found.error();
    const QString folder = pluginFolder();
    const PluginSearch plugins = loadPlugins(folder);
    auto printer =
        std::make_unique<OpenedPrinter>(std::move(*found), Settings(), plugins, hostSystem());
    printer->host().onTrouble(Runner::complain);
    for (const QString& note : printer->notes())
        Runner::complain(note);
    complainOfPlugins(*printer, plugins, folder);
    return printer;
}

} // namespace labelcut
