// The dialog: its own pages, in their order, behind those of the panels.
#include "host/dialog/page_list.h"

#include <QtGlobal>

#include "host/dialog/features_page.h"
#include "host/dialog/summary_page.h"

namespace labelcut {

namespace {

template<typename AnyPage>
Page* make(JobModel& model) {
    return new AnyPage(model);
}

constexpr PageRow kRows[] = {
    {QT_TRID_NOOP("TabFeatures"), make<FeaturesPage>},
    {QT_TRID_NOOP("TabSummary"), make<SummaryPage>},
};

} // namespace

std::span<const PageRow> pageRows() {
    return kRows;
}

} // namespace labelcut
