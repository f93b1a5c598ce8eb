// Test support: PPDs made to measure.
#include "tests/support/ppd_builder.h"

#include <gtest/gtest.h>

#include <QTemporaryFile>

namespace labelcut::test {

PpdBuilder& PpdBuilder::attribute(const QByteArray& name, const QByteArray& value) {
    mBody += '*' + name + ": \"" + value + "\"\n";
    return *this;
}

PpdBuilder& PpdBuilder::bareAttribute(const QByteArray& name) {
    mBody += '*' + name + ":\n";
    return *this;
}

PpdBuilder& PpdBuilder::option(const QByteArray& keyword, const QByteArray& text,
                               const QByteArrayList& choices, const QByteArray& defaultChoice) {
    mBody += "*OpenUI *" + keyword + (text.isEmpty() ? QByteArray() : '/' + text) + ": PickOne\n";
    mBody += "*OrderDependency: 20 AnySetup *" + keyword + '\n';
    if (!defaultChoice.isEmpty())
        mBody += "*Default" + keyword + ": " + defaultChoice + '\n';
    for (const QByteArray& choice : choices)
        mBody += '*' + keyword + ' ' + choice + ": \"% " + keyword + "\"\n";
    mBody += "*CloseUI: *" + keyword + '\n';
    return *this;
}

PpdBuilder& PpdBuilder::onOff(const QByteArray& keyword, const QByteArray& defaultChoice,
                              const QByteArray& text) {
    return option(keyword, text, {"OFF/Off", "ON/On"}, defaultChoice);
}

PpdBuilder& PpdBuilder::counts(int first, int last, const QByteArray& defaultChoice,
                               const QByteArray& text) {
    QByteArrayList choices;
    for (int n = first; n <= last; ++n)
        choices.append(QByteArray::number(n));
    return option("KvCutLabel", text, choices, defaultChoice);
}

PpdBuilder& PpdBuilder::size(const QByteArray& name, int width, int height) {
    const QByteArray w = QByteArray::number(width);
    const QByteArray h = QByteArray::number(height);
    mSizes += "*PageSize " + name + ": \"<</PageSize[" + w + ' ' + h + "]>>setpagedevice\"\n";
    mBody += "*ImageableArea " + name + ": \"0 0 " + w + ' ' + h + "\"\n";
    mBody += "*PaperDimension " + name + ": \"" + w + ' ' + h + "\"\n";
    return *this;
}

PpdBuilder& PpdBuilder::encoding(const QByteArray& name) {
    mEncoding = name;
    return *this;
}

QByteArray PpdBuilder::text() const {
    QByteArray sizes;
    if (!mSizes.isEmpty()) {
        const QByteArray first = mSizes.mid(10, mSizes.indexOf(':') - 10);
        sizes = "*OpenUI *PageSize/Size: PickOne\n*DefaultPageSize: " + first + '\n' + mSizes +
                "*CloseUI: *PageSize\n";
    }
    return "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*LanguageVersion: English\n"
           "*LanguageEncoding: " +
           mEncoding +
           "\n*PCFileName: \"TEST.PPD\"\n*Manufacturer: \"Test\"\n*ModelName: \"Test\"\n"
           "*NickName: \"Test\"\n*Product: \"(Test)\"\n*PSVersion: \"(3010.000) 0\"\n"
           "*LanguageLevel: \"3\"\n" +
           sizes + mBody;
}

ppd::File PpdBuilder::open() const {
    QTemporaryFile file;
    if (!file.open() || file.write(text()) < 0) {
        ADD_FAILURE() << "cannot write a PPD";
        return nullptr;
    }
    file.close();
    ppd::OpenError error;
    ppd::File opened = ppd::openFile(file.fileName(), &error);
    EXPECT_TRUE(opened) << error.reason.toStdString() << ", line " << error.line << '\n'
                        << text().toStdString();
    return opened;
}

PpdBuilder PpdBuilder::rollPrinter() {
    PpdBuilder ppd;
    ppd.attribute("KvTapeType", "RV").counts(1, 99, "1").onOff("KvCutAtEnd").onOff("KvMirror");
    ppd.onOff("KvAutoTapeCut", "ON").onOff("KvRemoveBlkSpace");
    return ppd.size("W62", 176, 283).size("DC24", 68, 68).size("AV100", 176, 283);
}

PpdBuilder PpdBuilder::tapePrinter() {
    PpdBuilder ppd;
    ppd.attribute("KvTapeType", "SG").attribute("KvAutoCutObjHidden", "False");
    ppd.onOff("KvMirror").onOff("KvAutoTapeCut", "ON").onOff("KvHalfCut").onOff("KvChainPrint");
    ppd.onOff("KvSpecialTape").onOff("KvRemoveBlkSpace");
    return ppd.size("T24", 68, 283).size("DC24", 68, 68).size("AV100", 68, 283);
}

} // namespace labelcut::test
