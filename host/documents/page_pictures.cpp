// Documents: pictures of a document's pages, for whoever shows them.
#include "host/documents/page_pictures.h"

#include <QFile>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <functional>
#include <iterator>
#include <mutex>
#include <utility>

#include "host/core/failure.h"
#include "host/documents/document_worker.h"
#include "host/texts/host_text.h"
#include "worker/protocol/descriptor.h"

namespace labelcut {

using worker::Descriptor;

namespace {

/// How long a page that is no longer wanted may hold up others: ending it costs a new worker.
constexpr std::chrono::milliseconds kPatienceForUnwanted{500};

/// The measure in which the worker draws.
QSize bounded(const QSize& pixels) {
    const double width = pixels.width();
    const double height = pixels.height();
    const double scale = std::min({1.0, worker::kLargestSide / width, worker::kLargestSide / height,
                                   std::sqrt(worker::kMostPixels / (width * height))});
    if (scale >= 1)
        return pixels;
    const auto scaled = [&](double side) { return std::max(1, static_cast<int>(side * scale)); };
    return {scaled(width), scaled(height)};
}

/// What a page is called where a sentence wants the name of a document.
QString nameOf(int page) {
    return hostText("PageNamed").arg(QString::number(page));
}

Error brokenDown(const QString& about) {
    return failure(hostText("DocumentCrashed").arg(about, hostText("NoReasonGiven")));
}

/// A file in memory of as many bytes as the picture; none when the system refuses.
Descriptor fileFor(const QSize& pixels) {
    Descriptor file(memfd_create("page", MFD_CLOEXEC));
    const off_t size = off_t{worker::kBytesOfPixel} * pixels.width() * pixels.height();
    if (file && ftruncate(file.number(), size) != 0)
        file.close();
    return file;
}

/// The picture in such a file, read and not mapped: the worker could still make it shorter. Null
/// when it is not whole.
QImage pictureIn(const Descriptor& file, const QSize& pixels) {
    QImage picture(pixels, QImage::Format_RGB32);
    if (picture.isNull())
        return {};
    uchar* bytes = picture.bits();
    const qsizetype size = picture.sizeInBytes();
    for (qsizetype at = 0; at < size;) {
        const ssize_t part =
            pread(file.number(), bytes + at, static_cast<std::size_t>(size - at), at);
        if (part < 0 && errno == EINTR)
            continue;
        if (part <= 0)
            return {};
        at += part;
    }
    return picture;
}

} // namespace

/// What became of a wish.
struct PagePictures::Outcome {
    Wish wish;
    /// Null when it failed.
    QImage picture;
    TextDirection textDirection = TextDirection::None;
    /// Of a failure.
    QString sentence;
    /// Whether nothing more is drawn of the document.
    bool isLast = false;
};

/// Where wishes lie for the thread that draws. Both threads lock it for as long as they look.
struct PagePictures::Desk {
    std::mutex mutex;
    std::condition_variable changed;
    /// Most wanted first.
    std::deque<Wish> waiting;
    /// Taken from those, and its picture not yet delivered.
    std::vector<Wish> underway;
    /// Ends the work on the last of those; null while nothing is drawn.
    std::shared_ptr<CancelFlag> current;
    bool asksTextDirection = true;
    bool isOver = false;

    void end() {
        const std::lock_guard lock(mutex);
        isOver = true;
        if (current)
            current->cancel();
        changed.notify_all();
    }
    bool isUnderway(const Wish& wish) const {
        return std::ranges::find(underway, wish) != underway.end();
    }
    std::optional<Wish> drawing() const {
        return current && !underway.empty() ? std::optional(underway.back()) : std::nullopt;
    }
    void deliver(const Wish& wish) {
        const std::lock_guard lock(mutex);
        std::erase(underway, wish);
    }
};

/// Draws on a thread of its own, one page after another, with one worker as long as that lives.
class PagePictures::Drawer {
public:
    Drawer(QString program, std::chrono::milliseconds patience, QString pdf,
           std::shared_ptr<Desk> desk)
        : mProgram(std::move(program))
        , mPatience(patience)
        , mPdf(std::move(pdf))
        , mDesk(std::move(desk)) {}

