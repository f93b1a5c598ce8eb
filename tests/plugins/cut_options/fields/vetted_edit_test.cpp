#include "plugins/cut_options/fields/vetted_edit.h"

#include "plugins/cut_options/fields/pde_formatter.h"
#include "tests/plugins/cut_options/fields/refusals.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QValidator>

using namespace labelcut;
using labelcut::test::Refusals;

namespace {

class VettedEdit : public testing::Test {
protected:
    PDEFormatter* attach(int style) {
        auto formatter = PDEFormatter::initWithStyle(style);
        PDEFormatter* const borrowed = formatter.get();
        attachFormatter(&edit, std::move(formatter));
        return borrowed;
    }
    void type(const char* text) { QTest::keyClicks(&edit, QLatin1String(text)); }
    void press(QKeySequence::StandardKey key) { QTest::keySequence(&edit, QKeySequence(key)); }
    void paste(const QString& text) {
        QApplication::clipboard()->setText(text);
        press(QKeySequence::Paste);
    }
    void commit(const QString& text, int replaceFrom = 0, int replaceLength = 0) {
        QInputMethodEvent event;
        event.setCommitString(text, replaceFrom, replaceLength);
        QApplication::sendEvent(&edit, &event);
    }
    void drop(const QString& text, const QPoint& position) {
        QMimeData data;
        data.setText(text);
        QDragEnterEvent enter(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&edit, &enter);
        QDropEvent event(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&edit, &event);
    }
    std::string text() const { return edit.text().toStdString(); }

    Refusals refusals;
    QLineEdit edit;
    QSignalSpy edited{&edit, &QLineEdit::textEdited};
    QSignalSpy changed{&edit, &QLineEdit::textChanged};
};

const QStringList kNoRefusal;

TEST_F(VettedEdit, LetsThroughWhatTheFormatterAllows) {
    attach(2);
    type("42");
    EXPECT_EQ(text(), "42");
    EXPECT_EQ(edited.count(), 2);
    EXPECT_EQ(refusals.events, kNoRefusal);
}

TEST_F(VettedEdit, HasOnlyTheLatestFormatter) {
    attach(0);
    const PDEFormatter* latest = attach(2);
    EXPECT_EQ(attachedFormatter(&edit), latest);
    EXPECT_EQ(edit.findChildren<QValidator*>().size(), 1) << "the first is gone";
}

TEST_F(VettedEdit, AppliesNoRefusedKeyAndBeepsAndPostsOnceForEach) {
    attach(2);
    type("4x");
    EXPECT_EQ(text(), "4");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    EXPECT_EQ(edited.count(), 1);
    EXPECT_EQ(changed.count(), 1);
    type("yz");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter() + Refusals::invalidCharacter());
    type("2");
    EXPECT_EQ(text(), "42");
}

TEST_F(VettedEdit, KeepsCaretAndSelectionOfARefusedEdit) {
    attach(2);
    type("1234");
    edit.setSelection(1, 2);
    type("x");
    EXPECT_EQ(text(), "1234");
    EXPECT_EQ(edit.selectedText().toStdString(), "23");
    EXPECT_EQ(edit.cursorPosition(), 3);
    edit.setCursorPosition(2);
    type("x");
    EXPECT_EQ(edit.cursorPosition(), 2);
    EXPECT_FALSE(edit.hasSelectedText());
}

TEST_F(VettedEdit, ReplacesASelectionByWhatIsAllowed) {
    attach(2);
    type("1234");
    edit.setSelection(1, 2);
    type("9");
    EXPECT_EQ(text(), "194");
    EXPECT_EQ(refusals.events, kNoRefusal);
}

TEST_F(VettedEdit, VetsACharacterTypedOverItself) {
    PDEFormatter* const formatter = attach(2);
    type("7");
    formatter->setMaxValue(5);
    edit.selectAll();
    type("7");
    EXPECT_EQ(text(), "7");
    EXPECT_EQ(refusals.take(), Refusals::formatError());
    EXPECT_EQ(edit.selectedText().toStdString(), "7");
}

