// The dialog without its widgets: one printer, one document, and what is chosen for the job.
//
// The marks in the printer's PPD are the one truth. Panels, pages, summary, command line and job
// read them, and change them through here, so that all of them agree whenever the user can look.
#pragma once

#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "host/core/background_call.h"
#include "host/dialog/undo_steps.h"
#include "host/job/order.h"
#include "host/plan/job_plan.h"
#include "host/printers/opened_printer.h"
#include "host/settings/constraints.h"

class QWidget;

namespace labelcut {

class JobModel : public QObject {
    Q_OBJECT
public:
    explicit JobModel(QObject* parent = nullptr);
    ~JobModel() override;

    /// @name The printer
    /// @{
    /// Starts anew with a printer. What of its first wishes could not be kept is told.
    /// @param printer  not null.
    void adopt(std::unique_ptr<OpenedPrinter> printer);
    bool hasPrinter() const { return mPrinter != nullptr; }
    /// Null without one.
    const OpenedPrinter* printer() const { return mPrinter.get(); }
    /// The queue is doing otherwise than before; panels can see it.
    void setQueue(const Queue& queue);
    /// Null without a printer.
    ppd_file_t* ppd() const;
    PpdView view() const { return PpdView(ppd()); }
    /// @}

    /// @name Panels
    /// @{
    const std::vector<PanelSet::Entry>& panels() const;
    /// Loads a panel's view and shows it for the first time. The marks are afterwards what they
    /// were before, but for what the panel cannot keep; that is told. @return null: no view.
    QWidget* showPanel(const PanelSet::Entry& entry);
    /// The user has acted in a panel of that callback: as soon as the event loop is back, once for
    /// however many acts, its state is written and everybody follows.
    void noteAct(const PDEPluginCallback& writer);
    /// Does now what noteAct() announced; nothing where nothing was.
    void followActs();
    /// Keywords that panels claim, which the PPD offers.
    QStringList panelKeywords() const;
    /// @}

    /// @name Choices
    /// @{
    std::optional<QString> choice(const QString& keyword) const;
    std::optional<QString> defaultChoice(const QString& keyword) const;
    /// Everything that is marked, in the PPD's order, and what of it is not the PPD's default.
    Settings marks() const;
    Settings changedMarks() const;
    /// Whether those marks of the printer's are its PPD's defaults.
    bool areDefaults(const Settings& marks) const;
    /// What the job says of its choices.
    Settings jobSettings() const;
    /// The user's choice outside the panels. Can be undone. @return false: the PPD lacks it.
    bool choose(const QString& keyword, const QString& choice);
    /// Several at once, as one step, such as a preset: jobs name them from here on.
    /// @param handling  nothing: it stays.
    /// @return what the PPD lacks or a panel would not keep, as sentences.
    QStringList chooseAll(const Settings& wanted,
                          const std::optional<Handling>& handling = std::nullopt);
    /// Steps are choices, handling and pages; copies that are counted up one by one are one step.
    bool canUndo() const { return mSteps.canUndo(); }
    void undo();
    void resetToDefaults();
    /// @}

    /// @name Conflicts
    /// @{
    std::vector<Conflict> conflicts() const;
    /// The first of them as a sentence; empty when there is none.
    QString conflictSentence() const;
    /// Looks for a way out of the first conflict that leaves what the user did last alone, on a
    /// thread of its own; fixSearched() tells of its end. A search for something else is dropped,
    /// and one for the same goes on or stays ended.
    void searchFix();
    bool isSearchingFix() const { return mSearch && !mFound; }
    /// The way out that was found for what is chosen now; nothing when there is none, or it has
    /// not been found yet. Searches nothing.
    /// @param gaveUp  set to true when the search for one ended at its limit; may be null.
    std::optional<Settings> proposedFix(bool* gaveUp = nullptr) const;
    /// What that changes, for people: "Half cut: Off"; empty when there is no way out.
    QString fixText(bool* gaveUp = nullptr) const;
    /// Chooses what that changes.
    void applyFix();
    /// @}

    /// @name The document and how much of it is printed
    /// @{
    void setFiles(const QStringList& files);
    const QStringList& files() const { return mAmount.files; }
    /// The document has been read. @param pages  of it; null: it is not known any more.
    void setDocument(std::shared_ptr<const DocumentPages> pages);
    /// How many pages it has; 0 while that is not known.
    int pageCount() const { return mDocument ? static_cast<int>(mDocument->measures.size()) : 0; }
    void setCopies(int copies);
    int copies() const { return mAmount.copies; }
    void setReversed(bool reversed);
    bool isReversed() const { return mAmount.isReversed; }
    void setCollated(bool collated);
    bool isCollated() const { return mAmount.isCollated; }
    void setFit(worker::Fit fit);
    worker::Fit fit() const { return mAmount.fit; }
    Handling handling() const { return handlingOf(mAmount); }
    void setPages(const PageSelection& pages);
    const PageSelection& pages() const { return mAmount.pages; }
    /// False while the user types something that is no range: pages() is then the last one that
    /// was, and nobody knows how many labels are wanted.
    void setRangeUnderstood(bool understood);
    /// The job label by label; nothing without a printer, and while the document's pages or the
    /// range are not known.
    std::optional<JobPlan> plan() const;
    /// The same for pages that are not the document's.
    JobPlan planFor(std::shared_ptr<const DocumentPages> document) const;
    /// Labels that come out; 0 while the document's pages or the range are not known.
    int labelCount() const;
    /// @}

    /// Writes the panels' state; asked before anything is read for a job.
    void save();
    /// Whether every panel lets the job be printed; their state is asked for first.
    bool shouldPrint();
    /// What is printed with what is chosen now. There is a printer.
    Order order() const { return orderFor(*mPrinter, mAmount); }
    /// The window goes; every panel is told whether the user has printed.
    void close(bool printed);

Q_SIGNALS:
    void printerOpened();
    /// Any choice, or the document, is not what it was.
    void changed();
    /// The search that searchFix() began has ended.
    void fixSearched();
    /// A panel has given its view another size.
    void panelResized();
    /// A sentence for the user about something that could not be done as wanted.
    void told(const QString& sentence);

private:
    Chosen chosen() const { return {marks(), handling(), mAmount.pages}; }
    /// What was chosen becomes a step. @param asked  what the user asked for; empty: all that
    /// differs.
    void stepChoices(const Settings& asked = {});
    void setHandling(const Handling& handling, UndoSteps::Kind kind);
    void tell(const QStringList& sentences);
    void applyPages();
    QString settingText(const Setting& setting) const;
    std::optional<ResolutionSearch> neededSearch() const;

    std::unique_ptr<OpenedPrinter> mPrinter;
    UndoSteps mSteps;
    /// What the user did last, which a fix leaves alone.
    Settings mLatest;
    Amount mAmount;
    bool mRangeUnderstood = true;
    /// Null while it is not known.
    std::shared_ptr<const DocumentPages> mDocument;
    /// Callbacks of the panels whose users have acted since the last look.
    std::set<const PDEPluginCallback*> mActing;
    /// The latest search for a way out, and its outcome once it has ended.
    std::optional<ResolutionSearch> mSearch;
    std::optional<Resolution> mFound;
    BackgroundCall mSearching{this};
};

} // namespace labelcut
