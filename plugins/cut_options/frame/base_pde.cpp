// Plug-in frame: the base panel.
#include "plugins/cut_options/frame/base_pde.h"

#include <QWidget>

#include <cmath>
#include <span>
#include <utility>

#include "platform/printing/ppd_lookup.h"
#include "platform/toolkit/notification_centre.h"
#include "platform/toolkit/text_encoding.h"
#include "plugins/cut_options/frame/pde_utils_method.h"

namespace labelcut {

namespace {

constexpr char kNibName[] = "OptionPDE";
constexpr char kTapeTypeAttribute[] = "KvTapeType";
constexpr char kFileVersionAttribute[] = "FileVersion";
/// A key window up to this much taller than the view (points) is a dialog that is still collapsed.
constexpr double kDialogOverhead = 96.0;
/// Deliberately one less than the field: its last byte is never written.
constexpr std::size_t kDeviceURIBytes = 255;

} // namespace

BasePDE13_v400_*
BasePDE13_v400_::initWithCallback(std::shared_ptr<PDEPluginCallback13_v400_> callback,
                                  std::shared_ptr<const PDEBundle> bundle) {
    if (!callback)
        return nullptr;
    mSupportedOptions.reset();
    thePDEName = QString();
    ppd = nullptr;
    nsPDEBundle = std::move(bundle);
    pdePluginCallbackObject = std::move(callback);
    printSession = pdePluginCallbackObject->printSession();
    pmPrintSettings = pdePluginCallbackObject->printSettings();
    printSettings = pdePluginCallbackObject->printSettings();
    formatSettings = pdePluginCallbackObject->pageFormat();
    printer = pdePluginCallbackObject->printer();
    ppd = pdePluginCallbackObject->ppdFile();
    copyDeviceURI();
    return this;
}

// What a panel holds goes in a fixed order, the view first and the bundle last.
BasePDE13_v400_::~BasePDE13_v400_() {
    delete mNibContents.data();
    mSupportedOptions.reset();
    thePDEName = QString();
    pdePluginCallbackObject.reset();
    nsPDEBundle.reset();
}

void BasePDE13_v400_::copyDeviceURI() {
    deviceURI.fill('\0');
    PMURL url;
    if (PMPrinterCopyDeviceURI(printer, &url) != noErr)
        return;
    if (const std::optional<QString> text = CFURLGetString(url))
        CFStringGetCString(*text, std::span(deviceURI).first(kDeviceURIBytes),
                           TextEncoding::SystemDefault);
}

QWidget* BasePDE13_v400_::panelView() {
    if (!kPDEView)
        loadNibNamed(QLatin1String(kNibName));
    return kPDEView;
}

bool BasePDE13_v400_::loadNibNamed(const QString& name) {
    if (!nsPDEBundle)
        return false;
    delete mNibContents.data();
    std::unique_ptr<QWidget> contents =
        loadInterfaceFile(nsPDEBundle->pathForInterfaceFile(name), *nsPDEBundle, widgetFactories());
    if (!contents)
        return false;
    mNibContents = contents.release();
    if (mNibContents->objectName() == QLatin1String("kPDEView"))
        kPDEView = mNibContents;
    connectOutlets(*mNibContents);
    awakeFromNib();
    return true;
}

QString BasePDE13_v400_::panelName() {
    if (thePDEName.isNull())
        thePDEName = localized(QStringLiteral("OP_PANEL_NAME"));
    return thePDEName;
}

QString BasePDE13_v400_::panelKind() {
    return QLatin1String(kVendorPrefix) + QLatin1String(kPanelKindSuffix);
}

std::optional<QStringList> BasePDE13_v400_::supportedPPDOptionKeys() {
    setValuesToKey();
    return std::nullopt;
}

void BasePDE13_v400_::willShow() {
    initSetTitleTexts();
    initUI();
    updateUI();
}

bool BasePDE13_v400_::saveValuesAndReturnError(QString*) {
    setValuesToKey();
    return true;
}

bool BasePDE13_v400_::restoreValuesAndReturnError(QString*) {
    setPDEItems2();
    updateUI();
    return true;
}

void BasePDE13_v400_::setSupportedOptions(std::optional<QStringList> options) {
    mSupportedOptions = std::move(options);
}

std::optional<QString> BasePDE13_v400_::fileVerString() const {
    return PDEUtilsMethod13::ppdAttrValStr(ppd, kFileVersionAttribute);
}

bool BasePDE13_v400_::isRVPrinter() const {
    return PDEUtilsMethod13::ppdAttrValStr(ppd, kTapeTypeAttribute) == QStringLiteral("RV");
}

void BasePDE13_v400_::setViewFrameSize(Size size) {
    if (!pdePluginCallbackObject || !pdePluginCallbackObject->respondsToPanelViewDidResize())
        return;
    View view(kPDEView);
    view.setFrameSize(size);
    const KeyWindow window = keyWindow(view);
    if (!window.exists)
        return;
    if (window.frameHeight > size.height + kDialogOverhead) {
        pdePluginCallbackObject->panelViewDidResize();
        return;
    }
    NotificationCentre::defaultCentre().addObserver(
        this, QLatin1String(kViewDidUpdateTrackingAreas), QVariant::fromValue<QObject*>(kPDEView),
        [this](const Notification&) { dialogDidExpand(); });
}

void BasePDE13_v400_::dialogDidExpand() {
    NotificationCentre::defaultCentre().removeObserver(
        this, QLatin1String(kViewDidUpdateTrackingAreas), QVariant::fromValue<QObject*>(kPDEView));
    if (pdePluginCallbackObject)
        pdePluginCallbackObject->panelViewDidResize();
}

std::int32_t BasePDE13_v400_::indexOfMarkedOption(const PDEChoices& choices,
                                                  const QString& key) const {
    const ppd_choice_t* marked = ppd::findMarkedChoice(ppd, key.toUtf8().constData());
    if (!marked)
        return -1;
    const std::optional<QString> keyword = decodeCString(marked->choice, TextEncoding::Ascii);
    if (!keyword)
        return 0;
    // An array of the option's choices has the marked one at its own place: of several of one name
    // libcups marks the first, and there may be thousands of others.
    const auto place = static_cast<std::size_t>(marked - marked->option->choices);
    if (choices && place < choices->size() && (*choices)[place].choice() == marked)
        return static_cast<std::int32_t>(place);
    const PDEChoice* found = PDEUtilsMethod13::findChoiceForString(keyword, choices);
    return found ? static_cast<std::int32_t>(found - choices->data()) : 0;
}

std::int32_t BasePDE13_v400_::indexOfDefaultOption(const PDEChoices& choices) const {
    if (!choices || choices->empty())
        return 0;
    const PDEChoice* found = PDEUtilsMethod13::findChoiceForString(std::nullopt, choices);
    return found ? static_cast<std::int32_t>(found - choices->data()) : -1;
}

const PDEChoice* BasePDE13_v400_::selectionForItem(std::int32_t index, const QString& key,
                                                   const PDEChoices& choices,
                                                   std::int32_t itemType) {
    if (!choices || index < 0 || index > static_cast<std::int32_t>(choices->size()) - 1)
        return nullptr;
    const PDEChoice& choice = (*choices)[static_cast<std::size_t>(index)];
    if (choice.ppdTitle())
        tellHost(key, *choice.ppdTitle());
    updateMarkedSelections(static_cast<std::uint32_t>(itemType));
    return &choice;
}

void BasePDE13_v400_::setDefaultChoices(const ppd_option_t* option, const PDEChoices& choices,
                                        const char* cStrKey, const QString& nStrKey) {
    if (!option || ppd::findMarkedChoice(ppd, cStrKey))
        return;
    const std::int32_t index = indexOfDefaultOption(choices);
    if (index < 0 || index >= option->num_choices)
        return;
    if (const std::optional<QString> keyword =
            decodeCString(option->choices[index].choice, TextEncoding::Utf8))
        tellHost(nStrKey, *keyword);
}

void BasePDE13_v400_::tellHost(const QString& key, const QString& choice) const {
    if (pdePluginCallbackObject)
        pdePluginCallbackObject->willChangePPDOptionKeyValue(key, choice);
}

PMPageFormat* BasePDE13_v400_::hostPageFormat() const {
    return pdePluginCallbackObject ? pdePluginCallbackObject->pageFormat() : nullptr;
}

PMPrintSettings* BasePDE13_v400_::hostPrintSettings() const {
    return pdePluginCallbackObject ? pdePluginCallbackObject->printSettings() : nullptr;
}

QString BasePDE13_v400_::localized(const QString& key) const {
    return nsPDEBundle ? nsPDEBundle->localizedStringForKey(key) : key;
}

QString BasePDE13_v400_::titleOfOption(const char* keyword, const char* fallbackKey) const {
    const std::optional<QString> title =
        PDEUtilsMethod13::newOptionTitle(ppd::findOption(ppd, keyword));
    return localized(title.value_or(QLatin1String(fallbackKey)));
}

} // namespace labelcut
