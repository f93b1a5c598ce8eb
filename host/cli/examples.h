// The command line: examples, which every help ends with.
#pragma once

#include <initializer_list>

namespace CLI {
class App;
}

namespace labelcut {

/// @param lines  each a whole command line that works in a folder with "labels.pdf" and "tape.ppd",
///               where "Tape" is a queue.
void addExamples(CLI::App& command, std::initializer_list<const char*> lines);

} // namespace labelcut
