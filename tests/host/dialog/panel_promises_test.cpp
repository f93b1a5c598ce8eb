// What the extension interface promises panels, kept by the window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>

#include "tests/host/dialog/dialog_fixtures.h"
#include "tests/support/ppd_builder.h"

namespace labelcut::test {

using testing::HasSubstr;

namespace {

/// Ours, one that claims an option, and one that claims none.
const PluginSearch& threePlugins() {
    static const PluginSearch three = [] {
        PluginSearch search = plugins();
        for (const char* folder : {LABELCUT_EXAMPLE_PANEL_DIR, LABELCUT_SECOND_EXAMPLE_PANEL_DIR}) {
            const PluginSearch example = loadPlugins(QString::fromUtf8(folder));
            search.loaded.insert(search.loaded.end(), example.loaded.begin(), example.loaded.end());
        }
        return search;
    }();
    return three;
}

class PanelPromisesTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(threePlugins().loaded.size(), 3U);
        open(kTapePpd);
    }
    void open(const QString& ppd) {
        mDialog.reset();
        DialogRequest request;
        request.files = {kLabels};
        request.ppdPath = ppd;
        mDialog = std::make_unique<PrintDialog>(request, threePlugins(), hostSystem(), noService());
        mDialog->show();
        mDialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(mDialog.get()));
        settleWithPrinter(*mDialog);
    }
    std::vector<std::string> pages() const {
        std::vector<std::string> all;
        for (int i = 0; i < mDialog->tabs().count(); ++i)
            all.push_back(mDialog->tabs().tabText(i).toStdString());
        return all;
    }
    /// Brings the page to the front. @return it.
    QWidget& page(const char* title) const {
        const auto all = pages();
        const auto found = std::ranges::find(all, title);
        if (found == all.end())
            qFatal("there is no page \"%s\"", title);
        openTab(*mDialog, static_cast<int>(found - all.begin()));
        return *mDialog->tabs().currentWidget();
    }
    QWidget& supply() const { return page("Tape supply"); }
    void choosePpd(const QString& path) const {
        auto* printers = part<QComboBox>(*mDialog, "printers");
        for (int i = 0; i + 2 < printers->count(); ++i) {
            if (printers->itemText(i).contains(QFileInfo(path).fileName())) {
                choose(*printers, i);
                return;
            }
        }
        choose(*printers, printers->count() - 1);
        auto* chooser = mDialog->findChild<QFileDialog*>();
        ASSERT_TRUE(chooser);
        Q_EMIT chooser->fileSelected(path);
        chooser->reject();
        settle();
    }
    QString plainPpd() const {
        QFile ppd(mHome.path(QStringLiteral("plain.ppd")));
        EXPECT_TRUE(ppd.open(QIODevice::WriteOnly));
        ppd.write(PpdBuilder().size("Small", 100, 200).text());
        return ppd.fileName();
    }

    Offscreen mOffscreen;
    PrivateHome mHome;
    std::unique_ptr<PrintDialog> mDialog;
};

} // namespace

TEST_F(PanelPromisesTest, APanelThatClaimsOptionsIsShownOnlyWhereThePrinterHasOne) {
    // The sample has what the cut options claim, and lacks what the first example claims.
    EXPECT_THAT(pages(),
                testing::ElementsAre("Cut Options", "Tape supply", "Printer Features", "Summary"));
    open(plainPpd());
    EXPECT_THAT(pages(), testing::ElementsAre("Tape supply", "Printer Features", "Summary"));
}

TEST_F(PanelPromisesTest, APanelIsFoldedAwayAndUnfolded) {
    for (const char* title : {"Cut Options", "Tape supply"}) {
        QWidget& shown = page(title);
        auto* fold = part<QToolButton>(shown, "foldPanel");
        auto* area = shown.findChild<QScrollArea*>();
        EXPECT_TRUE(area->isVisible()) << "it starts unfolded";
        const QSize size = mDialog->size();
        click(*fold);
        EXPECT_FALSE(area->isVisible());
        EXPECT_EQ(mDialog->size(), size) << "the window does not jump";
        click(*fold);
        EXPECT_TRUE(area->isVisible());
        EXPECT_TRUE(area->widget()->isVisible());
    }
}

