// The print dialog's extension interface: what a panel may ask of the dialog that shows it.
#pragma once

#include <QString>

#include <cups/ppd.h>

#include "platform/printing/print_objects.h"

namespace labelcut {

/// The host callback. One is handed to a plug-in for all panels it creates at a time, and outlives
/// them. Everything it gives is borrowed: session, settings, page format, printer and PPD belong to
/// the host and stay valid while the panels live, unless an operation says otherwise. Any of them
/// may be null: a panel must do without. All calls happen on the dialog's thread.
class PDEPluginCallback {
public:
    virtual ~PDEPluginCallback() = default;

    /// The running print session, or null.
    virtual PMPrintSession* printSession() = 0;
    /// The job's print settings, or null when the host has none.
    virtual PMPrintSettings* printSettings() = 0;
    /// The job's page format, or null. It may change between calls; ask anew for each use.
    virtual PMPageFormat* pageFormat() = 0;
    /// The chosen printer, or null.
    virtual PMPrinter* printer() = 0;
    /// The printer's opened PPD, or null.
    virtual ppd_file_t* ppdFile() = 0;

    /// The panel wants `choice` for the PPD option `key`. The host marks the pair in its PPD and
    /// keeps it for the job; it tells *other* panels, never those that share this callback.
    /// @param key     PPD main keyword without the asterisk, at most 40 bytes.
    /// @param choice  a choice keyword of that option. A pair that the PPD lacks is ignored.
    virtual void willChangePPDOptionKeyValue(const QString& key, const QString& choice) = 0;

    /// Whether panelViewDidResize() means anything to this host. A panel leaves the size of its
    /// view alone when not.
    virtual bool respondsToPanelViewDidResize() const { return true; }
    /// The panel's view has a new size; the host makes room for it.
    virtual void panelViewDidResize() {}
};

} // namespace labelcut
