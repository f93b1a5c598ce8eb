// The dialog's model: one truth, whoever changes it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLocale>

#include <ctime>
#include <functional>

#include "host/dialog/job_description.h"
#include "host/dialog/job_model.h"
#include "tests/host/dialog/dialog_fixtures.h"
#include "tests/support/conflicting_lines.h"

namespace labelcut::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const QString kHalfCut = QStringLiteral("KvHalfCut");
const QString kSpecialTape = QStringLiteral("KvSpecialTape");
const QString kAutoCut = QStringLiteral("KvAutoTapeCut");
const QString kMirror = QStringLiteral("KvMirror");
const QString kQuality = QStringLiteral("Quality");
const QString kPageSize = QStringLiteral("PageSize");
const QString kOn = QStringLiteral("ON");
const QString kOff = QStringLiteral("OFF");
const QString kDensity = QStringLiteral("Density");
const QString kDark = QStringLiteral("Dark");
const QString kBest = QStringLiteral("Best");
/// So many that the search for a way out goes to its limit when all are on.
constexpr int kSwitches = 120;

/// Nanoseconds that this thread computes during the call, however busy the machine is.
qint64 threadTimeOf(const std::function<void()>& call) {
    const auto now = [] {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return qint64{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
    };
    const qint64 before = now();
    call();
    return now() - before;
}

class JobModelTest : public testing::Test {
protected:
    JobModelTest() {
        QObject::connect(&mModel, &JobModel::told, [this](const QString& sentence) {
            mTold.push_back(sentence.toStdString());
        });
        QObject::connect(&mModel, &JobModel::changed, [this] { ++mChanges; });
    }
    void open(const QString& path, const Settings& wanted = {}) {
        mModel.adopt(openedPpd(path, wanted));
    }
    /// The user has acted in the panel, and the event loop is back.
    void act() {
        mModel.noteAct(*mModel.panels().front().callback);
        mModel.followActs();
    }
    /// The way the window does it: the panel's view enters it.
    QWidget& showPanel() {
        QWidget* view = mModel.showPanel(mModel.panels().front());
        if (!view)
            qFatal("the panel has no view");
        return *view;
    }
    /// A printer on which the search for a way out goes to its limit, and what makes it do so.
    QString longSearchPpd() const { return extendedPpd(mHome, longSearch(kSwitches)); }
    static Settings allOn() {
        Settings all;
        for (int i = 0; i < kSwitches; ++i)
            all.push_back({QStringLiteral("O%1").arg(i), kOn});
        return all;
    }
    void openWithLongSearch() { open(longSearchPpd(), allOn()); }
    /// A search for a way out, and the wait for its end.
    void searchFix() {
        mModel.searchFix();
        ASSERT_TRUE(turnUntil([this] { return !mModel.isSearchingFix(); }));
    }
    std::string choice(const QString& key) const {
        return mModel.choice(key).value_or(QStringLiteral("(none)")).toStdString();
    }
    std::string valueOf(const char* title) const {
        for (const SummaryEntry& entry : panelSummary(mModel)) {
            if (entry.title == QLatin1String(title))
                return entry.value.toStdString();
        }
        return "(absent)";
    }

    PrivateHome mHome;
    JobModel mModel;
    std::vector<std::string> mTold;
    int mChanges = 0;
};

} // namespace

TEST_F(JobModelTest, WithoutAPrinterEverythingIsEmptyAndNothingFails) {
    EXPECT_FALSE(mModel.hasPrinter());
    EXPECT_EQ(mModel.ppd(), nullptr);
    EXPECT_TRUE(mModel.marks().empty());
    EXPECT_TRUE(mModel.panels().empty());
    EXPECT_TRUE(panelSummary(mModel).empty());
    EXPECT_TRUE(mModel.jobSettings().empty());
    EXPECT_TRUE(mModel.conflicts().empty());
    EXPECT_FALSE(mModel.proposedFix());
    EXPECT_TRUE(mModel.conflictSentence().isEmpty());
    EXPECT_FALSE(mModel.choose(kHalfCut, kOn));
    EXPECT_TRUE(mModel.chooseAll({{kHalfCut, kOn}}).isEmpty());
    mModel.undo();
    mModel.resetToDefaults();
    mModel.applyFix();
    mModel.save();
    mModel.followActs();
    mModel.close(false);
    EXPECT_FALSE(mModel.shouldPrint());
    EXPECT_TRUE(jobSentence(mModel).isEmpty());
}

