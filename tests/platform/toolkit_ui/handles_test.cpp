// Tests of the toolkit: null-safe handles onto widgets.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProxyStyle>
#include <QSignalSpy>

#include <limits>

#include "platform/toolkit/check_box.h"
#include "platform/toolkit/handles.h"
#include "platform/toolkit/points.h"
#include "platform/toolkit/stepper.h"

namespace labelcut::test {
namespace {

/// Every operation, on a handle without a widget.
void expectInert(View view) {
    EXPECT_FALSE(view);
    EXPECT_EQ(view.widget(), nullptr);
    EXPECT_FALSE(view.isSame(view));
    EXPECT_EQ(view.frame(), Frame());
    view.setFrameOrigin({1, 2});
    view.setFrameSize({3, 4});
    view.setHidden(true);
    EXPECT_FALSE(view.isHidden());
    view.setEnabled(true);
    EXPECT_FALSE(view.isEnabled());
    EXPECT_FALSE(view.superview());
    view.setToolTip(QStringLiteral("x"));
}

void expectInert(Button button) {
    expectInert(static_cast<View&>(button));
    button.setState(1);
    EXPECT_EQ(button.state(), 0);
    button.setTitle(QStringLiteral("x"));
    EXPECT_EQ(button.title(), QString());
    EXPECT_EQ(button.widthForTitle(QStringLiteral("x")), 0);
}

void expectInert(TextField field) {
    expectInert(static_cast<View&>(field));
    field.setStringValue(QStringLiteral("7"));
    EXPECT_EQ(field.stringValue(), QString());
    EXPECT_EQ(field.intValue(), 0);
    field.setTextColor(TextColor::DisabledControl);
    EXPECT_EQ(field.widthForText(QStringLiteral("x")), 0);
}

void expectInert(StepperHandle stepper) {
    expectInert(static_cast<View&>(stepper));
    stepper.setIntValue(3);
    EXPECT_EQ(stepper.intValue(), 0);
}

void expectInert(PopUpButton popUp) {
    expectInert(static_cast<View&>(popUp));
    EXPECT_EQ(popUp.itemTitles(), QStringList());
    EXPECT_EQ(popUp.count(), 0);
    popUp.removeItemWithTitle(QStringLiteral("x"));
    popUp.setTitleAt(0, QStringLiteral("x"));
    popUp.selectItemWithTag(1);
    EXPECT_EQ(popUp.selectedTag(), 0);
}

TEST(Handles, OfNothingDoNothing) {
    expectInert(View());
    expectInert(View(nullptr));
    expectInert(Button());
    expectInert(TextField());
    expectInert(TextField(static_cast<QLineEdit*>(nullptr)));
    expectInert(TextField(static_cast<QLabel*>(nullptr)));
    expectInert(StepperHandle());
    expectInert(PopUpButton());
}

template<typename Handle, typename Widget>
void expectInertAfterDeath() {
    auto widget = std::make_unique<Widget>();
    Handle handle(widget.get());
    EXPECT_TRUE(handle);
    EXPECT_TRUE(handle.isSame(View(widget.get())));
    widget.reset();
    expectInert(handle);
}

TEST(Handles, OfDeadWidgetsDoNothing) {
    expectInertAfterDeath<View, QWidget>();
    expectInertAfterDeath<Button, CheckBox>();
    expectInertAfterDeath<TextField, QLineEdit>();
    expectInertAfterDeath<TextField, QLabel>();
    expectInertAfterDeath<StepperHandle, Stepper>();
    expectInertAfterDeath<PopUpButton, QComboBox>();
}

TEST(Views, AreTheSameOnlyForOneLivingWidget) {
    QWidget one;
    QWidget other;
    EXPECT_TRUE(View(&one).isSame(View(&one)));
    EXPECT_FALSE(View(&one).isSame(View(&other)));
    EXPECT_FALSE(View(&one).isSame(View()));
    EXPECT_FALSE(View().isSame(View(&one)));
    EXPECT_FALSE(View().isSame(View()));
}

TEST(Views, HaveTheirOriginAtTheLowerLeft) {
    QWidget root;
    points::setRootSize(root, {200, 100});
    QWidget child(&root);
    points::setRect(child, {10, 20, 30, 40});
    View view(&child);
    EXPECT_EQ(view.frame(), (Frame{{10, 40}, {30, 40}}));
    view.setFrameOrigin({5, 60});
    EXPECT_EQ(child.geometry(), QRect(5, 0, 30, 40));
    EXPECT_EQ(view.frame(), (Frame{{5, 60}, {30, 40}}));
    view.setFrameOrigin({0.5, 0.25});
    EXPECT_EQ(view.frame().origin, (Point{0.5, 0.25}));
    EXPECT_EQ(View(&root).frame(), (Frame{{0, 0}, {200, 100}}));
}

TEST(Views, KeepTheirDistanceFromTheTopWhenTheRootShrinks) {
    QWidget root;
    points::setRootSize(root, {200, 100});
    QWidget child(&root);
    points::setRect(child, {10, 20, 30, 40});
    View(&root).setFrameSize({150, 80});
    EXPECT_EQ(root.size(), QSize(150, 80));
    EXPECT_EQ(child.geometry(), QRect(10, 20, 30, 40));
    EXPECT_EQ(View(&child).frame().origin.y, 20);
}

TEST(Views, KnowTheirOwnFlagsWhateverTheirParents) {
    QWidget root;
    QWidget child(&root);
    View view(&child);
    view.setHidden(false);
    EXPECT_FALSE(view.isHidden());
    EXPECT_FALSE(child.isVisible());
    root.setEnabled(false);
    EXPECT_TRUE(view.isEnabled());
    EXPECT_FALSE(child.isEnabled());
    view.setEnabled(false);
    root.setEnabled(true);
    EXPECT_FALSE(view.isEnabled());
    view.setEnabled(true);
    EXPECT_TRUE(child.isEnabled());
    view.setHidden(true);
    EXPECT_TRUE(view.isHidden());
}

TEST(ReplaceSubview, PutsTheReplacementIntoThePlace) {
    for (const bool hidden : {false, true}) {
        QWidget root;
        points::setRootSize(root, {200, 100});
        QPointer<QWidget> old(new QWidget(&root));
        points::setRect(*old, {10, 20, 30, 40});
        View(old).setHidden(hidden);
        auto* fresh = new QWidget;
        View oldView(old);
        View(&root).replaceSubview(oldView, View(fresh));
        EXPECT_FALSE(old);
        EXPECT_EQ(fresh->parentWidget(), &root);
        EXPECT_EQ(fresh->geometry(), QRect(10, 20, 30, 40));
        EXPECT_EQ(fresh->isHidden(), hidden);
        EXPECT_TRUE(View(fresh).superview().isSame(View(&root)));
    }
}

TEST(ReplaceSubview, DoesNothingWithoutBothOrForAStranger) {
    QWidget root;
    QWidget child(&root);
    QWidget grandchild(&child);
    QWidget stranger;
    QWidget fresh;
    View nothing;
    View childView(&child);
    View grandchildView(&grandchild);
    View strangerView(&stranger);
    View(&root).replaceSubview(nothing, View(&fresh));
    View(&root).replaceSubview(childView, View());
    View(&root).replaceSubview(strangerView, View(&fresh));
    View(&root).replaceSubview(grandchildView, View(&fresh));
    View().replaceSubview(childView, View(&fresh));
    EXPECT_EQ(fresh.parentWidget(), nullptr);
    EXPECT_TRUE(childView && grandchildView && strangerView);
}

TEST(ToolTips, ArePlainText) {
    QWidget widget;
    View view(&widget);
    view.setToolTip(QStringLiteral("a & b"));
    EXPECT_EQ(widget.toolTip(), QStringLiteral("a & b"));
    view.setToolTip(QStringLiteral("<b>bold</b>"));
    EXPECT_EQ(widget.toolTip(), QStringLiteral("&lt;b&gt;bold&lt;/b&gt;"));
    // Escaped it is taken for rich text, and so shown as it was given.
    EXPECT_TRUE(Qt::mightBeRichText(widget.toolTip()));
}

TEST(Buttons, ShowTitlesAsPlainText) {
    CheckBox box;
    Button button(&box);
    for (const char* title :
         {"", "Half cut", "A & B", "A && B", "&&&", "&File", "<b>x</b>", "a&"}) {
        button.setTitle(QLatin1String(title));
        EXPECT_EQ(button.title(), QLatin1String(title));
        EXPECT_TRUE(box.shortcut().isEmpty()) << title;
    }
    button.setTitle(QStringLiteral("A & B"));
    EXPECT_EQ(box.text(), QStringLiteral("A && B"));
}

TEST(Buttons, KeepTheirShortcutUnderANewTitle) {
    CheckBox box;
    box.setShortcut(QKeySequence(QStringLiteral("Alt+4")));
    Button(&box).setTitle(QStringLiteral("A & B"));
    EXPECT_EQ(box.shortcut(), QKeySequence(QStringLiteral("Alt+4")));
}

TEST(Buttons, KnowTheWidthATitleNeeds) {
    CheckBox box;
    Button button(&box);
    for (const char* title : {"", "Half cut", "A & B & C", "&&&&", "WWWWWWWWWWWWWWWWWWWW"}) {
        button.setTitle(QLatin1String(title));
        EXPECT_GE(button.widthForTitle(QLatin1String(title)), box.sizeHint().width()) << title;
        EXPECT_LE(button.widthForTitle(QLatin1String(title)), box.sizeHint().width() + 2) << title;
    }
    points::adopt(box, 2.0);
    EXPECT_EQ(button.widthForTitle(box.text()), (box.sizeHint().width() + 1) / 2);
}

/// A style whose boxes are as wide as their own font is high.
class FontStyle : public QProxyStyle {
public:
    QSize sizeFromContents(ContentsType, const QStyleOption* option, const QSize&,
                           const QWidget*) const override {
        return {option->fontMetrics.height(), 1};
    }
};

TEST(Buttons, TellTheStyleWhatTheBoxLooksLike) {
    FontStyle style;
    QCheckBox box;
    box.setStyle(&style);
    QFont font = box.font();
    font.setPointSize(40);
    box.setFont(font);
    EXPECT_EQ(Button(&box).widthForTitle(QStringLiteral("x")), box.fontMetrics().height());
}

TEST(TextFields, HoldTextsInLineEditsAndLabels) {
    QLineEdit edit;
    QLabel label;
    QSignalSpy edited(&edit, &QLineEdit::textEdited);
    for (TextField field : {TextField(&edit), TextField(&label)}) {
        field.setStringValue(QStringLiteral("<b>12</b>"));
        EXPECT_EQ(field.stringValue(), QStringLiteral("<b>12</b>"));
        field.setStringValue(QStringLiteral(" 12 labels"));
        EXPECT_EQ(field.intValue(), 12);
    }
    EXPECT_EQ(edit.cursorPosition(), edit.text().size());
    edit.setCursorPosition(0);
    TextField(&edit).setStringValue(edit.text());
    EXPECT_EQ(edit.cursorPosition(), edit.text().size());
    EXPECT_TRUE(edited.isEmpty());
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

TEST(TextFields, ReadIntegers) {
    QLineEdit edit;
    TextField field(&edit);
    const std::pair<const char*, std::int32_t> kTexts[] = {
        {"", 0},
        {"0", 0},
        {"7", 7},
        {"-7", -7},
        {"+7", 7},
        {" \t 7", 7},
        {"7 8", 7},
        {"7x", 7},
        {"x7", 0},
        {"--7", 0},
        {"- 7", 0},
        {"3.9", 3},
        {"0x10", 0},
        {"1e3", 1},
        {"00012", 12},
        {"2147483647", std::numeric_limits<std::int32_t>::max()},
        {"2147483648", std::numeric_limits<std::int32_t>::max()},
        {"-2147483648", std::numeric_limits<std::int32_t>::min()},
        {"-2147483649", std::numeric_limits<std::int32_t>::min()},
        {"99999999999999999999999999", std::numeric_limits<std::int32_t>::max()},
    };
    for (const auto& [text, value] : kTexts) {
        edit.setText(QLatin1String(text));
        EXPECT_EQ(field.intValue(), value) << text;
    }
}

TEST(TextFields, AreGreyedByRoleSoThatPalettesMayChange) {
    QLabel label;
    TextField field(&label);
    EXPECT_FALSE(showsDisabledTextColor(label));
    field.setTextColor(TextColor::DisabledControl);
    EXPECT_TRUE(showsDisabledTextColor(label));
    EXPECT_EQ(label.foregroundRole(), QPalette::PlaceholderText);
    field.setTextColor(TextColor::Control);
    EXPECT_FALSE(showsDisabledTextColor(label));
    EXPECT_EQ(label.foregroundRole(), QPalette::WindowText);
}

TEST(TextFields, KnowTheWidthATextNeeds) {
    QLabel label;
    TextField field(&label);
    for (const char* text : {"labels", "Etiketten", "WWWWWWWW"}) {
        label.setText(QLatin1String(text));
        EXPECT_GE(field.widthForText(QLatin1String(text)), label.sizeHint().width()) << text;
        EXPECT_LE(field.widthForText(QLatin1String(text)), label.sizeHint().width() + 2) << text;
    }
}

TEST(StepperHandles, SendNoAction) {
    Stepper stepper;
    QSignalSpy stepped(&stepper, &Stepper::stepped);
    StepperHandle handle(&stepper);
    for (const std::int32_t value : {7, -3, 0, std::numeric_limits<std::int32_t>::max(),
                                     std::numeric_limits<std::int32_t>::min()}) {
        handle.setIntValue(value);
        EXPECT_EQ(handle.intValue(), value);
    }
    EXPECT_TRUE(stepped.isEmpty());
}

struct PopUp {
    PopUp() {
        for (const int tag : {4, 5, 6}) {
            box.addItem(QStringLiteral("title %1").arg(tag));
            box.setItemData(box.count() - 1, tag, PopUpButton::kTagRole);
        }
    }
    QComboBox box;
    PopUpButton handle{&box};
};

TEST(PopUpButtons, SelectByTag) {
    PopUp popUp;
    QSignalSpy activated(&popUp.box, &QComboBox::activated);
    EXPECT_EQ(popUp.handle.selectedTag(), 4);
    popUp.handle.selectItemWithTag(6);
    EXPECT_EQ(popUp.handle.selectedTag(), 6);
    EXPECT_EQ(popUp.box.currentIndex(), 2);
    for (const std::int64_t unknown : {7LL, 0LL, -1LL}) {
        popUp.handle.selectItemWithTag(unknown);
        EXPECT_EQ(popUp.handle.selectedTag(), 6);
    }
    popUp.box.setCurrentIndex(-1);
    EXPECT_EQ(popUp.handle.selectedTag(), 0);
    EXPECT_TRUE(activated.isEmpty());
}

TEST(PopUpButtons, RemoveByExactTitle) {
    PopUp popUp;
    for (const char* other : {"title", "TITLE 5", "title 55", "itle 5", ""})
        popUp.handle.removeItemWithTitle(QLatin1String(other));
    EXPECT_EQ(popUp.handle.count(), 3);
    popUp.handle.removeItemWithTitle(QStringLiteral("title 5"));
    EXPECT_EQ(popUp.handle.itemTitles(),
              (QStringList{QStringLiteral("title 4"), QStringLiteral("title 6")}));
    popUp.handle.removeItemWithTitle(QStringLiteral("title 5"));
    EXPECT_EQ(popUp.handle.count(), 2);
}

TEST(PopUpButtons, SelectTheFirstLeftWhenTheSelectedEntryGoes) {
    PopUp popUp;
    popUp.handle.selectItemWithTag(6);
    popUp.handle.removeItemWithTitle(QStringLiteral("title 6"));
    EXPECT_EQ(popUp.handle.selectedTag(), 4);
    popUp.handle.selectItemWithTag(5);
    popUp.handle.removeItemWithTitle(QStringLiteral("title 4"));
    EXPECT_EQ(popUp.handle.selectedTag(), 5);
    popUp.handle.removeItemWithTitle(QStringLiteral("title 5"));
    EXPECT_EQ(popUp.handle.selectedTag(), 0);
    EXPECT_EQ(popUp.handle.count(), 0);
}

TEST(PopUpButtons, TakeNewTitlesByIndex) {
    PopUp popUp;
    popUp.handle.setTitleAt(1, QString());
    popUp.handle.setTitleAt(9, QStringLiteral("x"));
    popUp.handle.setTitleAt(-1, QStringLiteral("x"));
    EXPECT_EQ(popUp.handle.itemTitles(),
              (QStringList{QStringLiteral("title 4"), QString(), QStringLiteral("title 6")}));
}

TEST(KeyWindows, AreTheApplicationsActiveWindow) {
    EXPECT_FALSE(keyWindow(View()).exists);
    QWidget window;
    window.resize(300, 200);
    window.show();
    QApplication::setActiveWindow(&window);
    KeyWindow key = keyWindow(View());
    EXPECT_TRUE(key.exists);
    EXPECT_EQ(key.frameHeight, window.frameGeometry().height());
    QWidget view;
    points::adopt(view, 2.0);
    EXPECT_EQ(keyWindow(View(&view)).frameHeight, window.frameGeometry().height() / 2.0);
    window.hide();
    QApplication::setActiveWindow(nullptr);
    EXPECT_FALSE(keyWindow(View(&view)).exists);
}

} // namespace
} // namespace labelcut::test
