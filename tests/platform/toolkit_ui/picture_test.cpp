// Tests of the toolkit: pictures, light and dark.
#include <gtest/gtest.h>

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>

#include "platform/toolkit/picture.h"

namespace labelcut::test {
namespace {

QByteArray svg(const char* colour) {
    return "<?xml version=\"1.0\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"30\" "
           "height=\"20\"><rect width=\"30\" height=\"20\" fill=\"" +
           QByteArray(colour) + "\"/></svg>";
}

QByteArray png(Qt::GlobalColor colour) {
    QImage image(8, 6, QImage::Format_ARGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

class Pictures : public testing::Test {
protected:
    QString write(const QString& name, const QByteArray& bytes) {
        QDir(mFolder.path()).mkpath(QFileInfo(name).path());
        QFile out(mFolder.filePath(name));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
        return out.fileName();
    }
    static QColor colour(const Picture& picture, bool onDark) {
        QImage image(30, 20, QImage::Format_ARGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        picture.draw(painter, QRectF(0, 0, 30, 20), onDark);
        return image.pixelColor(15, 10);
    }
    QTemporaryDir mFolder;
};

TEST_F(Pictures, AreSvgOrAnyImageFormat) {
    const auto vector = Picture::fromFile(write(QStringLiteral("a.svg"), svg("#ff0000")));
    ASSERT_TRUE(vector);
    EXPECT_EQ(vector->size(), QSizeF(30, 20));
    EXPECT_EQ(colour(*vector, false), QColor(Qt::red));
    const auto image = Picture::fromFile(write(QStringLiteral("b.png"), png(Qt::blue)));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), QSizeF(8, 6));
    EXPECT_EQ(colour(*image, false), QColor(Qt::blue));
    // What a file holds counts, not what it is called.
    EXPECT_EQ(Picture::fromFile(write(QStringLiteral("c.svg"), png(Qt::blue)))->size(),
              QSizeF(8, 6));
}

TEST_F(Pictures, HaveADarkVariantBesideThem) {
    write(QStringLiteral("dark/a.svg"), svg("#00ff00"));
    const auto both = Picture::fromFile(write(QStringLiteral("a.svg"), svg("#ff0000")));
    EXPECT_EQ(colour(*both, false), QColor(Qt::red));
    EXPECT_EQ(colour(*both, true), QColor(Qt::green));
    const auto light = Picture::fromFile(write(QStringLiteral("b.svg"), svg("#ff0000")));
    EXPECT_EQ(colour(*light, true), QColor(Qt::red));
}

TEST_F(Pictures, FallBackToLightWhenTheDarkFileIsBroken) {
    for (const char* broken : {"", "<svg", "<html/>", "nothing"}) {
        write(QStringLiteral("dark/a.svg"), broken);
        const auto picture = Picture::fromFile(write(QStringLiteral("a.svg"), svg("#ff0000")));
        EXPECT_EQ(colour(*picture, true), QColor(Qt::red)) << broken;
    }
}

TEST_F(Pictures, ThatCannotBeReadAreNull) {
    EXPECT_FALSE(Picture::fromFile(QString()));
    EXPECT_FALSE(Picture::fromFile(mFolder.filePath(QStringLiteral("none.svg"))));
    EXPECT_FALSE(Picture::fromFile(mFolder.path()));
    write(QStringLiteral("dark/a.svg"), svg("#00ff00"));
    EXPECT_FALSE(Picture::fromFile(mFolder.filePath(QStringLiteral("a.svg"))));
}

TEST_F(Pictures, WithoutAPictureInThemAreEmptyAndDrawNothingInSilence) {
    for (const char* broken : {"", "x", "<", "<svg>", "<svg></svgg>", "<html></html>",
                               "<?xml version=\"1.0\"?>", "  \n<svg"}) {
        const auto picture = Picture::fromFile(write(QStringLiteral("a.svg"), broken));
        ASSERT_TRUE(picture);
        EXPECT_TRUE(picture->size().isEmpty()) << broken;
        EXPECT_EQ(colour(*picture, false), QColor(Qt::white)) << broken;
    }
}

TEST_F(Pictures, FillTheTargetOnly) {
    const auto picture = Picture::fromFile(write(QStringLiteral("a.svg"), svg("#ff0000")));
    QImage image(30, 20, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    picture->draw(painter, QRectF(10, 5, 10, 10), false);
    EXPECT_EQ(image.pixelColor(15, 10), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(5, 10), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(15, 17), QColor(Qt::white));
}

TEST_F(Pictures, LookTheSameEachTimeTheyAreDrawnAndLikeTheirFile) {
    const QByteArray drawing =
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"30\" height=\"20\">"
        "<circle cx=\"12\" cy=\"9\" r=\"7\" fill=\"#207040\" stroke=\"#ff0000\"/>"
        "<path d=\"M4 4 L26 16\" stroke=\"#000080\" stroke-width=\"2\"/></svg>";
    const auto picture = Picture::fromFile(write(QStringLiteral("a.svg"), drawing));
    QSvgRenderer file(drawing);
    struct Way {
        double scale;
        double turn;
        QPointF at;
        QSizeF size;
    };
    const Way ways[] = {{1, 0, {3, 4}, {30, 20}},      {1, 0, {3, 4}, {60, 40}},
                        {2, 0, {3, 4}, {30, 20}},      {1.5, 0, {3, 4}, {30, 20}},
                        {1, 0, {3.3, 4.6}, {30, 20}},  {1, 0, {3, 4}, {31.4, 20.9}},
                        {1, 30, {30, 4}, {30, 20}},    {1, 0, {-10, -5}, {30, 20}},
                        {30, 0, {-10, -5}, {100, 80}}, {1, 0, {3, 4}, {30, 20}}};
    for (const Way& way : ways) {
        const auto drawn = [&](auto draw) {
            QImage image(160, 120, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::white);
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.scale(way.scale, way.scale);
            painter.rotate(way.turn);
            draw(painter, QRectF(way.at, way.size));
            return image;
        };
        const auto byPicture = [&](QPainter& painter, const QRectF& target) {
            picture->draw(painter, target, false);
        };
        const QImage first = drawn(byPicture);
        EXPECT_EQ(drawn(byPicture), first);
        const QImage expected =
            drawn([&](QPainter& painter, const QRectF& target) { file.render(&painter, target); });
        int furthest = 0;
        for (int y = 0; y < expected.height(); ++y) {
            for (int x = 0; x < expected.width(); ++x) {
                const QColor a = first.pixelColor(x, y);
                const QColor b = expected.pixelColor(x, y);
                furthest =
                    std::max({furthest, std::abs(a.red() - b.red()),
                              std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())});
            }
        }
        // Blended onto nothing first, edges may differ by rounding.
        EXPECT_LE(furthest, 4) << way.scale << ", " << way.turn << ", " << way.at.x() << ", "
                               << way.size.width();
    }
}

TEST_F(Pictures, AreLoadedWholeWhenAskedFor) {
    const QString path = write(QStringLiteral("a.svg"), svg("#ff0000"));
    const auto picture = Picture::fromFile(path);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(colour(*picture, false), QColor(Qt::red));
}

TEST(IsDark, ComparesTextAndBackground) {
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::white);
    palette.setColor(QPalette::WindowText, Qt::black);
    EXPECT_FALSE(isDark(palette));
    palette.setColor(QPalette::Window, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::white);
    EXPECT_TRUE(isDark(palette));
    palette.setColor(QPalette::Window, Qt::white);
    EXPECT_FALSE(isDark(palette));
}

TEST_F(Pictures, AsIconsFollowPaletteAndMode) {
    write(QStringLiteral("dark/a.svg"), svg("#00ff00"));
    const QIcon icon =
        iconFromPicture(Picture::fromFile(write(QStringLiteral("a.svg"), svg("#ff0000"))));
    ASSERT_FALSE(icon.isNull());
    const auto shown = [&icon](QIcon::Mode mode) {
        return icon.pixmap(QSize(30, 20), mode).toImage().pixelColor(15, 10);
    };
    EXPECT_EQ(shown(QIcon::Normal), QColor(Qt::red));
    EXPECT_LT(shown(QIcon::Disabled).alpha(), 200);
    const QPalette before = QApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    QApplication::setPalette(dark);
    EXPECT_EQ(shown(QIcon::Normal), QColor(Qt::green));
    QApplication::setPalette(before);
    EXPECT_TRUE(iconFromPicture(nullptr).isNull());
    // A copy draws on its own.
    QIcon copy = icon;
    copy.addPixmap(QPixmap());
    EXPECT_FALSE(copy.isNull());
}

TEST_F(Pictures, AsIconsAreNothingInSilenceWhereThereIsNoRoom) {
    const QIcon icon =
        iconFromPicture(Picture::fromFile(write(QStringLiteral("a.svg"), svg("#ff0000"))));
    for (const QSize& none : {QSize(0, 0), QSize(30, 0), QSize(0, 20), QSize(-3, -3)}) {
        for (const double ratio : {1.0, 2.0})
            EXPECT_TRUE(icon.pixmap(none, ratio).isNull());
    }
}

TEST_F(Pictures, AsIconsAreSharpOnDenseScreens) {
    const QIcon icon =
        iconFromPicture(Picture::fromFile(write(QStringLiteral("a.svg"), svg("#ff0000"))));
    const QPixmap pixmap = icon.pixmap(QSize(30, 20), 2.0);
    EXPECT_EQ(pixmap.size(), QSize(60, 40));
    EXPECT_EQ(pixmap.devicePixelRatio(), 2.0);
}

} // namespace
} // namespace labelcut::test