TEST_F(JobModelTest, OpeningMarksTheDefaultsAndWhatIsWanted) {
    open(kTapePpd, {{kHalfCut, kOn}, {kQuality, QStringLiteral("Best")}});
    EXPECT_EQ(choice(kHalfCut), "ON");
    EXPECT_EQ(choice(kQuality), "Best");
    EXPECT_EQ(choice(kAutoCut), "ON");
    EXPECT_EQ(mModel.defaultChoice(kHalfCut), kOff);
    EXPECT_EQ(mModel.changedMarks(),
              (Settings{{kHalfCut, kOn}, {kQuality, QStringLiteral("Best")}}));
    EXPECT_THAT(mTold, IsEmpty());
    EXPECT_FALSE(mModel.canUndo());
}

TEST_F(JobModelTest, WhatThePrinterLacksIsTold) {
    open(kTapePpd, {{QStringLiteral("Nonsense"), kOn}, {kHalfCut, QStringLiteral("MAYBE")}});
    EXPECT_EQ(choice(kHalfCut), "OFF");
    EXPECT_THAT(mTold, ElementsAre(HasSubstr("Nonsense"), HasSubstr("MAYBE")));
}

TEST_F(JobModelTest, ShowingAPanelKeepsWhatWasWanted) {
    open(kTapePpd, {{kHalfCut, kOn}, {kAutoCut, kOff}});
    QWidget& view = showPanel();
    EXPECT_EQ(choice(kHalfCut), "ON");
    EXPECT_EQ(choice(kAutoCut), "OFF");
    EXPECT_TRUE(part<QCheckBox>(view, "mHalfCutChkBx")->isChecked());
    EXPECT_FALSE(part<QCheckBox>(view, "mAutoCutChkBx")->isChecked());
    EXPECT_EQ(valueOf("Half cut"), "Yes");
    EXPECT_THAT(mTold, IsEmpty());
    EXPECT_FALSE(mModel.canUndo());
}

TEST_F(JobModelTest, MirrorIsKeptByAShowing) {
    open(kTapePpd, {{kMirror, kOn}});
    QWidget& view = showPanel();
    EXPECT_EQ(choice(kMirror), "ON");
    EXPECT_TRUE(part<QCheckBox>(view, "mMirrorPrintChkBx")->isChecked());
    EXPECT_EQ(valueOf("Mirror printing"), "Yes");
    EXPECT_THAT(mTold, IsEmpty());
}

TEST_F(JobModelTest, UndoTakesBackOneActAndKeepsMirror) {
    open(kTapePpd);
    QWidget& view = showPanel();
    part<QCheckBox>(view, "mMirrorPrintChkBx")->click();
    act();
    part<QCheckBox>(view, "mRemoveBlkSpaceChkBx")->click();
    act();
    mModel.undo();
    EXPECT_EQ(choice(kMirror), "ON");
    EXPECT_TRUE(part<QCheckBox>(view, "mMirrorPrintChkBx")->isChecked());
    EXPECT_EQ(choice(QStringLiteral("KvRemoveBlkSpace")), "OFF");
    EXPECT_THAT(mTold, IsEmpty());
    mModel.undo();
    EXPECT_EQ(choice(kMirror), "OFF");
    EXPECT_FALSE(mModel.canUndo());
}

TEST_F(JobModelTest, EveryCombinationThatAPresetWantsArrivesInThePanel) {
    open(kTapePpd);
    QWidget& view = showPanel();
    const std::pair<const char*, QString> boxes[] = {
        {"mAutoCutChkBx", kAutoCut},
        {"mHalfCutChkBx", kHalfCut},
        {"mChainPrintChkBx", QStringLiteral("KvChainPrint")},
        {"mMirrorPrintChkBx", kMirror},
        {"mRemoveBlkSpaceChkBx", QStringLiteral("KvRemoveBlkSpace")},
    };
    for (unsigned bits = 0; bits < 32; ++bits) {
        Settings wanted;
        for (unsigned i = 0; i < 5; ++i)
            wanted.push_back({boxes[i].second, (bits >> i & 1) != 0 ? kOn : kOff});
        EXPECT_TRUE(mModel.chooseAll(wanted).isEmpty()) << bits;
        for (unsigned i = 0; i < 5; ++i) {
            EXPECT_EQ(choice(boxes[i].second), wanted[i].choice.toStdString()) << bits;
            EXPECT_EQ(part<QCheckBox>(view, boxes[i].first)->isChecked(), wanted[i].choice == kOn)
                << boxes[i].first << ' ' << bits;
        }
    }
}

