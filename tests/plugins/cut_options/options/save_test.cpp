// Tests of the cut-options panel: how the controls' states become choices at the host.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLineEdit>

#include <algorithm>
#include <cstring>

#include "tests/plugins/cut_options/options/option_subsets.h"

namespace labelcut::test {
namespace {

using P = PanelUnderTest;

constexpr std::array<int, 4> kStates{-1, 0, 1, 2};

/// One save operation of the on/off options.
struct Operation {
    const char* keyword;
    void (OptionPDE13_v400_::*save)();
    Button OptionPDE13_v400_::*checkBox;
    PDEChoices OptionPDE13_v400_::*choices;
    /// Special tape saves it as its first choice.
    bool excludedBySpecialTape;
    /// Acts only where automatic cut has a row of its own.
    bool needsOwnRow;
};

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = {
        {"KvCutAtEnd", &P::saveSetting_CutAtEnd, &P::mCutAndEndChkBx, &P::mCutEnd_Choices, false,
         false},
        {"KvMirror", &P::saveSetting_Mirror, &P::mMirrorPrintChkBx, &P::mMirror_Choices, false,
         false},
        {"KvAutoTapeCut", &P::saveSetting_AutoCut, &P::mAutoCutChkBx, &P::mAutoCut_Choices, true,
         true},
        {"KvHalfCut", &P::saveSetting_HalfCut, &P::mHalfCutChkBx, &P::mHalfCut_Choices, true,
         false},
        {"KvChainPrint", &P::saveSetting_ChainPrint, &P::mChainPrintChkBx, &P::mChainPrint_Choices,
         true, false},
        {"KvSpecialTape", &P::saveSetting_SpecialTape, &P::mSpecialTapeChkBx,
         &P::mSpecialTape_Choices, false, false},
        {"KvRemoveBlkSpace", &P::saveSetting_RemoveBlkSpace, &P::mRemoveBlkSpaceChkBx,
         &P::mRemoveBlkSpace_Choices, false, false},
    };
    return all;
}

/// A PPD with all options, the on/off ones with that many choices, of which the last is default.
PpdBuilder ppdWithChoices(int count, bool autoCutIsShown) {
    const QByteArrayList names = QByteArrayList{"OFF", "ON", "AUTO"}.mid(0, count);
    PpdBuilder ppd;
    if (autoCutIsShown)
        ppd.attribute("KvAutoCutObjHidden", "False");
    ppd.counts(1, 9, "4");
    for (const char* keyword : kKeywords)
        if (std::strcmp(keyword, "KvCutLabel") != 0)
            ppd.option(keyword, "", names, names.last());
    return ppd.size("W62", 176, 283).size("DC24", 68, 68);
}

QString choiceAt(int index, int count) {
    static const std::array<const char*, 3> names{"OFF", "ON", "AUTO"};
    return QLatin1String(names.at(static_cast<std::size_t>(std::clamp(index, 0, count - 1))));
}

/// Walks every state and visibility of one box together with every one of the special-tape box.
template<typename Check>
void walkStates(PanelUnderTest& panel, Button& box, Check check) {
    Button& special = panel.mSpecialTapeChkBx;
    for (const int specialState : kStates) {
        for (const bool specialHidden : {false, true}) {
            for (const int state : kStates) {
                for (const bool hidden : {false, true}) {
                    special.setState(specialState);
                    special.setHidden(specialHidden);
                    if (!box.isSame(special)) {
                        box.setState(state);
                        box.setHidden(hidden);
                    }
                    SCOPED_TRACE(testing::Message()
                                 << "state " << box.state() << (box.isHidden() ? " hidden" : "")
                                 << ", special tape " << specialState
                                 << (specialHidden ? " hidden" : ""));
                    check(!specialHidden && specialState != 0);
                }
            }
        }
    }
}

TEST(SaveByState, WritesTheStateAsAPlaceInTheArrayForAllStatesOfAllControls) {
    int checked = 0;
    for (const bool shown : {false, true}) {
        for (const int count : {1, 2, 3}) {
            PanelOnHost setting(ppdWithChoices(count, shown).open());
            PanelUnderTest& panel = setting.load();
            for (const Operation& op : operations()) {
                Button& box = panel.*op.checkBox;
                walkStates(panel, box, [&](bool isSpecialTape) {
                    (panel.*op.save)();
                    const int index = op.excludedBySpecialTape && isSpecialTape ? 0 : box.state();
                    std::vector<Sent> expected;
                    if (!op.needsOwnRow || shown)
                        expected.emplace_back(QLatin1String(op.keyword), choiceAt(index, count));
                    EXPECT_EQ(setting.host->takeSent(), expected) << op.keyword << ' ' << count;
                    ++checked;
                });
            }
        }
    }
    EXPECT_EQ(checked, 2 * 3 * 7 * 64);
}

TEST(SaveCutLabel, WritesAutomaticCutByNameAndFirstForAllStates) {
    for (const bool shown : {false, true}) {
        // A third choice, and the names the other way round: names are written, not places.
        PpdBuilder builder;
        if (shown)
            builder.attribute("KvAutoCutObjHidden", "False");
        builder.counts(1, 9, "4").option("KvAutoTapeCut", "", {"ON", "OFF", "AUTO"}, "AUTO");
        PanelOnHost setting(builder.onOff("KvSpecialTape").open());
        PanelUnderTest& panel = setting.load();
        for (const char* marked : {static_cast<const char*>(nullptr), "1", "3", "9"}) {
            ppd::unmarkOption(setting.host->ppd.get(), "KvCutLabel");
            const QString count = QLatin1String(marked ? marked : "1");
            walkStates(panel, panel.mCutEveryChkBx, [&](bool isSpecialTape) {
                ppd::unmarkOption(setting.host->ppd.get(), "KvCutLabel");
                if (marked)
                    ppd::markOption(setting.host->ppd.get(), "KvCutLabel", marked);
                panel.saveSetting_CutLabel();
                const bool on = !isSpecialTape && panel.mCutEveryChkBx.state() == 1;
                std::vector<Sent> expected;
                if (!shown)
                    expected.emplace_back("KvAutoTapeCut", on ? "ON" : "OFF");
                expected.emplace_back("KvCutLabel", count);
                EXPECT_EQ(setting.host->takeSent(), expected);
            });
        }
    }
}

TEST(SaveCutLabel, IgnoresTheFieldsNumber) {
    PanelOnHost setting(ppdWithChoices(2, false).open());
    PanelUnderTest& panel = setting.load();
    panel.mCutEveryChkBx.setState(1);
    for (const char* typed : {"7", "", "words", "99999999999", "-3"}) {
        panel.mCutEveryTxBx.setStringValue(QLatin1String(typed));
        ASSERT_TRUE(ppd::markOption(setting.host->ppd.get(), "KvCutLabel", "5"));
        panel.saveSetting_CutLabel();
        EXPECT_EQ(setting.host->takeSent(),
                  (std::vector<Sent>{{"KvAutoTapeCut", "ON"}, {"KvCutLabel", "5"}}));
        EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QLatin1String(typed));
    }
}

