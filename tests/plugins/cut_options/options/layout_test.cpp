// Tests of the cut-options panel: the general interface file cut down to the printer at hand.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTranslator>

#include <algorithm>
#include <set>

#include "platform/toolkit/points.h"
#include "tests/plugins/cut_options/options/panel_fixtures.h"

namespace labelcut::test {
namespace {

constexpr double kFileHeight = 262;
constexpr double kFileWidth = 516;

struct Printer {
    unsigned offers = 0;
    bool isRV = false;
    bool autoCutShown = false;
    bool has(OptionIndex option) const { return (offers & offer(option)) != 0; }
    bool showsAutoCut() const { return has(AutoCut) && autoCutShown; }
};

void PrintTo(const Printer& p, std::ostream* out) {
    *out << (p.isRV ? "RV" : "SG") << (p.autoCutShown ? " auto cut shown" : "") << " offers";
    for (int option = 0; option < kOptionCount; ++option) {
        if ((p.offers >> option & 1U) != 0)
            *out << ' ' << kKeywords[static_cast<std::size_t>(option)];
    }
}

/// Where the rules put one printer's rows, as distances of lower edges from the top edge.
struct Expected {
    std::map<std::string, double> below;
    double height = 0;
    std::set<int> tags;
};

Expected expectedFor(const Printer& p) {
    struct Row {
        const char* name;
        bool shown;
    };
    const Row kRows[] = {
        {"mAutoCutChkBx", p.showsAutoCut()},        {"mCutAndEndChkBx", p.has(CutAtEnd)},
        {"mHalfCutChkBx", p.has(HalfCut)},          {"mSpecialTapeChkBx", p.has(SpecialTape)},
        {"mChainPrintChkBx", p.has(ChainPrint)},    {"mMirrorPrintChkBx", p.has(Mirror)},
        {"mRemoveBlkSpaceChkBx", p.has(RemoveBlk)},
    };
    Expected e;
    double below = 38;
    double dropped = 0;
    if (p.has(CutLabel)) {
        e.below = {{"mCutEveryChkBx", 38},
                   {"mCutEveryTxBx", 38 + 26 + 4},
                   {"mCutEveryStpr", 38 + 26 + 5},
                   {"mCutEveryStr", 38 + 26 - 2}};
        below = 38 + 26 + 26;
    } else {
        dropped = 52;
    }
    for (const Row& row : kRows) {
        if (row.shown) {
            e.below[row.name] = below;
            below += 26;
        } else {
            dropped += 26;
        }
    }
    e.height = std::max(150.0, kFileHeight - dropped);
    // Each entry, and what it needs.
    const bool cut = p.showsAutoCut();
    const bool half = p.has(HalfCut);
    const bool chain = p.has(ChainPrint);
    const std::pair<int, bool> kEntries[] = {
        {1, p.isRV},
        {2, p.has(CutAtEnd)},
        {3, p.has(CutLabel)},
        {4, !p.isRV},
        {5, chain},
        {6, half},
        {7, half && chain},
        {8, cut},
        {9, cut && chain},
        {10, cut && half},
        {11, cut && half && chain},
        {12, p.has(SpecialTape)},
    };
    for (const auto& [tag, kept] : kEntries) {
        if (kept)
            e.tags.insert(tag);
    }
    return e;
}

QComboBox& popUp(PanelUnderTest& panel) {
    return *qobject_cast<QComboBox*>(panel.mOptionPopUpButton.widget());
}

QRectF rectOf(const View& view) {
    return points::rect(*view.widget());
}

std::vector<std::pair<std::string, View>> rowControls(PanelUnderTest& panel) {
    std::vector<std::pair<std::string, View>> all;
    for (std::size_t i = 0; i < kOptionCount; ++i)
        all.emplace_back(kBoxNames[i], panel.*kBoxes[i]);
    all.emplace_back("mCutEveryTxBx", panel.mCutEveryTxBx);
    all.emplace_back("mCutEveryStpr", panel.mCutEveryStpr);
    all.emplace_back("mCutEveryStr", panel.mCutEveryStr);
    return all;
}

/// Everything that shows lies within the panel, and nothing lies on anything else, in pixels.
void expectTidy(PanelUnderTest& panel) {
    QWidget* view = panel.panelView();
    std::vector<QWidget*> shown;
    for (QWidget* child : view->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!child->isHidden())
            shown.push_back(child);
    }
    for (const QWidget* a : shown) {
        EXPECT_TRUE(view->rect().contains(a->geometry()))
            << a->objectName().toStdString() << " leaves the panel";
        for (const QWidget* b : shown) {
            if (a != b) {
                EXPECT_FALSE(a->geometry().intersects(b->geometry()))
                    << a->objectName().toStdString() << " lies on "
                    << b->objectName().toStdString();
            }
        }
    }
}

/// No shown text is cut off.
void expectUnclipped(PanelUnderTest& panel) {
    for (const auto control : kBoxes) {
        const QWidget* widget = (panel.*control).widget();
        if (widget->isHidden())
            continue;
        EXPECT_GE(widget->width(), widget->sizeHint().width())
            << widget->objectName().toStdString();
        EXPECT_GE(widget->height(), widget->fontMetrics().height())
            << widget->objectName().toStdString();
    }
    const QWidget* label = panel.mCutEveryStr.widget();
    if (!label->isHidden()) {
        const QWidget* field = panel.mCutEveryTxBx.widget();
        EXPECT_GE(field->height(), field->fontMetrics().height() + 6);
        EXPECT_GE(label->width(), label->sizeHint().width());
        EXPECT_GE(label->height(), label->sizeHint().height());
    }
}

class Layout : public testing::TestWithParam<std::tuple<bool, bool>> {};

TEST_P(Layout, PacksExactlyWhatThePpdOffersForEverySetOfOptions) {
    const auto [isRV, autoCutShown] = GetParam();
    for (unsigned offers = 0; offers <= kAllOptions; ++offers) {
        const Printer printer{offers, isRV, autoCutShown};
        SCOPED_TRACE(testing::PrintToString(printer));
        PanelOnHost setting(printerOffering(offers, isRV, autoCutShown).open());
        PanelUnderTest& panel = setting.load();
        const Expected expected = expectedFor(printer);

        for (const auto& [name, control] : rowControls(panel)) {
            const auto row = expected.below.find(name);
            EXPECT_EQ(control.isHidden(), row == expected.below.end()) << name;
            if (row != expected.below.end()) {
                EXPECT_EQ(rectOf(control).bottom(), row->second) << name;
            }
        }
        EXPECT_EQ(View(panel.kPDEView).frame().size, (Size{kFileWidth, expected.height}));
        EXPECT_EQ(panel.panelView()->size(), QSize(516, static_cast<int>(expected.height)));

        QComboBox& box = popUp(panel);
        std::set<int> tags;
        for (int i = 0; i < box.count(); ++i) {
            tags.insert(box.itemData(i, PopUpButton::kTagRole).toInt());
            EXPECT_EQ(box.itemText(i), QString());
            EXPECT_FALSE(box.itemData(i, Qt::AccessibleTextRole).toString().isEmpty());
            EXPECT_FALSE(box.itemIcon(i).isNull());
        }
        EXPECT_EQ(tags, expected.tags);
        EXPECT_EQ(box.count(), static_cast<int>(tags.size()));
        EXPECT_TRUE(std::is_sorted(tags.begin(), tags.end()));
        EXPECT_EQ(box.currentIndex(), tags.empty() ? -1 : 0);

        ASSERT_TRUE(panel.mOptionView);
        EXPECT_EQ(panel.mOptionView->isRV(), isRV);
        EXPECT_EQ(rectOf(View(panel.mOptionView)), QRectF(204, 130 - 84, 300, 84));
        EXPECT_FALSE(panel.mOptionView->isHidden());
        EXPECT_FALSE(panel.mOptionDummyView);
        expectTidy(panel);
        if (HasFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(All, Layout, testing::Combine(testing::Bool(), testing::Bool()),
                         [](const auto& p) {
                             return std::string(std::get<0>(p.param) ? "RV" : "SG") +
                                    (std::get<1>(p.param) ? "AutoCutShown" : "AutoCutHidden");
                         });

TEST(LayoutOfPoints, HasItsYUpward) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.load();
    EXPECT_EQ(panel.mCutEveryChkBx.frame().origin.y, kFileHeight - 38);
    EXPECT_EQ(panel.mRemoveBlkSpaceChkBx.frame().origin.y, kFileHeight - 38 - 26 * 8);
    EXPECT_EQ(View(panel.mOptionView).frame().origin.y, kFileHeight - 130);
}

TEST(LayoutOfRows, KeepsEachControlsOwnX) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.load();
    for (const auto control : kBoxes)
        EXPECT_EQ((panel.*control).frame().origin.x, 12);
    EXPECT_EQ(panel.mCutEveryTxBx.frame().origin.x, 32);
    EXPECT_EQ(panel.mCutEveryStpr.frame().origin.x, 82);
    EXPECT_EQ(panel.mCutEveryStr.frame().origin.x, 108);
}

TEST(LayoutOfRows, TruncatesTheCountRowsPositionOnly) {
    // A panel of fractional height: only the count's row, and what follows, lie on whole points.
    CutDownBundle bundle({});
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open(), bundle.root());
    PanelUnderTest& panel = setting.load();
    points::setRootSize(*panel.kPDEView, QSizeF(kFileWidth, 262.75));
    panel.awakeFromNib();
    EXPECT_EQ(panel.mCutEveryChkBx.frame().origin.y, 262.75 - 38);
    EXPECT_EQ(panel.mCutEveryTxBx.frame().origin.y, 198 - 4);
    EXPECT_EQ(panel.mCutEveryStpr.frame().origin.y, 198 - 5);
    EXPECT_EQ(panel.mCutEveryStr.frame().origin.y, 198 + 2);
    EXPECT_EQ(panel.mAutoCutChkBx.frame().origin.y, 198 - 26);

    PanelOnHost other(printerOffering(offer(HalfCut) | offer(Mirror), true, true).open(),
                      bundle.root());
    PanelUnderTest& without = other.load();
    points::setRootSize(*without.kPDEView, QSizeF(kFileWidth, 462.75));
    without.awakeFromNib();
    const double shrunk = 462.75 - 52 - 26 * 5;
    EXPECT_EQ(View(without.kPDEView).frame().size.height, shrunk);
    EXPECT_EQ(rectOf(without.mHalfCutChkBx).bottom(), 38);
    EXPECT_EQ(rectOf(without.mMirrorPrintChkBx).bottom(), 64);
}

TEST(LayoutOfThePreview, ReplacesThePlaceholderAndKnowsTheBoxes) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    PanelUnderTest& panel = setting.load();
    const OptionView13_v400_& view = *panel.mOptionView;
    EXPECT_EQ(view.parentWidget(), panel.panelView());
    EXPECT_EQ(view.objectName(), QStringLiteral("mOptionView"));
    EXPECT_FALSE(panel.panelView()->findChild<QWidget*>(QStringLiteral("mOptionDummyView")));
    EXPECT_TRUE(view.cutEveryChkBx().isSame(panel.mCutEveryChkBx));
    EXPECT_TRUE(view.cutAndEndChkBx().isSame(panel.mCutAndEndChkBx));
    EXPECT_TRUE(view.mirrorPrintChkBx().isSame(panel.mMirrorPrintChkBx));
    EXPECT_TRUE(view.autoCutChkBx().isSame(panel.mAutoCutChkBx));
    EXPECT_TRUE(view.halfCutChkBx().isSame(panel.mHalfCutChkBx));
    EXPECT_TRUE(view.chainPrintChkBx().isSame(panel.mChainPrintChkBx));
    EXPECT_TRUE(view.specialTapeChkBx().isSame(panel.mSpecialTapeChkBx));
    EXPECT_TRUE(view.removeBlkSpaceChkBx().isSame(panel.mRemoveBlkSpaceChkBx));
}

