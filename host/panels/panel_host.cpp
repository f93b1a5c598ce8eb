// Panels: one printer's PPD, print objects and panels.
#include "host/panels/panel_host.h"

#include <algorithm>
#include <utility>

#include "host/texts/host_text.h"

namespace labelcut {

/// What one plug-in's panels talk to; it forwards to the host, which outlives it.
class PanelHost::Callback : public PDEPluginCallback {
public:
    explicit Callback(PanelHost& host)
        : mHost(host) {}

    PMPrintSession* printSession() override { return &mHost.mSession; }
    PMPrintSettings* printSettings() override {
        return mHost.mOffersSettings ? &mHost.mSettings : nullptr;
    }
    PMPageFormat* pageFormat() override { return &mHost.mPageFormat; }
    PMPrinter* printer() override { return &mHost.mPrinter; }
    ppd_file_t* ppdFile() override { return mHost.ppd(); }
    void willChangePPDOptionKeyValue(const QString& key, const QString& choice) override {
        mHost.panelChose(*this, key, choice);
    }
    void panelViewDidResize() override {
        ++mHost.mResizes;
        if (mHost.mOnResize)
            mHost.mOnResize();
    }

private:
    PanelHost& mHost;
};

PanelHost::PanelHost(PanelHostSetup setup)
    : mPpd(std::move(setup.ppd))
    , mOffersSettings(setup.offersSettings) {
    mPrinter.setDeviceUri(std::move(setup.deviceURI));
    mPageFormat.setPaper(std::move(setup.paper));
}

PanelHost::~PanelHost() = default;

std::shared_ptr<PDEPluginCallback> PanelHost::makeCallback() {
    return std::make_shared<Callback>(*this);
}

void PanelHost::addPanel(const std::shared_ptr<PDEPluginCallback>& callback, PDEPanel* panel) {
    mListeners.push_back({callback.get(), panel});
}

void PanelHost::removePanel(PDEPanel* panel) {
    std::erase_if(mListeners, [panel](const Listener& l) { return l.panel == panel; });
}

bool PanelHost::mark(const QString& key, const QString& choice) {
    if (!ppd::markOption(ppd(), key.toUtf8().constData(), choice.toUtf8().constData()))
        return false;
    // As it is marked: a value of the user's own may have been written in another unit.
    keepForJob(key, marked(key).value_or(choice));
    return true;
}

/// Most pairs stand there already: a panel writes all of its state at every save.
void PanelHost::keepForJob(const QString& key, const QString& choice) {
    QVariant kept;
    if (mSettings.value(key, &kept) != noErr || kept != QVariant(choice))
        mSettings.setValue(key, choice, false);
}

bool PanelHost::unmark(const QString& key) {
    if (!ppd::unmarkOption(ppd(), key.toUtf8().constData()))
        return false;
    mSettings.setValue(key, QVariant(), false);
    return true;
}

bool PanelHost::changeFromOutside(const QString& key, const QString& choice) {
    if (!mark(key, choice))
        return false;
    notify(nullptr, key, choice);
    return true;
}

std::optional<QString> PanelHost::marked(const QString& key) const {
    return ppd::markedValue(ppd(), key.toUtf8().constData());
}

Settings PanelHost::takeChanges() {
    return std::exchange(mChanges, {});
}

int PanelHost::takeResizes() {
    return std::exchange(mResizes, 0);
}

void PanelHost::onChange(ChangeListener listener) {
    mOnChange = std::move(listener);
}

void PanelHost::onResize(std::function<void()> listener) {
    mOnResize = std::move(listener);
}

void PanelHost::onTrouble(std::function<void(const QString&)> listener) {
    mOnTrouble = std::move(listener);
}

void PanelHost::tellTrouble(const QString& sentence) {
    if (mOnTrouble)
        mOnTrouble(sentence);
    else
        qWarning("%s", qUtf8Printable(sentence));
}

void PanelHost::tellTroubleOnce(const QString& sentence) {
    if (mToldOnce.contains(sentence))
        return;
    mToldOnce.append(sentence);
    tellTrouble(sentence);
}

void PanelHost::panelChose(const PDEPluginCallback& writer, const QString& key,
                           const QString& choice) {
    // Kept for somebody who takes them soon, not for a day of choices.
    if (mChanges.size() >= kMostChanges)
        mChanges.clear();
    mChanges.push_back({key, choice});
    if (!mark(key, choice))
        return;
    notify(&writer, key, choice);
    if (mOnChange)
        mOnChange(writer, {key, choice});
}

void PanelHost::notify(const PDEPluginCallback* except, const QString& key, const QString& choice) {
    if (mNotices == kMostNotices) {
        mDisputed = key;
        return;
    }
    const bool isAnswer = mNotices > 0;
    ++mNotices;
    // A panel may write in turn, but none is added or removed while it is told.
    for (const Listener& listener : std::vector(mListeners)) {
        if (listener.callback != except)
            listener.panel->PPDOptionKeyValueDidChange(key, choice);
    }
    if (isAnswer)
        return;
    mNotices = 0;
    if (const QString disputed = std::exchange(mDisputed, QString()); !disputed.isEmpty())
        tellTrouble(hostText("PanelsDisagree").arg(disputed, marked(disputed).value_or(QString())));
}

} // namespace labelcut
