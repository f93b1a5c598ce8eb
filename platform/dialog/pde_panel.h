// The print dialog's extension interface: one panel of the dialog.
#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

#include "platform/dialog/pde_cut_plan.h"

class QWidget;

namespace labelcut {

/// The key of PDEPanel::summaryInfo() under which the list of titles stands.
inline constexpr char kSummaryDisplayOrder[] = "Summary Display Order";

/// The value texts by which a panel's summary says that something is on or off, in the running
/// language; both empty for a panel that says neither.
struct SummaryWords {
    QString yes;
    QString no;
};

/// One panel of the print dialog. The dialog drives it in this order:
///
///  1. panelName(), panelKind() and supportedPPDOptionKeys(), in any order and as often as needed;
///  2. panelView() once the panel is to be shown, then willShow() each time it is about to be;
///  3. PPDOptionKeyValueDidChange() for every change that did not come from this panel, and
///     saveValuesAndReturnError() / restoreValuesAndReturnError() when it wants the panel's state
///     written to, or read back from, the PPD's marks;
///  4. summaryInfo() when it shows the summary, shouldPrint() right before printing,
///     printWindowWillClose(), and destruction.
///
/// Everything happens on the dialog's thread. Nothing throws.
class PDEPanel {
public:
    virtual ~PDEPanel() = default;

    /// The panel's view, built on the first call; null when it cannot be built. The panel owns it
    /// and keeps returning the same one. The host may give it a parent for display; a host that
    /// destroys that parent first destroys the view with it.
    virtual QWidget* panelView() = 0;
    /// The name for the user, in the running language; plain text.
    virtual QString panelName() = 0;
    /// A reverse-DNS name that identifies this kind of panel for ever.
    virtual QString panelKind() = 0;
    /// The PPD main keywords that the panel handles, in its own order; an empty list when the
    /// printer has none of them; nothing when the panel handles no keyword at all. A host shows
    /// these keywords nowhere else. A panel that gives a list is shown only where the PPD offers
    /// one of its keywords; a panel that gives nothing is shown wherever it gives a view.
    virtual std::optional<QStringList> supportedPPDOptionKeys() = 0;

    /// The panel is about to be shown.
    virtual void willShow() = 0;
    /// Whether the user may fold the panel's view away. It starts unfolded.
    virtual bool shouldHide() = 0;
    /// The user wants to print. False stops printing; the panel has then told the user why.
    virtual bool shouldPrint() = 0;
    /// Whether the dialog offers a help button for the panel, which shows helpText().
    virtual bool shouldShowHelp() = 0;
    /// The dialog closes. @param userPrinted  true when it closes to print.
    virtual void printWindowWillClose(bool userPrinted) = 0;

    /// Another panel, or the dialog, has marked `choice` for `key` in the PPD.
    /// A null string for either means that there is none.
    virtual void PPDOptionKeyValueDidChange(const QString& key, const QString& choice) = 0;

    /// Write the panel's state to the host. @param error  may be null; receives a sentence for
    /// the user when the answer is false. @return whether it was done.
    virtual bool saveValuesAndReturnError(QString* error) = 0;
    /// Reread the panel's state from the PPD's marks; parameters and answer as above.
    virtual bool restoreValuesAndReturnError(QString* error) = 0;

    /// The panel's share of the summary: each title (QString) mapped to its value text (QString),
    /// and under kSummaryDisplayOrder the titles (QStringList) in the order of display, duplicates
    /// and empty titles included. Nothing when the panel has no summary.
    virtual std::optional<QVariantMap> summaryInfo() = 0;

    /// @name Optional: a panel without them answers as below
    /// @{

    /// Sets the control of one keyword from the choice that is marked for it, and nothing else: no
    /// other control changes, and nothing is written. After restoreValuesAndReturnError() a host
    /// asks this for every keyword whose wanted choice is not the PPD's default, since rereading
    /// everything may have changed a control on the way.
    /// @param keyword  one of supportedPPDOptionKeys(); any other is ignored.
    virtual void showChoice(const QString& keyword) { static_cast<void>(keyword); }
    /// How the panel's own summary says yes and no. A host that makes a sentence of the summary
    /// then names what is on, and leaves out what is off.
    virtual SummaryWords summaryWords() { return {}; }
    /// A line that the host shows below the view: what a look at the controls alone would not tell,
    /// such as that a tick is not sent. Plain text, empty for nothing to say. Asked anew after
    /// every change.
    virtual QString remark() { return {}; }
    /// What the host shows when its help button for this panel is pressed; plain text in paragraphs
    /// that a blank line parts. Only asked where shouldShowHelp() is true.
    virtual QString helpText() { return {}; }

    /// What will be cut with the choices that are marked in the PPD now; asked anew after every
    /// change, with or without a view. Nothing: the panel has no part in it.
    virtual std::optional<PDECutPlan> cutPlan() { return std::nullopt; }

    /// What automation and tests may know of the panel; reading it changes nothing. Labelcut's
    /// script driver (docs/panel-script.md) looks for these keys, each of which may be missing:
    ///   "controls"    what it may act on and look at: a list of maps of "name", the object name
    ///                 within the view, and "kind", one of "checkBox" (QCheckBox), "field"
    ///                 (QLineEdit), "stepper" (a widget with a property "value" and an invokable
    ///                 stepTo(int)), "label" (QLabel), "popUp" (QComboBox) and "preview";
    ///   "keywords"    the PPD keywords whose marks it reports (QStringList);
    ///   "selections"  a map of choice keywords by the panel's own names;
    ///   "preview"     a map of what the control of that kind shows;
    ///   "state"       a map of further values, which it reports under their keys.
    /// Any other key is the panel's own.
    virtual QVariantMap inspect() const { return {}; }
    /// @}
};

} // namespace labelcut
