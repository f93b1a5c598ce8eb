// Tests of a third party's panel that claims no keyword and uses the optional operations.
#include <QCheckBox>
#include <QSpinBox>

#include "tests/host/panels/core_fixtures.h"

namespace labelcut::test {
namespace {

class SecondExamplePanel : public testing::Test {
protected:
    SecondExamplePanel() {
        folder.copy(QStringLiteral(LABELCUT_SECOND_EXAMPLE_PANEL),
                    QStringLiteral("second_example_panel.so"));
        search = folder.load();
        host = hostOn(PpdBuilder::tapePrinter());
        set = std::make_unique<PanelSet>(*host, search.loaded, system);
        EXPECT_EQ(set->entries().size(), 1U);
        panel = set->entries().at(0).panel;
        view = panel->panelView();
        panel->willShow();
    }
    QCheckBox& watch() const { return *view->findChild<QCheckBox*>(QStringLiteral("watchSupply")); }
    QSpinBox& metres() const { return *view->findChild<QSpinBox*>(QStringLiteral("metresLeft")); }

    PluginFolder folder;
    PluginSearch search;
    HostSystem system;
    std::unique_ptr<PanelHost> host;
    std::unique_ptr<PanelSet> set;
    PDEPanel* panel = nullptr;
    QWidget* view = nullptr;
};

TEST_F(SecondExamplePanel, IsLoadedAndClaimsNoKeyword) {
    EXPECT_TRUE(search.refused.empty());
    EXPECT_TRUE(set->keywords().isEmpty());
    ASSERT_TRUE(view);
    EXPECT_EQ(panel->panelKind(), QStringLiteral("com.example.supply-panel.tape"));
    EXPECT_TRUE(panel->shouldHide());
}

TEST_F(SecondExamplePanel, HasHelpToShow) {
    EXPECT_TRUE(panel->shouldShowHelp());
    EXPECT_TRUE(panel->helpText().contains(QStringLiteral("\n\n"))) << "two paragraphs";
}

TEST_F(SecondExamplePanel, TellsTheHostThatItsViewGrowsAndShrinks) {
    const int low = view->height();
    EXPECT_EQ(host->takeResizes(), 0);
    watch().click();
    EXPECT_EQ(host->takeResizes(), 1);
    EXPECT_GT(view->height(), low);
    watch().click();
    EXPECT_EQ(host->takeResizes(), 1);
    EXPECT_EQ(view->height(), low);
}

TEST_F(SecondExamplePanel, RemarksOnWhatKeepsItFromPrinting) {
    EXPECT_TRUE(panel->remark().isEmpty());
    EXPECT_TRUE(panel->shouldPrint());
    watch().click();
    EXPECT_FALSE(panel->remark().isEmpty());
    EXPECT_FALSE(panel->shouldPrint());
    metres().setValue(8);
    EXPECT_TRUE(panel->remark().isEmpty());
    EXPECT_TRUE(panel->shouldPrint());
}

TEST_F(SecondExamplePanel, SummarisesInItsOwnWordsForYesAndNo) {
    const auto summary = [&] { return panel->summaryInfo().value(); };
    const QString title = QStringLiteral("Watch the tape supply");
    EXPECT_EQ(summary().value(title), panel->summaryWords().no);
    watch().click();
    metres().setValue(8);
    EXPECT_EQ(summary().value(title), panel->summaryWords().yes);
    EXPECT_EQ(summary().value(QStringLiteral("Metres left")), QStringLiteral("8"));
    EXPECT_EQ(summary().value(QLatin1String(kSummaryDisplayOrder)),
              (QStringList{title, QStringLiteral("Metres left")}));
}

TEST_F(SecondExamplePanel, KeepsItsStateInTheSession) {
    watch().click();
    metres().setValue(8);
    ASSERT_TRUE(panel->saveValuesAndReturnError(nullptr));
    watch().click();
    metres().setValue(3);
    ASSERT_TRUE(panel->restoreValuesAndReturnError(nullptr));
    EXPECT_TRUE(watch().isChecked());
    EXPECT_EQ(metres().value(), 8);
}

TEST_F(SecondExamplePanel, OutlivesItsView) {
    {
        QWidget window;
        view->setParent(&window);
    }
    EXPECT_TRUE(panel->remark().isEmpty());
    EXPECT_TRUE(panel->restoreValuesAndReturnError(nullptr));
    EXPECT_TRUE(panel->panelView());
}

} // namespace
} // namespace labelcut::test
