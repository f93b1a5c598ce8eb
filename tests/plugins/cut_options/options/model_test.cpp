// Tests of the cut-options panel: its table, its construction, and its fixed sequences.
#include <gtest/gtest.h>

#include <QPointer>

#include "tests/plugins/cut_options/options/option_subsets.h"

namespace labelcut::test {
namespace {

using P = PanelUnderTest;

/// What the panel holds of one option, in the fixed order.
struct Fields {
    const char* keyword;
    std::uint32_t item;
    ppd_option_t* OptionPDE13_v400_::*option;
    PDEChoices OptionPDE13_v400_::*choices;
    const PDEChoice* OptionPDE13_v400_::*selection;
    Button OptionPDE13_v400_::*checkBox;
    const char* titleKey;
};

const std::vector<Fields>& fields() {
    static const std::vector<Fields> all = {
        {"KvCutLabel", 0x100, &P::mCutEvery_Option, &P::mCutEvery_Choices, &P::mCutEvery_Selection,
         &P::mCutEveryChkBx, "RS_CutAtEvery"},
        {"KvCutAtEnd", 0x200, &P::mCutEnd_Option, &P::mCutEnd_Choices, &P::mCutEnd_Selection,
         &P::mCutAndEndChkBx, "RS_CutAtEnd"},
        {"KvMirror", 0x400, &P::mMirror_Option, &P::mMirror_Choices, &P::mMirror_Selection,
         &P::mMirrorPrintChkBx, "RS_MirrorPrinting"},
        {"KvAutoTapeCut", 0x800, &P::mAutoCut_Option, &P::mAutoCut_Choices, &P::mAutoCut_Selection,
         &P::mAutoCutChkBx, "RS_AutoTapeCut"},
        {"KvHalfCut", 0x1000, &P::mHalfCut_Option, &P::mHalfCut_Choices, &P::mHalfCut_Selection,
         &P::mHalfCutChkBx, "RS_HalfCut"},
        {"KvChainPrint", 0x2000, &P::mChainPrint_Option, &P::mChainPrint_Choices,
         &P::mChainPrint_Selection, &P::mChainPrintChkBx, "RS_ChainPrinting"},
        {"KvSpecialTape", 0x4000, &P::mSpecialTape_Option, &P::mSpecialTape_Choices,
         &P::mSpecialTape_Selection, &P::mSpecialTapeChkBx, "RS_SpecialTape"},
        {"KvRemoveBlkSpace", 0x10000, &P::mRemoveBlkSpace_Option, &P::mRemoveBlkSpace_Choices,
         &P::mRemoveBlkSpace_Selection, &P::mRemoveBlkSpaceChkBx, "RS_RemoveBlkSpace"},
    };
    return all;
}

TEST(OptionTable, TiesEachKeywordToItsFieldsControlAndItem) {
    const auto rows = OptionPDE13_v400_::rows();
    ASSERT_EQ(rows.size(), fields().size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const OptionPDE13_v400_::Row& row = rows[i];
        const Fields& expected = fields()[i];
        EXPECT_STREQ(row.keyword, expected.keyword);
        EXPECT_EQ(row.item, expected.item) << row.keyword;
        EXPECT_TRUE(row.option == expected.option) << row.keyword;
        EXPECT_TRUE(row.choices == expected.choices) << row.keyword;
        EXPECT_TRUE(row.selection == expected.selection) << row.keyword;
        EXPECT_TRUE(row.checkBox == expected.checkBox) << row.keyword;
        EXPECT_STREQ(row.titleKey, expected.titleKey);
        EXPECT_EQ(&OptionPDE13_v400_::rowOf(expected.item), &row);
    }
    EXPECT_EQ(item::kPopUp, 0x40000U);
}

TEST(OptionTable, RanksEveryOptionOnceFromOneUpward) {
    const auto keywords = [](int P::Row::*rank) {
        QStringList all;
        int expected = 0;
        for (const P::Row* row : P::rowsBy(rank)) {
            EXPECT_EQ(row->*rank, ++expected) << row->keyword;
            all.append(QLatin1String(row->keyword));
        }
        return all.join(u' ');
    };
    EXPECT_EQ(keywords(&P::Row::displayRank),
              QStringLiteral("KvCutLabel KvAutoTapeCut KvCutAtEnd KvHalfCut KvSpecialTape "
                             "KvChainPrint KvMirror KvRemoveBlkSpace"));
    EXPECT_EQ(keywords(&P::Row::exclusionRank),
              QStringLiteral("KvAutoTapeCut KvChainPrint KvHalfCut KvCutLabel"));
}

TEST(OptionConstruction, FindsEveryPresentOptionAndLeavesTheOthersAbsent) {
    for (unsigned set = 0; set <= kAllOptions; ++set) {
        PanelOnHost setting(ppdWith(set, false).open());
        const PanelUnderTest& panel = setting.construct();
        for (std::size_t i = 0; i < fields().size(); ++i) {
            const Fields& f = fields()[i];
            ppd_option_t* option = ppd::findOption(setting.host->ppd.get(), f.keyword);
            EXPECT_EQ(panel.*f.option, option);
            EXPECT_EQ(option != nullptr, has(set, i));
            EXPECT_EQ((panel.*f.choices).has_value(), has(set, i)) << f.keyword;
            if (has(set, i)) {
                EXPECT_EQ((panel.*f.choices)->size(), i == kCutLabelPlace ? 9U : 2U);
                EXPECT_EQ((panel.*f.choices)->front().choice(), &option->choices[0]);
            }
            EXPECT_EQ(panel.*f.selection, nullptr) << f.keyword;
        }
        EXPECT_TRUE(setting.host->sent.empty());
    }
}

TEST(OptionConstruction, SetsItsFlagsAndLeavesTheRestAtZero) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    const PanelUnderTest& panel = setting.construct();
    EXPECT_EQ(panel.checkValues_dec, 1);
    EXPECT_EQ(panel.column_dec, 0);
    EXPECT_EQ(panel.set_formatSetting, 0);
    EXPECT_EQ(panel.mTapeState, 0);
    EXPECT_EQ(panel.getTapeState(), 0);
    EXPECT_EQ(panel.usb_dec, 0);
    EXPECT_EQ(panel.choice_PaperSize, 0.0F);
    EXPECT_EQ(panel.mAutoCut_CutEvery_Selection, nullptr);
    EXPECT_TRUE(panel.mOptionView.isNull());
    EXPECT_FALSE(panel.mCutEveryChkBx);
}

TEST(OptionConstruction, SetsItsFieldsWhateverTheyWereBefore) {
    PanelOnHost setting(PpdBuilder().onOff("KvHalfCut").open());
    const PDEChoice left = PDEChoice::choiceWithChoice(nullptr);
    PanelUnderTest panel;
    panel.checkValues_dec = 9;
    panel.column_dec = 9;
    panel.set_formatSetting = 9;
    panel.mAutoCutHideKey_dec = 9;
    panel.mTapeState = 9;
    panel.usb_dec = 9;
    panel.mAutoCut_CutEvery_Selection = &left;
    for (const Fields& f : fields())
        panel.*f.selection = &left;
    panel.initWithCallback(setting.host, setting.bundle);
    EXPECT_EQ(panel.checkValues_dec, 1);
    EXPECT_EQ(panel.column_dec, 0);
    EXPECT_EQ(panel.set_formatSetting, 0);
    EXPECT_EQ(panel.mAutoCutHideKey_dec, 0);
    EXPECT_EQ(panel.mTapeState, 0);
    EXPECT_EQ(panel.usb_dec, 0);
    EXPECT_EQ(panel.mAutoCut_CutEvery_Selection, nullptr);
    for (const Fields& f : fields())
        EXPECT_EQ(panel.*f.selection, nullptr) << f.keyword;
}

TEST(OptionConstruction, AsksForThePrinterOnceMoreAfterTheBase) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    setting.construct();
    EXPECT_EQ(setting.host->asked,
              (QStringList{QStringLiteral("printSession"), QStringLiteral("printSettings"),
                           QStringLiteral("printSettings"), QStringLiteral("pageFormat"),
                           QStringLiteral("PMPrinter"), QStringLiteral("ppdFile"),
                           QStringLiteral("PMPrinter")}));
}

