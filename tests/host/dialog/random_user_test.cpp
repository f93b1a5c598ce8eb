// The dialog under the hands of users who do anything, in any order.
#include <gtest/gtest.h>

#include <QApplication>
#include <QInputDialog>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include <functional>
#include <random>

#include "tests/host/dialog/dialog_fixtures.h"
#include "tests/support/one_truth.h"

namespace labelcut::test {

namespace {

constexpr int kActs = 70;

/// A user whose acts a seed decides.
class RandomUser {
public:
    RandomUser(PrintDialog& dialog, unsigned seed)
        : mDialog(dialog)
        , mRandom(seed) {
        mActs = {[this] { ticksABox(); },         [this] { ticksABox(); },
                 [this] { typesACount(); },       [this] { stepsTheCount(); },
                 [this] { takesACombination(); }, [this] { choosesAFeature(); },
                 [this] { choosesAPaper(); },     [this] { opensAPage(); },
                 [this] { opensAPage(); },        [this] { takesBack(); },
                 [this] { setsAllBack(); },       [this] { keepsAPreset(); },
                 [this] { appliesAPreset(); },    [this] { removesAPreset(); },
                 [this] { changesCopies(); },     [this] { typesARange(); },
                 [this] { takesAnOffer(); },      [this] { pressesKeys(); }};
    }

    /// @return what was done.
    const std::string& act() {
        mDone = "nothing";
        mActs[static_cast<std::size_t>(below(static_cast<int>(mActs.size())))]();
        settle();
        return mDone;
    }

private:
    int below(int count) { return std::uniform_int_distribution(0, count - 1)(mRandom); }
    template<typename Widget>
    Widget* anyOf(const QString& prefix) {
        std::vector<Widget*> usable;
        for (auto* widget : mDialog.findChildren<Widget*>()) {
            if (isUsable(*widget) && widget->objectName().startsWith(prefix))
                usable.push_back(widget);
        }
        return usable.empty()
                   ? nullptr
                   : usable[static_cast<std::size_t>(below(static_cast<int>(usable.size())))];
    }
    void did(const char* what, const QString& where = {}) {
        mDone = what + (' ' + where.toStdString());
    }

