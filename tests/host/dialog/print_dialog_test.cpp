// The dialog's window, by mouse and keyboard.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QGroupBox>
#include <QInputDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include <functional>
#include <set>

#include "host/dialog/page_list.h"
#include "host/presets/preset_store.h"
#include "host/printers/recent_printer.h"
#include "tests/host/dialog/dialog_fixtures.h"
#include "tests/host/panels/core_fixtures.h"
#include "tests/support/one_truth.h"

namespace labelcut::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const QString kQuality = QStringLiteral("Quality");
const QString kOn = QStringLiteral("ON");

/// An option that takes a password.
constexpr char kRelease[] = R"ppd(
*OpenUI *Release/Held job: PickOne
*DefaultRelease: None
*Release None/No: ""
*CloseUI: *Release
*CustomRelease True/With a password: "pop"
*ParamCustomRelease Secret/Password: 1 password 4 8
)ppd";

class PrintDialogTest : public testing::Test {
protected:
    void open(const QString& ppd = kTapePpd, const Settings& choices = {}) {
        mDialog.reset();
        mDialog = openDialog(ppd, choices);
    }
    template<typename Widget>
    Widget& control(const char* name) const {
        return *part<Widget>(*mDialog, name);
    }
    void press(const char* button) const { click(control<QPushButton>(button)); }
    JobModel& model() const { return mDialog->model(); }
    std::string choice(const char* key) const {
        return model().choice(QLatin1String(key)).value_or(QString()).toStdString();
    }
    std::vector<std::string> messages() const {
        std::vector<std::string> all;
        for (const QString& text : mDialog->messages().texts())
            all.push_back(text.toStdString());
        return all;
    }
    void savePreset(const QString& name) const {
        press("savePreset");
        auto* ask = mDialog->findChild<QInputDialog*>();
        ASSERT_TRUE(ask);
        ask->setTextValue(name);
        ask->accept();
        // What a window manager does.
        mDialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(mDialog.get()));
        settle();
    }
    /// By the list's last entry.
    void chooseFile(const QString& path) const {
        auto& printers = control<QComboBox>("printers");
        choose(printers, printers.count() - 1);
        auto* chooser = mDialog->findChild<QFileDialog*>();
        ASSERT_TRUE(chooser);
        Q_EMIT chooser->fileSelected(path);
        chooser->reject();
        settleWithPrinter(*mDialog);
    }
    QStringList presets() const {
        QStringList names;
        const auto& list = control<QComboBox>("presets");
        for (int i = 0; i < list.count(); ++i)
            names << list.itemText(i);
        return names;
    }

    Offscreen mOffscreen;
    PrivateHome mHome;
    std::unique_ptr<PrintDialog> mDialog;
};

/// Gives the file other contents. @return those it had.
QByteArray overwrite(const QString& path, const QByteArray& contents) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadWrite)) << path.toStdString();
    const QByteArray before = file.readAll();
    EXPECT_TRUE(file.resize(0) && file.seek(0));
    EXPECT_EQ(file.write(contents), contents.size());
    return before;
}

/// A notch of the wheel in the middle of the widget.
void turnWheel(QWidget& widget, int notches) {
    const QPointF at = widget.rect().center();
    QWheelEvent event(at, widget.mapToGlobal(at), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
    settle();
}

/// Every widget that the Tab key comes to, from where the focus is and round again.
std::vector<QWidget*> tabStops(QWidget& window) {
    std::vector<QWidget*> stops;
    for (int i = 0; i < 200; ++i) {
        QWidget* now = QApplication::focusWidget();
        if (!stops.empty() && now == stops.front())
            break;
        stops.push_back(now);
        QTest::keyClick(now ? now : &window, Qt::Key_Tab);
    }
    return stops;
}

/// What a keyboard user must be able to reach.
bool wantsFocus(const QWidget& widget) {
    const bool isField =
        qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QComboBox*>(&widget) ||
        qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QAbstractSpinBox*>(&widget) ||
        qobject_cast<const QPlainTextEdit*>(&widget);
    return isField && isUsable(widget) && !qobject_cast<QAbstractSpinBox*>(widget.parentWidget()) &&
           !qobject_cast<QTabBar*>(widget.parentWidget());
}

} // namespace

TEST_F(PrintDialogTest, ItOpensWithPanelFirstAndOneTruth) {
    for (const QString& ppd : {kTapePpd, kRollPpd}) {
        open(ppd);
        EXPECT_EQ(mDialog->tabs().currentIndex(), 0);
        EXPECT_EQ(mDialog->tabs().tabText(0).toStdString(), "Cut Options");
        EXPECT_EQ(control<QLabel>("document").text().toStdString(), "labels.pdf – 12 labels");
        EXPECT_EQ(control<QPushButton>("print").text().toStdString(), "&Print 12 labels");
        EXPECT_THAT(messages(), IsEmpty());
        expectOneTruth(*mDialog);
    }
}

TEST_F(PrintDialogTest, PanelKeywordsDoNotAppearTwice) {
    open();
    for (const QString& key : model().panelKeywords())
        EXPECT_FALSE(mDialog->findChild<QComboBox*>(QStringLiteral("choices-") + key))
            << key.toStdString();
    EXPECT_FALSE(mDialog->findChild<QComboBox*>(QStringLiteral("choices-LabelTray")))
        << "equipment is no choice";
    EXPECT_TRUE(mDialog->findChild<QComboBox*>(QStringLiteral("choices-Density")));
}

TEST_F(PrintDialogTest, AClickInThePanelReachesEverything) {
    open();
    click(control<QCheckBox>("mHalfCutChkBx"));
    EXPECT_EQ(choice("KvHalfCut"), "ON");
    expectOneTruth(*mDialog);
    EXPECT_THAT(control<QLabel>("sentence").text().toStdString(), HasSubstr("half cut"));
    press("undo");
    EXPECT_EQ(choice("KvHalfCut"), "OFF");
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, AReadyMadeCombinationReachesEverything) {
    open();
    auto& combinations = control<QComboBox>("mOptionPopUpButton");
    for (int i = 0; i < combinations.count(); ++i) {
        choose(combinations, i);
        expectOneTruth(*mDialog);
    }
}

