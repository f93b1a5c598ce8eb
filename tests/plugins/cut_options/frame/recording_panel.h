// Test support: a base panel whose hooks write down that they ran, and interface files to load.
#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "plugins/cut_options/frame/base_pde.h"
#include "tests/support/fake_host.h"

namespace labelcut::test {

class RecordingPanel : public BasePDE13_v400_ {
public:
    using BasePDE13_v400_::deviceURI;
    using BasePDE13_v400_::formatSettings;
    using BasePDE13_v400_::kPDEView;
    using BasePDE13_v400_::mFormattedItemFlg;
    using BasePDE13_v400_::mLoadedNibFlg;
    using BasePDE13_v400_::mSupportedOptions;
    using BasePDE13_v400_::nsPDEBundle;
    using BasePDE13_v400_::pdePluginCallbackObject;
    using BasePDE13_v400_::pmPrintSettings;
    using BasePDE13_v400_::ppd;
    using BasePDE13_v400_::printer;
    using BasePDE13_v400_::printSession;
    using BasePDE13_v400_::printSettings;
    using BasePDE13_v400_::thePDEName;

    QStringList calls;
    std::vector<std::uint32_t> rereadMasks;
    /// Called while updateMarkedSelections() runs.
    std::function<void()> onReread;

    void updateUI() override {
        calls.append(QStringLiteral("updateUI"));
        BasePDE13_v400_::updateUI();
    }
    void initSetTitleTexts() override { calls.append(QStringLiteral("initSetTitleTexts")); }
    void initUI() override { calls.append(QStringLiteral("initUI")); }
    void setValuesToKey() override { calls.append(QStringLiteral("setValuesToKey")); }
    void setPDEItems() override { calls.append(QStringLiteral("setPDEItems")); }
    void setPDEItems2() override { calls.append(QStringLiteral("setPDEItems2")); }
    void connectOutlets(QWidget& contents) override {
        calls.append(QStringLiteral("connectOutlets ") + contents.objectName());
    }
    void awakeFromNib() override { calls.append(QStringLiteral("awakeFromNib")); }
    void updateMarkedSelections(std::uint32_t mask) override {
        rereadMasks.push_back(mask);
        if (onReread)
            onReread();
    }
};

/// A bundle that writes down what it is asked, with one interface file or none.
class RecordingBundle : public PDEBundle {
public:
    QString interfaceFile;
    mutable QStringList asked;

    QString localizedStringForKey(const QString& key, const QString& value,
                                  const QString& table) const override {
        asked.append(QStringLiteral("text %1 %2 %3")
                         .arg(key, value.isNull() ? QStringLiteral("no value") : value,
                              table.isNull() ? QStringLiteral("no table") : table));
        return QStringLiteral("<%1>").arg(key);
    }
    QString pathForImageResource(const QString&) const override { return {}; }
    QString pathForInterfaceFile(const QString& name) const override {
        asked.append(QStringLiteral("interface ") + name);
        return interfaceFile;
    }
};

/// A recording panel on a fake host. The interface file, unless another is written, is a bare view.
struct RecordingPanelOnHost {
    explicit RecordingPanelOnHost(ppd::File file = nullptr)
        : host(std::make_shared<FakeHost>(std::move(file))) {
        writeInterface(QByteArrayLiteral("kPDEView"));
    }

    void writeInterface(const QByteArray& topName) {
        writeFile("<?xml version=\"1.0\"?><ui version=\"4.0\"><class>Top</class>"
                  "<widget class=\"QWidget\" name=\"" +
                  topName +
                  "\"><property name=\"geometry\"><rect><x>0</x><y>0</y><width>300</width>"
                  "<height>200</height></rect></property></widget></ui>");
    }
    void writeFile(const QByteArray& bytes) {
        bundle->interfaceFile = folder.filePath(QStringLiteral("OptionPDE.ui"));
        QFile file(bundle->interfaceFile);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
    }
    RecordingPanel& construct() {
        panel = std::make_unique<RecordingPanel>();
        EXPECT_EQ(panel->initWithCallback(host, bundle), panel.get());
        return *panel;
    }

    QTemporaryDir folder;
    std::shared_ptr<FakeHost> host;
    std::shared_ptr<RecordingBundle> bundle = std::make_shared<RecordingBundle>();
    std::unique_ptr<RecordingPanel> panel;
};

} // namespace labelcut::test
