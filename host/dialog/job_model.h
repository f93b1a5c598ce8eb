// The dialog without its widgets: one printer, one document, and what is chosen for the job.
//
// The marks in the PPD are the one truth. Panels, pages, summary, command line and job read them
// and write them through here, so that all of them agree whenever the user can look.
#pragma once

#include <QMap>
#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

#include "host/documents/paper.h"
#include "host/panels/panel_host.h"
#include "host/settings/constraints.h"

class QWidget;

namespace labelcut {

/// A printer that can be chosen: a queue of the print service, or a PPD given by hand.
struct PrinterChoice {
    /// Name of the queue; empty for a PPD given by hand.
    QString queue;
    /// Path of the PPD given by hand.
    QString ppdPath;
    /// For people.
    QString title;
    std::optional<QString> deviceUri;

    bool isQueue() const { return !queue.isEmpty(); }
    bool operator==(const PrinterChoice&) const = default;
};

/// PPD main keywords and the choices marked for them.
using Marks = QMap<QString, QString>;

class JobModel : public QObject {
    Q_OBJECT
public:
    /// @param plugins  borrowed. @param system  borrowed; both outlive the model.
    JobModel(const PluginSearch& plugins, const PDESystem& system, QObject* parent = nullptr);
    ~JobModel() override;

    /// Starts anew with a printer: the PPD's defaults, then `wanted`, then new panels.
    /// @param ppd     opened; never null. The file it came from is kept in `ppdFile`.
    /// @param wanted  choices beyond the defaults; those that the PPD lacks are told.
    void openPrinter(const PrinterChoice& printer, ppd::File ppd, const QString& ppdFile,
                     const Marks& wanted);
    bool hasPrinter() const { return mHost != nullptr; }
    const PrinterChoice& printer() const { return mPrinter; }
    /// Where the opened PPD can be read again, for work that is done beside the window.
    const QString& ppdFile() const { return mPpdFile; }
    /// Null without a printer.
    ppd_file_t* ppd() const;

    /// @name Panels
    /// @{
    const std::vector<PanelSet::Entry>& panels() const;
    const std::vector<RefusedPlugin>& refused() const { return mRefused; }
    /// Loads a panel's view and shows it for the first time. The marks are afterwards what they
    /// were before, but for what the panel cannot show; that is told. @return null: no view.
    QWidget* showPanel(const PanelSet::Entry& entry);
    /// The user has acted in a panel: its state is written, and other panels that show what it
    /// changed reread it. @param used  null: it is not known which.
    void panelWasUsed(PDEPanel* used = nullptr);
    /// Keywords that panels claim, which the PPD offers.
    QStringList panelKeywords() const;
    /// @}

    /// @name Choices
    /// @{
    std::optional<QString> choice(const QString& key) const;
    std::optional<QString> defaultChoice(const QString& key) const;
    const Marks& defaults() const { return mDefaults; }
    Marks marks() const;
    /// The marks that differ from the PPD's defaults.
    Marks changedMarks() const;
    /// The user's choice outside the panels. Can be undone. @return false: the PPD lacks it.
    bool choose(const QString& key, const QString& choice);
    /// Several at once, as one step: a preset, a fix.
    /// @param copies  nothing: they stay.
    /// @return what the PPD lacks or a panel would not keep, as sentences.
    QStringList chooseAll(const Marks& wanted, std::optional<int> copies = std::nullopt);
    /// Steps are choices, copies and pages; copies that are counted up one by one are one step.
    bool canUndo() const { return !mUndo.empty(); }
    void undo();
    void resetToDefaults();
    /// @}

    /// @name Conflicts
    /// @{
    std::vector<Conflict> conflicts() const;
    /// The first of them as a sentence; empty when there is none.
    QString conflictSentence() const;
    /// A way out that leaves what the user did last alone; nothing when there is none.
    std::optional<Settings> proposedFix() const;
    /// What that changes, for people: "Half cut: Off"; empty when there is no way out.
    QString fixText() const;
    void applyFix();
    /// @}