TEST_F(PrintDialogTest, TheCountReachesEverything) {
    open(kRollPpd);
    auto& count = control<QLineEdit>("mCutEveryTxBx");
    type(count, QStringLiteral("12"));
    EXPECT_EQ(choice("KvCutLabel"), "12");
    expectOneTruth(*mDialog);
    QTest::keyClick(&count, Qt::Key_Up);
    settle();
    EXPECT_EQ(choice("KvCutLabel"), "13");
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, ACountThatIsSteppedLeavesEveryTickAsItIs) {
    // Tapes can be cut every so many labels as well.
    const QString tape = extendedPpd(mHome, R"ppd(
*OpenUI *KvCutLabel/Cut every: PickOne
*OrderDependency: 40 AnySetup *KvCutLabel
*DefaultKvCutLabel: 3
*KvCutLabel 1/1: "userdict /LabelcutCutLabel 1 put"
*KvCutLabel 2/2: "userdict /LabelcutCutLabel 2 put"
*KvCutLabel 3/3: "userdict /LabelcutCutLabel 3 put"
*KvCutLabel 4/4: "userdict /LabelcutCutLabel 4 put"
*KvCutLabel 5/5: "userdict /LabelcutCutLabel 5 put"
*CloseUI: *KvCutLabel
)ppd");
    for (const QString& ppd : {kRollPpd, tape}) {
        open(ppd);
        click(control<QCheckBox>("mMirrorPrintChkBx"));
        auto& cutEvery = control<QCheckBox>("mCutEveryChkBx");
        if (!cutEvery.isChecked())
            click(cutEvery);
        auto& count = control<QLineEdit>("mCutEveryTxBx");
        count.setFocus();
        const std::pair<const char*, std::function<void()>> steps[] = {
            {"Up", [&] { QTest::keyClick(&count, Qt::Key_Up); }},
            {"the wheel", [&] { turnWheel(count, 1); }},
            {"Down", [&] { QTest::keyClick(&count, Qt::Key_Down); }},
        };
        for (const auto& [name, step] : steps) {
            const std::string before = choice("KvCutLabel");
            step();
            settle();
            EXPECT_NE(choice("KvCutLabel"), before) << name;
            EXPECT_EQ(count.text().toStdString(), choice("KvCutLabel")) << name;
            EXPECT_EQ(choice("KvMirror"), "ON") << name;
            EXPECT_TRUE(control<QCheckBox>("mMirrorPrintChkBx").isChecked()) << name;
            EXPECT_TRUE(cutEvery.isChecked()) << name;
            EXPECT_THAT(messages(), IsEmpty()) << name;
            expectOneTruth(*mDialog);
        }
    }
}

TEST_F(PrintDialogTest, UndoTakesBackTheLastClickAloneAndSaysNothing) {
    open();
    click(control<QCheckBox>("mMirrorPrintChkBx"));
    click(control<QCheckBox>("mRemoveBlkSpaceChkBx"));
    ASSERT_EQ(choice("KvRemoveBlkSpace"), "ON");
    press("undo");
    EXPECT_EQ(choice("KvRemoveBlkSpace"), "OFF");
    EXPECT_EQ(choice("KvMirror"), "ON");
    EXPECT_TRUE(control<QCheckBox>("mMirrorPrintChkBx").isChecked());
    EXPECT_THAT(messages(), IsEmpty());
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, SpecialTapeKeepsTheTicksThatItExcludesAndALineSaysSo) {
    open();
    for (const char* box : {"mHalfCutChkBx", "mChainPrintChkBx", "mSpecialTapeChkBx"})
        click(control<QCheckBox>(box));
    const auto& remark = control<QWidget>("remark");
    for (const auto& [box, key] :
         {std::pair("mHalfCutChkBx", "KvHalfCut"), std::pair("mChainPrintChkBx", "KvChainPrint")}) {
        EXPECT_TRUE(control<QCheckBox>(box).isChecked()) << box;
        EXPECT_FALSE(control<QCheckBox>(box).isEnabled()) << box;
        EXPECT_EQ(choice(key), "OFF");
        EXPECT_THAT(model().jobSettings(),
                    testing::Contains(Setting{QLatin1String(key), QStringLiteral("OFF")}));
    }
    EXPECT_TRUE(remark.isVisible());
    EXPECT_EQ(remark.findChild<QLabel*>()->text().toStdString(),
              "While “Special tape” is on, these are sent as off although they are ticked: Auto "
              "cut, Half cut, Chain printing.");
    expectOneTruth(*mDialog);
    click(control<QCheckBox>("mSpecialTapeChkBx"));
    EXPECT_FALSE(remark.isVisible());
    EXPECT_EQ(choice("KvHalfCut"), "ON");
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, TheToolTipOfRemoveBlankSpaceFollowsThePaper) {
    open();
    const auto& box = control<QCheckBox>("mRemoveBlkSpaceChkBx");
    const QString usual = box.toolTip();
    for (const auto& [paper, isFixed] : {std::pair("DC24", true), std::pair("T12", false)}) {
        choose(optionBox(*mDialog, "PageSize"), QLatin1String(paper));
        openTab(*mDialog, kPanelTab);
        EXPECT_EQ(box.isEnabled(), !isFixed) << paper;
        EXPECT_EQ(box.toolTip().toStdString(),
                  isFixed ? "This paper has a fixed length, so blank space stays"
                          : usual.toStdString())
            << paper;
    }
}

