// Resource tests: the preview pictures are all there, tell themselves apart, and keep the grammar.
#include "tests/plugins/cut_options/resources/picture_names.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

using labelcut::test::pictureNames;

constexpr QSize previewSize{300, 84};
constexpr QSize popupSize{100, 28};

struct Theme {
    const char* folder;
    QRgb background;
};

std::ostream& operator<<(std::ostream& out, const Theme& theme) {
    return out << (*theme.folder ? "dark" : "light");
}

QString fileOf(const Theme& theme, const QString& name) {
    return QStringLiteral(LABELCUT_BUNDLE_DIR "/") + QLatin1String(theme.folder) + name +
           QStringLiteral(".svg");
}

QImage paint(QSvgRenderer& renderer, QSize canvas, const QRectF& where, const QColor& background) {
    QImage image(canvas, QImage::Format_ARGB32_Premultiplied);
    image.fill(background);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, where);
    return image;
}

QImage picture(const Theme& theme, const QString& name, QSize size) {
    QSvgRenderer renderer(fileOf(theme, name));
    EXPECT_TRUE(renderer.isValid()) << name.toStdString();
    return paint(renderer, size, QRectF(QPointF(), QSizeF(size)), QColor(theme.background));
}

int distance(QRgb one, QRgb other) {
    return std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                     std::abs(qBlue(one) - qBlue(other))});
}

bool visiblyDifferent(QRgb one, QRgb other) {
    return distance(one, other) > 60;
}

int visibleDifference(const QImage& one, const QImage& other) {
    int count = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            count += visiblyDifferent(one.pixel(x, y), other.pixel(x, y));
    return count;
}

bool hasPaintOutside(QSvgRenderer& renderer) {
    constexpr int margin = 30;
    const QRect inside(QPoint(margin, margin), previewSize);
    const QImage image =
        paint(renderer, previewSize + QSize(2 * margin, 2 * margin), inside, Qt::transparent);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (!inside.contains(x, y) && qAlpha(image.pixel(x, y)) != 0)
                return true;
    return false;
}

/// The boxes, left to right, that hold every difference of two pictures; boxes that are at least
/// eight columns apart are separate.
std::vector<QRect> differenceBoxes(const QImage& one, const QImage& other) {
    std::vector<QRect> boxes;
    for (int x = 0; x < one.width(); ++x) {
        for (int y = 0; y < one.height(); ++y) {
            if (distance(one.pixel(x, y), other.pixel(x, y)) <= 8)
                continue;
            const QRect here(x, y, 1, 1);
            if (boxes.empty() || x - boxes.back().right() > 8)
                boxes.push_back(here);
            else
                boxes.back() |= here;
        }
    }
    return boxes;
}

bool isInk(QRgb pixel) {
    return qGray(pixel) < 110;
}

class Pictures : public testing::TestWithParam<Theme> {};

TEST_P(Pictures, AreAllThereAndRenderAtTheirSize) {
    const QStringList names = pictureNames();
    ASSERT_EQ(names.size(), 24);
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        ASSERT_TRUE(QFileInfo::exists(fileOf(GetParam(), name)));
        QSvgRenderer renderer(fileOf(GetParam(), name));
        ASSERT_TRUE(renderer.isValid());
        EXPECT_EQ(renderer.defaultSize(), previewSize);
        QImage blank(previewSize, QImage::Format_ARGB32_Premultiplied);
        blank.fill(QColor(GetParam().background));
        EXPECT_GT(visibleDifference(picture(GetParam(), name, previewSize), blank), 5000);
    }
}

TEST_P(Pictures, TellThemselvesApartAtBothSizes) {
    struct Scale {
        QSize size;
        int least;
    };
    const QStringList names = pictureNames();
    for (const Scale scale : {Scale{previewSize, 200}, Scale{popupSize, 20}}) {
        std::vector<QImage> images;
        for (const QString& name : names)
            images.push_back(picture(GetParam(), name, scale.size));
        for (std::size_t i = 0; i < images.size(); ++i)
            for (std::size_t j = i + 1; j < images.size(); ++j)
                EXPECT_GE(visibleDifference(images[i], images[j]), scale.least)
                    << names[qsizetype(i)].toStdString() << " looks like "
                    << names[qsizetype(j)].toStdString() << " at " << scale.size.width();
    }
}

TEST_P(Pictures, MirrorFlipsTheThreeLettersAndNothingElse) {
    int pairs = 0;
    for (const QString& name : pictureNames()) {
        if (!name.endsWith(QLatin1String("Off")))
            continue;
        ++pairs;
        SCOPED_TRACE(name.toStdString());
        const QImage plain = picture(GetParam(), name, previewSize);
        const QImage mirrored =
            picture(GetParam(), name.chopped(3) + QStringLiteral("On"), previewSize);
        const std::vector<QRect> boxes = differenceBoxes(plain, mirrored);
        ASSERT_EQ(boxes.size(), 3u);
        for (const QRect& box : boxes) {
            EXPECT_LE(box.width(), 26);
            EXPECT_GE(box.top(), 36);
            EXPECT_LE(box.bottom(), 72);
            // A letter and its mirror image differ symmetrically about their common middle.
            int ink = 0;
            int wrong = 0;
            for (int y = 36; y <= 72; ++y) {
                for (int x = box.left(); x <= box.right(); ++x) {
                    const int opposite = box.left() + box.right() - x;
                    ink += isInk(plain.pixel(x, y));
                    wrong += isInk(plain.pixel(x, y)) != isInk(mirrored.pixel(opposite, y));
                }
            }
            EXPECT_GT(ink, 150);
            // The weave under a letter is not flipped with it, so a soft edge may fall either way.
            EXPECT_LE(wrong, ink / 20) << "letter at " << box.left();
        }
    }
    EXPECT_EQ(pairs, 12);
}

TEST_P(Pictures, StayInsideTheirFrame) {
    for (const QString& name : pictureNames()) {
        QSvgRenderer renderer(fileOf(GetParam(), name));
        EXPECT_FALSE(hasPaintOutside(renderer)) << name.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(BothColourSets, Pictures,
                         testing::Values(Theme{"", 0xfff0f0f0}, Theme{"dark/", 0xff2b2b2b}),
                         testing::PrintToStringParamName());

TEST(PicturesTogether, DarkOnesAreNotTheLightOnes) {
    for (const QString& name : pictureNames()) {
        const QImage light = picture(Theme{"", 0xff808080}, name, previewSize);
        const QImage dark = picture(Theme{"dark/", 0xff808080}, name, previewSize);
        EXPECT_GT(visibleDifference(light, dark), 1000) << name.toStdString();
    }
}

TEST(PicturesTogether, PaintOutsideTheFrameWouldBeSeen) {
    QSvgRenderer renderer(QByteArray(R"(<svg xmlns="http://www.w3.org/2000/svg" width="300"
        height="84" viewBox="0 0 300 84"><rect x="290" y="4" width="20" height="9"/></svg>)"));
    EXPECT_TRUE(hasPaintOutside(renderer));
}

} // namespace