TEST(SaveCutLabel, TakesTheFirstCountWhenNoneIsMarkedAndTheFieldIsThere) {
    PanelOnHost setting(ppdWithChoices(2, true).open());
    setting.load().saveSetting_CutLabel();
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", "1"}}));
}

TEST(SaveCutLabel, TakesMarkedOrDefaultWithoutTheFieldForBothOptions) {
    struct Case {
        const char* count;
        const char* autoCut;
        const char* expectedCount;
        const char* expectedAutoCut;
    };
    // Defaults are 4, and the second or third of the automatic cut's choices.
    for (const int choices : {2, 3}) {
        const char* const byDefault = choices == 2 ? "ON" : "OFF";
        for (const Case& c : {Case{nullptr, nullptr, "4", byDefault},
                              Case{"7", nullptr, "7", byDefault}, Case{"7", "OFF", "7", "OFF"},
                              Case{nullptr, "ON", "4", "ON"}, Case{"1", "ON", "1", "ON"}}) {
            PanelOnHost setting(ppdWithChoices(choices, false).open());
            ppd_file_t* ppd = setting.host->ppd.get();
            if (c.count) {
                ASSERT_TRUE(ppd::markOption(ppd, "KvCutLabel", c.count));
            }
            if (c.autoCut) {
                ASSERT_TRUE(ppd::markOption(ppd, "KvAutoTapeCut", c.autoCut));
            }
            setting.construct().saveSetting_CutLabel();
            EXPECT_EQ(setting.host->takeSent(),
                      (std::vector<Sent>{{"KvAutoTapeCut", c.expectedAutoCut},
                                         {"KvCutLabel", c.expectedCount}}));
        }
    }
}