TEST_F(PrintDialogTest, AFeatureIsChosenAndSetBack) {
    open();
    openTab(*mDialog, kFeaturesTab);
    auto& quality = optionBox(*mDialog, "Quality");
    choose(quality, QStringLiteral("Best"));
    EXPECT_EQ(choice("Quality"), "Best");
    expectOneTruth(*mDialog);
    auto* reset = part<QToolButton>(*mDialog, "reset-Quality");
    ASSERT_TRUE(isUsable(*reset));
    click(*reset);
    EXPECT_EQ(choice("Quality"), "Normal");
    EXPECT_FALSE(reset->isVisible());
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, EverythingIsSetBackAtOnceAndTakenBack) {
    open(kTapePpd, {{kQuality, QStringLiteral("Best")}, {QStringLiteral("KvHalfCut"), kOn}});
    press("reset");
    EXPECT_TRUE(model().changedMarks().empty());
    expectOneTruth(*mDialog);
    QTest::keySequence(mDialog.get(), QKeySequence::Undo);
    settle();
    EXPECT_EQ(choice("Quality"), "Best");
    EXPECT_EQ(choice("KvHalfCut"), "ON");
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, ACustomLengthIsTakenInTheUsersUnit) {
    open();
    openTab(*mDialog, kFeaturesTab);
    auto& feed = optionBox(*mDialog, "FeedLength");
    choose(feed, QStringLiteral("Custom"));
    auto* length = feed.parentWidget()->findChild<QLineEdit*>();
    ASSERT_TRUE(isUsable(*length));
    EXPECT_TRUE(length->hasFocus());
    type(*length, QStringLiteral("1 in"));
    QTest::keyClick(length, Qt::Key_Tab);
    settle();
    EXPECT_EQ(choice("FeedLength"), "Custom.72");
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, PrintSaysWhatIsOutOfBoundsInsteadOfPrintingSomethingElse) {
    open();
    openTab(*mDialog, kFeaturesTab);
    auto& feed = optionBox(*mDialog, "FeedLength");
    choose(feed, QStringLiteral("Custom"));
    auto* length = feed.parentWidget()->findChild<QLineEdit*>();
    const std::string before = choice("FeedLength");
    type(*length, QStringLiteral("9999"));
    openTab(*mDialog, kPanelTab);
    press("print");
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("“Feed after printing” takes values from")));
    EXPECT_EQ(mDialog->tabs().currentIndex(), kFeaturesTab) << "where the cause is";
    EXPECT_EQ(length->text().toStdString(), "9999") << "stays to be put right";
    EXPECT_EQ(choice("FeedLength"), before);
    EXPECT_FALSE(mDialog->findChild<QFileDialog*>());
    type(*length, QStringLiteral("10"));
    QTest::keyClick(length, Qt::Key_Tab);
    settle();
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, WhatWasSaidAboutATypedValueGoesAsSoonAsTheValueIsRight) {
    open();
    openTab(*mDialog, kFeaturesTab);
    auto& feed = optionBox(*mDialog, "FeedLength");
    choose(feed, QStringLiteral("Custom"));
    auto* length = feed.parentWidget()->findChild<QLineEdit*>();
    type(*length, QStringLiteral("9999"));
    press("print");
    ASSERT_THAT(messages(), ElementsAre(HasSubstr("“Feed after printing” takes values from")));
    type(*length, QStringLiteral("0 mm"));
    EXPECT_THAT(messages(), IsEmpty()) << "though the value is the one before, and not yet taken";
}

TEST_F(PrintDialogTest, APasswordIsNowhereToBeReadAndNotKept) {
    const QString secret = QStringLiteral("s3cr3t");
    open(extendedPpd(mHome, kRelease),
         {{QStringLiteral("Release"), QStringLiteral("Custom.") + secret},
          {QStringLiteral("KvHalfCut"), kOn}});
    ASSERT_EQ(choice("Release"), "Custom.s3cr3t") << "the job has it";
    const QString command = control<QPlainTextEdit>("commandLabelcut").toPlainText();
    EXPECT_FALSE(command.contains(QStringLiteral("Release")));
    EXPECT_TRUE(command.contains(QStringLiteral("KvHalfCut=ON")));
    EXPECT_EQ(control<QLabel>("leftOutOfCommands").text().toStdString(),
              "The password of “Held job” is left out of the commands.");
    savePreset(QStringLiteral("Mine"));
    EXPECT_THAT(messages(), ElementsAre("“Held job” holds a password, which is not kept in the "
                                        "preset."));
    const auto kept =
        PresetStore().load(PrinterIdentity::forPpd(model().ppd()), QStringLiteral("Mine"));
    ASSERT_TRUE(kept);
    EXPECT_FALSE(kept->options.contains(QStringLiteral("Release")));
    EXPECT_EQ(kept->options.value(QStringLiteral("KvHalfCut")), kOn);
    for (const QLabel* label : mDialog->findChildren<QLabel*>())
        EXPECT_FALSE(label->text().contains(secret)) << label->text().toStdString();
    for (const QLineEdit* edit : mDialog->findChildren<QLineEdit*>())
        EXPECT_FALSE(edit->displayText().contains(secret));
    ASSERT_TRUE(model().choose(QStringLiteral("Release"), QStringLiteral("None")));
    settle();
    EXPECT_FALSE(control<QLabel>("leftOutOfCommands").isVisibleTo(mDialog.get()));
}

TEST_F(PrintDialogTest, PrintSaysWhatIsWrongWithARange) {
    open();
    auto& range = control<QLineEdit>("pageRange");
    type(range, QStringLiteral("5-2"));
    press("print");
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("A range is written as")));
    type(range, QStringLiteral("2-5"));
    EXPECT_EQ(model().pages(), PageSelection(PageRange{2, 5}));
    EXPECT_EQ(control<QPushButton>("print").text().toStdString(), "&Print 4 labels");
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, PagesAreMadeWhenTheyAreFirstLookedAt) {
    DialogRequest request;
    request.files = {kLabels};
    request.ppdPath = kTapePpd;
    PrintDialog dialog(request, plugins(), hostSystem(), noService());
    dialog.show();
    settleWithPrinter(dialog);
    EXPECT_TRUE(dialog.findChild<QCheckBox*>(QStringLiteral("mHalfCutChkBx")));
    const QString field = QStringLiteral("choices-Quality");
    EXPECT_FALSE(dialog.findChild<QComboBox*>(field));
    dialog.model().choose(kQuality, QStringLiteral("Best"));
    openTab(dialog, kFeaturesTab);
    auto* made = dialog.findChild<QComboBox*>(field);
    ASSERT_TRUE(made);
    EXPECT_EQ(made->currentData().toString().toStdString(), "Best");
    openTab(dialog, kPanelTab);
    openTab(dialog, kFeaturesTab);
    EXPECT_EQ(dialog.findChild<QComboBox*>(field), made) << "once";
    EXPECT_FALSE(dialog.findChild<QGroupBox*>(QStringLiteral("summary")));
}

