// Job: the label size that a PPD has marked.
#include "host/job/marked_paper.h"

#include "host/settings/ppd_calls.h"

namespace labelcut {

std::optional<JobPaper> markedPaper(ppd_file_t* ppd) {
    const ppd_size_t* size = ppd::markedPageSize(ppd);
    if (!size || size->width <= 0 || size->length <= 0)
        return std::nullopt;
    JobPaper paper;
    paper.name = QString::fromUtf8(size->name);
    paper.size = QSizeF(size->width, size->length);
    const QRectF whole(QPointF(0, 0), paper.size);
    const QRectF printable(QPointF(size->left, size->length - size->top),
                           QPointF(size->right, size->length - size->bottom));
    paper.printable = printable.isValid() ? printable.intersected(whole) : whole;
    if (paper.printable.isEmpty())
        paper.printable = whole;
    return paper;
}

} // namespace labelcut
