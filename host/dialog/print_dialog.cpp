// The dialog: the window, its printers, and what it shows of the model.
#include "host/dialog/print_dialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

#include "host/dialog/features_page.h"
#include "host/dialog/message_bar.h"
#include "host/dialog/pages_page.h"
#include "host/dialog/panel_page.h"
#include "host/dialog/summary_page.h"
#include "host/dialog/wheel_guard.h"
#include "host/presets/recent_printer.h"
#include "host/presets/saved_defaults.h"
#include "host/printers/printer_state.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

constexpr char kGeometrySetting[] = "dialog/geometry";
/// Item data of the pop-up's last entry, which asks for a PPD.
constexpr int kAskForPpd = -1;

QSettings settings() {
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("labelcut"),
                     QStringLiteral("labelcut"));
}

QLabel* plainLabel() {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    return label;
}

QString titleOf(const Queue& queue) {
    return queue.info.isEmpty() || queue.info == queue.name
               ? queue.name
               : QStringLiteral("%1 (%2)").arg(queue.info, queue.name);
}

} // namespace

PrintDialog::PrintDialog(const DialogRequest& request, const PluginSearch& plugins,
                         const PDESystem& system, CupsConnection service, QWidget* parent)
    : QDialog(parent)
    , mWanted(request.choices)
    , mModel(plugins, system)
    , mDirectory(std::move(service))
    , mCounting(this)
    , mWheel(new WheelGuard(this)) {
    setWindowTitle(hostText("WindowTitle"));
    setWindowIcon(QIcon(QStringLiteral(":/labelcut/host/labelcut.svg")));
    buildWindow();
    connectModel();
    mModel.setFiles(request.files);
    mModel.setCopies(request.copies);
    mModel.setPages(request.pages);
    mCopies->setValue(request.copies);
    for (const RefusedPlugin& refused : plugins.refused)
        tell(hostText("PluginRefused").arg(refused.file, refused.reason));
    startWith(request);
    countPages();
    restoreGeometry(settings().value(QLatin1String(kGeometrySetting)).toByteArray());
}

PrintDialog::~PrintDialog() {
    clearTabs();
}

void PrintDialog::buildWindow() {
    mTabs = new QTabWidget;
    mTabs->setDocumentMode(false);
    mMessages = new MessageBar;
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(buildHeader());
    layout->addWidget(mTabs, 1);
    layout->addWidget(mMessages);
    layout->addWidget(buildFooter());
    mWheel->watch(*this);
}

QWidget* PrintDialog::buildHeader() {
    mDocument = plainLabel();
    mChooseFiles = new QPushButton(hostText("ChooseFiles"));
    mChooseFiles->setAutoDefault(false);
    connect(mChooseFiles, &QPushButton::clicked, this, &PrintDialog::askForFiles);
    mCopies = new QSpinBox;
    mCopies->setRange(1, Preset::kMaxCopies);
    mCopies->setObjectName(QStringLiteral("copies"));
    auto* copiesLabel = new QLabel(hostText("Copies"));
    copiesLabel->setBuddy(mCopies);
    connect(mCopies, &QSpinBox::valueChanged, &mModel, &JobModel::setCopies);

    auto* document = new QHBoxLayout;
    document->addWidget(mDocument, 1);
    document->addWidget(mChooseFiles);

    mPrinters = new QComboBox;
    mPrinters->setObjectName(QStringLiteral("printers"));
    mPrinters->setMinimumContentsLength(24);
    mPrinters->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    mPrinters->setPlaceholderText(hostText("LookingForPrinters"));
    connect(mPrinters, &QComboBox::activated, this, &PrintDialog::printerActivated);
    // One line, whatever it says: what needs attention stands whole among the messages.
    mPrinterState = plainLabel();
    mPrinterState->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    mPresetList = new QComboBox;
    mPresetList->setObjectName(QStringLiteral("presets"));
    mPresetList->setMinimumContentsLength(12);
    mPresetList->setPlaceholderText(hostText("NoPreset"));
    connect(mPresetList, &QComboBox::activated, this,
            [this] { applyPreset(mPresetList->currentText()); });
    mSavePreset = new QPushButton(hostText("SavePreset"));
    mSavePreset->setAutoDefault(false);
    connect(mSavePreset, &QPushButton::clicked, this, &PrintDialog::savePreset);
    mRemovePreset = new QToolButton;
    mRemovePreset->setIcon(QIcon::fromTheme(QStringLiteral("edit-delete"),
                                            style()->standardIcon(QStyle::SP_TrashIcon)));
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

    auto* header = new QWidget;
    auto* form = new QFormLayout(header);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(hostText("Document"), document);
    auto* printerLabel = new QLabel(hostText("Printer"));
    printerLabel->setBuddy(mPrinters);
    form->addRow(printerLabel, mPrinters);
    form->addRow(QString(), mPrinterState);
    form->addRow(copiesLabel, amount);
    return header;
}