TEST(LayoutOfStates, SetsNoStateNoTitleAndSendsNothing) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    PanelUnderTest& panel = setting.load();
    for (const auto control : kBoxes) {
        EXPECT_EQ((panel.*control).state(), 0);
        EXPECT_TRUE((panel.*control).isEnabled());
    }
    EXPECT_EQ(panel.mCutEveryTxBx.stringValue(), QStringLiteral("1"));
    EXPECT_EQ(panel.mCutEveryStpr.intValue(), 1);
    EXPECT_EQ(panel.mCutEveryChkBx.title(), QStringLiteral("Cut every"));
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(LayoutOfThePopUp, SelectsTheFirstEntryLeft) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    EXPECT_EQ(setting.load().mOptionPopUpButton.selectedTag(), 2);
    PanelOnHost tape(PpdBuilder::tapePrinter().open());
    EXPECT_EQ(tape.load().mOptionPopUpButton.selectedTag(), 4);
    PanelOnHost roll(PpdBuilder::rollPrinter().open());
    EXPECT_EQ(roll.load().mOptionPopUpButton.selectedTag(), 1);
}

TEST(LayoutOfTheView, IsDoneOnceAndNotRedone) {
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
    PanelUnderTest& panel = setting.show();
    QWidget* view = panel.panelView();
    OptionView13_v400_* preview = panel.mOptionView;
    const QSize size = view->size();
    ppd::markOption(setting.host->ppd.get(), "KvHalfCut", "ON");
    panel.restoreValuesAndReturnError(nullptr);
    panel.willShow();
    EXPECT_EQ(panel.panelView(), view);
    EXPECT_EQ(panel.mOptionView, preview);
    EXPECT_EQ(view->size(), size);
}

