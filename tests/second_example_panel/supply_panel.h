// Example: a panel that sets no option of the printer, and uses the optional operations.
//
// What it shows the user: a check box "Watch the tape supply". Ticked, it shows a second row with
// the metres of tape that are left, and while that is 0 the panel refuses to print and says so in
// its remark.
//
// tests/example_panel shows how a plug-in comes to be and how a panel chooses options. This one
// adds:
//
//  - It says nothing of keywords (supportedPPDOptionKeys() is no list), so that the dialog shows it
//    for every printer.
//  - Its view grows and shrinks while it is shown. It sets the new size, then tells the host, which
//    makes room: panelViewDidResize().
//  - What it keeps is in the print session, under a key of its own, and goes with the dialog.
//  - The user may fold it away (shouldHide()), and its help button shows helpText().
//  - Scripts can work its check box, because inspect() lists it.
//  - summaryWords() are the words with which its summary says yes and no.
#pragma once

#include <QCheckBox>
#include <QObject>
#include <QPointer>
#include <QSpinBox>
#include <QWidget>

#include <memory>

#include "platform/dialog/pde_plugin.h"

namespace example {

/// The panel.
class SupplyPanel : public labelcut::PDEPanel {
public:
    /// @param host  kept for the panel's life.
    explicit SupplyPanel(std::shared_ptr<labelcut::PDEPluginCallback> host);
    ~SupplyPanel() override;

    QString panelName() override { return QStringLiteral("Tape supply"); }
    QString panelKind() override { return QStringLiteral("com.example.supply-panel.tape"); }
    std::optional<QStringList> supportedPPDOptionKeys() override { return std::nullopt; }

    /// The check box "watchSupply", the row "supplyRow" and in it the field "metresLeft".
    QWidget* panelView() override;
    void willShow() override {}
    bool shouldHide() override { return true; }
    bool shouldShowHelp() override { return true; }
    QString helpText() override;
    QString remark() override;

    void PPDOptionKeyValueDidChange(const QString&, const QString&) override {}
    bool saveValuesAndReturnError(QString* error) override;
    bool restoreValuesAndReturnError(QString* error) override;
    std::optional<QVariantMap> summaryInfo() override;
    labelcut::SummaryWords summaryWords() override;
    /// False while no tape is left; the remark says why.
    bool shouldPrint() override { return !isUsedUp(); }
    void printWindowWillClose(bool) override {}
    /// The check box, for scripts, and whether tape is left.
    QVariantMap inspect() const override;

private:
    void buildView();
    void fitView();
    bool isWatched() const { return mWatch && mWatch->isChecked(); }
    bool isUsedUp() const { return isWatched() && mMetres->value() == 0; }

    std::shared_ptr<labelcut::PDEPluginCallback> mHost;
    /// Owned by the panel until the host takes it into a window; whoever goes first deletes it.
    QPointer<QWidget> mView;
    QPointer<QCheckBox> mWatch;
    QPointer<QWidget> mRow;
    QPointer<QSpinBox> mMetres;
};

/// The principal object: one panel for the dialog's printer modules, none for anything else.
class SupplyPlugin : public labelcut::PDEPlugin {
public:
    bool initWithBundle(std::shared_ptr<const labelcut::PDEBundle>) override { return true; }
    labelcut::PDEPanelArray*
    PDEPanelsForType(const QString& type,
                     std::shared_ptr<labelcut::PDEPluginCallback> hostInfo) override;

private:
    labelcut::PDEPanelArray mPanels;
};

/// The root object of the shared object.
class SupplyFactory : public QObject, public labelcut::PDEPluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID LabelcutPDEPlugin_iid FILE "second_example_panel.json")
    Q_INTERFACES(labelcut::PDEPluginFactory)
public:
    std::unique_ptr<labelcut::PDEPlugin> create(const labelcut::PDESystem& system) override;
};

} // namespace example
