// The dialog: which document is printed, and how many labels are in it.
#pragma once

#include <QByteArrayList>
#include <QStringList>
#include <QWidget>

#include <memory>
#include <optional>
#include <utility>

#include "host/core/background_call.h"
#include "host/documents/paper.h"

class QLabel;
class QPushButton;

namespace labelcut {

class JobDocument;
class JobModel;
class MessageBar;
struct JobSnapshot;

/// The document's title, and a button that asks for others. It is read beside the window, and not
/// before the window is on the screen.
class DocumentRow : public QWidget {
    Q_OBJECT
public:
    /// @param model     borrowed, outlives this; is told how many labels there are.
    /// @param messages  borrowed, outlives this; says when a document cannot be read.
    DocumentRow(JobModel& model, MessageBar& messages, QWidget* parent = nullptr);

    /// Shows the model's document. @param now  what the model's state is.
    void refresh(const JobSnapshot& now);
    /// Whether the document is being read, or will be as soon as the window has been painted.
    bool isReading() const { return mIsReading; }
    /// The document is another one than was read. @param digests  what its files are.
    void documentChanged(const QByteArrayList& digests);
    /// What the files were when they were read; empty before that.
    const QByteArrayList& digests() const { return mDigests; }

Q_SIGNALS:
    /// A document is read from here on, until documentRead().
    void readingStarted();
    /// @param document  null: there is none, or it cannot be read.
    void documentRead(std::shared_ptr<const labelcut::JobDocument> document);

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void askForFiles();
    void read();
    void startReading();
    void setRead(std::shared_ptr<const JobDocument> document);

    JobModel& mModel;
    MessageBar& mMessages;
    BackgroundCall mReading;
    QByteArrayList mDigests;
    bool mIsShown = false;
    bool mIsReading = true;
    /// What the document was read for, and whether its pages depend on that.
    std::optional<JobPaper> mPaper;
    bool mIsLaidOut = false;
    /// Files and pages as they were shown last; nothing before that.
    std::optional<std::pair<QStringList, int>> mShown;
    QLabel* mTitle;
    QPushButton* mChoose;
};

} // namespace labelcut
