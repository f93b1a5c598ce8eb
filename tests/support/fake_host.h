// Test support: a host callback and print objects that answer what a test tells them to, and record
// what they are asked.
#pragma once

#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

#include "host/panels/resource_bundle.h"
#include "host/settings/ppd_calls.h"
#include "platform/dialog/pde_plugin.h"

namespace labelcut::test {

class FakePaper : public PMPaper {
public:
    OSStatus nameStatus = noErr;
    /// A null string: the paper has no PPD name.
    QString name;
    OSStatus heightStatus = noErr;
    double points = 0;

    OSStatus ppdPaperName(QString* out) const override {
        if (nameStatus == noErr)
            *out = name;
        return nameStatus;
    }
    OSStatus height(double* out) const override {
        if (heightStatus == noErr)
            *out = points;
        return heightStatus;
    }
};

class FakePageFormat : public PMPageFormat {
public:
    OSStatus status = noErr;
    std::optional<FakePaper> chosen;

    OSStatus paper(const PMPaper** out) const override {
        if (status == noErr)
            *out = chosen ? &*chosen : nullptr;
        return status;
    }
    /// Chooses a paper of that PPD name.
    void choose(const QString& name, double points = 100) {
        chosen.emplace();
        chosen->name = name;
        chosen->points = points;
    }
};

class FakePrinter : public PMPrinter {
public:
    OSStatus uriStatus = noErr;
    /// A URL without string form unless one is set.
    PMURL uri;

    OSStatus copyDeviceURI(PMURL* out) const override {
        if (uriStatus == noErr)
            *out = uri;
        return uriStatus;
    }
    OSStatus state(PMPrinterState* out) const override {
        *out = PMPrinterState::Idle;
        return noErr;
    }
};

class FakeSession : public PMPrintSession {
public:
    OSStatus status = noErr;
    QVariantMap values;

    OSStatus data(const QString& key, QVariant* out) const override {
        if (status == noErr)
            *out = values.value(key);
        return status;
    }
    OSStatus setData(const QString& key, const QVariant& value) override {
        values.insert(key, value);
        return status;
    }
};

/// Every call is recorded in `log`, writes with their "locked".
class FakeSettings : public PMPrintSettings {
public:
    QVariantMap values;
    OSStatus firstStatus = noErr;
    OSStatus lastStatus = noErr;
    OSStatus setFirstStatus = noErr;
    OSStatus setLastStatus = noErr;
    std::uint32_t first = 1;
    std::uint32_t last = 1;
    QStringList log;

    OSStatus value(const QString& key, QVariant* out) const override {
        if (!values.contains(key))
            return kPMKeyNotFound;
        *out = values.value(key);
        return noErr;
    }
    OSStatus setValue(const QString& key, const QVariant& value, bool) override {
        values.insert(key, value);
        return noErr;
    }
    OSStatus firstPage(std::uint32_t* page) const override {
        if (firstStatus == noErr)
            *page = first;
        return firstStatus;
    }
    OSStatus setFirstPage(std::uint32_t page, bool locked) override {
        log.append(QStringLiteral("first %1 %2").arg(page).arg(locked));
        return setFirstStatus;
    }
    OSStatus lastPage(std::uint32_t* page) const override {
        if (lastStatus == noErr)
            *page = last;
        return lastStatus;
    }
    OSStatus setLastPage(std::uint32_t page, bool locked) override {
        log.append(QStringLiteral("last %1 %2").arg(page).arg(locked));
        return setLastStatus;
    }
    OSStatus dataRepresentation(PMDataFormat, QByteArray*) const override {
        return kPMGeneralError;
    }
};

using Sent = std::pair<QString, QString>;

/// The callback. Null pointers take an object away; `asked` records the order of the questions and
/// `sent` every pair. A pair is marked in the PPD as a dialog does, unless `marks` is off.
class FakeHost : public PDEPluginCallback {
public:
    explicit FakeHost(ppd::File file = nullptr)
        : ppd(std::move(file)) {}

    ppd::File ppd;
    FakeSession session;
    FakeSettings settings;
    FakePageFormat format;
    FakePrinter fakePrinter;
    bool hasSession = true;
    bool hasSettings = true;
    bool hasFormat = true;
    bool hasPrinter = true;
    bool marks = true;
    bool responds = true;
    QStringList asked;
    std::vector<Sent> sent;
    int resized = 0;

    PMPrintSession* printSession() override {
        asked.append(QStringLiteral("printSession"));
        return hasSession ? &session : nullptr;
    }
    PMPrintSettings* printSettings() override {
        asked.append(QStringLiteral("printSettings"));
        return hasSettings ? &settings : nullptr;
    }
    PMPageFormat* pageFormat() override {
        asked.append(QStringLiteral("pageFormat"));
        return hasFormat ? &format : nullptr;
    }
    PMPrinter* printer() override {
        asked.append(QStringLiteral("PMPrinter"));
        return hasPrinter ? &fakePrinter : nullptr;
    }
    ppd_file_t* ppdFile() override {
        asked.append(QStringLiteral("ppdFile"));
        return ppd.get();
    }
    void willChangePPDOptionKeyValue(const QString& key, const QString& choice) override {
        sent.emplace_back(key, choice);
        if (marks)
            ppd::markOption(ppd.get(), key.toUtf8().constData(), choice.toUtf8().constData());
    }
    bool respondsToPanelViewDidResize() const override { return responds; }
    void panelViewDidResize() override { ++resized; }

    std::vector<Sent> takeSent() { return std::exchange(sent, {}); }
};

} // namespace labelcut::test