    /// Until the desk is closed, or too many workers broke down. @param deliver  for each page that
    /// was drawn or failed.
    void run(const std::function<void(Outcome)>& deliver) {
        int broken = 0;
        while (const auto wish = next()) {
            Result<Outcome> outcome = draw(*wish);
            if (!outcome) {
                mWorker.reset();
                if (outcome.error().kind == ErrorKind::Cancelled) {
                    mDesk->deliver(*wish);
                    continue;
                }
                ++broken;
                deliver({*wish, {}, {}, outcome.error().sentence, broken == kMostBroken});
                if (broken == kMostBroken)
                    return;
                continue;
            }
            broken = 0;
            deliver(std::move(*outcome));
        }
    }

private:
    /// Waits for a wish. Nothing when the desk is closed.
    std::optional<Wish> next() {
        std::unique_lock lock(mDesk->mutex);
        mDesk->current.reset();
        mDesk->changed.wait(lock, [this] { return mDesk->isOver || !mDesk->waiting.empty(); });
        if (mDesk->isOver)
            return std::nullopt;
        const Wish wish = mDesk->waiting.front();
        mDesk->waiting.pop_front();
        mDesk->underway.push_back(wish);
        mDesk->current = std::make_shared<CancelFlag>();
        mCancel = mDesk->current;
        mAsksTextDirection = mDesk->asksTextDirection;
        return wish;
    }

    Result<Outcome> draw(const Wish& wish) {
        if (!mWorker) {
            if (const Result<Done> shown = show(); !shown)
                return shown.error();
        }
        const QString about = nameOf(wish.page);
        const Descriptor target = fileFor(wish.pixels);
        if (!target)
            return brokenDown(about);
        const worker::Render request{
            static_cast<std::uint32_t>(wish.page), static_cast<std::uint32_t>(wish.pixels.width()),
            static_cast<std::uint32_t>(wish.pixels.height()), mAsksTextDirection};
        const Result<worker::Answer> answer = mWorker->ask(request, taskFor(about, target));
        if (!answer)
            return answer.error();
        const auto* drawn = std::get_if<worker::Drawn>(&*answer);
        QImage picture = drawn ? pictureIn(target, wish.pixels) : QImage();
        if (picture.isNull())
            return brokenDown(about);
        return Outcome{wish, std::move(picture), drawn->textDirection, {}, false};
    }

    /// Starts a worker and gives it the document.
    Result<Done> show() {
        const Descriptor document(open(QFile::encodeName(mPdf).constData(), O_RDONLY | O_CLOEXEC));
        if (!document)
            return failure(
                hostText("CannotRead").arg(mPdf, QString::fromLocal8Bit(std::strerror(errno))));
        Result<DocumentWorker> worker =
            DocumentWorker::start(DocumentReader::Pages, mProgram, mPatience);
        if (!worker)
            return worker.error();
        const QString about = hostText("WholeDocument");
        const Result<worker::Answer> answer = worker->ask(worker::Show(), taskFor(about, document));
        if (!answer)
            return answer.error();
        if (!std::holds_alternative<worker::Shown>(*answer))
            return brokenDown(about);
        mWorker = std::move(*worker);
        return Done();
    }

    WorkerTask taskFor(const QString& about, const Descriptor& descriptor) const {
        return {about, {descriptor.number()}, {}, mCancel.get()};
    }

