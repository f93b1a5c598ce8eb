// Tests of the cut-options panel: first states of its controls, from the PPD.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <cstring>

#include "tests/plugins/cut_options/options/panel_fixtures.h"

namespace labelcut::test {
namespace {

struct OnOffRow {
    OptionIndex option;
    void (OptionPDE13_v400_::*initialize)();
    const char* fallbackTitle;
};
constexpr OnOffRow kOnOffRows[] = {
    {CutAtEnd, &OptionPDE13_v400_::initializeUI_CutAtEnd, "Cut at end"},
    {Mirror, &OptionPDE13_v400_::initializeUI_Mirror, "Mirror printing"},
    {AutoCut, &OptionPDE13_v400_::initializeUI_AutoCut, "Auto cut"},
    {HalfCut, &OptionPDE13_v400_::initializeUI_HalfCut, "Half cut"},
    {ChainPrint, &OptionPDE13_v400_::initializeUI_ChainPrint, "Chain printing"},
    {SpecialTape, &OptionPDE13_v400_::initializeUI_SpecialTape, "Special tape"},
    {RemoveBlk, &OptionPDE13_v400_::initializeUI_RemoveBlkSpace, "Remove blank space"},
};

/// All eight options, automatic cut with a row of its own; one option's default and text given.
PpdBuilder printerWith(OptionIndex option, const QByteArray& defaultChoice,
                       const QByteArray& text) {
    PpdBuilder ppd;
    ppd.attribute("KvAutoCutObjHidden", "False");
    for (int i = CutAtEnd; i < kOptionCount; ++i)
        ppd.onOff(kKeywords[static_cast<std::size_t>(i)], i == option ? defaultChoice : "OFF",
                  i == option ? text : QByteArray("Other"));
    return ppd.counts(1, 9, option == CutLabel ? defaultChoice : "2",
                      option == CutLabel ? text : QByteArray("Other"));
}

class OnOffOption : public testing::TestWithParam<OnOffRow> {};

TEST_P(OnOffOption, IsTickedExactlyWhenTheDefaultIsON) {
    for (const bool on : {false, true}) {
        PanelOnHost setting(printerWith(GetParam().option, on ? "ON" : "OFF", "Text").open());
        PanelUnderTest& panel = setting.load();
        box(panel, GetParam().option).setState(on ? 0 : 1);
        // What is marked does not matter.
        ppd::markOption(setting.host->ppd.get(), kKeywords[GetParam().option], on ? "OFF" : "ON");
        (panel.*GetParam().initialize)();
        EXPECT_EQ(box(panel, GetParam().option).state(), on ? 1 : 0);
    }
}

TEST_P(OnOffOption, ComparesTheDefaultInCaseAndLength) {
    for (const char* other : {"On", "on", "ONE", "O", "", "1", "NO"}) {
        PanelOnHost setting(printerWith(GetParam().option, "ON", "Text").open());
        PanelUnderTest& panel = setting.load();
        box(panel, GetParam().option).setState(1);
        std::strcpy(
            ppd::findOption(setting.host->ppd.get(), kKeywords[GetParam().option])->defchoice,
            other);
        (panel.*GetParam().initialize)();
        EXPECT_EQ(box(panel, GetParam().option).state(), 0) << other;
    }
}

TEST_P(OnOffOption, CarriesThePpdsTextAsItsTitle) {
    PanelOnHost setting(printerWith(GetParam().option, "OFF", "Tom & <u>Jerry</u>").open());
    PanelUnderTest& panel = setting.load();
    (panel.*GetParam().initialize)();
    EXPECT_EQ(box(panel, GetParam().option).title(), QStringLiteral("Tom & <u>Jerry</u>"));
}

TEST_P(OnOffOption, LooksThePpdsTextUpInTheStringTable) {
    PanelOnHost setting(printerWith(GetParam().option, "OFF", "RS_STitle_Yes").open());
    PanelUnderTest& panel = setting.load();
    (panel.*GetParam().initialize)();
    EXPECT_EQ(box(panel, GetParam().option).title(), QStringLiteral("Yes"));
}

TEST_P(OnOffOption, FallsBackToItsOwnTitleForAnUndecodableText) {
    PanelOnHost setting(printerWith(GetParam().option, "OFF", "bad \xFF text").open());
    PanelUnderTest& panel = setting.load();
    box(panel, GetParam().option).setTitle(QStringLiteral("before"));
    (panel.*GetParam().initialize)();
    EXPECT_EQ(box(panel, GetParam().option).title(), QLatin1String(GetParam().fallbackTitle));
}

TEST_P(OnOffOption, HasAnEmptyTitleForAnEmptyText) {
    PanelOnHost setting(printerWith(GetParam().option, "OFF", "Text").open());
    PanelUnderTest& panel = setting.load();
    ppd::findOption(setting.host->ppd.get(), kKeywords[GetParam().option])->text[0] = '\0';
    (panel.*GetParam().initialize)();
    EXPECT_EQ(box(panel, GetParam().option).title(), QString());
}

TEST_P(OnOffOption, KeepsTheStateWithoutChoicesButTakesTheTitle) {
    PpdBuilder ppd;
    ppd.attribute("KvAutoCutObjHidden", "False")
        .option(kKeywords[GetParam().option], "Text", {}, {});
    PanelOnHost setting(ppd.open());
    PanelUnderTest& panel = setting.load();
    ASSERT_TRUE((panel.*kChoices[GetParam().option]).has_value());
    ASSERT_TRUE((panel.*kChoices[GetParam().option])->empty());
    for (const int state : {0, 1, -1}) {
        box(panel, GetParam().option).setState(state);
        (panel.*GetParam().initialize)();
        EXPECT_EQ(box(panel, GetParam().option).state(), state);
    }
    EXPECT_EQ(box(panel, GetParam().option).title(), QStringLiteral("Text"));
    EXPECT_TRUE(box(panel, GetParam().option).isEnabled());
}

TEST_P(OnOffOption, IsLeftAsItWasButForItsEnablingWhenThePpdLacksIt) {
    PanelOnHost setting(
        printerOffering(kAllOptions & ~offer(GetParam().option), false, true).open());
    PanelUnderTest& panel = setting.load();
    Button& control = box(panel, GetParam().option);
    control.setTitle(QStringLiteral("before"));
    control.setState(1);
    (panel.*GetParam().initialize)();
    EXPECT_EQ(control.title(), QStringLiteral("before"));
    EXPECT_EQ(control.state(), 1);
    // Remove blank space is enabled by the paper, not by the option.
    EXPECT_EQ(control.isEnabled(), GetParam().option == RemoveBlk);
}

TEST_P(OnOffOption, IsEnabledWhenThePpdOffersIt) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    PanelUnderTest& panel = setting.load();
    box(panel, GetParam().option).setEnabled(false);
    (panel.*GetParam().initialize)();
    EXPECT_TRUE(box(panel, GetParam().option).isEnabled());
}

INSTANTIATE_TEST_SUITE_P(All, OnOffOption, testing::ValuesIn(kOnOffRows),
                         [](const auto& row) { return std::string(kKeywords[row.param.option]); });

TEST(AutoCutBox, KeepsTitleAndStateWithoutARowOfItsOwn) {
    PpdBuilder ppd;
    ppd.onOff("KvAutoTapeCut", "ON", "Text").onOff("KvMirror");
    PanelOnHost setting(ppd.open());
    PanelUnderTest& panel = setting.load();
    ASSERT_EQ(panel.mAutoCutHideKey_dec, 0);
    panel.mAutoCutChkBx.setTitle(QStringLiteral("before"));
    panel.mAutoCutChkBx.setState(0);
    panel.mAutoCutChkBx.setEnabled(false);

    panel.initializeUI_AutoCut();

    EXPECT_TRUE(panel.mAutoCutChkBx.isEnabled());
    EXPECT_EQ(panel.mAutoCutChkBx.title(), QStringLiteral("before"));
    EXPECT_EQ(panel.mAutoCutChkBx.state(), 0);
}

struct CountDefault {
    const char* name;
    int state;
    const char* text;
    int stepper;
};

class CountOption : public testing::TestWithParam<CountDefault> {};

TEST_P(CountOption, TakesItsFirstStateFromTheDefault) {
    PanelOnHost setting(printerWith(CutLabel, "1", "Every").open());
    PanelUnderTest& panel = setting.load();
    std::strcpy(panel.mCutEvery_Option->defchoice, GetParam().name);
    panel.mCutEveryStr.setStringValue(QStringLiteral("x"));
    panel.mCutEveryTxBx.setStringValue(QStringLiteral("x"));
    panel.mCutEveryStpr.setIntValue(77);
    panel.mCutEveryChkBx.setState(GetParam().state == 1 ? 0 : 1);
    for (View* view :
         {static_cast<View*>(&panel.mCutEveryChkBx), static_cast<View*>(&panel.mCutEveryTxBx),
          static_cast<View*>(&panel.mCutEveryStpr)})
        view->setEnabled(false);

    panel.initializeUI_CutLabel();

    EXPECT_EQ(panel.mCutEveryChkBx.title(), QStringLiteral("Every"));
    EXPECT_EQ(panel.mCutEveryChkBx.state(), GetParam().state);
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QLatin1String(GetParam().text));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), GetParam().stepper);
    EXPECT_EQ(panel.mCutEveryStr.stringValue(), QStringLiteral("labels"));
    EXPECT_TRUE(panel.mCutEveryChkBx.isEnabled());
    EXPECT_TRUE(panel.mCutEveryTxBx.isEnabled());
    EXPECT_TRUE(panel.mCutEveryStpr.isEnabled());
}

