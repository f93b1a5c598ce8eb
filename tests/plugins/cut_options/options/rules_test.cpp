// Tests of the cut-options panel: the rules that enable and disable its controls.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>

#include "tests/plugins/cut_options/options/panel_fixtures.h"

namespace labelcut::test {
namespace {

/// What the rules read and write.
struct Controls {
    int cutEvery = 0;
    int specialTape = 0;
    bool specialTapeHidden = false;
    bool autoCutEnabled = true;
    bool chainPrintEnabled = true;
    bool halfCutEnabled = true;
    bool cutEveryEnabled = true;
    bool fieldEnabled = true;
    bool stepperEnabled = true;
    bool labelGrey = false;
    bool removeBlkEnabled = true;
    bool operator==(const Controls&) const = default;
};

void PrintTo(const Controls& c, std::ostream* out) {
    *out << "cutEvery " << c.cutEvery << " special " << c.specialTape << " hidden "
         << c.specialTapeHidden << " | auto " << c.autoCutEnabled << " chain "
         << c.chainPrintEnabled << " half " << c.halfCutEnabled << " every " << c.cutEveryEnabled
         << " field " << c.fieldEnabled << " stepper " << c.stepperEnabled << " grey "
         << c.labelGrey << " removeBlk " << c.removeBlkEnabled;
}

/// The three groups of rules, worked out independently of the panel.
Controls ruled(Controls c, bool fixedLengthPaper) {
    // The count group follows the cut-every box, as a pair only.
    if (c.cutEvery == 0 && c.fieldEnabled && c.stepperEnabled) {
        c.fieldEnabled = c.stepperEnabled = false;
        c.labelGrey = true;
    } else if (c.cutEvery == 1 && !c.fieldEnabled && !c.stepperEnabled) {
        c.fieldEnabled = c.stepperEnabled = true;
        c.labelGrey = false;
    }
    // Special tape excludes the rest of the cutting.
    if (!c.specialTapeHidden && c.specialTape == 0) {
        c.autoCutEnabled = c.chainPrintEnabled = c.halfCutEnabled = c.cutEveryEnabled = true;
    } else if (!c.specialTapeHidden && c.specialTape == 1) {
        c.autoCutEnabled = c.chainPrintEnabled = c.halfCutEnabled = c.cutEveryEnabled = false;
        c.fieldEnabled = false;
        if (c.stepperEnabled) {
            c.stepperEnabled = false;
            c.labelGrey = true;
        }
    }
    // The paper decides on blank space.
    c.removeBlkEnabled = !fixedLengthPaper;
    return c;
}

void apply(PanelUnderTest& panel, const Controls& c) {
    panel.mCutEveryChkBx.setState(c.cutEvery);
    panel.mSpecialTapeChkBx.setState(c.specialTape);
    panel.mSpecialTapeChkBx.setHidden(c.specialTapeHidden);
    panel.mAutoCutChkBx.setEnabled(c.autoCutEnabled);
    panel.mChainPrintChkBx.setEnabled(c.chainPrintEnabled);
    panel.mHalfCutChkBx.setEnabled(c.halfCutEnabled);
    panel.mCutEveryChkBx.setEnabled(c.cutEveryEnabled);
    panel.mCutEveryTxBx.setEnabled(c.fieldEnabled);
    panel.mCutEveryStpr.setEnabled(c.stepperEnabled);
    panel.mCutEveryStr.setTextColor(c.labelGrey ? TextColor::DisabledControl : TextColor::Control);
    panel.mRemoveBlkSpaceChkBx.setEnabled(c.removeBlkEnabled);
}

Controls readBack(PanelUnderTest& panel) {
    return {
        panel.mCutEveryChkBx.state(),          panel.mSpecialTapeChkBx.state(),
        panel.mSpecialTapeChkBx.isHidden(),    panel.mAutoCutChkBx.isEnabled(),
        panel.mChainPrintChkBx.isEnabled(),    panel.mHalfCutChkBx.isEnabled(),
        panel.mCutEveryChkBx.isEnabled(),      panel.mCutEveryTxBx.isEnabled(),
        panel.mCutEveryStpr.isEnabled(),       showsDisabledTextColor(*panel.mCutEveryStr.widget()),
        panel.mRemoveBlkSpaceChkBx.isEnabled()};
}

TEST(Rules, FollowTheThreeGroupsOverAllStatesEnablingsAndHiding) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    int checked = 0;
    for (const bool fixedLength : {false, true}) {
        setting.host->format.choose(fixedLength ? QStringLiteral("AV100") : QStringLiteral("W62"));
        for (unsigned bits = 0; bits < 512; ++bits) {
            const auto bit = [bits](unsigned n) { return (bits >> n & 1U) != 0; };
            for (const int cutEvery : {0, 1, -1, 2}) {
                for (const int specialTape : {0, 1, -1, 2}) {
                    const Controls before{cutEvery, specialTape, bit(0), bit(1), bit(2), bit(3),
                                          bit(4),   bit(5),      bit(6), bit(7), bit(8)};
                    apply(panel, before);
                    panel.enabledCheck_OP();
                    const Controls once = readBack(panel);
                    ASSERT_EQ(once, ruled(before, fixedLength)) << testing::PrintToString(before);
                    ++checked;
                }
            }
        }
    }
    EXPECT_EQ(checked, 2 * 512 * 16);
}

TEST(Rules, ChangeNothingWhenAppliedAgain) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    for (const int cutEvery : {0, 1, -1}) {
        for (const int specialTape : {0, 1, -1}) {
            apply(panel, {cutEvery, specialTape});
            // Special tape takes the pair apart from a ticked cut-every box; the next run of the
            // first group gives it back before the second takes it away again.
            panel.enabledCheck_OP();
            const Controls once = readBack(panel);
            panel.enabledCheck_OP();
            EXPECT_EQ(readBack(panel), once);
        }
    }
}

