// The strip in the dialog's window: it follows every choice, and says what does not fit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QTest>

#include <memory>

#include "host/dialog/misfit_message.h"
#include "host/dialog/steady_label.h"
#include "host/dialog/strip_pane.h"
#include "tests/host/dialog/dialog_fixtures.h"
#include "tests/support/made_pdf.h"

namespace labelcut::test {

using testing::HasSubstr;

namespace {

const QString kSize = QStringLiteral("PageSize");
const QString kSquare = QStringLiteral("DC24"); ///< 24 × 24 mm; the sample's pages are 24 × 50 mm.

class StripPaneTest : public testing::Test {
protected:
    void open(const Settings& choices = {}) { mDialog = openDialog(kTapePpd, choices); }

    /// A document of the test's own. @param attributes  of its only page.
    void openPage(const QByteArray& attributes) {
        openFile(pdfOfPage(attributes, "0 0 20 20 re f"));
        turnUntil([&] { return model().pageCount() > 0; });
        settle();
    }
    void openFile(const QByteArray& contents) {
        QFile file(mHome.path(QStringLiteral("page.pdf")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
        file.close();
        DialogRequest request;
        request.files = {file.fileName()};
        request.ppdPath = kTapePpd;
        mDialog = openDialog(request);
    }

    JobModel& model() const { return mDialog->model(); }
    StripPane& pane() const { return *mDialog->findChild<StripPane*>(); }
    StripView& strip() const { return pane().strip(); }
    const JobPlan& plan() const { return *strip().plan(); }
    std::string figures() const { return pane().figures().text().toStdString(); }
    std::vector<int> pages() const {
        std::vector<int> all;
        for (std::int64_t i = 0; i < plan().labels(); ++i)
            all.push_back(plan().pageAt(i));
        return all;
    }
    std::string messages() const { return mDialog->messages().texts().join(u'\n').toStdString(); }
    bool saysMisfit() const { return mDialog->messages().shows(kMisfitMessage); }
    void press(const QString& way) const {
        QPushButton* button = offer(mDialog->messages(), way);
        ASSERT_NE(button, nullptr) << way.toStdString();
        click(*button);
    }
    QDialog* large() const { return mDialog->findChild<QDialog*>(QStringLiteral("largeLabel")); }
    void openLarge() const {
        strip().setFocus();
        QTest::keyClick(&strip(), Qt::Key_Return);
        settle();
        ASSERT_NE(large(), nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(large()));
    }

    Offscreen mOffscreen;
    PrivateHome mHome;
    std::unique_ptr<PrintDialog> mDialog;
};

TEST_F(StripPaneTest, FollowsAClickInThePanelAtOnce) {
    open();
    ASSERT_EQ(plan().labels(), kLabelCount);
    EXPECT_EQ(plan().cutAfter(3), PDECut::Full);
    EXPECT_THAT(figures(), HasSubstr("12 labels"));
    const std::string before = figures();
    click(*part<QCheckBox>(*mDialog, "mAutoCutChkBx"));
    EXPECT_EQ(plan().cutAfter(3), PDECut::None);
    EXPECT_NE(figures(), before);
    click(*part<QCheckBox>(*mDialog, "mMirrorPrintChkBx"));
    EXPECT_TRUE(plan().input().cuts->isMirrored);
    click(*part<QCheckBox>(*mDialog, "mHalfCutChkBx"));
    EXPECT_EQ(plan().cutAfter(3), PDECut::Half);
    model().undo();
    settle();
    EXPECT_EQ(plan().cutAfter(3), PDECut::None);
}

TEST_F(StripPaneTest, FollowsCopiesRangeAndOrder) {
    open();
    model().setPages(PageSelection(PageRange{2, 3}));
    model().setCopies(2);
    settle();
    EXPECT_EQ(pages(), (std::vector<int>{2, 3, 2, 3}));
    EXPECT_THAT(figures(), HasSubstr("4 labels"));
    model().setCollated(false);
    settle();
    EXPECT_EQ(pages(), (std::vector<int>{2, 2, 3, 3}));
    model().setReversed(true);
    settle();
    EXPECT_EQ(pages(), (std::vector<int>{3, 3, 2, 2}));
}

TEST_F(StripPaneTest, DrawsThePagesOfTheDocument) {
    open();
    ASSERT_TRUE(turnUntil([&] { return !pane().isDrawing(); }));
    const QImage shot = strip().grab().toImage();
    const QRect label = strip().rectOf(0).adjusted(3, 3, -3, -3);
    int dark = 0;
    for (int y = label.top(); y <= label.bottom(); ++y)
        for (int x = label.left(); x <= label.right(); ++x)
            dark += shot.pixelColor(x, y).lightness() < 100 ? 1 : 0;
    EXPECT_GT(dark, 50);
}

TEST_F(StripPaneTest, BlankPlacesStandForADocumentThatIsNotRead) {
    open();
    model().setDocument(nullptr);
    pane().refresh();
    EXPECT_FALSE(strip().isRead());
    ASSERT_TRUE(strip().plan().has_value());
    EXPECT_TRUE(strip().wishes().empty());
    QTest::mouseClick(&strip(), Qt::LeftButton, {}, strip().rectOf(0).center());
    settle();
    EXPECT_EQ(large(), nullptr);
}

TEST_F(StripPaneTest, ADamagedDocumentIsASentenceInALivingWindow) {
    for (const QByteArray& damaged :
         {QByteArray("%PDF-1.6\nnothing else"), QByteArray("%PDF-1.6\n%%EOF\n").repeated(50),
          pdfOf({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [] /Count 0 >>"})}) {
        openFile(damaged);
        ASSERT_TRUE(turnUntil([&] { return !messages().empty(); }));
        EXPECT_FALSE(strip().isRead());
        EXPECT_EQ(model().pageCount(), 0);
        EXPECT_FALSE(saysMisfit());
        EXPECT_TRUE(isUsable(strip()));
        click(*part<QCheckBox>(*mDialog, "mHalfCutChkBx"));
        EXPECT_EQ(strip().plan()->cutAfter(0), PDECut::Half);
    }
}

TEST_F(StripPaneTest, APageThatFitsIsNotSpokenOf) {
    open();
    EXPECT_FALSE(saysMisfit());
}

TEST_F(StripPaneTest, PagesThatDoNotFitAreNamedWithWaysOut) {
    open({{kSize, kSquare}});
    ASSERT_TRUE(saysMisfit());
    EXPECT_THAT(messages(), HasSubstr("The pages are 24 mm × 50 mm, the label is 24 mm × 24 mm."));
    for (const char* way : {"Use 24 mm × 50 mm", "Scale to fit", "Print at actual size"})
        EXPECT_NE(offer(mDialog->messages(), QString::fromUtf8(way)), nullptr) << way;
    // On a square label turning helps nobody.
    EXPECT_EQ(offer(mDialog->messages(), QStringLiteral("Turn")), nullptr);
}

TEST_F(StripPaneTest, TheLabelSizeOfThePagesIsAWayOut) {
    open({{kSize, kSquare}});
    press(QStringLiteral("Use 24"));
    EXPECT_EQ(model().choice(kSize), QStringLiteral("T24"));
    EXPECT_FALSE(saysMisfit());
    EXPECT_FALSE(plan().misfit().has_value());
    model().undo();
    settle();
    EXPECT_EQ(model().choice(kSize), kSquare);
    EXPECT_TRUE(saysMisfit());
}

TEST_F(StripPaneTest, ScalingIsAWayOut) {
    open({{kSize, kSquare}});
    press(QStringLiteral("Scale to fit"));
    EXPECT_EQ(model().fit(), worker::Fit::Scale);
    EXPECT_FALSE(saysMisfit());
    EXPECT_LT(plan().placeOf(1).scale, 0.5);
    EXPECT_FALSE(plan().placeOf(1).losesEdge);
    model().undo();
    settle();
    EXPECT_EQ(model().fit(), worker::Fit::Unchanged);
    EXPECT_TRUE(saysMisfit());
}

TEST_F(StripPaneTest, ToBeCutOffIsAWayOut) {
    open({{kSize, kSquare}});
    press(QStringLiteral("Print at actual size"));
    EXPECT_EQ(model().fit(), worker::Fit::Actual);
    EXPECT_FALSE(saysMisfit());
    EXPECT_TRUE(plan().placeOf(1).losesEdge);
    model().undo();
    settle();
    EXPECT_TRUE(saysMisfit());
}

TEST_F(StripPaneTest, APageThatIsWholeOnlyWhenTurnedIsTurnedUnasked) {
    // 46 × 21 mm on 24 × 48 mm.
    openPage("/MediaBox [0 0 130 60]");
    model().choose(kSize, QStringLiteral("AV24x48"));
    model().setFit(worker::Fit::Actual);
    settle();
    EXPECT_TRUE(plan().placeOf(1).losesEdge);
    model().setFit(worker::Fit::Unchanged);
    settle();
    EXPECT_TRUE(plan().placeOf(1).isTurned);
    EXPECT_FALSE(saysMisfit());
}

TEST_F(StripPaneTest, TurningIsAWayOutWhereLessIsLostThen) {
    openPage("/MediaBox [0 0 142 80]");
    ASSERT_TRUE(saysMisfit());
    const double before = plan().placeOf(1).lost.width;
    press(QStringLiteral("Turn"));
    EXPECT_EQ(model().fit(), worker::Fit::Turn);
    EXPECT_FALSE(saysMisfit());
    EXPECT_TRUE(plan().placeOf(1).isTurned);
    EXPECT_LT(plan().placeOf(1).lost.width, before / 2);
    EXPECT_EQ(plan().placeOf(1).lost.height, 0);
    model().undo();
    settle();
    EXPECT_EQ(model().fit(), worker::Fit::Unchanged);
    EXPECT_TRUE(saysMisfit());
}

/// No size is offered that is there already: what is so near is not spoken of.
TEST_F(StripPaneTest, APageThatIsHardlyTooWideIsNotSpokenOf) {
    openPage("/MediaBox [0 0 69.9 142]");
    EXPECT_FALSE(saysMisfit());
    openPage("/MediaBox [0 0 70 142]");
    ASSERT_TRUE(saysMisfit());
    press(QStringLiteral("Use"));
    EXPECT_FALSE(saysMisfit());
}

TEST_F(StripPaneTest, ALabelOpensLargeByReturnAndClosesByEscape) {
    open();
    openLarge();
    EXPECT_THAT(large()->windowTitle().toStdString(), HasSubstr("Label 1 of 12"));
    QTest::keyClick(large(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(large(), nullptr);
    EXPECT_TRUE(mDialog->isVisible());
}

TEST_F(StripPaneTest, AClickOpensALabelLargeAndAClickClosesIt) {
    open();
    QTest::mouseClick(&strip(), Qt::LeftButton, {}, strip().rectOf(1).center());
    settle();
    ASSERT_NE(large(), nullptr);
    EXPECT_THAT(large()->windowTitle().toStdString(), HasSubstr("Label 2 of 12"));
    QTest::mouseClick(large(), Qt::LeftButton);
    settle();
    EXPECT_EQ(large(), nullptr);
    EXPECT_TRUE(mDialog->isVisible());
}

TEST_F(StripPaneTest, ArrowsGoThroughLargeLabelsAsTheyLie) {
    open();
    for (const bool isReversed : {false, true}) {
        strip().setCurrent(0);
        openLarge();
        // Not before: every page that has been drawn says how the strip lies.
        strip().setReversed(isReversed);
        const Qt::Key next = isReversed ? Qt::Key_Left : Qt::Key_Right;
        const Qt::Key back = isReversed ? Qt::Key_Right : Qt::Key_Left;
        QTest::keyClick(large(), back);
        EXPECT_THAT(large()->windowTitle().toStdString(), HasSubstr("Label 1 of 12"));
        QTest::keyClick(large(), next);
        QTest::keyClick(large(), Qt::Key_Down);
        EXPECT_THAT(large()->windowTitle().toStdString(), HasSubstr("Label 3 of 12"));
        QTest::keyClick(large(), Qt::Key_Up);
        QTest::keyClick(large(), back);
        EXPECT_THAT(large()->windowTitle().toStdString(), HasSubstr("Label 1 of 12"));
        QTest::keyClick(large(), Qt::Key_Escape);
        settle();
    }
}

TEST_F(StripPaneTest, ALargeLabelClosesWhenItIsGone) {
    open();
    strip().setCurrent(5);
    openLarge();
    model().setPages(PageSelection(PageRange{1, 8}));
    settle();
    ASSERT_NE(large(), nullptr);
    EXPECT_THAT(large()->windowTitle().toStdString(), HasSubstr("Label 6 of 8"));
    model().setPages(PageSelection(PageRange{1, 2}));
    settle();
    EXPECT_EQ(large(), nullptr);
    strip().setCurrent(0);
    openLarge();
    model().setDocument(nullptr);
    pane().refresh();
    settle();
    EXPECT_EQ(large(), nullptr);
}

TEST_F(StripPaneTest, TheWindowMayGoWhileALabelIsLarge) {
    open();
    openLarge();
    const QPointer<QDialog> window = large();
    mDialog.reset();
    EXPECT_TRUE(window.isNull());
}

TEST_F(StripPaneTest, ALargeLabelIsWishedForInItsSizeAndTheStripsAfterIt) {
    open();
    ASSERT_TRUE(turnUntil([&] { return !pane().isDrawing(); }));
    openLarge();
    settle();
    EXPECT_FALSE(large()->grab().isNull());
    QTest::keyClick(large(), Qt::Key_Escape);
    settle();
    EXPECT_TRUE(turnUntil([&] { return !pane().isDrawing(); }));
}

} // namespace

} // namespace labelcut::test
