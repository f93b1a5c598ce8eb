// The page of the printer's other options: names for screen readers, and room for any text.
#include "host/dialog/features_page.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>

#include "host/dialog/pages_page.h"
#include "tests/host/dialog/dialog_fixtures.h"

namespace labelcut::test {

namespace {

/// Texts as long as a PPD may have them, one of them a single word.
QByteArray longOptions() {
    const QByteArray words = QByteArray("Aussergewoehnlich lange Bezeichnung ").repeated(2);
    const QByteArray word = QByteArray("Etikettenbreite").repeated(5);
    return "*OpenGroup: Long/" + words + "\n*OpenUI *Wordy/" + words +
           ": PickOne\n*DefaultWordy: A\n*Wordy A/" + words + ": \"\"\n*Wordy B/" + word +
           ": \"\"\n*CloseUI: *Wordy\n*CustomWordy True/" + words +
           ": \"pop pop\"\n*ParamCustomWordy First/" + words +
           ": 1 points 0 72\n*ParamCustomWordy Second/" + words +
           ": 2 string 3 9\n*CloseGroup: Long\n";
}

/// Milliseconds; QComboBox has a timer of 20.
constexpr int kLongerThanQtPutsOff = 100;

class FieldsTest : public testing::Test {
protected:
    void open(const QString& ppd) { mModel.adopt(openedPpd(ppd)); }
    void choose(const char* keyword, const char* choice) {
        ASSERT_TRUE(mModel.choose(QLatin1String(keyword), QLatin1String(choice)));
    }

    PrivateHome mHome;
    JobModel mModel;
};

QStringList namesGivenBy(QWidget& field) {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&field);
    QStringList names;
    for (const auto& [label, relation] : interface->relations(QAccessible::Label))
        names << label->text(QAccessible::Name);
    return names;
}

template<typename Field>
Field& visible(const QWidget& page, int index = 0) {
    QList<Field*> fields = page.findChildren<Field*>();
    fields.removeIf([](const Field* field) { return !field->isVisible(); });
    return *fields.at(index);
}

} // namespace

TEST_F(FieldsTest, EveryPopUpIsNamedByTheLabelBesideIt) {
    open(kTapePpd);
    FeaturesPage features(mModel);
    PagesPage pages(mModel);
    for (const auto& [page, keyword, name] :
         std::initializer_list<std::tuple<QWidget*, const char*, const char*>>{
             {&features, "choices-FeedLength", "Feed after printing"},
             {&features, "choices-Quality", "Quality"},
             {&pages, "choices-PageSize", "Label size:"}}) {
        auto* choices = part<QComboBox>(*page, keyword);
        ASSERT_TRUE(choices);
        QStringList names = namesGivenBy(*choices);
        ASSERT_FALSE(names.isEmpty()) << keyword;
        EXPECT_EQ(names.front().remove(u'&').toStdString(), name);
    }
}

TEST_F(FieldsTest, AFieldOfACustomValueSaysOfWhichOptionItIsAndWhatItTakes) {
    open(kTapePpd);
    choose("FeedLength", "Custom.72");
    FeaturesPage page(mModel);
    page.show();
    auto& edit = visible<QLineEdit>(page);
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&edit);
    EXPECT_EQ(interface->text(QAccessible::Name).toStdString(), "Feed after printing: Length");
    EXPECT_EQ(interface->text(QAccessible::Description).toStdString(), "0 mm to 101.6 mm");
}

TEST_F(FieldsTest, ThePageIsNeverScrolledSideways) {
    open(extendedPpd(mHome, longOptions()));
    choose("Wordy", "{First=1 Second=abc}");
    FeaturesPage page(mModel);
    for (const int width : {400, 700, 400}) {
        page.resize(width, 500);
        page.show();
        settle();
        EXPECT_EQ(page.horizontalScrollBar()->maximum(), 0) << width;
        for (const QWidget* field : page.findChildren<QWidget*>()) {
            const bool isCut = field->isVisible() && field->parentWidget() &&
                               !field->parentWidget()->rect().contains(field->geometry());
            const bool isPart = qobject_cast<const QComboBox*>(field) ||
                                qobject_cast<const QLineEdit*>(field) ||
                                qobject_cast<const QLabel*>(field);
            EXPECT_FALSE(isPart && isCut) << width << ": " << qPrintable(field->objectName());
        }
    }
}

TEST_F(FieldsTest, APopUpThatIsLaidOutStaysAsItIs) {
    struct Resizes : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            count += event->type() == QEvent::Resize ? 1 : 0;
            return false;
        }
        int count = 0;
    } resizes;
    open(extendedPpd(mHome, longOptions()));
    FeaturesPage page(mModel);
    page.resize(400, 500);
    page.show();
    // The layout, but no timer.
    QCoreApplication::sendPostedEvents();
    part<QComboBox>(page, "choices-Wordy")->installEventFilter(&resizes);
    turnFor(kLongerThanQtPutsOff);
    EXPECT_EQ(resizes.count, 0);
}

TEST_F(FieldsTest, AChoiceThatDoesNotFitIsWholeInAToolTipAndOneThatFitsIsNot) {
    open(extendedPpd(mHome, longOptions()));
    choose("Wordy", "B");
    FeaturesPage page(mModel);
    page.resize(400, 500);
    page.show();
    settle();
    const Offscreen offscreen;
    const auto toolTipOf = [&](const char* keyword) {
        auto* box = part<QComboBox>(page, (QByteArray("choices-") + keyword).constData());
        QToolTip::hideText();
        turnUntil([] { return !QToolTip::isVisible(); });
        QHelpEvent help(QEvent::ToolTip, {5, 5}, box->mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(box, &help);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    };
    const QString word = QStringLiteral("Etikettenbreite").repeated(5);
    EXPECT_TRUE(toolTipOf("Wordy").contains(word));
    EXPECT_EQ(toolTipOf("Quality"), QString());
    page.resize(1600, 500);
    settle();
    EXPECT_FALSE(toolTipOf("Wordy").contains(word)) << "there is room for all of it";
}

TEST_F(FieldsTest, AnOpenListIsAsWideAsItsEntries) {
    open(extendedPpd(mHome, longOptions()));
    FeaturesPage page(mModel);
    page.resize(400, 500);
    page.show();
    settle();
    auto* box = part<QComboBox>(page, "choices-Wordy");
    const Offscreen offscreen;
    box->showPopup();
    settle();
    EXPECT_GE(box->view()->width(), box->view()->sizeHintForColumn(0));
    box->hidePopup();
}

} // namespace labelcut::test
