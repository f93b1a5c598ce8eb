// Tests of the preview: which picture a combination of checkboxes shows, and how it is drawn.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <array>
#include <set>

#include "host/panels/resource_bundle.h"
#include "platform/toolkit/check_box.h"
#include "platform/toolkit/points.h"
#include "plugins/cut_options/preview/option_view.h"
#include "tests/support/expected_warnings.h"

namespace labelcut::test {
namespace {

constexpr Frame kFrame{{0, 0}, {300, 84}};

std::shared_ptr<const PDEBundle> builtBundle() {
    return std::make_shared<ResourceBundle>(QStringLiteral(LABELCUT_BUNDLE_DIR), QLocale::c());
}

enum BoxIndex { Every, End, Mirror, Auto, Half, Chain, Special, RemoveBlk };
constexpr int kBoxCount = 8;

/// A view and eight checkboxes of its own, all shown and off.
struct Stand {
    explicit Stand(bool isRV, std::shared_ptr<const PDEBundle> bundle = builtBundle())
        : view(OptionView13_v400_::initWithFrame(kFrame, std::move(bundle), isRV)) {
        for (CheckBox& box : boxes)
            Button(&box).setHidden(false);
        view->setCutEveryChkBx(Button(&boxes[Every]));
        view->setCutAndEndChkBx(Button(&boxes[End]));
        view->setMirrorPrintChkBx(Button(&boxes[Mirror]));
        view->setAutoCutChkBx(Button(&boxes[Auto]));
        view->setHalfCutChkBx(Button(&boxes[Half]));
        view->setChainPrintChkBx(Button(&boxes[Chain]));
        view->setSpecialTapeChkBx(Button(&boxes[Special]));
        view->setRemoveBlkSpaceChkBx(Button(&boxes[RemoveBlk]));
    }
    void set(std::initializer_list<BoxIndex> on) {
        for (int i = 0; i < kBoxCount; ++i)
            setCheckBoxState(boxes[static_cast<std::size_t>(i)], 0);
        for (const BoxIndex box : on)
            setCheckBoxState(boxes[box], 1);
    }