INSTANTIATE_TEST_SUITE_P(Defaults, CountOption,
                         testing::Values(CountDefault{"1", 1, "1", 1}, CountDefault{"5", 0, "5", 5},
                                         CountDefault{"10", 0, "10", 10},
                                         CountDefault{"01", 0, "01", 1},
                                         CountDefault{"ON", 0, "ON", 0}, CountDefault{"", 0, "", 0},
                                         CountDefault{"-3", 0, "-3", -3},
                                         CountDefault{"12x", 0, "12x", 12}));

TEST(CountGroup, FallsBackToItsOwnTitleForAnUndecodableText) {
    PanelOnHost setting(printerWith(CutLabel, "1", "bad \xFF").open());
    PanelUnderTest& panel = setting.load();
    panel.initializeUI_CutLabel();
    EXPECT_EQ(panel.mCutEveryChkBx.title(), QStringLiteral("Cut every"));
}

TEST(CountGroup, KeepsFieldAndStepperForAnUndecodableDefault) {
    PanelOnHost setting(printerWith(CutLabel, "1", "Every").open());
    PanelUnderTest& panel = setting.load();
    std::strcpy(panel.mCutEvery_Option->defchoice, "\xFF");
    panel.mCutEveryTxBx.setStringValue(QStringLiteral("7"));
    panel.mCutEveryStpr.setIntValue(7);
    panel.initializeUI_CutLabel();
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("7"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 7);
}

