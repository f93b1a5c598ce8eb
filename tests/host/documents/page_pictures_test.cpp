// Pictures of pages: only what is wanted is drawn, beside the caller's thread, and whatever becomes
// of the worker that draws them costs no more than pages and a sentence.
#include "host/documents/page_pictures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <csignal>
#include <memory>
#include <numeric>

#include "host/documents/document_worker.h"
#include "tests/host/documents/page_pictures_fixture.h"
#include "tests/support/made_pdf.h"

namespace labelcut {

using namespace std::chrono_literals;
using test::areSettled;
using test::turnFor;
using test::turnUntil;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSubsetOf;
using testing::Lt;
using State = PagePictures::State;
using TextDirection = PagePictures::TextDirection;
using Wish = PagePictures::Wish;

namespace {

const QString kSample = QStringLiteral(LABELCUT_SAMPLES "/labels.pdf");
constexpr QSize kSmall(68, 142);

std::vector<Wish> wishesFor(int first, int last, QSize pixels) {
    std::vector<Wish> all;
    for (int page = first; page <= last; ++page)
        all.push_back({page, pixels});
    return all;
}

/// The processes that this one has started and that still run.
QByteArrayList children() {
    QByteArrayList all;
    for (const QString& thread : QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs)) {
        QFile file(QStringLiteral("/proc/self/task/%1/children").arg(thread));
        if (file.open(QIODevice::ReadOnly))
            all += file.readAll().simplified().split(' ');
    }
    all.removeAll({});
    return all;
}

/// What this process holds in memory. Bytes.
qint64 heldMemory() {
    QFile file(QStringLiteral("/proc/self/statm"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().split(' ').value(1).toLongLong() * 4096;
}

/// Pictures of the sample labels.
class PagePicturesTest : public testing::Test {
protected:
    PagePicturesTest() { mPictures.setDocument(kSample, nullptr); }

    test::Folder mFolder;
    PagePictures mPictures;
    const test::Told mTold{mPictures};
};

/// Pictures by a reader that does what its document asks for.
class AttackedPicturesTest : public testing::Test {
protected:
    /// @param pages  at which the deed is carried out; empty: at all. Others become grey.
    void attack(const QByteArray& deed, const QByteArray& pages = {},
                std::chrono::milliseconds patience = 500ms) {
        mPictures = std::make_unique<PagePictures>(
            QStringLiteral(LABELCUT_ATTACKER "/document_worker"), patience);
        mTold = std::make_unique<test::Told>(*mPictures);
        mPictures->setDocument(
            mFolder.file(QStringLiteral("evil.pdf"), "document\n" + deed + '\n' + pages + '\n'),
            nullptr);
    }
    std::vector<State> statesOf(const std::vector<int>& pages) const {
        std::vector<State> all;
        for (const int page : pages)
            all.push_back(mPictures->state(page));
        return all;
    }

    test::Folder mFolder;
    std::unique_ptr<test::Told> mTold;
    std::unique_ptr<PagePictures> mPictures;
};

constexpr const char* kNoPage = "0";

} // namespace

TEST_F(PagePicturesTest, AreDrawnOfWhatIsWantedMostWantedFirst) {
    EXPECT_EQ(mPictures.state(1), State::Waiting);
    EXPECT_TRUE(mPictures.picture(1).isNull());
    EXPECT_EQ(mPictures.textDirection(), std::nullopt);
    mPictures.want({{3, {136, 284}}, {1, kSmall}});
    ASSERT_TRUE(areSettled(mPictures, {1, 3}));
    EXPECT_THAT(mTold.pages, ElementsAre(3, 1));
    EXPECT_EQ(mPictures.state(3), State::Drawn);
    EXPECT_EQ(mPictures.picture(3).size(), QSize(136, 284));
    EXPECT_EQ(mPictures.picture(1).size(), kSmall);
    EXPECT_EQ(mPictures.state(2), State::Waiting);
    EXPECT_EQ(mPictures.textDirection(), TextDirection::Upwards);
    EXPECT_TRUE(mTold.sentences.isEmpty());
}

TEST_F(PagePicturesTest, AreNotDrawnAgainInTheSameMeasure) {
    const std::vector<Wish> wishes{{1, kSmall}, {2, kSmall}};
    mPictures.want(wishes);
    mPictures.want(wishes);
    ASSERT_TRUE(areSettled(mPictures, {1, 2}));
    mPictures.want(wishes);
    mPictures.want({{2, kSmall}, {3, kSmall}});
    ASSERT_TRUE(areSettled(mPictures, {3}));
    EXPECT_THAT(mTold.pages, ElementsAre(1, 2, 3));
    mPictures.want({{1, 2 * kSmall}});
    EXPECT_EQ(mPictures.picture(1).size(), kSmall) << "the old one until the new one is there";
    ASSERT_TRUE(turnUntil([&] { return mTold.pages.size() == 4; }));
    EXPECT_EQ(mPictures.picture(1).size(), 2 * kSmall);
}

TEST_F(PagePicturesTest, AreLeftOutWhenNoLongerWanted) {
    mPictures.want(wishesFor(1, 10, kSmall));
    mPictures.want({{12, kSmall}});
    ASSERT_TRUE(areSettled(mPictures, {12}));
    mPictures.want({});
    turnFor(200);
    EXPECT_THAT(mTold.pages, IsSubsetOf({1, 12}));
}

TEST_F(PagePicturesTest, AreForgottenWithTheDocumentAndItsKeeper) {
    auto keeper = std::make_shared<int>();
    const std::weak_ptr<int> kept = keeper;
    mPictures.setDocument(kSample, std::move(keeper));
    mPictures.want({{1, kSmall}});
    ASSERT_TRUE(areSettled(mPictures, {1}));
    EXPECT_FALSE(kept.expired());
    mPictures.setDocument(kSample, nullptr);
    EXPECT_EQ(mPictures.state(1), State::Waiting);
    EXPECT_TRUE(mPictures.picture(1).isNull());
    EXPECT_EQ(mPictures.textDirection(), std::nullopt);
    EXPECT_EQ(mPictures.kept(), 0);
    EXPECT_TRUE(turnUntil([&] { return kept.expired(); }, 2'000));
    mPictures.setDocument({}, nullptr);
    mPictures.want({{1, kSmall}});
    turnFor(100);
    EXPECT_EQ(mPictures.state(1), State::Waiting);
}

TEST_F(PagePicturesTest, HaveAMeasureThatIsBoundedInItsProportions) {
    mPictures.want({{1, {68, 100'000}}, {2, {20'000, 40'000}}, {3, {0, 10}}, {0, kSmall}});
    ASSERT_TRUE(areSettled(mPictures, {1, 2}));
    EXPECT_EQ(mPictures.picture(1).size(), QSize(22, 32'767));
    const QSize size = mPictures.picture(2).size();
    EXPECT_LE(qint64{size.width()} * size.height(), worker::kMostPixels);
    EXPECT_NEAR(static_cast<double>(size.height()) / size.width(), 2, 0.01);
    EXPECT_THAT(mTold.pages, ElementsAre(1, 2));
    mPictures.want({{2, {20'000, 40'000}}});
    turnFor(100);
    EXPECT_EQ(mTold.pages.size(), 2U) << "what is as large as it can be is there";
}

TEST_F(PagePicturesTest, OfPagesThatAreNoneFail) {
    mPictures.want({{99, kSmall}, {1, kSmall}});
    ASSERT_TRUE(areSettled(mPictures, {99, 1}));
    EXPECT_EQ(mPictures.state(99), State::Failed);
    EXPECT_EQ(mPictures.state(1), State::Drawn);
}

TEST_F(PagePicturesTest, OfWhatIsNoPdfOfOursFailWithItsReason) {
    struct Row {
        QString file;
        const char* reason;
    };
    const QByteArray whole = test::contentOf(kSample);
    const Row rows[] = {
        {mFolder.encryptedPdf(QStringLiteral("secret.pdf")), "is encrypted"},
        {mFolder.file(QStringLiteral("noise.pdf"), QByteArray(5000, '\x7f')),
         "“The document” is a broken PDF file (no reason given)"},
        {mFolder.file(QStringLiteral("empty.pdf"), {}),
         "“The document” is a broken PDF file (no reason given)"},
        {mFolder.file(QStringLiteral("none.pdf"),
                      test::pdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                                   "<< /Type /Pages /Kids [] /Count 0 >>"})),
         "has no pages"},
        {mFolder.path(QStringLiteral("nowhere.pdf")), "nowhere.pdf” cannot be read (No such file"},
    };
    for (const Row& row : rows) {
        PagePictures pictures;
        const test::Told told(pictures);
        pictures.setDocument(row.file, nullptr);
        pictures.want(wishesFor(1, 5, kSmall));
        ASSERT_TRUE(areSettled(pictures, {1, 2, 3, 4, 5})) << row.reason;
        EXPECT_EQ(pictures.state(1), State::Failed) << row.reason;
        ASSERT_EQ(told.sentences.size(), 1) << row.reason;
        EXPECT_THAT(told.sentences.first().toStdString(), HasSubstr(row.reason));
        EXPECT_THAT(told.sentences.first().toStdString(), HasSubstr("Not every page can be shown"));
    }
}

TEST_F(PagePicturesTest, OfPagesThatTakeTooMuchMemoryFailAndSaySo) {
    if (LABELCUT_INSTRUMENTED)
        GTEST_SKIP() << "memory cannot be limited";
    struct Row {
        const char* what;
        QByteArray content;
    };
    const Row rows[] = {
        {"C++ has no memory left", '[' + QByteArray("1 ").repeated(20 << 20) + "] TJ"},
        {"Poppler's own functions have none", "0 0 m " + QByteArray("1 1l ").repeated(20 << 20)},
    };
    for (const Row& row : rows) {
        PagePictures pictures(DocumentWorker::installedProgram(), 60s);
        const test::Told told(pictures);
        pictures.setDocument(
            mFolder.file(QStringLiteral("large.pdf"), test::pdfOfPacked(row.content)), nullptr);
        pictures.want({{1, kSmall}});
        ASSERT_TRUE(areSettled(pictures, {1})) << row.what;
        EXPECT_EQ(pictures.state(1), State::Failed) << row.what;
        EXPECT_THAT(told.sentences.join(u'|').toStdString(),
                    HasSubstr("“Page 1” takes more than 384 MB of memory"))
            << row.what;
    }
}

TEST(PagePicturesOfAnotherProgramTest, FailWhenItCannotBeStarted) {
    PagePictures pictures(QStringLiteral("/nonexistent/document_worker"), 1s);
    const test::Told told(pictures);
    pictures.setDocument(kSample, nullptr);
    pictures.want({{1, kSmall}});
    ASSERT_TRUE(areSettled(pictures, {1}));
    EXPECT_EQ(pictures.state(1), State::Failed);
    EXPECT_THAT(told.sentences.join(u'|').toStdString(), HasSubstr("cannot be started"));
}

TEST_F(AttackedPicturesTest, APageThatBreaksItsWorkerFailsAloneAndIsToldInOneSentence) {
    struct Row {
        const char* deed;
        const char* reason;
    };
    const Row rows[] = {
        {"crash", "broke down over it (Segmentation fault)"},
        {"spin", "“Page 2” was given up: reading it made no progress for 1 s"},
        {"spin-through-signals", "“Page 2” was given up"},
        {"eat", "“Page 2” takes more than 384 MB of memory"},
        {"babble", "broke down over it"},
        {"answer-wrongly", "broke down over it (no reason given)"},
        {"shorten", "broke down over it (no reason given)"},
    };
    for (const Row& row : rows) {
        attack(row.deed, "2 4");
        mPictures->want(wishesFor(1, 5, kSmall));
        ASSERT_TRUE(areSettled(*mPictures, {1, 2, 3, 4, 5})) << row.deed;
        EXPECT_THAT(
            statesOf({1, 2, 3, 4, 5}),
            ElementsAre(State::Drawn, State::Failed, State::Drawn, State::Failed, State::Drawn))
            << row.deed;
        EXPECT_THAT(mTold->pages, ElementsAre(1, 2, 3, 4, 5)) << row.deed;
        ASSERT_EQ(mTold->sentences.size(), 1) << row.deed;
        EXPECT_THAT(mTold->sentences.first().toStdString(), HasSubstr(row.reason));
        mPictures->want({{2, 2 * kSmall}});
        turnFor(50);
        EXPECT_EQ(mTold->pages.size(), 5U) << row.deed << ": it is not tried again";
    }
}

TEST_F(AttackedPicturesTest, ThreeBrokenWorkersInARowAreEnoughForADocument) {
    attack("crash");
    mPictures->want(wishesFor(1, 9, kSmall));
    ASSERT_TRUE(areSettled(*mPictures, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_THAT(mTold->pages, ElementsAre(1, 2, 1, 2, 3, 4, 5, 6, 7, 8, 9));
    EXPECT_EQ(mTold->sentences.size(), 1);
    mPictures->want({{50, kSmall}});
    EXPECT_EQ(mPictures->state(50), State::Failed);
    EXPECT_TRUE(turnUntil([] { return children().isEmpty(); }, 2'000));
    mPictures->setDocument(mFolder.file(QStringLiteral("good.pdf"), "document\ncrash\n0\n"),
                           nullptr);
    mPictures->want({{50, kSmall}});
    ASSERT_TRUE(areSettled(*mPictures, {50}));
    EXPECT_EQ(mPictures->state(50), State::Drawn) << "another document gets another worker";
}

TEST_F(AttackedPicturesTest, AWorkerThatIsKilledWhileItDrawsCostsThatPage) {
    attack("spin", "1", 20s);
    mPictures->want({{1, kSmall}, {2, kSmall}});
    ASSERT_TRUE(turnUntil([] { return children().size() == 1; }));
    turnFor(100);
    ASSERT_EQ(kill(children().first().toInt(), SIGKILL), 0);
    ASSERT_TRUE(areSettled(*mPictures, {1, 2}));
    EXPECT_THAT(statesOf({1, 2}), ElementsAre(State::Failed, State::Drawn));
    EXPECT_THAT(mTold->sentences.join(u'|').toStdString(),
                HasSubstr("broke down over it (Killed)"));
}

TEST_F(AttackedPicturesTest, APageThatIsNoLongerWantedHoldsUpNoOtherForLong) {
    attack("spin", "1", 60s);
    mPictures->want({{1, kSmall}});
    turnFor(100);
    mPictures->want({{2, kSmall}});
    ASSERT_TRUE(areSettled(*mPictures, {2}));
    EXPECT_THAT(statesOf({1, 2}), ElementsAre(State::Waiting, State::Drawn));
    EXPECT_TRUE(mTold->sentences.isEmpty());
}

TEST_F(AttackedPicturesTest, GoInTheMiddleOfDrawingAtOnceAndTakeTheirWorkerWithThem) {
    for (const char* deed : {"spin", "spin-through-signals"}) {
        attack(deed, {}, 60s);
        mPictures->want({{1, kSmall}});
        ASSERT_TRUE(turnUntil([] { return children().size() == 1; }));
        turnFor(50);
        EXPECT_LT(test::timeOf([&] { mPictures.reset(); }), test::kSoon);
        EXPECT_TRUE(turnUntil([] { return children().isEmpty(); }, 2'000));
    }
}

TEST_F(AttackedPicturesTest, NoCallWaitsAndTheEventLoopTurns) {
    attack("spin", "2", 1s);
    const test::Pulse pulse;
    const auto times = [&](const std::function<void()>& call) {
        EXPECT_LT(test::timeOf(call), test::kSoon / 2);
    };
    times([&] { mPictures->want(wishesFor(1, 3, kSmall)); });
    ASSERT_TRUE(areSettled(*mPictures, {1, 2, 3}));
    times([&] { mPictures->setDocument({}, nullptr); });
    EXPECT_LT(pulse.longestPause(), test::kSoon / 2);
}

TEST_F(AttackedPicturesTest, MemoryStaysFlatHoweverManyPagesWereWanted) {
    attack("crash", kNoPage, 10s);
    constexpr QSize kLarge(100, 250);
    constexpr int kSight = 50;
    qint64 afterSome = 0;
    for (int first = 1; first < 10'000; first += kSight) {
        mPictures->want(wishesFor(first, first + kSight - 1, kLarge));
        std::vector<int> pages(kSight);
        std::iota(pages.begin(), pages.end(), first);
        ASSERT_TRUE(areSettled(*mPictures, pages));
        ASSERT_THAT(statesOf(pages), Each(State::Drawn));
        ASSERT_LE(mPictures->kept(), PagePictures::kMostKept);
        if (first == 1'001)
            afterSome = heldMemory();
    }
    EXPECT_EQ(mTold->pages.size(), 10'000U);
    EXPECT_EQ(mPictures->state(1), State::Waiting) << "forgotten";
    EXPECT_EQ(mPictures->state(9'900), State::Drawn) << "not long ago";
    EXPECT_LT(static_cast<double>(heldMemory()), 1.2 * static_cast<double>(afterSome));
}

TEST_F(AttackedPicturesTest, TheEventLoopTurnsHoweverManyPagesAreInSight) {
    attack("crash", kNoPage, 10s);
    constexpr int kMany = 2'000;
    const test::Pulse pulse;
    mPictures->want(wishesFor(1, kMany, {100, 250}));
    ASSERT_TRUE(turnUntil([&] { return mTold->pages.size() == kMany; }));
    EXPECT_GT(mPictures->kept(), PagePictures::kMostKept);
    EXPECT_LT(pulse.longestPause(), test::kSoon / 2);
}

TEST_F(AttackedPicturesTest, PagesInSightStayHoweverLargeTheyAre) {
    attack("crash", kNoPage, 10s);
    constexpr QSize kHuge(2'000, 2'500);
    mPictures->want(wishesFor(1, 6, kHuge));
    ASSERT_TRUE(areSettled(*mPictures, {1, 2, 3, 4, 5, 6}));
    EXPECT_GT(mPictures->kept(), PagePictures::kMostKept);
    mPictures->want(wishesFor(5, 6, kHuge));
    EXPECT_THAT(statesOf({5, 6}), Each(State::Drawn));
    EXPECT_LE(mPictures->kept(), PagePictures::kMostKept);
}

} // namespace labelcut