TEST(LayoutOfTheView, TakesNoNoticeOfTheConnection) {
    for (const bool usb : {false, true}) {
        PanelOnHost setting(printerOffering(kAllOptions, false, true).open());
        setting.host->fakePrinter.uri =
            PMURL(usb ? QStringLiteral("usb://x") : QStringLiteral("ipp://x"));
        PanelUnderTest& panel = setting.load();
        EXPECT_EQ(panel.usb_dec, usb ? 1 : 0);
        EXPECT_EQ(panel.panelView()->height(), 262);
    }
}

TEST(LayoutOfTheView, KeepsItsSizeForAHostThatCannotBeTold) {
    PanelOnHost setting(printerOffering(0, false, false).open());
    setting.host->responds = false;
    PanelUnderTest& panel = setting.load();
    EXPECT_EQ(panel.panelView()->height(), 262);
    // The preview stands where it would have stood in the smaller panel.
    EXPECT_EQ(View(panel.mOptionView).frame().origin.y, 20);
}

// What the interface file may lack.

TEST(LayoutWithAbsentControls, StillAdvancesTheRows) {
    for (std::size_t absent = 0; absent < kOptionCount; ++absent) {
        const CutDownBundle bundle({QLatin1String(kBoxNames[absent])});
        PanelOnHost setting(printerOffering(kAllOptions, true, true).open(), bundle.root());
        PanelUnderTest& panel = setting.load();
        const Expected expected = expectedFor({kAllOptions, true, true});
        for (const auto& [name, control] : rowControls(panel)) {
            if (control) {
                EXPECT_EQ(rectOf(control).bottom(), expected.below.at(name)) << name;
            } else {
                EXPECT_EQ(name, kBoxNames[absent]);
            }
        }
    }
}

