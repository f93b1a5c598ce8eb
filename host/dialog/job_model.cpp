// The dialog without its widgets: one printer, one document, and what is chosen for the job.
#include "host/dialog/job_model.h"

#include <QFileInfo>
#include <QScopedValueRollback>

#include <algorithm>
#include <span>
#include <utility>

#include "host/core/harmless_text.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

constexpr char kPageSize[] = "PageSize";
constexpr char kPageRegion[] = "PageRegion";
/// More than anybody takes back; the oldest steps are forgotten.
constexpr std::size_t kUndoSteps = 100;

/// libcups puts the options of a group within a group into the outer one.
template<typename Visit>
void forEachOption(ppd_file_t* ppd, Visit visit) {
    if (!ppd)
        return;
    for (const ppd_group_t& group :
         std::span(ppd->groups, static_cast<std::size_t>(ppd->num_groups))) {
        for (const ppd_option_t& option :
             std::span(group.options, static_cast<std::size_t>(group.num_options)))
            visit(option);
    }
}

Marks marksOf(const PanelHost& host) {
    Marks marks;
    forEachOption(host.ppd(), [&](const ppd_option_t& option) {
        const QString key = QString::fromUtf8(option.keyword);
        if (key == QLatin1String(kPageRegion))
            return;
        if (const std::optional<QString> choice = host.marked(key))
            marks.insert(key, *choice);
    });
    return marks;
}

} // namespace

JobModel::JobModel(const PluginSearch& plugins, const PDESystem& system, QObject* parent)
    : QObject(parent)
    , mPlugins(plugins)
    , mSystem(system) {}

JobModel::~JobModel() = default;

ppd_file_t* JobModel::ppd() const {
    return mHost ? mHost->ppd() : nullptr;
}

void JobModel::openPrinter(const PrinterChoice& printer, ppd::File ppd, const QString& ppdFile,
                           const Marks& wanted) {
    mPanels.reset();
    mHost.reset();
    mUndo.clear();
    mLatest.clear();
    mPrinter = printer;
    mPpdFile = ppdFile;

    PanelHostSetup setup;
    setup.ppd = std::move(ppd);
    setup.deviceURI = printer.deviceUri;
    mHost = std::make_unique<PanelHost>(std::move(setup));
    mHost->onTrouble([this](const QString& sentence) { Q_EMIT told(sentence); });
    ppd::markDefaults(mHost->ppd());
    mDefaults = marksOf(*mHost);
    mWantedKeys = wanted.keys();
    QStringList lacking;
    applyMarks(wanted, lacking);
    followPaper();

    {
        const QScopedValueRollback guard(mWriting, true);
        mPanels = std::make_unique<PanelSet>(*mHost, mPlugins.loaded, mSystem);
    }
    mRefused = mPlugins.refused;
    mRefused.insert(mRefused.end(), mPanels->refused().begin(), mPanels->refused().end());
    // A panel has written: other panels that hold the same keyword reread it, and everything that
    // shows choices does.
    mHost->onChange([this](const OptionChoice&) {
        if (!mWriting)
            QMetaObject::invokeMethod(
                this, [this] { panelWasUsed(); }, Qt::QueuedConnection);
    });
    Q_EMIT printerOpened();
    for (const QString& sentence : lacking)
        Q_EMIT told(sentence);
    settle();
    Q_EMIT changed();
}

const std::vector<PanelSet::Entry>& JobModel::panels() const {
    static const std::vector<PanelSet::Entry> none;
    return mPanels ? mPanels->entries() : none;
}

QWidget* JobModel::showPanel(const PanelSet::Entry& entry) {
    const QScopedValueRollback guard(mWriting, true);
    const Marks wanted = marks();
    QWidget* view = entry.panel->panelView();
    // The first showing writes the PPD's defaults; what is wanted is marked again and reread.
    entry.panel->willShow();
    QStringList lacking;
    applyMarks(wanted, lacking);
    entry.panel->restoreValuesAndReturnError(nullptr);
    entry.panel->saveValuesAndReturnError(nullptr);
    // What only the printer's defaults wanted is no choice that anybody misses.
    const Marks chosen = differingFromDefaults(wanted);
    for (const QString& sentence : lostFrom(chosen))
        Q_EMIT told(sentence);
    settle();
    Q_EMIT changed();
    return view;
}

void JobModel::panelWasUsed(PDEPanel* used) {
    if (!mPanels || mWriting)
        return;
    {
        const QScopedValueRollback guard(mWriting, true);
        if (used)
            used->saveValuesAndReturnError(nullptr);
        restorePanelsFor(keysChangedSinceSettled(), used);
    }
    save();
    settleChoices();
    Q_EMIT changed();
}

void JobModel::save() {
    if (!mPanels)
        return;
    const QScopedValueRollback guard(mWriting, true);
    mPanels->save();
}

bool JobModel::shouldPrint() {
    save();
    const QScopedValueRollback guard(mWriting, true);
    return mPanels && mPanels->shouldPrint();
}