QWidget* PrintDialog::buildFooter() {
    mSentence = plainLabel();
    mSentence->setWordWrap(true);
    mSentence->setObjectName(QStringLiteral("sentence"));
    mProgress = new QProgressBar;
    mProgress->setMaximumWidth(160);
    QSizePolicy policy = mProgress->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    mProgress->setSizePolicy(policy);
    mProgress->hide();
    mReset = new QPushButton(hostText("ResetAll"));
    mReset->setAutoDefault(false);
    connect(mReset, &QPushButton::clicked, &mModel, &JobModel::resetToDefaults);
    mPrint = new QPushButton(hostText("Print"));
    mPrint->setObjectName(QStringLiteral("print"));
    mPrint->setDefault(true);
    connect(mPrint, &QPushButton::clicked, this, &PrintDialog::print);
    mCancel = new QPushButton(hostText("Cancel"));
    mCancel->setObjectName(QStringLiteral("cancel"));
    mCancel->setAutoDefault(false);
    connect(mCancel, &QPushButton::clicked, this, &PrintDialog::reject);

    auto* buttons = new QDialogButtonBox;
    buttons->addButton(mPrint, QDialogButtonBox::ActionRole);
    buttons->addButton(mCancel, QDialogButtonBox::ActionRole);
    auto* row = new QHBoxLayout;
    row->addWidget(mReset);
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
    connect(&mDirectory, &PrinterDirectory::failed, this, [this](const Error& error) {
        // A printer that is known by its PPD needs no print service.
        if (mModel.hasPrinter() && !mModel.printer().isQueue())
            return;
        mMessages->show(QStringLiteral("printers"), MessageBar::Kind::Warning, error.sentence,
                        {{hostText("TryAgain"), [this] {
                              mMessages->remove(QStringLiteral("printers"));
                              mDirectory.refresh(mWantedQueue);
                          }}});
    });
    connect(&mDirectory, &PrinterDirectory::finished, this,
            [this] { mPrinters->setPlaceholderText(hostText("ChoosePrinter")); });
    connect(&mDirectory, &PrinterDirectory::ppdFetched, this, &PrintDialog::queuePpdFetched);
    connect(&mDirectory, &PrinterDirectory::ppdFailed, this,
            [this](const QString&, const Error& error) {
                mMessages->show(QStringLiteral("ppd"), MessageBar::Kind::Warning, error.sentence);
            });
    connect(&mRun, &PrintRun::progressed, this, &PrintDialog::runProgressed);
    connect(&mRun, &PrintRun::failed, this, [this](const QString& sentence) {
        runEnded();
        mMessages->show(QStringLiteral("run"), MessageBar::Kind::Warning, sentence);
    });
    connect(&mRun, &PrintRun::finished, this, [this] {
        runEnded();
        accept();
    });
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
    mListed.clear();
    for (const Queue& queue : queues)
        mListed.push_back({{queue.name, QString(), titleOf(queue), queue.deviceUri},
                           stateSentence(queue),
                           needsAttention(queue)});
    listPrinters();
    if (mModel.hasPrinter()) {
        showPrinterState();
        return;
    }
    const auto wanted = std::ranges::find_if(queues, [this](const Queue& queue) {
        return mWantedQueue.isEmpty() ? queue.isDefault : queue.name == mWantedQueue;
    });
    if (wanted != queues.end())
        openQueue(wanted->name);
}