TEST(LayoutWithoutAPopUp, Works) {
    const CutDownBundle bundle({QStringLiteral("mOptionPopUpButton")});
    PanelOnHost setting(printerOffering(offer(HalfCut), false, true).open(), bundle.root());
    PanelUnderTest& panel = setting.load();
    EXPECT_FALSE(panel.mOptionPopUpButton);
    EXPECT_EQ(panel.panelView()->height(), 150);
}

TEST(LayoutWithoutAPlaceholder, KeepsThePreviewOutOfTheView) {
    const CutDownBundle bundle({QStringLiteral("mOptionDummyView")}, CutDownBundle::Pictures::All);
    PanelOnHost setting(PpdBuilder::tapePrinter().open(), bundle.root());
    PanelUnderTest& panel = setting.show();
    ASSERT_TRUE(panel.mOptionView);
    EXPECT_FALSE(panel.mOptionView->parentWidget());
    EXPECT_EQ(View(panel.mOptionView).frame().size, Size());
    EXPECT_FALSE(panel.panelView()->findChild<QWidget*>(QStringLiteral("mOptionView")));
    // It still picks its picture, and goes with its panel.
    EXPECT_EQ(panel.mOptionView->targetImageName(), QStringLiteral("AHCMOnOffOffOff"));
    const QPointer<QWidget> preview(panel.mOptionView);
    setting.panel.reset();
    EXPECT_FALSE(preview);
}

TEST(LayoutWithoutARootView, CountsFromAPanelOfNoSize) {
    CutDownBundle bundle({});
    bundle.replace("name=\"kPDEView\"", "name=\"somethingElse\"");
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open(), bundle.root());
    PanelUnderTest& panel = setting.load();
    EXPECT_EQ(panel.panelView(), nullptr);
    // y starts at 38 below nothing; the controls hang in the file's own top widget.
    EXPECT_EQ(panel.mCutEveryChkBx.frame().origin.y, -38);
    EXPECT_EQ(panel.mCutEveryTxBx.frame().origin.y, -64 - 4);
    EXPECT_EQ(panel.mAutoCutChkBx.frame().origin.y, -90);
    ASSERT_TRUE(panel.mOptionView);
    EXPECT_EQ(View(panel.mOptionView).frame().origin.y, 150 - 130);
    panel.willShow();
    EXPECT_EQ(panel.mCutEveryChkBx.state(), 1);
}

