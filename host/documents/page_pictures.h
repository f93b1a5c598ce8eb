// Documents: pictures of a document's pages, for whoever shows them.
#pragma once

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QSize>
#include <QString>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "host/core/background_call.h"
#include "worker/protocol/message.h"

namespace labelcut {

/// Pictures of a document's pages, drawn by a worker of its own beside the caller's thread, and
/// only those that are wanted. No function waits; all belong to the thread of this object.
class PagePictures : public QObject {
    Q_OBJECT

public:
    using TextDirection = worker::TextDirection;

    /// For how long one page may be drawn.
    static constexpr std::chrono::seconds kPatience{10};
    /// Pictures of pages that are not in sight are forgotten beyond it, those least recently wanted
    /// first; pages in sight always stay. Bytes.
    static constexpr qint64 kMostKept = 64 << 20;
    /// So many workers in a row that break down over a document are enough.
    static constexpr int kMostBroken = 3;

    explicit PagePictures(QObject* parent = nullptr);
    /// @param program  absolute path of the worker. @param patience  in place of kPatience.
    PagePictures(QString program, std::chrono::milliseconds patience, QObject* parent = nullptr);
    /// What is being drawn is given up.
    ~PagePictures() override;

    /// Forgets every picture, and all that failed.
    /// @param pdf  path of a PDF file that nobody changes; empty: none.
    /// @param keeper  owns that file, and is held as long as it is needed, at last by another
    /// thread; may be null.
    void setDocument(const QString& pdf, std::shared_ptr<const void> keeper);

    struct Wish {
        /// From 1.
        int page = 1;
        /// Device pixels. An empty one is no wish; one that is larger than the worker draws becomes
        /// smaller in its proportions. The page fills it.
        QSize pixels;

        friend bool operator==(const Wish& a, const Wish& b) {
            return a.page == b.page && a.pixels == b.pixels;
        }
    };
    /// The pages in sight, most wanted first; of several wishes for a page the first counts. They
    /// take the place of earlier ones: what is not wanted any more is not drawn. Nothing is drawn
    /// again that is there in its measure.
    void want(const std::vector<Wish>& wishes);

    /// What was drawn of the page last, of whatever measure, opaque; null while there is nothing.
    QImage picture(int page) const;

    enum class State {
        Waiting, ///< Not drawn yet, or forgotten.
        Drawn,
        Failed, ///< It cannot be drawn, and is not tried again.
    };
    State state(int page) const;

    /// How the words of the first page run that has some, as it is shown; nothing until a page has
    /// been drawn, None while none of them had words.
    std::optional<TextDirection> textDirection() const { return mTextDirection; }
    /// Of all pictures that are kept. Bytes.
    qint64 kept() const { return mKept; }

Q_SIGNALS:
    /// The page has another picture, or another state.
    void drawn(int page);
    /// Why pages cannot be drawn, in whole sentences; once for a document.
    void failed(const QString& sentence);

private:
    struct Desk;
    class Drawer;
    struct Outcome;
    struct Kept {
        QImage picture;
        bool isFailed = false;
        /// When it was wanted last, see mTime.
        std::uint64_t wanted = 0;
    };

    void endDrawing();
    void startDrawing();
    bool isToBeDrawn(const Wish& wish) const;
    bool isInSight(int page) const { return mPagesInSight.contains(page); }
    void take(const Outcome& outcome);
    void setTextDirection(TextDirection direction);
    void keep(int page, const QImage& picture);
    void touch(int page, std::uint64_t wanted);
    void forgetSome();
    void fail(const Outcome& outcome);

    QString mProgram;
    std::chrono::milliseconds mPatience;
    QString mPdf;
    std::shared_ptr<const void> mKeeper;
    std::vector<Wish> mInSight;
    QSet<int> mPagesInSight;
    QHash<int, Kept> mPages;
    /// Those that have a picture, by when they were wanted last.
    std::set<std::pair<std::uint64_t, int>> mOldest;
    qint64 mKept = 0;
    /// Counts what was wanted: pages in sight have this time, and no other.
    std::uint64_t mTime = 1;
    std::optional<TextDirection> mTextDirection;
    bool mHasTold = false;
    bool mHasGivenUp = false;
    /// Shared with the thread that draws; null while there is none.
    std::shared_ptr<Desk> mDesk;
    BackgroundCall mDrawing;
    /// What was being drawn, and not wanted any more, when the timer was started.
    Wish mUnwanted;
    QTimer mPatienceForUnwanted;
};

} // namespace labelcut
