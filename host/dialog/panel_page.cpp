// The dialog: the page that holds one plug-in's panel.
#include "host/dialog/panel_page.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QStyle>

#include "host/dialog/plain_label.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {
/// What the rest of the window and the desktop need of a small screen, in lines of text.
constexpr QSize kLinesBesides(4, 22);
} // namespace

PanelPage::PanelPage(JobModel& model, const PanelSet::Entry& panel, QWidget* parent)
    : QScrollArea(parent)
    , mModel(model) {
    setFrameShape(QFrame::NoFrame);
    setAlignment(Qt::AlignLeading | Qt::AlignTop);
    // What is in it takes the focus, and is scrolled to.
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    QWidget* view = model.showPanel(panel);
    if (view) {
        setWidget(view);
        mHasPanelView = true;
        view->setAutoFillBackground(false);
        followUser(*view, *panel.callback);
        return;
    }
    setWidget(plainLabel(hostText("PanelWithoutView").arg(panel.panel->panelName())));
}

PanelPage::~PanelPage() {
    if (mHasPanelView)
        takeWidget();
}

QSize PanelPage::sizeHint() const {
    return widget() ? widget()->size() + QSize(2 * frameWidth(), 2 * frameWidth())
                    : QScrollArea::sizeHint();
}

// The panel is what the window is for: it is shown whole unless the screen is too small for that.
QSize PanelPage::minimumSizeHint() const {
    const QSize room = screen()->availableSize() - kLinesBesides * fontMetrics().height();
    return sizeHint().boundedTo(room.expandedTo(QScrollArea::minimumSizeHint()));
}

/// Whatever a user can do to a control ends in one of these signals, and the panel, which was
/// connected before, has carried it out by then.
void PanelPage::followUser(QWidget& view, const PDEPluginCallback& callback) {
    const auto used = [this, &callback] { mModel.noteAct(callback); };
    for (auto* button : view.findChildren<QAbstractButton*>())
        connect(button, &QAbstractButton::clicked, this, used);
    for (auto* box : view.findChildren<QComboBox*>())
        connect(box, &QComboBox::activated, this, used);
    for (auto* field : view.findChildren<QLineEdit*>()) {
        connect(field, &QLineEdit::textEdited, this, used);
        connect(field, &QLineEdit::editingFinished, this, used);
    }
    for (auto* slider : view.findChildren<QAbstractSlider*>())
        connect(slider, &QAbstractSlider::actionTriggered, this, used);
}

} // namespace labelcut
