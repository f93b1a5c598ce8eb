// Cut-options panel: the general interface file cut down to the printer at hand. Rows whose options
// the PPD lacks go, the rest move up, entries of the pop-up that cannot apply are removed, and the
// preview takes its placeholder's place.
#include "plugins/cut_options/options/option_pde.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>
#include <cmath>

#include "platform/toolkit/points.h"
#include "platform/toolkit/stepper.h"
#include "plugins/cut_options/fields/interface_fields.h"

namespace labelcut {

namespace {

/// All in points.
constexpr double kFirstRow = 38;
constexpr double kRowPitch = 26;
constexpr double kFieldDrop = 4;
constexpr double kStepperDrop = 5;
constexpr double kLabelRise = 2;
/// Height that the panel loses with a line that it does not show; whole points.
constexpr int kLineHeight = 26;
constexpr double kMinimumHeight = 150;
constexpr double kPreviewOffset = 130;

/// The entries for "nothing at all" of each family; their titles are picture names.
constexpr char kNoneRV[] = "EveryEndMirrorOffOffOff";
constexpr char kNoneSG[] = "AHCMOffOffOffOff";

void moveTo(View& control, double y) {
    control.setFrameOrigin({control.frame().origin.x, y});
}

template<typename Handle, typename Widget>
void connectOutlet(const QWidget& contents, const char* name, Handle& outlet) {
    outlet = Handle(contents.findChild<Widget*>(QLatin1String(name)));
}

} // namespace

WidgetFactories OptionPDE13_v400_::widgetFactories() const {
    return {{textFieldClassName(), createTextField}};
}

void OptionPDE13_v400_::connectOutlets(QWidget& contents) {
    for (const Row& row : rows()) {
        Button& outlet = this->*row.checkBox;
        connectOutlet<Button, QCheckBox>(contents, row.outlet, outlet);
        if (auto* box = qobject_cast<QCheckBox*>(outlet.widget()))
            connect(box, &QCheckBox::clicked, this, [this, box] { changeOption(View(box)); });
    }
    connectOutlet<TextField, QLineEdit>(contents, "mCutEveryTxBx", mCutEveryTxBx);
    if (auto* field = qobject_cast<QLineEdit*>(mCutEveryTxBx.widget())) {
        setTextDelegate(field, this,
                        [this](QLineEdit* edited) { controlTextDidChange(View(edited)); });
        connect(field, &QLineEdit::returnPressed, this,
                [this, field] { changeCutEveryValue(View(field)); });
    }
    connectOutlet<StepperHandle, Stepper>(contents, "mCutEveryStpr", mCutEveryStpr);
    if (auto* stepper = qobject_cast<Stepper*>(mCutEveryStpr.widget()))
        connect(stepper, &Stepper::stepped, this,
                [this, stepper] { changeCutEveryValue(View(stepper)); });
    connectOutlet<TextField, QLabel>(contents, "mCutEveryStr", mCutEveryStr);
    connectOutlet<PopUpButton, QComboBox>(contents, "mOptionPopUpButton", mOptionPopUpButton);
    if (auto* popUp = qobject_cast<QComboBox*>(mOptionPopUpButton.widget()))
        connect(popUp, &QComboBox::activated, this, [this] { changeOptionPopUpButton(); });
    connectOutlet<View, QWidget>(contents, "mOptionDummyView", mOptionDummyView);
    attachFormatters(&contents);
    fitTitles();
}

/// How much wider than in the interface file the column of checkboxes must be so that no title is
/// clipped, in points.
double OptionPDE13_v400_::missingWidth() const {
    double missing = 0;
    for (const Row& row : rows()) {
        if (!isShown(row))
            continue;
        const Button& box = this->*row.checkBox;
        const double needed = box.widthForTitle(titleOfOption(row.keyword, row.titleKey));
        missing = std::max(missing, needed - box.frame().size.width);
    }
    if (mCutEvery_Choices) {
        const double needed = mCutEveryStr.widthForText(localized(QStringLiteral("RS_Labels")));
        missing = std::max(missing, needed - mCutEveryStr.frame().size.width);
    }
    return missing;
}

void OptionPDE13_v400_::fitTitles() {
    const double missing = missingWidth();
    QWidget* const root = kPDEView;
    if (!root || missing <= 0)
        return;
    const auto widen = [missing](const View& control) {
        if (QWidget* widget = control.widget()) {
            QRectF rect = points::rect(*widget);
            rect.setWidth(rect.width() + missing);
            points::setRect(*widget, rect);
        }
    };
    const auto shift = [missing](View& control) {
        const Frame frame = control.frame();
        control.setFrameOrigin({frame.origin.x + missing, frame.origin.y});
    };
    for (const Row& row : rows())
        widen(this->*row.checkBox);
    widen(mCutEveryStr);
    shift(mOptionPopUpButton);
    shift(mOptionDummyView);
    const QRectF rect = points::rect(*root);
    points::setRootSize(*root, QSizeF(rect.width() + missing, rect.height()));
}

bool OptionPDE13_v400_::isShown(const Row& row) const {
    return this->*row.choices && (!row.shownFlag || this->*row.shownFlag == 1);
}

std::array<View*, 3> OptionPDE13_v400_::countControls() {
    return {&mCutEveryTxBx, &mCutEveryStpr, &mCutEveryStr};
}

void OptionPDE13_v400_::hideRows() {
    for (const Row& row : rows())
        (this->*row.checkBox).setHidden(true);
    for (View* control : countControls())
        control->setHidden(true);
}

void OptionPDE13_v400_::placeCountRow(double y) {
    for (View* control : countControls())
        control->setHidden(false);
    const double row = std::trunc(y - kRowPitch);
    moveTo(mCutEveryTxBx, row - kFieldDrop);
    moveTo(mCutEveryStpr, row - kStepperDrop);
    moveTo(mCutEveryStr, row + kLabelRise);
}

void OptionPDE13_v400_::createPreview(bool isRV) {
    std::unique_ptr<OptionView13_v400_> preview =
        OptionView13_v400_::initWithFrame(mOptionDummyView.frame(), nsPDEBundle, isRV);
    if (!preview)
        return;
    preview->setObjectName(QStringLiteral("mOptionView"));
    preview->setAccessibleName(localized(QStringLiteral("AX_OptionView")));
    // A preview without a parent is still ours to delete.
    delete mOptionView.data();
    mOptionView = preview.release();
    mOptionDummyView.superview().replaceSubview(mOptionDummyView, View(mOptionView));
    for (const Row& row : rows())
        mOptionView->setCheckBox(row.inCombination, this->*row.checkBox);
}

void OptionPDE13_v400_::awakeFromNib() {
    const Size size = View(kPDEView).frame().size;
    hideRows();
    const bool isRV = isRVPrinter();
    mOptionPopUpButton.removeItemWithTitle(QLatin1String(isRV ? kNoneSG : kNoneRV));

    double y = size.height - kFirstRow;
    int dropped = 0;
    for (const Row* row : rowsBy(&Row::displayRank)) {
        if (!isShown(*row)) {
            dropped += row->lines * kLineHeight;
            for (const char* const* title = row->popUpEntries.data(); *title; ++title)
                mOptionPopUpButton.removeItemWithTitle(QLatin1String(*title));
            continue;
        }
        Button& box = this->*row->checkBox;
        box.setHidden(false);
        moveTo(box, y);
        if (row->item == item::kCutLabel) {
            placeCountRow(y);
            y = std::trunc(y - kRowPitch);
        }
        y -= kRowPitch;
    }
    // From here on entries are known by their tags and pictures only.
    for (int i = 0; i < mOptionPopUpButton.count(); ++i)
        mOptionPopUpButton.setTitleAt(i, QString());

    const double height = std::max(kMinimumHeight, size.height - dropped);
    createPreview(isRV);
    setViewFrameSize({size.width, height});
    if (mOptionView) {
        View preview(mOptionView);
        preview.setFrameOrigin({preview.frame().origin.x, height - kPreviewOffset});
    }
}

} // namespace labelcut
