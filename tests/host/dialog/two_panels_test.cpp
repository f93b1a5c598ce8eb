// Two plug-ins in one window: what one of them writes, the other and all pages show.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

#include "tests/host/dialog/dialog_fixtures.h"

namespace labelcut::test {

namespace {

/// The cut options' plug-in and the example of a third party's.
const PluginSearch& bothPlugins() {
    static const PluginSearch both = [] {
        PluginSearch search = plugins();
        const PluginSearch example = loadPlugins(QStringLiteral(LABELCUT_EXAMPLE_PANEL_DIR));
        search.loaded.insert(search.loaded.end(), example.loaded.begin(), example.loaded.end());
        return search;
    }();
    return both;
}

class TwoPanelsTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(bothPlugins().loaded.size(), 2U);
        DialogRequest request;
        request.files = {kLabels};
        request.ppdPath = printerWithQuality();
        mDialog = std::make_unique<PrintDialog>(request, bothPlugins(), hostSystem(), noService());
        mDialog->show();
        mDialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(mDialog.get()));
        settleWithPrinter(*mDialog);
        lookAtEveryPage(*mDialog);
    }
    /// The sample printer for tape with the option that the example's panel claims.
    QString printerWithQuality() const {
        return extendedPpd(mHome, "*OpenUI *PrintQuality/Print quality: PickOne\n"
                                  "*OrderDependency: 60 AnySetup *PrintQuality\n"
                                  "*DefaultPrintQuality: Fine\n"
                                  "*PrintQuality Draft/Draft: \"\"\n"
                                  "*PrintQuality Fine/Fine: \"\"\n"
                                  "*CloseUI: *PrintQuality\n");
    }
    std::string choice(const char* key) const {
        return mDialog->model().choice(QLatin1String(key)).value_or(QString()).toStdString();
    }
    int pageOf(const char* title) const {
        for (int i = 0; i < mDialog->tabs().count(); ++i) {
            if (mDialog->tabs().tabText(i) == QLatin1String(title))
                return i;
        }
        return -1;
    }
    void tick(const char* name) { click(*part<QCheckBox>(*mDialog, name)); }

    Offscreen mOffscreen;
    PrivateHome mHome;
    std::unique_ptr<PrintDialog> mDialog;
};

} // namespace

TEST_F(TwoPanelsTest, BothHaveAPageAndTheirEntriesInTheSummary) {
    ASSERT_GE(pageOf("Cut Options"), 0);
    ASSERT_GE(pageOf("Proof"), 0);
    EXPECT_FALSE(mDialog->findChild<QComboBox*>(QStringLiteral("choices-PrintQuality")))
        << "claimed, so not offered twice";
    std::vector<std::string> titles;
    for (const SummaryEntry& entry : panelSummary(mDialog->model()))
        titles.push_back(entry.title.toStdString());
    EXPECT_THAT(titles,
                testing::ElementsAre("Auto cut", "Half cut", "Special tape", "Chain printing",
                                     "Mirror printing", "Remove blank space", "Print quality"));
}

TEST_F(TwoPanelsTest, WhatOnePanelWritesTheOtherShowsAndTheJobCarries) {
    openTab(*mDialog, pageOf("Cut Options"));
    tick("mHalfCutChkBx");
    tick("mMirrorPrintChkBx");
    ASSERT_EQ(choice("KvMirror"), "ON");
    openTab(*mDialog, pageOf("Proof"));
    EXPECT_TRUE(part<QWidget>(*mDialog, "mirrorNote")->isVisible());
    click(*part<QPushButton>(*mDialog, "proof"));
    EXPECT_EQ(choice("PrintQuality"), "Draft");
    EXPECT_EQ(choice("KvMirror"), "OFF") << "the cut options must not write it back";
    EXPECT_EQ(choice("KvHalfCut"), "ON");
    EXPECT_FALSE(part<QWidget>(*mDialog, "mirrorNote")->isVisible());
    openTab(*mDialog, pageOf("Cut Options"));
    EXPECT_FALSE(part<QCheckBox>(*mDialog, "mMirrorPrintChkBx")->isChecked());
    EXPECT_TRUE(part<QCheckBox>(*mDialog, "mHalfCutChkBx")->isChecked());
    EXPECT_EQ(choice("KvMirror"), "OFF");
}

TEST_F(TwoPanelsTest, OneActOfAPanelIsOneStepBack) {
    openTab(*mDialog, pageOf("Proof"));
    click(*part<QPushButton>(*mDialog, "proof"));
    ASSERT_EQ(choice("PrintQuality"), "Draft");
    click(*part<QPushButton>(*mDialog, "undo"));
    EXPECT_EQ(choice("PrintQuality"), "Fine");
    EXPECT_EQ(part<QComboBox>(*mDialog, "quality")->currentData().toString().toStdString(), "Fine");
    EXPECT_FALSE(mDialog->model().canUndo());
}

} // namespace labelcut::test
