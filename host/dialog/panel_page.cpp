// The dialog: the page that holds one plug-in's panel.
#include "host/dialog/panel_page.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

#include "host/dialog/alert.h"
#include "host/dialog/plain_label.h"
#include "host/dialog/window_body.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// What the rest of the window needs of a small screen, in lines of text.
constexpr QSize kLinesBesides(4, 24);
/// How wide a panel's help is, in characters of usual width.
constexpr int kHelpWidth = 60;
/// In lines of text.
constexpr int kRemarkIndent = 1;

class ViewArea : public QScrollArea {
public:
    ViewArea() {
        setFrameShape(QFrame::NoFrame);
        setAlignment(Qt::AlignLeading | Qt::AlignTop);
        // What is in it takes the focus, and is scrolled to.
        setFocusPolicy(Qt::NoFocus);
        viewport()->setAutoFillBackground(false);
    }
    QSize sizeHint() const override {
        return widget() ? widget()->size() + QSize(2 * frameWidth(), 2 * frameWidth())
                        : QScrollArea::sizeHint();
    }
    // The panel is what the window is for: it is shown whole unless the screen is too small.
    QSize minimumSizeHint() const override {
        const QSize room = roomFor(*this) - kLinesBesides * fontMetrics().height();
        return sizeHint().boundedTo(room.expandedTo(QScrollArea::minimumSizeHint()));
    }
};

} // namespace

PanelPage::PanelPage(JobModel& model, const PanelSet::Entry& panel, std::set<QString>& folded,
                     QWidget* parent)
    : QWidget(parent)
    , mModel(model)
    , mPanel(*panel.panel)
    , mFolded(folded)
    , mRemark(new Alert)
    , mRemarkText(plainLabel()) {
    auto* row = new QHBoxLayout;
    if (mPanel.shouldHide())
        addFoldButton(*row);
    row->addStretch(1);
    if (mPanel.shouldShowHelp())
        addHelpButton(*row);
    mArea = new ViewArea;
    mArea->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
    mRemark->setObjectName(QStringLiteral("remark"));
    mRemarkText->setWordWrap(true);
    mRemarkText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* line = new QVBoxLayout(mRemark);
    // In line with the panel above.
    line->setContentsMargins(kRemarkIndent * fontMetrics().height(), 0, 0, 0);
    line->addWidget(mRemarkText);
    mRemark->hide();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(row);
    column->addWidget(mArea);
    column->addWidget(mRemark);
    column->addStretch(1);

    if (QWidget* view = model.showPanel(panel)) {
        mArea->setWidget(view);
        view->setAutoFillBackground(false);
        mHasView = true;
        followUser(*view, *panel.callback);
    } else {
        mArea->setWidget(plainLabel(hostText("PanelWithoutView").arg(mPanel.panelName())));
    }
    connect(&model, &JobModel::panelResized, this, [this] { makeRoomFor(*mArea); });
    fold(mFold && mFolded.contains(mPanel.panelKind()));
    showRemark();
}

PanelPage::~PanelPage() {
    if (mHasView)
        mArea->takeWidget();
}

void PanelPage::addFoldButton(QHBoxLayout& row) {
    mFold = new QToolButton;
    mFold->setObjectName(QStringLiteral("foldPanel"));
    mFold->setAutoRaise(true);
    mFold->setFocusPolicy(Qt::StrongFocus);
    mFold->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    connect(mFold, &QToolButton::clicked, this,
            [this] { fold(!mFolded.contains(mPanel.panelKind())); });
    row.addWidget(mFold);
}

void PanelPage::addHelpButton(QHBoxLayout& row) {
    auto* help = new QToolButton;
    help->setObjectName(QStringLiteral("panelHelp"));
    help->setAutoRaise(true);
    help->setFocusPolicy(Qt::StrongFocus);
    help->setText(hostText("Help"));
    help->setAccessibleName(hostText("HelpOn").arg(mPanel.panelName()));
    connect(help, &QToolButton::clicked, this, &PanelPage::showHelp);
    row.addWidget(help);
}

void PanelPage::fold(bool folded) {
    mArea->setVisible(!folded);
    if (!mFold)
        return;
    const Qt::ArrowType aside = isRightToLeft() ? Qt::LeftArrow : Qt::RightArrow;
    mFold->setArrowType(folded ? aside : Qt::DownArrow);
    mFold->setText(hostText(folded ? "UnfoldPanel" : "FoldPanel"));
    if (folded)
        mFolded.insert(mPanel.panelKind());
    else
        mFolded.erase(mPanel.panelKind());
}

/// Beside the window's other controls, all of which can be used meanwhile.
void PanelPage::showHelp() {
    const QString name = QStringLiteral("panelHelpText");
    if (auto* open = findChild<QDialog*>(name)) {
        open->raise();
        open->activateWindow();
        return;
    }
    auto* help = new QDialog(this);
    help->setObjectName(name);
    help->setAttribute(Qt::WA_DeleteOnClose);
    help->setWindowTitle(hostText("HelpOn").arg(mPanel.panelName()));
    QLabel* text = plainLabel(mPanel.helpText());
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setMinimumWidth(kHelpWidth * fontMetrics().averageCharWidth());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setText(hostText("Close"));
    connect(buttons, &QDialogButtonBox::rejected, help, &QDialog::reject);
    auto* column = new QVBoxLayout(help);
    column->addWidget(text, 1);
    column->addWidget(buttons);
    help->show();
}

void PanelPage::refresh(const JobChanges&) {
    showRemark();
}

void PanelPage::showRemark() {
    const QString remark = mPanel.remark();
    if (remark == mRemarkText->text())
        return;
    mRemarkText->setText(remark);
    mRemark->setVisible(!remark.isEmpty());
    if (!remark.isEmpty())
        mRemark->announce(remark);
}

/// Whatever a user can do to a control ends in one of these signals, and the panel, which was
/// connected before, has carried it out by then.
void PanelPage::followUser(QWidget& view, const PDEPluginCallback& callback) {
    const auto used = [this, &callback] { mModel.noteAct(callback); };
    for (auto* button : view.findChildren<QAbstractButton*>())
        connect(button, &QAbstractButton::clicked, this, used);
    for (auto* box : view.findChildren<QComboBox*>())
        connect(box, &QComboBox::activated, this, used);
    // These have no signal for what the user alone does, but whoever uses one is in it.
    const auto usedIn = [used](const QWidget* field) {
        return [used, field] {
            if (field->hasFocus())
                used();
        };
    };
    for (auto* number : view.findChildren<QSpinBox*>())
        connect(number, &QSpinBox::valueChanged, this, usedIn(number));
    for (auto* number : view.findChildren<QDoubleSpinBox*>())
        connect(number, &QDoubleSpinBox::valueChanged, this, usedIn(number));
    for (auto* field : view.findChildren<QLineEdit*>()) {
        connect(field, &QLineEdit::textEdited, this, used);
        connect(field, &QLineEdit::editingFinished, this, used);
    }
    for (auto* slider : view.findChildren<QAbstractSlider*>())
        connect(slider, &QAbstractSlider::actionTriggered, this, used);
}

} // namespace labelcut
