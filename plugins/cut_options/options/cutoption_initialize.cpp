// Cut-options panel: first states of the controls, from the PPD, and the rules between them.
#include "plugins/cut_options/options/option_pde.h"

#include <array>

#include "platform/toolkit/int_value.h"
#include "platform/toolkit/text_encoding.h"
#include "plugins/cut_options/frame/pde_utils_method.h"
#include "plugins/cut_options/frame/tape_info.h"

namespace labelcut {

void OptionPDE13_v400_::initializeUI(const Row& row) {
    (this->*row.checkBox).setEnabled(this->*row.option != nullptr);
    initializeTitleAndState(row);
}

void OptionPDE13_v400_::initializeTitleAndState(const Row& row) {
    const PDEChoices& choices = this->*row.choices;
    if (!choices)
        return;
    Button& box = this->*row.checkBox;
    box.setTitle(titleOfOption(row.keyword, row.titleKey));
    if (choices->empty())
        return;
    // The default decides, not the mark.
    const char* defaultChoice = choices->front().choice()->option->defchoice;
    box.setState(equalKeywords(defaultChoice, row.onChoice) ? 1 : 0);
}

void OptionPDE13_v400_::initializeUI_CutLabel() {
    const bool present = mCutEvery_Option != nullptr;
    if (!mCutEvery_Choices) {
        mCutEveryChkBx.setEnabled(present);
        return;
    }
    mCutEveryStr.setStringValue(localized(QStringLiteral("RS_Labels")));
    initializeUI(rowOf(item::kCutLabel));
    mCutEveryTxBx.setEnabled(present);
    mCutEveryStpr.setEnabled(present);
    const std::optional<QString> count =
        decodeCString(mCutEvery_Option->defchoice, TextEncoding::SystemDefault);
    if (!count)
        return;
    mCutEveryTxBx.setStringValue(*count);
    mCutEveryStpr.setIntValue(intValue(*count));
}

void OptionPDE13_v400_::initializeUI_CutAtEnd() {
    initializeUI(rowOf(item::kCutAtEnd));
}

void OptionPDE13_v400_::initializeUI_Mirror() {
    initializeUI(rowOf(item::kMirror));
}

void OptionPDE13_v400_::initializeUI_AutoCut() {
    if (mAutoCutHideKey_dec == 1)
        initializeUI(rowOf(item::kAutoCut));
    else
        mAutoCutChkBx.setEnabled(mAutoCut_Option != nullptr);
}

void OptionPDE13_v400_::initializeUI_HalfCut() {
    initializeUI(rowOf(item::kHalfCut));
}

void OptionPDE13_v400_::initializeUI_ChainPrint() {
    initializeUI(rowOf(item::kChainPrint));
}

void OptionPDE13_v400_::initializeUI_SpecialTape() {
    initializeUI(rowOf(item::kSpecialTape));
}

void OptionPDE13_v400_::initializeUI_RemoveBlkSpace() {
    readTapeState();
    initializeTitleAndState(rowOf(item::kRemoveBlkSpace));
}

void OptionPDE13_v400_::readTapeState() {
    TapeInfo tape;
    GetTapeInfo(printSession, hostPrintSettings(), hostPageFormat(), ppd, &tape);
    setTapeState(tape.tapeState);
    mRemoveBlkSpaceChkBx.setEnabled(getTapeState() == 0);
    explainDisabledControls();
}

void OptionPDE13_v400_::enabledCheck_OP() {
    enableCountGroup();
    excludeBySpecialTape();
    mRemoveBlkSpaceChkBx.setEnabled(!pageHasFixedLength());
    explainDisabledControls();
}

// The count's field and stepper change only as a pair, and only from the opposite state.
void OptionPDE13_v400_::enableCountGroup() {
    const int cutEvery = mCutEveryChkBx.state();
    if (cutEvery != 0 && cutEvery != 1)
        return;
    const bool enable = cutEvery == 1;
    if (mCutEveryTxBx.isEnabled() == enable || mCutEveryStpr.isEnabled() == enable)
        return;
    mCutEveryTxBx.setEnabled(enable);
    mCutEveryStpr.setEnabled(enable);
    PDEUtilsMethod13::setEnabledForText(enable ? 1 : 0, mCutEveryStr);
}

void OptionPDE13_v400_::excludeBySpecialTape() {
    const int specialTape = mSpecialTapeChkBx.state();
    if (mSpecialTapeChkBx.isHidden() || (specialTape != 0 && specialTape != 1))
        return;
    const bool enable = specialTape == 0;
    const auto set = [enable](View& control) {
        if (control.isEnabled() != enable)
            control.setEnabled(enable);
    };
    for (const Row* row : rowsBy(&Row::exclusionRank))
        set(this->*row->checkBox);
    if (enable)
        return;
    set(mCutEveryTxBx);
    if (!mCutEveryStpr.isEnabled())
        return;
    mCutEveryStpr.setEnabled(false);
    PDEUtilsMethod13::setEnabledForText(0, mCutEveryStr);
}

bool OptionPDE13_v400_::pageHasFixedLength() const {
    std::array<char, 256> buffer{};
    const PMPaper* paper = nullptr;
    QString name;
    if (PMGetPageFormatPaper(hostPageFormat(), &paper) == noErr &&
        PMPaperGetPPDPaperName(paper, &name) == noErr && !name.isNull())
        CFStringGetCString(name, buffer, TextEncoding::Utf8);
    return isFixedLengthPaper(buffer.data());
}

void OptionPDE13_v400_::explainDisabledControls() {
    const auto explain = [this](View& control, const char* key) {
        if (control.isHidden())
            return;
        control.setToolTip(control.isEnabled() ? QString() : localized(QLatin1String(key)));
    };
    for (const Row& row : rows()) {
        if (row.disabledToolTipKey)
            explain(this->*row.checkBox, row.disabledToolTipKey);
    }
    const bool cutEveryUsable = mCutEveryChkBx.isEnabled();
    for (View* control : {static_cast<View*>(&mCutEveryTxBx), static_cast<View*>(&mCutEveryStpr)})
        explain(*control, cutEveryUsable ? "TT_CountFollowsCutEvery" : "TT_SpecialTapeExcludes");
}

} // namespace labelcut