TEST(CountGroup, IsFullyDisabledOrLeftAloneWhenThePpdLacksTheCount) {
    PanelOnHost setting(printerOffering(kAllOptions & ~offer(CutLabel), true, true).open());
    PanelUnderTest& panel = setting.load();
    panel.mCutEveryStr.setStringValue(QStringLiteral("x"));
    panel.mCutEveryTxBx.setStringValue(QStringLiteral("7"));
    panel.mCutEveryStpr.setIntValue(8);
    panel.mCutEveryChkBx.setTitle(QStringLiteral("before"));
    panel.mCutEveryChkBx.setState(1);

    panel.initializeUI_CutLabel();

    EXPECT_FALSE(panel.mCutEveryChkBx.isEnabled());
    EXPECT_EQ(panel.mCutEveryChkBx.title(), QStringLiteral("before"));
    EXPECT_EQ(panel.mCutEveryChkBx.state(), 1);
    // The rest stays exactly as the interface file made it.
    EXPECT_TRUE(panel.mCutEveryTxBx.isEnabled());
    EXPECT_TRUE(panel.mCutEveryStpr.isEnabled());
    EXPECT_EQ(panel.mCutEveryStr.stringValue(), QStringLiteral("x"));
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("7"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 8);
}

TEST(CountGroup, KeepsTheTickWithoutChoicesButTakesTitleAndDefault) {
    PpdBuilder ppd;
    ppd.option("KvCutLabel", "Every", {}, "4");
    PanelOnHost setting(ppd.open());
    PanelUnderTest& panel = setting.load();
    ASSERT_TRUE(panel.mCutEvery_Choices && panel.mCutEvery_Choices->empty());
    panel.mCutEveryChkBx.setState(1);
    panel.initializeUI_CutLabel();
    EXPECT_EQ(panel.mCutEveryChkBx.state(), 1);
    EXPECT_EQ(panel.mCutEveryChkBx.title(), QStringLiteral("Every"));
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(),
              QString::fromLatin1(panel.mCutEvery_Option->defchoice));
}

struct PaperCase {
    const char* name;
    std::int32_t tapeState;
};

