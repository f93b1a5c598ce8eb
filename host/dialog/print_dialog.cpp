// The dialog: the window, and what connects its parts.
#include "host/dialog/print_dialog.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include "host/core/copies.h"
#include "host/dialog/accessible_check_box.h"
#include "host/dialog/conflict_message.h"
#include "host/dialog/document_row.h"
#include "host/dialog/job_footer.h"
#include "host/dialog/message_bar.h"
#include "host/dialog/page_stack.h"
#include "host/dialog/pages_page.h"
#include "host/dialog/preset_bar.h"
#include "host/dialog/printer_picker.h"
#include "host/dialog/readable_palette.h"
#include "host/dialog/strip_pane.h"
#include "host/dialog/tab_order.h"
#include "host/dialog/wheel_guard.h"
#include "host/dialog/window_body.h"
#include "host/dialog/window_geometry.h"
#include "host/texts/host_text.h"
#include "platform/toolkit/picture.h"

namespace labelcut {

namespace {

/// How long the window stays away while its first PPD file is read. Milliseconds.
constexpr int kPatienceForFile = 200;

} // namespace

PrintDialog::PrintDialog(const DialogRequest& request, const PluginSearch& plugins,
                         const PDESystem& system, const CupsConnection& service, QWidget* parent)
    : QDialog(parent)
    , mOpener(mModel, plugins, system, service)
    , mRun(service) {
    setWindowTitle(hostText("WindowTitle"));
    setWindowIcon(
        iconFromPicture(Picture::fromFile(QStringLiteral(":/labelcut/host/labelcut.svg"))));
    makeAccessibleTogglesClicks();
    keepDisabledTextsReadable(*this);
    keepFocusInSight(*this);
    buildWindow();
    connectParts();
    connectRun();
    mModel.setFiles(request.files);
    mModel.setCopies(request.copies);
    mModel.setPages(request.pages);
    tellRefused(plugins.refused);
    if (plugins.loaded.empty() && plugins.refused.empty())
        mMessages->add(QStringLiteral("plugins"), hostText("NoPlugins"));
    start(request);
    restoreWindow(*this);
}

PrintDialog::~PrintDialog() {
    mPages->clear();
}

void PrintDialog::buildWindow() {
    mMessages = new MessageBar;
    mHeader = buildHeader();
    mStrip = new StripPane(mModel, *mMessages);
    mPages = new PageStack(mModel);
    mFooter = new JobFooter(mModel);
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(mHeader);
    column->addWidget(mStrip);
    mBody = new QBoxLayout(QBoxLayout::LeftToRight);
    mBody->addWidget(mPages, 1);
    mColumn = buildColumn();
    mBody->addWidget(mColumn);
    column->addLayout(mBody, 1);
    column->addWidget(mMessages);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new WindowBody(content, *mFooter), 1);
    layout->addWidget(mFooter);
    // A button can only become a window's default once it is in it.
    mFooter->printButton().setDefault(true);
    mCopies->setFocus();
    (new WheelGuard(this))->watch(*this);
}

QWidget* PrintDialog::buildHeader() {
    mDocument = new DocumentRow(mModel, *mMessages);
    mPicker = new PrinterPicker(mOpener);
    auto* header = new QWidget;
    auto* form = new QFormLayout(header);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(new QLabel(hostText("Document")), mDocument);
    auto* printer = new QLabel(hostText("Printer"));
    printer->setBuddy(&mPicker->list());
    auto* picker = new QVBoxLayout;
    picker->addWidget(&mPicker->list());
    picker->addWidget(mPicker);
    form->addRow(printer, picker);
    return header;
}

/// Beside the pages: what every job needs.
QWidget* PrintDialog::buildColumn() {
    mCopies = new QSpinBox;
    mCopies->setRange(1, kMaxCopies);
    mCopies->setObjectName(QStringLiteral("copies"));
    mPresets = new PresetBar(mModel, *mMessages);
    auto* column = new QGroupBox(hostText("LabelsAndPrinter"));
    column->setObjectName(QStringLiteral("labelsAndPrinter"));
    auto* copies = new QFormLayout;
    copies->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    auto* label = new QLabel(hostText("Copies"));
    label->setBuddy(mCopies);
    label->setMinimumWidth(PagesPage::nameWidth(fontMetrics()));
    copies->addRow(label, mCopies);
    auto* layout = new QVBoxLayout(column);
    layout->addLayout(copies);
    layout->addWidget(&mPages->beside());
    layout->addStretch(1);
    layout->addWidget(mPresets);
    return column;
}

