// The command line: from arguments to one command, its application object and its exit status.
#include "host/cli/runner.h"

#include <CLI/CLI.hpp>

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "host/cli/wrong_usage.h"
#include "host/core/harmless_text.h"

namespace labelcut {

namespace {

/// One sentence for whatever the parser has to say, and where to read on.
int wrongUsage(const CLI::App& app, const Words& words, const CLI::ParseError& error) {
    return Runner::fail(QStringLiteral("%1 (see \"%2 --help\")")
                            .arg(mistakeIn(app, words, error), commandLine(namedCommand(app))),
                        kWrongUsage);
}

/// Whether standard output leads into a pipe that nobody reads any longer.
bool hasNoReader() {
    pollfd out{STDOUT_FILENO, POLLOUT, 0};
    return poll(&out, 1, 0) == 1 && (out.revents & POLLERR) != 0;
}

} // namespace

Runner::Runner(int& argc, char** argv)
    : mArgc(argc)
    , mArgv(argv) {}

Runner::~Runner() = default;

int Runner::run(std::initializer_list<AddCommand> commands, const std::string& version) {
    CLI::App app("Prints on label and tape printers. Without a command it opens the print dialog.",
                 "labelcut");
    app.set_version_flag("--version", "labelcut " + version, "Print the version and leave");
    app.set_help_flag("-h,--help", "Print this help and leave");
    app.require_subcommand(0, 1);
    for (const AddCommand add : commands)
        add(app, *this);
    requireValues(app);
    Words words(mArgv + 1, mArgv + std::max(mArgc, 1));
    try {
        words = readable(words, app);
        // The parser takes its words from the end.
        app.parse(Words(words.rbegin(), words.rend()));
        rejectLateCommand(app);
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        return wrongUsage(app, words, error);
    }
    return mChosen ? mChosen() : mDefault();
}

QCoreApplication& Runner::coreApplication() {
    quietLibraries();
    if (!mApplication)
        mApplication = std::make_unique<QCoreApplication>(mArgc, mArgv);
    return *mApplication;
}

void Runner::quietLibraries() {
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& message) {
        if (type == QtFatalMsg)
            complain(message);
    });
}

void Runner::say(const QString& text) {
    std::fputs((harmless(text, u"\n\t") + u'\n').toUtf8().constData(), stdout);
}

void Runner::complain(const QString& sentence) {
    const QString line = QStringLiteral("labelcut: ") + harmless(sentence) + u'\n';
    std::fputs(line.toUtf8().constData(), stderr);
}

int Runner::finish(int status) {
    errno = 0;
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    const int reason = errno == 0 ? EIO : errno;
    if (!hasNoReader())
        complain(QStringLiteral("The command was carried out, but its report cannot be written to "
                                "standard output (%1); make room there.")
                     .arg(QString::fromLocal8Bit(std::strerror(reason))));
    return status == kDone ? kFailed : status;
}

int Runner::fail(const QString& sentence, ExitStatus status) {
    complain(sentence);
    return status;
}

} // namespace labelcut
