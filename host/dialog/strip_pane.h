// The dialog: the user's labels as they will come out, and what they take.
#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

#include "host/documents/page_pictures.h"
#include "host/strip/strip_view.h"

class QToolButton;

namespace labelcut {

class JobDocument;
class JobModel;
class LabelWindow;
class MessageBar;
class SteadyLabel;

/// The strip over the window's whole width, and a line of figures below it. Follows the model;
/// pages are drawn beside the window. Until the document has been read, blank labels stand for it.
class StripPane : public QWidget {
    Q_OBJECT
public:
    /// @param model     and messages: borrowed, outlive this. Messages say when pages cannot be
    ///                  drawn, and offer ways out when they do not fit their labels.
    StripPane(JobModel& model, MessageBar& messages, QWidget* parent = nullptr);
    ~StripPane() override;

    /// What pictures are drawn of. @param document  null: nothing.
    void setDocument(std::shared_ptr<const JobDocument> document);
    /// The document is being read, until setDocument().
    void setReading();
    /// Whether pages in sight are not drawn yet, and will be.
    bool isDrawing() const;
    /// Shows the model's state.
    void refresh();

    StripView& strip() { return *mStrip; }
    const SteadyLabel& figures() const { return *mFigures; }

private:
    void showWay();
    void showMisfit(const JobPlan& plan);
    void showLarge(std::int64_t index);

    JobModel& mModel;
    MessageBar& mMessages;
    PagePictures mPictures;
    StripView* mStrip;
    /// Changes with every click.
    SteadyLabel* mFigures;
    QToolButton* mTurn;
    /// Null while no label is shown large.
    QPointer<LabelWindow> mLarge;
    /// What the user turned the labels to; nothing: as their text can be read.
    std::optional<StripWay> mWanted;
};

} // namespace labelcut