TEST(Rules, LeaveCutAtEndAndMirrorAndEveryTickAlone) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    for (const bool enabled : {false, true}) {
        for (const int special : {0, 1}) {
            std::array<int, kOptionCount> states = {1, -1, 2, 1, 0, 1, special, -1};
            for (std::size_t i = 0; i < states.size(); ++i)
                (panel.*kBoxes[i]).setState(states[i]);
            panel.mCutAndEndChkBx.setEnabled(enabled);
            panel.mMirrorPrintChkBx.setEnabled(enabled);
            panel.enabledCheck_OP();
            EXPECT_EQ(panel.mCutAndEndChkBx.isEnabled(), enabled);
            EXPECT_EQ(panel.mMirrorPrintChkBx.isEnabled(), enabled);
            for (std::size_t i = 0; i < states.size(); ++i)
                EXPECT_EQ((panel.*kBoxes[i]).state(), states[i]);
        }
    }
}

TEST(Rules, NeitherHideNorShowNorSendAnything) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    for (const bool hidden : {false, true}) {
        for (const auto control : kBoxes)
            (panel.*control).setHidden(hidden);
        panel.enabledCheck_OP();
        for (const auto control : kBoxes)
            EXPECT_EQ((panel.*control).isHidden(), hidden);
    }
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(Rules, ReachHiddenControls) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    panel.mHalfCutChkBx.setHidden(true);
    panel.mSpecialTapeChkBx.setState(1);
    panel.enabledCheck_OP();
    EXPECT_FALSE(panel.mHalfCutChkBx.isEnabled());
    EXPECT_TRUE(panel.mHalfCutChkBx.isHidden());
}

TEST(SpecialTapeOff, GivesATickedCutEveryItsCountGroupBackInOnePass) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    apply(panel, {1, 1});
    panel.enabledCheck_OP();
    ASSERT_FALSE(panel.mCutEveryTxBx.isEnabled());
    panel.mSpecialTapeChkBx.setState(0);
    panel.enabledCheck_OP();
    EXPECT_TRUE(panel.mCutEveryTxBx.isEnabled());
    EXPECT_TRUE(panel.mCutEveryStpr.isEnabled());
    EXPECT_FALSE(showsDisabledTextColor(*panel.mCutEveryStr.widget()));
}

struct PaperRow {
    const char* what;
    QString name;
    bool forbids;
};

TEST(RemoveBlankSpaceRule, FollowsThePapersPrefix) {
    const PaperRow kPapers[] = {
        {"DC", QStringLiteral("DC24"), true},
        {"AV", QStringLiteral("AV100"), true},
        {"the prefix alone", QStringLiteral("DC"), true},
        {"a paper the PPD lacks", QStringLiteral("AVnone"), true},
        {"lower case", QStringLiteral("dc24"), false},
        {"mixed case", QStringLiteral("Av"), false},
        {"one letter", QStringLiteral("D"), false},
        {"crossed", QStringLiteral("DV"), false},
        {"in the middle", QStringLiteral("XDC"), false},
        {"a leading blank", QStringLiteral(" DC"), false},
        {"empty", QStringLiteral(""), false},
        {"none", QString(), false},
        {"255 bytes", QStringLiteral("DC") + QString(253, u'x'), true},
        {"256 bytes", QStringLiteral("DC") + QString(254, u'x'), false},
        {"beyond ASCII", QStringLiteral("DC\u00e9"), true},
    };
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    PanelUnderTest& panel = setting.show();
    for (const PaperRow& paper : kPapers) {
        for (const bool before : {false, true}) {
            for (const bool specialHidden : {false, true}) {
                setting.host->format.choose(paper.name);
                panel.mSpecialTapeChkBx.setHidden(specialHidden);
                panel.mRemoveBlkSpaceChkBx.setEnabled(before);
                panel.enabledCheck_OP();
                EXPECT_EQ(panel.mRemoveBlkSpaceChkBx.isEnabled(), !paper.forbids) << paper.what;
            }
        }
    }
}

