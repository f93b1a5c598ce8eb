// Panels: stands between the host and a panel that does not keep the rules.
#include "host/panels/guarded_panel.h"

#include <exception>
#include <utility>

#include "host/texts/host_text.h"

namespace labelcut {

GuardedPanel::GuardedPanel(PDEPanel& panel, QString plugin, Trouble trouble)
    : mPanel(panel)
    , mPlugin(std::move(plugin))
    , mTrouble(std::move(trouble)) {}

template<typename Answer, typename Call>
Answer GuardedPanel::guarded(Call call, Answer otherwise) const {
    try {
        return call();
    } catch (const std::exception& error) {
        failed(QString::fromUtf8(error.what()));
    } catch (...) {
        failed(hostText("PanelThrew"));
    }
    return otherwise;
}

template<typename Call>
void GuardedPanel::guarded(Call call) const {
    guarded([&] { return call(), true; }, true);
}

template<typename Call>
bool GuardedPanel::withError(Call call, QString* error) const {
    if (error)
        return guarded([&] { return call(error); }, false);
    QString sentence;
    const bool isDone = guarded([&] { return call(&sentence); }, false);
    if (!isDone && !sentence.isEmpty())
        mTrouble(sentence);
    return isDone;
}

void GuardedPanel::failed(const QString& reason) const {
    mTrouble(hostText("PanelFailed").arg(mPlugin, reason));
}

QWidget* GuardedPanel::panelView() {
    return guarded([this] { return mPanel.panelView(); }, static_cast<QWidget*>(nullptr));
}

QString GuardedPanel::panelName() {
    return guarded([this] { return mPanel.panelName(); }, QString());
}

QString GuardedPanel::panelKind() {
    return guarded([this] { return mPanel.panelKind(); }, QString());
}

std::optional<QStringList> GuardedPanel::supportedPPDOptionKeys() {
    return guarded([this] { return mPanel.supportedPPDOptionKeys(); },
                   std::optional<QStringList>());
}

void GuardedPanel::willShow() {
    guarded([this] { mPanel.willShow(); });
}

bool GuardedPanel::shouldHide() {
    return guarded([this] { return mPanel.shouldHide(); }, false);
}

bool GuardedPanel::shouldPrint() {
    return guarded([this] { return mPanel.shouldPrint(); }, true);
}

bool GuardedPanel::shouldShowHelp() {
    return guarded([this] { return mPanel.shouldShowHelp(); }, false);
}

void GuardedPanel::printWindowWillClose(bool userPrinted) {
    guarded([&] { mPanel.printWindowWillClose(userPrinted); });
}

void GuardedPanel::PPDOptionKeyValueDidChange(const QString& key, const QString& choice) {
    guarded([&] { mPanel.PPDOptionKeyValueDidChange(key, choice); });
}

bool GuardedPanel::saveValuesAndReturnError(QString* error) {
    return withError([this](QString* e) { return mPanel.saveValuesAndReturnError(e); }, error);
}

bool GuardedPanel::restoreValuesAndReturnError(QString* error) {
    return withError([this](QString* e) { return mPanel.restoreValuesAndReturnError(e); }, error);
}

std::optional<QVariantMap> GuardedPanel::summaryInfo() {
    return guarded([this] { return mPanel.summaryInfo(); }, std::optional<QVariantMap>());
}

void GuardedPanel::showChoice(const QString& keyword) {
    guarded([&] { mPanel.showChoice(keyword); });
}

SummaryWords GuardedPanel::summaryWords() {
    return guarded([this] { return mPanel.summaryWords(); }, SummaryWords());
}

QString GuardedPanel::remark() {
    return guarded([this] { return mPanel.remark(); }, QString());
}

QString GuardedPanel::helpText() {
    return guarded([this] { return mPanel.helpText(); }, QString());
}

std::optional<PDECutPlan> GuardedPanel::cutPlan() {
    return guarded([this] { return mPanel.cutPlan(); }, std::optional<PDECutPlan>());
}

QVariantMap GuardedPanel::inspect() const {
    return guarded([this] { return mPanel.inspect(); }, QVariantMap());
}

} // namespace labelcut
