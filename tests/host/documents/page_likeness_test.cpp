// Pictures of pages: what they show is what Poppler's own program draws of the same pages, and what
// a page says of its boxes and its turn.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QColor>
#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "tests/host/documents/page_pictures_fixture.h"
#include "tests/support/made_pdf.h"

namespace labelcut {

using test::areSettled;
using testing::HasSubstr;
using State = PagePictures::State;
using TextDirection = PagePictures::TextDirection;

namespace {

const QString kSample = QStringLiteral(LABELCUT_SAMPLES "/labels.pdf");

/// @param isTurned  whether the page is turned by a quarter; the program scales it before, and then
/// needs a picture in the page's proportions.
QImage drawnByPoppler(const QString& pdf, int page, QSize pixels, bool isTurned) {
    QProcess program;
    const QString number = QString::number(page);
    const QSize scaled = isTurned ? pixels.transposed() : pixels;
    program.start(QStringLiteral("pdftoppm"),
                  {QStringLiteral("-cropbox"), QStringLiteral("-f"), number, QStringLiteral("-l"),
                   number, QStringLiteral("-scale-to-x"), QString::number(scaled.width()),
                   QStringLiteral("-scale-to-y"), QString::number(scaled.height()), pdf});
    EXPECT_TRUE(program.waitForFinished()) << program.errorString().toStdString();
    return QImage::fromData(program.readAllStandardOutput(), "PPM");
}

/// The share of pixels of which a colour differs by more than an eighth of its range.
double difference(const QImage& a, const QImage& b) {
    if (a.size() != b.size() || a.isNull())
        return 1;
    constexpr int kEighth = 32;
    int differing = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            differing += std::abs(qRed(p) - qRed(q)) > kEighth ||
                         std::abs(qGreen(p) - qGreen(q)) > kEighth ||
                         std::abs(qBlue(p) - qBlue(q)) > kEighth;
        }
    }
    return static_cast<double>(differing) / a.width() / a.height();
}

/// Both draw alike; their measures in points differ by rounding, which moves an edge here and
/// there.
constexpr double kAlike = 0.001;

void expectAlike(const QString& pdf, int page, QSize pixels, bool isTurned = false) {
    const QImage picture = test::pictureOf(pdf, page, pixels);
    const QImage expected = drawnByPoppler(pdf, page, pixels, isTurned);
    EXPECT_LE(difference(picture, expected), kAlike)
        << pdf.toStdString() << ", page " << page << ", " << picture.width() << " x "
        << picture.height() << " beside " << expected.width() << " x " << expected.height();
}

int pagesIn(const QString& pdf) {
    QProcess program;
    program.start(QStringLiteral("pdfinfo"), {pdf});
    EXPECT_TRUE(program.waitForFinished()) << program.errorString().toStdString();
    const QString said = QString::fromUtf8(program.readAllStandardOutput());
    static const QRegularExpression pages(QStringLiteral("^Pages: +(\\d+)$"),
                                          QRegularExpression::MultilineOption);
    return pages.match(said).captured(1).toInt();
}

/// Corners of a box of 40 x 80 points at 100, 200: red below left, green below right, blue above
/// left; and black all around it.
constexpr const char* kCorners = "0 0 0 rg 0 0 400 400 re f 1 1 1 rg 100 200 40 80 re f "
                                 "1 0 0 rg 100 200 10 10 re f 0 1 0 rg 130 200 10 10 re f "
                                 "0 0 1 rg 100 270 10 10 re f";

/// The colours in the corners: top left, top right, bottom right, bottom left.
std::string cornersOf(const QImage& picture) {
    const int right = picture.width() - 3;
    const int bottom = picture.height() - 3;
    std::string all;
    for (const QPoint at :
         {QPoint(2, 2), QPoint(right, 2), QPoint(right, bottom), QPoint(2, bottom)})
        all += picture.pixelColor(at).name().toStdString();
    return all;
}

constexpr const char* kRed = "#ff0000";
constexpr const char* kGreen = "#00ff00";
constexpr const char* kBlue = "#0000ff";
constexpr const char* kWhite = "#ffffff";

/// A page with a line of text in each of the given directions. Degrees.
QByteArray withText(const std::vector<int>& directions, const QByteArray& attributes = {}) {
    QByteArray content = "BT /F 12 Tf ";
    int line = 0;
    for (const int degrees : directions) {
        const double turn = degrees * std::acos(-1.0) / 180;
        const auto number = [](double value) { return QByteArray::number(value, 'f', 4) + ' '; };
        content += number(std::cos(turn)) + number(std::sin(turn)) + number(-std::sin(turn)) +
                   number(std::cos(turn)) + QByteArray::number(100 + 40 * line++) +
                   " 100 Tm (Shelf) Tj ";
    }
    return test::pdfOfPage("/MediaBox [0 0 300 200] /Resources << /Font << /F << /Type /Font "
                           "/Subtype /Type1 /BaseFont /Helvetica >> >> >> " +
                               attributes,
                           content + "ET");
}