    /// @name The document and how much of it is printed
    /// @{
    void setFiles(const QStringList& files);
    const QStringList& files() const { return mFiles; }
    /// How many pages the document has; 0 while that is not known.
    void setPageCount(int pages);
    int pageCount() const { return mPageCount; }
    void setCopies(int copies);
    int copies() const { return mCopies; }
    void setPages(const PageRange& pages);
    const PageRange& pages() const { return mPages; }
    /// Labels that come out; 0 while the document's pages are not known.
    int labelCount() const;
    QString title() const;
    /// @}

    /// What is chosen in the panels, title and value, in the order that each panel wants.
    struct SummaryEntry {
        QString panel;
        QString title;
        QString value;
    };
    std::vector<SummaryEntry> summary() const;
    /// One heading of the summary, with title and value of each line below it.
    struct SummaryGroup {
        QString heading;
        std::vector<std::pair<QString, QString>> lines;
    };
    /// Everything that is chosen: printer, paper, labels and copies; what each panel says; and
    /// those of the printer's other options that are not as the printer has them by default.
    std::vector<SummaryGroup> wholeSummary() const;
    /// What will happen, in one sentence.
    QString sentence() const;
    /// The choices that a job carries: page size, every keyword of the panels, and whatever else
    /// differs from the PPD's default, or would from where commands begin.
    std::vector<OptionChoice> jobChoices() const;
    /// The same job as commands for a shell.
    QString labelcutCommand() const;
    QString lpCommand() const;

    /// Writes the panels' state; asked before anything is read for a job.
    void save();
    /// Whether every panel lets the job be printed.
    bool shouldPrint();
    /// The window goes; every panel is told whether the user has printed.
    void close(bool printed);

Q_SIGNALS:
    void printerOpened();
    /// Any choice, or the document, is not what it was.
    void changed();
    /// A sentence for the user about something that could not be done as wanted.
    void told(const QString& sentence);

private:
    /// What undo goes back to.
    struct Chosen {
        Marks marks;
        int copies = 1;
        PageRange pages;
        bool operator==(const Chosen&) const = default;
    };
    /// What a step of the user's was about.
    enum class Step { Choices, Copies, Pages };

    Chosen chosen() const { return {marks(), mCopies, mPages}; }
    void applyMarks(const Marks& wanted, QStringList& lacking);
    Marks differingFromDefaults(Marks different) const;
    void restorePanelsFor(const QStringList& keys, const PDEPanel* except = nullptr);
    QStringList keysChangedSinceSettled() const;
    QStringList lostFrom(const Marks& wanted) const;
    void followPaper();
    /// What is chosen now is what undo goes back to after the next change.
    void settle();
    /// What differs from what was settled becomes a step that can be undone.
    void settleStep(Step step = Step::Choices);
    /// The same for choices. @param asked  what the user asked for; empty: all that differs.
    void settleChoices(Settings asked = {});
    void mark(const Marks& wanted, QStringList& sentences);
    QStringList bringBack(const Marks& wanted);
    QString settingText(const Setting& setting) const;
    QString titleOf(const QString& key) const;
    QString titleOf(const QString& key, const QString& choice) const;
    QString paperText() const;
    SummaryGroup jobSummary() const;
    SummaryGroup featuresSummary() const;
    QString entryForSentence(const SummaryEntry& entry) const;

    const PluginSearch& mPlugins;
    const PDESystem& mSystem;
    PrinterChoice mPrinter;
    QString mPpdFile;
    std::unique_ptr<PanelHost> mHost;
    std::unique_ptr<PanelSet> mPanels;
    std::vector<RefusedPlugin> mRefused;
    Marks mDefaults;
    /// What was wanted beyond the defaults at the beginning, by options saved for the queue
    /// perhaps, which commands start from as well: said aloud even where the default was chosen
    /// since.
    QStringList mWantedKeys;
    std::vector<Chosen> mUndo;
    Chosen mSettled;
    Step mLatestStep = Step::Choices;
    /// What the user did last, which a fix leaves alone.
    Settings mLatest;
    QStringList mFiles;
    int mPageCount = 0;
    int mCopies = 1;
    PageRange mPages;
    /// While the model itself makes panels write, what they write is no act of the user.
    bool mWriting = false;
};

} // namespace labelcut