TEST(SaveCutLabel, TakesTheFirstCountWithoutMarkDefaultAndField) {
    PanelOnHost setting(PpdBuilder().counts(3, 9, "77").open());
    setting.construct().saveSetting_CutLabel();
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", "3"}}));
}

TEST(SaveCutLabel, WritesOffForAutomaticCutWithAFieldButNoBox) {
    PanelOnHost setting(ppdWithChoices(2, false).open());
    PanelUnderTest& panel = setting.load();
    panel.mCutEveryChkBx.setState(1);
    delete panel.mCutEveryChkBx.widget();
    panel.saveSetting_CutLabel();
    EXPECT_EQ(setting.host->takeSent(),
              (std::vector<Sent>{{"KvAutoTapeCut", "OFF"}, {"KvCutLabel", "1"}}));
}

TEST(SaveCutLabel, SkipsAutomaticCutThatThePpdLacks) {
    PanelOnHost setting(PpdBuilder().counts(1, 9, "4").open());
    setting.load().saveSetting_CutLabel();
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", "1"}}));
}

TEST(SaveCutLabel, WritesAutomaticCutAloneForAnEmptyCountArray) {
    PanelOnHost setting(ppdWithChoices(2, false).open());
    PanelUnderTest& panel = setting.load();
    panel.mCutEvery_Choices = PDEChoiceArray();
    panel.saveSetting_CutLabel();
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvAutoTapeCut", "OFF"}}));
}

TEST(SaveCutLabel, WritesNothingWithoutCounts) {
    PanelOnHost setting(PpdBuilder().onOff("KvAutoTapeCut").onOff("KvMirror").open());
    PanelUnderTest& panel = setting.construct();
    panel.saveSetting_CutLabel();
    panel.saveSetting_AutoCut();
    EXPECT_TRUE(setting.host->sent.empty()) << "automatic cut without a row and without a count";
    panel.panelView();
    panel.saveSetting_CutLabel();
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(SaveWithoutControls, WritesTheMarkedElseTheDefaultElseTheFirstChoice) {
    for (const Operation& op : operations()) {
        for (const char* marked : {static_cast<const char*>(nullptr), "OFF", "ON", "AUTO"}) {
            for (const char* byDefault : {"OFF", "ON", "AUTO", "unknown"}) {
                PpdBuilder builder;
                builder.attribute("KvAutoCutObjHidden", "False").onOff("KvAutoTapeCut");
                if (std::strcmp(op.keyword, "KvAutoTapeCut") == 0) {
                    builder = PpdBuilder();
                    builder.attribute("KvAutoCutObjHidden", "False");
                }
                PanelOnHost setting(
                    builder.option(op.keyword, "", {"OFF", "ON", "AUTO"}, byDefault).open());
                if (marked) {
                    ASSERT_TRUE(ppd::markOption(setting.host->ppd.get(), op.keyword, marked));
                }
                (setting.construct().*op.save)();
                const char* expected = marked                                   ? marked
                                       : std::strcmp(byDefault, "unknown") == 0 ? "OFF"
                                                                                : byDefault;
                EXPECT_EQ(setting.host->takeSent(),
                          (std::vector<Sent>{{QLatin1String(op.keyword), expected}}));
            }
        }
    }
}

// Special tape on a control that is not there excludes nothing, and a lost box is none.
TEST(SaveWithoutControls, AppliesToEachControlByItself) {
    PanelOnHost setting(ppdWithChoices(2, true).open());
    PanelUnderTest& panel = setting.load();
    for (const Operation& op : operations()) {
        ASSERT_TRUE(ppd::markOption(setting.host->ppd.get(), op.keyword, "ON"));
        (panel.*op.checkBox).setState(0);
        delete (panel.*op.checkBox).widget();
        (panel.*op.save)();
        EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{QLatin1String(op.keyword), "ON"}}));
    }
}