TEST_F(PrintDialogTest, WithoutAnyPlugInItSaysSoAndStillHasItsOwnPages) {
    const PluginSearch none;
    DialogRequest request;
    request.files = {kLabels};
    request.ppdPath = kTapePpd;
    PrintDialog dialog(request, none, hostSystem(), noService());
    dialog.show();
    settleWithPrinter(dialog);
    EXPECT_THAT(dialog.messages().texts().join(u'\n').toStdString(),
                HasSubstr("no plug-in was found"));
    EXPECT_EQ(dialog.tabs().count(), static_cast<int>(pageRows().size()));
    EXPECT_TRUE(dialog.model().hasPrinter());
}

TEST_F(PrintDialogTest, UndoShowsTheCopiesAndTheRangeThatWere) {
    open();
    control<QSpinBox>("copies").setFocus();
    QTest::keyClick(&control<QSpinBox>("copies"), Qt::Key_Up);
    type(control<QLineEdit>("pageRange"), QStringLiteral("2-5"));
    settle();
    press("undo");
    settle();
    EXPECT_TRUE(model().pages().isEverything());
    EXPECT_FALSE(control<QRadioButton>("someLabels").isChecked());
    press("undo");
    settle();
    EXPECT_EQ(control<QSpinBox>("copies").value(), 1);
    EXPECT_FALSE(control<QPushButton>("undo").isEnabled());
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, ItShowsTheRangeAndCopiesThatItWasOpenedWith) {
    DialogRequest request;
    request.files = {kLabels};
    request.ppdPath = kTapePpd;
    request.copies = 3;
    request.pages = PageSelection({2, PageRange::kToTheEnd});
    mDialog = openDialog(request);
    EXPECT_EQ(control<QLineEdit>("pageRange").text().toStdString(), "2-");
    EXPECT_EQ(control<QSpinBox>("copies").value(), 3);
    EXPECT_EQ(model().pages(), PageSelection(PageRange{2, PageRange::kToTheEnd}));
}

TEST_F(PrintDialogTest, AConflictIsNamedWithAFixAndAnUndoAndPrintRefuses) {
    open(conflictingPpd(mHome));
    openTab(*mDialog, kFeaturesTab);
    choose(optionBox(*mDialog, "Density"), QStringLiteral("Dark"));
    choose(optionBox(*mDialog, "Quality"), QStringLiteral("Best"));
    const std::string sentence = "“Print density: Dark” and “Quality: Best” exclude each other.";
    EXPECT_THAT(messages(), ElementsAre(sentence));
    EXPECT_EQ(choice("Quality"), "Best") << "never changed silently";
    press("print");
    EXPECT_THAT(messages(), ElementsAre(sentence));
    EXPECT_FALSE(mDialog->findChild<QFileDialog*>());
    expectOneTruth(*mDialog);

    QPushButton* undo = offer(mDialog->messages(), QStringLiteral("Undo"));
    ASSERT_TRUE(undo);
    click(*undo);
    EXPECT_EQ(choice("Quality"), "Normal");
    EXPECT_THAT(messages(), IsEmpty());

    choose(optionBox(*mDialog, "Quality"), QStringLiteral("Best"));
    settleWithFix(*mDialog);
    QPushButton* fix = offer(mDialog->messages(), QStringLiteral("Set Print density"));
    ASSERT_TRUE(fix);
    click(*fix);
    EXPECT_EQ(choice("Quality"), "Best");
    EXPECT_TRUE(model().conflicts().empty());
    EXPECT_THAT(messages(), IsEmpty());
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, TheWindowGoesWhileAWayOutIsSearchedFor) {
    open(conflictingPpd(mHome));
    model().chooseAll(
        {{QStringLiteral("Density"), QStringLiteral("Dark")}, {kQuality, QStringLiteral("Best")}});
    model().searchFix();
    EXPECT_TRUE(model().isSearchingFix());
    mDialog.reset();
    BackgroundCall::farewell();
    turnFor(50);
}

TEST_F(PrintDialogTest, ADismissedConflictComesBackWhenPrintIsPressed) {
    open(conflictingPpd(mHome),
         {{QStringLiteral("Density"), QStringLiteral("Dark")}, {kQuality, QStringLiteral("Best")}});
    auto* dismiss = mDialog->messages().findChild<QToolButton*>();
    ASSERT_TRUE(dismiss);
    click(*dismiss);
    EXPECT_THAT(messages(), IsEmpty());
    press("print");
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("exclude each other")));
}

TEST_F(PrintDialogTest, TheWheelChangesNothingWithoutFocus) {
    for (const QString& ppd : {kTapePpd, kRollPpd}) {
        open(ppd);
        const Settings marks = model().marks();
        for (int tab = 0; tab < mDialog->tabs().count(); ++tab) {
            openTab(*mDialog, tab);
            control<QPushButton>("cancel").setFocus();
            for (QWidget* widget : mDialog->findChildren<QWidget*>()) {
                if (!isUsable(*widget) || widget->hasFocus() || qobject_cast<QTabBar*>(widget))
                    continue;
                turnWheel(*widget, 1);
                turnWheel(*widget, -2);
            }
            EXPECT_EQ(model().marks(), marks) << "page " << tab;
            EXPECT_EQ(model().copies(), 1) << "page " << tab;
            EXPECT_EQ(mDialog->tabs().currentIndex(), tab);
        }
    }
}

TEST_F(PrintDialogTest, TheWheelTurnsTheFieldThatHasTheFocus) {
    open();
    control<QSpinBox>("copies").setFocus();
    turnWheel(control<QSpinBox>("copies"), 2);
    EXPECT_EQ(model().copies(), 3);
}

