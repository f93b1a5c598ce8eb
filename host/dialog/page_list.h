// The dialog: its own pages, in their order, behind those of the panels.
//
// A new page is a row here, beside its own two files.
#pragma once

#include <span>

namespace labelcut {

class JobModel;
class Page;

struct PageRow {
    /// Of the text on the page's tab.
    const char* titleKey;
    /// Makes the page for the printer that the model has; whoever puts it into a window owns it.
    Page* (*make)(JobModel& model);
};

std::span<const PageRow> pageRows();

} // namespace labelcut