void PrintDialog::listPrinters() {
    mPrinters->clear();
    for (const PrinterChoice& printer : mByHand)
        mListed.push_back({printer, QString(), false});
    for (std::size_t i = 0; i < mListed.size(); ++i)
        mPrinters->addItem(mListed[i].choice.title, static_cast<int>(i));
    if (mPrinters->count() > 0)
        mPrinters->insertSeparator(mPrinters->count());
    mPrinters->addItem(hostText("ChoosePpd"), kAskForPpd);
    const auto current = std::ranges::find_if(mListed, [this](const ListedPrinter& listed) {
        return mModel.hasPrinter() && listed.choice.queue == mModel.printer().queue &&
               listed.choice.ppdPath == mModel.printer().ppdPath;
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
    const PrinterChoice chosen = mListed[static_cast<std::size_t>(index)].choice;
    mMessages->remove(QStringLiteral("ppd"));
    if (chosen.isQueue())
        openQueue(chosen.queue);
    else
        openPpdByHand(chosen.ppdPath, {});
}

void PrintDialog::openQueue(const QString& name) {
    mWantedQueue = name;
    mPrinterState->setText(hostText("FetchingPpd").arg(name));
    mDirectory.fetchPpd(name);
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

void PrintDialog::openPpdByHand(const QString& path, const Marks& wanted) {
    ppd::OpenError error;
    ppd::File file = ppd::openFile(path, &error);
    if (!file) {
        mMessages->show(
            QStringLiteral("ppd"), MessageBar::Kind::Warning,
            hostText("PpdUnreadable").arg(path, error.reason, QString::number(error.line)));
        return;
    }
    const QString absolute = QFileInfo(path).absoluteFilePath();
    const QString name =
        file->nickname ? QString::fromUtf8(file->nickname) : QFileInfo(path).completeBaseName();
    const PrinterChoice printer{QString(), absolute,
                                QStringLiteral("%1 (%2)").arg(name, QFileInfo(path).fileName()),
                                std::nullopt};
    if (std::ranges::find(mByHand, printer) == mByHand.end())
        mByHand.push_back(printer);
    const auto remembered = rememberPpdFile(absolute);
    static_cast<void>(remembered); // only a convenience
    adoptPrinter(printer, std::move(file), absolute, wanted);
}

void PrintDialog::queuePpdFetched(const QString& name, const QByteArray& bytes) {
    auto kept = std::make_unique<QTemporaryFile>();
    Result<ppd::File> opened = openPpd(bytes, name);
    if (!opened || !kept->open() || kept->write(bytes) != bytes.size() || !kept->flush()) {
        mMessages->show(QStringLiteral("ppd"), MessageBar::Kind::Warning,
                        opened ? hostText("NoRoomForPpd").arg(kept->fileName())
                               : opened.error().sentence);
        return;
    }
    const Queue* queue = mDirectory.find(name);
    const PrinterChoice printer{name, QString(), queue ? titleOf(*queue) : name,
                                queue ? queue->deviceUri : std::nullopt};
    Marks wanted;
    const StartingPoint start =
        startingPoint(opened->get(), readSavedOptions().optionsOf({name, QString()}));
    for (const ppd::Setting& setting : start.match.applicable)
        wanted.insert(setting.keyword, setting.choice);
    wanted.insert(std::exchange(mWanted, {}));
    for (const QString& sentence : describe(opened->get(), start.match.missing))
        tell(sentence);
    const auto remembered = rememberQueue(name);
    static_cast<void>(remembered); // only a convenience
    const QString file = kept->fileName();
    adoptPrinter(printer, std::move(*opened), file, wanted);
    mQueuePpd = std::move(kept);
}

void PrintDialog::adoptPrinter(const PrinterChoice& printer, ppd::File ppd, const QString& file,
                               const Marks& wanted) {
    clearTabs();
    mModel.openPrinter(printer, std::move(ppd), file, wanted);
    std::erase_if(mListed, [](const ListedPrinter& listed) { return !listed.choice.isQueue(); });
    listPrinters();
    showPrinterState();
    refreshPresets();
}

void PrintDialog::showPrinterState() {
    const auto listed = std::ranges::find_if(mListed, [this](const ListedPrinter& candidate) {
        return candidate.choice.isQueue() && candidate.choice.queue == mModel.printer().queue;
    });
    QString state;
    bool attention = false;
    if (!mModel.printer().isQueue()) {
        state = hostText("PrintsIntoFile");
    } else if (listed != mListed.end()) {
        state = listed->state;
        attention = listed->needsAttention;
    } else if (!mDirectory.isRefreshing()) {
        state = goneSentence(mModel.printer().queue);
        attention = true;
    }
    mPrinterState->setText(state);
    mPrinterState->setToolTip(state.toHtmlEscaped());
    if (attention)
        mMessages->show(QStringLiteral("state"), MessageBar::Kind::Warning, state);
    else
        mMessages->remove(QStringLiteral("state"));
}

void PrintDialog::clearTabs() {
    while (mTabs->count() > 0)
        delete mTabs->widget(0);
    mPagesPage = nullptr;
    mFeaturesPage = nullptr;
    mSummaryPage = nullptr;
}

void PrintDialog::rebuildTabs() {
    clearTabs();
    for (const PanelSet::Entry& panel : mModel.panels()) {
        if (!panel.keys.isEmpty())
            mTabs->addTab(new PanelPage(mModel, panel),
                          panel.panel->panelName().replace(u'&', QStringLiteral("&&")));
    }
    mPagesPage = new PagesPage(mModel);
    mTabs->addTab(mPagesPage, hostText("TabPages"));
    mFeaturesPage = new FeaturesPage(mModel);
    mTabs->addTab(mFeaturesPage, hostText("TabFeatures"));
    mSummaryPage = new SummaryPage(mModel);
    mTabs->addTab(mSummaryPage, hostText("TabSummary"));
    mTabs->setCurrentIndex(0);
    mWheel->watch(*this);
}

void PrintDialog::refresh() {
    mRefreshScheduled = false;
    const QStringList& files = mModel.files();
    const int pages = mModel.pageCount();
    mDocument->setText(files.isEmpty() ? hostText("NoDocument")
                       : pages > 0
                           ? hostText("DocumentWithLabels")
                                 .arg(mModel.title(), hostText("OneLabel", "ManyLabels", pages))
                           : mModel.title());
    mSentence->setText(mModel.sentence());
    const int labels = mModel.labelCount();
    mPrint->setText(labels > 0 ? hostText("PrintOne", "PrintMany", labels) : hostText("Print"));
    mPrint->setEnabled(!mRun.isBusy() && mModel.hasPrinter() && !files.isEmpty());
    mReset->setEnabled(mModel.hasPrinter() && !mModel.changedMarks().isEmpty());
    mSavePreset->setEnabled(mModel.hasPrinter());
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
    const std::vector<Conflict> conflicts = mModel.conflicts();
    if (conflicts.empty()) {
        mMessages->remove(name);
        return;
    }
    std::vector<MessageAction> actions;
    if (const auto fix = mModel.proposedFix(); fix && !fix->empty()) {
        QStringList changes;
        for (const ppd::Setting& setting : *fix)
            changes.append(describe(mModel.ppd(), setting));
        actions.push_back({hostText("FixConflict").arg(changes.join(QStringLiteral(", "))),
                           [this] { mModel.applyFix(); }});
    }
    if (mModel.canUndo())
        actions.push_back({hostText("Undo"), [this] { mModel.undo(); }});
    mMessages->show(name, MessageBar::Kind::Warning, describe(mModel.ppd(), conflicts.front()),
                    actions);
}

void PrintDialog::tell(const QString& sentence) {
    mMessages->show(QStringLiteral("told-") + sentence, MessageBar::Kind::Information, sentence);
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
    if (mModel.files().isEmpty())
        return;
    mCounting.start([this, files = mModel.files()](const BackgroundCall::Link& link) {
        const Result<JobDocument> document = JobDocument::prepare(files, std::nullopt);
        if (document) {
            link.tell([this, pages = document->pages()] { mModel.setPageCount(pages); });
            return;
        }
        link.tell([this, sentence = document.error().sentence] {
            mMessages->show(QStringLiteral("document"), MessageBar::Kind::Warning, sentence);
        });
    });
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

void PrintDialog::closeEvent(QCloseEvent* event) {
    settings().setValue(QLatin1String(kGeometrySetting), saveGeometry());
    QDialog::closeEvent(event);
}

} // namespace labelcut
