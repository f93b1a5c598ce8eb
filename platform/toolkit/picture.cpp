// Toolkit: a picture that is drawn sharp at any scale, in a light and a dark variant.
#include "platform/toolkit/picture.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include <utility>

#include "platform/toolkit/painted_icon.h"

namespace labelcut {

namespace {
/// Pictures beyond, 4 MB of pixels, are drawn anew each time.
constexpr qint64 kMostKeptPixels = 1 << 20;
} // namespace

/// One file's bytes, and what they parse to once somebody looks.
struct Picture::Variant {
    QByteArray bytes;
    bool parsed = false;
    std::unique_ptr<QSvgRenderer> svg;
    QImage image;

    static std::unique_ptr<Variant> fromFile(const QString& path) {
        QFile file(path);
        if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
            return nullptr;
        auto variant = std::make_unique<Variant>();
        variant->bytes = file.readAll();
        return variant;
    }

    void parse() {
        if (std::exchange(parsed, true))
            return;
        if (!bytes.trimmed().startsWith('<'))
            image = QImage::fromData(bytes);
        else
            svg = std::make_unique<QSvgRenderer>(bytes);
        if (svg && !svg->isValid())
            svg.reset();
        bytes.clear();
    }

    bool isEmpty() const { return !svg && image.isNull(); }

    void draw(QPainter& painter, const QRectF& target) {
        parse();
        if (svg)
            drawSvg(painter, target);
        else if (!image.isNull())
            painter.drawImage(target, image);
    }

private:
    void drawSvg(QPainter& painter, const QRectF& target);

    /// The SVG as it was last drawn, pixel for pixel of the device, and where in it.
    QImage mDrawn;
    QRectF mDrawnAt;
};

/// A view is redrawn far more often than its scale changes, so that the pixels are kept.
void Picture::Variant::drawSvg(QPainter& painter, const QRectF& target) {
    const QTransform& toDevice = painter.deviceTransform();
    const QRectF exact = toDevice.mapRect(target);
    const QRect pixels = exact.toAlignedRect();
    const bool isUpright =
        toDevice.type() <= QTransform::TxScale && toDevice.m11() > 0 && toDevice.m22() > 0;
    if (!isUpright || qint64{pixels.width()} * pixels.height() > kMostKeptPixels) {
        svg->render(&painter, target);
        return;
    }
    const QRectF at = exact.translated(-pixels.topLeft());
    if (mDrawn.size() != pixels.size() || mDrawnAt != at) {
        mDrawn = QImage(pixels.size(), QImage::Format_ARGB32_Premultiplied);
        mDrawn.fill(Qt::transparent);
        mDrawnAt = at;
        QPainter onImage(&mDrawn);
        onImage.setRenderHint(QPainter::Antialiasing);
        svg->render(&onImage, at);
    }
    painter.drawImage(toDevice.inverted().mapRect(QRectF(pixels)), mDrawn);
}

Picture::Picture(std::unique_ptr<Variant> light, QString darkPath)
    : mLight(std::move(light))
    , mDarkPath(std::move(darkPath)) {}

Picture::~Picture() = default;

std::shared_ptr<const Picture> Picture::fromFile(const QString& path) {
    auto light = Variant::fromFile(path);
    if (!light)
        return nullptr;
    const QFileInfo info(path);
    return std::shared_ptr<const Picture>(
        new Picture(std::move(light), info.path() + QStringLiteral("/dark/") + info.fileName()));
}

QSizeF Picture::size() const {
    mLight->parse();
    return mLight->svg ? QSizeF(mLight->svg->defaultSize()) : QSizeF(mLight->image.size());
}

void Picture::draw(QPainter& painter, const QRectF& target, bool onDark) const {
    if (onDark && !mDarkPath.isEmpty())
        mDark = Variant::fromFile(std::exchange(mDarkPath, QString()));
    if (onDark && mDark)
        mDark->parse();
    Variant& variant = onDark && mDark && !mDark->isEmpty() ? *mDark : *mLight;
    variant.draw(painter, target);
}

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

namespace {

class PictureIconEngine : public PaintedIconEngine {
public:
    explicit PictureIconEngine(std::shared_ptr<const Picture> picture)
        : mPicture(std::move(picture)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        constexpr double kDisabledOpacity = 0.45;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (mode == QIcon::Disabled)
            painter->setOpacity(kDisabledOpacity);
        mPicture->draw(*painter, rect, isDark(QGuiApplication::palette()));
        painter->restore();
    }

    QIconEngine* clone() const override { return new PictureIconEngine(mPicture); }

private:
    std::shared_ptr<const Picture> mPicture;
};

} // namespace

QIcon iconFromPicture(std::shared_ptr<const Picture> picture) {
    if (!picture)
        return {};
    return QIcon(new PictureIconEngine(std::move(picture)));
}

} // namespace labelcut
