// The dialog without its widgets: one printer, one document, and what is chosen for the job.
#include "host/dialog/job_model.h"

#include <algorithm>
#include <utility>

#include "host/plan/printer_plan.h"
#include "host/texts/host_text.h"

namespace labelcut {

JobModel::JobModel(QObject* parent)
    : QObject(parent) {}

JobModel::~JobModel() = default;

void JobModel::adopt(std::unique_ptr<OpenedPrinter> printer) {
    mActing.clear();
    mLatest.clear();
    mRangeUnderstood = true;
    mPrinter = std::move(printer);
    mPrinter->host().onResize([this] { Q_EMIT panelResized(); });
    mPrinter->host().onTrouble([this](const QString& sentence) { Q_EMIT told(sentence); });
    mPrinter->onPanelActed([this](const PDEPluginCallback& writer) { noteAct(writer); });
    applyPages();
    mSteps.restart(chosen());
    Q_EMIT printerOpened();
    tell(mPrinter->notes());
    tell(describe(view(), mPrinter->unkeptAtFirst()));
    mSteps.settle(chosen());
    Q_EMIT changed();
}

void JobModel::setQueue(const Queue& queue) {
    if (mPrinter)
        mPrinter->setQueue(queue);
}

ppd_file_t* JobModel::ppd() const {
    return mPrinter ? mPrinter->ppd() : nullptr;
}

const std::vector<PanelSet::Entry>& JobModel::panels() const {
    static const std::vector<PanelSet::Entry> none;
    return mPrinter ? mPrinter->panels().entries() : none;
}

QWidget* JobModel::showPanel(const PanelSet::Entry& entry) {
    Unkept unkept;
    QWidget* view = mPrinter->showPanel(entry, &unkept);
    tell(describe(this->view(), unkept));
    mSteps.settle(chosen());
    Q_EMIT changed();
    return view;
}

void JobModel::noteAct(const PDEPluginCallback& writer) {
    const bool isFirst = mActing.empty();
    mActing.insert(&writer);
    if (isFirst)
        QMetaObject::invokeMethod(this, &JobModel::followActs, Qt::QueuedConnection);
}

void JobModel::followActs() {
    if (mActing.empty())
        return;
    mPrinter->followActs(std::exchange(mActing, {}), mSteps.current().marks);
    stepChoices();
    Q_EMIT changed();
}

QStringList JobModel::panelKeywords() const {
    return mPrinter ? mPrinter->panelKeywords() : QStringList();
}

std::optional<QString> JobModel::choice(const QString& keyword) const {
    return mPrinter ? mPrinter->choice(keyword) : std::nullopt;
}

std::optional<QString> JobModel::defaultChoice(const QString& keyword) const {
    return mPrinter ? choiceFor(mPrinter->defaults(), keyword) : std::nullopt;
}

Settings JobModel::marks() const {
    return mPrinter ? mPrinter->marks() : Settings();
}

Settings JobModel::changedMarks() const {
    return mPrinter ? mPrinter->changedMarks() : Settings();
}

bool JobModel::areDefaults(const Settings& marks) const {
    return !mPrinter || differing(marks, mPrinter->defaults()).empty();
}

Settings JobModel::jobSettings() const {
    return mPrinter ? mPrinter->jobSettings() : Settings();
}

void JobModel::stepChoices(const Settings& asked) {
    const Chosen now = chosen();
    const Settings different = differing(now.marks, mSteps.current().marks);
    if (now.marks != mSteps.current().marks)
        mLatest = asked.empty() ? different : asked;
    mSteps.step(now, UndoSteps::Kind::Choices);
}

bool JobModel::choose(const QString& keyword, const QString& choice) {
    if (!mPrinter || this->choice(keyword) == choice)
        return mPrinter != nullptr;
    followActs();
    if (!mPrinter->choose({{keyword, choice}}).lacking.empty())
        return false;
    stepChoices({{keyword, choice}});
    Q_EMIT changed();
    return true;
}

QStringList JobModel::chooseAll(const Settings& wanted, const std::optional<Handling>& handling) {
    if (!mPrinter)
        return {};
    followActs();
    handle(mAmount, handling.value_or(this->handling()));
    const Unkept unkept = mPrinter->choose(wanted);
    mPrinter->sayAloud(keywordsOf(wanted));
    stepChoices();
    Q_EMIT changed();
    return describe(view(), unkept);
}

void JobModel::undo() {
    followActs();
    const std::optional<Chosen> before = mSteps.takeBack();
    if (!before)
        return;
    mLatest.clear();
    handle(mAmount, before->handling);
    mRangeUnderstood = mRangeUnderstood || mAmount.pages != before->pages;
    mAmount.pages = before->pages;
    applyPages();
    const Unkept unkept = mPrinter->bringBack(before->marks);
    mSteps.settle(chosen());
    tell(describe(view(), unkept));
    Q_EMIT changed();
}

void JobModel::resetToDefaults() {
    if (!mPrinter)
        return;
    followActs();
    const Unkept unkept = mPrinter->bringBack(mPrinter->defaults());
    stepChoices();
    tell(describe(view(), unkept));
    Q_EMIT changed();
}

std::vector<Conflict> JobModel::conflicts() const {
    return findConflicts(ppd());
}

/// Nothing without a conflict.
std::optional<ResolutionSearch> JobModel::neededSearch() const {
    const std::vector<Conflict> found = conflicts();
    if (found.empty())
        return std::nullopt;
    // What was done last stands where it takes part, otherwise the first of the conflict does.
    const Conflict& conflict = found.front();
    const auto latest = std::ranges::find_first_of(conflict, mLatest);
    return resolutionSearch(ppd(), latest == conflict.end() ? conflict.front() : *latest, mLatest);
}

void JobModel::searchFix() {
    std::optional<ResolutionSearch> needed = neededSearch();
    if (needed == mSearch)
        return;
    mSearching.drop();
    mFound.reset();
    mSearch = std::move(needed);
    if (!mSearch)
        return;
    mSearching.start([this, search = *mSearch](const BackgroundCall::Link& link) {
        link.tell([this, found = run(search, &link.cancelFlag())] {
            mFound = found;
            Q_EMIT fixSearched();
        });
    });
}

std::optional<Settings> JobModel::proposedFix(bool* gaveUp) const {
    // What was found for other choices is none for these.
    if (!mFound || neededSearch() != mSearch)
        return std::nullopt;
    if (gaveUp)
        *gaveUp = mFound->gaveUp;
    return mFound->changes;
}

QString JobModel::settingText(const Setting& setting) const {
    return hostText("SettingText").arg(view().title(setting.keyword), view().title(setting));
}

QString JobModel::conflictSentence() const {
    const std::vector<Conflict> found = conflicts();
    if (found.empty())
        return {};
    QStringList sides;
    for (const Setting& setting : found.front())
        sides.append(settingText(setting));
    return labelcut::conflictSentence(sides);
}

QString JobModel::fixText(bool* gaveUp) const {
    QStringList changes;
    for (const Setting& setting : proposedFix(gaveUp).value_or(Settings()))
        changes.append(settingText(setting));
    return changes.join(hostText("SentenceSeparator"));
}

void JobModel::applyFix() {
    followActs();
    if (const std::optional<Settings> fix = proposedFix())
        tell(chooseAll(*fix));
}

void JobModel::setFiles(const QStringList& files) {
    mAmount.files = files;
    mDocument.reset();
    Q_EMIT changed();
}

void JobModel::setDocument(std::shared_ptr<const DocumentPages> pages) {
    mDocument = std::move(pages);
    Q_EMIT changed();
}

void JobModel::setCopies(int copies) {
    Handling now = handling();
    now.copies = copies;
    setHandling(now, UndoSteps::Kind::Copies);
}

void JobModel::setReversed(bool reversed) {
    Handling now = handling();
    now.isReversed = reversed;
    setHandling(now, UndoSteps::Kind::Choices);
}

void JobModel::setCollated(bool collated) {
    Handling now = handling();
    now.isCollated = collated;
    setHandling(now, UndoSteps::Kind::Choices);
}

void JobModel::setFit(worker::Fit fit) {
    Handling now = handling();
    now.fit = fit;
    setHandling(now, UndoSteps::Kind::Choices);
}

void JobModel::setHandling(const Handling& handling, UndoSteps::Kind kind) {
    if (handling == this->handling())
        return;
    followActs();
    handle(mAmount, handling);
    if (mPrinter)
        mSteps.step(chosen(), kind);
    Q_EMIT changed();
}

void JobModel::setPages(const PageSelection& pages) {
    if (pages == mAmount.pages)
        return;
    followActs();
    mAmount.pages = pages;
    applyPages();
    if (mPrinter)
        mSteps.step(chosen(), UndoSteps::Kind::Pages);
    Q_EMIT changed();
}

void JobModel::applyPages() {
    if (mPrinter)
        mPrinter->setPageRange(mAmount.pages.hull());
}

void JobModel::setRangeUnderstood(bool understood) {
    if (understood == mRangeUnderstood)
        return;
    mRangeUnderstood = understood;
    Q_EMIT changed();
}

JobPlan JobModel::planFor(std::shared_ptr<const DocumentPages> document) const {
    return JobPlan(planInputFor(*mPrinter, mAmount, std::move(document)));
}

std::optional<JobPlan> JobModel::plan() const {
    if (!mPrinter || !mDocument || !mRangeUnderstood)
        return std::nullopt;
    return planFor(mDocument);
}

int JobModel::labelCount() const {
    if (!mRangeUnderstood)
        return 0;
    return mAmount.pages.countIn(pageCount()) * mAmount.copies;
}

void JobModel::save() {
    followActs();
    if (mPrinter)
        mPrinter->save();
}

bool JobModel::shouldPrint() {
    save();
    return mPrinter && mPrinter->shouldPrint();
}

void JobModel::close(bool printed) {
    if (mPrinter)
        mPrinter->close(printed);
}

void JobModel::tell(const QStringList& sentences) {
    for (const QString& sentence : sentences)
        Q_EMIT told(sentence);
}

} // namespace labelcut
