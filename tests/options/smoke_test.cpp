// Tests of the cut-options panel: both natural printers from opening to a click.
#include <gtest/gtest.h>

#include <QCheckBox>

#include "tests/support/panel_under_test.h"

namespace labelcut::test {
namespace {

TEST(HalfCutClick, SendsOnAndMovesPopUpToMatchingEntry)
{
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    PanelUnderTest& panel = setting.show();
    ASSERT_EQ(panel.mOptionPopUpButton.selectedTag(), 8);

    qobject_cast<QCheckBox*>(panel.mHalfCutChkBx.widget())->click();

    EXPECT_EQ(setting.host->takeSent(), (std::vector<Sent>{{"KvHalfCut", "ON"}}));
    EXPECT_EQ(panel.mHalfCutChkBx.state(), 1);
    EXPECT_EQ(panel.mOptionPopUpButton.selectedTag(), 10);
    EXPECT_EQ(panel.mOptionView->targetImageName(), QStringLiteral("AHCMOnOnOffOff"));
}

TEST(RollPanel, ShowsItsRowsAndCountsFromTheDefault)
{
    PanelOnHost setting(PpdBuilder::rollPrinter().open());
    PanelUnderTest& panel = setting.show();

    EXPECT_FALSE(panel.mCutEveryChkBx.isHidden());
    EXPECT_TRUE(panel.mHalfCutChkBx.isHidden());
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("1"));
    EXPECT_EQ(panel.mOptionPopUpButton.selectedTag(), 3);
}

} // namespace
} // namespace labelcut::test