TEST(Saving, WritesNothingForAbsentAndEmptyArrays) {
    PanelOnHost setting(ppdWithChoices(2, true).open());
    PanelUnderTest& panel = setting.load();
    for (const Operation& op : operations()) {
        (panel.*op.checkBox).setState(1);
        panel.*op.choices = std::nullopt;
        (panel.*op.save)();
        EXPECT_TRUE(setting.host->takeSent().empty()) << op.keyword;
        panel.*op.choices = PDEChoiceArray();
        (panel.*op.save)();
        EXPECT_TRUE(setting.host->takeSent().empty()) << op.keyword;
    }
}

TEST(Saving, WritesNothingWithoutPrintSettings) {
    for (const bool withView : {false, true}) {
        PanelOnHost setting(ppdWithChoices(2, true).open());
        setting.host->hasSettings = false;
        PanelUnderTest& panel = withView ? setting.load() : setting.construct();
        panel.setValuesToKey();
        EXPECT_TRUE(setting.host->sent.empty());
    }
    PanelOnHost setting(ppdWithChoices(2, false).open());
    setting.host->hasSettings = false;
    setting.construct().setValuesToKey();
    EXPECT_TRUE(setting.host->sent.empty()) << "nor automatic cut by name";
}

TEST(Saving, SkipsNamesThatAreNotUtf8) {
    PanelOnHost setting(ppdWithChoices(2, true).open());
    PanelUnderTest& panel = setting.load();
    for (const Operation& op : operations()) {
        ppd_option_t* option = ppd::findOption(setting.host->ppd.get(), op.keyword);
        (panel.*op.checkBox).setState(1);
        panel.mSpecialTapeChkBx.setState(std::strcmp(op.keyword, "KvSpecialTape") == 0 ? 1 : 0);
        std::strcpy(option->choices[1].choice, "\xE9");
        (panel.*op.save)();
        EXPECT_TRUE(setting.host->takeSent().empty()) << op.keyword;

        std::strcpy(option->choices[1].choice, "\xC3\xA9");
        (panel.*op.save)();
        EXPECT_EQ(setting.host->takeSent(),
                  (std::vector<Sent>{{QLatin1String(op.keyword), QStringLiteral("é")}}));

        std::strcpy(option->keyword, "Kv\xE9");
        (panel.*op.save)();
        EXPECT_TRUE(setting.host->takeSent().empty()) << op.keyword;
    }
}

TEST(Saving, SkipsCountsAndKeywordsThatAreNotUtf8EachByItself) {
    PanelOnHost setting(ppdWithChoices(2, false).open());
    PanelUnderTest& panel = setting.load();
    std::strcpy(panel.mCutEvery_Option->choices[0].choice, "\xE9");
    panel.saveSetting_CutLabel();
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvAutoTapeCut", "OFF"}}));

    std::strcpy(panel.mCutEvery_Option->choices[0].choice, "1");
    std::strcpy(panel.mCutEvery_Option->keyword, "Kv\xE9");
    panel.saveSetting_CutLabel();
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvAutoTapeCut", "OFF"}}));

    std::strcpy(panel.mCutEvery_Option->keyword, "KvCutLabel");
    std::strcpy(panel.mAutoCut_Option->keyword, "Kv\xE9");
    panel.saveSetting_CutLabel();
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvCutLabel", "1"}}));
}