TEST_F(JobModelTest, SeveralActsInOneTurnAreFollowedOnce) {
    open(kTapePpd);
    QWidget& view = showPanel();
    mChanges = 0;
    part<QCheckBox>(view, "mHalfCutChkBx")->click();
    part<QCheckBox>(view, "mMirrorPrintChkBx")->click();
    settle();
    EXPECT_EQ(mChanges, 1);
    EXPECT_EQ(choice(kHalfCut), "ON");
    EXPECT_EQ(choice(kMirror), "ON");
}

TEST_F(JobModelTest, MirrorIsKeptByThePanelsOwnActs) {
    open(kTapePpd);
    QWidget& view = showPanel();
    part<QCheckBox>(view, "mMirrorPrintChkBx")->click();
    act();
    part<QCheckBox>(view, "mHalfCutChkBx")->click();
    act();
    EXPECT_EQ(choice(kMirror), "ON");
    EXPECT_EQ(choice(kHalfCut), "ON");
    EXPECT_THAT(mTold, IsEmpty());
}

TEST_F(JobModelTest, APanelsActCanBeUndone) {
    open(kTapePpd);
    QWidget& view = showPanel();
    const Settings before = mModel.marks();
    part<QCheckBox>(view, "mHalfCutChkBx")->click();
    act();
    ASSERT_TRUE(mModel.canUndo());
    mModel.undo();
    EXPECT_EQ(mModel.marks(), before);
    EXPECT_FALSE(part<QCheckBox>(view, "mHalfCutChkBx")->isChecked());
    EXPECT_FALSE(mModel.canUndo());
}

TEST_F(JobModelTest, SpecialTapeIsWrittenWithWhatItExcludes) {
    open(kTapePpd);
    QWidget& view = showPanel();
    part<QCheckBox>(view, "mSpecialTapeChkBx")->click();
    act();
    EXPECT_EQ(choice(kSpecialTape), "ON");
    EXPECT_EQ(choice(kAutoCut), "OFF");
    EXPECT_TRUE(part<QCheckBox>(view, "mAutoCutChkBx")->isChecked()) << "the tick is kept";
    EXPECT_TRUE(mModel.conflicts().empty());
    mModel.undo();
    EXPECT_EQ(choice(kAutoCut), "ON");
}

TEST_F(JobModelTest, AChoiceOutsideThePanelsCanBeUndoneStepByStep) {
    open(kTapePpd);
    showPanel();
    EXPECT_TRUE(mModel.choose(kQuality, QStringLiteral("Best")));
    EXPECT_TRUE(mModel.choose(kQuality, QStringLiteral("Draft")));
    EXPECT_TRUE(mModel.choose(kQuality, QStringLiteral("Draft"))) << "no step";
    EXPECT_FALSE(mModel.choose(kQuality, QStringLiteral("Nonsense")));
    mModel.undo();
    EXPECT_EQ(choice(kQuality), "Best");
    mModel.undo();
    EXPECT_EQ(choice(kQuality), "Normal");
    EXPECT_FALSE(mModel.canUndo());
}

TEST_F(JobModelTest, OfManyStepsTheOldestAreForgotten) {
    open(kTapePpd);
    for (int i = 1; i <= 103; ++i) {
        mModel.setCopies(i);
        mModel.choose(kQuality, i % 2 ? QStringLiteral("Best") : QStringLiteral("Draft"));
    }
    int steps = 0;
    for (; mModel.canUndo(); ++steps)
        mModel.undo();
    EXPECT_EQ(steps, 100);
    EXPECT_EQ(mModel.copies(), 53);
    EXPECT_EQ(choice(kQuality), "Best") << "not the beginning";
}

TEST_F(JobModelTest, AnOptionThatHadNoChoiceHasNoneAgainAfterUndo) {
    open(extendedPpd(mHome, "*OpenUI *Cover/Cover: PickOne\n"
                            "*Cover Red/Red: \"\"\n"
                            "*Cover Blue/Blue: \"\"\n"
                            "*CloseUI: *Cover\n"));
    const QString cover = QStringLiteral("Cover");
    ASSERT_EQ(choice(cover), "(none)");
    ASSERT_TRUE(mModel.choose(cover, QStringLiteral("Red")));
    mModel.undo();
    EXPECT_EQ(choice(cover), "(none)");
    ASSERT_TRUE(mModel.choose(cover, QStringLiteral("Blue")));
    mModel.resetToDefaults();
    EXPECT_EQ(choice(cover), "(none)");
}

