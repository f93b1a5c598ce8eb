// Test support: printers of every shape, interface files cut down, and the panel's checkboxes by
// the options they stand for.
#pragma once

#include <QByteArray>
#include <QCheckBox>
#include <QStringList>
#include <QTemporaryDir>

#include <array>
#include <vector>

#include "tests/plugins/cut_options/options/qstring_printing.h"
#include "tests/support/panel_under_test.h"

namespace labelcut::test {

/// The eight options in the order of every sequence over them, as indexes and as bits of a set.
enum OptionIndex {
    CutLabel,
    CutAtEnd,
    Mirror,
    AutoCut,
    HalfCut,
    ChainPrint,
    SpecialTape,
    RemoveBlk
};
inline constexpr int kOptionCount = 8;
inline constexpr unsigned kAllOptions = 0xFF;
constexpr unsigned offer(OptionIndex index) {
    return 1U << index;
}

inline constexpr std::array<const char*, kOptionCount> kKeywords = {
    "KvCutLabel", "KvCutAtEnd",   "KvMirror",      "KvAutoTapeCut",
    "KvHalfCut",  "KvChainPrint", "KvSpecialTape", "KvRemoveBlkSpace",
};
inline constexpr std::array<std::uint32_t, kOptionCount> kItems = {
    0x100, 0x200, 0x400, 0x800, 0x1000, 0x2000, 0x4000, 0x10000,
};

inline constexpr std::array<Button PanelUnderTest::*, kOptionCount> kBoxes = {
    &PanelUnderTest::mCutEveryChkBx,    &PanelUnderTest::mCutAndEndChkBx,
    &PanelUnderTest::mMirrorPrintChkBx, &PanelUnderTest::mAutoCutChkBx,
    &PanelUnderTest::mHalfCutChkBx,     &PanelUnderTest::mChainPrintChkBx,
    &PanelUnderTest::mSpecialTapeChkBx, &PanelUnderTest::mRemoveBlkSpaceChkBx,
};
inline constexpr std::array<const char*, kOptionCount> kBoxNames = {
    "mCutEveryChkBx", "mCutAndEndChkBx",  "mMirrorPrintChkBx", "mAutoCutChkBx",
    "mHalfCutChkBx",  "mChainPrintChkBx", "mSpecialTapeChkBx", "mRemoveBlkSpaceChkBx",
};
inline constexpr std::array<PDEChoices PanelUnderTest::*, kOptionCount> kChoices = {
    &PanelUnderTest::mCutEvery_Choices,    &PanelUnderTest::mCutEnd_Choices,
    &PanelUnderTest::mMirror_Choices,      &PanelUnderTest::mAutoCut_Choices,
    &PanelUnderTest::mHalfCut_Choices,     &PanelUnderTest::mChainPrint_Choices,
    &PanelUnderTest::mSpecialTape_Choices, &PanelUnderTest::mRemoveBlkSpace_Choices,
};
inline constexpr std::array<const PDEChoice * PanelUnderTest::*, kOptionCount> kSelections = {
    &PanelUnderTest::mCutEvery_Selection,    &PanelUnderTest::mCutEnd_Selection,
    &PanelUnderTest::mMirror_Selection,      &PanelUnderTest::mAutoCut_Selection,
    &PanelUnderTest::mHalfCut_Selection,     &PanelUnderTest::mChainPrint_Selection,
    &PanelUnderTest::mSpecialTape_Selection, &PanelUnderTest::mRemoveBlkSpace_Selection,
};

inline Button& box(PanelUnderTest& panel, OptionIndex option) {
    return panel.*kBoxes[option];
}
inline QCheckBox& checkBox(PanelUnderTest& panel, OptionIndex option) {
    return *qobject_cast<QCheckBox*>(box(panel, option).widget());
}
/// The keyword of a selection; a null string without one.
QString keywordOf(const PDEChoice* selection);
/// The choice marked in the host's PPD; a null string without one.
QString markedIn(const FakeHost& host, OptionIndex option);

/// A printer that offers a set of options.
/// @param offers        bits of offer().
/// @param autoCutShown  the attribute KvAutoCutObjHidden says "False".
PpdBuilder printerOffering(unsigned offers, bool isRV, bool autoCutShown);

/// A copy of the built interface file in a folder of its own, without some widgets, and with the
/// pictures or without.
class CutDownBundle {
public:
    enum class Pictures { None, All };
    explicit CutDownBundle(const QStringList& removedWidgets, Pictures pictures = Pictures::None);

    QString root() const { return mFolder.path(); }
    /// Replaces text in the interface file; fails the running test when it is not there.
    void replace(const QByteArray& old, const QByteArray& fresh);
    /// The interface file as a whole.
    void write(const QByteArray& interfaceFile);
    void remove(const QString& file);

private:
    QByteArray read() const;
    QTemporaryDir mFolder;
};

} // namespace labelcut::test
