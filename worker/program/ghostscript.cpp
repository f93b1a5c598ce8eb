// Worker: becoming Ghostscript.
#include "worker/program/ghostscript.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "worker/cage/cage.h"

namespace labelcut::worker {

namespace {

/// The program's path by PATH; empty when it is not installed.
std::string findGhostscript() {
    const char* variable = std::getenv("PATH");
    std::string_view folders = variable ? variable : "/usr/local/bin:/usr/bin:/bin";
    while (!folders.empty()) {
        const std::string_view folder = folders.substr(0, folders.find(':'));
        folders.remove_prefix(folders.size() == folder.size() ? folder.size() : folder.size() + 1);
        const std::string program = std::string(folder) + "/gs";
        // Nothing is started by way of the current folder.
        if (folder.substr(0, 1) == "/" && access(program.c_str(), X_OK) == 0)
            return program;
    }
    return {};
}

/// Code that says how many pages were made, see kNoPageMade; and code that does so as well when the
/// document ends Ghostscript by itself.
constexpr char kTellPages[] = "(labelcut-pages ) print currentpagedevice /PageCount get ==";
constexpr char kTellPagesOnQuit[] =
    "/quit {(labelcut-pages ) print currentpagedevice /PageCount get "
    "== systemdict /quit get exec} bind def";

std::vector<std::string> commandFor(const Interpret& request) {
    std::vector<std::string> words{"gs",
                                   "-q",
                                   "-dSAFER",
                                   "-dBATCH",
                                   "-dNOPAUSE",
                                   "-dAutoRotatePages=/None",
                                   "-sOutputFile=output"};
    if (request.target == Interpret::Target::PDF) {
        words.insert(words.end(), {"-sDEVICE=pdfwrite", "-dEPSCrop", "-c", kTellPagesOnQuit, "-f",
                                   "input", "-c", kTellPages});
        return words;
    }
    words.insert(words.end(), {"-sDEVICE=ps2write", "-dNOMEDIAATTRS"});
    if (!request.setsPageSize)
        words.emplace_back("-dSetPageSize=false");
    words.insert(words.end(), request.times, "input");
    return words;
}

void prepareEnvironment() {
    // Each could add a switch such as -dNOSAFER, or a folder that documents may then read.
    for (const char* name : {"GS_OPTIONS", "GS_LIB", "GS_FONTPATH", "GS_DEVICE"})
        unsetenv(name);
    setenv("TMPDIR", ".", 1);
}

} // namespace

Failed interpret(const Interpret& request, const Descriptor& folder) {
    const std::string program = findGhostscript();
    if (program.empty())
        return {Problem::GhostscriptMissing, {}};
    prepareEnvironment();
    Cage cage;
    cage.readable = libraryFolders();
    cage.program = program;
    cage.workFolder = folder.number();
    if (fchdir(folder.number()) != 0)
        return {Problem::NotWritten, std::strerror(errno)};
    if (const auto refusal = closeCage(cage))
        return {Problem::NoCage, *refusal};
    std::vector<std::string> words = commandFor(request);
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv(program.c_str(), arguments.data());
    return {Problem::GhostscriptMissing, std::strerror(errno)};
}

} // namespace labelcut::worker
