// Job: the label size that a PPD has marked.
#pragma once

#include <cups/ppd.h>

#include <optional>

#include "host/documents/paper.h"

namespace labelcut {

/// The paper that is marked in `ppd`, custom sizes included. Nothing for a null PPD, one without a
/// marked paper, or a paper without extent.
std::optional<JobPaper> markedPaper(ppd_file_t* ppd);

} // namespace labelcut