void JobModel::close(bool printed) {
    const QScopedValueRollback guard(mWriting, true);
    for (const PanelSet::Entry& entry : panels())
        entry.panel->printWindowWillClose(printed);
}

QStringList JobModel::panelKeywords() const {
    return mPanels ? mPanels->keywords() : QStringList();
}

std::optional<QString> JobModel::choice(const QString& key) const {
    return mHost ? mHost->marked(key) : std::nullopt;
}

std::optional<QString> JobModel::defaultChoice(const QString& key) const {
    const auto found = mDefaults.constFind(key);
    return found == mDefaults.cend() ? std::nullopt : std::optional(*found);
}

Marks JobModel::marks() const {
    return mHost ? marksOf(*mHost) : Marks();
}

Marks JobModel::changedMarks() const {
    return differingFromDefaults(marks());
}

Marks JobModel::differingFromDefaults(Marks different) const {
    different.removeIf([this](const Marks::iterator& mark) {
        return mDefaults.value(mark.key()) == mark.value();
    });
    return different;
}

void JobModel::applyMarks(const Marks& wanted, QStringList& lacking) {
    for (auto mark = wanted.cbegin(); mark != wanted.cend(); ++mark) {
        if (mHost->marked(mark.key()) != mark.value() && !mHost->mark(mark.key(), mark.value()))
            lacking.append(hostText("LackingChoice").arg(mark.key(), mark.value()));
    }
}

/// What of `wanted` is marked otherwise now, as sentences.
QStringList JobModel::lostFrom(const Marks& wanted) const {
    QStringList sentences;
    const QStringList claimed = panelKeywords();
    for (auto mark = wanted.cbegin(); mark != wanted.cend(); ++mark) {
        const std::optional<QString> now = mHost->marked(mark.key());
        if (!claimed.contains(mark.key()) || !now || *now == mark.value())
            continue;
        sentences.append(hostText("PanelKeptOtherwise")
                             .arg(titleOf(mark.key()), titleOf(mark.key(), *now),
                                  titleOf(mark.key(), mark.value())));
    }
    return sentences;
}

QStringList JobModel::keysChangedSinceSettled() const {
    QStringList keys;
    const Marks now = marks();
    for (auto mark = now.cbegin(); mark != now.cend(); ++mark) {
        if (mSettled.marks.value(mark.key()) != mark.value())
            keys.append(mark.key());
    }
    return keys;
}

void JobModel::restorePanelsFor(const QStringList& keys, const PDEPanel* except) {
    for (const PanelSet::Entry& entry : panels()) {
        if (entry.panel == except)
            continue;
        const bool concerned =
            std::ranges::any_of(keys, [&](const QString& key) { return entry.keys.contains(key); });
        if (concerned)
            entry.panel->restoreValuesAndReturnError(nullptr);
    }
}

void JobModel::settle() {
    mSettled = chosen();
    mLatestStep = Step::Choices;
}

void JobModel::settleStep(Step step) {
    const Chosen now = chosen();
    if (now == mSettled)
        return;
    const bool goesOn = step != Step::Choices && step == mLatestStep && !mUndo.empty();
    if (!goesOn) {
        if (mUndo.size() == kUndoSteps)
            mUndo.erase(mUndo.begin());
        mUndo.push_back(mSettled);
    }
    mSettled = now;
    mLatestStep = step;
    // Counted up and down again: nothing is left to undo.
    if (mUndo.back() == now) {
        mUndo.pop_back();
        mLatestStep = Step::Choices;
    }
}

void JobModel::settleChoices(Settings asked) {
    const Marks now = marks();
    if (now != mSettled.marks) {
        const QStringList changed = asked.empty() ? keysChangedSinceSettled() : QStringList();
        for (const QString& key : changed)
            asked.push_back({key, now.value(key)});
        mLatest = std::move(asked);
    }
    settleStep();
}

bool JobModel::choose(const QString& key, const QString& choice) {
    if (!mHost || this->choice(key) == choice)
        return mHost != nullptr;
    if (!mHost->mark(key, choice))
        return false;
    {
        const QScopedValueRollback guard(mWriting, true);
        mHost->changeFromOutside(key, choice);
        if (key == QLatin1String(kPageSize))
            followPaper();
        restorePanelsFor({key});
    }
    save();
    settleChoices({{key, choice}});
    Q_EMIT changed();
    return true;
}

QStringList JobModel::chooseAll(const Marks& wanted, std::optional<int> copies) {
    if (!mHost)
        return {};
    mCopies = copies.value_or(mCopies);
    QStringList sentences;
    mark(wanted, sentences);
    settleChoices();
    Q_EMIT changed();
    return sentences;
}

void JobModel::mark(const Marks& wanted, QStringList& sentences) {
    const Marks before = marks();
    {
        const QScopedValueRollback guard(mWriting, true);
        applyMarks(wanted, sentences);
        followPaper();
        QStringList touched;
        for (auto mark = wanted.cbegin(); mark != wanted.cend(); ++mark) {
            if (before.value(mark.key()) != choice(mark.key()).value_or(QString()))
                touched.append(mark.key());
        }
        restorePanelsFor(touched);
    }
    save();
    sentences += lostFrom(wanted);
}