TEST(RemoveBlankSpaceRule, EnablesWhenThePaperCannotBeRead) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    PanelUnderTest& panel = setting.show();
    FakeHost& host = *setting.host;
    for (int failure = 0; failure < 4; ++failure) {
        host.format.choose(QStringLiteral("DC24"));
        host.format.status = failure == 0 ? kPMGeneralError : noErr;
        host.format.chosen->nameStatus = failure == 1 ? kPMGeneralError : noErr;
        if (failure == 2)
            host.format.chosen.reset();
        host.hasFormat = failure != 3;
        panel.mRemoveBlkSpaceChkBx.setEnabled(false);
        panel.enabledCheck_OP();
        EXPECT_TRUE(panel.mRemoveBlkSpaceChkBx.isEnabled()) << failure;
    }
}

TEST(RemoveBlankSpaceRule, AsksTheHostForThePageFormatAnew) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    PanelUnderTest& panel = setting.show();
    setting.host->asked.clear();
    panel.enabledCheck_OP();
    EXPECT_EQ(setting.host->asked, QStringList{QStringLiteral("pageFormat")});
}

// Known asymmetries.

TEST(Asymmetry, BlankSpaceFollowsThePaperAndNotTheTapeState) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    PanelUnderTest& panel = setting.show();
    panel.setTapeState(1);
    panel.mRemoveBlkSpaceChkBx.setEnabled(false);
    panel.enabledCheck_OP();
    EXPECT_TRUE(panel.mRemoveBlkSpaceChkBx.isEnabled());
    EXPECT_EQ(panel.getTapeState(), 1);

    setting.host->format.choose(QStringLiteral("DCnone"));
    panel.setTapeState(0);
    panel.enabledCheck_OP();
    EXPECT_FALSE(panel.mRemoveBlkSpaceChkBx.isEnabled());
}

TEST(Asymmetry, SpecialTapeKeepsTheExcludedTicks) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    PanelUnderTest& panel = setting.show();
    for (const OptionIndex option : {AutoCut, ChainPrint, HalfCut, CutLabel})
        box(panel, option).setState(1);
    panel.mSpecialTapeChkBx.setState(0);
    checkBox(panel, SpecialTape).click();
    ASSERT_EQ(panel.mSpecialTapeChkBx.state(), 1);
    for (const OptionIndex option : {AutoCut, ChainPrint, HalfCut, CutLabel}) {
        EXPECT_FALSE(box(panel, option).isEnabled());
        EXPECT_EQ(box(panel, option).state(), 1);
    }
    checkBox(panel, SpecialTape).click();
    for (const OptionIndex option : {AutoCut, ChainPrint, HalfCut, CutLabel}) {
        EXPECT_TRUE(box(panel, option).isEnabled());
        EXPECT_EQ(box(panel, option).state(), 1);
    }
}

TEST(Asymmetry, ACutEveryTickedByTheProgramStaysDisabledUnderSpecialTape) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    apply(panel, {0, 1});
    panel.enabledCheck_OP();
    panel.mCutEveryChkBx.setState(1);
    panel.enabledCheck_OP();
    EXPECT_FALSE(panel.mCutEveryChkBx.isEnabled());
    EXPECT_EQ(panel.mCutEveryChkBx.state(), 1);
    EXPECT_FALSE(panel.mCutEveryTxBx.isEnabled());
}

TEST(TapeState, IsKeptUnchecked) {
    PanelOnHost setting(nullptr);
    PanelUnderTest& panel = setting.construct();
    EXPECT_EQ(panel.getTapeState(), 0);
    for (const std::int32_t state : {1, -1, 2147483647, -2147483647 - 1, 0}) {
        panel.setTapeState(state);
        EXPECT_EQ(panel.getTapeState(), state);
        EXPECT_EQ(panel.mTapeState, state);
    }
}

// Absent controls: an absent checkbox is off, an absent field is disabled.

