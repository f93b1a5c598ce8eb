// Tests of the panel host: marks, and who hears of them.
#include "host/panels/panel_host.h"

#include "tests/host/panels/core_fixtures.h"
#include "tests/support/expected_warnings.h"

namespace labelcut::test {
namespace {

const QString kMirror = QStringLiteral("KvMirror");
const QString kHalfCut = QStringLiteral("KvHalfCut");
const QString kOn = QStringLiteral("ON");
const QString kOff = QStringLiteral("OFF");

/// A panel that writes down what it hears, and may answer it.
class Listener : public PDEPanel {
public:
    Settings heard;
    std::function<void(const Setting&)> onHeard;

    QWidget* panelView() override { return nullptr; }
    QString panelName() override { return {}; }
    QString panelKind() override { return {}; }
    std::optional<QStringList> supportedPPDOptionKeys() override { return std::nullopt; }
    void willShow() override {}
    bool shouldHide() override { return true; }
    bool shouldPrint() override { return true; }
    bool shouldShowHelp() override { return false; }
    void printWindowWillClose(bool) override {}
    void PPDOptionKeyValueDidChange(const QString& key, const QString& choice) override {
        heard.push_back({key, choice});
        if (onHeard)
            onHeard({key, choice});
    }
    bool saveValuesAndReturnError(QString*) override { return true; }
    bool restoreValuesAndReturnError(QString*) override { return true; }
    std::optional<QVariantMap> summaryInfo() override { return std::nullopt; }

