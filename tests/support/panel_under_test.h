// Test support: the cut-options panel with its fields laid open, and everything around it.
#pragma once

#include <memory>

#include "plugins/cut_options/options/option_pde.h"
#include "tests/support/fake_host.h"
#include "tests/support/ppd_builder.h"

namespace labelcut::test {

class PanelUnderTest : public OptionPDE13_v400_ {
public:
    using BasePDE13_v400_::deviceURI;
    using BasePDE13_v400_::formatSettings;
    using BasePDE13_v400_::kPDEView;
    using BasePDE13_v400_::mFormattedItemFlg;
    using BasePDE13_v400_::mLoadedNibFlg;
    using BasePDE13_v400_::nsPDEBundle;
    using BasePDE13_v400_::pdePluginCallbackObject;
    using BasePDE13_v400_::pmPrintSettings;
    using BasePDE13_v400_::ppd;
    using BasePDE13_v400_::printer;
    using BasePDE13_v400_::printSession;
    using BasePDE13_v400_::printSettings;
    using OptionPDE13_v400_::checkValues_dec;
    using OptionPDE13_v400_::choice_PaperSize;
    using OptionPDE13_v400_::column_dec;
    using OptionPDE13_v400_::mAutoCut_Choices;
    using OptionPDE13_v400_::mAutoCut_CutEvery_Selection;
    using OptionPDE13_v400_::mAutoCut_Option;
    using OptionPDE13_v400_::mAutoCut_Selection;
    using OptionPDE13_v400_::mAutoCutChkBx;
    using OptionPDE13_v400_::mAutoCutHideKey_dec;
    using OptionPDE13_v400_::mChainPrint_Choices;
    using OptionPDE13_v400_::mChainPrint_Option;
    using OptionPDE13_v400_::mChainPrint_Selection;
    using OptionPDE13_v400_::mChainPrintChkBx;
    using OptionPDE13_v400_::mCutAndEndChkBx;
    using OptionPDE13_v400_::mCutEnd_Choices;
    using OptionPDE13_v400_::mCutEnd_Option;
    using OptionPDE13_v400_::mCutEnd_Selection;
    using OptionPDE13_v400_::mCutEvery_Choices;
    using OptionPDE13_v400_::mCutEvery_Option;
    using OptionPDE13_v400_::mCutEvery_Selection;
    using OptionPDE13_v400_::mCutEveryChkBx;
    using OptionPDE13_v400_::mCutEveryStpr;
    using OptionPDE13_v400_::mCutEveryStr;
    using OptionPDE13_v400_::mCutEveryTxBx;
    using OptionPDE13_v400_::mHalfCut_Choices;
    using OptionPDE13_v400_::mHalfCut_Option;
    using OptionPDE13_v400_::mHalfCut_Selection;
    using OptionPDE13_v400_::mHalfCutChkBx;
    using OptionPDE13_v400_::mMirror_Choices;
    using OptionPDE13_v400_::mMirror_Option;
    using OptionPDE13_v400_::mMirror_Selection;
    using OptionPDE13_v400_::mMirrorPrintChkBx;
    using OptionPDE13_v400_::mOptionDummyView;
    using OptionPDE13_v400_::mOptionPopUpButton;
    using OptionPDE13_v400_::mOptionView;
    using OptionPDE13_v400_::mRemoveBlkSpace_Choices;
    using OptionPDE13_v400_::mRemoveBlkSpace_Option;
    using OptionPDE13_v400_::mRemoveBlkSpace_Selection;
    using OptionPDE13_v400_::mRemoveBlkSpaceChkBx;
    using OptionPDE13_v400_::mSpecialTape_Choices;
    using OptionPDE13_v400_::mSpecialTape_Option;
    using OptionPDE13_v400_::mSpecialTape_Selection;
    using OptionPDE13_v400_::mSpecialTapeChkBx;
    using OptionPDE13_v400_::mTapeState;
    using OptionPDE13_v400_::set_formatSetting;
    using OptionPDE13_v400_::usb_dec;
};

/// A host and its panel. The host outlives the panel.
struct PanelOnHost {
    /// @param file        the host's PPD, may be null.
    /// @param bundleRoot  the plug-in's resources; the built bundle unless another is given.
    explicit PanelOnHost(ppd::File file,
                         const QString& bundleRoot = QStringLiteral(LABELCUT_BUNDLE_DIR))
        : host(std::make_shared<FakeHost>(std::move(file)))
        , bundle(std::make_shared<ResourceBundle>(bundleRoot, QLocale::c())) {}

    /// Constructs the panel; tests set up `host` before.
    PanelUnderTest& construct() {
        panel = std::make_unique<PanelUnderTest>();
        panel->initWithCallback(host, bundle);
        return *panel;
    }
    /// The same, then loads its view.
    PanelUnderTest& load() {
        construct().panelView();
        return *panel;
    }
    /// The same, then shows it for the first time with the defaults marked and rereads the marks,
    /// as a dialog does; what was sent until then is forgotten.
    PanelUnderTest& show() {
        ppd::markDefaults(host->ppd.get());
        load().willShow();
        panel->restoreValuesAndReturnError(nullptr);
        host->sent.clear();
        return *panel;
    }

    std::shared_ptr<FakeHost> host;
    std::shared_ptr<const PDEBundle> bundle;
    std::unique_ptr<PanelUnderTest> panel;
};

} // namespace labelcut::test
