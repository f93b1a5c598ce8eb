// Cut-options panel: the model, its controls, and everything that keeps them and the PPD in step.
//
// The eight options differ by a row of a table (option_rows.cpp). Every sequence over all options
// walks the rows in the table's order; the operations named per option are one line each. Sources:
//   option_pde.cpp            construction, the fixed sequences, inspection
//   option_rows.cpp           the table
//   cutoption_initialize.cpp  first states of the controls, and the rules between them
//   cutoption_ibaction.cpp    user actions
//   cutoption_save.cpp        writing choices to the host
//   option_following.cpp      selections that follow the PPD's marks
//   option_refresh.cpp        controls that follow the selections, and the combination pop-up
//   option_layout.cpp         the view for the printer at hand
//   cut_plan.cpp              what the choices that were sent mean for the tape
//   option_summary.cpp        the summary and the remark
#pragma once

#include <QPointer>

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "plugins/cut_options/frame/base_pde.h"
#include "plugins/cut_options/preview/option_view.h"

namespace labelcut {

/// What an item mask names; see BasePDE13_v400_::updateUIItem() and updateMarkedSelections().
namespace item {
inline constexpr std::uint32_t kCutLabel = 0x100;
inline constexpr std::uint32_t kCutAtEnd = 0x200;
inline constexpr std::uint32_t kMirror = 0x400;
inline constexpr std::uint32_t kAutoCut = 0x800;
inline constexpr std::uint32_t kHalfCut = 0x1000;
inline constexpr std::uint32_t kChainPrint = 0x2000;
inline constexpr std::uint32_t kSpecialTape = 0x4000;
inline constexpr std::uint32_t kRemoveBlkSpace = 0x10000;
inline constexpr std::uint32_t kPopUp = 0x40000;
} // namespace item

/// The PPD main keywords of the eight options.
namespace keyword {
inline constexpr char kCutLabel[] = "KvCutLabel";
inline constexpr char kCutAtEnd[] = "KvCutAtEnd";
inline constexpr char kMirror[] = "KvMirror";
inline constexpr char kAutoCut[] = "KvAutoTapeCut";
inline constexpr char kHalfCut[] = "KvHalfCut";
inline constexpr char kChainPrint[] = "KvChainPrint";
inline constexpr char kSpecialTape[] = "KvSpecialTape";
inline constexpr char kRemoveBlkSpace[] = "KvRemoveBlkSpace";
} // namespace keyword

class OptionPDE13_v400_ : public BasePDE13_v400_ {
public:
    OptionPDE13_v400_() = default;
    ~OptionPDE13_v400_() override;

    /// Always answers this panel, even when the base could not be built; it is then empty.
    BasePDE13_v400_* initWithCallback(std::shared_ptr<PDEPluginCallback13_v400_> callback,
                                      std::shared_ptr<const PDEBundle> bundle) override;

    /// @name The panel interface
    /// @{
    /// The first call also writes the current choice of every option to the host.
    std::optional<QStringList> supportedPPDOptionKeys() override;
    void PPDOptionKeyValueDidChange(const QString& key, const QString& choice) override;
    std::optional<QVariantMap> summaryInfo() override;
    bool shouldPrint() override;
    void showChoice(const QString& keyword) override;
    SummaryWords summaryWords() override;
    /// While special tape is on: the ticked options that are sent as off because of it.
    QString remark() override;
    std::optional<PDECutPlan> cutPlan() override;
    QVariantMap inspect() const override;
    /// @}

    /// @name The fixed sequences over all options
    /// @{
    void initUI() override;
    void setValuesToKey() override;
    void setPDEItems() override;
    void setPDEItems2() override;
    /// @}

    void setTapeState(std::int32_t state) { mTapeState = state; }
    std::int32_t getTapeState() const { return mTapeState; }