    Settings take() { return std::exchange(heard, {}); }
};

/// A host with three panels: two of one plug-in, one of another.
class Host : public testing::Test {
protected:
    Host() {
        host->addPanel(one, &first);
        host->addPanel(one, &second);
        host->addPanel(other, &third);
    }
    std::unique_ptr<PanelHost> host = hostOn(PpdBuilder::tapePrinter());
    std::shared_ptr<PDEPluginCallback> one = host->makeCallback();
    std::shared_ptr<PDEPluginCallback> other = host->makeCallback();
    Listener first;
    Listener second;
    Listener third;
};

TEST_F(Host, GivesPanelsWhatItHolds) {
    EXPECT_EQ(one->printSession(), &host->session());
    EXPECT_EQ(one->printSettings(), &host->settings());
    EXPECT_EQ(one->pageFormat(), &host->pageFormat());
    EXPECT_EQ(one->printer(), &host->printer());
    EXPECT_EQ(one->ppdFile(), host->ppd());
    EXPECT_TRUE(one->respondsToPanelViewDidResize());
    EXPECT_NE(one, other);
}

TEST(PanelHostSetupTest, DecidesWhatPanelsFind) {
    PanelHostSetup setup;
    setup.deviceURI = QStringLiteral("KVSGUSB://x");
    setup.paper = HostPaper(QStringLiteral("DC24"), 68);
    setup.offersSettings = false;
    PanelHost host(std::move(setup));
    const auto callback = host.makeCallback();
    EXPECT_EQ(callback->printSettings(), nullptr);
    EXPECT_EQ(callback->ppdFile(), nullptr);
    PMURL uri;
    EXPECT_EQ(PMPrinterCopyDeviceURI(callback->printer(), &uri), noErr);
    EXPECT_EQ(CFURLGetString(uri), QStringLiteral("KVSGUSB://x"));
    const PMPaper* paper = nullptr;
    EXPECT_EQ(PMGetPageFormatPaper(callback->pageFormat(), &paper), noErr);
    QString name;
    EXPECT_EQ(PMPaperGetPPDPaperName(paper, &name), noErr);
    EXPECT_EQ(name, QStringLiteral("DC24"));

    PanelHost bare(PanelHostSetup{});
    EXPECT_NE(bare.makeCallback()->printSettings(), nullptr);
    EXPECT_EQ(PMPrinterCopyDeviceURI(bare.makeCallback()->printer(), &uri), kPMKeyNotFound);
}

TEST_F(Host, MarksWhatAPanelChoosesAndTellsTheOtherPluginsPanelsOnly) {
    one->willChangePPDOptionKeyValue(kMirror, kOn);
    EXPECT_EQ(host->marked(kMirror), kOn);
    EXPECT_TRUE(first.heard.empty()) << "the panels of the plug-in that wrote hear nothing";
    EXPECT_TRUE(second.heard.empty());
    EXPECT_EQ(third.take(), (Settings{{kMirror, kOn}}));

    other->willChangePPDOptionKeyValue(kMirror, kOff);
    EXPECT_EQ(host->marked(kMirror), kOff);
    EXPECT_EQ(first.take(), (Settings{{kMirror, kOff}}));
    EXPECT_EQ(second.take(), (Settings{{kMirror, kOff}}));
    EXPECT_TRUE(third.heard.empty());
}

TEST_F(Host, KeepsWhatAPanelChoosesAmongThePrintSettings) {
    QVariant kept;
    EXPECT_EQ(PMPrintSettingsGetValue(one->printSettings(), kMirror, &kept), kPMKeyNotFound);
    one->willChangePPDOptionKeyValue(kMirror, kOn);
    ASSERT_EQ(PMPrintSettingsGetValue(one->printSettings(), kMirror, &kept), noErr);
    EXPECT_EQ(kept, QVariant(kOn));
    host->mark(kMirror, kOff);
    ASSERT_EQ(PMPrintSettingsGetValue(one->printSettings(), kMirror, &kept), noErr);
    EXPECT_EQ(kept, QVariant(kOff)) << "marks and settings agree";
    host->unmark(kMirror);
    EXPECT_EQ(PMPrintSettingsGetValue(one->printSettings(), kMirror, &kept), kPMKeyNotFound);
    one->willChangePPDOptionKeyValue(kMirror, QStringLiteral("MAYBE"));
    EXPECT_EQ(PMPrintSettingsGetValue(one->printSettings(), kMirror, &kept), kPMKeyNotFound);
}

TEST_F(Host, MarksBeforeItTells) {
    std::optional<QString> markedMeanwhile;
    third.onHeard = [&](const Setting& change) { markedMeanwhile = host->marked(change.keyword); };
    one->willChangePPDOptionKeyValue(kMirror, kOn);
    EXPECT_EQ(markedMeanwhile, kOn);
}

TEST_F(Host, IgnoresPairsThatThePpdLacksAndTellsNobody) {
    int changes = 0;
    host->onChange([&](const PDEPluginCallback&, const Setting&) { ++changes; });
    const Setting lacking[] = {
        {QStringLiteral("KvCutLabel"), QStringLiteral("1")},
        {kMirror, QStringLiteral("MAYBE")},
        {QString(), kOn},
        {kMirror, QString()},
        {QString(100, u'K'), kOn},
        {kMirror, QString(100'000, u'O')},
        {QStringLiteral("KvÉ"), kOn},
    };
    for (const Setting& pair : lacking) {
        one->willChangePPDOptionKeyValue(pair.keyword, pair.choice);
        EXPECT_FALSE(host->mark(pair.keyword, pair.choice));
        EXPECT_FALSE(host->changeFromOutside(pair.keyword, pair.choice));
    }
    EXPECT_EQ(host->marked(kMirror), kOff);
    EXPECT_EQ(changes, 0);
    for (const Listener* panel : {&first, &second, &third})
        EXPECT_TRUE(panel->heard.empty());
    EXPECT_EQ(host->takeChanges(), Settings(std::begin(lacking), std::end(lacking)))
        << "what was sent is kept as it was sent";
}

TEST_F(Host, TellsEveryPanelOfAChangeFromOutside) {
    EXPECT_TRUE(host->changeFromOutside(kMirror, kOn));
    EXPECT_EQ(host->marked(kMirror), kOn);
    for (Listener* panel : {&first, &second, &third})
        EXPECT_EQ(panel->take(), (Settings{{kMirror, kOn}}));
    EXPECT_TRUE(host->takeChanges().empty()) << "no panel sent it";
}

TEST_F(Host, MarksAndUnmarksWithoutTellingAnybody) {
    EXPECT_TRUE(host->mark(kMirror, kOn));
    EXPECT_EQ(host->marked(kMirror), kOn);
    EXPECT_TRUE(host->unmark(kMirror));
    EXPECT_EQ(host->marked(kMirror), std::nullopt);
    EXPECT_FALSE(host->unmark(QStringLiteral("KvMissing")));
    EXPECT_EQ(host->marked(QStringLiteral("KvMissing")), std::nullopt);
    for (const Listener* panel : {&first, &second, &third})
        EXPECT_TRUE(panel->heard.empty());
}

TEST_F(Host, KeepsWhatPanelsSentUntilItIsTaken) {
    one->willChangePPDOptionKeyValue(kMirror, kOn);
    other->willChangePPDOptionKeyValue(kHalfCut, kOn);
    one->willChangePPDOptionKeyValue(kMirror, kOn);
    EXPECT_EQ(host->takeChanges(), (Settings{{kMirror, kOn}, {kHalfCut, kOn}, {kMirror, kOn}}));
    EXPECT_TRUE(host->takeChanges().empty());
}

TEST_F(Host, DoesNotKeepADayOfChoicesThatNobodyTakes) {
    for (std::size_t i = 0; i < 3 * PanelHost::kMostChanges + 5; ++i)
        one->willChangePPDOptionKeyValue(kMirror, i % 2 == 0 ? kOn : kOff);
    const Settings kept = host->takeChanges();
    EXPECT_EQ(kept.size(), 5U);
    EXPECT_EQ(kept.back(), (Setting{kMirror, kOn}));
}

TEST_F(Host, TellsItsListenerAfterThePanels) {
    Settings changes;
    bool panelsKnew = false;
    host->onChange([&](const PDEPluginCallback&, const Setting& change) {
        changes.push_back(change);
        panelsKnew = !third.heard.empty();
    });
    one->willChangePPDOptionKeyValue(kMirror, kOn);
    EXPECT_EQ(changes, (Settings{{kMirror, kOn}}));
    EXPECT_TRUE(panelsKnew);
    host->changeFromOutside(kMirror, kOff);
    EXPECT_EQ(changes.size(), 1U) << "only panels' changes";
}

TEST_F(Host, CountsResizesAndTellsTheirListener) {
    int resizes = 0;
    host->onResize([&] { ++resizes; });
    one->panelViewDidResize();
    other->panelViewDidResize();
    EXPECT_EQ(resizes, 2);
    EXPECT_EQ(host->takeResizes(), 2);
    EXPECT_EQ(host->takeResizes(), 0);
    host->onResize({});
    one->panelViewDidResize();
    EXPECT_EQ(host->takeResizes(), 1);
}

TEST_F(Host, LetsAPanelAnswerAChangeWithAnother) {
    third.onHeard = [&](const Setting& change) {
        if (change.keyword == kMirror)
            other->willChangePPDOptionKeyValue(kHalfCut, kOn);
    };
    one->willChangePPDOptionKeyValue(kMirror, kOn);
    EXPECT_EQ(host->marked(kHalfCut), kOn);
    EXPECT_EQ(first.take(), (Settings{{kHalfCut, kOn}}));
    EXPECT_EQ(third.take(), (Settings{{kMirror, kOn}}));
}

/// A panel that never lets `key` be anything but `wanted`.
void insist(Listener& panel, const std::shared_ptr<PDEPluginCallback>& callback, const QString& key,
            const QString& wanted) {
    panel.onHeard = [callback, key, wanted](const Setting& change) {
        if (change.keyword == key && change.choice != wanted)
            callback->willChangePPDOptionKeyValue(key, wanted);
    };
}

TEST_F(Host, EndsAQuarrelOfTwoPanelsAndTellsIt) {
    std::vector<std::string> told;
    host->onTrouble([&](const QString& sentence) { told.push_back(sentence.toStdString()); });
    insist(first, one, kHalfCut, kOff);
    insist(third, other, kHalfCut, kOn);
    host->changeFromOutside(kHalfCut, kOn);
    EXPECT_EQ(told, (std::vector<std::string>{
                        "Panels of different plug-ins change “KvHalfCut” against each other "
                        "without end. It is now “" +
                        host->marked(kHalfCut)->toStdString() +
                        "”; check it before you print, and remove one of the plug-ins."}));
    EXPECT_EQ(first.take().size() + third.take().size(),
              static_cast<std::size_t>(PanelHost::kMostNotices) + 1)
        << "both hear of the change, and one panel of each notice after it";
    // The next change is told as ever, and its quarrel too.
    host->changeFromOutside(kMirror, kOn);
    EXPECT_EQ(third.take(), (Settings{{kMirror, kOn}}));
    EXPECT_EQ(told.size(), 1U);
    host->changeFromOutside(kHalfCut, kOff);
    EXPECT_EQ(told.size(), 2U);
}

TEST_F(Host, TellsOfTheKeywordThatIsDisputedRatherThanOfTheFirst) {
    QString told;
    host->onTrouble([&](const QString& sentence) { told += sentence; });
    insist(first, one, kHalfCut, kOff);
    third.onHeard = [&](const Setting& change) {
        if (change.choice != kOn || change.keyword == kMirror)
            other->willChangePPDOptionKeyValue(kHalfCut, kOn);
    };
    one->willChangePPDOptionKeyValue(kMirror, kOn);
    EXPECT_TRUE(told.contains(QStringLiteral("“KvHalfCut”"))) << told.toStdString();
}

TEST_F(Host, TellsEveryOneOfManyChangesThatOnePanelMakes) {
    QStringList told;
    host->onTrouble([&](const QString& sentence) { told += sentence; });
    for (int i = 0; i < 3 * PanelHost::kMostNotices; ++i)
        one->willChangePPDOptionKeyValue(kMirror, i % 2 ? kOn : kOff);
    EXPECT_EQ(third.take().size(), std::size_t{3} * PanelHost::kMostNotices);
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(Host, LogsTroubleWhileNobodyListens) {
    const ExpectedWarning warning(QStringLiteral("^100 % of the tape is stuck$"));
    host->tellTrouble(QStringLiteral("100 % of the tape is stuck"));
}

TEST_F(Host, ForgetsAPanelThatWasRemoved) {
    host->removePanel(&third);
    one->willChangePPDOptionKeyValue(kMirror, kOn);
    host->changeFromOutside(kMirror, kOff);
    EXPECT_TRUE(third.heard.empty());
    EXPECT_EQ(first.heard.size(), 1U);
}

TEST(HostWithoutPpd, MarksNothingAndNeverFails) {
    PanelHost host(PanelHostSetup{});
    const auto callback = host.makeCallback();
    Listener panel;
    host.addPanel(host.makeCallback(), &panel);
    callback->willChangePPDOptionKeyValue(kMirror, kOn);
    EXPECT_FALSE(host.changeFromOutside(kMirror, kOn));
    EXPECT_FALSE(host.unmark(kMirror));
    EXPECT_EQ(host.marked(kMirror), std::nullopt);
    EXPECT_TRUE(panel.heard.empty());
    EXPECT_EQ(host.takeChanges().size(), 1U);
}

TEST(HostSystemVersion, IsElevenUnlessTold) {
    struct Case {
        HostSystem system;
        std::int32_t version[3];
    };
    const std::uint32_t selectors[] = {kSystemVersionMajor, kSystemVersionMinor,
                                       kSystemVersionBugFix};
    EXPECT_EQ(kSystemVersionMajor, 0x73797331U) << "'sys1'";
    for (const Case& c :
         {Case{HostSystem(), {11, 0, 0}}, Case{HostSystem({10, 4, 9}), {10, 4, 9}}}) {
        for (int i = 0; i < 3; ++i) {
            std::int32_t value = -1;
            EXPECT_EQ(c.system.gestalt(selectors[i], &value), noErr);
            EXPECT_EQ(value, c.version[i]);
        }
        std::int32_t value = -1;
        EXPECT_NE(c.system.gestalt(0x73797334, &value), noErr);
        EXPECT_EQ(value, -1) << "untouched on failure";
    }
}

} // namespace
} // namespace labelcut::test