TEST_F(JobModelTest, OptionsOfGroupsWithinGroupsAreChoicesLikeAnyOther) {
    open(extendedPpd(mHome, "*OpenGroup: Outer/Outer\n"
                            "*OpenSubGroup: Inner/Inner\n"
                            "*OpenUI *Cover/Cover: PickOne\n"
                            "*DefaultCover: Red\n"
                            "*Cover Red/Red: \"\"\n"
                            "*Cover Blue/Blue: \"\"\n"
                            "*CloseUI: *Cover\n"
                            "*CloseSubGroup: Inner\n"
                            "*CloseGroup: Outer\n"));
    EXPECT_EQ(choice(QStringLiteral("Cover")), "Red");
    EXPECT_EQ(choiceFor(mModel.marks(), QStringLiteral("Cover")).value_or(QString()).toStdString(),
              "Red");
}

TEST_F(JobModelTest, WhatAPanelMakesOfTheDefaultsIsTold) {
    QFile sample(kTapePpd);
    ASSERT_TRUE(sample.open(QIODevice::ReadOnly));
    QByteArray text = sample.readAll();
    text.replace("*DefaultKvSpecialTape: OFF", "*DefaultKvSpecialTape: ON");
    text.replace("*DefaultKvHalfCut: OFF", "*DefaultKvHalfCut: ON");
    QFile changed(mHome.path(QStringLiteral("special.ppd")));
    ASSERT_TRUE(changed.open(QIODevice::WriteOnly));
    changed.write(text);
    changed.close();
    open(changed.fileName());
    showPanel();
    mTold.clear();
    mModel.resetToDefaults();
    EXPECT_THAT(mTold, ElementsAre(HasSubstr("Auto cut"), HasSubstr("Half cut")));
    EXPECT_EQ(choice(kSpecialTape), "ON");
    EXPECT_EQ(choice(kHalfCut), "OFF");
}

TEST_F(JobModelTest, SeveralChoicesAreOneStep) {
    open(kTapePpd);
    QWidget& view = showPanel();
    const QStringList lacking = mModel.chooseAll(
        {{kHalfCut, kOn}, {kQuality, QStringLiteral("Best")}, {QStringLiteral("Nonsense"), kOn}});
    ASSERT_EQ(lacking.size(), 1);
    EXPECT_TRUE(lacking.front().contains(QStringLiteral("Nonsense")));
    EXPECT_TRUE(part<QCheckBox>(view, "mHalfCutChkBx")->isChecked());
    mModel.undo();
    EXPECT_TRUE(mModel.changedMarks().empty());
    EXPECT_FALSE(part<QCheckBox>(view, "mHalfCutChkBx")->isChecked());
}

TEST_F(JobModelTest, ChoicesThatAreInForceAlreadyAreNoStep) {
    open(kTapePpd);
    mModel.chooseAll({{kHalfCut, kOff}});
    mModel.resetToDefaults();
    EXPECT_FALSE(mModel.canUndo());
}

TEST_F(JobModelTest, ResettingGoesBackToThePrintersDefaultsAndCanBeUndone) {
    open(kTapePpd, {{kHalfCut, kOn}, {kQuality, QStringLiteral("Best")}});
    showPanel();
    mModel.resetToDefaults();
    EXPECT_TRUE(mModel.changedMarks().empty());
    mModel.undo();
    EXPECT_EQ(choice(kHalfCut), "ON");
    EXPECT_EQ(choice(kQuality), "Best");
}

TEST_F(JobModelTest, FixedPaperSwitchesRemoveBlankSpaceOff) {
    open(kTapePpd);
    QWidget& view = showPanel();
    auto* box = part<QCheckBox>(view, "mRemoveBlkSpaceChkBx");
    EXPECT_TRUE(box->isEnabled());
    for (const char* paper : {"DC24", "AV24x48"}) {
        mModel.choose(kPageSize, QLatin1String(paper));
        EXPECT_FALSE(box->isEnabled()) << paper;
        EXPECT_EQ(valueOf("Remove blank space"), "(absent)") << paper;
        mModel.choose(kPageSize, QStringLiteral("T12"));
        EXPECT_TRUE(box->isEnabled()) << paper;
        EXPECT_EQ(valueOf("Remove blank space"), "No") << paper;
    }
}