TEST(LayoutWithoutARootView, DoesNotPileUpUnplacedPreviews) {
    CutDownBundle bundle({QStringLiteral("mOptionDummyView")});
    bundle.replace("name=\"kPDEView\"", "name=\"somethingElse\"");
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open(), bundle.root());
    PanelUnderTest& panel = setting.load();
    const QPointer<OptionView13_v400_> first(panel.mOptionView);
    ASSERT_TRUE(first);
    EXPECT_EQ(panel.panelView(), nullptr);
    EXPECT_FALSE(first);
    EXPECT_TRUE(panel.mOptionView);
}

TEST(UnreadableInterfaceFile, GivesNoViewAndNoNoise) {
    const QByteArrayList broken = {"",
                                   "not XML at all",
                                   "<ui version=\"4.0\"><widget>",
                                   "<html></html>",
                                   "<ui version=\"4.0\"></ui>",
                                   "<ui version=\"4.0\"><widget class=\"QWidget\" "
                                   "name=\"kPDEView\"></ui>"};
    for (const QByteArray& text : broken) {
        CutDownBundle bundle({});
        bundle.write(text);
        PanelOnHost setting(printerOffering(kAllOptions, false, true).open(), bundle.root());
        PanelUnderTest& panel = setting.load();
        EXPECT_EQ(panel.panelView(), nullptr) << text.toStdString();
        panel.willShow();
        panel.restoreValuesAndReturnError(nullptr);
        EXPECT_TRUE(panel.saveValuesAndReturnError(nullptr));
        EXPECT_TRUE(panel.summaryInfo());
    }
    CutDownBundle none({});
    none.remove(QStringLiteral("OptionPDE.ui"));
    PanelOnHost setting(printerOffering(kAllOptions, false, true).open(), none.root());
    EXPECT_EQ(setting.load().panelView(), nullptr);
}

TEST(MissingPictures, LeaveThePanelWhole) {
    const CutDownBundle bundle({});
    PanelOnHost setting(PpdBuilder::tapePrinter().open(), bundle.root());
    PanelUnderTest& panel = setting.show();
    ASSERT_TRUE(panel.mOptionView);
    EXPECT_EQ(panel.mOptionView->targetDrawImage(), nullptr);
    EXPECT_TRUE(panel.mOptionView->targetImageName().isNull());
    panel.panelView()->show();
    EXPECT_FALSE(panel.mOptionView->grab().isNull());
}

// Long titles, larger fonts, right to left.

PpdBuilder longTitles(const QByteArray& title) {
    PpdBuilder ppd;
    ppd.attribute("KvTapeType", "SG").attribute("KvAutoCutObjHidden", "False");
    ppd.counts(1, 9, "1", title);
    for (int option = CutAtEnd; option < kOptionCount; ++option)
        ppd.onOff(kKeywords[static_cast<std::size_t>(option)], "OFF", title);
    return ppd;
}

TEST(LongTitles, WidenThePanelSidewaysAndAreNotClipped) {
    // The longest that a PPD can hold is 80 bytes with the terminator.
    for (const QByteArray& title :
         {QByteArray(79, 'W'), QByteArray("Tom & Jerry & <u>others</u> && more, in a long title"),
          QByteArray("Leerraum vor und hinter jedem Etikett vollst\xC3\xA4ndig entfernen")}) {
        PanelOnHost setting(longTitles(title).open());
        PanelUnderTest& panel = setting.show();
        EXPECT_GT(panel.panelView()->width(), 516);
        EXPECT_EQ(panel.panelView()->height(), 262);
        const double grown = panel.panelView()->width() - 516;
        EXPECT_EQ(rectOf(View(panel.mOptionView)).left(), 204 + grown);
        EXPECT_EQ(rectOf(panel.mOptionPopUpButton).left(), 204 + grown);
        EXPECT_EQ(rectOf(panel.mHalfCutChkBx).left(), 12);
        EXPECT_EQ(panel.mHalfCutChkBx.title(), QString::fromUtf8(title));
        expectTidy(panel);
        expectUnclipped(panel);
    }
}

TEST(LongTitles, WidenThePanelByAsLittleAsOnePoint) {
    PpdBuilder ppd;
    ppd.onOff("KvHalfCut", "OFF", QByteArray(79, 'W'));
    PanelOnHost widened(ppd.open());
    const double needed = widened.show().mHalfCutChkBx.frame().size.width;
    for (const int missing : {0, 1}) {
        CutDownBundle bundle({});
        bundle.replace("<y>122</y><width>176</width>",
                       "<y>122</y><width>" + QByteArray::number(needed - missing) + "</width>");
        PanelOnHost setting(ppd.open(), bundle.root());
        PanelUnderTest& panel = setting.show();
        EXPECT_EQ(panel.mHalfCutChkBx.frame().size.width, needed);
        EXPECT_EQ(panel.panelView()->width(), 516 + missing);
    }
}

