// Pictures of pages: drawn beside the caller's thread, as Poppler's own program draws them, and only
// those that are wanted.
#include "host/documents/page_pictures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QColor>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSet>

#include <algorithm>
#include <cstdlib>

#include "tests/support/event_loop.h"
#include "tests/support/job_fixtures.h"

namespace labelcut {

using namespace std::chrono_literals;
using test::turnUntil;
using testing::ElementsAre;
using testing::HasSubstr;
using State = PagePictures::State;
using TextDirection = PagePictures::TextDirection;
using Wish = PagePictures::Wish;

namespace {

const QString kSample = QStringLiteral(LABELCUT_SAMPLES "/labels.pdf");

/// Pictures, and what they tell.
class PagePicturesTest : public testing::Test {
protected:
    PagePicturesTest() { listenTo(mPictures); }

    void listenTo(const PagePictures& pictures) {
        QObject::connect(&pictures, &PagePictures::drawn, &pictures,
                         [this](int page) { mTold.push_back(page); });
        QObject::connect(&pictures, &PagePictures::failed, &pictures,
                         [this](const QString& sentence) { mSentences << sentence; });
    }
    /// Turns the event loop until nothing of these pages waits.
    static bool areSettled(const PagePictures& pictures, const std::vector<int>& pages) {
        return turnUntil([&] {
            return std::ranges::all_of(
                pages, [&](int page) { return pictures.state(page) != State::Waiting; });
        });
    }
    QImage drawn(const QString& pdf, int page, QSize pixels) {
        mPictures.setDocument(pdf, nullptr);
        mPictures.want({{page, pixels}});
        EXPECT_TRUE(areSettled(mPictures, {page})) << pdf.toStdString();
        return mPictures.picture(page);
    }

    test::Folder mFolder;
    PagePictures mPictures;
    std::vector<int> mTold;
    QStringList mSentences;
};

} // namespace

TEST_F(PagePicturesTest, DrawWhatIsWantedAndTellIt) {
    mPictures.setDocument(kSample, nullptr);
    EXPECT_EQ(mPictures.state(1), State::Waiting);
    EXPECT_TRUE(mPictures.picture(1).isNull());
    mPictures.want({{3, {136, 284}}, {1, {68, 142}}});
    ASSERT_TRUE(areSettled(mPictures, {1, 3}));
    EXPECT_THAT(mTold, ElementsAre(3, 1));
    EXPECT_EQ(mPictures.state(3), State::Drawn);
    EXPECT_EQ(mPictures.picture(3).size(), QSize(136, 284));
    EXPECT_EQ(mPictures.picture(1).size(), QSize(68, 142));
    EXPECT_EQ(mPictures.state(2), State::Waiting);
    EXPECT_EQ(mPictures.textDirection(), TextDirection::AlongHeight);
    EXPECT_TRUE(mSentences.isEmpty());
}

} // namespace labelcut
