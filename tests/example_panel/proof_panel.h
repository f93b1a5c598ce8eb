// Example: a plug-in of a third party, with one panel.
//
// What it shows the user: a pop-up for the printer's "PrintQuality", a button "Quick proof" that
// chooses the draft quality and switches mirror printing off, and a note while labels will come
// out mirrored.
//
// How a plug-in comes to be
//
//  1. Build a shared object (CMakeLists.txt beside this file) whose root object is a
//     PDEPluginFactory (ProofFactory below), with a metadata file (example_panel.json). The file is
//     read before the shared object is loaded, so a host can tell that it does not fit without
//     running any of it.
//  2. Put the shared object into the host's plug-in folder. A plug-in that cannot be used never
//     keeps the dialog from opening: the host lists the file and the reason.
//  3. The factory makes the principal object (ProofPlugin), which says whether it serves on this
//     system and makes the panels for one dialog.
//
// How a panel and its host share the printer's settings
//
//  - The host owns the PPD, and its marks are the truth. A panel reads them (current()), and never
//    writes them: it tells the host (choose()), and the host marks.
//  - The host tells a panel what *others* changed, never what the panel wrote itself. So a panel
//    refreshes itself after it writes, and again in PPDOptionKeyValueDidChange().
//  - Panels that one plug-in made with the same callback count as one writer: they do not hear of
//    each other, and have to pass on such news themselves.
//  - A panel may write any keyword. It claims (supportedPPDOptionKeys()) only those that it has a
//    control for, because the host offers claimed keywords nowhere else.
//  - Anything that the callback gives may be missing, the PPD included.
//
// Rules that keep a dialog alive: nothing throws, nothing blocks, no event loop is started, and the
// view may be destroyed by the host before the panel is.
#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

#include "platform/dialog/pde_plugin.h"

class QComboBox;
class QLabel;

namespace example {

/// The panel. It keeps no settings of its own: everything it shows is read from the PPD's marks.
class ProofPanel : public labelcut::PDEPanel {
public:
    explicit ProofPanel(std::shared_ptr<labelcut::PDEPluginCallback> host);
    ~ProofPanel() override;

    // Who the panel is.
    QString panelName() override { return QStringLiteral("Proof"); }
    QString panelKind() override { return QStringLiteral("com.example.proof-panel.quality"); }
    std::optional<QStringList> supportedPPDOptionKeys() override;

    // What it shows. The view is made when it is first asked for.
    QWidget* panelView() override;
    void willShow() override { refresh(); }
    bool shouldHide() override { return true; }
    bool shouldShowHelp() override { return false; }

    // How it follows the dialog.
    void PPDOptionKeyValueDidChange(const QString& key, const QString& choice) override;
    bool saveValuesAndReturnError(QString* error) override;
    bool restoreValuesAndReturnError(QString* error) override;
    std::optional<QVariantMap> summaryInfo() override;
    bool shouldPrint() override { return true; }
    void printWindowWillClose(bool userPrinted) override;

    /// "heard": the changes of others that the panel was told of, as "keyword=choice".
    QVariantMap inspect() const override;

private:
    void buildView();
    void refresh();
    void choose(const QString& key, const QString& choice);
    void makeQuickProof();
    /// The choice that is marked for the keyword; empty when none is.
    QString current(const char* key) const;

    std::shared_ptr<labelcut::PDEPluginCallback> mHost;
    QStringList mHeard;
    /// Owned by the panel until the host takes it into a window; whoever goes first deletes it.
    QPointer<QWidget> mView;
    QPointer<QComboBox> mQuality;
    QPointer<QLabel> mMirrorNote;
};

/// The principal object: one panel for the dialog's printer modules, none for anything else.
class ProofPlugin : public labelcut::PDEPlugin {
public:
    bool initWithBundle(std::shared_ptr<const labelcut::PDEBundle> bundle) override;
    labelcut::PDEPanelArray*
    PDEPanelsForType(const QString& type,
                     std::shared_ptr<labelcut::PDEPluginCallback> hostInfo) override;

private:
    std::shared_ptr<const labelcut::PDEBundle> mBundle;
    labelcut::PDEPanelArray mPanels;
};

/// The root object of the shared object.
class ProofFactory : public QObject, public labelcut::PDEPluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID LabelcutPDEPlugin_iid FILE "example_panel.json")
    Q_INTERFACES(labelcut::PDEPluginFactory)
public:
    std::unique_ptr<labelcut::PDEPlugin> create(const labelcut::PDESystem& system) override;
};

} // namespace example
