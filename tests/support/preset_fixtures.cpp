// Tests of presets: folders and printers.
#include "tests/support/preset_fixtures.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace labelcut::test {

namespace {

constexpr char kTape[] = R"ppd(*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: None
*PCFileName: "TAPE.PPD"
*Manufacturer: "Tiny"
*Product: "(Tape)"
*ModelName: "Tape"
*ShortNickName: "Tape"
*NickName: "Tape 24"
*PSVersion: "(3010.000) 0"
*OpenUI *PageSize/Tape: PickOne
*DefaultPageSize: DC24
*PageSize DC24/24 mm: "1"
*PageSize DC12/12 mm: "2"
*CloseUI: *PageSize
*DefaultImageableArea: DC24
*ImageableArea DC24: "0 0 68 283"
*ImageableArea DC12: "0 0 34 283"
*DefaultPaperDimension: DC24
*PaperDimension DC24: "68 283"
*PaperDimension DC12: "34 283"
*VariablePaperSize: True
*MaxMediaWidth: "68"
*MaxMediaHeight: "1000"
*HWMargins: 0 0 0 0
*CustomPageSize True: "pop pop pop"
*ParamCustomPageSize Width: 1 points 10 68
*ParamCustomPageSize Height: 2 points 10 1000
*ParamCustomPageSize WidthOffset: 3 points 0 0
*ParamCustomPageSize HeightOffset: 4 points 0 0
*ParamCustomPageSize Orientation: 5 int 0 0
*OpenUI *KvHalfCut/Half cut: PickOne
*DefaultKvHalfCut: OFF
*KvHalfCut OFF/Off: ""
*KvHalfCut ON/On: ""
*CloseUI: *KvHalfCut
*OpenUI *KvCutLabel/Cut every: PickOne
*DefaultKvCutLabel: 1
*KvCutLabel 1: ""
*KvCutLabel 2: ""
*KvCutLabel 9: ""
*CloseUI: *KvCutLabel
*OpenUI *KvMargin/Margin: PickOne
*DefaultKvMargin: None
*KvMargin None: ""
*CloseUI: *KvMargin
*CustomKvMargin True: "pop"
*ParamCustomKvMargin Amount: 1 int 0 50
*OpenUI *KvText/Text: PickOne
*DefaultKvText: None
*KvText None: ""
*CloseUI: *KvText
*CustomKvText True: "pop"
*ParamCustomKvText Words: 1 string 2 5
*OpenUI *KvFrame/Frame: PickOne
*DefaultKvFrame: None
*KvFrame None: ""
*CloseUI: *KvFrame
*CustomKvFrame True: "pop pop"
*ParamCustomKvFrame Width: 1 points 1 9
*ParamCustomKvFrame Gap: 2 real 0 1
)ppd";

} // namespace

QStringList Folder::entries() const {
    return QDir(mFolder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void Folder::close() const {
    chmod(QFile::encodeName(path()).constData(), 0555);
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    EXPECT_EQ(file.write(bytes), bytes.size());
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

ppd::File tapePrinter() {
    return openedPpd(kTape);
}

ppd::File openedPpd(const QByteArray& text) {
    const Folder folder;
    const QString path = folder.path(QStringLiteral("printer.ppd"));
    writeFile(path, text);
    ppd::OpenError error;
    ppd::File file = ppd::openFile(path, &error);
    EXPECT_TRUE(file) << error.reason.toStdString() << " in line " << error.line;
    ppd::markDefaults(file.get());
    return file;
}

Preset samplePreset(const QString& name) {
    Preset preset;
    preset.name = name;
    preset.pageSize = QStringLiteral("DC12");
    preset.copies = 3;
    preset.options = {{QStringLiteral("KvHalfCut"), QStringLiteral("ON")},
                      {QStringLiteral("KvMargin"), QStringLiteral("Custom.7")}};
    return preset;
}

PrinterIdentity tapeQueue() {
    return PrinterIdentity::forQueue(QStringLiteral("tape"));
}

} // namespace labelcut::test
