// The command line: a printer, opened for a command's life.
#include "host/cli/opened_printer.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include "host/cli/interruption.h"
#include "host/cli/runner.h"
#include "host/core/failure.h"
#include "host/settings/saved_options.h"
#include "host/settings/setting_match.h"

namespace labelcut {

namespace {

/// @param name  what the user calls the file.
Result<ppd::File> openPpd(const QString& path, const QString& name) {
    ppd::OpenError error;
    ppd::File file = ppd::openFile(path, &error);
    if (file && (file->num_groups > 0 || file->num_sizes > 0)) {
        ppd::markDefaults(file.get());
        return file;
    }
    // Some damage, such as a quote that never ends, swallows the file without libcups minding.
    if (file)
        return failure(
            QStringLiteral("%1 is no usable PPD: it has neither options nor paper sizes; "
                           "\"cupstestppd\" tells more.")
                .arg(name));
    const QString line = error.line > 0 ? QStringLiteral(" in line %1").arg(error.line) : QString();
    return failure(QStringLiteral("%1 is no usable PPD: %2%3; \"cupstestppd\" tells more.")
                       .arg(name, error.reason, line));
}

Result<ppd::File> openPpdBytes(const QByteArray& bytes, const QString& queue) {
    QTemporaryFile file;
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
        return failure(QStringLiteral("The PPD of \"%1\" cannot be kept in a temporary file (%2); "
                                      "make room there, or set TMPDIR to another folder.")
                           .arg(queue, file.errorString()));
    return openPpd(file.fileName(), QStringLiteral("What the queue \"%1\" gives").arg(queue));
}

QString nameOf(const ppd_file_t& ppd) {
    for (const char* name : {ppd.nickname, ppd.shortnickname, ppd.modelname, ppd.product}) {
        if (name && *name)
            return QString::fromUtf8(name);
    }
    return QStringLiteral("a printer without a name");
}

} // namespace

Result<ppd::File> openPpdFile(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists())
        return failure(
            QStringLiteral("The PPD \"%1\" does not exist; check the name of the file.").arg(path));
    if (!info.isFile())
        return failure(QStringLiteral("The PPD \"%1\" is no file; name a PPD file.").arg(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(QStringLiteral("The PPD \"%1\" cannot be read (%2); check its permissions.")
                           .arg(path, file.errorString()));
    return openPpd(path, QStringLiteral("\"%1\"").arg(path));
}

Result<std::unique_ptr<OpenedPrinter>> OpenedPrinter::open(const PrinterArguments& arguments) {
    std::unique_ptr<OpenedPrinter> printer(new OpenedPrinter);
    PanelHostSetup setup;
    if (!arguments.ppd.empty()) {
        auto ppd = openPpdFile(QFile::decodeName(arguments.ppd.c_str()));
        if (!ppd)
            return ppd.error();
        setup.ppd = std::move(*ppd);
        printer->mTitle = nameOf(*setup.ppd);
        printer->createPanels(std::move(setup));
        return printer;
    }
    const QString name = QString::fromStdString(arguments.queue);
    const CallLimits limits{arguments.timeoutInMilliseconds(), &interruption::flag()};
    const Result<QueueDetails> details = printer->mService.queueAttributes(name, limits);
    if (!details)
        return details.error();
    const Result<QByteArray> bytes = printer->mService.fetchPpd(name, limits);
    if (!bytes)
        return bytes.error();
    auto ppd = openPpdBytes(*bytes, name);
    if (!ppd)
        return ppd.error();
    setup.ppd = std::move(*ppd);
    setup.deviceURI = details->queue.deviceUri;
    printer->mTitle = name;
    printer->mQueue = details->queue;
    printer->markSavedChoices(setup.ppd.get());
    printer->createPanels(std::move(setup));
    return printer;
}

void OpenedPrinter::markSavedChoices(ppd_file_t* ppd) {
    const SavedOptions saved = readSavedOptions();
    mNotes << saved.problems;
    const SettingMatch match = startingPoint(ppd, saved.optionsOf({mQueue->name, QString()})).match;
    mSavedChoices = match.applicable;
    mNotes << describe(ppd, match.missing);
    for (const Setting& setting : mSavedChoices)
        ppd::markOption(ppd, setting.keyword.toUtf8().constData(),
                        setting.choice.toUtf8().constData());
}

void OpenedPrinter::createPanels(PanelHostSetup setup) {
    setup.paper = HostPaper::fromMarkedPageSize(setup.ppd.get());
    mHost = std::make_unique<PanelHost>(std::move(setup));
    mHost->onTrouble(Runner::complain);
    if (mQueue) {
        mHost->printer().setState(mQueue->state);
        mHost->printer().setAccepting(mQueue->isAccepting);
    }
    const QString folder = pluginFolder();
    mPlugins = loadPlugins(folder);
    mPanels = std::make_unique<PanelSet>(*mHost, mPlugins.loaded, mSystem);
    std::vector<RefusedPlugin> refused = mPlugins.refused;
    refused.insert(refused.end(), mPanels->refused().begin(), mPanels->refused().end());
    for (const RefusedPlugin& plugin : refused)
        mNotes << QStringLiteral("The plug-in \"%1\" is left out: %2.")
                      .arg(plugin.file, plugin.reason);
    if (mPlugins.loaded.empty())
        mNotes << QStringLiteral("No plug-in was found in \"%1\", so there are no panels; install "
                                 "Labelcut anew.")
                      .arg(folder);
}

void OpenedPrinter::follow(const Setting& setting) {
    mHost->changeFromOutside(setting.keyword, setting.choice);
    if (setting.keyword == u"PageSize")
        mHost->pageFormat().setPaper(HostPaper::fromMarkedPageSize(ppd()));
}

void OpenedPrinter::apply(const Settings& asked) {
    for (const Setting& setting : asked)
        follow(setting);
    mPanels->restore();
    mPanels->save();
    // A panel's save may derive one option from another; what was asked for outright comes first.
    for (const Setting& setting : asked)
        mHost->mark(setting.keyword, setting.choice);
}

} // namespace labelcut
