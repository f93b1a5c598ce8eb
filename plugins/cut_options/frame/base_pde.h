// Plug-in frame: the base panel. It holds what the host provides, gives every operation of the
// panel interface a default, and fixes the order in which a panel's own hooks run.
#pragma once

#include <QObject>
#include <QPointer>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/dialog/pde_plugin.h"
#include "platform/toolkit/handles.h"
#include "platform/toolkit/interface_file.h"
#include "plugins/cut_options/frame/pde_choice.h"

namespace labelcut {

using PDEPluginCallback13_v400_ = PDEPluginCallback;

/// What is appended to the vendor's reverse-DNS prefix to name the panel's kind.
inline constexpr char kVendorPrefix[] = "org.labelcut";
inline constexpr char kPanelKindSuffix[] = ".printer.cups.pde.OptionPDEKind";

class BasePDE13_v400_ : public QObject, public PDEPanel {
public:
    BasePDE13_v400_() = default;
    ~BasePDE13_v400_() override;

    /// Takes everything from the host that a panel needs, in a fixed order.
    /// @param callback  the host; kept for the panel's life. Null makes this answer null.
    /// @param bundle    the plug-in's resources; kept. May be null: every text is then its key.
    /// @return this panel, or null when the base could not be built.
    virtual BasePDE13_v400_* initWithCallback(std::shared_ptr<PDEPluginCallback13_v400_> callback,
                                              std::shared_ptr<const PDEBundle> bundle);

    QWidget* panelView() override;
    QString panelName() override;
    QString panelKind() override;
    std::optional<QStringList> supportedPPDOptionKeys() override;
    void willShow() override;
    bool shouldHide() override { return true; }
    bool shouldPrint() override { return true; }
    bool shouldShowHelp() override { return false; }
    void printWindowWillClose(bool) override {}
    void PPDOptionKeyValueDidChange(const QString&, const QString&) override {}
    bool saveValuesAndReturnError(QString* error) override;
    bool restoreValuesAndReturnError(QString* error) override;
    std::optional<QVariantMap> summaryInfo() override { return std::nullopt; }

    /// @name What a panel does in its own way; all do nothing here, but updateUI() refreshes.
    /// @{
    virtual void updateUI() { setPDEItems(); }
    virtual void initSetTitleTexts() {}
    virtual void initUI() {}
    virtual void getValuesFromKey() {}
    virtual void setValuesToKey() {}
    virtual void setPDEItems() {}
    virtual void setPDEItems2() {}
    virtual void updateUIItem(std::int32_t) {}
    virtual void updateMarkedSelections(std::uint32_t) {}
    virtual std::int32_t indexForSummary(const char*) { return 0; }
    /// The interface file is loaded and every outlet is connected.
    virtual void awakeFromNib() {}
    /// @}

    const std::optional<QStringList>& supportedOptions() const { return mSupportedOptions; }
    void setSupportedOptions(std::optional<QStringList> options);

    /// The PPD attribute "FileVersion"; nothing without a PPD.
    std::optional<QString> fileVerString() const;
    /// Whether the PPD names the roll label printer family; every other value, and none, means the
    /// tape printer family.
    bool isRVPrinter() const;

    /// Sets the view's size in points and tells the host, at once or when the dialog has grown.
    void setViewFrameSize(Size size);
    void dialogDidExpand();

    /// @name Selections: where a choice stands in its array, and sending one to the host
    /// @{
    /// Position of the keyword's marked choice in the array; -1 when none is marked, 0 when the
    /// marked one is not in the array.
    std::int32_t indexOfMarkedOption(const PDEChoices& choices, const QString& key) const;
    /// Position of the default choice; -1 when no element is it, 0 for an empty or absent array.
    std::int32_t indexOfDefaultOption(const PDEChoices& choices) const;
    /// Sends the choice at `index` and rereads the selections of `itemType`.
    /// @return the choice, borrowed from the array; null, and nothing sent, for an index outside.
    const PDEChoice* selectionForItem(std::int32_t index, const QString& key,
                                      const PDEChoices& choices, std::int32_t itemType);
    /// Sends the option's default when nothing is marked for it and it has one.
    void setDefaultChoices(const ppd_option_t* option, const PDEChoices& choices,
                           const char* cStrKey, const QString& nStrKey);
    /// @}

protected:
    /// @name Connecting the interface file's widgets to a panel's outlets and actions
    /// @{
    virtual void connectOutlets(QWidget&) {}
    virtual WidgetFactories widgetFactories() const { return {}; }
    /// @}

    /// @name The host, for panels whose construction failed too: nothing is sent, nothing comes
    /// back
    /// @{
    void tellHost(const QString& key, const QString& choice) const;
    PMPageFormat* hostPageFormat() const;
    PMPrintSettings* hostPrintSettings() const;
    /// @}

    /// The bundle's text for the key; the key itself without a bundle.
    QString localized(const QString& key) const;
    /// Shows a PPD option under its own text, which is itself a key of the string table, or under
    /// the fallback key when it has none.
    QString titleOfOption(const char* keyword, const char* fallbackKey) const;

    std::shared_ptr<PDEPluginCallback13_v400_> pdePluginCallbackObject;
    QPointer<QWidget> kPDEView;
    QString thePDEName;
    std::shared_ptr<const PDEBundle> nsPDEBundle;
    ppd_file_t* ppd = nullptr;
    PMPrintSession* printSession = nullptr;
    PMPrintSettings* pmPrintSettings = nullptr;
    PMPrintSettings* printSettings = nullptr;
    PMPageFormat* formatSettings = nullptr;
    PMPrinter* printer = nullptr;
    std::array<char, 256> deviceURI{};
    std::optional<QStringList> mSupportedOptions;
    std::int32_t mLoadedNibFlg = 0;
    std::int32_t mFormattedItemFlg = 0;

private:
    void copyDeviceURI();
    bool loadNibNamed(const QString& name);

    /// What the interface file made; the root view in it, when it has one, is kPDEView.
    QPointer<QWidget> mNibContents;
};

} // namespace labelcut
