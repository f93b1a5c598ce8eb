// Printers: one that is open, with the panels that all plug-ins offer for it.
//
// Whoever prints opens a printer through here: the window, the command line, a picture. What a
// panel can see of the job (marks, print settings, page format, page range, ticket, printer state)
// is set in this one place.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <set>

#include "host/panels/panel_host.h"
#include "host/printers/printer_source.h"
#include "host/settings/ppd_view.h"

namespace labelcut {

struct PageRange;

/// What of some wanted settings did not come to be.
struct Unkept {
    /// The PPD lacks the option or the choice; the marks are what they were.
    Settings lacking;
    /// A panel has made something else of it; what is marked now.
    struct Lost {
        Setting wanted;
        QString now;
    };
    std::vector<Lost> lost;
};

/// Every function runs on the thread that made the object.
class OpenedPrinter {
public:
    /// Takes the PPD with its defaults marked, marks what is wanted beyond them, and creates every
    /// plug-in's panels; none has a view yet.
    /// @param wanted   beyond the defaults and beyond what the user has saved; what the PPD lacks
    ///                 of it is told by unkeptAtFirst().
    /// @param plugins  borrowed for the call. @param system  borrowed, outlives the printer.
    /// @param trouble  see PanelHost::onTrouble(); empty: nobody listens yet.
    OpenedPrinter(FoundPrinter printer, const Settings& wanted, const PluginSearch& plugins,
                  const PDESystem& system,
                  const std::function<void(const QString& sentence)>& trouble = {});
    ~OpenedPrinter();
    OpenedPrinter(const OpenedPrinter&) = delete;
    OpenedPrinter& operator=(const OpenedPrinter&) = delete;

    const PrinterRef& ref() const { return mRef; }
    /// For people.
    const QString& title() const { return mTitle; }
    /// As the service described it last; nothing for a printer without a queue.
    const std::optional<Queue>& queue() const { return mQueue; }
    /// Panels that ask for the printer's state are told this one.
    void setQueue(const Queue& queue);

    /// Never null.
    ppd_file_t* ppd() const { return mHost.ppd(); }
    PpdView view() const { return PpdView(ppd()); }
    PanelHost& host() { return mHost; }
    const PanelSet& panels() const { return *mPanels; }
    /// Plug-ins that were found and are not used, and why.
    const std::vector<RefusedPlugin>& refused() const { return mRefused; }
    /// What was left out while the printer was found, in sentences.
    const QStringList& notes() const { return mNotes; }
    const Unkept& unkeptAtFirst() const { return mUnkeptAtFirst; }

    /// @name Choices
    /// @{
    /// What the PPD has by default.
    const Settings& defaults() const { return mDefaults; }
    std::optional<QString> choice(const QString& keyword) const { return mHost.marked(keyword); }
    /// Everything that is marked, in the PPD's order.
    Settings marks() const { return view().marks(); }
    /// What of it differs from the defaults.
    Settings changedMarks() const { return differing(marks(), mDefaults); }
    /// Keywords that panels claim and the PPD offers.
    QStringList panelKeywords() const { return mPanels->keywords(); }

    /// Marks what is wanted, tells every panel, has those that it concerns reread it, and asks for
    /// their state. Nothing else changes, but for what a panel derives.
    Unkept choose(const Settings& wanted);
    /// The same; what is marked beyond `wanted` is marked no longer.
    Unkept bringBack(const Settings& wanted);
    /// Marks without asking any panel: what was asked for outright comes before what panels make of
    /// it. For printers whose panels show no view.
    void insist(const Settings& asked);
    /// From here on jobs name these keywords, also where the default is chosen: what they start
    /// from (options saved for the queue), or a user has asked for it in so many words.
    void sayAloud(const QStringList& keywords);
    /// What a job says of its choices: the label size, every keyword of the panels, those said
    /// aloud, and what else differs from the PPD's defaults. Each keyword once, in that order.
    Settings jobSettings() const;
    /// @}

    /// @name Panels
    /// @{
    /// Loads a panel's view and shows it for the first time. The marks are afterwards what they
    /// were before, but for what the panel cannot keep.
    /// @param unkept  receives that; what only the defaults wanted is none. Must not be null.
    /// @return null: the panel has no view.
    QWidget* showPanel(const PanelSet::Entry& entry, Unkept* unkept);
    /// Called when a panel has written by itself: its user has acted. Never called for what this
    /// object asked a panel to write.
    /// @param listener  given the panel's callback, which all panels of its plug-in share.
    void onPanelActed(std::function<void(const PDEPluginCallback& writer)> listener);
    /// The users of these callbacks' panels have acted: asks for their state, and has others that
    /// show what was changed since `before` reread it. Nobody rereads what it wrote itself.
    void followActs(const std::set<const PDEPluginCallback*>& writers, const Settings& before);
    /// What will be cut with what is marked now, by the first panel that says so; nothing when none
    /// does.
    std::optional<PDECutPlan> cutPlan() const;
    /// Asks every panel for its state.
    void save();
    /// Whether every panel lets the job be printed.
    bool shouldPrint();
    /// Tells every panel that the dialog closes.
    void close(bool printed);
    /// The pages that will be printed, counted from 1, as panels are told them.
    void setPageRange(const PageRange& pages);
    /// @}

private:
    Unkept change(const Settings& wanted, const Settings& before);
    Settings markWanted(const Settings& wanted, Unkept& unkept);
    void readAgain(const Settings& wanted, const QStringList& keywords,
                   const std::set<const PDEPluginCallback*>& except = {});
    void showBeyondDefaults(const PanelSet::Entry& entry, const Settings& wanted);
    void addLost(const Settings& wanted, Unkept& unkept) const;
    void followLabelSize();

    PrinterRef mRef;
    QString mTitle;
    std::optional<Queue> mQueue;
    QStringList mNotes;
    Settings mDefaults;
    QStringList mSaidAloud;
    Unkept mUnkeptAtFirst;
    PanelHost mHost;
    std::unique_ptr<PanelSet> mPanels;
    std::vector<RefusedPlugin> mRefused;
    std::function<void(const PDEPluginCallback&)> mOnPanelActed;
    /// While this object itself makes panels write, what they write is no act of the user.
    bool mDriving = false;
};

/// Sentences for the user about what was not kept, with the titles of the printer's PPD.
QStringList describe(const PpdView& ppd, const Unkept& unkept);

} // namespace labelcut