void PrintDialog::connectParts() {
    mRefresh.setSingleShot(true);
    connect(&mRefresh, &QTimer::timeout, this, &PrintDialog::refresh);
    const auto refreshSoon = [this] { mRefresh.start(0); };
    connect(&mModel, &JobModel::changed, this, refreshSoon);
    connect(&mModel, &JobModel::fixSearched, this,
            [this] { completeConflict(mModel, *mMessages); });
    connect(&mModel, &JobModel::told, this, &PrintDialog::tell);
    connect(&mModel, &JobModel::printerOpened, mPages, &PageStack::rebuild);
    connect(mDocument, &DocumentRow::readingStarted, mStrip, &StripPane::setReading);
    connect(mDocument, &DocumentRow::documentRead, mStrip, &StripPane::setDocument);
    connect(mPages, &PageStack::problemChanged, this, &PrintDialog::forgetMendedTyping);
    connect(&mOpener, &PrinterOpener::comingChanged, this, &PrintDialog::refresh);
    connect(&mOpener, &PrinterOpener::aboutToOpen, this, &PrintDialog::closePrinter);
    connect(&mOpener, &PrinterOpener::opened, this, &PrintDialog::printerOpened);
    connect(mCopies, &QSpinBox::valueChanged, &mModel, &JobModel::setCopies);
    connect(mFooter, &JobFooter::printWanted, this, &PrintDialog::print);
    connect(mFooter, &JobFooter::cancelWanted, this, &PrintDialog::reject);
    connect(mFooter, &JobFooter::cancelJobWanted, &mRun, &PrintRun::cancel);
    connect(mFooter, &JobFooter::holdWanted, &mRun, [this](bool hold) {
        if (hold)
            mRun.hold();
        else
            mRun.release();
    });
}

void PrintDialog::start(const DialogRequest& request) {
    std::optional<PrinterRef> printer;
    if (!request.ppdPath.isEmpty())
        printer = PpdFileRef{request.ppdPath};
    else if (!request.queue.isEmpty())
        printer = QueueRef{request.queue};
    if (printer && request.complain) {
        // Only the first printer is the starter's business.
        auto* starting = new QObject(this);
        connect(&mOpener, &PrinterOpener::opened, starting, &QObject::deleteLater);
        connect(&mOpener, &PrinterOpener::failed, starting,
                [starting, complain = request.complain](const PrinterRef&, const QString& reason) {
                    complain(reason);
                    starting->deleteLater();
                });
    }
    mOpener.start(printer, request.choices);
}

void PrintDialog::showWithFirstPrinter() {
    const std::optional<PrinterRef>& coming = mOpener.coming();
    if (!coming || queueName(*coming)) {
        show();
        return;
    }
    auto* waiting = new QTimer(this);
    const auto showNow = [this, waiting] {
        waiting->deleteLater();
        show();
    };
    waiting->setSingleShot(true);
    connect(waiting, &QTimer::timeout, waiting, showNow);
    connect(&mOpener, &PrinterOpener::opened, waiting, showNow);
    connect(&mOpener, &PrinterOpener::failed, waiting, showNow);
    waiting->start(kPatienceForFile);
}

const MessageBar& PrintDialog::printerMessages() const {
    return mPicker->messages();
}

bool PrintDialog::isComplete() const {
    return !awaitsPrinter() && !mRefresh.isActive() && !mDocument->isReading() &&
           !mStrip->isDrawing() && !mModel.isSearchingFix();
}

QTabWidget& PrintDialog::tabs() const {
    return mPages->tabs();
}

/// Through the window as it is read, from top to bottom, messages included.
bool PrintDialog::focusNextPrevChild(bool next) {
    return moveFocus(*this,
                     {mDocument, &mPicker->list(), mPicker, mStrip, tabs().tabBar(),
                      tabs().currentWidget(), mCopies, &mPages->beside(), mPresets, mMessages,
                      mFooter},
                     next);
}

/// What was said of the printer that goes, and its panels, go with it.
void PrintDialog::closePrinter() {
    for (const char* about : {"told", "conflict", "run", "preset", "typing"})
        mMessages->remove(QLatin1String(about));
    mPages->clear();
}

/// Beside each other where the screen has room for that, otherwise below each other.
void PrintDialog::arrangeColumns() {
    const QMargins margins = layout()->contentsMargins();
    const int needed = mPages->minimumSizeHint().width() + mBody->spacing() +
                       mColumn->minimumSizeHint().width() + margins.left() + margins.right();
    mBody->setDirection(needed > roomFor(*this).width() ? QBoxLayout::TopToBottom
                                                        : QBoxLayout::LeftToRight);
}

void PrintDialog::printerOpened() {
    tellRefused(mModel.printer()->refused());
    mPresets->reload();
    arrangeColumns();
}

void PrintDialog::refresh() {
    const JobSnapshot now = JobSnapshot::of(mModel);
    mDocument->refresh(now);
    mCopies->setValue(now.handling.copies);
    mPresets->refresh(now);
    mStrip->refresh();
    mPages->refresh(now);
    if (mOffer.isNoted())
        mFooter->setOffer(
            mOffer.kindFor(mModel.hasPrinter() ? std::optional(orderNow()) : std::nullopt));
    mFooter->refresh(now, !mOpener.coming());
    showConflict(mModel, *mMessages);
}

void PrintDialog::tell(const QString& sentence) {
    mMessages->add(QStringLiteral("told"), sentence);
}

/// It stays whatever the printer, until the user dismisses it.
void PrintDialog::tellRefused(const std::vector<RefusedPlugin>& plugins) {
    for (const RefusedPlugin& plugin : plugins)
        mMessages->add(QStringLiteral("plugins"),
                       hostText("PluginRefused").arg(plugin.file, plugin.reason));
}

void PrintDialog::reject() {
    if (!mRun.isBusy())
        QDialog::reject();
    else if (mRun.isSent())
        mRun.stopWatching();
    else
        mRun.cancel();
}

void PrintDialog::done(int result) {
    keepWindow(*this);
    mModel.close(result == Accepted);
    QDialog::done(result);
}

} // namespace labelcut
