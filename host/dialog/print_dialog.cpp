// The dialog: the window, its printers, and what it shows of the model.
#include "host/dialog/print_dialog.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSettings>
#include <QShortcut>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

#include "host/core/copies.h"
#include "host/core/private_folder.h"
#include "host/dialog/accessible_check_box.h"
#include "host/dialog/deferred_page.h"
#include "host/dialog/features_page.h"
#include "host/dialog/job_description.h"
#include "host/dialog/line_icons.h"
#include "host/dialog/message_bar.h"
#include "host/dialog/pages_page.h"
#include "host/dialog/panel_page.h"
#include "host/dialog/plain_label.h"
#include "host/dialog/readable_palette.h"
#include "host/dialog/summary_page.h"
#include "host/dialog/wheel_guard.h"
#include "host/printers/printer_state.h"
#include "host/printers/recent_printer.h"
#include "host/settings/saved_options.h"
#include "host/texts/host_text.h"
#include "platform/toolkit/picture.h"
#include "platform/toolkit/points.h"

namespace labelcut {

namespace {

constexpr char kGeometrySetting[] = "dialog/geometry";
/// The window at first: room for a panel and, below it, for a message. Panels are laid out in
/// points, the rest in lines of text, and fonts differ in how many points a line takes.
constexpr QSize kLines(39, 29);
constexpr QSizeF kPoints(600, 522);
/// The document's title is shortened to so much. Characters of usual width.
constexpr int kTitle = 48;
/// How long after a look at the print service's queues the next one follows, and from how many
/// queues on it waits longer. Milliseconds.
constexpr int kLookInterval = 5'000;
constexpr int kLongLookInterval = 60'000;
constexpr std::size_t kManyQueues = 100;
/// Item data of the pop-up's last entry, which asks for a PPD.
constexpr int kAskForPpd = -1;

QSettings settings() {
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("labelcut"),
                     QStringLiteral("labelcut"));
}

/// The widget, or what is in it, where the Tab key stops now. @param widget  null: nothing.
std::vector<QWidget*> tabStopsIn(QWidget* widget) {
    const auto isStop = [](const QWidget& candidate) {
        return (candidate.focusPolicy() & Qt::TabFocus) && !candidate.focusProxy() &&
               candidate.isVisible() && candidate.isEnabled();
    };
    if (!widget)
        return {};
    if (isStop(*widget))
        return {widget};
    std::vector<QWidget*> stops;
    for (QWidget* next = widget->nextInFocusChain(); next != widget;
         next = next->nextInFocusChain()) {
        if (widget->isAncestorOf(next) && isStop(*next))
            stops.push_back(next);
    }
    return stops;
}

/// The nearest one; null: none.
QScrollArea* scrollAreaAround(QWidget* widget) {
    for (QWidget* around = widget; around; around = around->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(around))
            return area;
    }
    return nullptr;
}

} // namespace

PrintDialog::PrintDialog(const DialogRequest& request, const PluginSearch& plugins,
                         const PDESystem& system, CupsConnection service, QWidget* parent)
    : QDialog(parent)
    , mPlugins(plugins)
    , mSystem(system)
    , mWanted(request.choices)
    , mDirectory(service)
    , mRun(std::move(service))
    , mCounting(this)
    , mWheel(new WheelGuard(this)) {
    setWindowTitle(hostText("WindowTitle"));
    setWindowIcon(
        iconFromPicture(Picture::fromFile(QStringLiteral(":/labelcut/host/labelcut.svg"))));
    makeAccessibleTogglesClicks();
    keepDisabledTextsReadable(*this);
    buildWindow();
    connectModel();
    mModel.setFiles(request.files);
    mModel.setCopies(request.copies);
    mModel.setPages(request.pages);
    mCopies->setValue(request.copies);
    tellRefused(plugins.refused);
    if (plugins.loaded.empty() && plugins.refused.empty())
        mMessages->add(QStringLiteral("plugins"), hostText("NoPlugins"));
    startWith(request);
    restoreGeometry(settings().value(QLatin1String(kGeometrySetting)).toByteArray());
}

PrintDialog::~PrintDialog() {
    clearTabs();
}