    QWidget parent;
    std::array<CheckBox, kBoxCount> boxes{CheckBox(&parent), CheckBox(&parent), CheckBox(&parent),
                                          CheckBox(&parent), CheckBox(&parent), CheckBox(&parent),
                                          CheckBox(&parent), CheckBox(&parent)};
    std::unique_ptr<OptionView13_v400_> view;
};

struct Shown {
    int state;
    bool hidden;
    bool isOn() const { return !hidden && state == 1; }
};
constexpr Shown kWays[] = {{0, false}, {1, false}, {-1, false}, {2, false}, {1, true}};

QString onOff(bool on) {
    return on ? QStringLiteral("On") : QStringLiteral("Off");
}

/// The names spell out what they show, so the wanted one follows from the boxes.
QString wantedName(const std::array<Shown, kBoxCount>& b, bool isRV) {
    const bool special = b[Special].isOn();
    const bool cut = !special && (b[Every].isOn() || b[Auto].isOn());
    const bool mirror = b[Mirror].isOn();
    if (isRV)
        return QStringLiteral("EveryEndMirror") + onOff(cut) + onOff(!cut && b[End].isOn()) +
               onOff(mirror);
    if (special)
        return QStringLiteral("SPMROn") + onOff(mirror);
    return QStringLiteral("AHCM") + onOff(cut) + onOff(b[Half].isOn()) + onOff(b[Chain].isOn()) +
           onOff(mirror);
}

TEST(TargetDrawImage, ShowsWhatTheBoxesSayOverAllStatesAndHiding) {
    for (const bool isRV : {false, true}) {
        Stand stand(isRV);
        std::set<QString> seen;
        constexpr BoxIndex kWalked[] = {Every, End, Mirror, Auto, Half, Chain, Special};
        for (int n = 0; n < 5 * 5 * 5 * 5 * 5 * 5 * 5; ++n) {
            std::array<Shown, kBoxCount> boxes{};
            int rest = n;
            for (const BoxIndex box : kWalked) {
                boxes[box] = kWays[rest % 5];
                rest /= 5;
            }
            boxes[RemoveBlk].state = n % 2;
            for (std::size_t i = 0; i < kBoxCount; ++i) {
                if (checkBoxState(stand.boxes[i]) != boxes[i].state)
                    setCheckBoxState(stand.boxes[i], boxes[i].state);
                if (stand.boxes[i].isHidden() != boxes[i].hidden)
                    stand.boxes[i].setHidden(boxes[i].hidden);
            }
            const QString name = wantedName(boxes, isRV);
            ASSERT_EQ(stand.view->targetImageName(), name) << n;
            seen.insert(name);
        }
        EXPECT_EQ(seen.size(), isRV ? 6U : 18U);
    }
}

TEST(Slots, StandInTheOrderOfTheirPictures) {
    EXPECT_EQ(kPictureNamesRV.size(), 6U);
    EXPECT_STREQ(kPictureNamesRV[0], "EveryEndMirrorOffOffOff");
    EXPECT_STREQ(kPictureNamesRV[1], "EveryEndMirrorOffOnOff");
    EXPECT_STREQ(kPictureNamesRV[2], "EveryEndMirrorOnOffOff");
    EXPECT_STREQ(kPictureNamesRV[3], "EveryEndMirrorOffOffOn");
    EXPECT_STREQ(kPictureNamesRV[4], "EveryEndMirrorOffOnOn");
    EXPECT_STREQ(kPictureNamesRV[5], "EveryEndMirrorOnOffOn");
    EXPECT_EQ(kPictureNamesSG.size(), 18U);
    for (int slot = 0; slot < 16; ++slot) {
        const QString name = QStringLiteral("AHCM") + onOff((slot & 8) != 0) +
                             onOff((slot & 4) != 0) + onOff((slot & 2) != 0) +
                             onOff((slot & 1) != 0);
        EXPECT_EQ(name, QLatin1String(kPictureNamesSG[static_cast<std::size_t>(slot)]));
    }
    EXPECT_STREQ(kPictureNamesSG[16], "SPMROnOff");
    EXPECT_STREQ(kPictureNamesSG[17], "SPMROnOn");
}

TEST(Slots, AreNumberedByTheRule) {
    for (int bits = 0; bits < 64; ++bits) {
        const CutCombination c{(bits & 1) != 0, (bits & 2) != 0,  (bits & 4) != 0,
                               (bits & 8) != 0, (bits & 16) != 0, (bits & 32) != 0};
        const int m = c.mirror ? 1 : 0;
        const int tape =
            c.specialTape ? 16 + m : 8 * c.autoCut + 4 * c.halfCut + 2 * c.chainPrint + m;
        EXPECT_EQ(pictureSlot(c, false), tape);
        EXPECT_EQ(pictureSlot(c, true), (c.autoCut ? 2 : (c.cutAtEnd ? 1 : 0)) + 3 * m);
    }
}

struct Example {
    const char* what;
    bool isRV;
    std::vector<BoxIndex> on;
    const char* name;
};

TEST(Examples, ShowTheirPictures) {
    const Example kExamples[] = {
        {"all off", true, {}, "EveryEndMirrorOffOffOff"},
        {"all off", false, {}, "AHCMOffOffOffOff"},
        {"cut every wins over cut at end", true, {Every, End}, "EveryEndMirrorOnOffOff"},
        {"auto cut shows as cut every", true, {Auto}, "EveryEndMirrorOnOffOff"},
        {"auto cut mirrored", true, {Auto, Mirror}, "EveryEndMirrorOnOffOn"},
        {"half cut and chain are not read", true, {Half, Chain}, "EveryEndMirrorOffOffOff"},
        {"special tape suppresses the cut",
         true,
         {Special, Every, Auto, End},
         "EveryEndMirrorOffOnOff"},
        {"cut at end has no picture", false, {End}, "AHCMOffOffOffOff"},
        {"special tape overrides", false, {Special, Auto, Half, Chain, Mirror}, "SPMROnOn"},
        {"blank space has no picture", false, {RemoveBlk}, "AHCMOffOffOffOff"},
        {"cut every shows as auto cut", false, {Every, Half}, "AHCMOnOnOffOff"},
    };
    for (const Example& example : kExamples) {
        Stand stand(example.isRV);
        for (const BoxIndex box : example.on)
            setCheckBoxState(stand.boxes[box], 1);
        EXPECT_EQ(stand.view->targetImageName(), QLatin1String(example.name)) << example.what;
    }
}

TEST(NewView, KnowsItsFamilyAndNoBoxYet) {
    for (const bool isRV : {false, true}) {
        auto view = OptionView13_v400_::initWithFrame({{7, 9}, {300, 84}}, builtBundle(), isRV);
        EXPECT_EQ(view->isRV(), isRV);
        EXPECT_FALSE(view->cutEveryChkBx());
        EXPECT_FALSE(view->cutAndEndChkBx());
        EXPECT_FALSE(view->mirrorPrintChkBx());
        EXPECT_FALSE(view->autoCutChkBx());
        EXPECT_FALSE(view->halfCutChkBx());
        EXPECT_FALSE(view->chainPrintChkBx());
        EXPECT_FALSE(view->specialTapeChkBx());
        EXPECT_FALSE(view->removeBlkSpaceChkBx());
        EXPECT_EQ(view->targetSlot(), 0);
        EXPECT_EQ(View(view.get()).frame().size, (Size{300, 84}));
        EXPECT_EQ(View(view.get()).frame().origin.x, 7);
        // Its panel places it, by a height that is known later.
        EXPECT_EQ(points::rect(*view).top(), 0);
        EXPECT_FALSE(OptionView13_v400_::isFlipped());
    }
}

TEST(Setters, TakeAndGiveTheirOwnBox) {
    Stand stand(false);
    const OptionView13_v400_& view = *stand.view;
    const Button* given[] = {&view.cutEveryChkBx(),    &view.cutAndEndChkBx(),
                             &view.mirrorPrintChkBx(), &view.autoCutChkBx(),
                             &view.halfCutChkBx(),     &view.chainPrintChkBx(),
                             &view.specialTapeChkBx(), &view.removeBlkSpaceChkBx()};
    for (std::size_t i = 0; i < kBoxCount; ++i)
        EXPECT_EQ(given[i]->widget(), &stand.boxes[i]);
}

TEST(DeadBoxes, CountAsOff) {
    auto view = OptionView13_v400_::initWithFrame(kFrame, builtBundle(), false);
    auto box = std::make_unique<CheckBox>();
    Button(box.get()).setHidden(false);
    setCheckBoxState(*box, 1);
    view->setHalfCutChkBx(Button(box.get()));
    EXPECT_EQ(view->targetSlot(), 4);
    box->hide();
    EXPECT_EQ(view->targetSlot(), 0);
    Button(box.get()).setHidden(false);
    EXPECT_EQ(view->targetSlot(), 4);
    box.reset();
    EXPECT_EQ(view->targetSlot(), 0);
}

TEST(TheOtherFamily, HasEmptySlots) {
    for (const bool isRV : {false, true}) {
        Stand stand(isRV);
        EXPECT_NE(stand.view->targetDrawImage(), nullptr);
        stand.view->setIsRV(!isRV);
        EXPECT_EQ(stand.view->isRV(), !isRV);
        EXPECT_EQ(stand.view->targetDrawImage(), nullptr);
        EXPECT_TRUE(stand.view->targetImageName().isNull());
        stand.view->setIsRV(isRV);
        EXPECT_NE(stand.view->targetDrawImage(), nullptr);
    }
}

TEST(WithoutABundle, EverySlotIsEmpty) {
    Stand stand(false, nullptr);
    EXPECT_EQ(stand.view->targetDrawImage(), nullptr);
    stand.view->setNeedsDisplay(true);
    EXPECT_TRUE(stand.view->accessibleDescription().isEmpty());
}

/// Pictures of our own: 30 × 20 points, the left half red, transparent otherwise.
class PictureFolder {
public:
    void write(const QString& file, const QByteArray& bytes) {
        QFile out(mFolder.filePath(file));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    }
    void writeSvg(const QString& name, const char* colour = "#ff0000") {
        write(name + QStringLiteral(".svg"),
              "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"30\" height=\"20\"><rect "
              "width=\"15\" height=\"20\" fill=\"" +
                  QByteArray(colour) + "\"/></svg>");
    }
    void writeAllOfRV() {
        for (const char* name : kPictureNamesRV)
            writeSvg(QLatin1String(name));
    }
    std::shared_ptr<const PDEBundle> bundle() const {
        return std::make_shared<ResourceBundle>(mFolder.path(), QLocale::c());
    }
    QString path() const { return mFolder.path(); }
    void remove(const QString& file) { ASSERT_TRUE(QFile::remove(mFolder.filePath(file))); }

private:
    QTemporaryDir mFolder;
};

TEST(AMissingPicture, LeavesExactlyItsOwnSlotEmpty) {
    PictureFolder folder;
    folder.writeAllOfRV();
    folder.remove(QStringLiteral("EveryEndMirrorOffOnOn.svg"));
    Stand stand(true, folder.bundle());
    for (int bits = 0; bits < 16; ++bits) {
        setCheckBoxState(stand.boxes[Every], bits & 1);
        setCheckBoxState(stand.boxes[End], bits >> 1 & 1);
        setCheckBoxState(stand.boxes[Mirror], bits >> 2 & 1);
        setCheckBoxState(stand.boxes[Auto], bits >> 3 & 1);
        const bool missing =
            (bits & 1) == 0 && (bits & 2) != 0 && (bits & 4) != 0 && (bits & 8) == 0;
        EXPECT_EQ(stand.view->targetDrawImage() == nullptr, missing) << bits;
        EXPECT_EQ(stand.view->targetImageName().isNull(), missing) << bits;
    }
}

TEST(AFileWithoutAPicture, LeavesItsSlotEmptyAndMakesNoNoise) {
    for (const char* bytes : {"", "nothing", "<svg", "<html></html>", "<svg></wrong>", "\x89PNG"}) {
        PictureFolder folder;
        folder.writeAllOfRV();
        folder.write(QStringLiteral("EveryEndMirrorOffOffOff.svg"), bytes);
        Stand stand(true, folder.bundle());
        EXPECT_EQ(stand.view->targetDrawImage(), nullptr) << bytes;
        EXPECT_TRUE(stand.view->targetImageName().isNull()) << bytes;
        stand.set({End});
        EXPECT_NE(stand.view->targetDrawImage(), nullptr) << bytes;
    }
}

TEST(Pictures, AreLoadedAtConstruction) {
    PictureFolder folder;
    folder.writeAllOfRV();
    Stand stand(true, folder.bundle());
    for (const char* name : kPictureNamesRV)
        folder.remove(QLatin1String(name) + QStringLiteral(".svg"));
    EXPECT_NE(stand.view->targetDrawImage(), nullptr);
    EXPECT_EQ(stand.view->targetDrawImage()->size(), QSizeF(30, 20));
}

QImage drawn(OptionView13_v400_& view, const QSize& size) {
    view.setFixedSize(size);
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::white);
    view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

/// The rectangle of the pixels that are not white.
QRect inked(const QImage& image) {
    QRect all;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != QColor(Qt::white))
                all |= QRect(x, y, 1, 1);
        }
    }
    return all;
}