TEST(OptionConstruction, AnswersItselfAndStaysEmptyWithoutAHost) {
    auto bundle = std::make_shared<ResourceBundle>(QStringLiteral(LABELCUT_BUNDLE_DIR));
    PanelUnderTest panel;
    EXPECT_EQ(panel.initWithCallback(nullptr, bundle), &panel);
    EXPECT_EQ(panel.checkValues_dec, 0) << "no step of the panel's own was taken";
    EXPECT_EQ(panel.mHalfCut_Option, nullptr);
    EXPECT_EQ(panel.supportedPPDOptionKeys(), QStringList());
    EXPECT_FALSE(panel.panelView());
    panel.willShow();
    EXPECT_TRUE(panel.saveValuesAndReturnError(nullptr));
    EXPECT_TRUE(panel.restoreValuesAndReturnError(nullptr));
    EXPECT_TRUE(panel.shouldPrint());
    panel.PPDOptionKeyValueDidChange(QStringLiteral("KvMirror"), QStringLiteral("ON"));
    panel.printWindowWillClose(true);
    panel.summaryInfo();
    panel.inspect();
}

TEST(UsbDetection, TakesTheTwoSchemesExactlyAsTheyAreWritten) {
    struct Case {
        QString uri;
        int usb;
    };
    const Case cases[] = {
        {QStringLiteral("usb://Maker/Model"), 1},
        {QStringLiteral("usb:"), 1},
        {QStringLiteral("KVSGUSB://Maker/Model"), 1},
        {QStringLiteral("KVSGUSB:x"), 1},
        {QStringLiteral("USB://Maker/Model"), 0},
        {QStringLiteral("Usb://Maker/Model"), 0},
        {QStringLiteral("kvsgusb://Maker/Model"), 0},
        {QStringLiteral("KVSGusb://Maker/Model"), 0},
        {QStringLiteral("usbx://Maker/Model"), 0},
        {QStringLiteral("xusb://Maker/Model"), 0},
        {QStringLiteral("KVSGUSB2://Maker"), 0},
        {QStringLiteral(" usb://Maker"), 0},
        {QStringLiteral("usb"), 0},
        {QStringLiteral("//usb"), 0},
        {QStringLiteral("://usb"), 0},
        {QStringLiteral("ipp://usb:usb/"), 0},
        {QStringLiteral(""), 0},
    };
    for (const Case& c : cases) {
        PanelOnHost setting(PpdBuilder::tapePrinter().open());
        setting.host->fakePrinter.uri = PMURL(c.uri);
        EXPECT_EQ(setting.construct().usb_dec, c.usb) << c.uri.toStdString();
    }
}