void PrintDialog::buildWindow() {
    mHeader = buildHeader();
    mTabs = new QTabWidget;
    mTabs->hide();
    mNoPrinter = plainLabel(hostText("NoPrinterYet"));
    mNoPrinter->setAlignment(Qt::AlignCenter);
    mNoPrinter->setWordWrap(true);
    mMessages = new MessageBar;
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(mHeader);
    layout->addWidget(mTabs, 1);
    layout->addWidget(mNoPrinter, 1);
    layout->addWidget(mMessages);
    layout->addWidget(buildFooter());
    // A button can only become a window's default once it is in it.
    mPrint->setDefault(true);
    mCopies->setFocus();
    const QSize points = (kPoints * points::scaleForFont(*this)).toSize();
    resize((kLines * fontMetrics().height()).expandedTo(points));
    mWheel->watch(*this);
}

/// The window comes first; what takes work on the document follows.
void PrintDialog::paintEvent(QPaintEvent* event) {
    QDialog::paintEvent(event);
    if (!std::exchange(mPainted, true))
        QMetaObject::invokeMethod(this, &PrintDialog::countPages, Qt::QueuedConnection);
}

/// Through the window as it is read, from top to bottom, messages included.
bool PrintDialog::focusNextPrevChild(bool next) {
    std::vector<QWidget*> stops;
    for (QWidget* part : std::initializer_list<QWidget*>{
             mChooseFiles, mPrinters, mPrinterMessages, mCopies, mPresetList, mSavePreset,
             mRemovePreset, mTabs->tabBar(), mTabs->currentWidget(), mMessages, mReset, mUndo,
             mPrint, mCancel}) {
        const std::vector<QWidget*> inPart = tabStopsIn(part);
        stops.insert(stops.end(), inPart.begin(), inPart.end());
    }
    if (stops.empty())
        return false;
    const auto here = std::ranges::find(stops, focusWidget());
    const std::size_t last = stops.size() - 1;
    const auto index = static_cast<std::size_t>(here - stops.begin());
    const std::size_t after = index >= last ? 0 : index + 1;
    const std::size_t before = index == 0 || here == stops.end() ? last : index - 1;
    QWidget* stop = stops[next ? after : before];
    stop->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    if (QScrollArea* area = scrollAreaAround(stop))
        area->ensureWidgetVisible(stop);
    return true;
}

QPushButton* PrintDialog::addButton(const char* textKey, const char* name) {
    auto* button = new QPushButton(hostText(textKey));
    button->setObjectName(QLatin1String(name));
    return button;
}

QWidget* PrintDialog::buildHeader() {
    mDocument = plainLabel();
    mDocument->setObjectName(QStringLiteral("document"));
    mChooseFiles = addButton("ChooseFiles", "chooseFiles");
    connect(mChooseFiles, &QPushButton::clicked, this, &PrintDialog::askForFiles);
    auto* document = new QHBoxLayout;
    document->addWidget(mDocument, 1);
    document->addWidget(mChooseFiles);

    auto* header = new QWidget;
    auto* form = new QFormLayout(header);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(hostText("Document"), document);
    QLayout* printer = buildPrinterRow();
    auto* printerLabel = new QLabel(hostText("Printer"));
    printerLabel->setBuddy(mPrinters);
    form->addRow(printerLabel, printer);
    QLayout* amount = buildAmountRow();
    auto* copiesLabel = new QLabel(hostText("Copies"));
    copiesLabel->setBuddy(mCopies);
    form->addRow(copiesLabel, amount);
    return header;
}

QLayout* PrintDialog::buildPrinterRow() {
    mPrinters = new QComboBox;
    mPrinters->setObjectName(QStringLiteral("printers"));
    mPrinters->setMinimumContentsLength(24);
    mPrinters->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    mPrinters->setPlaceholderText(hostText("LookingForPrinters"));
    connect(mPrinters, &QComboBox::activated, this, &PrintDialog::printerActivated);
    mPrinterState = plainLabel();
    mPrinterState->setObjectName(QStringLiteral("printerState"));
    mPrinterState->setWordWrap(true);
    mPrinterState->hide();
    mPrinterMessages = new MessageBar;
    auto* column = new QVBoxLayout;
    column->addWidget(mPrinters);
    column->addWidget(mPrinterState);
    column->addWidget(mPrinterMessages);
    return column;
}

