// Worker: SVG drawings without what they would fetch.
#pragma once

#include <QByteArray>

namespace labelcut::worker {

/// The drawing without what it would read from outside itself: pictures that are no data: URI,
/// style sheets and other processing instructions. @return empty for what is not well-formed.
QByteArray selfContained(const QByteArray& svg);

} // namespace labelcut::worker