TEST(UsbDetection, IsNoneWithoutAPrinterAUriOrAScheme) {
    PanelOnHost noPrinter(nullptr);
    noPrinter.host->hasPrinter = false;
    EXPECT_EQ(noPrinter.construct().usb_dec, 0);

    PanelOnHost failing(nullptr);
    failing.host->fakePrinter.uri = PMURL(QStringLiteral("usb://x"));
    failing.host->fakePrinter.uriStatus = kPMKeyNotFound;
    EXPECT_EQ(failing.construct().usb_dec, 0);

    PanelOnHost noString(nullptr);
    noString.host->fakePrinter.uri = PMURL();
    EXPECT_EQ(noString.construct().usb_dec, 0);
}

TEST(UsbDetection, WorksForUrisThatDoNotFitTheBasesField) {
    PanelOnHost setting(nullptr);
    setting.host->fakePrinter.uri = PMURL(QStringLiteral("usb://") + QString(300, u'x'));
    EXPECT_EQ(setting.construct().usb_dec, 1);
    EXPECT_EQ(setting.panel->deviceURI.front(), '\0');
}

TEST(AutoCutRow, IsTheOptionsOwnExactlyWhenItsHidingIsFalse) {
    struct Case {
        const char* value;
        int flag;
    };
    for (const Case& c : {Case{"False", 1}, Case{"True", 0}, Case{"false", 0}, Case{"FALSE", 0},
                          Case{"", 0}, Case{"No", 0}}) {
        PpdBuilder with;
        with.attribute("KvAutoCutObjHidden", c.value).onOff("KvAutoTapeCut");
        EXPECT_EQ(PanelOnHost(with.open()).construct().mAutoCutHideKey_dec, c.flag) << c.value;

        PpdBuilder without;
        without.attribute("KvAutoCutObjHidden", c.value).onOff("KvHalfCut");
        EXPECT_EQ(PanelOnHost(without.open()).construct().mAutoCutHideKey_dec, 0) << c.value;
    }
    EXPECT_EQ(
        PanelOnHost(PpdBuilder().onOff("KvAutoTapeCut").open()).construct().mAutoCutHideKey_dec, 0);
    EXPECT_EQ(PanelOnHost(nullptr).construct().mAutoCutHideKey_dec, 0);
}

QStringList expectedKeys(unsigned set) {
    QStringList keys;
    for (std::size_t i = 0; i < kKeywords.size(); ++i) {
        if (has(set, i))
            keys.append(keywordAt(i));
        if (i == kCutLabelPlace && has(set, i) && !has(set, kAutoCutPlace))
            keys.append(QStringLiteral("KvAutoTapeCut"));
    }
    return keys;
}

