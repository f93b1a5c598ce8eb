// Tests of the principal object: the version test and the panels it makes.
#include "plugins/cut_options/object/principal_object.h"

#include <gtest/gtest.h>

#include "plugins/cut_options/options/option_pde.h"
#include "tests/plugins/cut_options/frame/fake_system.h"
#include "tests/support/fake_host.h"
#include "tests/support/ppd_builder.h"

namespace labelcut::test {
namespace {

const QString kPrinterModules = QStringLiteral("BDB091F4-E57F-11D3-B5CC-0050E4603277");

std::shared_ptr<ResourceBundle> makeBundle() {
    return std::make_shared<ResourceBundle>(QStringLiteral(LABELCUT_BUNDLE_DIR), QLocale::c());
}

class Principal : public testing::Test {
protected:
    Principal() { EXPECT_TRUE(plugin->initWithBundle(bundle)); }

    FakeSystem system{11, 0, 0};
    SystemInForce inForce{&system};
    std::shared_ptr<ResourceBundle> bundle = makeBundle();
    std::shared_ptr<FakeHost> host = std::make_shared<FakeHost>(PpdBuilder::tapePrinter().open());
    std::unique_ptr<KVSGRVOptions13PlugIn13_v400_> plugin =
        std::make_unique<KVSGRVOptions13PlugIn13_v400_>();
};

TEST(VersionTest, AsksForMajorMinorAndBugFixInThatOrder) {
    const FakeSystem system(11, 0, 0);
    const SystemInForce inForce(&system);
    systemIsLeopardOrLater();
    EXPECT_EQ(system.asked, (std::vector<std::uint32_t>{0x73797331, 0x73797332, 0x73797333}));
}

TEST(VersionTest, WithoutASystemTakesItForAnOldOne) {
    const SystemInForce inForce(nullptr);
    EXPECT_FALSE(systemIsLeopardOrLater());
}

TEST(VersionTest, TakesElevenAndMoreAndTenFromMinorFive) {
    struct Case {
        FakeSystem system;
        bool isLater;
    };
    const Case cases[] = {
        {{10, 4, 0}, false}, {{10, 4, 11}, false}, {{10, 5, 0}, true},  {{10, 15, 7}, true},
        {{11, 0, 0}, true},  {{11, 4, 0}, true},   {{12, 0, 0}, true},  {{10, 0, 0}, false},
        {{9, 9, 9}, false},  {{0, 5, 0}, false},   {{-1, 5, 0}, false}, {{10, -5, 0}, false},
    };
    for (const Case& c : cases) {
        const SystemInForce inForce(&c.system);
        EXPECT_EQ(systemIsLeopardOrLater(), c.isLater) << c.system.major << '.' << c.system.minor;
    }
}

// A query that fails leaves its part of 10.4.0.
TEST(VersionTest, TakesAFailingQueryForItsPartOfTenFour) {
    for (const std::int32_t major : {9, 10, 11, 12}) {
        for (const std::int32_t minor : {0, 4, 5, 6}) {
            for (int failing = 0; failing < 8; ++failing) {
                FakeSystem system(major, minor, 3);
                system.majorFails = (failing & 1) != 0;
                system.minorFails = (failing & 2) != 0;
                system.bugFixFails = (failing & 4) != 0;
                const std::int32_t knownMajor = system.majorFails ? 10 : major;
                const std::int32_t knownMinor = system.minorFails ? 4 : minor;
                const bool expected = knownMajor > 10 || (knownMajor == 10 && knownMinor >= 5);
                const SystemInForce inForce(&system);
                EXPECT_EQ(systemIsLeopardOrLater(), expected)
                    << major << '.' << minor << " failing " << failing;
                EXPECT_EQ(system.asked.size(), 3U) << "one failure does not stop the others";
            }
        }
    }
}

TEST_F(Principal, MakesOneCutOptionsPanelForPrinterModules) {
    PDEPanelArray* panels = plugin->PDEPanelsForType(kPrinterModules, host);
    ASSERT_TRUE(panels);
    ASSERT_EQ(panels->size(), 1U);
    auto* panel = dynamic_cast<OptionPDE13_v400_*>(panels->front().get());
    ASSERT_TRUE(panel);
    EXPECT_EQ(panel->panelName(),
              bundle->localizedStringForKey(QStringLiteral("OP_PANEL_NAME"), QString(), QString()));
    EXPECT_NE(panel->panelName(), QStringLiteral("OP_PANEL_NAME"));
    EXPECT_EQ(host->asked.front(), QStringLiteral("printSession")) << "built with this host";
}

TEST_F(Principal, GivesAnEmptyArrayForATypeThatDiffersInAnyCharacter) {
    QStringList types{QString(),
                      QStringLiteral(""),
                      kPrinterModules.toLower(),
                      kPrinterModules + QLatin1Char(' '),
                      QLatin1Char(' ') + kPrinterModules,
                      kPrinterModules.chopped(1),
                      kPrinterModules.sliced(1)};
    for (qsizetype i = 0; i < kPrinterModules.size(); ++i) {
        QString type = kPrinterModules;
        type[i] = type[i] == u'0' ? u'1' : u'0';
        types.append(type);
    }
    for (const QString& type : types) {
        const PDEPanelArray* panels = plugin->PDEPanelsForType(type, host);
        ASSERT_TRUE(panels) << type.toStdString();
        EXPECT_TRUE(panels->empty()) << type.toStdString();
    }
    EXPECT_TRUE(host->asked.isEmpty());
}

TEST_F(Principal, ReplacesTheFormerPanelsWithEveryRequest) {
    plugin->PDEPanelsForType(kPrinterModules, host);
    auto other = std::make_shared<FakeHost>();
    ASSERT_GT(host.use_count(), 1);

    PDEPanelArray* panels = plugin->PDEPanelsForType(kPrinterModules, other);
    EXPECT_EQ(host.use_count(), 1) << "the former panel is gone";
    ASSERT_TRUE(panels);
    EXPECT_EQ(panels->size(), 1U);

    plugin->PDEPanelsForType(QStringLiteral("another type"), host);
    EXPECT_EQ(other.use_count(), 1) << "whatever the type";
}

TEST_F(Principal, ReleasesItsPanelsAtTheEnd) {
    plugin->PDEPanelsForType(kPrinterModules, host);
    ASSERT_GT(host.use_count(), 1);
    plugin.reset();
    EXPECT_EQ(host.use_count(), 1);
}

TEST_F(Principal, BorrowsItsBundleAndLetsThePanelShareIt) {
    EXPECT_EQ(bundle.use_count(), 1) << "the principal object does not own it";
    plugin->PDEPanelsForType(kPrinterModules, host);
    EXPECT_EQ(bundle.use_count(), 2) << "the panel does";
}

TEST_F(Principal, MakesAPanelOfKeysWhenTheBundleIsGone) {
    bundle.reset();
    PDEPanelArray* panels = plugin->PDEPanelsForType(kPrinterModules, host);
    ASSERT_TRUE(panels);
    ASSERT_EQ(panels->size(), 1U);
    EXPECT_EQ(panels->front()->panelName(), QStringLiteral("OP_PANEL_NAME"));
    EXPECT_FALSE(panels->front()->panelView());
}

// The cut-options panel answers itself even when its base could not be built.
TEST_F(Principal, MakesAnEmptyPanelWithoutAHost) {
    PDEPanelArray* panels = plugin->PDEPanelsForType(kPrinterModules, nullptr);
    ASSERT_TRUE(panels);
    ASSERT_EQ(panels->size(), 1U);
    EXPECT_EQ(panels->front()->supportedPPDOptionKeys(), QStringList());
}

} // namespace
} // namespace labelcut::test