    QString mProgram;
    std::chrono::milliseconds mPatience;
    QString mPdf;
    std::shared_ptr<Desk> mDesk;
    /// For the page that is drawn.
    std::shared_ptr<const CancelFlag> mCancel;
    bool mAsksTextDirection = true;
    std::optional<DocumentWorker> mWorker;
};

PagePictures::PagePictures(QObject* parent)
    : PagePictures(DocumentWorker::installedProgram(), kPatience, parent) {}

PagePictures::PagePictures(QString program, std::chrono::milliseconds patience, QObject* parent)
    : QObject(parent)
    , mProgram(std::move(program))
    , mPatience(patience)
    , mDrawing(this) {
    mPatienceForUnwanted.setSingleShot(true);
    mPatienceForUnwanted.setInterval(kPatienceForUnwanted);
    connect(&mPatienceForUnwanted, &QTimer::timeout, this, [this] {
        const std::lock_guard lock(mDesk->mutex);
        if (const auto wish = mDesk->drawing(); wish == mUnwanted && !isInSight(wish->page))
            mDesk->current->cancel();
    });
}

PagePictures::~PagePictures() {
    endDrawing();
}

void PagePictures::setDocument(const QString& pdf, std::shared_ptr<const void> keeper) {
    endDrawing();
    mPdf = pdf;
    mKeeper = std::move(keeper);
    mInSight.clear();
    mPagesInSight.clear();
    mPages.clear();
    mOldest.clear();
    mKept = 0;
    mTextDirection.reset();
    mHasTold = false;
    mHasGivenUp = false;
}

void PagePictures::want(const std::vector<Wish>& wishes) {
    ++mTime;
    mInSight.clear();
    mPagesInSight.clear();
    for (const Wish& wish : wishes) {
        if (wish.page < 1 || wish.pixels.isEmpty() || isInSight(wish.page))
            continue;
        mPagesInSight.insert(wish.page);
        mInSight.push_back({wish.page, bounded(wish.pixels)});
        touch(wish.page, mTime);
    }
    forgetSome();
    if (mPdf.isEmpty() || mHasGivenUp)
        return;
    std::vector<Wish> missing;
    std::ranges::copy_if(mInSight, std::back_inserter(missing),
                         [this](const Wish& wish) { return isToBeDrawn(wish); });
    if (missing.empty() && !mDesk)
        return;
    if (!mDesk)
        startDrawing();
    const std::lock_guard lock(mDesk->mutex);
    std::erase_if(missing, [this](const Wish& wish) { return mDesk->isUnderway(wish); });
    mDesk->waiting.assign(missing.begin(), missing.end());
    mDesk->changed.notify_all();
    const auto drawing = mDesk->drawing();
    if (!drawing || isInSight(drawing->page) || mPatienceForUnwanted.isActive())
        return;
    mUnwanted = *drawing;
    mPatienceForUnwanted.start();
}

QImage PagePictures::picture(int page) const {
    return mPages.value(page).picture;
}

PagePictures::State PagePictures::state(int page) const {
    const auto kept = mPages.find(page);
    if (kept != mPages.end() && !kept->picture.isNull())
        return State::Drawn;
    const bool isFailed = mHasGivenUp || (kept != mPages.end() && kept->isFailed);
    return isFailed ? State::Failed : State::Waiting;
}

void PagePictures::startDrawing() {
    mDesk = std::make_shared<Desk>();
    mDrawing.start([this, desk = mDesk, program = mProgram, patience = mPatience, pdf = mPdf,
                    keeper = mKeeper](const BackgroundCall::Link& link) {
        Drawer(program, patience, pdf, desk).run([&](Outcome outcome) {
            link.tell([this, outcome = std::move(outcome)] { take(outcome); });
        });
    });
}

void PagePictures::endDrawing() {
    mPatienceForUnwanted.stop();
    if (mDesk)
        mDesk->end();
    mDesk.reset();
    mDrawing.drop();
}

bool PagePictures::isToBeDrawn(const Wish& wish) const {
    const auto kept = mPages.find(wish.page);
    return kept == mPages.end() || (!kept->isFailed && kept->picture.size() != wish.pixels);
}

void PagePictures::take(const Outcome& outcome) {
    mDesk->deliver(outcome.wish);
    if (outcome.picture.isNull()) {
        fail(outcome);
        return;
    }
    if (mTextDirection.value_or(TextDirection::None) == TextDirection::None)
        setTextDirection(outcome.textDirection);
    keep(outcome.wish.page, outcome.picture);
    Q_EMIT drawn(outcome.wish.page);
}

void PagePictures::setTextDirection(TextDirection direction) {
    mTextDirection = direction;
    const std::lock_guard lock(mDesk->mutex);
    mDesk->asksTextDirection = direction == TextDirection::None;
}

void PagePictures::keep(int page, const QImage& picture) {
    Kept& kept = mPages[page];
    mKept += picture.sizeInBytes() - kept.picture.sizeInBytes();
    kept.picture = picture;
    touch(page, isInSight(page) ? mTime : mTime - 1);
    forgetSome();
}

void PagePictures::touch(int page, std::uint64_t wanted) {
    const auto kept = mPages.find(page);
    if (kept == mPages.end() || kept->picture.isNull())
        return;
    mOldest.erase({kept->wanted, page});
    kept->wanted = wanted;
    mOldest.insert({wanted, page});
}

void PagePictures::forgetSome() {
    while (mKept > kMostKept && mOldest.begin()->first < mTime) {
        const auto kept = mPages.find(mOldest.begin()->second);
        mKept -= kept->picture.sizeInBytes();
        kept->picture = {};
        if (!kept->isFailed)
            mPages.erase(kept);
        mOldest.erase(mOldest.begin());
    }
}

void PagePictures::fail(const Outcome& outcome) {
    std::vector<Wish> changed{outcome.wish};
    mPages[outcome.wish.page].isFailed = true;
    if (outcome.isLast) {
        mHasGivenUp = true;
        endDrawing();
        changed = mInSight;
    }
    if (!std::exchange(mHasTold, true))
        Q_EMIT failed(hostText("NotEveryPageShown").arg(outcome.sentence));
    for (const Wish& wish : changed)
        Q_EMIT drawn(wish.page);
}

} // namespace labelcut
