// Tests of two builds of the cut-options plug-in in one process: they live side by side.
#include <QCheckBox>
#include <QTest>

#include <typeinfo>

#include "host/panels/guarded_panel.h"
#include "tests/host/panels/two_builds.h"

namespace labelcut::test {
namespace {

QCheckBox& box(PDEPanel& panel, const char* name) {
    auto* found = panel.panelView()->findChild<QCheckBox*>(QLatin1String(name));
    EXPECT_TRUE(found) << name;
    return *found;
}

QString className(const QObject* object) {
    return object ? QLatin1String(object->metaObject()->className()) : QString();
}

class SideBySide : public testing::Test {
protected:
    SideBySide() {
        EXPECT_EQ(set.entries().size(), 2U);
        for (PDEPanel* panel : {first, second}) {
            EXPECT_TRUE(panel->panelView());
            panel->willShow();
            panel->restoreValuesAndReturnError(nullptr);
        }
        host->takeChanges();
    }
    TwoBuilds builds;
    HostSystem system;
    std::unique_ptr<PanelHost> host = hostOn(PpdBuilder::tapePrinter());
    PanelSet set{*host, builds.plugins(), system};
    PDEPanel* first = set.entries().at(0).panel;
    PDEPanel* second = set.entries().at(1).panel;
};

TEST_F(SideBySide, TheirClassesHaveDifferentNames) {
    const PDEPanel& firstPanel = dynamic_cast<const GuardedPanel&>(*first).unguarded();
    const PDEPanel& secondPanel = dynamic_cast<const GuardedPanel&>(*second).unguarded();
    EXPECT_TRUE(QByteArray(typeid(firstPanel).name()).contains("OptionPDE13_v400_"));
    EXPECT_TRUE(QByteArray(typeid(secondPanel).name()).contains("OptionPDE13_v401_"));
    const auto preview = [](PDEPanel& panel) {
        return panel.panelView()->findChild<QWidget*>(QStringLiteral("mOptionView"));
    };
    EXPECT_TRUE(preview(*first) && preview(*second));
    const auto& firstPreview = *preview(*first);
    const auto& secondPreview = *preview(*second);
    EXPECT_TRUE(QByteArray(typeid(firstPreview).name()).contains("OptionView13_v400_"));
    EXPECT_TRUE(QByteArray(typeid(secondPreview).name()).contains("OptionView13_v401_"));
    EXPECT_EQ(className(first->panelView()), QStringLiteral("QWidget"));
}

TEST_F(SideBySide, EachHasItsOwnResources) {
    EXPECT_EQ(builds.first().bundleRoot, QStringLiteral(":/labelcut/13_v400"));
    EXPECT_EQ(builds.second().bundleRoot, QStringLiteral(":/labelcut/13_v401"));
    for (const PanelSet::Entry& entry : set.entries()) {
        const QString interface = entry.bundle->pathForInterfaceFile(QStringLiteral("OptionPDE"));
        EXPECT_TRUE(QFile::exists(interface)) << interface.toStdString();
        EXPECT_NE(entry.panel->panelName(), QStringLiteral("OP_PANEL_NAME"));
    }
    EXPECT_TRUE(set.entries()[0]
                    .bundle->pathForInterfaceFile(QStringLiteral("OptionPDE"))
                    .startsWith(QLatin1String(":/labelcut/13_v400/")));
    EXPECT_TRUE(set.entries()[1]
                    .bundle->pathForInterfaceFile(QStringLiteral("OptionPDE"))
                    .startsWith(QLatin1String(":/labelcut/13_v401/")));
}

TEST_F(SideBySide, BothPanelsLiveAndHearOfEachOtherOnly) {
    box(*first, "mHalfCutChkBx").click();
    EXPECT_EQ(host->takeChanges(), (Settings{{QStringLiteral("KvHalfCut"), QStringLiteral("ON")}}));
    EXPECT_EQ(choice(*first, "mHalfCut_Selection"), QStringLiteral("ON"));
    EXPECT_EQ(choice(*second, "mHalfCut_Selection"), QStringLiteral("ON"));
    EXPECT_FALSE(box(*second, "mHalfCutChkBx").isChecked()) << "until it is refreshed";
    second->restoreValuesAndReturnError(nullptr);
    EXPECT_TRUE(box(*second, "mHalfCutChkBx").isChecked());

    box(*second, "mHalfCutChkBx").click();
    EXPECT_EQ(host->marked(QStringLiteral("KvHalfCut")), QStringLiteral("OFF"));
    EXPECT_EQ(choice(*first, "mHalfCut_Selection"), QStringLiteral("OFF"));
    EXPECT_TRUE(box(*first, "mHalfCutChkBx").isChecked());
}

// A panel that waits for the dialog to grow hears of its own view only, through its own centre.
TEST_F(SideBySide, EachWaitsAtItsOwnNotificationCentre) {
    const auto fresh = hostOn(PpdBuilder::tapePrinter());
    PanelSet panels(*fresh, builds.plugins(), system);
    ASSERT_EQ(panels.entries().size(), 2U);
    QWidget window;
    window.resize(600, 60);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    for (const PanelSet::Entry& entry : panels.entries())
        ASSERT_TRUE(entry.panel->panelView());
    ASSERT_EQ(fresh->takeResizes(), 0) << "both wait";

    for (const PanelSet::Entry& entry : panels.entries()) {
        entry.panel->panelView()->setParent(&window);
        entry.panel->panelView()->show();
        EXPECT_EQ(fresh->takeResizes(), 1);
        entry.panel->panelView()->resize(500, 500);
        EXPECT_EQ(fresh->takeResizes(), 0) << "once";
    }
}

TEST_F(SideBySide, OneGoesAndTheOtherStays) {
    {
        const auto other = hostOn(PpdBuilder::tapePrinter());
        const PanelSet gone(*other, {builds.second()}, system);
        ASSERT_EQ(gone.entries().size(), 1U);
        EXPECT_TRUE(gone.entries()[0].panel->panelView());
    }
    box(*first, "mMirrorPrintChkBx").click();
    EXPECT_EQ(host->marked(QStringLiteral("KvMirror")), QStringLiteral("ON"));
    EXPECT_TRUE(first->panelView()->grab().width() > 0);
    EXPECT_TRUE(second->panelView()->grab().width() > 0);
}

} // namespace
} // namespace labelcut::test
