// The dialog: its pages, one behind the other, for the printer that is open.
#include "host/dialog/page_stack.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

#include "host/dialog/page_list.h"
#include "host/dialog/pages_page.h"
#include "host/dialog/panel_page.h"
#include "host/dialog/plain_label.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// What a message of one line takes, with its frame.
constexpr int kLinesOfMessage = 3;

/// Whether the printer has something that the panel shows; a panel that says nothing of keywords
/// may give a view for any printer.
bool concerns(ppd_file_t* ppd, const PanelSet::Entry& panel) {
    const std::optional<QStringList> claimed = panel.panel->supportedPPDOptionKeys();
    return !claimed || std::ranges::any_of(*claimed, [ppd](const QString& keyword) {
        return ppd::findOption(ppd, keyword.toUtf8().constData());
    });
}

/// What takes text in the widget; itself when nothing there does.
QWidget* fieldIn(QWidget* widget) {
    for (auto* edit : widget->findChildren<QLineEdit*>()) {
        if (edit->isVisible() && edit->isEnabled())
            return edit;
    }
    return widget;
}

} // namespace

PageStack::PageStack(JobModel& model, QWidget* parent)
    : QWidget(parent)
    , mModel(model)
    , mTabs(new QTabWidget)
    , mBeside(new QWidget)
    , mNoPrinter(plainLabel(hostText("NoPrinterYet"))) {
    mTabs->hide();
    mNoPrinter->setAlignment(Qt::AlignCenter);
    mNoPrinter->setWordWrap(true);
    (new QVBoxLayout(mBeside))->setContentsMargins(0, 0, 0, 0);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mTabs, 1);
    layout->addWidget(mNoPrinter, 1);
    connect(mTabs, &QTabWidget::currentChanged, this, [this] { refresh(JobSnapshot::of(mModel)); });
}

QSize PageStack::sizeHint() const {
    return QWidget::sizeHint().expandedTo({0, mBeside->parentWidget()->sizeHint().height()}) +
           QSize(0, kLinesOfMessage * fontMetrics().height());
}

void PageStack::rebuild() {
    clear();
    {
        const QSignalBlocker quiet(mTabs);
        for (const PanelSet::Entry& panel : mModel.panels())
            addPanel(panel);
        for (const PageRow& row : pageRows())
            addRow(row);
        addBeside();
        mTabs->setCurrentIndex(0);
    }
    refresh(JobSnapshot::of(mModel));
    mNoPrinter->hide();
    mTabs->show();
}

void PageStack::clear() {
    const QSignalBlocker quiet(mTabs);
    // Otherwise the focus would be handed on among parts that are being destroyed.
    if (QWidget* field = window()->focusWidget(); field && isAncestorOf(field))
        field->clearFocus();
    mSlots.clear();
    // The focus has left a page before it goes.
    while (QWidget* page = mTabs->widget(0)) {
        mTabs->removeTab(0);
        delete page;
    }
    qDeleteAll(mBeside->findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

void PageStack::addPanel(const PanelSet::Entry& panel) {
    if (!concerns(mModel.ppd(), panel))
        return;
    auto* page = new PanelPage(mModel, panel, mFolded);
    // One that claims options says so when it has no view; any other is simply not shown.
    if (!page->hasView() && panel.keys.isEmpty()) {
        delete page;
        return;
    }
    mSlots.push_back({page, nullptr, page, JobSnapshot::of(mModel)});
    mTabs->addTab(page, panel.panel->panelName().replace(u'&', QStringLiteral("&&")));
    mWheel.watch(*page);
}

void PageStack::addRow(const PageRow& row) {
    auto* tab = new QWidget;
    auto* layout = new QVBoxLayout(tab);
    layout->setContentsMargins(0, 0, 0, 0);
    mSlots.push_back({tab, row.make, nullptr, {}});
    mTabs->addTab(tab, hostText(row.titleKey));
}

void PageStack::addBeside() {
    mSlots.push_back(
        {mBeside, [](JobModel& model) -> Page* { return new PagesPage(model); }, nullptr, {}});
}

void PageStack::refresh(const JobSnapshot& now) {
    for (Slot& slot : mSlots)
        if (slot.tab == mTabs->currentWidget() || slot.tab == mBeside)
            bringUpToDate(slot, now);
}

void PageStack::bringUpToDate(Slot& slot, const JobSnapshot& now) {
    if (!slot.page) {
        slot.page = slot.make(mModel);
        slot.page->onProblemChanged([this] { Q_EMIT problemChanged(); });
        slot.tab->layout()->addWidget(&slot.page->widget());
        mWheel.watch(*slot.tab);
    } else {
        slot.page->refresh(JobChanges::between(slot.shown, now));
    }
    slot.shown = now;
}

PageProblem PageStack::problem() const {
    for (const Slot& slot : mSlots) {
        if (!slot.page)
            continue;
        if (PageProblem found = slot.page->problem(); !found.sentence.isEmpty())
            return found;
    }
    return {};
}

QString PageStack::showProblem() {
    const JobSnapshot now = JobSnapshot::of(mModel);
    for (Slot& slot : mSlots) {
        if (!slot.page)
            continue;
        // What was typed may be over by now.
        slot.page->refresh(JobChanges::between(std::exchange(slot.shown, now), now));
        const PageProblem problem = slot.page->problem();
        if (problem.sentence.isEmpty())
            continue;
        if (slot.tab != mBeside)
            mTabs->setCurrentWidget(slot.tab);
        if (problem.field)
            fieldIn(problem.field)->setFocus();
        return problem.sentence;
    }
    return {};
}

} // namespace labelcut