void JobModel::undo() {
    if (mUndo.empty())
        return;
    const Chosen before = std::move(mUndo.back());
    mUndo.pop_back();
    mLatest.clear();
    mCopies = before.copies;
    mPages = before.pages;
    const QStringList sentences = bringBack(before.marks);
    settle();
    for (const QString& sentence : sentences)
        Q_EMIT told(sentence);
    Q_EMIT changed();
}

/// Exactly these marks: what is marked beyond them is marked no longer.
QStringList JobModel::bringBack(const Marks& wanted) {
    const QStringList marked = marks().keys();
    for (const QString& key : marked) {
        if (!wanted.contains(key))
            mHost->unmark(key);
    }
    QStringList sentences;
    mark(wanted, sentences);
    return sentences;
}

void JobModel::resetToDefaults() {
    if (!mHost)
        return;
    const QStringList sentences = bringBack(mDefaults);
    settleChoices();
    for (const QString& sentence : sentences)
        Q_EMIT told(sentence);
    Q_EMIT changed();
}

void JobModel::followPaper() {
    std::optional<HostPaper> paper = HostPaper::fromMarkedPageSize(ppd());
    QString name;
    if (paper)
        paper->ppdPaperName(&name);
    mHost->settings().setTicketPaperName(name.isNull() ? std::nullopt : std::optional(name));
    mHost->pageFormat().setPaper(std::move(paper));
}

std::vector<Conflict> JobModel::conflicts() const {
    return findConflicts(ppd());
}

std::optional<Settings> JobModel::proposedFix() const {
    const std::vector<Conflict> found = conflicts();
    if (found.empty())
        return std::nullopt;
    // What was done last stands where it takes part, otherwise the first of the conflict does.
    const Conflict& conflict = found.front();
    const auto latest = std::ranges::find_first_of(conflict, mLatest);
    return proposeResolution(ppd(), latest == conflict.end() ? conflict.front() : *latest, mLatest);
}

QString JobModel::settingText(const Setting& setting) const {
    return hostText("SettingText")
        .arg(titleOf(setting.keyword), titleOf(setting.keyword, setting.choice));
}

QString JobModel::conflictSentence() const {
    const std::vector<Conflict> found = conflicts();
    if (found.empty())
        return {};
    QStringList sides;
    for (const Setting& setting : found.front())
        sides.append(hostText("Quoted").arg(settingText(setting)));
    const QString last = sides.takeLast();
    return hostText("ExcludeEachOther").arg(sides.join(hostText("SentenceSeparator")), last);
}

QString JobModel::fixText() const {
    const auto fix = proposedFix();
    QStringList changes;
    if (fix) {
        for (const Setting& setting : *fix)
            changes.append(settingText(setting));
    }
    return changes.join(hostText("SentenceSeparator"));
}

void JobModel::applyFix() {
    const auto fix = proposedFix();
    if (!fix)
        return;
    Marks wanted;
    for (const Setting& setting : *fix)
        wanted.insert(setting.keyword, setting.choice);
    for (const QString& sentence : chooseAll(wanted))
        Q_EMIT told(sentence);
}

void JobModel::setFiles(const QStringList& files) {
    mFiles = files;
    mPageCount = 0;
    Q_EMIT changed();
}

void JobModel::setPageCount(int pages) {
    mPageCount = pages;
    Q_EMIT changed();
}

void JobModel::setCopies(int copies) {
    if (copies == mCopies)
        return;
    mCopies = copies;
    if (mHost)
        settleStep(Step::Copies);
    Q_EMIT changed();
}

void JobModel::setPages(const PageRange& pages) {
    if (pages == mPages)
        return;
    mPages = pages;
    if (mHost)
        settleStep(Step::Pages);
    Q_EMIT changed();
}

int JobModel::labelCount() const {
    const int last = std::min(mPages.last, mPageCount);
    return std::max(0, last - mPages.first + 1) * mCopies;
}

QString JobModel::title() const {
    if (mFiles.isEmpty())
        return hostText("Untitled");
    const QString first = harmless(QFileInfo(mFiles.front()).fileName());
    if (mFiles.size() == 1)
        return first;
    return hostText("TitleAndMore").arg(first, QString::number(mFiles.size() - 1));
}

QString JobModel::titleOf(const QString& key) const {
    const ppd_option_t* option = ppd::findOption(ppd(), key.toUtf8().constData());
    return option ? QString::fromUtf8(option->text) : key;
}

QString JobModel::titleOf(const QString& key, const QString& choice) const {
    ppd_option_t* option = ppd::findOption(ppd(), key.toUtf8().constData());
    const ppd_choice_t* found = ppd::findChoice(option, choice.toUtf8().constData());
    return found ? QString::fromUtf8(found->text) : choice;
}

} // namespace labelcut