QLayout* PrintDialog::buildAmountRow() {
    mCopies = new QSpinBox;
    mCopies->setRange(1, kMaxCopies);
    mCopies->setObjectName(QStringLiteral("copies"));
    connect(mCopies, &QSpinBox::valueChanged, &mModel, &JobModel::setCopies);
    mPresetList = new QComboBox;
    mPresetList->setObjectName(QStringLiteral("presets"));
    mPresetList->setMinimumContentsLength(12);
    mPresetList->setEnabled(false);
    mPresetList->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    mPresetList->setPlaceholderText(hostText("NoPreset"));
    connect(mPresetList, &QComboBox::activated, this,
            [this] { applyPreset(mPresetList->currentText()); });
    mSavePreset = addButton("SavePreset", "savePreset");
    connect(mSavePreset, &QPushButton::clicked, this, &PrintDialog::savePreset);
    mRemovePreset = new QToolButton;
    mRemovePreset->setObjectName(QStringLiteral("removePreset"));
    mRemovePreset->setFocusPolicy(Qt::StrongFocus);
    mRemovePreset->setIcon(lineIcon(LineIcon::Remove));
    mRemovePreset->setToolTip(hostText("RemovePreset"));
    mRemovePreset->setAccessibleName(hostText("RemovePreset"));
    connect(mRemovePreset, &QToolButton::clicked, this, &PrintDialog::removePreset);
    auto* presetLabel = new QLabel(hostText("Preset"));
    presetLabel->setBuddy(mPresetList);

    auto* amount = new QHBoxLayout;
    amount->addWidget(mCopies);
    amount->addStretch(1);
    amount->addWidget(presetLabel);
    amount->addWidget(mPresetList);
    amount->addWidget(mSavePreset);
    amount->addWidget(mRemovePreset);
    return amount;
}

QWidget* PrintDialog::buildFooter() {
    mSentence = plainLabel();
    mSentence->setWordWrap(true);
    mSentence->setObjectName(QStringLiteral("sentence"));
    mProgress = new QProgressBar;
    mProgress->setObjectName(QStringLiteral("progress"));
    mProgress->setAccessibleName(hostText("Progress"));
    mProgress->setMaximumWidth(160);
    QSizePolicy policy = mProgress->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    mProgress->setSizePolicy(policy);
    mProgress->hide();
    mReset = addButton("ResetAll", "reset");
    connect(mReset, &QPushButton::clicked, &mModel, &JobModel::resetToDefaults);
    mUndo = addButton("UndoLast", "undo");
    connect(mUndo, &QPushButton::clicked, &mModel, &JobModel::undo);
    // A text field that has the focus takes the key for itself.
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, mUndo,
            &QPushButton::click);
    mPrint = addButton("Print", "print");
    connect(mPrint, &QPushButton::clicked, this, &PrintDialog::print);
    mCancel = addButton("Cancel", "cancel");
    connect(mCancel, &QPushButton::clicked, this, &PrintDialog::reject);

    auto* buttons = new QDialogButtonBox;
    buttons->addButton(mPrint, QDialogButtonBox::ActionRole);
    buttons->addButton(mCancel, QDialogButtonBox::ActionRole);
    auto* row = new QHBoxLayout;
    row->addWidget(mReset);
    row->addWidget(mUndo);
    row->addStretch(1);
    row->addWidget(mProgress);
    row->addWidget(buttons);
    auto* footer = new QWidget;
    auto* layout = new QVBoxLayout(footer);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mSentence);
    layout->addLayout(row);
    return footer;
}

