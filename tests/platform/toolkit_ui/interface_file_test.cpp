// Tests of the toolkit: interface files with the conventions of ours.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include "platform/toolkit/check_box.h"
#include "platform/toolkit/handles.h"
#include "platform/toolkit/interface_file.h"
#include "platform/toolkit/notification_centre.h"
#include "platform/toolkit/points.h"
#include "platform/toolkit/stepper.h"

namespace labelcut::test {
namespace {

/// Texts are their keys in angle brackets; pictures are one black file.
class EchoBundle : public PDEBundle {
public:
    QString localizedStringForKey(const QString& key, const QString&,
                                  const QString&) const override {
        return u'<' + key + u'>';
    }
    QString pathForImageResource(const QString& name) const override {
        return name == QLatin1String("black") ? mFolder.filePath(QStringLiteral("black.svg"))
                                              : QString();
    }
    QString pathForInterfaceFile(const QString&) const override { return {}; }

    EchoBundle() {
        QFile out(mFolder.filePath(QStringLiteral("black.svg")));
        if (out.open(QIODevice::WriteOnly))
            out.write("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"8\" height=\"8\"><rect "
                      "width=\"8\" height=\"8\"/></svg>");
    }

private:
    QTemporaryDir mFolder;
};

QByteArray strings(const QByteArray& property, const QByteArrayList& texts) {
    QByteArray all = "<property name=\"" + property + "\" stdset=\"0\"><stringlist>";
    for (const QByteArray& text : texts)
        all += "<string>" + text + "</string>";
    return all + "</stringlist></property>";
}

QByteArray text(const QByteArray& property, const QByteArray& value) {
    return "<property name=\"" + property + "\" stdset=\"0\"><string>" + value +
           "</string></property>";
}

QByteArray at(int x, int y, int w, int h) {
    const auto part = [](const char* tag, int value) {
        return QByteArray("<") + tag + ">" + QByteArray::number(value) + "</" + tag + ">";
    };
    return "<property name=\"geometry\"><rect>" + part("x", x) + part("y", y) + part("width", w) +
           part("height", h) + "</rect></property>";
}

QByteArray file(const QByteArray& children) {
    return "<?xml version=\"1.0\"?><ui version=\"4.0\"><class>Top</class><widget "
           "class=\"QWidget\" name=\"top\">" +
           at(0, 0, 200, 100) + children +
           "</widget><customwidgets><customwidget><class>Stepper</class><extends>QWidget</extends>"
           "<header>x.h</header></customwidget><customwidget><class>Special</class><extends>"
           "QLineEdit</extends><header>x.h</header></customwidget></customwidgets></ui>";
}

class InterfaceFile : public testing::Test {
protected:
    std::unique_ptr<QWidget> load(const QByteArray& bytes, const WidgetFactories& factories = {}) {
        const QString path = mFolder.filePath(QStringLiteral("x.ui"));
        QFile out(path);
        EXPECT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(bytes);
        out.close();
        return loadInterfaceFile(path, mBundle, factories);
    }
    template<typename Widget>
    static Widget* find(const std::unique_ptr<QWidget>& root, const char* name) {
        return root->findChild<Widget*>(QLatin1String(name));
    }

