// Disabled texts: readable in light and dark colours, and in those of a desktop that made them
// faint.
#include "host/dialog/readable_palette.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

#include "tests/host/dialog/dialog_fixtures.h"

namespace labelcut::test {

namespace {

double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QPalette& palette, QPalette::ColorGroup group, QPalette::ColorRole text,
                QPalette::ColorRole ground) {
    const double one = luminance(palette.color(group, text));
    const double other = luminance(palette.color(group, ground));
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

constexpr std::pair<QPalette::ColorRole, QPalette::ColorRole> kTexts[] = {
    {QPalette::WindowText, QPalette::Window},
    {QPalette::ButtonText, QPalette::Button},
    {QPalette::ButtonText, QPalette::Window},
    {QPalette::Text, QPalette::Base},
    {QPalette::Text, QPalette::Window}};

/// A desktop's colours, as the toolkit derives a whole palette from a few.
QPalette desktop(const QColor& text, const QColor& window, const QColor& base,
                 const QColor& faint) {
    QPalette palette(text, window, window.lighter(), window.darker(), window.darker(120), text,
                     base);
    palette.setColor(QPalette::Window, window);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

QPalette dark() {
    return desktop(QColor(0xee, 0xee, 0xee), QColor(0x30, 0x30, 0x30), QColor(0x1c, 0x1c, 0x1c),
                   QColor(0x50, 0x50, 0x50));
}

QPalette light() {
    return desktop(QColor(0x20, 0x20, 0x20), QColor(0xef, 0xef, 0xef), QColor(0xff, 0xff, 0xff),
                   QColor(0xbe, 0xbe, 0xbe));
}

} // namespace

TEST(ReadablePaletteTest, DisabledTextsStandOutThreeToOneAndLessThanEnabledOnes) {
    for (const QPalette& given : {dark(), light()}) {
        const QPalette readable = withReadableDisabledTexts(given);
        for (const auto& [text, ground] : kTexts) {
            ASSERT_LT(contrast(given, QPalette::Disabled, text, ground), 3);
            const double disabled = contrast(readable, QPalette::Disabled, text, ground);
            EXPECT_GE(disabled, 3);
            EXPECT_LT(disabled, contrast(readable, QPalette::Active, text, ground) / 1.5);
        }
    }
}

TEST(ReadablePaletteTest, ColoursThatCanBeReadAreLeftAlone) {
    const QPalette given = desktop(QColor(0xee, 0xee, 0xee), QColor(0x30, 0x30, 0x30),
                                   QColor(0x1c, 0x1c, 0x1c), QColor(0xa0, 0xa0, 0xa0));
    EXPECT_EQ(withReadableDisabledTexts(given), given);
    const QPalette mended = withReadableDisabledTexts(dark());
    EXPECT_EQ(withReadableDisabledTexts(mended), mended);
}

TEST(ReadablePaletteTest, AWindowAndWhatIsInItFollowTheDesktopsColours) {
    const QPalette before = QApplication::palette();
    QWidget window;
    auto* box = new QCheckBox(&window);
    keepDisabledTextsReadable(window);
    for (const QPalette& given : {dark(), light()}) {
        QApplication::setPalette(given);
        settle();
        const QPalette shown = box->palette();
        EXPECT_EQ(shown.color(QPalette::Active, QPalette::Window),
                  given.color(QPalette::Active, QPalette::Window));
        for (const auto& [text, ground] : kTexts)
            EXPECT_GE(contrast(shown, QPalette::Disabled, text, ground), 3);
    }
    QApplication::setPalette(before);
}

TEST(ReadablePaletteTest, ThePrintDialogsDisabledTextsCanBeReadInDarkColours) {
    const Offscreen offscreen;
    const PrivateHome home;
    const QPalette before = QApplication::palette();
    QApplication::setPalette(dark());
    auto dialog = openDialog(kTapePpd);
    for (const QWidget* widget : dialog->findChildren<QWidget*>()) {
        const QPalette shown = widget->palette();
        for (const auto& [text, ground] : kTexts)
            EXPECT_GE(contrast(shown, QPalette::Disabled, text, ground), 3)
                << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
    }
    dialog.reset();
    QApplication::setPalette(before);
}

} // namespace labelcut::test