TEST_F(PrintDialogTest, TheTabKeyReachesEverythingThatCanBeUsed) {
    open(conflictingPpd(mHome),
         {{QStringLiteral("Density"), QStringLiteral("Dark")}, {kQuality, QStringLiteral("Best")}});
    savePreset(QStringLiteral("Mine"));
    for (int tab = 0; tab < mDialog->tabs().count(); ++tab) {
        openTab(*mDialog, tab);
        control<QSpinBox>("copies").setFocus();
        const std::vector<QWidget*> stops = tabStops(*mDialog);
        const std::set<QWidget*> reached(stops.begin(), stops.end());
        for (QWidget* widget : mDialog->findChildren<QWidget*>()) {
            if (!wantsFocus(*widget))
                continue;
            // Of radio buttons, the arrow keys reach the others; so does a field for its arrows.
            if (qobject_cast<QRadioButton*>(widget) || widget->focusPolicy() == Qt::NoFocus)
                continue;
            EXPECT_TRUE(reached.contains(widget))
                << "page " << tab << ": " << widget->metaObject()->className() << " \""
                << widget->objectName().toStdString() << '"';
        }
    }
}

TEST_F(PrintDialogTest, TheTabKeyGoesThroughTheWindowAsItIsRead) {
    open();
    control<QPushButton>("chooseFiles").setFocus();
    std::vector<QString> names;
    for (QWidget* stop : tabStops(*mDialog))
        names.push_back(stop->objectName());
    const auto placeOf = [&](const char* name) {
        return std::ranges::find(names, QLatin1String(name)) - names.begin();
    };
    const char* order[] = {"chooseFiles",   "printers",
                           "strip",         "turnStrip",
                           "mAutoCutChkBx", "mOptionPopUpButton",
                           "copies",        "choices-PageSize",
                           "savePreset",    "print",
                           "cancel"};
    for (std::size_t i = 1; i < std::size(order); ++i) {
        EXPECT_LT(placeOf(order[i]), static_cast<std::ptrdiff_t>(names.size())) << order[i];
        EXPECT_LT(placeOf(order[i - 1]), placeOf(order[i])) << order[i];
    }
}

TEST_F(PrintDialogTest, EnterPrintsAndOnAButtonPressesIt) {
    open();
    QTest::keyClick(&control<QSpinBox>("copies"), Qt::Key_Return);
    settle();
    auto* chooser = mDialog->findChild<QFileDialog*>();
    ASSERT_TRUE(chooser) << "a printer known by its PPD asks for the file";
    chooser->reject();
    settle();
    control<QPushButton>("cancel").setFocus();
    QTest::keyClick(&control<QPushButton>("cancel"), Qt::Key_Return);
    settle();
    EXPECT_FALSE(mDialog->isVisible());
    EXPECT_EQ(mDialog->result(), QDialog::Rejected);
}

TEST_F(PrintDialogTest, EscapeCancels) {
    open();
    QTest::keyClick(&control<QCheckBox>("mHalfCutChkBx"), Qt::Key_Escape);
    settle();
    EXPECT_FALSE(mDialog->isVisible());
    EXPECT_EQ(mDialog->result(), QDialog::Rejected);
}

TEST_F(PrintDialogTest, TheWindowsSizeIsRemembered) {
    open();
    mDialog->resize(mDialog->size() + QSize(77, 55));
    settle();
    const QSize size = mDialog->size();
    QTest::keyClick(mDialog.get(), Qt::Key_Escape);
    open();
    EXPECT_EQ(mDialog->size(), size);
}

TEST_F(PrintDialogTest, ThePanelIsShownWholeAtTheFirstSize) {
    for (const QString& ppd : {kTapePpd, kRollPpd}) {
        open(ppd);
        auto* page = mDialog->tabs().widget(0)->findChild<QScrollArea*>();
        ASSERT_TRUE(page);
        EXPECT_GE(page->viewport()->width(), page->widget()->width());
        EXPECT_GE(page->viewport()->height(), page->widget()->height());
        // Nor can the window be made too small for it.
        mDialog->resize(1, 1);
        settle();
        EXPECT_GE(page->viewport()->width(), page->widget()->width());
        EXPECT_GE(page->viewport()->height(), page->widget()->height());
    }
}

TEST_F(PrintDialogTest, TheWindowDoesNotJump) {
    open(conflictingPpd(mHome));
    const QSize size = mDialog->size();
    const QPoint print = control<QPushButton>("print").mapTo(mDialog.get(), QPoint());
    for (int tab = mDialog->tabs().count() - 1; tab >= 0; --tab) {
        openTab(*mDialog, tab);
        EXPECT_EQ(mDialog->size(), size) << "page " << tab;
    }
    model().chooseAll(
        {{QStringLiteral("Density"), QStringLiteral("Dark")}, {kQuality, QStringLiteral("Best")}});
    settleWithFix(*mDialog);
    ASSERT_THAT(messages(), testing::SizeIs(1));
    EXPECT_EQ(mDialog->size(), size) << "with a message";
    EXPECT_EQ(control<QPushButton>("print").mapTo(mDialog.get(), QPoint()).y(), print.y());
}

TEST_F(PrintDialogTest, TheCommandIsCopied) {
    open();
    openTab(*mDialog, kSummaryTab);
    QApplication::clipboard()->clear();
    press("copyLabelcut");
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
              labelcutCommand(model()).toStdString());
    EXPECT_FALSE(control<QPushButton>("copyLp").isVisible()) << "no queue, no lp";
}

TEST_F(PrintDialogTest, APresetIsKeptAppliedAndShownWhileItIsInForce) {
    open();
    click(control<QCheckBox>("mHalfCutChkBx"));
    control<QSpinBox>("copies").setValue(4);
    savePreset(QStringLiteral("Half"));
    auto& list = control<QComboBox>("presets");
    EXPECT_EQ(list.currentText().toStdString(), "Half");
    press("reset");
    EXPECT_EQ(list.currentIndex(), -1) << "the choices are no longer the preset's";
    control<QSpinBox>("copies").setValue(1);
    choose(list, 0);
    EXPECT_EQ(choice("KvHalfCut"), "ON");
    EXPECT_EQ(model().copies(), 4);
    EXPECT_EQ(list.currentText().toStdString(), "Half");
    expectOneTruth(*mDialog);
    press("undo");
    EXPECT_EQ(choice("KvHalfCut"), "OFF");
    EXPECT_EQ(list.currentIndex(), -1);
    open();
    EXPECT_EQ(presets(), QStringList{QStringLiteral("Half")}) << "in the next window";
}