/// What saving writes while there are no controls and nothing is marked: the defaults. Automatic
/// cut without a row of its own goes with the count, before it, and without a count nowhere.
std::vector<Sent> expectedDefaults(unsigned set, bool autoCutIsShown) {
    std::vector<Sent> sent;
    for (std::size_t i = 0; i < kKeywords.size(); ++i) {
        if (!has(set, i))
            continue;
        if (i == kCutLabelPlace && has(set, kAutoCutPlace) && !autoCutIsShown)
            sent.emplace_back(keywordAt(kAutoCutPlace), defaultAt(kAutoCutPlace));
        if (i != kAutoCutPlace || autoCutIsShown)
            sent.emplace_back(keywordAt(i), defaultAt(i));
    }
    return sent;
}

TEST(SupportedKeys, AreTheOptionsOfThePpdInTheFixedOrderForEverySubset) {
    for (unsigned set = 0; set <= kAllOptions; ++set) {
        for (const bool shown : {false, true}) {
            PanelOnHost setting(ppdWith(set, shown).open());
            PanelUnderTest& panel = setting.construct();
            EXPECT_EQ(panel.supportedPPDOptionKeys(), expectedKeys(set)) << set;
            EXPECT_EQ(setting.host->takeSent(), expectedDefaults(set, shown))
                << set << ' ' << shown;

            EXPECT_EQ(panel.supportedPPDOptionKeys(), expectedKeys(set)) << set;
            EXPECT_TRUE(setting.host->sent.empty()) << "only the first request writes";
            EXPECT_EQ(panel.supportedOptions(), expectedKeys(set));
        }
    }
}

TEST(SupportedKeys, AreSpelledOut) {
    EXPECT_EQ(PanelOnHost(PpdBuilder().counts(1, 3, "1").onOff("KvMirror").open())
                  .construct()
                  .supportedPPDOptionKeys(),
              (QStringList{QStringLiteral("KvCutLabel"), QStringLiteral("KvAutoTapeCut"),
                           QStringLiteral("KvMirror")}));
    EXPECT_EQ(PanelOnHost(PpdBuilder().onOff("KvHalfCut").onOff("KvAutoTapeCut").open())
                  .construct()
                  .supportedPPDOptionKeys(),
              (QStringList{QStringLiteral("KvAutoTapeCut"), QStringLiteral("KvHalfCut")}));
    EXPECT_EQ(PanelOnHost(PpdBuilder::rollPrinter().open()).construct().supportedPPDOptionKeys(),
              (QStringList{QStringLiteral("KvCutLabel"), QStringLiteral("KvCutAtEnd"),
                           QStringLiteral("KvMirror"), QStringLiteral("KvAutoTapeCut"),
                           QStringLiteral("KvRemoveBlkSpace")}));
    EXPECT_EQ(PanelOnHost(nullptr).construct().supportedPPDOptionKeys(), QStringList());
}

TEST(FirstDisplay, InitialisesEveryOptionThenWritesThemInTheFixedOrder) {
    for (unsigned set = 0; set <= kAllOptions; ++set) {
        for (const bool shown : {false, true}) {
            PanelOnHost setting(ppdWith(set, shown).open());
            PanelUnderTest& panel = setting.load();
            panel.initUI();
            std::vector<Sent> expected = expectedDefaults(set, shown);
            // With its controls there, the count is what is marked, else the first; and automatic
            // cut follows the cut-every box, which the default "2" leaves off.
            for (auto& [key, choice] : expected) {
                if (key == keywordAt(kCutLabelPlace))
                    choice = QStringLiteral("1");
                if (key == keywordAt(kAutoCutPlace) && !shown)
                    choice = QStringLiteral("OFF");
            }
            EXPECT_EQ(setting.host->takeSent(), expected) << set << ' ' << shown;
            EXPECT_EQ(panel.set_formatSetting, 1);
        }
    }
}

TEST(FirstDisplay, HappensOncePerPanel) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    PanelUnderTest& panel = setting.load();
    panel.initUI();
    setting.host->sent.clear();
    panel.mHalfCutChkBx.setState(1);
    panel.mHalfCutChkBx.setTitle(QStringLiteral("mine"));
    panel.initUI();
    EXPECT_EQ(panel.mHalfCutChkBx.state(), 1);
    EXPECT_EQ(panel.mHalfCutChkBx.title(), QStringLiteral("mine"));
    EXPECT_TRUE(setting.host->sent.empty());
    EXPECT_EQ(panel.set_formatSetting, 1);
}

