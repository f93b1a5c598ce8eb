// Cut-options panel: the table of its eight options, in the order of every sequence over them. All
// that tells one option from another stands here, unless it is a rule that only one of them has.
#include "plugins/cut_options/options/option_pde.h"

#include <algorithm>

namespace labelcut {

std::span<const OptionPDE13_v400_::Row> OptionPDE13_v400_::rows() {
    using P = OptionPDE13_v400_;
    static constexpr Row kRows[] = {
        {
            .keyword = keyword::kCutLabel,
            .item = item::kCutLabel,
            .option = &P::mCutEvery_Option,
            .choices = &P::mCutEvery_Choices,
            .selection = &P::mCutEvery_Selection,
            .selectionName = "mCutEvery_Selection",
            .checkBox = &P::mCutEveryChkBx,
            .outlet = "mCutEveryChkBx",
            .inCombination = &CutCheckBoxes::cutEvery,
            .titleKey = "RS_CutAtEvery",
            .summaryTitleKey = "RS_STitle_CutLabels",
            .disabledToolTipKey = "TT_SpecialTapeExcludes",
            .onChoice = "1",
            .initialize = &P::initializeUI_CutLabel,
            .save = &P::saveSetting_CutLabel,
            .displayRank = 1,
            .lines = 2,
            .popUpEntries = {"EveryEndMirrorOnOffOff"},
            .exclusionRank = 4,
        },
        {
            .keyword = keyword::kCutAtEnd,
            .item = item::kCutAtEnd,
            .option = &P::mCutEnd_Option,
            .choices = &P::mCutEnd_Choices,
            .selection = &P::mCutEnd_Selection,
            .selectionName = "mCutEnd_Selection",
            .checkBox = &P::mCutAndEndChkBx,
            .outlet = "mCutAndEndChkBx",
            .inCombination = &CutCheckBoxes::cutAndEnd,
            .titleKey = "RS_CutAtEnd",
            .summaryTitleKey = "RS_STitle_CutAtEnd",
            .initialize = &P::initializeUI_CutAtEnd,
            .save = &P::saveSetting_CutAtEnd,
            .displayRank = 3,
            .popUpEntries = {"EveryEndMirrorOffOnOff"},
        },
        {
            .keyword = keyword::kMirror,
            .item = item::kMirror,
            .option = &P::mMirror_Option,
            .choices = &P::mMirror_Choices,
            .selection = &P::mMirror_Selection,
            .selectionName = "mMirror_Selection",
            .checkBox = &P::mMirrorPrintChkBx,
            .outlet = "mMirrorPrintChkBx",
            .inCombination = &CutCheckBoxes::mirrorPrint,
            .titleKey = "RS_MirrorPrinting",
            .summaryTitleKey = "RS_STitle_MirrorPrinting",
            .initialize = &P::initializeUI_Mirror,
            .save = &P::saveSetting_Mirror,
            .displayRank = 7,
        },
        {
            .keyword = keyword::kAutoCut,
            .item = item::kAutoCut,
            .option = &P::mAutoCut_Option,
            .choices = &P::mAutoCut_Choices,
            .selection = &P::mAutoCut_Selection,
            .selectionName = "mAutoCut_Selection",
            .checkBox = &P::mAutoCutChkBx,
            .outlet = "mAutoCutChkBx",
            .inCombination = &CutCheckBoxes::autoCut,
            .titleKey = "RS_AutoTapeCut",
            .summaryTitleKey = "RS_STitle_AutoTapeCut",
            .disabledToolTipKey = "TT_SpecialTapeExcludes",
            .initialize = &P::initializeUI_AutoCut,
            .save = &P::saveSetting_AutoCut,
            .displayRank = 2,
            .shownFlag = &P::mAutoCutHideKey_dec,
            .popUpEntries = {"AHCMOnOffOffOff", "AHCMOnOffOnOff", "AHCMOnOnOffOff",
                             "AHCMOnOnOnOff"},
            .exclusionRank = 1,
        },
        {
            .keyword = keyword::kHalfCut,
            .item = item::kHalfCut,
            .option = &P::mHalfCut_Option,
            .choices = &P::mHalfCut_Choices,
            .selection = &P::mHalfCut_Selection,
            .selectionName = "mHalfCut_Selection",
            .checkBox = &P::mHalfCutChkBx,
            .outlet = "mHalfCutChkBx",
            .inCombination = &CutCheckBoxes::halfCut,
            .titleKey = "RS_HalfCut",
            .summaryTitleKey = "RS_STitle_HalfCut",
            .disabledToolTipKey = "TT_SpecialTapeExcludes",
            .initialize = &P::initializeUI_HalfCut,
            .save = &P::saveSetting_HalfCut,
            .displayRank = 4,
            .popUpEntries = {"AHCMOffOnOffOff", "AHCMOffOnOnOff", "AHCMOnOnOffOff",
                             "AHCMOnOnOnOff"},
            .exclusionRank = 3,
        },
        {
            .keyword = keyword::kChainPrint,
            .item = item::kChainPrint,
            .option = &P::mChainPrint_Option,
            .choices = &P::mChainPrint_Choices,
            .selection = &P::mChainPrint_Selection,
            .selectionName = "mChainPrint_Selection",
            .checkBox = &P::mChainPrintChkBx,
            .outlet = "mChainPrintChkBx",
            .inCombination = &CutCheckBoxes::chainPrint,
            .titleKey = "RS_ChainPrinting",
            .summaryTitleKey = "RS_STitle_ChainPrint",
            .disabledToolTipKey = "TT_SpecialTapeExcludes",
            .initialize = &P::initializeUI_ChainPrint,
            .save = &P::saveSetting_ChainPrint,
            .displayRank = 6,
            .popUpEntries = {"AHCMOffOffOnOff", "AHCMOffOnOnOff", "AHCMOnOffOnOff",
                             "AHCMOnOnOnOff"},
            .exclusionRank = 2,
        },
        {
            .keyword = keyword::kSpecialTape,
            .item = item::kSpecialTape,
            .option = &P::mSpecialTape_Option,
            .choices = &P::mSpecialTape_Choices,
            .selection = &P::mSpecialTape_Selection,
            .selectionName = "mSpecialTape_Selection",
            .checkBox = &P::mSpecialTapeChkBx,
            .outlet = "mSpecialTapeChkBx",
            .inCombination = &CutCheckBoxes::specialTape,
            .titleKey = "RS_SpecialTape",
            .summaryTitleKey = "RS_STitle_SpecialTape",
            .initialize = &P::initializeUI_SpecialTape,
            .save = &P::saveSetting_SpecialTape,
            .displayRank = 5,
            .popUpEntries = {"SPMROnOff"},
        },
        {
            .keyword = keyword::kRemoveBlkSpace,
            .item = item::kRemoveBlkSpace,
            .option = &P::mRemoveBlkSpace_Option,
            .choices = &P::mRemoveBlkSpace_Choices,
            .selection = &P::mRemoveBlkSpace_Selection,
            .selectionName = "mRemoveBlkSpace_Selection",
            .checkBox = &P::mRemoveBlkSpaceChkBx,
            .outlet = "mRemoveBlkSpaceChkBx",
            .inCombination = &CutCheckBoxes::removeBlkSpace,
            .titleKey = "RS_RemoveBlkSpace",
            .summaryTitleKey = "RS_STitle_RemoveBlkSpace",
            .disabledToolTipKey = "TT_PaperForbidsRemoveBlkSpace",
            .initialize = &P::initializeUI_RemoveBlkSpace,
            .save = &P::saveSetting_RemoveBlkSpace,
            .displayRank = 8,
        },
    };
    return kRows;
}

const OptionPDE13_v400_::Row& OptionPDE13_v400_::rowOf(std::uint32_t itemBit) {
    return *std::ranges::find(rows(), itemBit, &Row::item);
}

std::vector<const OptionPDE13_v400_::Row*> OptionPDE13_v400_::rowsBy(int Row::*rank) {
    std::vector<const Row*> ranked;
    for (const Row& row : rows()) {
        if (row.*rank != 0)
            ranked.push_back(&row);
    }
    std::ranges::sort(ranked, {}, [rank](const Row* row) { return row->*rank; });
    return ranked;
}

const OptionPDE13_v400_::Row* OptionPDE13_v400_::rowOfKeyword(const QString& keyword) {
    const auto row = std::ranges::find_if(
        rows(), [&](const Row& candidate) { return keyword == QLatin1String(candidate.keyword); });
    return row == rows().end() ? nullptr : &*row;
}

} // namespace labelcut