TEST_F(PrintDialogTest, AReplacedOrRemovedPresetComesBack) {
    open();
    savePreset(QStringLiteral("Mine"));
    click(control<QCheckBox>("mHalfCutChkBx"));
    savePreset(QStringLiteral("Mine"));
    ASSERT_THAT(messages(), ElementsAre("The preset “Mine” was replaced."));
    click(*offer(mDialog->messages(), QStringLiteral("Undo")));
    choose(control<QComboBox>("presets"), 0);
    EXPECT_EQ(choice("KvHalfCut"), "OFF") << "the first one";

    click(control<QToolButton>("removePreset"));
    EXPECT_TRUE(presets().isEmpty());
    ASSERT_THAT(messages(), ElementsAre("The preset “Mine” was removed."));
    click(*offer(mDialog->messages(), QStringLiteral("Undo")));
    EXPECT_EQ(presets(), QStringList{QStringLiteral("Mine")});
}

TEST_F(PrintDialogTest, ADamagedPresetFileIsToldAndTheDialogWorks) {
    open();
    savePreset(QStringLiteral("Mine"));
    overwrite(PresetStore().filePath(PrinterIdentity::forPpd(model().ppd())), "{ broken");
    open();
    EXPECT_TRUE(presets().isEmpty());
    EXPECT_THAT(messages(), testing::SizeIs(1));
    click(control<QCheckBox>("mHalfCutChkBx"));
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, APresetFileThatFailsWhileTheWindowIsOpenIsToldAndChangesNothing) {
    open();
    click(control<QCheckBox>("mHalfCutChkBx"));
    savePreset(QStringLiteral("Mine"));
    const QString path = PresetStore().filePath(PrinterIdentity::forPpd(model().ppd()));
    const Settings marks = model().marks();
    overwrite(path, "{ broken");
    auto& list = control<QComboBox>("presets");
    choose(list, 0);
    EXPECT_THAT(messages(), ElementsAre(HasSubstr(path.toStdString())));
    EXPECT_EQ(list.currentIndex(), -1) << "it is not in force";
    EXPECT_FALSE(control<QToolButton>("removePreset").isEnabled());
    EXPECT_EQ(model().marks(), marks);
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, APresetThatCannotBeRemovedOrBroughtBackIsTold) {
    open();
    savePreset(QStringLiteral("Mine"));
    const QString path = PresetStore().filePath(PrinterIdentity::forPpd(model().ppd()));
    const QByteArray contents = overwrite(path, "{ broken");
    click(control<QToolButton>("removePreset"));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("Mine")));
    EXPECT_EQ(presets(), QStringList{QStringLiteral("Mine")});

    overwrite(path, contents);
    click(control<QToolButton>("removePreset"));
    QPushButton* undo = offer(mDialog->messages(), QStringLiteral("Undo"));
    ASSERT_TRUE(undo);
    // Where the folder was there is a file.
    QDir folder = QFileInfo(path).dir();
    ASSERT_TRUE(folder.removeRecursively());
    overwrite(folder.path(), "");
    click(*undo);
    EXPECT_THAT(messages(), testing::Contains(HasSubstr(folder.path().toStdString())));
    EXPECT_THAT(presets(), IsEmpty());
}

TEST_F(PrintDialogTest, PrintSaysThatAPanelRefuses) {
    PluginFolder folder({"forbids_printing"});
    const PluginSearch search = folder.load();
    ASSERT_EQ(search.loaded.size(), 1U);
    DialogRequest request;
    request.files = {kLabels};
    request.ppdPath = kTapePpd;
    mDialog = std::make_unique<PrintDialog>(request, search, hostSystem(), noService());
    mDialog->show();
    settleWithPrinter(*mDialog);
    press("print");
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("A panel does not let the job be printed")));
    EXPECT_FALSE(mDialog->findChild<QFileDialog*>());
    EXPECT_TRUE(mDialog->isVisible());
    mDialog.reset();
}

TEST_F(PrintDialogTest, APrinterWithoutOptionsOfItsOwnSaysSo) {
    QFile ppd(mHome.path(QStringLiteral("plain.ppd")));
    ASSERT_TRUE(ppd.open(QIODevice::WriteOnly));
    ppd.write(PpdBuilder().size("Small", 100, 200).text());
    ppd.close();
    for (const auto& [path, isPlain] :
         {std::pair(ppd.fileName(), true), std::pair(kTapePpd, false)}) {
        open(path);
        const auto labels = mDialog->findChildren<QLabel*>();
        EXPECT_EQ(std::ranges::any_of(labels,
                                      [](const QLabel* label) {
                                          return label->text() ==
                                                 u"This printer has no other options.";
                                      }),
                  isPlain)
            << path.toStdString();
    }
}

TEST_F(PrintDialogTest, APpdThatCannotBeReadLeavesThePrinterInForce) {
    open();
    const Settings marks = model().marks();
    QFile broken(mHome.path(QStringLiteral("broken.ppd")));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("this is no PPD\n");
    broken.close();
    auto& printers = control<QComboBox>("printers");
    choose(printers, printers.count() - 1);
    auto* chooser = mDialog->findChild<QFileDialog*>();
    ASSERT_TRUE(chooser);
    Q_EMIT chooser->fileSelected(broken.fileName());
    chooser->reject();
    settleWithPrinter(*mDialog);
    EXPECT_EQ(model().marks(), marks);
    EXPECT_TRUE(printers.currentText().contains(QStringLiteral("tape.ppd")));
    // Who opens the list is told as well that there is no print service.
    EXPECT_THAT(mDialog->printerMessages().texts().last().toStdString(), HasSubstr("broken.ppd"));
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, AnotherPpdTakesOverWithAllItsPages) {
    open();
    auto& printers = control<QComboBox>("printers");
    choose(printers, printers.count() - 1);
    auto* chooser = mDialog->findChild<QFileDialog*>();
    ASSERT_TRUE(chooser);
    Q_EMIT chooser->fileSelected(kRollPpd);
    chooser->reject();
    settleWithPrinter(*mDialog);
    EXPECT_EQ(choice("KvCutLabel"), "1");
    expectOneTruth(*mDialog);
    choose(printers, 0);
    settleWithPrinter(*mDialog);
    EXPECT_EQ(choice("KvHalfCut"), "OFF") << "the first one is still listed";
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, WithoutADocumentPrintIsOff) {
    DialogRequest request;
    request.ppdPath = kTapePpd;
    mDialog = openDialog(request);
    EXPECT_FALSE(control<QPushButton>("print").isEnabled());
    EXPECT_EQ(control<QLabel>("document").text().toStdString(), "No document chosen");
    press("chooseFiles");
    auto* chooser = mDialog->findChild<QFileDialog*>();
    ASSERT_TRUE(chooser);
    Q_EMIT chooser->filesSelected({kLabels});
    chooser->reject();
    ASSERT_TRUE(turnUntil([&] { return model().pageCount() == kLabelCount; }));
    settle();
    EXPECT_TRUE(control<QPushButton>("print").isEnabled());
}