TEST_F(VettedEdit, EnforcesRangeAndLengthWhileTyping) {
    PDEFormatter* const formatter = attach(2);
    formatter->setMaxLength(2);
    formatter->setMinValue(5);
    formatter->setMaxValue(20);
    type("2");
    type("5");
    EXPECT_EQ(text(), "2");
    EXPECT_EQ(refusals.take(), Refusals::formatError());
    type("0");
    type("1");
    EXPECT_EQ(text(), "20");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
}

TEST_F(VettedEdit, VetsAPasteAsAWhole) {
    PDEFormatter* const formatter = attach(0);
    formatter->addInvalidCharacter(QStringLiteral("x"));
    paste(QStringLiteral("x"));
    EXPECT_EQ(text(), "");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    EXPECT_EQ(refusals.object.toString(), QStringLiteral("x"));
    paste(QStringLiteral("xy"));
    EXPECT_EQ(text(), "xy");
    EXPECT_EQ(refusals.take(), kNoRefusal);
}

TEST_F(VettedEdit, RefusesALongPasteWithOneBeep) {
    attach(2);
    paste(QStringLiteral("no digit at all"));
    EXPECT_EQ(text(), "");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
}

TEST_F(VettedEdit, VetsADropWhereItLands) {
    attach(4);
    type("1.5");
    edit.show();
    drop(QStringLiteral("."), QPoint(edit.width() - 2, edit.height() / 2));
    EXPECT_EQ(text(), "1.5");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    edit.selectAll();
    drop(QStringLiteral("7"), QPoint(1, edit.height() / 2));
    EXPECT_EQ(text(), "71.5") << "before the text, which stays";
    EXPECT_EQ(refusals.take(), kNoRefusal);
}

TEST_F(VettedEdit, NeverVetsCuttingAndDeleting) {
    PDEFormatter* const formatter = attach(2);
    type("1234");
    formatter->setMinValue(1000);
    edit.setSelection(0, 1);
    press(QKeySequence::Cut);
    EXPECT_EQ(text(), "234");
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("1"));
    QTest::keyClick(&edit, Qt::Key_Delete);
    edit.end(false);
    QTest::keyClick(&edit, Qt::Key_Backspace);
    EXPECT_EQ(text(), "3");
    edit.clear();
    EXPECT_EQ(text(), "");
    EXPECT_EQ(refusals.events, kNoRefusal);
}

TEST_F(VettedEdit, VetsWhatAnInputMethodCommits) {
    attach(2);
    commit(QStringLiteral("日"));
    EXPECT_EQ(text(), "");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    EXPECT_EQ(refusals.object.toString(), QStringLiteral("日"));
    commit(QStringLiteral("12"));
    EXPECT_EQ(text(), "12");
    EXPECT_EQ(refusals.take(), kNoRefusal);
}

TEST_F(VettedEdit, DoesNotVetAPreeditBeforeItIsCommitted) {
    attach(2);
    QInputMethodEvent preedit(QStringLiteral("に"), {});
    QApplication::sendEvent(&edit, &preedit);
    EXPECT_EQ(refusals.take(), kNoRefusal);
    commit(QStringLiteral("に"));
    EXPECT_EQ(text(), "");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    commit(QStringLiteral("2"));
    EXPECT_EQ(text(), "2");
}

TEST_F(VettedEdit, KeepsAPreeditThatBeginsAfterARefusal) {
    attach(2);
    type("1x");
    ASSERT_EQ(refusals.take(), Refusals::invalidCharacter());
    const auto caretX = [this] {
        return edit.inputMethodQuery(Qt::ImCursorRectangle).toRect().center().x();
    };
    const int before = caretX();
    QInputMethodEvent preedit(QStringLiteral("222"),
                              {{QInputMethodEvent::Cursor, 3, 1, QVariant()}});
    QApplication::sendEvent(&edit, &preedit);
    EXPECT_GT(caretX(), before) << "the caret stands behind what is composed";
}