TEST_F(JobModelTest, ACustomPaperIsAChoiceLikeAnyOther) {
    open(kTapePpd);
    showPanel();
    EXPECT_TRUE(mModel.choose(kPageSize, QStringLiteral("Custom.60x300")));
    EXPECT_EQ(choice(kPageSize), "Custom.60x300");
    EXPECT_TRUE(labelcutCommand(mModel).contains(QStringLiteral("--page-size Custom.60x300")));
    const QLocale before;
    QLocale::setDefault(QLocale(QStringLiteral("en_GB")));
    EXPECT_THAT(jobSentence(mModel).toStdString(), HasSubstr("Labels on 21 mm × 106 mm, "));
    QLocale::setDefault(before);
    mModel.undo();
    EXPECT_EQ(choice(kPageSize), "T24");
}

TEST_F(JobModelTest, AConflictIsNamedAndTheWayOutLeavesTheLatestChoiceAlone) {
    open(conflictingPpd(mHome));
    showPanel();
    mModel.choose(QStringLiteral("Density"), QStringLiteral("Dark"));
    mModel.choose(kQuality, QStringLiteral("Best"));
    EXPECT_EQ(mModel.conflictSentence().toStdString(),
              "“Print density: Dark” and “Quality: Best” exclude each other.");
    searchFix();
    EXPECT_TRUE(mModel.fixText().startsWith(QStringLiteral("Print density: ")));
    mModel.applyFix();
    EXPECT_TRUE(mModel.conflicts().empty());
    EXPECT_EQ(choice(kQuality), "Best") << "chosen last";
    EXPECT_NE(choice(QStringLiteral("Density")), "Dark");
    mModel.undo();
    EXPECT_EQ(choice(QStringLiteral("Density")), "Dark");
    EXPECT_FALSE(mModel.conflicts().empty());
}

TEST_F(JobModelTest, AnActInAPanelIsTheLatestChoiceToo) {
    open(conflictingPpd(mHome));
    QWidget& view = showPanel();
    mModel.choose(kQuality, QStringLiteral("Draft"));
    part<QCheckBox>(view, "mHalfCutChkBx")->click();
    act();
    ASSERT_FALSE(mModel.conflicts().empty());
    searchFix();
    mModel.applyFix();
    EXPECT_TRUE(mModel.conflicts().empty());
    EXPECT_EQ(choice(kHalfCut), "ON");
    EXPECT_TRUE(part<QCheckBox>(view, "mHalfCutChkBx")->isChecked());
    EXPECT_NE(choice(kQuality), "Draft");
}

TEST_F(JobModelTest, TheSearchForAWayOutTakesNothingOfTheCallersThread) {
    openWithLongSearch();
    const Setting wanted{QStringLiteral("O0"), kOn};
    const auto search =
        threadTimeOf([&] { EXPECT_FALSE(proposeResolution(mModel.ppd(), wanted)); });
    const auto here = threadTimeOf([&] { searchFix(); });
    EXPECT_LT(here, search / 2);
    bool gaveUp = false;
    EXPECT_TRUE(mModel.fixText(&gaveUp).isEmpty());
    EXPECT_TRUE(gaveUp) << "it went to its limit";
}

TEST_F(JobModelTest, WhatWasFoundForOtherChoicesIsNotApplied) {
    open(conflictingPpd(mHome));
    mModel.choose(kDensity, kDark);
    mModel.choose(kQuality, kBest);
    searchFix();
    ASSERT_FALSE(mModel.fixText().isEmpty());
    mModel.choose(kDensity, QStringLiteral("Light"));
    mModel.choose(kDensity, kDark);
    EXPECT_TRUE(mModel.fixText().isEmpty()) << "which would change what was chosen last";
    mModel.applyFix();
    EXPECT_EQ(choice(kDensity), "Dark");
    EXPECT_EQ(choice(kQuality), "Best");
}

TEST_F(JobModelTest, WhatIsFoundTooLateIsNotApplied) {
    open(conflictingPpd(mHome));
    mModel.choose(kQuality, kBest);
    mModel.choose(kDensity, kDark);
    mModel.searchFix();
    mModel.choose(kHalfCut, kOn);
    ASSERT_TRUE(turnUntil([this] { return !mModel.isSearchingFix(); }));
    EXPECT_FALSE(mModel.proposedFix());
    mModel.applyFix();
    EXPECT_FALSE(mModel.conflicts().empty());
    searchFix();
    EXPECT_TRUE(mModel.proposedFix());
}

