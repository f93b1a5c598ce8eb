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
#include <initializer_list>
#include <vector>

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
constexpr int kCutEveryRows = 52;
constexpr int kOneRow = 26;
constexpr double kMinimumHeight = 150;
constexpr double kPreviewOffset = 130;

/// Names of the mirror-off pictures, which are the entries' titles in the interface file.
constexpr char kNoneRV[] = "EveryEndMirrorOffOffOff";
constexpr char kCutAtEndRV[] = "EveryEndMirrorOffOnOff";
constexpr char kCutEveryRV[] = "EveryEndMirrorOnOffOff";
constexpr char kNoneSG[] = "AHCMOffOffOffOff";
constexpr char kChain[] = "AHCMOffOffOnOff";
constexpr char kHalf[] = "AHCMOffOnOffOff";
constexpr char kHalfChain[] = "AHCMOffOnOnOff";
constexpr char kAuto[] = "AHCMOnOffOffOff";
constexpr char kAutoChain[] = "AHCMOnOffOnOff";
constexpr char kAutoHalf[] = "AHCMOnOnOffOff";
constexpr char kAutoHalfChain[] = "AHCMOnOnOnOff";
constexpr char kSpecial[] = "SPMROnOff";

using Titles = std::initializer_list<const char*>;

void removeTitles(PopUpButton& popUp, Titles titles) {
    for (const char* title : titles)
        popUp.removeItemWithTitle(QLatin1String(title));
}

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
    static constexpr std::pair<const char*, Button OptionPDE13_v400_::*> kCheckBoxes[] = {
        {"mCutEveryChkBx", &OptionPDE13_v400_::mCutEveryChkBx},
        {"mCutAndEndChkBx", &OptionPDE13_v400_::mCutAndEndChkBx},
        {"mMirrorPrintChkBx", &OptionPDE13_v400_::mMirrorPrintChkBx},
        {"mAutoCutChkBx", &OptionPDE13_v400_::mAutoCutChkBx},
        {"mHalfCutChkBx", &OptionPDE13_v400_::mHalfCutChkBx},
        {"mChainPrintChkBx", &OptionPDE13_v400_::mChainPrintChkBx},
        {"mSpecialTapeChkBx", &OptionPDE13_v400_::mSpecialTapeChkBx},
        {"mRemoveBlkSpaceChkBx", &OptionPDE13_v400_::mRemoveBlkSpaceChkBx},
    };
    for (const auto& [name, outlet] : kCheckBoxes) {
        connectOutlet<Button, QCheckBox>(contents, name, this->*outlet);
        if (auto* box = qobject_cast<QCheckBox*>((this->*outlet).widget()))
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
        // Automatic cut without a row of its own is never read.
        if (!(this->*row.choices) || (row.item == item::kAutoCut && mAutoCutHideKey_dec != 1))
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

void OptionPDE13_v400_::hideRows() {
    for (View* control : std::initializer_list<View*>{
             &mCutEveryChkBx, &mCutEveryTxBx, &mCutEveryStpr, &mCutEveryStr, &mAutoCutChkBx,
             &mCutAndEndChkBx, &mMirrorPrintChkBx, &mHalfCutChkBx, &mChainPrintChkBx,
             &mSpecialTapeChkBx, &mRemoveBlkSpaceChkBx})
        control->setHidden(true);
}

void OptionPDE13_v400_::pruneFamily(bool isRV) {
    removeTitles(mOptionPopUpButton, {isRV ? kNoneSG : kNoneRV});
}

void OptionPDE13_v400_::placeCountRow(double y) {
    for (View* control :
         std::initializer_list<View*>{&mCutEveryTxBx, &mCutEveryStpr, &mCutEveryStr})
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
    // One that never entered a view is nobody else's.
    delete mOptionView.data();
    mOptionView = preview.release();
    mOptionDummyView.superview().replaceSubview(mOptionDummyView, View(mOptionView));
    mOptionView->setCutEveryChkBx(mCutEveryChkBx);
    mOptionView->setCutAndEndChkBx(mCutAndEndChkBx);
    mOptionView->setMirrorPrintChkBx(mMirrorPrintChkBx);
    mOptionView->setAutoCutChkBx(mAutoCutChkBx);
    mOptionView->setHalfCutChkBx(mHalfCutChkBx);
    mOptionView->setChainPrintChkBx(mChainPrintChkBx);
    mOptionView->setSpecialTapeChkBx(mSpecialTapeChkBx);
    mOptionView->setRemoveBlkSpaceChkBx(mRemoveBlkSpaceChkBx);
}

void OptionPDE13_v400_::awakeFromNib() {
    struct LayoutRow {
        Button* checkBox;
        bool shown;
        /// Height that the panel loses without the row.
        int dropped;
        /// Entries that mean nothing without the row.
        Titles titles;
    };
    const LayoutRow kRows[] = {
        {&mCutEveryChkBx, mCutEvery_Choices.has_value(), kCutEveryRows, {kCutEveryRV}},
        {&mAutoCutChkBx,
         mAutoCut_Choices && mAutoCutHideKey_dec == 1,
         kOneRow,
         {kAuto, kAutoChain, kAutoHalf, kAutoHalfChain}},
        {&mCutAndEndChkBx, mCutEnd_Choices.has_value(), kOneRow, {kCutAtEndRV}},
        {&mHalfCutChkBx,
         mHalfCut_Choices.has_value(),
         kOneRow,
         {kHalf, kHalfChain, kAutoHalf, kAutoHalfChain}},
        {&mSpecialTapeChkBx, mSpecialTape_Choices.has_value(), kOneRow, {kSpecial}},
        {&mChainPrintChkBx,
         mChainPrint_Choices.has_value(),
         kOneRow,
         {kChain, kHalfChain, kAutoChain, kAutoHalfChain}},
        {&mMirrorPrintChkBx, mMirror_Choices.has_value(), kOneRow, {}},
        {&mRemoveBlkSpaceChkBx, mRemoveBlkSpace_Choices.has_value(), kOneRow, {}},
    };

    const Size size = View(kPDEView).frame().size;
    hideRows();
    const bool isRV = isRVPrinter();
    pruneFamily(isRV);

    double y = size.height - kFirstRow;
    int dropped = 0;
    for (const LayoutRow& row : kRows) {
        if (!row.shown) {
            dropped += row.dropped;
            removeTitles(mOptionPopUpButton, row.titles);
            continue;
        }
        row.checkBox->setHidden(false);
        moveTo(*row.checkBox, y);
        if (row.checkBox == &mCutEveryChkBx) {
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