TEST_F(VettedEdit, VetsACommitThatReplacesTextBeforeTheCaret) {
    attach(2);
    type("12");
    commit(QStringLiteral("345x"), -1, 1);
    EXPECT_EQ(text(), "12");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    EXPECT_FALSE(edit.hasSelectedText());
    EXPECT_EQ(edit.cursorPosition(), 2);
    commit(QStringLiteral("345"), -1, 1);
    EXPECT_EQ(text(), "1345");
}

TEST_F(VettedEdit, VetsACommitThatEndsBeforeTheCaret) {
    struct Case {
        int selectFrom, selectLength, replaceFrom, replaceLength;
        const char* accepted;
    };
    for (const Case& c :
         {Case{3, 0, -2, 1, "1775"}, Case{3, 0, -3, 0, "771.5"}, Case{0, 0, 1, 1, "1775"},
          Case{2, 1, -2, 1, "77."}, Case{0, 1, 2, 5, ".577"}, Case{3, 0, 4, 9, "1.577"}}) {
        SCOPED_TRACE(testing::Message() << c.replaceFrom << '+' << c.replaceLength);
        attach(kStyleDecimal);
        edit.setText(QStringLiteral("1.5"));
        const auto select = [&] {
            if (c.selectLength > 0)
                edit.setSelection(c.selectFrom, c.selectLength);
            else
                edit.setCursorPosition(c.selectFrom);
        };
        select();
        refusals.take();
        commit(QStringLiteral("7-"), c.replaceFrom, c.replaceLength);
        EXPECT_EQ(text(), "1.5");
        EXPECT_EQ(edit.selectedText().size(), c.selectLength);
        EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
        select();
        commit(QStringLiteral("77"), c.replaceFrom, c.replaceLength);
        EXPECT_EQ(text(), c.accepted);
        EXPECT_EQ(refusals.take(), kNoRefusal);
    }
}

TEST_F(VettedEdit, VetsACommitThatReplacesASelectionByItself) {
    PDEFormatter* const formatter = attach(2);
    type("7");
    formatter->setMaxValue(5);
    edit.selectAll();
    commit(QStringLiteral("7"));
    EXPECT_EQ(text(), "7");
    EXPECT_EQ(refusals.take(), Refusals::formatError());
    EXPECT_EQ(edit.selectedText().toStdString(), "7");
}

TEST_F(VettedEdit, UndoesAndRedoesWhatIsAllowed) {
    attach(2);
    type("12");
    press(QKeySequence::Undo);
    EXPECT_EQ(text(), "");
    press(QKeySequence::Redo);
    EXPECT_EQ(text(), "12");
    EXPECT_EQ(refusals.events, kNoRefusal);
}

TEST_F(VettedEdit, KeepsTheSelectionThatAnUndoBringsBack) {
    attach(2);
    type("1234");
    edit.setSelection(0, 2);
    QTest::keyClick(&edit, Qt::Key_Delete);
    press(QKeySequence::Undo);
    EXPECT_EQ(text(), "1234");
    EXPECT_EQ(edit.selectedText().toStdString(), "12");
}

TEST_F(VettedEdit, RefusesAnUndoThatBringsBackWhatMayNoLongerBeTyped) {
    PDEFormatter* const formatter = attach(2);
    type("12");
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    formatter->setMaxValue(5);
    edited.clear();
    changed.clear();
    press(QKeySequence::Undo);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(refusals.take(), Refusals::formatError());
    EXPECT_EQ(edited.count(), 0);
    EXPECT_EQ(changed.count(), 0);
    EXPECT_TRUE(edit.isUndoAvailable());
    formatter->setValidityMaxValue(false);
    press(QKeySequence::Undo);
    EXPECT_EQ(text(), "12") << "the refused undo is still there to be tried again";
}