TEST(RulesWithAbsentControls, AnAbsentCutEveryBoxCountsAsOff) {
    const CutDownBundle bundle({QStringLiteral("mCutEveryChkBx")});
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open(), bundle.root());
    PanelUnderTest& panel = setting.load();
    panel.mCutEveryTxBx.setEnabled(true);
    panel.mCutEveryStpr.setEnabled(true);
    panel.enabledCheck_OP();
    EXPECT_FALSE(panel.mCutEveryTxBx.isEnabled());
    EXPECT_FALSE(panel.mCutEveryStpr.isEnabled());
}

TEST(RulesWithAbsentControls, AnAbsentSpecialTapeBoxEnables) {
    const CutDownBundle bundle({QStringLiteral("mSpecialTapeChkBx")});
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open(), bundle.root());
    PanelUnderTest& panel = setting.load();
    panel.mHalfCutChkBx.setEnabled(false);
    panel.enabledCheck_OP();
    EXPECT_TRUE(panel.mHalfCutChkBx.isEnabled());
}

TEST(RulesWithAbsentControls, AnAbsentFieldCountsAsDisabled) {
    const CutDownBundle bundle({QStringLiteral("mCutEveryTxBx")});
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open(), bundle.root());
    PanelUnderTest& panel = setting.load();
    panel.mSpecialTapeChkBx.setState(0);
    panel.mCutEveryChkBx.setState(0);
    panel.mCutEveryStpr.setEnabled(true);
    panel.enabledCheck_OP();
    EXPECT_TRUE(panel.mCutEveryStpr.isEnabled());
    panel.mCutEveryChkBx.setState(1);
    panel.mCutEveryStpr.setEnabled(false);
    panel.enabledCheck_OP();
    EXPECT_TRUE(panel.mCutEveryStpr.isEnabled());
}

TEST(RulesWithAbsentControls, WorkWithoutAView) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.construct();
    panel.enabledCheck_OP();
    EXPECT_FALSE(panel.mRemoveBlkSpaceChkBx.isEnabled());
}

// A disabled control says why.

TEST(ToolTips, SayWhyAControlCannotBeUsed) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    const auto tip = [](const View& control) { return control.widget()->toolTip(); };
    const QString special = QStringLiteral("Special tape is never cut");

    apply(panel, {1, 1});
    panel.enabledCheck_OP();
    for (const OptionIndex option : {AutoCut, ChainPrint, HalfCut, CutLabel})
        EXPECT_EQ(tip(box(panel, option)), special);
    EXPECT_EQ(tip(panel.mCutEveryTxBx), special);
    EXPECT_EQ(tip(panel.mCutEveryStpr), special);

    apply(panel, {0, 0});
    setting.host->format.choose(QStringLiteral("DC24"));
    panel.enabledCheck_OP();
    for (const OptionIndex option : {AutoCut, ChainPrint, HalfCut, CutLabel})
        EXPECT_EQ(tip(box(panel, option)), QString());
    EXPECT_EQ(tip(panel.mCutEveryTxBx), QStringLiteral("Tick the cut option to set the number"));
    EXPECT_EQ(tip(panel.mRemoveBlkSpaceChkBx),
              QStringLiteral("This paper has a fixed length, so blank space stays"));

    apply(panel, {1, 0});
    setting.host->format.choose(QStringLiteral("W62"));
    panel.enabledCheck_OP();
    panel.enabledCheck_OP();
    EXPECT_EQ(tip(panel.mCutEveryTxBx), QString());
    EXPECT_EQ(tip(panel.mRemoveBlkSpaceChkBx), QString());
}

TEST(ToolTips, FollowThePaperThatASaveReads) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    const auto tip = [&] { return panel.mRemoveBlkSpaceChkBx.widget()->toolTip(); };
    ASSERT_EQ(tip(), QString());

    setting.host->format.choose(QStringLiteral("DC24"));
    panel.saveValuesAndReturnError(nullptr);
    EXPECT_FALSE(panel.mRemoveBlkSpaceChkBx.isEnabled());
    EXPECT_EQ(tip(), QStringLiteral("This paper has a fixed length, so blank space stays"));

    setting.host->format.choose(QStringLiteral("W62"));
    panel.saveValuesAndReturnError(nullptr);
    EXPECT_TRUE(panel.mRemoveBlkSpaceChkBx.isEnabled());
    EXPECT_EQ(tip(), QString());
}

TEST(ToolTips, StandAtFirstDisplayAlready) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    setting.host->format.choose(QStringLiteral("DC24"));
    PanelUnderTest& panel = setting.load();
    panel.initUI();
    EXPECT_FALSE(panel.mRemoveBlkSpaceChkBx.isEnabled());
    EXPECT_EQ(panel.mRemoveBlkSpaceChkBx.widget()->toolTip(),
              QStringLiteral("This paper has a fixed length, so blank space stays"));
}

} // namespace
} // namespace labelcut::test
