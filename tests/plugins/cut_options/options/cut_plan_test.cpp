// Tests of the cut-options panel: what its choices mean for the tape.
#include "plugins/cut_options/options/cut_plan.h"

#include <gtest/gtest.h>

#include "plugins/cut_options/preview/option_view.h"
#include "tests/plugins/cut_options/options/panel_fixtures.h"

namespace labelcut::test {
namespace {

/// What stands in a picture: at a joint between two labels and behind the last one; and the blank
/// lead with the joint behind it.
struct Drawn {
    PDECut between = PDECut::None;
    PDECut atEnd = PDECut::None;
    PDELead lead = PDELead::Unsaid;
    PDECut afterLead = PDECut::None;
};
constexpr PDECut N = PDECut::None;
constexpr PDECut H = PDECut::Half;
constexpr PDECut F = PDECut::Full;
constexpr PDELead kBlank = PDELead::Blank;
constexpr PDELead kChained = PDELead::Chained;

constexpr Drawn kRoll[] = {{N, N}, {N, F}, {F, F}};
/// By auto cut, half cut and chain printing, as the pictures' slots go.
constexpr Drawn kTape[] = {
    {N, N, kBlank, N}, {N, N, kChained, N}, {H, N, kBlank, H}, {H, N, kChained, H},
    {F, F, kBlank, F}, {F, N, kChained, F}, {H, F, kBlank, H}, {H, N, kChained, H},
};
constexpr Drawn kSpecialTape = {N, PDECut::ByHand, kBlank, N};

Drawn pictureOf(const SentChoices& sent) {
    CutCombination read;
    read.specialTape = sent.specialTape;
    read.autoCut = !sent.specialTape && sent.autoCut;
    read.cutAtEnd = sent.cutAtEnd;
    read.halfCut = !sent.specialTape && sent.halfCut;
    read.chainPrint = !sent.specialTape && sent.chainPrint;
    const int slot = pictureSlot(read, sent.isRV);
    if (sent.isRV)
        return kRoll[slot % 3];
    return slot >= 16 ? kSpecialTape : kTape[slot / 2];
}

PDECut stronger(PDECut a, PDECut b) {
    return a < b ? b : a;
}

/// Every combination of the on/off options, with a count of 1.
std::vector<SentChoices> everyCombination() {
    std::vector<SentChoices> all;
    for (unsigned bits = 0; bits < 256; ++bits) {
        SentChoices sent;
        sent.hasAutoCut = true;
        sent.cutEvery = 1;
        bool* const flags[] = {&sent.isRV,    &sent.autoCut,         &sent.cutAtEnd,
                               &sent.halfCut, &sent.chainPrint,      &sent.specialTape,
                               &sent.mirror,  &sent.removeBlankSpace};
        for (unsigned i = 0; i < 8; ++i)
            *flags[i] = (bits >> i & 1U) != 0;
        all.push_back(sent);
    }
    return all;
}

/// A panel whose printer has these marks; no view is loaded.
struct Planned : PanelOnHost {
    explicit Planned(const PpdBuilder& ppd,
                     const std::vector<std::pair<const char*, const char*>>& marks = {})
        : PanelOnHost(ppd.open()) {
        ppd::markDefaults(host->ppd.get());
        construct();
        panel->supportedPPDOptionKeys();
        for (const auto& [keyword, choice] : marks)
            EXPECT_TRUE(ppd::markOption(host->ppd.get(), keyword, choice)) << keyword;
    }
    PDECutPlan plan() const { return panel->cutPlan().value(); }
};

} // namespace

TEST(CutPlan, SaysWhatEveryPictureShows) {
    for (const SentChoices& sent : everyCombination()) {
        const Drawn drawn = pictureOf(sent);
        const PDECutPlan plan = cutPlanOf(sent);
        EXPECT_EQ(stronger(plan.afterEach, plan.groupSize == 1 ? plan.afterGroup : N),
                  drawn.between);
        EXPECT_EQ(plan.lead, drawn.lead);
        EXPECT_EQ(plan.afterLead, drawn.afterLead);
        EXPECT_EQ(plan.isMirrored, sent.mirror);
        // On tape no picture knows of cut at end.
        const bool isSilent = sent.cutAtEnd && !sent.isRV && !sent.specialTape;
        EXPECT_EQ(plan.afterLast.value_or(drawn.between), isSilent ? F : drawn.atEnd);
    }
}

TEST(CutPlan, CutsAfterAsManyLabelsAsAreChosen) {
    for (const bool isRV : {true, false}) {
        SentChoices sent;
        sent.isRV = isRV;
        sent.hasAutoCut = sent.autoCut = true;
        sent.cutEvery = 7;
        const PDECutPlan plan = cutPlanOf(sent);
        EXPECT_EQ(plan.afterGroup, F);
        EXPECT_EQ(plan.groupSize, 7);
        EXPECT_EQ(plan.afterEach, N);
    }
}

TEST(CutPlan, CutsHalfBetweenAndWholeAfterSeveralLabels) {
    SentChoices sent;
    sent.hasAutoCut = sent.autoCut = sent.halfCut = true;
    sent.cutEvery = 3;
    const PDECutPlan plan = cutPlanOf(sent);
    EXPECT_EQ(plan.afterEach, H);
    EXPECT_EQ(plan.afterGroup, F);
    EXPECT_EQ(plan.groupSize, 3);
}

TEST(CutPlan, CutsByTheCountWhereThatIsAllThePrinterIsTold) {
    SentChoices sent;
    sent.isRV = true;
    sent.cutEvery = 4;
    EXPECT_EQ(cutPlanOf(sent).groupSize, 4);
    EXPECT_EQ(cutPlanOf(sent).afterGroup, F);
    sent.hasAutoCut = true;
    EXPECT_EQ(cutPlanOf(sent).afterGroup, N) << "automatic cut is off";
}

TEST(CutPlan, CutsAtTheEndBesideCutEvery) {
    SentChoices sent;
    sent.isRV = sent.hasAutoCut = sent.autoCut = true;
    sent.cutEvery = 4;
    EXPECT_FALSE(cutPlanOf(sent).afterLast);
    sent.cutAtEnd = true;
    EXPECT_EQ(cutPlanOf(sent).afterLast, F);
}

TEST(CutPlan, RemovesBlankSpaceOnlyFromTape) {
    SentChoices sent;
    sent.removeBlankSpace = true;
    EXPECT_TRUE(cutPlanOf(sent).removesBlankSpace);
    EXPECT_EQ(cutPlanOf(sent).medium, PDEMedium::Tape);
    sent.hasFixedLength = true;
    EXPECT_FALSE(cutPlanOf(sent).removesBlankSpace);
    EXPECT_EQ(cutPlanOf(sent).medium, PDEMedium::Labels);
    sent.hasFixedLength = false;
    sent.specialTape = true;
    EXPECT_FALSE(cutPlanOf(sent).removesBlankSpace);
    EXPECT_EQ(cutPlanOf(sent).medium, PDEMedium::SpecialTape);
}

TEST(CutPlan, FollowsTheMarksOfThePrinter) {
    Planned tape(printerOffering(kAllOptions, false, true),
                 {{"KvAutoTapeCut", "ON"}, {"KvHalfCut", "ON"}, {"KvMirror", "ON"}});
    EXPECT_EQ(tape.plan().afterEach, H);
    EXPECT_EQ(tape.plan().afterLast, F);
    EXPECT_TRUE(tape.plan().isMirrored);
    ASSERT_TRUE(ppd::markOption(tape.host->ppd.get(), "KvSpecialTape", "ON"));
    EXPECT_EQ(tape.plan().afterLast, PDECut::ByHand);
    EXPECT_EQ(tape.plan().afterEach, N);
}

TEST(CutPlan, OfAPrinterWithoutAnyOfTheOptionsSaysNothing) {
    Planned bare(printerOffering(0, true, false));
    EXPECT_FALSE(bare.panel->cutPlan());
}

} // namespace labelcut::test
