// Tests of the panel set: all plug-ins' panels on one host, the bad ones left out.
#include "host/panels/panel_host.h"

#include "tests/host/panels/core_fixtures.h"

namespace labelcut::test {
namespace {

const QString kMirror = QStringLiteral("KvMirror");
const QString kOn = QStringLiteral("ON");

void forgetCounts() {
    for (const char* what : {"heard", "saved", "restored", "askedToPrint", "panelsGone"})
        takeCount(what);
}

/// The good plug-in and one other, on a host.
struct TwoPlugins {
    explicit TwoPlugins(const char* other)
        : folder{"good", other} {
        forgetCounts();
        set = std::make_unique<PanelSet>(*host, folder.load().loaded, system);
    }
    PluginFolder folder;
    HostSystem system;
    std::unique_ptr<PanelHost> host = hostOn(PpdBuilder::tapePrinter());
    std::unique_ptr<PanelSet> set;
};

TEST(PanelSetTest, HoldsThePanelsOfEveryPlugin) {
    TwoPlugins two("forbids_printing");
    ASSERT_EQ(two.set->entries().size(), 4U);
    EXPECT_TRUE(two.set->refused().empty());
    EXPECT_EQ(two.set->entries()[0].panel->panelName(), QStringLiteral("forbids_printing"));
    EXPECT_EQ(two.set->entries()[2].panel->panelName(), QStringLiteral("good"));
    EXPECT_EQ(two.set->entries()[0].callback, two.set->entries()[1].callback);
    EXPECT_NE(two.set->entries()[0].callback, two.set->entries()[2].callback);
    EXPECT_TRUE(two.set->entries()[0].bundle);
}

TEST(PanelSetTest, ClaimsEachKeywordOnceAndOnlyWhatThePpdHas) {
    TwoPlugins two("forbids_printing");
    EXPECT_EQ(two.set->entries()[0].keys, (QStringList{kMirror, QStringLiteral("KvNobodyHas")}));
    EXPECT_EQ(two.set->keywords(), (QStringList{kMirror, QStringLiteral("KvHalfCut")}));

    TwoPlugins silent("says_no_keywords");
    EXPECT_EQ(silent.set->keywords(), (QStringList{kMirror, QStringLiteral("KvHalfCut")}));
    EXPECT_TRUE(silent.set->entries()[2].keys.isEmpty());

    PanelHost withoutPpd(PanelHostSetup{});
    const PanelSet set(withoutPpd, two.folder.load().loaded, two.system);
    EXPECT_TRUE(set.keywords().isEmpty());
}

TEST(PanelSetTest, PassesOnWhatAPanelSaysOfItself) {
    TwoPlugins two("says_no_keywords");
    PDEPanel& good = *two.set->entries()[0].panel;
    EXPECT_EQ(good.panelKind(), QStringLiteral("org.labelcut.test"));
    EXPECT_EQ(good.supportedPPDOptionKeys(), two.set->entries()[0].keys);
    EXPECT_FALSE(two.set->entries()[2].panel->supportedPPDOptionKeys());
}

struct LeftOut {
    const char* plugin;
    const char* reason;
};

TEST(PanelSetTest, LeavesOutAPluginThatRefusesOrThrowsWithItsReason) {
    const LeftOut all[] = {
        {"refuses", "it does not serve on this system"},
        {"has_no_principal", "it does not serve on this system"},
        {"gives_nothing", "it could not create its panels"},
        {"throws_creating", "no panels today"},
        {"throws_on_bundle", "it failed while creating its panels"},
        {"throws_asked", "no keywords today"},
    };
    for (const LeftOut& c : all) {
        TwoPlugins two(c.plugin);
        ASSERT_EQ(two.set->refused().size(), 1U) << c.plugin;
        const RefusedPlugin& refused = two.set->refused().front();
        EXPECT_EQ(refused.file,
                  two.folder.filePath(QLatin1String(c.plugin) + QLatin1String(".so")));
        EXPECT_EQ(refused.reason, QLatin1String(c.reason));
        ASSERT_EQ(two.set->entries().size(), 2U) << c.plugin;
        EXPECT_EQ(two.set->entries()[0].panel->panelName(), QStringLiteral("good"));

        two.host->changeFromOutside(kMirror, kOn);
        EXPECT_EQ(takeCount("heard"), 2) << c.plugin << ": only the good plug-in's panels listen";
    }
}

TEST(PanelSetTest, TakesPluginsThatOfferNoPanelsOrHoles) {
    TwoPlugins none("offers_none");
    EXPECT_TRUE(none.set->refused().empty());
    EXPECT_EQ(none.set->entries().size(), 2U);

    TwoPlugins hole("has_a_hole");
    EXPECT_TRUE(hole.set->refused().empty());
    ASSERT_EQ(hole.set->entries().size(), 4U);
    for (const PanelSet::Entry& entry : hole.set->entries())
        EXPECT_TRUE(entry.panel);
}

TEST(PanelSetTest, AsksEveryPanelToSaveAndToRestore) {
    TwoPlugins two("forbids_printing");
    two.set->save();
    EXPECT_EQ(takeCount("saved"), 4);
    two.set->restore();
    EXPECT_EQ(takeCount("restored"), 4);
    EXPECT_EQ(takeCount("saved"), 0);
}

TEST(PanelSetTest, PrintsOnlyWhenEveryPanelLetsItAndAsksThemAll) {
    EXPECT_TRUE(TwoPlugins("offers_none").set->shouldPrint());
    forgetCounts();
    TwoPlugins two("forbids_printing");
    EXPECT_FALSE(two.set->shouldPrint());
    EXPECT_EQ(takeCount("askedToPrint"), 4);

    PanelHost host(PanelHostSetup{});
    EXPECT_TRUE(PanelSet(host, {}, two.system).shouldPrint());
}

struct InUse {
    const char* plugin;
    const char* reason;
};

TEST(PanelSetTest, GoesOnWithHarmlessAnswersWhereAPanelThrowsInUse) {
    const InUse all[] = {{"throws_in_use", "broken in use"},
                         {"throws_numbers_in_use", "it gave no reason"}};
    for (const InUse& c : all) {
        TwoPlugins two(c.plugin);
        QStringList told;
        two.host->onTrouble([&](const QString& sentence) { told += sentence; });
        ASSERT_TRUE(two.set->refused().empty()) << c.plugin;
        PDEPanel& panel = *two.set->entries()[2].panel;
        EXPECT_EQ(panel.panelName(), QLatin1String(c.plugin));

        EXPECT_EQ(panel.panelView(), nullptr);
        EXPECT_FALSE(panel.shouldHide());
        EXPECT_TRUE(panel.shouldPrint());
        EXPECT_FALSE(panel.shouldShowHelp());
        EXPECT_FALSE(panel.saveValuesAndReturnError(nullptr));
        EXPECT_FALSE(panel.restoreValuesAndReturnError(nullptr));
        EXPECT_FALSE(panel.summaryInfo());
        EXPECT_TRUE(panel.inspect().isEmpty());
        panel.willShow();
        panel.printWindowWillClose(true);
        two.host->changeFromOutside(kMirror, kOn);
        EXPECT_EQ(two.host->marked(kMirror), kOn);
        EXPECT_EQ(told,
                  QStringList(
                      QStringLiteral("The panel of the plug-in “%1” failed: %2. What was "
                                     "chosen before stays chosen; check the summary before "
                                     "you print, and install the plug-in anew.")
                          .arg(two.folder.filePath(QLatin1String(c.plugin) + QLatin1String(".so")),
                               QLatin1String(c.reason))))
            << "once, however often it fails";
        EXPECT_TRUE(two.set->shouldPrint());
    }
}

TEST(PanelSetTest, PassesOnWhyAPanelCannotSave) {
    TwoPlugins two("cannot_save");
    QStringList told;
    two.host->onTrouble([&](const QString& sentence) { told += sentence; });
    two.set->save();
    two.set->restore();
    const QString reason = QStringLiteral("The tape is stuck in the panel.");
    EXPECT_EQ(told, QStringList(reason)) << "once, however often and by how many panels";
    QString own;
    EXPECT_FALSE(two.set->entries()[0].panel->saveValuesAndReturnError(&own));
    EXPECT_EQ(own, reason) << "to a caller who wants to know himself";
    EXPECT_EQ(told.size(), 1);
}

TEST(PanelSetTest, TakesItsPanelsWithIt) {
    TwoPlugins two("forbids_printing");
    two.set.reset();
    EXPECT_EQ(takeCount("panelsGone"), 4);
    two.host->changeFromOutside(kMirror, kOn);
    EXPECT_EQ(takeCount("heard"), 0);
}

} // namespace
} // namespace labelcut::test