TEST_F(PanelPromisesTest, WhatIsFoldedAwayStaysSoWithTheNextPrinter) {
    click(*part<QToolButton>(page("Cut Options"), "foldPanel"));
    choosePpd(kRollPpd);
    EXPECT_FALSE(page("Cut Options").findChild<QScrollArea*>()->isVisible());
    EXPECT_TRUE(supply().findChild<QScrollArea*>()->isVisible()) << "another kind of panel";
    click(*part<QToolButton>(page("Cut Options"), "foldPanel"));
    choosePpd(kTapePpd);
    EXPECT_TRUE(page("Cut Options").findChild<QScrollArea*>()->isVisible());
}

TEST_F(PanelPromisesTest, HelpIsOfferedWhereThePanelHasSome) {
    EXPECT_FALSE(page("Cut Options").findChild<QToolButton*>(QStringLiteral("panelHelp")));
    auto* help = part<QToolButton>(supply(), "panelHelp");
    EXPECT_EQ(help->accessibleName().toStdString(), "Help on “Tape supply”");
    click(*help);
    click(*help);
    const auto windows = mDialog->findChildren<QDialog*>(QStringLiteral("panelHelpText"));
    ASSERT_EQ(windows.size(), 1) << "one, however often it is asked for";
    EXPECT_FALSE(windows.front()->isModal());
    EXPECT_THAT(windows.front()->findChild<QLabel*>()->text().toStdString(),
                HasSubstr("A label printer stops in the middle of a label when its tape ends.\n\n"
                          "Tick “Watch the tape supply”"));
    EXPECT_EQ(windows.front()->findChild<QLabel*>()->textFormat(), Qt::PlainText);
    click(*windows.front()->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Close));
    EXPECT_FALSE(mDialog->findChild<QDialog*>(QStringLiteral("panelHelpText")));
}

TEST_F(PanelPromisesTest, AViewThatGrowsIsGivenRoom) {
    QWidget& shown = supply();
    auto* area = shown.findChild<QScrollArea*>();
    const int before = area->minimumSizeHint().height();
    click(*part<QCheckBox>(shown, "watchSupply"));
    EXPECT_GT(area->minimumSizeHint().height(), before);
    EXPECT_GE(area->viewport()->height(), area->widget()->height());
    // The window as well, if it is too small for it: without what stands beside the panel, which
    // alone fills this screen.
    part<QWidget>(*mDialog, "labelsAndPrinter")->hide();
    click(*part<QCheckBox>(shown, "watchSupply"));
    mDialog->resize(1, 1);
    settle();
    const QSize small = mDialog->size();
    area->widget()->setMinimumHeight(area->widget()->height() + 400);
    area->widget()->resize(area->widget()->width(), area->widget()->minimumHeight());
    click(*part<QCheckBox>(shown, "watchSupply"));
    EXPECT_GT(mDialog->height(), small.height());
    EXPECT_LE(mDialog->frameGeometry().height(), mDialog->screen()->availableSize().height());
}

TEST_F(PanelPromisesTest, ARemarkStandsBelowTheViewAsAnAlertAndGoes) {
    QWidget& shown = supply();
    auto* remark = part<QWidget>(shown, "remark");
    EXPECT_FALSE(remark->isVisible());
    click(*part<QCheckBox>(shown, "watchSupply"));
    auto* metres = part<QSpinBox>(shown, "metresLeft");
    ASSERT_EQ(metres->value(), 0);
    EXPECT_TRUE(remark->isVisible());
    EXPECT_EQ(remark->findChild<QLabel*>()->text().toStdString(),
              "No tape is left: nothing will be printed.");
    EXPECT_GE(remark->mapTo(&shown, QPoint()).y(),
              shown.findChild<QScrollArea*>()->geometry().bottom());
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(remark);
    EXPECT_EQ(spoken->role(), QAccessible::AlertMessage);
    EXPECT_EQ(spoken->text(QAccessible::Name).toStdString(),
              "No tape is left: nothing will be printed.");
    metres->setFocus();
    QTest::keyClick(metres, Qt::Key_Up);
    settle();
    EXPECT_FALSE(remark->isVisible());
}

TEST_F(PanelPromisesTest, ARemarkOfAPageOutOfSightIsThereWhenItIsLookedAt) {
    QWidget& shown = supply();
    click(*part<QCheckBox>(shown, "watchSupply"));
    auto* metres = part<QSpinBox>(shown, "metresLeft");
    page("Summary");
    metres->setValue(7);
    mDialog->model().setCopies(2);
    settle();
    supply();
    EXPECT_FALSE(part<QWidget>(shown, "remark")->isVisible());
    EXPECT_EQ(metres->value(), 7);
}

} // namespace labelcut::test
