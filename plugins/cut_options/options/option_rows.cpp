// Cut-options panel: the table of its eight options, in the order of every sequence over them.
#include "plugins/cut_options/options/option_pde.h"

#include <algorithm>
#include <iterator>

namespace labelcut {

std::span<const OptionPDE13_v400_::Row> OptionPDE13_v400_::rows() {
    using P = OptionPDE13_v400_;
    static constexpr Row kRows[] = {
        {keyword::kCutLabel, item::kCutLabel, &P::mCutEvery_Option, &P::mCutEvery_Choices,
         &P::mCutEvery_Selection, &P::mCutEveryChkBx, "RS_CutAtEvery", "RS_STitle_CutLabels", "1",
         SaveReader::AutoChain, &P::initializeUI_CutLabel, &P::saveSetting_CutLabel},
        {keyword::kCutAtEnd, item::kCutAtEnd, &P::mCutEnd_Option, &P::mCutEnd_Choices,
         &P::mCutEnd_Selection, &P::mCutAndEndChkBx, "RS_CutAtEnd", "RS_STitle_CutAtEnd", "ON",
         SaveReader::State, &P::initializeUI_CutAtEnd, &P::saveSetting_CutAtEnd},
        {keyword::kMirror, item::kMirror, &P::mMirror_Option, &P::mMirror_Choices,
         &P::mMirror_Selection, &P::mMirrorPrintChkBx, "RS_MirrorPrinting",
         "RS_STitle_MirrorPrinting", "ON", SaveReader::State, &P::initializeUI_Mirror,
         &P::saveSetting_Mirror},
        {keyword::kAutoCut, item::kAutoCut, &P::mAutoCut_Option, &P::mAutoCut_Choices,
         &P::mAutoCut_Selection, &P::mAutoCutChkBx, "RS_AutoTapeCut", "RS_STitle_AutoTapeCut", "ON",
         SaveReader::AutoChain, &P::initializeUI_AutoCut, &P::saveSetting_AutoCut},
        {keyword::kHalfCut, item::kHalfCut, &P::mHalfCut_Option, &P::mHalfCut_Choices,
         &P::mHalfCut_Selection, &P::mHalfCutChkBx, "RS_HalfCut", "RS_STitle_HalfCut", "ON",
         SaveReader::AutoChain, &P::initializeUI_HalfCut, &P::saveSetting_HalfCut},
        {keyword::kChainPrint, item::kChainPrint, &P::mChainPrint_Option, &P::mChainPrint_Choices,
         &P::mChainPrint_Selection, &P::mChainPrintChkBx, "RS_ChainPrinting",
         "RS_STitle_ChainPrint", "ON", SaveReader::AutoChain, &P::initializeUI_ChainPrint,
         &P::saveSetting_ChainPrint},
        {keyword::kSpecialTape, item::kSpecialTape, &P::mSpecialTape_Option,
         &P::mSpecialTape_Choices, &P::mSpecialTape_Selection, &P::mSpecialTapeChkBx,
         "RS_SpecialTape", "RS_STitle_SpecialTape", "ON", SaveReader::State,
         &P::initializeUI_SpecialTape, &P::saveSetting_SpecialTape},
        {keyword::kRemoveBlkSpace, item::kRemoveBlkSpace, &P::mRemoveBlkSpace_Option,
         &P::mRemoveBlkSpace_Choices, &P::mRemoveBlkSpace_Selection, &P::mRemoveBlkSpaceChkBx,
         "RS_RemoveBlkSpace", "RS_STitle_RemoveBlkSpace", "ON", SaveReader::State,
         &P::initializeUI_RemoveBlkSpace, &P::saveSetting_RemoveBlkSpace},
    };
    return kRows;
}

const OptionPDE13_v400_::Row& OptionPDE13_v400_::rowOf(std::uint32_t itemBit) {
    return *std::ranges::find(rows(), itemBit, &Row::item);
}

} // namespace labelcut
