// Printers: one that is open, with the panels that all plug-ins offer for it.
#include "host/printers/opened_printer.h"

#include <QScopedValueRollback>
#include <QSet>

#include <algorithm>
#include <utility>

#include "host/documents/paper.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

PanelHostSetup setupFor(FoundPrinter& printer) {
    PanelHostSetup setup;
    setup.ppd = std::move(printer.ppd);
    if (printer.queue)
        setup.deviceURI = printer.queue->deviceUri;
    return setup;
}

bool claimsOneOf(const PanelSet::Entry& entry, const QStringList& keywords) {
    return std::ranges::any_of(
        keywords, [&](const QString& keyword) { return entry.keys.contains(keyword); });
}

} // namespace

OpenedPrinter::OpenedPrinter(FoundPrinter printer, const Settings& wanted,
                             const PluginSearch& plugins, const PDESystem& system,
                             const std::function<void(const QString&)>& trouble)
    : mRef(std::move(printer.ref))
    , mTitle(std::move(printer.title))
    , mNotes(std::move(printer.notes))
    , mHost(setupFor(printer))
    , mRefused(plugins.refused) {
    mHost.onTrouble(trouble);
    if (printer.queue)
        setQueue(*printer.queue);
    mDefaults = marks();
    const Settings first = overridden(printer.saved, wanted);
    mSaidAloud = keywordsOf(first);
    markWanted(first, mUnkeptAtFirst);
    mHost.onChange([this](const PDEPluginCallback& writer, const Setting&) {
        if (!mDriving && mOnPanelActed)
            mOnPanelActed(writer);
    });
    const QScopedValueRollback driving(mDriving, true);
    mPanels = std::make_unique<PanelSet>(mHost, plugins.loaded, system);
    mRefused.insert(mRefused.end(), mPanels->refused().begin(), mPanels->refused().end());
}

OpenedPrinter::~OpenedPrinter() = default;

void OpenedPrinter::setQueue(const Queue& queue) {
    mQueue = queue;
    mHost.printer().setState(queue.state);
    mHost.printer().setStateReasons(queue.stateReasons);
    mHost.printer().setAccepting(queue.isAccepting);
}

Unkept OpenedPrinter::choose(const Settings& wanted) {
    return change(wanted, marks());
}

Unkept OpenedPrinter::bringBack(const Settings& wanted) {
    const Settings before = marks();
    const QStringList keywords = keywordsOf(wanted);
    const QSet<QString> standing(keywords.begin(), keywords.end());
    for (const QString& keyword : keywordsOf(before)) {
        if (!standing.contains(keyword))
            mHost.unmark(keyword);
    }
    return change(wanted, before);
}

/// @param before  what was marked before anything changed.
Unkept OpenedPrinter::change(const Settings& wanted, const Settings& before) {
    const QScopedValueRollback driving(mDriving, true);
    Unkept unkept;
    const Settings asMarked = markWanted(wanted, unkept);
    const Settings now = marks();
    const Settings chosen = differing(now, before);
    for (const Setting& setting : chosen)
        mHost.changeFromOutside(setting.keyword, setting.choice);
    readAgain(now, keywordsOf(chosen) + keywordsOf(differing(before, now)));
    mPanels->save();
    addLost(asMarked, unkept);
    return unkept;
}

void OpenedPrinter::insist(const Settings& asked) {
    for (const Setting& setting : asked)
        mHost.mark(setting.keyword, setting.choice);
}

void OpenedPrinter::sayAloud(const QStringList& keywords) {
    mSaidAloud += keywords;
    mSaidAloud.removeDuplicates();
}

Settings OpenedPrinter::jobSettings() const {
    QStringList keywords{QLatin1String(kPageSize)};
    keywords += panelKeywords() + mSaidAloud + keywordsOf(changedMarks());
    keywords.removeDuplicates();
    Settings settings;
    for (const QString& keyword : keywords) {
        if (std::optional<QString> marked = choice(keyword))
            settings.push_back({keyword, std::move(*marked)});
    }
    return settings;
}

/// @return what is marked for the wanted keywords, in libcups' spelling of values of the user's
/// own.
Settings OpenedPrinter::markWanted(const Settings& wanted, Unkept& unkept) {
    Settings asMarked;
    for (const Setting& setting : wanted) {
        if (choice(setting.keyword) != setting.choice &&
            !mHost.mark(setting.keyword, setting.choice)) {
            unkept.lacking.push_back(setting);
            continue;
        }
        asMarked.push_back({setting.keyword, choice(setting.keyword).value_or(QString())});
    }
    followLabelSize();
    return asMarked;
}

