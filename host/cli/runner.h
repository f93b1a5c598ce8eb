// The command line: from arguments to one command, its application object and its exit status.
#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <memory>
#include <string>

namespace CLI {
class App;
}

namespace labelcut {

/// Exit statuses of the program.
enum ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2 };

/// Parses the arguments and runs the command that they name. A sub-command adds itself with a
/// function of its own, and main lists it:
///
///     void addPrintCommand(CLI::App& app, Runner& runner) {
///         auto* command = app.add_subcommand("print", "…");
///         command->callback([&runner] { runner.choose([&runner] { …; return kDone; }); });
///     }
///
/// Parsing only chooses; the command runs afterwards, when no exception of the parser is about.
class Runner {
public:
    using Command = std::function<int()>;
    using AddCommand = void (*)(CLI::App& app, Runner& runner);

    /// @param argc  and argv: main's own; they outlive the runner.
    Runner(int& argc, char** argv);
    ~Runner();
    Runner(const Runner&) = delete;
    Runner& operator=(const Runner&) = delete;

    /// What to run, from a sub-command's callback.
    void choose(Command command) { mChosen = std::move(command); }
    /// What runs without a sub-command; one of the functions that add commands sets it.
    void setDefault(Command command) { mDefault = std::move(command); }

    /// Parses, runs, and gives the exit status.
    /// @param version  what --version prints.
    int run(std::initializer_list<AddCommand> commands, const std::string& version);

    /// @name The application object, made on demand and once; the first demand decides its kind.
    /// @{
    /// For commands without widgets: fast.
    QCoreApplication& coreApplication();
    /// For commands that make their own, such as a QApplication: main's arguments.
    int& argc() { return mArgc; }
    char** argv() { return mArgv; }
    /// Keeps the toolkit's warnings to itself, as coreApplication() does: what goes wrong is
    /// told in one sentence of the command's own, and they would stand beside it.
    static void quietLibraries();
    /// @}

    /// Writes text and a line end to standard output; what a terminal would act on becomes
    /// harmless.
    static void say(const QString& text);
    /// Writes "labelcut: " and a sentence to standard error, as one line.
    static void complain(const QString& sentence);
    /// complain(), for a command that ends so. @return the status.
    static int fail(const QString& sentence, ExitStatus status = kFailed);
    /// For the end of the program. @return `status`, or a failure when standard output has not
    /// taken all that was said; a reader that went away is not complained of.
    static int finish(int status);

private:
    int& mArgc;
    char** mArgv;
    Command mChosen;
    Command mDefault;
    std::unique_ptr<QCoreApplication> mApplication;
};

} // namespace labelcut
