// The dialog: disabled texts that can be read whatever the desktop's colours are.
#include "host/dialog/readable_palette.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPixmapCache>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace labelcut {

namespace {

using Roles = std::initializer_list<QPalette::ColorRole>;

/// What large letters and parts of controls need at least, as guidelines for accessibility say.
constexpr double kLeastContrast = 3;
/// In so many steps a colour comes closer to that of enabled texts.
constexpr int kSteps = 16;

/// From 0, black, to 1, white, as the eye takes it.
double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax(luminance(one), luminance(other));
    return (lighter + 0.05) / (darker + 0.05);
}

QColor blended(const QColor& from, const QColor& to, double share) {
    const auto part = [share](float a, float b) {
        return static_cast<float>(static_cast<double>(a) * (1 - share) +
                                  static_cast<double>(b) * share);
    };
    return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()),
                            part(from.blueF(), to.blueF()));
}

bool isReadable(const QPalette& palette, const QColor& text, Roles grounds) {
    return std::ranges::all_of(grounds, [&](QPalette::ColorRole ground) {
        return contrast(text, palette.color(QPalette::Disabled, ground)) >= kLeastContrast;
    });
}

void makeReadable(QPalette& palette, QPalette::ColorRole role, Roles grounds) {
    const QColor faint = palette.color(QPalette::Disabled, role);
    const QColor full = palette.color(QPalette::Active, role);
    for (int step = 0; step <= kSteps; ++step) {
        const QColor text = blended(faint, full, static_cast<double>(step) / kSteps);
        if (!isReadable(palette, text, grounds) && step < kSteps)
            continue;
        if (step > 0)
            palette.setColor(QPalette::Disabled, role, text);
        return;
    }
}

/// Follows the desktop's colours.
class PaletteKeeper : public QObject {
public:
    explicit PaletteKeeper(QWidget& window)
        : QObject(&window)
        , mWindow(window) {
        apply();
        qApp->installEventFilter(this);
    }
    /// Styles keep pictures of controls for each palette; those of this one are of no use any more.
    ~PaletteKeeper() override { QPixmapCache::clear(); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
            apply();
        return QObject::eventFilter(watched, event);
    }

private:
    void apply() { mWindow.setPalette(withReadableDisabledTexts(QGuiApplication::palette())); }

    QWidget& mWindow;
};

} // namespace

QPalette withReadableDisabledTexts(QPalette palette) {
    makeReadable(palette, QPalette::WindowText, {QPalette::Window});
    makeReadable(palette, QPalette::ButtonText, {QPalette::Button, QPalette::Window});
    makeReadable(palette, QPalette::Text, {QPalette::Base, QPalette::Window});
    return palette;
}

void keepDisabledTextsReadable(QWidget& window) {
    new PaletteKeeper(window);
}

} // namespace labelcut