TEST_F(JobModelTest, AnActThatIsNotYetFollowedKeepsTheWayOutFromBeingApplied) {
    open(conflictingPpd(mHome));
    QWidget& view = showPanel();
    mModel.choose(kQuality, QStringLiteral("Draft"));
    part<QCheckBox>(view, "mHalfCutChkBx")->click();
    act();
    searchFix();
    ASSERT_TRUE(mModel.proposedFix());
    part<QCheckBox>(view, "mMirrorPrintChkBx")->click();
    mModel.noteAct(*mModel.panels().front().callback);
    mModel.applyFix();
    EXPECT_EQ(choice(kMirror), "ON");
    EXPECT_EQ(choice(kQuality), "Draft") << "what was done last is another act now";
}

TEST_F(JobModelTest, ChoicesThatHaveNotChangedAreSearchedForOnce) {
    int searches = 0;
    QObject::connect(&mModel, &JobModel::fixSearched, [&] { ++searches; });
    open(conflictingPpd(mHome));
    mModel.searchFix();
    EXPECT_FALSE(mModel.isSearchingFix()) << "without a conflict";
    mModel.choose(kDensity, kDark);
    mModel.choose(kQuality, kBest);
    for (int i = 0; i < 3; ++i) {
        mModel.searchFix();
        mModel.setCopies(2 + i);
        mModel.searchFix();
    }
    searchFix();
    mModel.searchFix();
    EXPECT_FALSE(mModel.isSearchingFix());
    EXPECT_FALSE(mModel.fixText().isEmpty());
    turnFor(50);
    EXPECT_EQ(searches, 1);
}

TEST_F(JobModelTest, ASearchForAWayOutThatHasBecomeNeedlessIsDropped) {
    int searches = 0;
    QObject::connect(&mModel, &JobModel::fixSearched, [&] { ++searches; });
    openWithLongSearch();
    mModel.searchFix();
    EXPECT_TRUE(mModel.isSearchingFix());
    Settings lonely(allOn());
    for (std::size_t i = 1; i < lonely.size(); ++i)
        lonely[i].choice = kOff;
    mModel.chooseAll(lonely);
    ASSERT_TRUE(mModel.conflicts().empty());
    mModel.searchFix();
    EXPECT_FALSE(mModel.isSearchingFix());
    BackgroundCall::farewell();
    turnFor(50);
    EXPECT_EQ(searches, 0);
}

TEST_F(JobModelTest, AModelGoesWhileItsSearchIsOn) {
    auto model = std::make_unique<JobModel>();
    model->adopt(openedPpd(longSearchPpd(), allOn()));
    model->searchFix();
    EXPECT_TRUE(model->isSearchingFix());
    model.reset();
    turnFor(50);
    BackgroundCall::farewell();
}

TEST_F(JobModelTest, AConflictIsNeverSolvedByItself) {
    open(conflictingPpd(mHome));
    showPanel();
    mModel.choose(QStringLiteral("Density"), QStringLiteral("Dark"));
    mModel.choose(kQuality, QStringLiteral("Best"));
    mModel.save();
    EXPECT_TRUE(mModel.shouldPrint()) << "the panel does not refuse";
    EXPECT_EQ(choice(QStringLiteral("Density")), "Dark");
    EXPECT_EQ(choice(kQuality), "Best");
    EXPECT_FALSE(mModel.conflicts().empty());
}

/// Pages of the tape's measure.
std::shared_ptr<const DocumentPages> documentOf(int pages) {
    auto document = std::make_shared<DocumentPages>();
    document->ofFiles = {pages};
    document->measures.assign(static_cast<std::size_t>(pages), {68, 142});
    return document;
}

TEST_F(JobModelTest, LabelsAreCountedByPagesRangeAndCopies) {
    open(kTapePpd);
    EXPECT_EQ(mModel.labelCount(), 0);
    mModel.setFiles({kLabels});
    mModel.setDocument(documentOf(12));
    EXPECT_EQ(mModel.labelCount(), 12);
    mModel.setCopies(3);
    mModel.setPages(PageSelection({2, 5}));
    EXPECT_EQ(mModel.labelCount(), 12);
    mModel.setPages(PageSelection({11, PageRange::kToTheEnd}));
    EXPECT_EQ(mModel.labelCount(), 6);
    mModel.setPages(*parsePageSelection(QStringLiteral("1,3,5-7,11-")));
    EXPECT_EQ(mModel.labelCount(), 21);
    mModel.setPages(PageSelection({40, 50}));
    EXPECT_EQ(mModel.labelCount(), 0);
    mModel.setFiles({kLabels, kLabels});
    EXPECT_EQ(mModel.pageCount(), 0) << "counted anew";
    EXPECT_EQ(jobTitle(mModel.files()).toStdString(), "labels.pdf and 1 more");
}