TEST(ShortTitles, LeaveThePanelAsTheFileHasIt) {
    PanelOnHost setting(longTitles("X").open());
    EXPECT_EQ(setting.show().panelView()->width(), 516);
}

TEST(TitleOfAutomaticCut, DoesNotWidenAPanelThatNeverShowsIt) {
    PpdBuilder ppd;
    ppd.counts(1, 9, "1", "X").onOff("KvAutoTapeCut", "ON", QByteArray(79, 'W'));
    PanelOnHost setting(ppd.open());
    EXPECT_EQ(setting.show().panelView()->width(), 516);
}

TEST(LongTitles, WidenWithAndWithoutARowForAutomaticCut) {
    PpdBuilder without;
    without.onOff("KvHalfCut", "OFF", QByteArray(79, 'W'));
    PanelOnHost hidden(without.open());
    EXPECT_GT(hidden.show().panelView()->width(), 516);
    PpdBuilder with;
    with.attribute("KvAutoCutObjHidden", "False");
    with.onOff("KvAutoTapeCut", "ON", QByteArray(79, 'W'));
    PanelOnHost shown(with.open());
    EXPECT_GT(shown.show().panelView()->width(), 516);
}

TEST(Inspection, TellsSelectionsStatesAndThePicture) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    PanelUnderTest& panel = setting.load();
    panel.usb_dec = 1;
    panel.mTapeState = 7;
    const QVariantMap inspected = panel.inspect();
    EXPECT_EQ(inspected.keys(),
              (QStringList{"controls", "keywords", "preview", "selections", "state"}));
    const QVariantMap state = inspected.value(QStringLiteral("state")).toMap();
    EXPECT_EQ(state.keys(), (QStringList{"autoCutShown", "isRV", "tapeState", "usb"}));
    EXPECT_EQ(state.value(QStringLiteral("tapeState")), 7);
    EXPECT_EQ(state.value(QStringLiteral("usb")), 1);
    EXPECT_EQ(state.value(QStringLiteral("autoCutShown")), 1);
    EXPECT_EQ(state.value(QStringLiteral("isRV")), false);
    const QVariantMap preview = inspected.value(QStringLiteral("preview")).toMap();
    EXPECT_EQ(preview.value(QStringLiteral("slot")), panel.mOptionView->targetSlot());
    EXPECT_EQ(preview.value(QStringLiteral("image")), panel.mOptionView->targetImageName());
    EXPECT_EQ(inspected.value(QStringLiteral("selections")).toMap().size(), 9);
}

TEST(Inspection, ListsControlsThatTheViewHas) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    const QVariantMap before = setting.construct().inspect();
    PanelUnderTest& panel = setting.load();
    EXPECT_EQ(panel.inspect().value(QStringLiteral("controls")),
              before.value(QStringLiteral("controls")))
        << "known before the view is";
    QStringList names;
    for (const QVariant& listed : before.value(QStringLiteral("controls")).toList()) {
        names.append(listed.toMap().value(QStringLiteral("name")).toString());
        EXPECT_TRUE(panel.panelView()->findChild<QWidget*>(names.last()))
            << names.last().toStdString();
    }
    EXPECT_EQ(names.size(), 13);
    EXPECT_EQ(names.mid(0, kOptionCount), QStringList(kBoxNames.begin(), kBoxNames.end()));
    EXPECT_EQ(before.value(QStringLiteral("keywords")).toStringList(),
              QStringList(kKeywords.begin(), kKeywords.end()));
}

TEST(TitlesOfEveryLanguage, AreNotClipped) {
    for (const char* language : {"en", "de", "fr", "es", "ja", "zh_CN"}) {
        for (const char* family : {"RV", "SG"}) {
            PpdBuilder ppd;
            ppd.attribute("KvTapeType", family).attribute("KvAutoCutObjHidden", "False");
            ppd.counts(1, 9, "1", "RS_CutAtEvery");
            const char* keys[] = {"RS_CutAtEnd",      "RS_MirrorPrinting", "RS_AutoTapeCut",
                                  "RS_HalfCut",       "RS_ChainPrinting",  "RS_SpecialTape",
                                  "RS_RemoveBlkSpace"};
            for (std::size_t option = CutAtEnd; option < kOptionCount; ++option)
                ppd.onOff(kKeywords[option], "OFF", keys[option - 1]);
            PanelOnHost setting(ppd.open());
            setting.bundle = std::make_shared<ResourceBundle>(QStringLiteral(LABELCUT_BUNDLE_DIR),
                                                              QLocale(QLatin1String(language)));
            PanelUnderTest& panel = setting.show();
            EXPECT_FALSE(panel.mHalfCutChkBx.title().startsWith(u"RS_")) << language;
            expectTidy(panel);
            expectUnclipped(panel);
        }
    }
}

