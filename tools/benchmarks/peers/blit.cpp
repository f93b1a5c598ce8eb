// Performance: the least that showing a picture costs.
#include "tools/benchmarks/peers/blit.h"

namespace labelcut::bench {

// A function of its own: callgrind counts what happens inside it.
void BlitView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.drawPixmap(0, 0, mPicture);
}

} // namespace labelcut::bench