class PageLikenessTest : public testing::Test {
protected:
    QImage pictureOf(const QByteArray& pdf, QSize pixels) const {
        return test::pictureOf(mFolder.file(QStringLiteral("page.pdf"), pdf), 1, pixels);
    }
    std::optional<TextDirection> directionOf(const QByteArray& pdf) const {
        PagePictures pictures;
        pictures.setDocument(mFolder.file(QStringLiteral("text.pdf"), pdf), nullptr);
        pictures.want({{1, {150, 100}}});
        EXPECT_TRUE(areSettled(pictures, {1}));
        return pictures.textDirection();
    }

    test::Folder mFolder;
};

} // namespace

TEST_F(PageLikenessTest, TheSampleLabelsAreDrawnAsByPopplersOwnProgram) {
    ASSERT_EQ(pagesIn(kSample), 12);
    for (const QSize pixels : {QSize(34, 71), QSize(136, 284), QSize(500, 300)}) {
        for (int page = 1; page <= 12; ++page)
            expectAlike(kSample, page, pixels);
    }
}

TEST_F(PageLikenessTest, SoIsEveryPdfThatTheSystemBrings) {
    QDirIterator files(QStringLiteral("/usr/share"), {QStringLiteral("*.pdf")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString pdf = files.next();
        const int pages = pagesIn(pdf);
        EXPECT_GE(pages, 1) << pdf.toStdString();
        for (int page = 1; page <= std::min(pages, 5); ++page)
            expectAlike(pdf, page, {400, 560});
    }
}

TEST_F(PageLikenessTest, SoAreTurnedCutOffAndScaledPages) {
    struct Row {
        const char* boxes;
        QSize pixels;
    };
    const Row rows[] = {
        {"/MediaBox [0 0 300 400]", {150, 200}},
        {"/MediaBox [50 150 200 300]", {150, 150}},
        {"/MediaBox [0 0 300 400] /CropBox [90 190 150 290]", {90, 150}},
        {"/MediaBox [0 0 300 400] /CropBox [150 290 90 190]", {90, 150}},
        {"/MediaBox [0 0 300 400] /CropBox [-50 200 100 500]", {100, 200}},
        {"/MediaBox [0 0 300 400] /UserUnit 3", {150, 200}},
    };
    int number = 0;
    for (const int turn : {0, 90, 180, 270, -90}) {
        for (const Row& row : rows) {
            const QString pdf = mFolder.file(
                QStringLiteral("%1.pdf").arg(++number),
                test::pdfOfPage(QByteArray(row.boxes) + " /Rotate " + QByteArray::number(turn),
                                kCorners));
            const bool isTurned = turn % 180 != 0;
            expectAlike(pdf, 1, isTurned ? row.pixels.transposed() : row.pixels, isTurned);
        }
    }
}

TEST_F(PageLikenessTest, APageFillsItsPictureWithWhatItsCropBoxShowsTurnedAsItSays) {
    const QByteArray boxes = "/MediaBox [0 0 400 400] /CropBox [100 200 140 280] ";
    struct Row {
        const char* attributes;
        std::string corners; // from the top left corner, clockwise
    };
    const std::string upright = std::string(kBlue) + kWhite + kGreen + kRed;
    const Row rows[] = {
        {"", upright},
        {"/UserUnit 2.5", upright},
        {"/Rotate 90", std::string(kRed) + kBlue + kWhite + kGreen},
        {"/Rotate 180", std::string(kGreen) + kRed + kBlue + kWhite},
        {"/Rotate 270", std::string(kWhite) + kGreen + kRed + kBlue},
    };
    for (const Row& row : rows) {
        const QByteArray pdf = test::pdfOfPage(boxes + row.attributes, kCorners);
        for (const QSize pixels : {QSize(80, 160), QSize(160, 80), QSize(97, 101)})
            EXPECT_EQ(cornersOf(pictureOf(pdf, pixels)), row.corners) << row.attributes;
    }
}

TEST_F(PageLikenessTest, PagesOfATenthOfAMillimetreAndOfTenMetresAreDrawn) {
    struct Row {
        const char* measure;
        QSize pixels;
    };
    const Row rows[] = {
        {"0.283 0.283", {100, 100}},         {"0.283 28346", {4, 4000}},
        {"28346 28346", {300, 300}},         {"68 28346", {136, 32'767}},
        {"1000000000 1000000000", {50, 50}},
    };
    for (const Row& row : rows) {
        const QImage picture =
            pictureOf(test::pdfOfPage("/MediaBox [0 0 " + QByteArray(row.measure) + ']',
                                      "1 0 0 rg 0 0 " + QByteArray(row.measure) + " re f"),
                      row.pixels);
        ASSERT_EQ(picture.size(), row.pixels) << row.measure;
        EXPECT_EQ(picture.pixelColor(row.pixels.width() / 2, row.pixels.height() / 2)
                      .name()
                      .toStdString(),
                  kRed)
            << row.measure;
    }
}

TEST_F(PageLikenessTest, PagesWithoutAreaAreBlankOrOfAnotherSizeAndNeverFail) {
    for (const char* box : {"[0 0 0 0]", "[5 5 5 90]", "[0 0 nan inf]", "[]", "0", "[1 2 (x) /Y]"})
        EXPECT_EQ(pictureOf(test::pdfOfPage("/MediaBox " + QByteArray(box), ""), {20, 30}).size(),
                  QSize(20, 30))
            << box;
}

TEST_F(PageLikenessTest, WordsTellTheirDirection) {
    EXPECT_EQ(directionOf(withText({})), TextDirection::None);
    EXPECT_EQ(directionOf(withText({0})), TextDirection::AlongWidth);
    EXPECT_EQ(directionOf(withText({180})), TextDirection::AlongWidth);
    EXPECT_EQ(directionOf(withText({90})), TextDirection::Upwards);
    EXPECT_EQ(directionOf(withText({270})), TextDirection::Downwards);
    EXPECT_EQ(directionOf(withText({90, 0, 90})), TextDirection::Upwards);
    EXPECT_EQ(directionOf(withText({90, 0, 180})), TextDirection::AlongWidth);
    EXPECT_EQ(directionOf(withText({0}, "/Rotate 90")), TextDirection::Downwards);
    EXPECT_EQ(directionOf(withText({0}, "/Rotate 180")), TextDirection::AlongWidth);
    EXPECT_EQ(directionOf(withText({90}, "/Rotate 270")), TextDirection::AlongWidth);
}

TEST_F(PageLikenessTest, MoreTextThanALabelHoldsIsDrawnAndNotLookedAt) {
    QByteArray content = "BT /F 8 Tf ";
    for (int word = 0; word < 3'000; ++word)
        content += "1 0 0 1 " + QByteArray::number(word * 37 % 280) + ' ' +
                   QByteArray::number(word * 91 % 190) + " Tm (word" + QByteArray::number(word) +
                   ") Tj ";
    const QString pdf = mFolder.file(
        QStringLiteral("words.pdf"),
        test::pdfOfPage("/MediaBox [0 0 300 200] /Resources << /Font << /F << /Type /Font "
                        "/Subtype /Type1 /BaseFont /Helvetica >> >> >>",
                        content + "ET"));
    PagePictures pictures;
    pictures.setDocument(pdf, nullptr);
    pictures.want({{1, {150, 100}}});
    ASSERT_TRUE(areSettled(pictures, {1}));
    EXPECT_EQ(pictures.state(1), State::Drawn);
    EXPECT_EQ(pictures.textDirection(), TextDirection::None);
}

TEST_F(PageLikenessTest, TheFirstPageWithWordsTellsForTheDocument) {
    const QByteArray font = "/Resources << /Font << /F << /Type /Font /Subtype /Type1 /BaseFont "
                            "/Helvetica >> >> >> /MediaBox [0 0 200 200]";
    const auto page = [&](const QByteArray& content) {
        return "<< /Type /Page /Parent 2 0 R " + font + " /Contents " + content + " >>";
    };
    const QString pdf = mFolder.file(
        QStringLiteral("three.pdf"),
        test::pdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                     "<< /Type /Pages /Kids [3 0 R 4 0 R 5 0 R] /Count 3 >>", page("6 0 R"),
                     page("7 0 R"), page("8 0 R"), test::contentStream("9 9 9 9 re f"),
                     test::contentStream("BT /F 12 Tf 0 1 -1 0 50 50 Tm (Shelf) Tj ET"),
                     test::contentStream("BT /F 12 Tf 50 50 Td (Shelf) Tj ET")}));
    PagePictures pictures;
    pictures.setDocument(pdf, nullptr);
    const auto after = [&](int number) {
        pictures.want({{number, {50, 50}}});
        EXPECT_TRUE(areSettled(pictures, {number}));
        return pictures.textDirection();
    };
    EXPECT_EQ(after(1), TextDirection::None);
    EXPECT_EQ(after(2), TextDirection::Upwards);
    EXPECT_EQ(after(3), TextDirection::Upwards);
}

} // namespace labelcut