    EchoBundle mBundle;
    QTemporaryDir mFolder;
};

TEST_F(InterfaceFile, GivesAHiddenTopWidgetWithChildrenInPoints) {
    const auto root =
        load(file("<widget class=\"QLabel\" name=\"a\">" + at(10, 20, 30, 16) + "</widget>"));
    ASSERT_TRUE(root);
    EXPECT_EQ(root->objectName(), QStringLiteral("top"));
    EXPECT_FALSE(root->parentWidget());
    EXPECT_FALSE(root->isVisible());
    EXPECT_EQ(points::rect(*find<QLabel>(root, "a")), QRectF(10, 20, 30, 16));
    EXPECT_EQ(points::rect(*root).size(), QSizeF(200, 100));
    EXPECT_EQ(points::scale(*root), points::scaleForFont(*root));
    EXPECT_FALSE(View(find<QLabel>(root, "a")).isHidden());
}

TEST_F(InterfaceFile, MakesOurCheckBoxesAndSteppers) {
    const auto root = load(file("<widget class=\"QCheckBox\" name=\"box\"/><widget "
                                "class=\"Stepper\" name=\"stepper\"><property name=\"value\" "
                                "stdset=\"0\"><number>7</number></property></widget>"));
    ASSERT_TRUE(root);
    ASSERT_TRUE(find<CheckBox>(root, "box"));
    ASSERT_TRUE(find<Stepper>(root, "stepper"));
    EXPECT_EQ(find<Stepper>(root, "stepper")->value(), 7);
}

TEST_F(InterfaceFile, AsksTheCallerForFurtherClasses) {
    const WidgetFactories factories = {
        {QStringLiteral("Special"), [](QWidget* parent) { return new QLineEdit(parent); }},
        {QStringLiteral("QCheckBox"), [](QWidget* parent) { return new QCheckBox(parent); }}};
    const auto root = load(file("<widget class=\"Special\" name=\"special\"/><widget "
                                "class=\"QCheckBox\" name=\"box\"/>"),
                           factories);
    ASSERT_TRUE(root);
    EXPECT_TRUE(find<QLineEdit>(root, "special"));
    EXPECT_TRUE(find<QCheckBox>(root, "box"));
    EXPECT_FALSE(find<CheckBox>(root, "box"));
}

TEST_F(InterfaceFile, DressesPopUpEntries) {
    const auto root = load(
        file("<widget class=\"QComboBox\" name=\"popUp\">" + strings("entryTags", {"4", "12"}) +
             strings("entryPictures", {"black", "missing"}) +
             strings("entryAccessibleKeys", {"A", "B"}) +
             "<item><property name=\"text\"><string>one</string></property></item><item><property "
             "name=\"text\"><string>two</string></property></item><item><property name=\"text\">"
             "<string>three</string></property></item></widget>"));
    ASSERT_TRUE(root);
    auto* box = find<QComboBox>(root, "popUp");
    ASSERT_EQ(box->count(), 3);
    EXPECT_EQ(box->itemData(0, PopUpButton::kTagRole), QVariant(4));
    EXPECT_EQ(box->itemData(1, PopUpButton::kTagRole), QVariant(12));
    EXPECT_FALSE(box->itemData(2, PopUpButton::kTagRole).isValid());
    EXPECT_FALSE(box->itemIcon(0).isNull());
    EXPECT_TRUE(box->itemIcon(1).isNull());
    EXPECT_TRUE(box->itemIcon(2).isNull());
    EXPECT_EQ(box->itemData(0, Qt::AccessibleTextRole), QVariant(QStringLiteral("<A>")));
    EXPECT_EQ(box->itemData(1, Qt::ToolTipRole), QVariant(QStringLiteral("<B>")));
    EXPECT_FALSE(box->itemData(2, Qt::AccessibleTextRole).isValid());
    EXPECT_EQ(box->currentIndex(), 0);
    const QImage icon = box->itemIcon(0).pixmap(QSize(8, 8)).toImage();
    EXPECT_EQ(icon.pixelColor(4, 4), QColor(Qt::black));
}

TEST_F(InterfaceFile, SaysWhichPopUpEntryIsSelected) {
    const auto root = load(file(
        "<widget class=\"QComboBox\" name=\"popUp\">" + strings("entryAccessibleKeys", {"A", "B"}) +
        "<item><property name=\"text\"><string>one</string></property></item><item><property "
        "name=\"text\"><string>two</string></property></item></widget>"));
    auto* box = find<QComboBox>(root, "popUp");
    EXPECT_EQ(box->accessibleDescription(), QStringLiteral("<A>"));
    box->setCurrentIndex(1);
    EXPECT_EQ(box->accessibleDescription(), QStringLiteral("<B>"));
    box->removeItem(1);
    EXPECT_EQ(box->accessibleDescription(), QStringLiteral("<A>"));
    box->clear();
    EXPECT_EQ(box->accessibleDescription(), QString());
}

TEST_F(InterfaceFile, LeavesAPlainPopUpAlone) {
    const auto root = load(file("<widget class=\"QComboBox\" name=\"popUp\"><property "
                                "name=\"accessibleDescription\"><string>own</string></property>"
                                "<item><property name=\"text\"><string>one</string></property>"
                                "</item></widget>"));
    EXPECT_EQ(find<QComboBox>(root, "popUp")->accessibleDescription(), QStringLiteral("own"));
    EXPECT_FALSE(find<QComboBox>(root, "popUp")->itemData(0, PopUpButton::kTagRole).isValid());
}

TEST_F(InterfaceFile, LooksAccessibleTextsUp) {
    const auto root =
        load(file("<widget class=\"QLineEdit\" name=\"named\">" + text("accessibleNameKey", "N") +
                  text("accessibleDescriptionKey", "D") +
                  "</widget><widget class=\"QLineEdit\" name=\"bare\"/>"));
    EXPECT_EQ(find<QLineEdit>(root, "named")->accessibleName(), QStringLiteral("<N>"));
    EXPECT_EQ(find<QLineEdit>(root, "named")->accessibleDescription(), QStringLiteral("<D>"));
    EXPECT_TRUE(find<QLineEdit>(root, "bare")->accessibleName().isEmpty());
    EXPECT_TRUE(find<QLineEdit>(root, "bare")->accessibleDescription().isEmpty());
}

TEST_F(InterfaceFile, TiesAStepperToItsField) {
    const auto root =
        load(file("<widget class=\"Stepper\" name=\"stepper\">" + text("field", "count") +
                  text("upNameKey", "U") + text("downNameKey", "W") +
                  "</widget><widget class=\"QLineEdit\" name=\"count\"/>"));
    auto* stepper = find<Stepper>(root, "stepper");
    QTest::keyClick(find<QLineEdit>(root, "count"), Qt::Key_Up);
    EXPECT_EQ(stepper->value(), 1);
    QStringList names;
    for (const auto* arrow : stepper->findChildren<QToolButton*>())
        names.append(arrow->accessibleName());
    EXPECT_EQ(names, (QStringList{QStringLiteral("<U>"), QStringLiteral("<W>")}));
}

TEST_F(InterfaceFile, ThatIsMissingOrBrokenGivesNothingInSilence) {
    EXPECT_FALSE(loadInterfaceFile(QString(), mBundle));
    EXPECT_FALSE(loadInterfaceFile(mFolder.filePath(QStringLiteral("none.ui")), mBundle));
    EXPECT_FALSE(loadInterfaceFile(mFolder.path(), mBundle));
    for (const char* bytes : {"", "text", "<ui", "<ui version=\"4.0\"/>", "<html/>",
                              "<ui version=\"4.0\"><widget class=\"QWidget\" name=\"x\"></ui>",
                              "<ui version=\"4.0\"><class>X</class></ui>", "\xFF\xFE"})
        EXPECT_FALSE(load(bytes)) << bytes;
}

TEST_F(InterfaceFile, LeavesTheLibraryPathsAsTheyWere) {
    const QStringList before = QCoreApplication::libraryPaths();
    ASSERT_TRUE(load(file("")));
    EXPECT_EQ(QCoreApplication::libraryPaths(), before);
}

TEST_F(InterfaceFile, AnnouncesThatItsViewWasShownMovedOrResized) {
    std::unique_ptr<QWidget> root = load(file("<widget class=\"QLabel\" name=\"a\"/>"));
    QObject observer;
    int heard = 0;
    NotificationCentre::defaultCentre().addObserver(
        &observer, QLatin1String(kViewDidUpdateTrackingAreas),
        QVariant::fromValue<QObject*>(root.get()), [&](const Notification&) { ++heard; });
    root->update();
    find<QLabel>(root, "a")->resize(3, 3);
    EXPECT_EQ(heard, 0);
    QWidget window;
    root->setParent(&window);
    root->show();
    window.show();
    EXPECT_GT(heard, 0);
    heard = 0;
    root->move(30, 40);
    EXPECT_GT(heard, 0);
    heard = 0;
    points::setRootSize(*root, {300, 100});
    EXPECT_GT(heard, 0);
    root->setParent(nullptr);
}

} // namespace
} // namespace labelcut::test