    /// @name First states of the controls, from the PPD
    /// @{
    void initializeUI_OtherStr() {}
    void initializeUI_CutLabel();
    void initializeUI_CutAtEnd();
    void initializeUI_Mirror();
    void initializeUI_AutoCut();
    void initializeUI_HalfCut();
    void initializeUI_ChainPrint();
    void initializeUI_SpecialTape();
    void initializeUI_RemoveBlkSpace();
    /// @}

    /// The rules between the options: enables and disables controls, never changes a tick.
    void enabledCheck_OP();

    /// @name User actions
    /// @{
    void changeOption(const View& sender);
    void changeOptionPopUpButton();
    void changeCutEveryValue(const View& sender);
    /// The host's tabs changed; the panel has nothing to do then.
    void tabView(const View&, const View&) {}
    /// The text of a field changed while it is typed into.
    void controlTextDidChange(const View& field);
    /// @}

    /// @name Writing choices to the host
    /// @{
    void saveSetting_CutLabel();
    void saveSetting_CutAtEnd();
    void saveSetting_Mirror();
    void saveSetting_AutoCut();
    void saveSetting_HalfCut();
    void saveSetting_ChainPrint();
    void saveSetting_SpecialTape();
    void saveSetting_RemoveBlkSpace();
    /// The state of a checkbox as a choice index; 0 while special tape excludes it.
    std::int32_t indexForSaveAutoChain(const Button& control) const;
    /// @}

    /// Rereads the selections that the mask names from the PPD's marked choices.
    void updateMarkedSelections(std::uint32_t mask) override;
    /// Sets the controls that the mask names from their selections, or applies the pop-up's entry.
    void updateUIItem(std::int32_t mask) override;
    /// The tag of the pop-up entry that matches the checkboxes.
    std::int64_t targetPopUpButtonTag() const;

    void awakeFromNib() override;

    /// @name All that makes an option; see option_rows.cpp
    /// @{
    struct Row {
        const char* keyword;
        std::uint32_t item;
        ppd_option_t* OptionPDE13_v400_::*option;
        PDEChoices OptionPDE13_v400_::*choices;
        const PDEChoice* OptionPDE13_v400_::*selection;
        /// What inspect() calls the selection.
        const char* selectionName;

        Button OptionPDE13_v400_::*checkBox;
        /// Object name of the checkbox in the interface file.
        const char* outlet;
        /// The checkbox's place among those that the preview and the pop-up are derived from.
        Button CutCheckBoxes::*inCombination;
        /// String-table keys of the checkbox's title and the summary's, for options without a text.
        const char* titleKey;
        const char* summaryTitleKey;
        /// String-table key of the tool tip while a rule disables the checkbox; null: none does.
        const char* disabledToolTipKey = nullptr;
        /// The default choice with which the checkbox starts ticked.
        const char* onChoice = "ON";

        /// The named operations, for the sequences.
        void (OptionPDE13_v400_::*initialize)();
        void (OptionPDE13_v400_::*save)();

        /// Place in the column of checkboxes, from the top, and in the summary; and how many lines
        /// it takes in the column.
        int displayRank;
        int lines = 1;
        /// The checkbox is shown where the PPD has the option and, if there is a flag, the flag
        /// is 1.
        std::uint8_t OptionPDE13_v400_::*shownFlag = nullptr;
        /// Titles of the pop-up entries that mean nothing without the checkbox; null ends the list.
        std::array<const char*, 5> popUpEntries{};
        /// Place among the options that special tape excludes: their checkboxes are disabled while
        /// it is on, and what is sent for them is the first choice. 0: it does not exclude this
        /// one.
        int exclusionRank = 0;
    };
    static std::span<const Row> rows();
    static const Row& rowOf(std::uint32_t itemBit);
    /// The rows by one of their ranks, lowest first, without those of rank 0.
    static std::vector<const Row*> rowsBy(int Row::*rank);
    /// @}

protected:
    void connectOutlets(QWidget& contents) override;
    WidgetFactories widgetFactories() const override;

