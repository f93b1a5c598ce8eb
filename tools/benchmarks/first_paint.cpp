// Performance: the stopper that is preloaded into every Qt program of a start-up row.
//
// It stands in front of QBackingStore::flush(), through which each window's finished picture
// leaves for the platform, lets the flush happen and ends the process at once: no tear-down, no
// event behind the first paint is counted. The measured programs know nothing of it.
//
// LABELCUT_BENCH_WINDOW  the title with which the window that counts begins; unset: any window.
// LABELCUT_BENCH_PICTURE file (.png) that the window is saved to in place of an orderly
//                        measurement, to see what was measured.
#include <QBackingStore>
#include <QImage>
#include <QPaintDevice>
#include <QRegion>
#include <QWindow>

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>

namespace {

using Flush = void (*)(QBackingStore*, const QRegion&, QWindow*, const QPoint&);

bool counts(const QWindow* window) {
    const char* title = std::getenv("LABELCUT_BENCH_WINDOW");
    return !title || (window && window->title().startsWith(QString::fromUtf8(title)));
}

void savePicture(QBackingStore& store) {
    const char* path = std::getenv("LABELCUT_BENCH_PICTURE");
    if (!path)
        return;
    if (const auto* image = dynamic_cast<const QImage*>(store.paintDevice()))
        image->save(QString::fromUtf8(path));
}

} // namespace

__attribute__((visibility("default"))) void
QBackingStore::flush(const QRegion& region, QWindow* window, const QPoint& offset) {
    static const auto flushOfQt = reinterpret_cast<Flush>(
        dlsym(RTLD_NEXT, "_ZN13QBackingStore5flushERK7QRegionP7QWindowRK6QPoint"));
    flushOfQt(this, region, window, offset);
    if (!counts(window ? window : this->window()))
        return;
    savePicture(*this);
    _exit(0);
}