TEST_F(PrintDialogTest, ADocumentThatCannotBeReadIsNamed) {
    DialogRequest request;
    request.files = {mHome.path(QStringLiteral("missing.pdf"))};
    request.ppdPath = kTapePpd;
    mDialog = openDialog(request);
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("missing.pdf")));
}

TEST_F(PrintDialogTest, EveryColourComesFromThePalette) {
    // Given a palette that nobody would choose, as high contrast ones are to a designer's eye.
    const QPalette before = QApplication::palette();
    QPalette palette(Qt::yellow, Qt::black);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, Qt::yellow);
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
        palette.setColor(role, Qt::black);
    QApplication::setPalette(palette);
    open(conflictingPpd(mHome),
         {{QStringLiteral("Density"), QStringLiteral("Dark")}, {kQuality, QStringLiteral("Best")}});
    for (const QWidget* widget : mDialog->findChildren<QWidget*>()) {
        EXPECT_TRUE(widget->styleSheet().isEmpty()) << widget->objectName().toStdString();
        EXPECT_EQ(widget->palette().color(QPalette::Active, QPalette::WindowText),
                  QColor(Qt::yellow))
            << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
        EXPECT_EQ(widget->palette().color(QPalette::Active, QPalette::Window), QColor(Qt::black))
            << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
    }
    mDialog.reset();
    QApplication::setPalette(before);
}

TEST_F(PrintDialogTest, ChoicesAreKeptForEachPrinterWhileTheWindowIsOpen) {
    open();
    click(control<QCheckBox>("mHalfCutChkBx"));
    openTab(*mDialog, kFeaturesTab);
    choose(optionBox(*mDialog, "Quality"), QStringLiteral("Best"));
    control<QSpinBox>("copies").setValue(3);
    chooseFile(kRollPpd);
    ASSERT_EQ(choice("KvCutLabel"), "1");
    choose(control<QComboBox>("printers"), 0);
    settleWithPrinter(*mDialog);
    EXPECT_EQ(choice("KvHalfCut"), "ON");
    EXPECT_EQ(choice("Quality"), "Best");
    EXPECT_EQ(model().copies(), 3) << "of the job, not of a printer";
    EXPECT_FALSE(control<QPushButton>("undo").isEnabled()) << "nothing else is kept";
    EXPECT_THAT(messages(), IsEmpty());
    expectOneTruth(*mDialog);
    press("reset");
    EXPECT_EQ(choice("KvHalfCut"), "OFF");
    open();
    EXPECT_EQ(choice("Quality"), "Normal") << "in another window";
}

TEST_F(PrintDialogTest, APpdThatCannotBeOpenedAtTheStartIsToldAndNoPrinterTakesItsPlace) {
    ASSERT_TRUE(rememberQueue(QStringLiteral("other")));
    QFile broken(mHome.path(QStringLiteral("broken.ppd")));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("this is no PPD\n");
    broken.close();
    for (const QString& path : {QStringLiteral("/nonexistent.ppd"), broken.fileName()}) {
        QStringList complaints;
        DialogRequest request;
        request.files = {kLabels};
        request.ppdPath = path;
        request.complain = [&](const QString& sentence) { complaints << sentence; };
        mDialog.reset();
        mDialog = openDialog(request);
        ASSERT_TRUE(turnUntil([&] { return model().pageCount() == kLabelCount; }));
        EXPECT_FALSE(model().hasPrinter());
        EXPECT_FALSE(control<QPushButton>("print").isEnabled());
        ASSERT_EQ(complaints.size(), 1);
        EXPECT_TRUE(complaints.front().contains(path));
        EXPECT_TRUE(mDialog->printerMessages().texts().contains(complaints.front()));
        // What goes wrong later is the window's business alone.
        chooseFile(broken.fileName());
        EXPECT_EQ(complaints.size(), 1);
        chooseFile(kTapePpd);
        EXPECT_TRUE(control<QPushButton>("print").isEnabled());
        EXPECT_FALSE(mDialog->printerMessages().texts().contains(complaints.front()));
    }
}

TEST_F(PrintDialogTest, TheWindowIsShownWithTheFirstPrinterOfAFileOrWithItsFailure) {
    for (const QString& path : {kTapePpd, QStringLiteral("/nonexistent.ppd")}) {
        DialogRequest request;
        request.files = {kLabels};
        request.ppdPath = path;
        PrintDialog dialog(request, plugins(), hostSystem(), noService());
        dialog.showWithFirstPrinter();
        EXPECT_FALSE(dialog.isVisible());
        ASSERT_TRUE(turnUntil([&] { return dialog.isVisible(); }));
        EXPECT_TRUE(turnUntil([&] { return !dialog.awaitsPrinter(); }));
    }
    PrintDialog dialog(DialogRequest(), plugins(), hostSystem(), noService());
    dialog.showWithFirstPrinter();
    EXPECT_TRUE(dialog.isVisible()) << "nothing to wait for";
}

