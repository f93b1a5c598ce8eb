// Job: the label size that a PPD has marked.
#include "host/job/marked_paper.h"

#include "host/settings/ppd_view.h"

namespace labelcut {

std::optional<JobPaper> markedPaper(ppd_file_t* ppd) {
    const std::optional<PpdView::LabelSize> size = PpdView(ppd).labelSize();
    if (!size || size->size.isEmpty())
        return std::nullopt;
    const QRectF whole(QPointF(0, 0), size->size);
    const QRectF printable = whole.marginsRemoved(size->margins);
    JobPaper paper{size->keyword, size->size,
                   printable.isValid() ? printable.intersected(whole) : whole};
    if (paper.printable.isEmpty())
        paper.printable = whole;
    return paper;
}

} // namespace labelcut