/// A translation of the host's that replaces every text.
class Chatterbox : public QTranslator {
public:
    Chatterbox() { QCoreApplication::installTranslator(this); }
    ~Chatterbox() override { QCoreApplication::removeTranslator(this); }
    Chatterbox(const Chatterbox&) = delete;
    Chatterbox& operator=(const Chatterbox&) = delete;
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char*, const char*, int) const override {
        return QStringLiteral("the host's");
    }
};

TEST(TranslationsOfTheHost, ReachNoTextOfThePanel) {
    const auto texts = [] {
        PanelOnHost setting(PpdBuilder::tapePrinter().open());
        PanelUnderTest& panel = setting.load();
        QStringList all{panel.mCutEveryStr.stringValue(), panel.mCutEveryTxBx.stringValue(),
                        QString::number(panel.mOptionPopUpButton.count())};
        for (const auto control : kBoxes) {
            const auto* box = qobject_cast<QCheckBox*>((panel.*control).widget());
            all += {box->text(), box->shortcut().toString(), box->accessibleDescription()};
        }
        return all;
    };
    const QStringList alone = texts();
    const Chatterbox translator;
    EXPECT_EQ(texts(), alone);
}

/// The application in another font or direction for a while.
class Appearance {
public:
    Appearance(double fontFactor, Qt::LayoutDirection direction)
        : mFont(QApplication::font()) {
        QFont font = mFont;
        font.setPointSizeF(mFont.pointSizeF() * fontFactor);
        QApplication::setFont(font);
        QApplication::setLayoutDirection(direction);
    }
    ~Appearance() {
        QApplication::setFont(mFont);
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }
    Appearance(const Appearance&) = delete;
    Appearance& operator=(const Appearance&) = delete;

private:
    QFont mFont;
};

TEST(LargerFonts, ScaleThePanelWithoutOverlapOrClipping) {
    for (const double factor : {1.0, 1.5, 2.0, 3.0}) {
        const Appearance appearance(factor, Qt::LeftToRight);
        for (const QByteArray& title : {QByteArray("Half cut"), QByteArray(79, 'W')}) {
            PanelOnHost setting(longTitles(title).open());
            PanelUnderTest& panel = setting.show();
            expectTidy(panel);
            expectUnclipped(panel);
            // In points nothing moved.
            EXPECT_EQ(rectOf(panel.mCutEveryChkBx).bottom(), 38);
            EXPECT_EQ(rectOf(View(panel.mOptionView)).bottom(), 130);
            EXPECT_EQ(View(panel.kPDEView).frame().size.height, 262);
            const double scale = points::scale(*panel.panelView());
            EXPECT_EQ(panel.panelView()->height(), qRound(262 * scale));
            // How much room a font of some size takes is the font's own.
            EXPECT_GE(scale, 1 + (factor - 1) * 0.3);
        }
    }
}

