// The dialog: which document is printed, and how many labels are in it.
#include "host/dialog/document_row.h"

#include <QEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <utility>

#include "host/dialog/job_snapshot.h"
#include "host/dialog/message_bar.h"
#include "host/dialog/plain_label.h"
#include "host/documents/job_document.h"
#include "host/job/marked_paper.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// The title is shortened to so much. Characters of usual width.
constexpr int kNamesLength = 48;
const QString kDocumentMessage = QStringLiteral("document");
/// Names that files of the kinds that can be printed usually have. What a file is, its content
/// says.
constexpr char kPatterns[] = " (*.pdf *.ps *.eps *.png *.jpg *.jpeg *.svg *.svgz *.txt)";

} // namespace

DocumentRow::DocumentRow(JobModel& model, MessageBar& messages, QWidget* parent)
    : QWidget(parent)
    , mModel(model)
    , mMessages(messages)
    , mReading(this)
    , mTitle(plainLabel())
    , mChoose(new QPushButton(hostText("ChooseFiles"))) {
    mTitle->setObjectName(QStringLiteral("document"));
    mChoose->setObjectName(QStringLiteral("chooseFiles"));
    connect(mChoose, &QPushButton::clicked, this, &DocumentRow::askForFiles);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(mTitle, 1);
    row->addWidget(mChoose);
}

/// The window comes first; what takes work on the document follows. This row itself may be out of
/// sight, where the screen is small.
void DocumentRow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!std::exchange(mIsShown, true))
        window()->installEventFilter(this);
}

bool DocumentRow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        QMetaObject::invokeMethod(this, &DocumentRow::read, Qt::QueuedConnection);
    }
    return QWidget::eventFilter(watched, event);
}

void DocumentRow::refresh(const JobSnapshot& now) {
    // Text and pictures are drawn for the label size that is chosen.
    if (mIsLaidOut && markedPaper(mModel.ppd()) != mPaper)
        startReading();
    const std::pair shown(now.files, now.pageCount);
    if (std::exchange(mShown, shown) == shown)
        return;
    const auto& [files, pages] = shown;
    const QString whole = jobTitle(files);
    // A long name does not widen the window.
    const QString title = fontMetrics().elidedText(whole, Qt::ElideMiddle,
                                                   kNamesLength * fontMetrics().averageCharWidth());
    mTitle->setToolTip(title == whole ? QString()
                                      : Qt::convertFromPlainText(whole, Qt::WhiteSpaceNormal));
    if (files.isEmpty())
        mTitle->setText(hostText("NoDocument"));
    else if (pages == 0)
        mTitle->setText(title);
    else
        mTitle->setText(
            hostText("DocumentWithLabels").arg(title, hostText("OneLabel", "ManyLabels", pages)));
}

void DocumentRow::askForFiles() {
    auto* chooser = new QFileDialog(this, hostText("ChooseFilesTitle"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::ExistingFiles);
    chooser->setNameFilters({hostText("PrintableFiles") + QLatin1String(kPatterns),
                             hostText("AllFiles") + QStringLiteral(" (*)")});
    connect(chooser, &QFileDialog::filesSelected, this, [this](const QStringList& files) {
        mModel.setFiles(files);
        read();
    });
    chooser->open();
}

void DocumentRow::read() {
    mMessages.remove(kDocumentMessage);
    mDigests.clear();
    mIsReading = false;
    Q_EMIT documentRead(nullptr);
    if (!mModel.files().isEmpty())
        startReading();
}

void DocumentRow::startReading() {
    mPaper = markedPaper(mModel.ppd());
    mIsReading = true;
    Q_EMIT readingStarted();
    mReading.start(
        [this, files = mModel.files(), paper = mPaper](const BackgroundCall::Link& link) {
            Result<JobDocument> read = JobDocument::prepare(files, paper, &link.cancelFlag());
            if (read) {
                link.tell([this, document = std::make_shared<const JobDocument>(std::move(*read))] {
                    setRead(document);
                });
                return;
            }
            link.tell([this, sentence = read.error().sentence] {
                mMessages.show(kDocumentMessage, MessageBar::Kind::Warning, sentence);
                mIsReading = false;
                Q_EMIT documentRead(nullptr);
            });
        });
}

void DocumentRow::setRead(std::shared_ptr<const JobDocument> document) {
    mIsReading = false;
    mDigests = document->digests();
    mIsLaidOut = document->isLaidOut();
    auto pages = std::make_shared<DocumentPages>();
    pages->measures = document->measures();
    pages->ofFiles = document->pagesOfFiles();
    Q_EMIT documentRead(std::move(document));
    mModel.setDocument(std::move(pages));
}

void DocumentRow::documentChanged(const QByteArrayList& digests) {
    mDigests = digests;
    startReading();
}

} // namespace labelcut
