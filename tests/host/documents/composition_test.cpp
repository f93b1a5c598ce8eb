// The document that is sent: its pages, their order, and where they lie.
#include "host/documents/job_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/support/job_fixtures.h"

namespace labelcut {

using testing::HasSubstr;
using worker::Fit;

namespace {

const QSizeF kTape(68, 142);

JobPaper tape() {
    return {QStringLiteral("T24"), kTape, QRectF(3, 3, 62, 136)};
}

PageSelection pages(const char* text) {
    return parsePageSelection(QString::fromLatin1(text)).value();
}

std::vector<QSizeF> composedSizes(const JobDocument& document, const Composition& composition) {
    const Result<QString> pdf = document.composed(composition);
    EXPECT_TRUE(pdf) << pdf.error().sentence.toStdString();
    return pdf ? test::pageSizes(*pdf) : std::vector<QSizeF>();
}

/// A page whose lower left part, as it is shown, is black.
struct MarkedPage {
    /// As it is shown. Points.
    QSizeF size;
    /// Of width and height.
    double part = 1;
    /// The page's own turn: quarters, clockwise.
    int turns = 0;
};

QByteArray numbers(std::initializer_list<double> values) {
    QByteArray text;
    for (const double value : values)
        text += QByteArray::number(value, 'f', 3) + ' ';
    return text;
}

/// The page upright in the file's own coordinates, `offset` away from their origin, with white
/// ground all around that is cropped.
QByteArray pageObject(const MarkedPage& page, double offset, int content) {
    const QSizeF own = page.turns % 2 == 0 ? page.size : page.size.transposed();
    const QByteArray crop = numbers({offset, offset, offset + own.width(), offset + own.height()});
    return "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 " +
           numbers({own.width() + 2 * offset, own.height() + 2 * offset}) + "] /CropBox [" + crop +
           "] /TrimBox [0 0 1 1] /Rotate " + QByteArray::number(90 * page.turns) + " /Contents " +
           QByteArray::number(content) + " 0 R >>";
}

QByteArray contentObject(const MarkedPage& page, double offset) {
    const QSizeF own = page.turns % 2 == 0 ? page.size : page.size.transposed();
    const QSizeF mark = own * page.part;
    // The corner that is the lower left one after the turns.
    const bool isRight = page.turns == 1 || page.turns == 2;
    const bool isTop = page.turns == 2 || page.turns == 3;
    const QByteArray fill = numbers({offset + (isRight ? own.width() - mark.width() : 0),
                                     offset + (isTop ? own.height() - mark.height() : 0),
                                     mark.width(), mark.height()}) +
                            "re f";
    return "<< /Length " + QByteArray::number(fill.size()) + " >>\nstream\n" + fill + "\nendstream";
}

QByteArray pdfOf(const std::vector<MarkedPage>& pages, double offset) {
    QList<QByteArray> objects{"<< /Type /Catalog /Pages 2 0 R >>", QByteArray()};
    QByteArray kids;
    for (const MarkedPage& page : pages) {
        kids += QByteArray::number(objects.size() + 1) + " 0 R ";
        objects << pageObject(page, offset, static_cast<int>(objects.size()) + 2);
        objects << contentObject(page, offset);
    }
    objects[1] = "<< /Type /Pages /Count " + QByteArray::number(static_cast<int>(pages.size())) +
                 " /Kids [" + kids + "] >>";
    return test::pdfOf(objects);
}

/// Where the mark lies on the label, lower left origin.
QRectF expectedMark(const MarkedPage& page, const JobPaper& paper, Fit fit) {
    const worker::Placement place = placedOn(paper, page.size, fit);
    if (place.isUntouched)
        return QRectF(QPointF(0, 0), page.size * page.part);
    const QSizeF mark(place.size.width * page.part, place.size.height * page.part);
    const double height = paper.size.height();
    // A turn takes the lower left corner up.
    const double bottom = place.isTurned ? height - place.top - mark.height()
                                         : height - place.top - place.size.height;
    return QRectF(QPointF(place.left, bottom), mark) & QRectF(QPointF(0, 0), paper.size);
}

template<typename Number>
Number between(std::mt19937& random, Number low, Number high) {
    if constexpr (std::is_integral_v<Number>)
        return std::uniform_int_distribution<Number>(low, high)(random);
    else
        return std::uniform_real_distribution<Number>(low, high)(random);
}

PageSelection someOf(std::mt19937& random, int pages) {
    std::vector<PageRange> ranges;
    for (int i = between(random, 0, 3); i > 0; --i) {
        const int first = between(random, 1, pages);
        ranges.push_back({first, between(random, first, pages + 2)});
    }
    return PageSelection(std::move(ranges));
}

/// The pages in the order in which they are sent, counted from 0, by counting.
std::vector<std::size_t> expectedOrder(const Composition& composition, int pages) {
    std::vector<std::size_t> order;
    for (int page = 1; page <= pages; ++page) {
        const auto& ranges = composition.pages.ranges();
        if (!ranges.empty() && std::ranges::none_of(ranges, [page](const PageRange& range) {
                return range.first <= page && page <= range.last;
            }))
            continue;
        for (int i = 0; i < composition.repeats; ++i)
            order.push_back(static_cast<std::size_t>(page - 1));
    }
    if (composition.isReversed)
        std::ranges::reverse(order);
    return order;
}

} // namespace

TEST(CompositionTest, HoldsJustThePagesThatAreAskedForInTheirOrder) {
    const test::Folder folder;
    const QString file =
        folder.pdf(QStringLiteral("a.pdf"), {{10, 100}, {20, 100}, {30, 100}, {40, 100}});
    const Result<JobDocument> document = JobDocument::prepare({file}, std::nullopt);
    ASSERT_TRUE(document);
    EXPECT_EQ(composedSizes(*document, {pages("2-3")}),
              (std::vector<QSizeF>{{20, 100}, {30, 100}}));
    EXPECT_EQ(composedSizes(*document, {pages("4,1,9"), true}),
              (std::vector<QSizeF>{{40, 100}, {10, 100}}));
    EXPECT_EQ(composedSizes(*document, {pages("3-"), false, 2}),
              (std::vector<QSizeF>{{30, 100}, {30, 100}, {40, 100}, {40, 100}}));
    const auto skipping = [&](int repeats, int sets, int skipped) {
        return composedSizes(*document,
                             {pages("3-"), false, repeats, {}, Fit::Unchanged, sets, skipped});
    };
    EXPECT_EQ(skipping(1, 2, 1), (std::vector<QSizeF>{{40, 100}, {30, 100}, {40, 100}}));
    EXPECT_EQ(skipping(2, 1, 1), (std::vector<QSizeF>{{30, 100}, {40, 100}, {40, 100}}));
    EXPECT_EQ(skipping(2, 1, 3), (std::vector<QSizeF>{{40, 100}}));
    EXPECT_EQ(skipping(1, 1, 1), (std::vector<QSizeF>{{40, 100}}));
}

TEST(CompositionTest, IsTheDocumentItselfWhereNothingIsToBeDone) {
    const test::Folder folder;
    const QString file = folder.pdf(QStringLiteral("a.pdf"), {kTape, {68.9, 141.2}});
    const Result<JobDocument> document = JobDocument::prepare({file}, tape());
    ASSERT_TRUE(document);
    EXPECT_EQ(test::contentOf(document->pdf()), test::contentOf(file));
    for (const char* all : {"1-", "-2", "1,2,7"}) {
        for (const Fit fit : {Fit::Unchanged, Fit::Actual, Fit::Scale})
            EXPECT_EQ(*document->composed({pages(all), false, 1, tape(), fit}), document->pdf());
    }
    EXPECT_NE(*document->composed({{}, true}), document->pdf());
    EXPECT_NE(*document->composed({{}, false, 2}), document->pdf());
    EXPECT_NE(*document->composed({{}, false, 1, tape(), Fit::Turn}), document->pdf());
    EXPECT_NE(*document->composed({{}, false, 1, tape(), {}, 2}), document->pdf());
    EXPECT_NE(*document->composed({{}, false, 1, tape(), {}, 1, 1}), document->pdf());
    const Result<JobDocument> one =
        JobDocument::prepare({folder.pdf(QStringLiteral("b.pdf"), {kTape})}, tape());
    ASSERT_TRUE(one);
    EXPECT_EQ(*one->composed({{}, true, 1, tape()}), one->pdf()) << "one page has no other order";
}

TEST(CompositionTest, RefusesToMakeMorePagesThanAJobMayHave) {
    const test::Folder folder;
    const Result<JobDocument> document = JobDocument::prepare(
        {folder.pdf(QStringLiteral("a.pdf"), std::vector<QSizeF>(11, kTape))}, std::nullopt);
    ASSERT_TRUE(document);
    const Result<QString> tooMany = document->composed({{}, false, 9999});
    ASSERT_FALSE(tooMany);
    EXPECT_THAT(tooMany.error().sentence.toStdString(),
                HasSubstr("a.pdf” has more than 100000 pages; print it in parts."));
}

TEST(CompositionTest, PutsEveryPageWhereTheReckoningSays) {
    const test::Folder folder;
    std::mt19937 random(14);
    for (int round = 0; round < 30; ++round) {
        const QSizeF label(between(random, 40, 200), between(random, 40, 200));
        const JobPaper paper{QStringLiteral("L"), label,
                             QRectF(QPointF(0, 0), label).adjusted(3, 5, -7, -2)};
        std::vector<MarkedPage> all;
        for (int i = between(random, 1, 7); i > 0; --i) {
            const bool isLabels = between(random, 0, 3) == 0;
            const QSizeF other(between(random, 20.0, 400.0), between(random, 20.0, 400.0));
            all.push_back(
                {isLabels ? label : other, between(random, 0.3, 1.0), between(random, 0, 3)});
        }
        const double offset = between(random, 0, 1) * 50;
        const QString file = folder.file(QStringLiteral("r%1.pdf").arg(round), pdfOf(all, offset));
        const Result<JobDocument> document = JobDocument::prepare({file}, std::nullopt);
        ASSERT_TRUE(document) << document.error().sentence.toStdString();
        const int count = static_cast<int>(all.size());
        const Composition composition{someOf(random, count), between(random, 0, 1) == 1,
                                      between(random, 1, 3), paper,
                                      static_cast<Fit>(between(random, 0, 3))};
        const std::vector<std::size_t> order = expectedOrder(composition, count);
        const Result<QString> pdf = document->composed(composition);
        ASSERT_TRUE(pdf) << pdf.error().sentence.toStdString();
        const std::vector<QRectF> marks = test::inkBoxes(*pdf);
        ASSERT_EQ(marks.size(), order.size()) << "round " << round;
        for (std::size_t i = 0; i < order.size(); ++i) {
            const MarkedPage& page = all[order[i]];
            const QRectF expected = expectedMark(page, paper, composition.fit);
            // Ink that is cut off is told by whole pixels.
            constexpr double kNear = 0.6;
            EXPECT_NEAR(marks[i].left(), expected.left(), kNear) << round << ' ' << i;
            EXPECT_NEAR(marks[i].top(), expected.top(), kNear) << round << ' ' << i;
            EXPECT_NEAR(marks[i].right(), expected.right(), kNear) << round << ' ' << i;
            EXPECT_NEAR(marks[i].bottom(), expected.bottom(), kNear) << round << ' ' << i;
        }
    }
}

} // namespace labelcut