void PrintDialog::connectModel() {
    connect(&mModel, &JobModel::printerOpened, this, &PrintDialog::rebuildTabs);
    // Many changes in one turn of the event loop are shown once.
    connect(&mModel, &JobModel::changed, this, [this] {
        if (std::exchange(mRefreshScheduled, true))
            return;
        QTimer::singleShot(0, this, &PrintDialog::refresh);
    });
    connect(&mModel, &JobModel::told, this, &PrintDialog::tell);
    connect(&mDirectory, &PrinterDirectory::printersChanged, this, &PrintDialog::queuesChanged);
    connect(&mDirectory, &PrinterDirectory::failed, this, &PrintDialog::sayServiceFailure);
    mLookAgain.setSingleShot(true);
    connect(&mLookAgain, &QTimer::timeout, this, &PrintDialog::lookAgain);
    connect(&mDirectory, &PrinterDirectory::finished, this, [this] {
        mPrinters->setPlaceholderText(hostText("ChoosePrinter"));
        if (mModel.hasPrinter() && !mFetching)
            showPrinterState();
        mLookAgain.start(mDirectory.printers().size() > kManyQueues ? kLongLookInterval
                                                                    : kLookInterval);
    });
    connect(&mDirectory, &PrinterDirectory::ppdFetched, this, &PrintDialog::queuePpdFetched);
    connect(&mDirectory, &PrinterDirectory::ppdFailed, this,
            [this](const QString&, const Error& error) { giveUpQueue(error); });
    connect(&mRun, &PrintRun::progressed, this, &PrintDialog::runProgressed);
    connect(&mRun, &PrintRun::documentChanged, this, &PrintDialog::documentRead);
    connect(&mRun, &PrintRun::failed, this, [this](const QString& sentence) {
        runEnded();
        mMessages->show(QStringLiteral("run"), MessageBar::Kind::Warning, sentence);
    });
    connect(&mRun, &PrintRun::finished, this, [this] {
        runEnded();
        accept();
    });
}

void PrintDialog::sayServiceFailure(const Error& error) {
    // A printer that is known by its PPD needs no print service.
    const bool needsNone = mModel.hasPrinter() && !queueName(mModel.printer()->ref());
    if (needsNone || error.sentence == std::exchange(mServiceFailureSaid, error.sentence))
        return;
    const QString name = QStringLiteral("printers");
    mPrinterMessages->show(name, MessageBar::Kind::Warning, error.sentence,
                           {{hostText("TryAgain"), [this, name] {
                                 mPrinterMessages->remove(name);
                                 mServiceFailureSaid.clear();
                                 mDirectory.refresh(mWantedQueue);
                             }}});
}

/// Printers come and go, and so do their states. A list that is open stays as it is.
void PrintDialog::lookAgain() {
    if (!isVisible() || mFetching || mRun.isBusy() || mPrinters->view()->isVisible())
        mLookAgain.start(kLookInterval);
    else
        mDirectory.refresh(mModel.hasPrinter() && queueName(mModel.printer()->ref())
                               ? *queueName(mModel.printer()->ref())
                               : QString());
}

void PrintDialog::startWith(const DialogRequest& request) {
    if (!request.ppdPath.isEmpty()) {
        openPpdByHand(request.ppdPath, std::exchange(mWanted, {}));
        mDirectory.refresh();
        return;
    }
    mWantedQueue = request.queue;
    if (mWantedQueue.isEmpty()) {
        const RecentPrinter recent = recentPrinter();
        if (recent.kind == RecentPrinter::Kind::PpdFile && QFileInfo::exists(recent.ppdPath))
            openPpdByHand(recent.ppdPath, std::exchange(mWanted, {}));
        else
            mWantedQueue = recent.queue;
    }
    mDirectory.refresh(mWantedQueue);
}

void PrintDialog::queuesChanged(const std::vector<Queue>& queues) {
    mPrinterMessages->remove(QStringLiteral("printers"));
    mServiceFailureSaid.clear();
    mListed.clear();
    for (const Queue& queue : queues)
        mListed.push_back(
            {QueueRef{queue.name}, titleOf(queue), stateSentence(queue), needsAttention(queue)});
    listPrinters();
    if (mFetching)
        return;
    if (mModel.hasPrinter()) {
        showPrinterState();
        return;
    }
    const auto wanted = std::ranges::find_if(queues, [this](const Queue& queue) {
        return mWantedQueue.isEmpty() ? queue.isDefault : queue.name == mWantedQueue;
    });
    // What was given up is not tried again behind the user's back.
    if (wanted != queues.end() && wanted->name != mGivenUp)
        openQueue(wanted->name);
}