TEST(Drawing, PutsThePictureUnscaledIntoTheLowerLeftCorner) {
    PictureFolder folder;
    folder.writeAllOfRV();
    Stand stand(true, folder.bundle());
    for (const QSize size : {QSize(100, 50), QSize(30, 20), QSize(300, 84)}) {
        const QImage image = drawn(*stand.view, size);
        EXPECT_EQ(inked(image), QRect(0, size.height() - 20, 15, 20));
        EXPECT_EQ(image.pixelColor(5, size.height() - 1), QColor(Qt::red));
    }
    // A view lower than the picture shows the picture's foot.
    EXPECT_EQ(inked(drawn(*stand.view, QSize(10, 8))), QRect(0, 0, 10, 8));
}

TEST(Drawing, FollowsThePointsScale) {
    PictureFolder folder;
    folder.writeAllOfRV();
    Stand stand(true, folder.bundle());
    points::adopt(*stand.view, 2.0);
    EXPECT_EQ(inked(drawn(*stand.view, QSize(100, 80))), QRect(0, 40, 30, 40));
}

TEST(Drawing, ShowsNothingForAnEmptySlot) {
    PictureFolder folder;
    folder.writeAllOfRV();
    folder.remove(QStringLiteral("EveryEndMirrorOffOffOn.svg"));
    Stand stand(true, folder.bundle());
    stand.set({Mirror});
    EXPECT_TRUE(inked(drawn(*stand.view, QSize(60, 40))).isNull());
    stand.set({});
    EXPECT_FALSE(inked(drawn(*stand.view, QSize(60, 40))).isNull());
}