    std::int32_t mTapeState = 0;
    View mOptionDummyView;
    PopUpButton mOptionPopUpButton;
    Button mCutEveryChkBx;
    Button mCutAndEndChkBx;
    Button mMirrorPrintChkBx;
    Button mAutoCutChkBx;
    Button mHalfCutChkBx;
    Button mChainPrintChkBx;
    Button mSpecialTapeChkBx;
    Button mRemoveBlkSpaceChkBx;
    TextField mCutEveryTxBx;
    StepperHandle mCutEveryStpr;
    TextField mCutEveryStr;
    QPointer<OptionView13_v400_> mOptionView;
    PDEChoices mCutEvery_Choices;
    PDEChoices mCutEnd_Choices;
    PDEChoices mMirror_Choices;
    PDEChoices mAutoCut_Choices;
    PDEChoices mHalfCut_Choices;
    PDEChoices mChainPrint_Choices;
    PDEChoices mSpecialTape_Choices;
    PDEChoices mRemoveBlkSpace_Choices;
    ppd_option_t* mCutEvery_Option = nullptr;
    ppd_option_t* mCutEnd_Option = nullptr;
    ppd_option_t* mMirror_Option = nullptr;
    ppd_option_t* mAutoCut_Option = nullptr;
    ppd_option_t* mHalfCut_Option = nullptr;
    ppd_option_t* mChainPrint_Option = nullptr;
    ppd_option_t* mSpecialTape_Option = nullptr;
    ppd_option_t* mRemoveBlkSpace_Option = nullptr;
    const PDEChoice* mCutEvery_Selection = nullptr;
    const PDEChoice* mCutEnd_Selection = nullptr;
    const PDEChoice* mMirror_Selection = nullptr;
    const PDEChoice* mAutoCut_Selection = nullptr;
    const PDEChoice* mHalfCut_Selection = nullptr;
    const PDEChoice* mChainPrint_Selection = nullptr;
    const PDEChoice* mSpecialTape_Selection = nullptr;
    const PDEChoice* mRemoveBlkSpace_Selection = nullptr;
    /// The auto-tape-cut choice as it stands behind the cut-every checkbox.
    const PDEChoice* mAutoCut_CutEvery_Selection = nullptr;
    std::uint8_t usb_dec = 0;
    float choice_PaperSize = 0;
    std::uint8_t column_dec = 0;
    std::uint8_t set_formatSetting = 0;
    /// 1: automatic cut has a checkbox of its own. 0: it follows the cut-every checkbox.
    std::uint8_t mAutoCutHideKey_dec = 0;
    std::int8_t checkValues_dec = 0;

private:
    struct CountBounds {
        std::int32_t min;
        std::int32_t max;
    };
    CutCheckBoxes cutCheckBoxes() const;
    static const Row* rowOfKeyword(const QString& keyword);
    bool isShown(const Row& row) const;
    /// Whether special tape is seen and not off: what it excludes is then sent as off. The rules
    /// that disable controls wait for a state of exactly 1.
    bool specialTapeExcludes() const;

    void detectUsb();
    void findOptions();

    void initializeUI(const Row& row);
    void initializeTitleAndState(const Row& row);
    void readTapeState();
    bool pageHasFixedLength() const;
    void enableCountGroup();
    void excludeBySpecialTape();
    void explainDisabledControls();

    CountBounds countBounds() const;

    void saveSetting(const Row& row);
    void saveByState(const Row& row);
    std::int32_t markedOrDefaultIndex(const PDEChoices& choices, const char* cStrKey) const;
    std::int32_t indexToSave(const Row& row) const;
    void saveAutoCutByName();

    const PDEChoice* markedOrDefaultChoice(const PDEChoices& choices, const char* cStrKey) const;

    void applyPopUpEntry();
    void refreshCutLabel();
    void refreshCheckBox(const Row& row);

    double missingWidth() const;
    void fitTitles();
    std::array<View*, 3> countControls();
    void hideRows();
    void placeCountRow(double y);
    void createPreview(bool isRV);

    QString summaryTitle(const Row& row) const;
    QString yesNoValue(const Row& row) const;
    QString countValue() const;
    std::int32_t markedCount() const;
};

} // namespace labelcut