TEST(IndexForSaveAutoChain, IsTheStateUnlessSpecialTapeIsOnAndSeen) {
    PanelOnHost setting(ppdWithChoices(2, true).open());
    PanelUnderTest& panel = setting.load();
    Button& box = panel.mHalfCutChkBx;
    walkStates(panel, box, [&](bool isSpecialTape) {
        EXPECT_EQ(panel.indexForSaveAutoChain(box), isSpecialTape ? 0 : box.state());
        EXPECT_EQ(panel.indexForSaveAutoChain(Button()), 0);
    });
    delete panel.mSpecialTapeChkBx.widget();
    box.setState(1);
    EXPECT_EQ(panel.indexForSaveAutoChain(box), 1);
    delete box.widget();
    EXPECT_EQ(panel.indexForSaveAutoChain(box), 0);
}

class SaveRemoveBlkSpace : public testing::Test {
protected:
    SaveRemoveBlkSpace()
        : setting(ppdWithChoices(2, true).open())
        , panel(setting.load()) {}

    void save() { panel.saveSetting_RemoveBlkSpace(); }

    PanelOnHost setting;
    PanelUnderTest& panel;
};

TEST_F(SaveRemoveBlkSpace, RefreshesTheTapeStateAndTheBoxEachTime) {
    setting.host->format.choose(QStringLiteral("DC24"));
    save();
    EXPECT_EQ(panel.getTapeState(), 1);
    EXPECT_FALSE(panel.mRemoveBlkSpaceChkBx.isEnabled());

    setting.host->format.choose(QStringLiteral("W62"));
    save();
    EXPECT_EQ(panel.getTapeState(), 0);
    EXPECT_TRUE(panel.mRemoveBlkSpaceChkBx.isEnabled());

    panel.setTapeState(9);
    setting.host->format.chosen.reset();
    save();
    EXPECT_EQ(panel.getTapeState(), 0);
}

TEST_F(SaveRemoveBlkSpace, SavesTheTickOfADisabledBox) {
    setting.host->format.choose(QStringLiteral("DC24"));
    panel.mRemoveBlkSpaceChkBx.setState(1);
    save();
    EXPECT_FALSE(panel.mRemoveBlkSpaceChkBx.isEnabled());
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvRemoveBlkSpace", "ON"}}));
    panel.mRemoveBlkSpaceChkBx.setState(0);
    save();
    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvRemoveBlkSpace", "OFF"}}));
}

TEST_F(SaveRemoveBlkSpace, TakesAFailedReadingForNoTape) {
    panel.setTapeState(1);
    panel.mRemoveBlkSpaceChkBx.setEnabled(false);
    setting.host->format.status = kPMGeneralError;
    save();
    EXPECT_EQ(panel.getTapeState(), 0);
    EXPECT_TRUE(panel.mRemoveBlkSpaceChkBx.isEnabled());

    panel.setTapeState(1);
    setting.host->hasFormat = false;
    save();
    EXPECT_EQ(panel.getTapeState(), 0);
}

TEST_F(SaveRemoveBlkSpace, RefreshesWithoutOptionAndWithoutSettingsToo) {
    PanelOnHost without(PpdBuilder().onOff("KvMirror").size("DC24", 68, 68).open());
    without.host->format.choose(QStringLiteral("DC24"));
    PanelUnderTest& other = without.load();
    other.saveSetting_RemoveBlkSpace();
    EXPECT_EQ(other.getTapeState(), 1);
    EXPECT_FALSE(other.mRemoveBlkSpaceChkBx.isEnabled());
    EXPECT_TRUE(without.host->sent.empty());

    PanelOnHost unset(ppdWithChoices(2, true).open());
    unset.host->hasSettings = false;
    unset.host->format.choose(QStringLiteral("DC24"));
    PanelUnderTest& third = unset.construct();
    third.saveSetting_RemoveBlkSpace();
    EXPECT_EQ(third.getTapeState(), 1);
    EXPECT_TRUE(unset.host->sent.empty());
}

TEST_F(SaveRemoveBlkSpace, AsksTheHostAnewForSettingsAndPageFormat) {
    setting.host->asked.clear();
    save();
    EXPECT_TRUE(setting.host->asked.contains(QStringLiteral("printSettings")));
    EXPECT_TRUE(setting.host->asked.contains(QStringLiteral("pageFormat")));
}

} // namespace
} // namespace labelcut::test