TEST(Drawing, ReadsTheBoxesAnewEachTime) {
    PictureFolder folder;
    folder.writeAllOfRV();
    folder.writeSvg(QStringLiteral("EveryEndMirrorOffOnOff"), "#0000ff");
    Stand stand(true, folder.bundle());
    EXPECT_EQ(drawn(*stand.view, QSize(30, 20)).pixelColor(3, 3), QColor(Qt::red));
    setCheckBoxState(stand.boxes[End], 1);
    EXPECT_EQ(drawn(*stand.view, QSize(30, 20)).pixelColor(3, 3), QColor(Qt::blue));
}

TEST(Drawing, TakesTheDarkPictureOnADarkPalette) {
    PictureFolder folder;
    folder.writeAllOfRV();
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("dark")));
    folder.writeSvg(QStringLiteral("dark/EveryEndMirrorOffOffOff"), "#00ff00");
    Stand stand(true, folder.bundle());
    EXPECT_EQ(drawn(*stand.view, QSize(30, 20)).pixelColor(3, 3), QColor(Qt::red));
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    stand.view->setPalette(dark);
    EXPECT_EQ(drawn(*stand.view, QSize(30, 20)).pixelColor(3, 3), QColor(Qt::green));
}

TEST(SetNeedsDisplay, SaysWhatThePictureShows) {
    Stand stand(false);
    EXPECT_TRUE(stand.view->accessibleDescription().isEmpty());
    stand.view->setNeedsDisplay(false);
    EXPECT_TRUE(stand.view->accessibleDescription().isEmpty());
    std::set<QString> sentences;
    for (int bits = 0; bits < 32; ++bits) {
        setCheckBoxState(stand.boxes[Auto], bits & 1);
        setCheckBoxState(stand.boxes[Half], bits >> 1 & 1);
        setCheckBoxState(stand.boxes[Chain], bits >> 2 & 1);
        setCheckBoxState(stand.boxes[Mirror], bits >> 3 & 1);
        setCheckBoxState(stand.boxes[Special], bits >> 4 & 1);
        stand.view->setNeedsDisplay(true);
        const QString sentence = stand.view->accessibleDescription();
        EXPECT_FALSE(sentence.startsWith(u"AX_"));
        EXPECT_EQ(sentence.endsWith(u"mirrored"), (bits & 8) != 0);
        sentences.insert(sentence);
    }
    EXPECT_EQ(sentences.size(), 18U);
}

TEST(SetNeedsDisplay, LeadsToARedraw) {
    PictureFolder folder;
    folder.writeAllOfRV();
    folder.writeSvg(QStringLiteral("EveryEndMirrorOffOnOff"), "#0000ff");
    Stand stand(true, folder.bundle());
    stand.view->resize(30, 20);
    stand.view->show();
    QCoreApplication::processEvents();
    class Paints : public QObject {
    public:
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } paints;
    QCoreApplication::processEvents();
    stand.view->installEventFilter(&paints);
    stand.view->setNeedsDisplay(false);
    QCoreApplication::processEvents();
    EXPECT_EQ(paints.count, 0);
    stand.view->setNeedsDisplay(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(paints.count, 1);
}

} // namespace
} // namespace labelcut::test