TEST_F(JobModelTest, TheSentenceSaysWhatWillHappen) {
    open(kTapePpd, {{kHalfCut, kOn}});
    showPanel();
    mModel.setFiles({kLabels});
    EXPECT_EQ(jobSentence(mModel).toStdString(), "Labels on 24 mm tape, auto cut, half cut");
    mModel.setDocument(documentOf(1));
    EXPECT_EQ(jobSentence(mModel).toStdString(), "1 label on 24 mm tape, auto cut, half cut");
    mModel.chooseAll({{kHalfCut, kOff}, {kAutoCut, kOff}});
    EXPECT_EQ(jobSentence(mModel).toStdString(), "1 label on 24 mm tape, no cut options");
}

TEST_F(JobModelTest, TheWholeSummaryTellsTheJobEveryPanelAndWhatElseWasChanged) {
    open(kTapePpd, {{kHalfCut, kOn}, {kQuality, QStringLiteral("Best")}});
    showPanel();
    mModel.setCopies(3);
    mModel.setPages(PageSelection({2, 5}));
    const std::vector<SummaryGroup> groups = wholeSummary(mModel);
    ASSERT_EQ(groups.size(), 3U);
    const auto text = [](const SummaryGroup& group) {
        QStringList lines{group.heading};
        for (const auto& [title, value] : group.lines)
            lines << title + u'=' + value;
        return lines.join(u'\n').toStdString();
    };
    EXPECT_EQ(text(groups[0]),
              "Job\nPrinter=Labelcut Tape Sample, 1.0\nLabel size=24 mm tape (24 mm × "
              "50 mm)\nLabels=2-5\nCopies=3");
    EXPECT_THAT(text(groups[1]), HasSubstr("Half cut=Yes"));
    EXPECT_EQ(text(groups[2]), "Printer Features\nQuality=Best");
    mModel.choose(kQuality, QStringLiteral("Normal"));
    mModel.setPages({});
    EXPECT_EQ(wholeSummary(mModel).size(), 2U) << "nothing else differs from the defaults";
    EXPECT_THAT(text(wholeSummary(mModel)[0]), HasSubstr("Labels=All"));
}

TEST_F(JobModelTest, UndoTakesBackCopiesAndPagesToo) {
    open(kTapePpd);
    showPanel();
    mModel.setCopies(2);
    mModel.setCopies(3);
    mModel.setPages(PageSelection({2, PageRange::kToTheEnd}));
    mModel.setPages(PageSelection({2, 5}));
    mModel.choose(kQuality, QStringLiteral("Best"));
    mModel.setCopies(4);
    mModel.undo();
    EXPECT_EQ(mModel.copies(), 3);
    EXPECT_EQ(choice(kQuality), "Best");
    mModel.undo();
    EXPECT_EQ(choice(kQuality), "Normal");
    EXPECT_EQ(mModel.pages(), PageSelection(PageRange{2, 5}));
    mModel.undo();
    EXPECT_TRUE(mModel.pages().isEverything()) << "typing a range is one step";
    EXPECT_EQ(mModel.copies(), 3);
    mModel.undo();
    EXPECT_EQ(mModel.copies(), 1) << "counting up is one step";
    EXPECT_FALSE(mModel.canUndo());
}

TEST_F(JobModelTest, CopiesCountedUpAndDownAgainLeaveNothingToUndo) {
    open(kTapePpd);
    showPanel();
    mModel.setCopies(2);
    mModel.setCopies(1);
    EXPECT_FALSE(mModel.canUndo());
    mModel.setCopies(5);
    EXPECT_TRUE(mModel.canUndo()) << "and the next count is a step again";
}

TEST_F(JobModelTest, ChoicesAndCopiesOfAPresetAreOneStep) {
    open(kTapePpd);
    showPanel();
    mModel.chooseAll({{kHalfCut, kOn}}, Handling{7});
    EXPECT_EQ(mModel.copies(), 7);
    mModel.undo();
    EXPECT_EQ(mModel.copies(), 1);
    EXPECT_EQ(choice(kHalfCut), "OFF");
    EXPECT_FALSE(mModel.canUndo());
}

