// Cut-options panel: construction, the fixed sequences over all options, inspection.
#include "plugins/cut_options/options/option_pde.h"

#include <utility>

#include "platform/printing/ppd_lookup.h"
#include "plugins/cut_options/frame/pde_utils_method.h"

namespace labelcut {

namespace {

constexpr char kAutoCutHiddenAttribute[] = "KvAutoCutObjHidden";

QVariant keywordOf(const PDEChoice* selection) {
    // Bytes that are not UTF-8 show as U+FFFD, so that a selection never looks like none.
    return selection ? QVariant(QString::fromUtf8(selection->choice()->choice)) : QVariant();
}

QVariantMap control(const char* name, const char* kind) {
    return {{QStringLiteral("name"), QLatin1String(name)},
            {QStringLiteral("kind"), QLatin1String(kind)}};
}

/// The slot and the picture's name in it, nothing for an empty slot; empty without a preview.
QVariantMap shownPicture(const OptionView13_v400_* preview) {
    if (!preview)
        return {};
    const QString image = preview->targetImageName();
    return {{QStringLiteral("slot"), preview->targetSlot()},
            {QStringLiteral("image"), image.isNull() ? QVariant() : QVariant(image)}};
}

} // namespace

OptionPDE13_v400_::~OptionPDE13_v400_() {
    delete mOptionView.data();
}

BasePDE13_v400_*
OptionPDE13_v400_::initWithCallback(std::shared_ptr<PDEPluginCallback13_v400_> callback,
                                    std::shared_ptr<const PDEBundle> bundle) {
    if (!BasePDE13_v400_::initWithCallback(std::move(callback), std::move(bundle)))
        return this;
    checkValues_dec = 1;
    column_dec = 0;
    set_formatSetting = 0;
    mAutoCutHideKey_dec = 0;
    mTapeState = 0;
    usb_dec = 0;
    detectUsb();
    findOptions();
    return this;
}

void OptionPDE13_v400_::detectUsb() {
    PMURL url;
    if (PMPrinterCopyDeviceURI(pdePluginCallbackObject->printer(), &url) != noErr)
        return;
    const std::optional<QString> scheme = CFURLCopyScheme(url);
    if (scheme == QStringLiteral("usb") || scheme == QStringLiteral("KVSGUSB"))
        usb_dec = 1;
}

void OptionPDE13_v400_::findOptions() {
    mAutoCut_CutEvery_Selection = nullptr;
    for (const Row& row : rows()) {
        this->*row.selection = nullptr;
        this->*row.option = ppd::findOption(ppd, row.keyword);
        this->*row.choices = PDEUtilsMethod13::arrayFromPPDOption(this->*row.option);
    }
    // The attribute names something hidden: its value "False" means that automatic cut is shown.
    if (mAutoCut_Option && PDEUtilsMethod13::isSupportedItem(ppd, kAutoCutHiddenAttribute))
        mAutoCutHideKey_dec = 1;
}

std::optional<QStringList> OptionPDE13_v400_::supportedPPDOptionKeys() {
    if (supportedOptions())
        return supportedOptions();
    setValuesToKey();
    QStringList keys;
    for (const Row& row : rows()) {
        if (!(this->*row.option))
            continue;
        keys.append(QLatin1String(row.keyword));
        // A count without automatic cut claims that keyword too, so that no other panel offers it.
        if (row.item == item::kCutLabel && !mAutoCut_Option)
            keys.append(QLatin1String(keyword::kAutoCut));
    }
    setSupportedOptions(keys);
    return supportedOptions();
}

void OptionPDE13_v400_::initUI() {
    if (set_formatSetting != 0)
        return;
    for (const Row& row : rows())
        (this->*row.initialize)();
    setValuesToKey();
    set_formatSetting = 1;
}

void OptionPDE13_v400_::setValuesToKey() {
    for (const Row& row : rows())
        (this->*row.save)();
}

void OptionPDE13_v400_::setPDEItems() {
    for (const Row& row : rows())
        updateUIItem(static_cast<std::int32_t>(row.item));
    updateUIItem(static_cast<std::int32_t>(item::kPopUp));
}

void OptionPDE13_v400_::setPDEItems2() {
    for (const Row& row : rows())
        updateMarkedSelections(row.item);
}

bool OptionPDE13_v400_::shouldPrint() {
    for (const Row& row : rows())
        setDefaultChoices(this->*row.option, this->*row.choices, row.keyword,
                          QLatin1String(row.keyword));
    return BasePDE13_v400_::shouldPrint();
}

CutCheckBoxes OptionPDE13_v400_::cutCheckBoxes() const {
    CutCheckBoxes boxes;
    for (const Row& row : rows())
        boxes.*row.inCombination = this->*row.checkBox;
    return boxes;
}

QVariantMap OptionPDE13_v400_::inspect() const {
    QVariantMap selections;
    QVariantList controls;
    QStringList keywords;
    for (const Row& row : rows()) {
        selections.insert(QLatin1String(row.selectionName), keywordOf(this->*row.selection));
        controls.append(control(row.outlet, "checkBox"));
        keywords.append(QLatin1String(row.keyword));
    }
    selections.insert(QStringLiteral("mAutoCut_CutEvery_Selection"),
                      keywordOf(mAutoCut_CutEvery_Selection));
    controls.append(control("mCutEveryTxBx", "field"));
    controls.append(control("mCutEveryStpr", "stepper"));
    controls.append(control("mCutEveryStr", "label"));
    controls.append(control("mOptionPopUpButton", "popUp"));
    controls.append(control("mOptionView", "preview"));
    const QVariantMap state{{QStringLiteral("tapeState"), mTapeState},
                            {QStringLiteral("usb"), usb_dec},
                            {QStringLiteral("autoCutShown"), mAutoCutHideKey_dec},
                            {QStringLiteral("isRV"), isRVPrinter()}};
    return {{QStringLiteral("selections"), selections},
            {QStringLiteral("controls"), controls},
            {QStringLiteral("keywords"), keywords},
            {QStringLiteral("preview"), shownPicture(mOptionView)},
            {QStringLiteral("state"), state}};
}

} // namespace labelcut
