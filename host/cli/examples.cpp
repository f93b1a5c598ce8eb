// The command line: examples, which every help ends with.
#include "host/cli/examples.h"

#include <CLI/CLI.hpp>

#include <string>

namespace labelcut {

void addExamples(CLI::App& command, std::initializer_list<const char*> lines) {
    std::string text = "Examples:";
    for (const char* line : lines)
        text += std::string("\n  ") + line;
    command.footer(text);
}

} // namespace labelcut