TEST(FirstDisplay, WritesTheDefaultsOverTheMarks) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    PanelUnderTest& panel = setting.load();
    ASSERT_TRUE(ppd::markOption(setting.host->ppd.get(), "KvHalfCut", "ON"));
    panel.willShow();
    EXPECT_STREQ(ppd::findMarkedChoice(setting.host->ppd.get(), "KvHalfCut")->choice, "OFF");
}

class CountingPanel : public PanelUnderTest {
public:
    std::vector<std::int32_t> refreshed;
    std::vector<std::uint32_t> reread;
    void updateUIItem(std::int32_t mask) override { refreshed.push_back(mask); }
    void updateMarkedSelections(std::uint32_t mask) override { reread.push_back(mask); }
};

TEST(FixedSequences, RefreshNineItemsAndRereadEightInOrder) {
    CountingPanel panel;
    panel.initWithCallback(std::make_shared<FakeHost>(), nullptr);
    const std::vector<std::int32_t> items{0x100,  0x200,  0x400,   0x800,  0x1000,
                                          0x2000, 0x4000, 0x10000, 0x40000};
    panel.setPDEItems();
    EXPECT_EQ(panel.refreshed, items);
    EXPECT_TRUE(panel.reread.empty());
    panel.refreshed.clear();

    panel.setPDEItems2();
    EXPECT_EQ(panel.reread, (std::vector<std::uint32_t>{0x100, 0x200, 0x400, 0x800, 0x1000, 0x2000,
                                                        0x4000, 0x10000}));
    EXPECT_TRUE(panel.refreshed.empty());

    panel.reread.clear();
    panel.restoreValuesAndReturnError(nullptr);
    EXPECT_EQ(panel.reread.size(), 8U);
    EXPECT_EQ(panel.refreshed, items);
}

TEST(FixedSequences, SaveWritesTheEightInOrder) {
    PanelOnHost setting(ppdWith(kAllOptions, true).open());
    PanelUnderTest& panel = setting.construct();
    panel.setValuesToKey();
    EXPECT_EQ(setting.host->takeSent(), expectedDefaults(kAllOptions, true));
    panel.saveValuesAndReturnError(nullptr);
    EXPECT_EQ(setting.host->takeSent(), expectedDefaults(kAllOptions, true));
}

TEST(TapeState, IsWhatWasSet) {
    PanelUnderTest panel;
    for (const std::int32_t state : {1, 0, -1, 7, 0x7FFFFFFF}) {
        panel.setTapeState(state);
        EXPECT_EQ(panel.getTapeState(), state);
        EXPECT_EQ(panel.mTapeState, state);
    }
}

TEST(OptionPanelAnswers, AreTheBasesWhereItHasNoneOfItsOwn) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    PanelUnderTest& panel = setting.load();
    setting.host->asked.clear();
    EXPECT_TRUE(panel.shouldHide());
    EXPECT_FALSE(panel.shouldShowHelp());
    panel.initSetTitleTexts();
    panel.getValuesFromKey();
    panel.printWindowWillClose(true);
    panel.printWindowWillClose(false);
    EXPECT_EQ(panel.indexForSummary("KvMirror"), 0);
    EXPECT_TRUE(setting.host->asked.isEmpty());
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(OptionPanelTeardown, ReleasesThePreviewWhereverItIs) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    PanelUnderTest& panel = setting.load();
    const QPointer<QWidget> view = panel.kPDEView;
    const QPointer<QWidget> preview = panel.mOptionView.data();
    ASSERT_TRUE(view && preview);
    QWidget elsewhere;
    preview->setParent(&elsewhere);
    setting.panel.reset();
    EXPECT_FALSE(view);
    EXPECT_FALSE(preview);
    EXPECT_TRUE(ppd::findOption(setting.host->ppd.get(), "KvHalfCut")) << "the PPD is the host's";
}

TEST(OptionPanelTeardown, WorksWhileAFieldIsTypedIntoAndAfterTheHostTookTheView) {
    PanelOnHost setting(PpdBuilder::rollPrinter().open());
    PanelUnderTest& panel = setting.show();
    auto window = std::make_unique<QWidget>();
    panel.kPDEView->setParent(window.get());
    window->show();
    panel.mCutEveryTxBx.widget()->setFocus();
    setting.panel.reset();
    EXPECT_TRUE(window->findChildren<QWidget*>().isEmpty());

    PanelUnderTest& other = setting.show();
    other.kPDEView->setParent(window.get());
    window.reset();
    other.willShow();
    EXPECT_TRUE(other.saveValuesAndReturnError(nullptr));
    setting.panel.reset();
}

} // namespace
} // namespace labelcut::test
