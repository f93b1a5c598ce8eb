#include "plugins/cut_options/fields/interface_fields.h"

#include "platform/toolkit/interface_file.h"
#include "plugins/cut_options/fields/pde_formatter.h"
#include "plugins/cut_options/fields/pde_text_field.h"
#include "plugins/cut_options/fields/vetted_edit.h"
#include "tests/plugins/cut_options/fields/refusals.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>

using namespace labelcut;
using labelcut::test::Refusals;

namespace {

struct NoBundle : PDEBundle {
    QString localizedStringForKey(const QString& key, const QString&,
                                  const QString&) const override {
        return key;
    }
    QString pathForImageResource(const QString&) const override { return {}; }
    QString pathForInterfaceFile(const QString&) const override { return {}; }
};

class InterfaceFields : public testing::Test {
protected:
    void SetUp() override {
        root = loadInterfaceFile(QStringLiteral(FIELDS_TEST_DATA "/fields.ui"), NoBundle(),
                                 {{textFieldClassName(), createTextField}});
        ASSERT_TRUE(root);
        attachFormatters(root.get());
    }
    QLineEdit* field(const char* name) const {
        return root->findChild<QLineEdit*>(QLatin1String(name));
    }

    Refusals refusals;
    std::unique_ptr<QWidget> root;
};

TEST_F(InterfaceFields, GiveAFieldTheFormatterThatTheFileDescribes) {
    auto* const formatter = dynamic_cast<PDEFormatter*>(attachedFormatter(field("count")));
    ASSERT_TRUE(formatter);
    EXPECT_EQ(formatter->textStyle(), 2);
    EXPECT_EQ(formatter->minValue(), 1);
    EXPECT_EQ(formatter->maxValue(), 99);
    EXPECT_TRUE(formatter->isValidityMinValue());
    EXPECT_TRUE(formatter->isValidityMaxValue());
    EXPECT_EQ(formatter->maxLength(), 2);
    EXPECT_EQ(formatter->formatString(), QStringLiteral("%d"));
}

TEST_F(InterfaceFields, VetWhatIsTypedIntoThem) {
    QTest::keyClicks(field("count"), QStringLiteral("4a2"));
    EXPECT_EQ(field("count")->text(), QStringLiteral("42"));
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
    QTest::keyClicks(field("count"), QStringLiteral("0"));
    EXPECT_EQ(field("count")->text(), QStringLiteral("42"));
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
}

TEST_F(InterfaceFields, AnnounceEditsWhenTheFileSaysSoAndVetThemToo) {
    QLineEdit* const announcing = field("announcing");
    ASSERT_TRUE(dynamic_cast<PDETextField13_v400_*>(announcing));
    std::vector<QObject*> posted;
    NotificationCentre::defaultCentre().addObserver(
        root.get(), QLatin1String(kTextFieldResignFirstResponderNotification), {},
        [&](const Notification& n) { posted.push_back(n.object.value<QObject*>()); });
    QTest::keyClicks(announcing, QStringLiteral("A1!b"));
    EXPECT_EQ(announcing->text(), QStringLiteral("A1b"));
    EXPECT_EQ(posted.size(), 3u) << "a refused edit changes no text";
    EXPECT_EQ(posted.front(), announcing);
    EXPECT_EQ(refusals.take(), Refusals::invalidCharacter());
}

TEST_F(InterfaceFields, SwitchOnOnlyTheBoundsThatAreGiven) {
    auto* const formatter = dynamic_cast<PDEFormatter*>(attachedFormatter(field("announcing")));
    ASSERT_TRUE(formatter);
    EXPECT_EQ(formatter->textStyle(), 6);
    EXPECT_FALSE(formatter->isValidityMinValue());
    EXPECT_FALSE(formatter->isValidityMaxValue());
    EXPECT_EQ(formatter->maxLength(), 0);
    EXPECT_EQ(formatter->formatString(), QStringLiteral("%@"));
}

TEST_F(InterfaceFields, LeaveAPlainFieldAlone) {
    EXPECT_EQ(attachedFormatter(field("plain")), nullptr);
    EXPECT_EQ(attachedFormatter(field("misspelt")), nullptr) << "its style is no number";
    QTest::keyClicks(field("plain"), QStringLiteral("x"));
    EXPECT_EQ(field("plain")->text(), QStringLiteral("x"));
}

TEST(AttachFormatters, LooksAtTheTopWidgetItselfToo) {
    QLineEdit top;
    top.setProperty("formatterStyle", 2);
    attachFormatters(&top);
    EXPECT_TRUE(attachedFormatter(&top));
    attachFormatters(nullptr);
}

TEST(TextFieldClassName, IsTheNameOfTheClass) {
    const std::unique_ptr<QLineEdit> field(createTextField(nullptr));
    const QString qualified = QLatin1String(field->metaObject()->className());
    EXPECT_TRUE(qualified.endsWith(QStringLiteral("::") + textFieldClassName()))
        << qualified.toStdString();
}

} // namespace
