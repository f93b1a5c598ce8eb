// Performance: parts of Labelcut inside one process, for callgrind with --collect-atstart=no.
//   bench_parts panel PPD    the panel's life step by step, clicks and refreshes
//   bench_parts redraw PPD   repaints of the preview and of the same picture ready-made; counts
//                            nothing by itself, callgrind's --toggle-collect does
//   bench_parts dialog PPD DOCUMENT   a click in the whole dialog
// Each measured part becomes a dump of callgrind's under its name, and a line of standard output:
// name, how many times it was done, heap calls and heap bytes of all of them together.
#include <QApplication>
#include <QPixmap>

#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <typeinfo>

#include "host/dialog/print_dialog.h"
#include "tools/benchmarks/allocations.h"
#include "tools/benchmarks/panel_window.h"
#include "tools/benchmarks/peers/blit.h"

namespace {

using namespace labelcut;
using namespace labelcut::bench;

constexpr int kTimes = 20;

template<typename Part>
void measure(const std::string& name, int times, const Part& part) {
    const Allocations before = allocations();
    CALLGRIND_TOGGLE_COLLECT;
    for (int i = 0; i < times; ++i)
        part();
    CALLGRIND_TOGGLE_COLLECT;
    const Allocations after = allocations();
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    std::printf("%s %d %llu %llu\n", name.c_str(), times,
                static_cast<unsigned long long>(after.calls - before.calls),
                static_cast<unsigned long long>(after.bytes - before.bytes));
}

/// An even number of clicks leaves everything as it was. Nothing is painted: the window's events
/// are handled only in between.
void measureClicks(const PanelWindow& window, const std::string& prefix) {
    for (QCheckBox* box : window.checkBoxes()) {
        if (!box->isEnabled())
            continue;
        for (int i = 0; i < 2; ++i) {
            box->click();
            PanelWindow::settle();
        }
        measure(prefix + box->objectName().toStdString(), kTimes, [box] { box->click(); });
        PanelWindow::settle();
    }
}

/// What runs once in a process is measured the first time; the rest in its steady state.
void measurePanel(const QString& ppd) {
    PanelWindow window;
    window.showEmpty();
    measure("ppd-open", 1, [&] { window.openPpd(ppd); });
    measure("keywords", 1, [&] { window.createPanel(); });
    measure("view-load", 1, [&] { window.loadView(); });
    measure("view-show", 1, [&] { PanelWindow::settle(); });
    measureClicks(window, "click-");
    window.panels().restore();
    measure("refresh", kTimes, [&] { window.panels().restore(); });
    measure("save", kTimes, [&] { window.panels().save(); });
    if (!window.chooseLastCount())
        return;
    PanelWindow::settle();
    measureClicks(window, "last-click-");
    measure("last-refresh", kTimes, [&] { window.panels().restore(); });
}

void repaint(const char* name, QWidget& widget) {
    widget.repaint();
    CALLGRIND_ZERO_STATS;
    for (int i = 0; i < kTimes; ++i)
        widget.repaint();
    CALLGRIND_DUMP_STATS_AT(name);
    std::printf("%s %d 0 0\n", name, kTimes);
}

QWidget* previewIn(const QWidget& view) {
    for (QWidget* child : view.findChildren<QWidget*>()) {
        if (std::strstr(typeid(*child).name(), "OptionView13_v400_"))
            return child;
    }
    return nullptr;
}

void measureRedraw(const QString& ppd) {
    PanelWindow window;
    window.showEmpty();
    window.openPpd(ppd);
    window.createPanel();
    window.loadView();
    PanelWindow::settle();
    QWidget* preview = previewIn(window.view());
    if (!preview)
        qFatal("no preview");
    // The picture as the view draws it, its background transparent; and all that is seen of it.
    QPixmap drawn(preview->size());
    drawn.fill(Qt::transparent);
    preview->render(&drawn, QPoint(), QRegion(), QWidget::DrawChildren);
    // In windows of their own: whatever overlaps is painted together.
    BlitView blit(drawn, nullptr);
    BlitView opaque(preview->grab(), nullptr);
    for (BlitView* view : {&blit, &opaque}) {
        view->resize(preview->size());
        view->show();
    }
    PanelWindow::settle();
    repaint("redraw-preview", *preview);
    repaint("redraw-blit", blit);
    repaint("redraw-opaque", opaque);
}

void measureDialog(const QString& ppd, const QString& document) {
    const HostSystem system;
    const PluginSearch plugins = loadPlugins(QStringLiteral(LABELCUT_BENCH_PLUGINS));
    DialogRequest request;
    request.ppdPath = ppd;
    request.files = {document};
    PrintDialog dialog(request, plugins, system);
    dialog.show();
    while (dialog.model().pageCount() == 0 || dialog.awaitsPrinter())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    PanelWindow::settle();
    auto* box = dialog.findChild<QCheckBox*>(QStringLiteral("mMirrorPrintChkBx"));
    if (!box || !box->isVisible())
        qFatal("no checkbox");
    // Everything up to an idle event loop, but for painting.
    dialog.setUpdatesEnabled(false);
    const auto click = [box] {
        box->click();
        PanelWindow::settle();
    };
    click();
    click();
    measure("dialog-click", kTimes, click);
    std::fflush(stdout);
    _Exit(0);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc < 3)
        return 2;
    const QString ppd = QString::fromLocal8Bit(argv[2]);
    if (std::strcmp(argv[1], "panel") == 0)
        measurePanel(ppd);
    else if (std::strcmp(argv[1], "redraw") == 0)
        measureRedraw(ppd);
    else if (argc > 3)
        measureDialog(ppd, QString::fromLocal8Bit(argv[3]));
    return 0;
}