void PrintDialog::listPrinters() {
    std::erase_if(mListed, [](const ListedPrinter& listed) { return !queueName(listed.ref); });
    mListed.insert(mListed.end(), mByHand.begin(), mByHand.end());
    QStringList titles;
    for (const ListedPrinter& listed : mListed)
        titles << listed.title;
    if (std::exchange(mTitles, titles) != titles || mPrinters->count() == 0) {
        mPrinters->clear();
        for (qsizetype i = 0; i < titles.size(); ++i)
            mPrinters->addItem(titles[i], static_cast<int>(i));
        if (mPrinters->count() > 0)
            mPrinters->insertSeparator(mPrinters->count());
        mPrinters->addItem(hostText("ChoosePpd"), kAskForPpd);
    }
    const auto current = std::ranges::find_if(mListed, [this](const ListedPrinter& listed) {
        if (mFetching)
            return listed.ref == PrinterRef(QueueRef{mWantedQueue});
        return isInForce(listed.ref);
    });
    mPrinters->setCurrentIndex(current == mListed.end() ? -1
                                                        : mPrinters->findData(static_cast<int>(
                                                              current - mListed.begin())));
}

void PrintDialog::printerActivated() {
    const int index = mPrinters->currentData().toInt();
    if (index == kAskForPpd) {
        listPrinters();
        askForPpd();
        return;
    }
    const PrinterRef chosen = mListed[static_cast<std::size_t>(index)].ref;
    if (mFetching && isInForce(chosen))
        stayWithPrinter();
    else if (const QString* queue = queueName(chosen))
        openQueue(*queue);
    else
        openPpdByHand(*ppdPath(chosen), {});
}

bool PrintDialog::isInForce(const PrinterRef& printer) const {
    return mModel.hasPrinter() && mModel.printer()->ref() == printer;
}

void PrintDialog::openQueue(const QString& name) {
    mWantedQueue = name;
    mGivenUp.clear();
    mFetching = true;
    mPrinterMessages->remove(QStringLiteral("ppd"));
    listPrinters();
    sayState(hostText("FetchingPpd").arg(name), false);
    refresh();
    mDirectory.fetchPpd(name);
}

/// Another one was asked for; the printer that was in force stays so, with its choices.
void PrintDialog::stayWithPrinter() {
    mDirectory.cancelFetch();
    mFetching = false;
    listPrinters();
    showPrinterState();
    refresh();
}

void PrintDialog::giveUpQueue(const Error& error) {
    mGivenUp = mWantedQueue;
    stayWithPrinter();
    mPrinterMessages->show(QStringLiteral("ppd"), MessageBar::Kind::Warning, error.sentence,
                           {{hostText("TryAgain"), [this, name = mGivenUp] { openQueue(name); }}});
}