TEST(RightToLeft, MirrorsEveryPosition) {
    for (const double factor : {1.0, 1.5}) {
        std::map<QString, QRect> leftToRight;
        int width = 0;
        {
            const Appearance appearance(factor, Qt::LeftToRight);
            PanelOnHost setting(longTitles("Half cut").open());
            PanelUnderTest& panel = setting.show();
            width = panel.panelView()->width();
            for (const QWidget* child :
                 panel.panelView()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
                leftToRight[child->objectName()] = child->geometry();
        }
        const Appearance appearance(factor, Qt::RightToLeft);
        PanelOnHost setting(longTitles("Half cut").open());
        PanelUnderTest& panel = setting.show();
        ASSERT_EQ(panel.panelView()->width(), width);
        ASSERT_EQ(leftToRight.size(), 13U);
        for (const auto& [name, there] : leftToRight) {
            const QRect here = panel.panelView()->findChild<QWidget*>(name)->geometry();
            EXPECT_EQ(here.left(), width - there.left() - there.width()) << name.toStdString();
            EXPECT_EQ(here.top(), there.top()) << name.toStdString();
            EXPECT_EQ(here.size(), there.size()) << name.toStdString();
        }
        expectTidy(panel);
        expectUnclipped(panel);
        // The points that the layout works in stay as they are.
        EXPECT_EQ(panel.mHalfCutChkBx.frame().origin.x, 12);
    }
}

TEST(RightToLeft, MirrorsAgainWhenTitlesWidenThePanel) {
    const Appearance appearance(1.0, Qt::RightToLeft);
    PanelOnHost setting(longTitles(QByteArray(79, 'W')).open());
    PanelUnderTest& panel = setting.show();
    expectTidy(panel);
    expectUnclipped(panel);
    EXPECT_EQ(checkBox(panel, HalfCut).geometry().right(), panel.panelView()->width() - 12 - 1);
}

// For those who do not see the panel.

QString spoken(QWidget* widget, QAccessible::Text text) {
    return QAccessible::queryAccessibleInterface(widget)->text(text);
}

TEST(Accessibility, NamesAndDescribesEveryControl) {
    PanelOnHost setting(printerOffering(kAllOptions, true, true).open());
    PanelUnderTest& panel = setting.show();
    for (const auto control : kBoxes) {
        QWidget* widget = (panel.*control).widget();
        EXPECT_EQ(spoken(widget, QAccessible::Name), (panel.*control).title());
        EXPECT_FALSE(spoken(widget, QAccessible::Name).isEmpty());
        EXPECT_GT(spoken(widget, QAccessible::Description).size(), 20);
        EXPECT_FALSE(spoken(widget, QAccessible::Description).startsWith(u"AX_"));
    }
    EXPECT_EQ(spoken(panel.mCutEveryTxBx.widget(), QAccessible::Name),
              QStringLiteral("Number of labels between cuts"));
    EXPECT_EQ(spoken(panel.mCutEveryStpr.widget(), QAccessible::Name),
              QStringLiteral("Change the number of labels"));
    EXPECT_EQ(spoken(panel.mCutEveryStr.widget(), QAccessible::Name), QStringLiteral("labels"));
    EXPECT_EQ(spoken(panel.mOptionPopUpButton.widget(), QAccessible::Name),
              QStringLiteral("Ready-made combinations"));
    EXPECT_EQ(spoken(panel.mOptionView, QAccessible::Name), QStringLiteral("Preview of the cut"));
}

TEST(Accessibility, SpeaksEveryPopUpEntryAndWhichOneIsSelected) {
    for (const bool isRV : {false, true}) {
        PanelOnHost setting(printerOffering(kAllOptions, isRV, true).open());
        PanelUnderTest& panel = setting.show();
        QComboBox& box = popUp(panel);
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&box)->child(0);
        ASSERT_EQ(list->childCount(), box.count());
        std::set<QString> spokenEntries;
        for (int i = 0; i < box.count(); ++i) {
            const QString text = list->child(i)->text(QAccessible::Name);
            EXPECT_GT(text.size(), 10);
            spokenEntries.insert(text);
            box.setCurrentIndex(i);
            EXPECT_EQ(spoken(&box, QAccessible::Description), text);
        }
        EXPECT_EQ(static_cast<int>(spokenEntries.size()), box.count());
    }
}

TEST(Accessibility, SaysWhatThePreviewShowsWheneverItChanges) {
    PanelOnHost setting(PpdBuilder::tapePrinter().open());
    PanelUnderTest& panel = setting.show();
    std::set<QString> sentences;
    const auto sentence = [&] { return spoken(panel.mOptionView, QAccessible::Description); };
    sentences.insert(sentence());
    EXPECT_EQ(sentence(), QStringLiteral("Full cut after every label, blank lead in front"));
    for (const OptionIndex option : {HalfCut, ChainPrint, Mirror, SpecialTape}) {
        checkBox(panel, option).click();
        sentences.insert(sentence());
    }
    EXPECT_EQ(sentences.size(), 5U);
    EXPECT_EQ(sentence(), QStringLiteral("Special tape: the printer never cuts, you cut by hand; "
                                         "mirrored"));
}

TEST(Titles, OfPpdsAreShownAsPlainText) {
    PanelOnHost setting(longTitles("&File <u>line</u>").open());
    PanelUnderTest& panel = setting.show();
    const QCheckBox& half = checkBox(panel, HalfCut);
    EXPECT_EQ(half.text(), QStringLiteral("&&File <u>line</u>"));
    EXPECT_EQ(half.shortcut(), QKeySequence(QStringLiteral("Alt+4")));
    panel.mCutEveryStr.setStringValue(QStringLiteral("<b>x</b>"));
    EXPECT_EQ(qobject_cast<QLabel*>(panel.mCutEveryStr.widget())->textFormat(), Qt::PlainText);
}

} // namespace
} // namespace labelcut::test
