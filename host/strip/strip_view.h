// Strip: the widget that shows the user's own labels as they will come out.
#pragma once

#include <QImage>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

#include "host/plan/job_plan.h"
#include "host/strip/strip_painter.h"
#include "host/strip/strip_scene.h"

class QScrollBar;

namespace labelcut {

/// Labels in the order in which they come out, with lead, cuts and the printer's mouth. Draws only
/// what is in sight. Keys, wheel and bar scroll; Ctrl and the wheel zoom; a click, or Return, on a
/// label asks to see it large. Screen readers find a list of the labels.
class StripView : public QWidget {
    Q_OBJECT
public:
    explicit StripView(QWidget* parent = nullptr);
    ~StripView() override;

    /// @param plan    nothing: there is nothing to show.
    /// @param isRead  whether the plan's pages are the document's; otherwise they stand for what
    ///                is not read yet, and labels are drawn blank.
    void setPlan(std::optional<JobPlan> plan, bool isRead = true);
    const std::optional<JobPlan>& plan() const { return mPlan; }
    bool isRead() const { return mIsRead; }

    /// Where pictures come from.
    /// @param picture   of a page, upright; a null image while there is none.
    /// @param isFailed  whether there never will be one.
    void setPictures(std::function<QImage(int page)> picture,
                     std::function<bool(int page)> isFailed);
    /// The page's picture is there, or will never be.
    void pictureChanged(int page);
    /// A page in sight, counted from 1, and its measure in pixels of the screen.
    struct Wish {
        int page = 0;
        QSize pixels;
    };
    /// In the order of their labels, each page once.
    std::vector<Wish> wishes() const;

    void setWay(StripWay way);
    StripWay way() const { return mWay; }
    /// The tape runs to the left: the first label is at the right.
    void setReversed(bool isReversed);
    bool isReversed() const { return mIsReversed; }
    /// 0.5 to 8.
    void setZoom(double zoom);

    /// The label that keys act on, counted from 0.
    std::int64_t current() const { return mCurrent; }
    void setCurrent(std::int64_t index);
    /// Where the label is in the widget; null when it is out of sight.
    QRect rectOf(std::int64_t index) const;
    /// The label at a place of the widget.
    std::optional<std::int64_t> labelAt(const QPoint& place) const;
    /// What is in sight.
    const StripScene& scene() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// Other pages are in sight, or at another size.
    void wishesChanged();
    void labelWanted(std::int64_t index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;

private:
    void sceneChanged();
    void scrollTo(std::int64_t first);
    void tellCurrent();
    std::int64_t labelsInARow() const;
    StripLook look() const;
    QRect mirrored(const QRect& rect) const;

    std::optional<JobPlan> mPlan;
    bool mIsRead = true;
    StripWay mWay = StripWay::Along;
    bool mIsReversed = false;
    double mZoom = 1;
    std::int64_t mFirst = 0;
    std::int64_t mCurrent = 0;
    std::function<QImage(int)> mPicture;
    std::function<bool(int)> mIsFailed;
    /// Made when it is looked at; nothing while what it depends on has changed.
    mutable std::optional<StripScene> mScene;
    /// What wheels have turned since the last whole step; eighths of a degree.
    int mTurned = 0;
    QScrollBar* mBar;
};

/// Teaches screen readers what a StripView is. Once for the process.
void makeStripAccessible();

} // namespace labelcut
