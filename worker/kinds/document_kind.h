// Worker: what kind of file a document is, told by its content and never by its name.
#pragma once

#include <string>

#include "worker/protocol/message.h"

namespace labelcut::worker {

/// Kind of the open file `document`, or Failed: of no kind that is printed, or too long a text.
Answer documentKind(int document);

/// The whole file. Bytes from its start; its place for reading stays.
std::string contentOf(int document);

} // namespace labelcut::worker
