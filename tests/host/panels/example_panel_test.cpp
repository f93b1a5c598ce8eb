// Tests of a third party's panel beside the cut-options panel on one host.
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include "tests/host/panels/core_fixtures.h"

namespace labelcut::test {
namespace {

template<typename Widget>
Widget& child(PDEPanel& panel, const char* name) {
    auto* found = panel.panelView()->findChild<Widget*>(QLatin1String(name));
    EXPECT_TRUE(found) << name;
    return *found;
}

QStringList heard(const PDEPanel& panel) {
    return panel.inspect().value(QStringLiteral("heard")).toStringList();
}

class ExamplePanel : public testing::Test {
protected:
    ExamplePanel() {
        folder.copy(QStringLiteral(LABELCUT_EXAMPLE_PANEL), QStringLiteral("example_panel.so"));
        folder.copy(QStringLiteral(LABELCUT_PLUGIN_DIR "/cut_options.so"),
                    QStringLiteral("cut_options.so"));
        search = folder.load();
        PpdBuilder builder = PpdBuilder::tapePrinter();
        builder.option("PrintQuality", "Quality", {"Draft/Quick", "Fine/Good"}, "Fine");
        host = hostOn(builder);
        set = std::make_unique<PanelSet>(*host, search.loaded, system);
        EXPECT_EQ(set->entries().size(), 2U);
        cutOptions = set->entries().at(0).panel;
        example = set->entries().at(1).panel;
        for (PDEPanel* panel : {cutOptions, example}) {
            EXPECT_TRUE(panel->panelView());
            panel->willShow();
            panel->restoreValuesAndReturnError(nullptr);
        }
        told = heard(*example).size();
        host->takeChanges();
    }
    /// What the example was told of since the panels were shown.
    QStringList news() const { return heard(*example).mid(told); }

    PluginFolder folder;
    PluginSearch search;
    HostSystem system;
    std::unique_ptr<PanelHost> host;
    std::unique_ptr<PanelSet> set;
    PDEPanel* cutOptions = nullptr;
    PDEPanel* example = nullptr;
    qsizetype told = 0;
};

TEST_F(ExamplePanel, IsLoadedFromItsSharedObject) {
    EXPECT_TRUE(search.refused.empty());
    ASSERT_EQ(search.loaded.size(), 2U);
    EXPECT_EQ(search.loaded[1].metadata.id, QStringLiteral("com.example.proof-panel"));
    EXPECT_EQ(example->panelName(), QStringLiteral("Proof"));
    EXPECT_NE(example->panelKind(), cutOptions->panelKind());
    EXPECT_EQ(set->keywords(),
              (QStringList{QStringLiteral("KvMirror"), QStringLiteral("KvAutoTapeCut"),
                           QStringLiteral("KvHalfCut"), QStringLiteral("KvChainPrint"),
                           QStringLiteral("KvSpecialTape"), QStringLiteral("KvRemoveBlkSpace"),
                           QStringLiteral("PrintQuality")}));
}

TEST_F(ExamplePanel, HearsOfTheOthersChangeAndNotOfItsOwn) {
    EXPECT_FALSE(child<QLabel>(*example, "mirrorNote").isVisibleTo(example->panelView()));
    child<QCheckBox>(*cutOptions, "mMirrorPrintChkBx").click();
    EXPECT_EQ(news(), QStringList{QStringLiteral("KvMirror=ON")});
    EXPECT_TRUE(child<QLabel>(*example, "mirrorNote").isVisibleTo(example->panelView()));

    child<QPushButton>(*example, "proof").click();
    EXPECT_EQ(host->takeChanges(),
              (Settings{{QStringLiteral("KvMirror"), QStringLiteral("ON")},
                        {QStringLiteral("PrintQuality"), QStringLiteral("Draft")},
                        {QStringLiteral("KvMirror"), QStringLiteral("OFF")}}));
    EXPECT_EQ(news().size(), 1) << "nothing of its own came back";
    EXPECT_FALSE(child<QLabel>(*example, "mirrorNote").isVisibleTo(example->panelView()));
    EXPECT_EQ(child<QComboBox>(*example, "quality").currentText(), QStringLiteral("Quick"));
}

TEST_F(ExamplePanel, IsHeardByTheCutOptionsPanelWhichDoesNotHearItself) {
    ASSERT_EQ(choice(*cutOptions, "mMirror_Selection"), QStringLiteral("OFF"));
    child<QCheckBox>(*cutOptions, "mMirrorPrintChkBx").click();
    ASSERT_EQ(choice(*cutOptions, "mMirror_Selection"), QStringLiteral("ON"));

    child<QPushButton>(*example, "proof").click();
    EXPECT_EQ(choice(*cutOptions, "mMirror_Selection"), QStringLiteral("OFF"))
        << "its selection follows the notice";
    EXPECT_TRUE(child<QCheckBox>(*cutOptions, "mMirrorPrintChkBx").isChecked())
        << "its controls follow when they are refreshed";
    cutOptions->restoreValuesAndReturnError(nullptr);
    EXPECT_FALSE(child<QCheckBox>(*cutOptions, "mMirrorPrintChkBx").isChecked());
}

TEST_F(ExamplePanel, AndTheCutOptionsPanelBothHearOfAChangeFromOutside) {
    ASSERT_TRUE(host->changeFromOutside(QStringLiteral("KvMirror"), QStringLiteral("ON")));
    EXPECT_EQ(choice(*cutOptions, "mMirror_Selection"), QStringLiteral("ON"));
    EXPECT_EQ(news(), QStringList{QStringLiteral("KvMirror=ON")});
}

TEST_F(ExamplePanel, SendsWhatTheUserPicks) {
    auto& quality = child<QComboBox>(*example, "quality");
    EXPECT_EQ(quality.currentText(), QStringLiteral("Good"));
    quality.setCurrentIndex(0);
    EXPECT_TRUE(host->takeChanges().empty());
    Q_EMIT quality.activated(0);
    EXPECT_EQ(host->marked(QStringLiteral("PrintQuality")), QStringLiteral("Draft"));
    const QVariantMap summary = example->summaryInfo().value();
    EXPECT_EQ(summary.value(QStringLiteral("Print quality")), QStringLiteral("Draft"));
    EXPECT_EQ(summary.value(QLatin1String(kSummaryDisplayOrder)),
              QStringList{QStringLiteral("Print quality")});
}

TEST_F(ExamplePanel, OutlivesItsViewAndTheHostsPpd) {
    {
        QWidget window;
        example->panelView()->setParent(&window);
    }
    example->willShow();
    EXPECT_TRUE(host->changeFromOutside(QStringLiteral("KvMirror"), QStringLiteral("ON")));
    EXPECT_TRUE(example->panelView());

    PanelHost withoutPpd(PanelHostSetup{});
    const PanelSet panels(withoutPpd, {search.loaded[1]}, system);
    ASSERT_EQ(panels.entries().size(), 1U);
    EXPECT_TRUE(panels.entries()[0].keys.isEmpty());
    EXPECT_TRUE(panels.entries()[0].panel->panelView());
    panels.entries()[0].panel->willShow();
}

} // namespace
} // namespace labelcut::test