/// The panels that claim one of the keywords reread the marks. Rereading refreshes every control of
/// a panel, and one refresh may undo another; what is wanted is then shown control by control.
void OpenedPrinter::readAgain(const Settings& wanted, const QStringList& keywords,
                              const std::set<const PDEPluginCallback*>& except) {
    for (const PanelSet::Entry& entry : mPanels->entries()) {
        if (except.contains(entry.callback.get()) || !claimsOneOf(entry, keywords))
            continue;
        entry.panel->restoreValuesAndReturnError(nullptr);
        showBeyondDefaults(entry, wanted);
    }
}

void OpenedPrinter::showBeyondDefaults(const PanelSet::Entry& entry, const Settings& wanted) {
    for (const Setting& setting : differing(wanted, mDefaults)) {
        if (entry.keys.contains(setting.keyword))
            entry.panel->showChoice(setting.keyword);
    }
}

void OpenedPrinter::addLost(const Settings& wanted, Unkept& unkept) const {
    const QStringList claimed = panelKeywords();
    for (const Setting& setting : differing(wanted, marks())) {
        if (claimed.contains(setting.keyword))
            unkept.lost.push_back({setting, choice(setting.keyword).value_or(QString())});
    }
}

void OpenedPrinter::followLabelSize() {
    std::optional<HostPaper> paper = HostPaper::fromMarkedPageSize(ppd());
    QString name;
    if (paper)
        paper->ppdPaperName(&name);
    mHost.settings().setTicketPaperName(name.isNull() ? std::nullopt : std::optional(name));
    mHost.pageFormat().setPaper(std::move(paper));
}

QWidget* OpenedPrinter::showPanel(const PanelSet::Entry& entry, Unkept* unkept) {
    const QScopedValueRollback driving(mDriving, true);
    const Settings wanted = marks();
    QWidget* view = entry.panel->panelView();
    // The first showing writes the PPD's defaults; what is wanted is marked again and reread.
    entry.panel->willShow();
    markWanted(wanted, *unkept);
    entry.panel->restoreValuesAndReturnError(nullptr);
    showBeyondDefaults(entry, wanted);
    entry.panel->saveValuesAndReturnError(nullptr);
    addLost(differing(wanted, mDefaults), *unkept);
    return view;
}

void OpenedPrinter::onPanelActed(std::function<void(const PDEPluginCallback&)> listener) {
    mOnPanelActed = std::move(listener);
}

void OpenedPrinter::followActs(const std::set<const PDEPluginCallback*>& writers,
                               const Settings& before) {
    const QScopedValueRollback driving(mDriving, true);
    for (const PanelSet::Entry& entry : mPanels->entries()) {
        if (writers.contains(entry.callback.get()))
            entry.panel->saveValuesAndReturnError(nullptr);
    }
    if (mPanels->entries().size() == 1)
        return;
    const Settings now = marks();
    const QStringList changed = keywordsOf(differing(now, before));
    readAgain(now, changed, writers);
    for (const PanelSet::Entry& entry : mPanels->entries()) {
        if (!writers.contains(entry.callback.get()) && claimsOneOf(entry, changed))
            entry.panel->saveValuesAndReturnError(nullptr);
    }
}

std::optional<PDECutPlan> OpenedPrinter::cutPlan() const {
    for (const PanelSet::Entry& entry : mPanels->entries())
        if (const std::optional<PDECutPlan> plan = entry.panel->cutPlan())
            return plan;
    return std::nullopt;
}

void OpenedPrinter::save() {
    const QScopedValueRollback driving(mDriving, true);
    mPanels->save();
}

bool OpenedPrinter::shouldPrint() {
    const QScopedValueRollback driving(mDriving, true);
    return mPanels->shouldPrint();
}

void OpenedPrinter::close(bool printed) {
    const QScopedValueRollback driving(mDriving, true);
    for (const PanelSet::Entry& entry : mPanels->entries())
        entry.panel->printWindowWillClose(printed);
}

void OpenedPrinter::setPageRange(const PageRange& pages) {
    const std::uint32_t last = pages.last == PageRange::kToTheEnd
                                   ? kLastPageOfAll
                                   : static_cast<std::uint32_t>(pages.last);
    mHost.settings().setPageRange(static_cast<std::uint32_t>(pages.first), last, false);
}

QStringList describe(const PpdView& ppd, const Unkept& unkept) {
    QStringList sentences;
    for (const Setting& setting : unkept.lacking)
        sentences << hostText("LackingChoice").arg(setting.keyword, setting.choice);
    for (const Unkept::Lost& lost : unkept.lost)
        sentences << hostText("PanelKeptOtherwise")
                         .arg(ppd.title(lost.wanted.keyword),
                              ppd.title(Setting{lost.wanted.keyword, lost.now}),
                              ppd.title(lost.wanted));
    return sentences;
}

} // namespace labelcut