TEST_F(JobModelTest, UndoTakesBackOrderCollationAndFit) {
    open(kTapePpd);
    showPanel();
    mModel.setReversed(true);
    mModel.setCollated(false);
    mModel.setFit(worker::Fit::Scale);
    EXPECT_EQ(mModel.handling(), (Handling{1, true, false, worker::Fit::Scale}));
    mModel.undo();
    EXPECT_EQ(mModel.fit(), worker::Fit::Unchanged);
    EXPECT_FALSE(mModel.isCollated());
    mModel.undo();
    EXPECT_TRUE(mModel.isCollated());
    EXPECT_TRUE(mModel.isReversed());
    mModel.undo();
    EXPECT_FALSE(mModel.isReversed());
    EXPECT_FALSE(mModel.canUndo());
}

TEST_F(JobModelTest, TheCommandAndTheSummarySayHowPagesAreHandled) {
    open(kTapePpd);
    showPanel();
    mModel.setFiles({kLabels});
    mModel.setCopies(3);
    mModel.setReversed(true);
    mModel.setCollated(false);
    mModel.setFit(worker::Fit::Turn);
    EXPECT_THAT(labelcutCommand(mModel).toStdString(),
                HasSubstr(" --copies 3 --reverse --no-collate --fit turn -o labels.ps -- "));
    QStringList lines;
    const SummaryGroup job = wholeSummary(mModel).front();
    for (const auto& [title, value] : job.lines)
        lines << title + u'=' + value;
    EXPECT_THAT(lines.join(u'\n').toStdString(),
                HasSubstr("Copies=3, one label after the other\nOrder=Last label first\nSize of "
                          "pages=Actual size, turned"));
}

TEST_F(JobModelTest, CopiesChosenBeforeThereIsAPrinterAreNoStep) {
    mModel.setCopies(4);
    mModel.setPages(PageSelection({2, 3}));
    EXPECT_FALSE(mModel.canUndo());
    open(kTapePpd);
    EXPECT_FALSE(mModel.canUndo());
    EXPECT_EQ(mModel.copies(), 4);
}

TEST_F(JobModelTest, TheCommandsSayTheSameAsTheJob) {
    open(kRollPpd, {{QStringLiteral("KvCutLabel"), QStringLiteral("5")}});
    showPanel();
    mModel.setFiles({QStringLiteral("/tmp/it's a label.pdf")});
    mModel.setCopies(2);
    mModel.setPages(PageSelection({2, 5}));
    EXPECT_EQ(labelcutCommand(mModel).toStdString(),
              "labelcut print --ppd " + kRollPpd.toStdString() +
                  " --page-size W62x29 --set KvCutLabel=5 --set KvCutAtEnd=OFF --set KvMirror=OFF"
                  " --set KvAutoTapeCut=ON --set KvRemoveBlkSpace=OFF --copies 2 --pages 2-5"
                  " -o labels.ps -- '/tmp/it'\\''s a label.pdf'");
    EXPECT_TRUE(lpCommand(mModel).isEmpty()) << "no queue";
}

TEST_F(JobModelTest, ADefaultThatTakesBackWhatWasSavedIsSaidToCommands) {
    // Commands start from what is saved for the queue, as the window did.
    open(kTapePpd, {{kQuality, QStringLiteral("Best")}});
    showPanel();
    mModel.choose(kQuality, QStringLiteral("Normal"));
    EXPECT_THAT(labelcutCommand(mModel).toStdString(), HasSubstr("--set Quality=Normal"));
}

TEST_F(JobModelTest, APrintersChangeForgetsTheStepsOfTheOneBefore) {
    open(kTapePpd);
    showPanel();
    mModel.choose(kQuality, QStringLiteral("Best"));
    open(kRollPpd);
    EXPECT_FALSE(mModel.canUndo());
    EXPECT_EQ(choice(kQuality), "Normal");
    EXPECT_EQ(choice(kHalfCut), "(none)");
}

TEST_F(JobModelTest, EveryChangeIsAnnounced) {
    open(kTapePpd);
    mChanges = 0;
    mModel.choose(kQuality, QStringLiteral("Best"));
    EXPECT_EQ(mChanges, 1);
    mModel.setCopies(mModel.copies());
    mModel.setPages(mModel.pages());
    EXPECT_EQ(mChanges, 1) << "nothing changed";
    mModel.setCopies(2);
    EXPECT_EQ(mChanges, 2);
}

} // namespace labelcut::test