TEST(RemoveBlankSpace, FollowsTheTapeStateWhetherOrNotThePpdOffersIt) {
    constexpr PaperCase kPapers[] = {
        {"DC24", 1}, {"AV100", 1}, {"W62", 0}, {"DC99", 0 /* not in the PPD */},
        {"dc24", 0}, {"DC", 0},    {"", 0},    {nullptr, 0},
    };
    for (const bool offered : {false, true}) {
        for (const PaperCase& paper : kPapers) {
            PanelOnHost setting(printerOffering(offered ? kAllOptions : 0, false, true).open());
            PanelUnderTest& panel = setting.load();
            // The page format is asked anew each time.
            setting.host->format.choose(paper.name ? QString::fromLatin1(paper.name) : QString());
            panel.setTapeState(paper.tapeState == 0 ? 5 : 0);
            panel.mRemoveBlkSpaceChkBx.setEnabled(paper.tapeState != 0);
            panel.initializeUI_RemoveBlkSpace();
            EXPECT_EQ(panel.getTapeState(), paper.tapeState) << paper.name;
            EXPECT_EQ(panel.mRemoveBlkSpaceChkBx.isEnabled(), paper.tapeState == 0) << paper.name;
        }
    }
}

TEST(RemoveBlankSpace, IsEnabledWhenThePaperCannotBeAsked) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    PanelUnderTest& panel = setting.load();
    setting.host->format.choose(QStringLiteral("DC24"));
    for (int failure = 0; failure < 3; ++failure) {
        panel.setTapeState(1);
        panel.mRemoveBlkSpaceChkBx.setEnabled(false);
        setting.host->format.status = failure == 0 ? kPMGeneralError : noErr;
        setting.host->format.chosen->heightStatus = failure == 1 ? kPMGeneralError : noErr;
        setting.host->hasFormat = failure != 2;
        panel.initializeUI_RemoveBlkSpace();
        EXPECT_EQ(panel.getTapeState(), 0);
        EXPECT_TRUE(panel.mRemoveBlkSpaceChkBx.isEnabled());
    }
}

TEST(RemoveBlankSpace, IgnoresATicketsPaper) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    setting.host->format.choose(QString());
    setting.host->settings.values.insert(
        QStringLiteral("org.labelcut.print.PrintSettingsTicket.SgE5"),
        QByteArray("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>SgPaperName2</key>"
                   "<string>DC24</string></dict></plist>"));
    PanelUnderTest& panel = setting.load();
    panel.initializeUI_RemoveBlkSpace();
    EXPECT_EQ(panel.getTapeState(), 0);
    EXPECT_TRUE(panel.mRemoveBlkSpaceChkBx.isEnabled());
}

TEST(Initialisation, HookForOtherTextsDoesNothing) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.load();
    setting.host->asked.clear();
    setting.host->sent.clear();
    const QVariantMap before = panel.inspect();
    panel.initializeUI_OtherStr();
    EXPECT_EQ(panel.inspect(), before);
    EXPECT_TRUE(setting.host->asked.isEmpty());
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(Initialisation, HidesNothing) {
    PanelOnHost setting(printerOffering(0, true, false).open());
    PanelUnderTest& panel = setting.load();
    for (const auto control : kBoxes)
        (panel.*control).setHidden(false);
    panel.initUI();
    for (const auto control : kBoxes)
        EXPECT_FALSE((panel.*control).isHidden());
}

TEST(Initialisation, HappensOncePerPanel) {
    PanelOnHost setting(printerWith(HalfCut, "ON", "Half").open());
    PanelUnderTest& panel = setting.load();
    EXPECT_EQ(panel.set_formatSetting, 0);
    panel.initUI();
    EXPECT_EQ(panel.set_formatSetting, 1);
    EXPECT_EQ(panel.mHalfCutChkBx.state(), 1);
    panel.mHalfCutChkBx.setState(0);
    panel.mHalfCutChkBx.setTitle(QStringLiteral("changed"));
    setting.host->sent.clear();

    panel.initUI();

    EXPECT_EQ(panel.mHalfCutChkBx.state(), 0);
    EXPECT_EQ(panel.mHalfCutChkBx.title(), QStringLiteral("changed"));
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(Initialisation, WritesAllChoicesAtOnceInTheFixedOrder) {
    PanelOnHost setting(printerWith(HalfCut, "ON", "Half").open());
    ppd::markDefaults(setting.host->ppd.get());
    PanelUnderTest& panel = setting.load();
    panel.initUI();
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", "2"},
                                                           {"KvCutAtEnd", "OFF"},
                                                           {"KvMirror", "OFF"},
                                                           {"KvAutoTapeCut", "OFF"},
                                                           {"KvHalfCut", "ON"},
                                                           {"KvChainPrint", "OFF"},
                                                           {"KvSpecialTape", "OFF"},
                                                           {"KvRemoveBlkSpace", "OFF"}}));
}