TEST_F(VettedEdit, RefusesARedoOfWhatMayNoLongerBeTyped) {
    PDEFormatter* const formatter = attach(2);
    type("12");
    press(QKeySequence::Undo);
    formatter->setMaxValue(5);
    edited.clear();
    changed.clear();
    press(QKeySequence::Redo);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(refusals.take(), Refusals::formatError());
    EXPECT_EQ(edited.count() + changed.count(), 0);
    formatter->setValidityMaxValue(false);
    press(QKeySequence::Redo);
    EXPECT_EQ(text(), "12");
}

TEST_F(VettedEdit, RefusesAPartialRedoAndStaysWhereItWas) {
    PDEFormatter* const formatter = attach(2);
    type("12");
    QTest::keyClick(&edit, Qt::Key_Backspace);
    QTest::keyClick(&edit, Qt::Key_Backspace);
    press(QKeySequence::Undo); // the deletions
    press(QKeySequence::Undo); // the typing
    ASSERT_EQ(text(), "");
    formatter->setMaxValue(5);
    press(QKeySequence::Redo);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(refusals.take(), Refusals::formatError());
}

TEST_F(VettedEdit, TakesBackARefusedKeyTypedAfterAnUndo) {
    attach(2);
    type("12");
    edit.setCursorPosition(0);
    type("3");
    press(QKeySequence::Undo);
    ASSERT_EQ(text(), "12");
    edited.clear();
    changed.clear();
    type("x");
    EXPECT_EQ(text(), "12");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    EXPECT_EQ(edited.count() + changed.count(), 0);
}

TEST_F(VettedEdit, NeverVetsWhatTheProgramSets) {
    attach(2);
    edit.setText(QStringLiteral("anything"));
    EXPECT_EQ(text(), "anything");
    EXPECT_EQ(refusals.events, kNoRefusal);
    type("x");
    EXPECT_EQ(text(), "anything");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    type("1");
    EXPECT_EQ(text(), "anything1");
}

TEST_F(VettedEdit, AsksNothingWhenTheFieldIsEnteredAndLeft) {
    attach(2);
    edit.setText(QStringLiteral("anything"));
    QWidget window;
    QLineEdit* const field = &edit;
    field->setParent(&window);
    QLineEdit other(&window);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QSignalSpy finished(field, &QLineEdit::editingFinished);
    field->setFocus();
    ASSERT_TRUE(field->hasFocus());
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Return);
    other.setFocus();
    EXPECT_FALSE(field->hasFocus());
    EXPECT_EQ(finished.count(), 1) << "on Return";
    EXPECT_EQ(refusals.events, kNoRefusal);
    field->setParent(nullptr);
}

TEST_F(VettedEdit, LetsAnObserverOfARefusalSetTheText) {
    attach(2);
    QObject observer;
    NotificationCentre::defaultCentre().addObserver(
        &observer, QLatin1String(kInvalidCharacterNotification), {},
        [this](const Notification&) { edit.setText(QStringLiteral("1")); });
    type("5x");
    EXPECT_EQ(text(), "1");
    type("2");
    EXPECT_EQ(text(), "12");
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
}

TEST_F(VettedEdit, ReplacesAFormatterByAnother) {
    attach(2);
    PDEFormatter* const other = attach(6);
    EXPECT_EQ(attachedFormatter(&edit), other);
    type("a");
    EXPECT_EQ(text(), "a");
    EXPECT_EQ(refusals.events, kNoRefusal);
}

TEST_F(VettedEdit, HasNoFormatterBeforeOneIsAttached) {
    EXPECT_EQ(attachedFormatter(&edit), nullptr);
    EXPECT_EQ(attachedFormatter(nullptr), nullptr);
}

} // namespace