TEST_F(PrintDialogTest, APpdThatTakesLongToReadLeavesTheWindowAnswering) {
    open();
    QByteArray lines;
    for (int i = 0; i < 8'000; ++i) {
        const QByteArray name = "Long" + QByteArray::number(i);
        lines += "*OpenUI *" + name + ": PickOne\n*Default" + name + ": A\n*" + name +
                 " A: \"\"\n*CloseUI: *" + name + "\n";
    }
    const QString path = extendedPpd(mHome, lines + "*OpenUI *Half/Half: PickOne\n");
    auto& printers = control<QComboBox>("printers");
    choose(printers, printers.count() - 1);
    auto* chooser = mDialog->findChild<QFileDialog*>();
    ASSERT_TRUE(chooser);
    EXPECT_LT(timeOf([&] { Q_EMIT chooser->fileSelected(path); }), kSoon);
    chooser->reject();
    EXPECT_TRUE(mDialog->awaitsPrinter());
    EXPECT_TRUE(model().hasPrinter()) << "the one before stays in force meanwhile";
    settleWithPrinter(*mDialog);
    EXPECT_THAT(mDialog->printerMessages().texts().join(u'\n').toStdString(),
                HasSubstr("its text ends within the option “Half”"));
    EXPECT_TRUE(model().hasPrinter());
}

TEST_F(PrintDialogTest, APpdThatWasTriedOnceIsNotThePrinterOfTheNextStart) {
    open();
    DialogRequest request;
    request.files = {kLabels};
    mDialog = openDialog(request);
    turnUntil([&] { return !mDialog->printerMessages().texts().isEmpty(); });
    EXPECT_FALSE(model().hasPrinter());
}

TEST_F(PrintDialogTest, WithoutAPrintServiceTheListOpensAndBringsTheExplanationBack) {
    DialogRequest request;
    request.files = {kLabels};
    mDialog = openDialog(request);
    const auto said = [this] { return mDialog->printerMessages().texts(); };
    ASSERT_TRUE(turnUntil([&] { return !said().isEmpty(); }));
    const QStringList explanation = said();
    ASSERT_EQ(explanation.size(), 1);
    click(*mDialog->printerMessages().findChild<QToolButton*>());
    ASSERT_THAT(said(), IsEmpty());

    auto& printers = control<QComboBox>("printers");
    printers.showPopup();
    settle();
    EXPECT_TRUE(printers.view()->isVisible());
    EXPECT_EQ(said(), explanation);
    printers.hidePopup();
    click(*offer(mDialog->printerMessages(), QStringLiteral("Try")));
    EXPECT_TRUE(turnUntil([&] { return said() == explanation; }));
    chooseFile(kTapePpd);
    EXPECT_TRUE(model().hasPrinter());
    EXPECT_THAT(said(), IsEmpty()) << "a printer that is known by its PPD needs no service";
}

TEST_F(PrintDialogTest, TheButtonPromisesNothingWhileTheRangeIsNotUnderstood) {
    open();
    auto& range = control<QLineEdit>("pageRange");
    const auto& print = control<QPushButton>("print");
    for (const char* text : {"8-3", "1,3,x", "x"}) {
        type(range, QStringLiteral("2-6"));
        EXPECT_EQ(print.text().toStdString(), "&Print 5 labels");
        type(range, QLatin1String(text));
        EXPECT_EQ(print.text().toStdString(), "&Print") << text;
        EXPECT_THAT(control<QLabel>("sentence").text().toStdString(),
                    testing::StartsWith("Labels on "))
            << text;
    }
    press("print");
    EXPECT_TRUE(range.hasFocus()) << "where it can be mended";
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("A range is written as")));
    click(control<QRadioButton>("allLabels"));
    EXPECT_EQ(print.text().toStdString(), "&Print 12 labels");
}

TEST_F(PrintDialogTest, UndoEndsARangeThatIsNotUnderstood) {
    open();
    auto& range = control<QLineEdit>("pageRange");
    type(range, QStringLiteral("2-6"));
    type(range, QStringLiteral("8-3"));
    press("undo");
    EXPECT_EQ(control<QPushButton>("print").text().toStdString(), "&Print 12 labels");
    press("print");
    EXPECT_TRUE(mDialog->findChild<QFileDialog*>()) << "nothing is wrong any more";
    expectOneTruth(*mDialog);
}

TEST_F(PrintDialogTest, ADismissedMessageGivesTheFocusBack) {
    open();
    auto& copies = control<QSpinBox>("copies");
    copies.setFocus();
    Q_EMIT model().told(QStringLiteral("Something happened."));
    settle();
    EXPECT_TRUE(copies.hasFocus()) << "a message takes no focus";
    click(*mDialog->messages().findChild<QToolButton*>());
    EXPECT_THAT(messages(), IsEmpty());
    EXPECT_EQ(mDialog->focusWidget(), &copies);
}

TEST_F(PrintDialogTest, FilesAreAskedForByAPlainTitleAndByWhatCanBePrinted) {
    open();
    press("chooseFiles");
    auto* files = mDialog->findChild<QFileDialog*>();
    ASSERT_TRUE(files);
    EXPECT_EQ(files->windowTitle().toStdString(), "Choose Files");
    ASSERT_EQ(files->nameFilters().size(), 2);
    for (const char* pattern : {"*.pdf", "*.ps", "*.png", "*.jpg", "*.jpeg", "*.svg", "*.txt"})
        EXPECT_THAT(files->nameFilters().front().toStdString(), HasSubstr(pattern));
    EXPECT_EQ(files->nameFilters().back().toStdString(), "All files (*)");
    files->reject();
    settle();
    choose(control<QComboBox>("printers"), control<QComboBox>("printers").count() - 1);
    auto* ppd = mDialog->findChild<QFileDialog*>();
    ASSERT_TRUE(ppd);
    EXPECT_EQ(ppd->windowTitle().toStdString(), "Choose a PPD File");
    EXPECT_THAT(ppd->nameFilters().join(u' ').toStdString(),
                testing::AllOf(HasSubstr("*.ppd.gz"), HasSubstr("All files (*)")));
}

TEST_F(PrintDialogTest, APageOutOfSightIsUpToDateWhenItIsLookedAt) {
    open();
    openTab(*mDialog, kFeaturesTab);
    openTab(*mDialog, kPanelTab);
    auto& quality = optionBox(*mDialog, "Quality");
    model().choose(kQuality, QStringLiteral("Best"));
    settle();
    EXPECT_EQ(quality.currentData().toString().toStdString(), "Normal") << "nobody looks";
    openTab(*mDialog, kFeaturesTab);
    EXPECT_EQ(quality.currentData().toString().toStdString(), "Best");
}

} // namespace labelcut::test