// Known asymmetries of the fixed sequences.

TEST(Asymmetry, FirstWillShowWritesTheDefaultsWhateverWasMarked) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    ppd::markDefaults(setting.host->ppd.get());
    for (int option = CutAtEnd; option < kOptionCount; ++option)
        ppd::markOption(setting.host->ppd.get(), kKeywords[static_cast<std::size_t>(option)], "ON");
    PanelUnderTest& panel = setting.load();

    panel.willShow();

    for (int option = CutAtEnd; option < kOptionCount; ++option)
        EXPECT_EQ(markedIn(*setting.host, static_cast<OptionIndex>(option)), QStringLiteral("OFF"));
    // A second one writes nothing.
    setting.host->sent.clear();
    panel.willShow();
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(Asymmetry, FirstWillShowKeepsTheMarkedCountAndTicksCutEveryByTheDefaultCount) {
    PanelOnHost setting(printerOffering(offer(CutLabel) | offer(AutoCut), true, false).open());
    ppd::markDefaults(setting.host->ppd.get());
    ppd::markOption(setting.host->ppd.get(), "KvCutLabel", "7");
    PanelUnderTest& panel = setting.load();
    panel.willShow();
    EXPECT_EQ(setting.host->takeSent(),
              (std::vector<Sent>{{"KvAutoTapeCut", "ON"}, {"KvCutLabel", "7"}}));
    // The default count is 1, so the box is ticked; the field shows that default.
    EXPECT_EQ(panel.mCutEveryChkBx.state(), 1);
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("1"));
}

TEST(Asymmetry, SpecialTapeOffEnablesBoxesWhoseOptionsThePpdLacks) {
    PanelOnHost setting(printerOffering(offer(SpecialTape), false, false).open());
    PanelUnderTest& panel = setting.load();
    panel.initUI();
    EXPECT_FALSE(panel.mHalfCutChkBx.isEnabled());
    panel.updateUI();
    for (const OptionIndex option : {AutoCut, ChainPrint, HalfCut, CutLabel})
        EXPECT_TRUE(box(panel, option).isEnabled());
    EXPECT_FALSE(panel.mCutAndEndChkBx.isEnabled());
    EXPECT_FALSE(panel.mMirrorPrintChkBx.isEnabled());
}

// Without controls nothing fails.

TEST(Initialisation, WorksWithoutAnyControl) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    ppd::markDefaults(setting.host->ppd.get());
    ppd::markOption(setting.host->ppd.get(), "KvHalfCut", "ON");
    PanelUnderTest& panel = setting.construct();
    panel.willShow();
    EXPECT_EQ(panel.set_formatSetting, 1);
    // No control overrides what is marked.
    EXPECT_EQ(markedIn(*setting.host, HalfCut), QStringLiteral("ON"));
}

TEST(Initialisation, WorksWhenAnyOneControlIsAbsent) {
    QStringList controls(kBoxNames.begin(), kBoxNames.end());
    controls << QStringLiteral("mCutEveryTxBx") << QStringLiteral("mCutEveryStpr")
             << QStringLiteral("mCutEveryStr") << QStringLiteral("mOptionPopUpButton")
             << QStringLiteral("mOptionDummyView");
    for (const QString& absent : controls) {
        const CutDownBundle bundle({absent});
        PanelOnHost setting(printerOffering(kAllOptions, true, true).open(), bundle.root());
        PanelUnderTest& panel = setting.show();
        EXPECT_TRUE(panel.panelView()) << absent.toStdString();
        EXPECT_FALSE(panel.panelView()->findChild<QWidget*>(absent)) << absent.toStdString();
        for (int option = 0; option < kOptionCount; ++option) {
            const auto index = static_cast<OptionIndex>(option);
            const bool isAbsent = absent == QLatin1String(kBoxNames[index]);
            EXPECT_EQ(!box(panel, index), isAbsent);
            EXPECT_EQ(box(panel, index).title().isEmpty(), isAbsent);
        }
    }
}

} // namespace
} // namespace labelcut::test
