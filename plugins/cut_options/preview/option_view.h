// Preview: the view that shows what the chosen combination of cut options does to the labels.
#pragma once

#include <QWidget>

#include <array>
#include <memory>
#include <optional>

#include "platform/dialog/pde_bundle.h"
#include "platform/toolkit/handles.h"
#include "platform/toolkit/picture.h"

namespace labelcut {

/// Which on/off reading of the checkboxes picture and pop-up entry are derived from.
struct CutCombination {
    bool specialTape = false;
    /// Auto tape cut or cut every N labels.
    bool autoCut = false;
    bool cutAtEnd = false;
    bool halfCut = false;
    bool chainPrint = false;
    bool mirror = false;
    bool operator==(const CutCombination&) const = default;
};

/// The checkboxes that a combination is read from; absent ones count as off.
struct CutCheckBoxes {
    Button cutEvery;
    Button cutAndEnd;
    Button mirrorPrint;
    Button autoCut;
    Button halfCut;
    Button chainPrint;
    Button specialTape;
    Button removeBlkSpace;
};

/// A checkbox counts as on only when it is not hidden and its state is exactly 1. While special
/// tape is on, cut every, auto cut, half cut and chain printing count as off without being read.
CutCombination readCombination(const CutCheckBoxes& boxes);

/// The slot of the family's picture for a combination: 0-5 for roll label printers, 0-17 for tape
/// printers.
int pictureSlot(const CutCombination& combination, bool isRV);

inline constexpr std::array<const char*, 6> kPictureNamesRV = {
    "EveryEndMirrorOffOffOff", "EveryEndMirrorOffOnOff", "EveryEndMirrorOnOffOff",
    "EveryEndMirrorOffOffOn",  "EveryEndMirrorOffOnOn",  "EveryEndMirrorOnOffOn",
};
inline constexpr std::array<const char*, 18> kPictureNamesSG = {
    "AHCMOffOffOffOff", "AHCMOffOffOffOn", "AHCMOffOffOnOff", "AHCMOffOffOnOn",  "AHCMOffOnOffOff",
    "AHCMOffOnOffOn",   "AHCMOffOnOnOff",  "AHCMOffOnOnOn",   "AHCMOnOffOffOff", "AHCMOnOffOffOn",
    "AHCMOnOffOnOff",   "AHCMOnOffOnOn",   "AHCMOnOnOffOff",  "AHCMOnOnOffOn",   "AHCMOnOnOnOff",
    "AHCMOnOnOnOn",     "SPMROnOff",       "SPMROnOn",
};

class OptionView13_v400_ : public QWidget {
    Q_OBJECT
public:
    using Image = std::shared_ptr<const Picture>;

    /// @param frame   the placeholder's frame.
    /// @param bundle  where the pictures are; shared. Null leaves every slot empty.
    /// @param isRV    which family's pictures are loaded, once and for all.
    static std::unique_ptr<OptionView13_v400_>
    initWithFrame(const Frame& frame, std::shared_ptr<const PDEBundle> bundle, bool isRV);
    ~OptionView13_v400_() override;

    void setIsRV(bool isRV) { mIsRV = isRV; }
    bool isRV() const { return mIsRV; }

    /// Hands over one of the checkboxes. @param which  its place in CutCheckBoxes.
    void setCheckBox(Button CutCheckBoxes::*which, const Button& box) { mBoxes.*which = box; }
    void setCutEveryChkBx(const Button& box) { mBoxes.cutEvery = box; }
    void setCutAndEndChkBx(const Button& box) { mBoxes.cutAndEnd = box; }
    void setMirrorPrintChkBx(const Button& box) { mBoxes.mirrorPrint = box; }
    void setAutoCutChkBx(const Button& box) { mBoxes.autoCut = box; }
    void setHalfCutChkBx(const Button& box) { mBoxes.halfCut = box; }
    void setChainPrintChkBx(const Button& box) { mBoxes.chainPrint = box; }
    void setSpecialTapeChkBx(const Button& box) { mBoxes.specialTape = box; }
    void setRemoveBlkSpaceChkBx(const Button& box) { mBoxes.removeBlkSpace = box; }
    const Button& cutEveryChkBx() const { return mBoxes.cutEvery; }
    const Button& cutAndEndChkBx() const { return mBoxes.cutAndEnd; }
    const Button& mirrorPrintChkBx() const { return mBoxes.mirrorPrint; }
    const Button& autoCutChkBx() const { return mBoxes.autoCut; }
    const Button& halfCutChkBx() const { return mBoxes.halfCut; }
    const Button& chainPrintChkBx() const { return mBoxes.chainPrint; }
    const Button& specialTapeChkBx() const { return mBoxes.specialTape; }
    const Button& removeBlkSpaceChkBx() const { return mBoxes.removeBlkSpace; }

    /// The picture to show now, read from the checkboxes anew; null when its slot is empty.
    const Picture* targetDrawImage() const;
    /// The slot that targetDrawImage() looks into, and the bare name of the picture found there
    /// (a null string when the slot is empty).
    int targetSlot() const;
    QString targetImageName() const;

    /// Asks for a redraw, and tells screen readers what the picture says.
    void setNeedsDisplay(bool needed);
    /// The origin is the lower-left corner, y upward.
    static constexpr bool isFlipped() { return false; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    explicit OptionView13_v400_(bool isRV);
    static Image loadedImage(const PDEBundle& bundle, const char* name);
    const char* targetName() const;

    std::array<Image, kPictureNamesRV.size()> mOptionImgRV;
    std::array<Image, kPictureNamesSG.size()> mOptionImgSG;
    bool mIsRV;
    CutCheckBoxes mBoxes;
    std::shared_ptr<const PDEBundle> mBundle;
};

} // namespace labelcut