    void ticksABox() {
        if (auto* box = anyOf<QCheckBox>(QStringLiteral("m"))) {
            click(*box);
            did("clicked", box->objectName());
        }
    }
    void typesACount() {
        if (auto* field = anyOf<QLineEdit>(QStringLiteral("mCutEvery"))) {
            const QString text = QString::number(below(130));
            type(*field, text);
            did("typed a count", text);
        }
    }
    void stepsTheCount() {
        auto* field = mDialog.findChild<QLineEdit*>(QStringLiteral("mCutEveryTxBx"));
        if (!field || !isUsable(*field))
            return;
        field->setFocus();
        QTest::keyClick(field, below(2) ? Qt::Key_Up : Qt::Key_Down);
        did("stepped");
    }
    void takesACombination() {
        if (auto* box = anyOf<QComboBox>(QStringLiteral("mOption"))) {
            const int index = below(box->count());
            choose(*box, index);
            did("took combination", QString::number(index));
        }
    }
    void choosesAFeature() {
        if (auto* box = anyOf<QComboBox>(QStringLiteral("choices-"))) {
            const int index = below(box->count());
            choose(*box, index);
            did("chose", box->objectName() + u' ' + box->itemData(index).toString());
            maybeTypeALength(*box);
        }
    }
    void maybeTypeALength(QComboBox& box) {
        for (auto* field : box.parentWidget()->findChildren<QLineEdit*>()) {
            if (!isUsable(*field) || below(3) == 0)
                continue;
            const QString text = QString::number(below(60)) + QStringLiteral(" mm");
            type(*field, text);
            QTest::keyClick(field, Qt::Key_Tab);
            did("typed a length", box.objectName() + u' ' + text);
        }
    }
    void choosesAPaper() {
        auto& box = optionBox(mDialog, "PageSize");
        const int index = below(box.count());
        choose(box, index);
        did("chose paper", box.itemData(index).toString());
        maybeTypeALength(box);
    }
    void opensAPage() {
        const int page = below(mDialog.tabs().count());
        openTab(mDialog, page);
        did("opened page", QString::number(page));
    }
    void takesBack() {
        auto* undo = part<QPushButton>(mDialog, "undo");
        if (!undo->isEnabled())
            return;
        click(*undo);
        did("took back");
    }
    void setsAllBack() {
        // Rarely: sessions are to grow apart.
        auto* reset = part<QPushButton>(mDialog, "reset");
        if (below(4) != 0 || !reset->isEnabled())
            return;
        click(*reset);
        did("set all back");
    }
    void keepsAPreset() {
        click(*part<QPushButton>(mDialog, "savePreset"));
        auto* ask = mDialog.findChild<QInputDialog*>();
        const QString name = QStringLiteral("Preset %1").arg(below(3));
        ask->setTextValue(name);
        ask->accept();
        did("kept", name);
    }
    void appliesAPreset() {
        auto* list = part<QComboBox>(mDialog, "presets");
        if (list->count() == 0)
            return;
        const int index = below(list->count());
        did("applied", list->itemText(index));
        choose(*list, index);
    }
    void removesAPreset() {
        auto* remove = part<QToolButton>(mDialog, "removePreset");
        if (!isUsable(*remove))
            return;
        click(*remove);
        did("removed a preset");
    }
    void changesCopies() {
        auto* copies = part<QSpinBox>(mDialog, "copies");
        copies->setFocus();
        copies->selectAll();
        QTest::keyClicks(copies, QString::number(1 + below(20)));
        did("changed copies");
    }
    void typesARange() {
        const char* ranges[] = {"2-5", "3-", "-4", "7", "nonsense", "5-2"};
        const QString text = QLatin1String(ranges[below(6)]);
        type(*part<QLineEdit>(mDialog, "pageRange"), text);
        did("typed range", text);
    }
    void takesAnOffer() {
        const auto buttons = mDialog.messages().findChildren<QAbstractButton*>();
        for (QAbstractButton* button : buttons) {
            if (!isUsable(*button) || below(2) == 0)
                continue;
            did("took the offer", button->text());
            click(*button);
            return;
        }
    }
    void pressesKeys() {
        const Qt::Key keys[] = {Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Space, Qt::Key_Down};
        for (int i = 0; i < 4; ++i) {
            QWidget* focus = QApplication::focusWidget();
            // Not those that end the session or ask for a file.
            const QString name = focus ? focus->objectName() : QString();
            const bool leaves = name == u"print" || name == u"cancel" || name == u"chooseFiles" ||
                                name == u"savePreset" || name == u"printers";
            QTest::keyClick(focus ? focus : &mDialog, leaves ? Qt::Key_Tab : keys[below(4)]);
            settle();
            if (QWidget* popup = QApplication::activePopupWidget())
                QTest::keyClick(popup, Qt::Key_Escape);
            settle();
        }
        did("pressed keys");
    }

    PrintDialog& mDialog;
    std::mt19937 mRandom;
    std::vector<std::function<void()>> mActs;
    std::string mDone;
};

class RandomUserTest : public testing::TestWithParam<unsigned> {
protected:
    void use(const QString& ppd) {
        const auto dialog = openDialog(ppd);
        expectOneTruth(*dialog);
        RandomUser user(*dialog, GetParam());
        std::string story;
        for (int i = 0; i < kActs && !HasFailure(); ++i) {
            story += user.act() + '\n';
            SCOPED_TRACE(story);
            ASSERT_TRUE(dialog->isVisible());
            expectOneTruth(*dialog);
        }
    }

    Offscreen mOffscreen;
    PrivateHome mHome;
};

} // namespace

TEST_P(RandomUserTest, OnAPrinterForTape) {
    use(conflictingPpd(mHome));
}

TEST_P(RandomUserTest, OnAPrinterForRolls) {
    use(kRollPpd);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomUserTest, testing::Range(1U, 9U));

} // namespace labelcut::test