void PrintDialog::askForPpd() {
    auto* chooser = new QFileDialog(this, hostText("ChoosePpd"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::ExistingFile);
    chooser->setNameFilter(hostText("PpdFiles") + QStringLiteral(" (*.ppd *.ppd.gz)"));
    connect(chooser, &QFileDialog::fileSelected, this,
            [this](const QString& path) { openPpdByHand(path, {}); });
    chooser->open();
}

void PrintDialog::openPpdByHand(const QString& path, const Settings& wanted) {
    Result<FoundPrinter> found = findPpdFile(path);
    if (!found) {
        listPrinters();
        mPrinterMessages->show(QStringLiteral("ppd"), MessageBar::Kind::Warning,
                               found.error().sentence);
        return;
    }
    const ListedPrinter listed{
        found->ref, QStringLiteral("%1 (%2)").arg(found->title, QFileInfo(path).fileName()),
        QString(), false};
    if (std::ranges::find(mByHand, listed.ref, &ListedPrinter::ref) == mByHand.end())
        mByHand.push_back(listed);
    found->title = listed.title;
    const auto remembered = rememberPpdFile(path);
    static_cast<void>(remembered); // only a convenience
    mDirectory.cancelFetch();
    adoptPrinter(std::move(*found), wanted);
}

void PrintDialog::queuePpdFetched(const QString& name, const QByteArray& bytes) {
    const Queue* queue = mDirectory.find(name);
    Queue unknown;
    unknown.name = name;
    Result<FoundPrinter> found = foundQueue(queue ? *queue : unknown, bytes);
    if (!found) {
        giveUpQueue(found.error());
        return;
    }
    const auto remembered = rememberQueue(name);
    static_cast<void>(remembered); // only a convenience
    adoptPrinter(std::move(*found), std::exchange(mWanted, {}));
}

void PrintDialog::adoptPrinter(FoundPrinter printer, const Settings& wanted) {
    mFetching = false;
    mPreset.clear();
    mPrinterMessages->remove(QStringLiteral("ppd"));
    mPrinterMessages->remove(QStringLiteral("printers"));
    for (const char* about : {"told", "conflict", "run", "preset"})
        mMessages->remove(QLatin1String(about));
    clearTabs();
    mModel.adopt(std::make_unique<OpenedPrinter>(std::move(printer), wanted, mPlugins, mSystem));
    tellRefused(mModel.printer()->refused());
    listPrinters();
    showPrinterState();
    refreshPresets();
}

void PrintDialog::showPrinterState() {
    const auto listed = std::ranges::find_if(
        mListed, [this](const ListedPrinter& candidate) { return isInForce(candidate.ref); });
    if (!mModel.hasPrinter())
        sayState(QString(), false);
    else if (!queueName(mModel.printer()->ref()))
        sayState(hostText("PrintsIntoFile"), false);
    else if (listed != mListed.end())
        sayState(listed->state, listed->needsAttention);
    else if (!mDirectory.isRefreshing())
        sayState(goneSentence(*queueName(mModel.printer()->ref())), true);
}

/// In a quiet line, or as a message when somebody has to do something.
void PrintDialog::sayState(const QString& sentence, bool needsAttention) {
    if (sentence == std::exchange(mStateSaid, sentence))
        return;
    const QString name = QStringLiteral("state");
    mPrinterState->setText(needsAttention ? QString() : sentence);
    mPrinterState->setVisible(!mPrinterState->text().isEmpty());
    if (needsAttention)
        mPrinterMessages->show(name, MessageBar::Kind::Warning, sentence);
    else
        mPrinterMessages->remove(name);
}

void PrintDialog::clearTabs() {
    while (mTabs->count() > 0)
        delete mTabs->widget(0);
    mPagesPage = nullptr;
    mFeaturesPage = nullptr;
    mSummaryPage = nullptr;
}

template<typename Page>
void PrintDialog::addPage(const char* titleKey, Page*& page) {
    mTabs->addTab(new DeferredPage([this, &page] {
                      page = new Page(mModel);
                      mWheel->watch(*page);
                      if constexpr (requires { &Page::problemChanged; })
                          connect(page, &Page::problemChanged, this,
                                  &PrintDialog::forgetMendedTyping);
                      return page;
                  }),
                  hostText(titleKey));
}

void PrintDialog::rebuildTabs() {
    clearTabs();
    for (const PanelSet::Entry& panel : mModel.panels()) {
        if (!panel.keys.isEmpty())
            mTabs->addTab(new PanelPage(mModel, panel),
                          panel.panel->panelName().replace(u'&', QStringLiteral("&&")));
    }
    addPage("TabPages", mPagesPage);
    addPage("TabFeatures", mFeaturesPage);
    addPage("TabSummary", mSummaryPage);
    mTabs->setCurrentIndex(0);
    mNoPrinter->hide();
    mTabs->show();
    mWheel->watch(*this);
}

void PrintDialog::refresh() {
    mRefreshScheduled = false;
    const QStringList& files = mModel.files();
    const int pages = mModel.pageCount();
    // A long name does not widen the window.
    const QString whole = jobTitle(files);
    const QString title =
        fontMetrics().elidedText(whole, Qt::ElideMiddle, kTitle * fontMetrics().averageCharWidth());
    mDocument->setToolTip(title == whole ? QString() : Qt::convertFromPlainText(whole));
    mDocument->setText(
        files.isEmpty() ? hostText("NoDocument")
        : pages > 0
            ? hostText("DocumentWithLabels").arg(title, hostText("OneLabel", "ManyLabels", pages))
            : title);
    mSentence->setText(jobSentence(mModel));
    mCopies->setValue(mModel.copies());
    const int labels = mModel.labelCount();
    mPrint->setText(labels > 0 ? hostText("PrintOne", "PrintMany", labels) : hostText("Print"));
    mPrint->setEnabled(!mRun.isBusy() && !mFetching && mModel.hasPrinter() && !files.isEmpty());
    mReset->setEnabled(!mRun.isBusy() && !mModel.hasDefaultsOnly());
    mUndo->setEnabled(!mRun.isBusy() && mModel.canUndo());
    mSavePreset->setEnabled(mModel.hasPrinter());
    if (mModel.marks() != mPresetMarks || mModel.copies() != mPresetCopies)
        choosePreset(QString());
    if (mPagesPage)
        mPagesPage->refresh();
    if (mFeaturesPage)
        mFeaturesPage->refresh();
    if (mSummaryPage)
        mSummaryPage->refresh();
    refreshConflicts();
}

void PrintDialog::refreshConflicts() {
    const QString name = QStringLiteral("conflict");
    const QString sentence = mModel.conflictSentence();
    if (sentence.isEmpty()) {
        mMessages->remove(name);
        return;
    }
    std::vector<MessageAction> actions;
    if (const QString fix = mModel.fixText(); !fix.isEmpty())
        actions.push_back({hostText("FixConflict").arg(fix), [this] { mModel.applyFix(); }});
    if (mModel.canUndo())
        actions.push_back({hostText("Undo"), [this] { mModel.undo(); }});
    mMessages->show(name, MessageBar::Kind::Warning, sentence, actions);
}

/// It stays whatever the printer, until the user dismisses it.
void PrintDialog::tellRefused(const std::vector<RefusedPlugin>& plugins) {
    for (const RefusedPlugin& plugin : plugins)
        mMessages->add(QStringLiteral("plugins"),
                       hostText("PluginRefused").arg(plugin.file, plugin.reason));
}

void PrintDialog::tell(const QString& sentence) {
    mMessages->add(QStringLiteral("told"), sentence);
}

void PrintDialog::askForFiles() {
    auto* chooser = new QFileDialog(this, hostText("ChooseFiles"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::ExistingFiles);
    connect(chooser, &QFileDialog::filesSelected, this, [this](const QStringList& files) {
        mModel.setFiles(files);
        countPages();
    });
    chooser->open();
}

void PrintDialog::countPages() {
    mMessages->remove(QStringLiteral("document"));
    mShown.clear();
    if (mModel.files().isEmpty())
        return;
    mCounting.start([this, files = mModel.files()](const BackgroundCall::Link& link) {
        const Result<JobDocument> document =
            JobDocument::prepare(files, std::nullopt, &link.cancelFlag());
        if (document) {
            link.tell([this, pages = document->pages(), digests = document->digests()] {
                documentRead(pages, digests);
            });
            return;
        }
        link.tell([this, sentence = document.error().sentence] {
            mMessages->show(QStringLiteral("document"), MessageBar::Kind::Warning, sentence);
        });
    });
}

void PrintDialog::documentRead(int pages, const QByteArrayList& digests) {
    mShown = digests;
    mModel.setPageCount(pages);
}

void PrintDialog::reject() {
    if (!mRun.isBusy()) {
        QDialog::reject();
        return;
    }
    if (mRun.isSent())
        mRun.stopWatching();
    else
        mRun.cancel();
}

/// In a file and folder that are the user's alone.
void PrintDialog::keepGeometry() {
    QSettings kept = settings();
    makePrivateFolder(QFileInfo(kept.fileName()).path());
    kept.setValue(QLatin1String(kGeometrySetting), saveGeometry());
    kept.sync();
    QFile::setPermissions(kept.fileName(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

void PrintDialog::done(int result) {
    keepGeometry();
    mModel.close(result == Accepted);
    QDialog::done(result);
}

} // namespace labelcut
