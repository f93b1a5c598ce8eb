// Panels: stands between the host and a panel that does not keep the rules.
#pragma once

#include <functional>

#include "platform/dialog/pde_panel.h"

namespace labelcut {

/// Passes every call on. What a panel throws ends here and becomes a sentence; the host has a
/// harmless answer instead, and goes on: no view, nothing saved, printing is allowed. The sentence
/// of a panel that cannot save or restore is passed on as well, where the caller wants none.
class GuardedPanel final : public PDEPanel {
public:
    using Trouble = std::function<void(const QString& sentence)>;

    /// @param panel    borrowed, outlives this.
    /// @param plugin   the file it comes from, for the sentences.
    /// @param trouble  told a sentence at every failure.
    GuardedPanel(PDEPanel& panel, QString plugin, Trouble trouble);
    const PDEPanel& unguarded() const { return mPanel; }

    QWidget* panelView() override;
    QString panelName() override;
    QString panelKind() override;
    std::optional<QStringList> supportedPPDOptionKeys() override;
    void willShow() override;
    bool shouldHide() override;
    bool shouldPrint() override;
    bool shouldShowHelp() override;
    void printWindowWillClose(bool userPrinted) override;
    void PPDOptionKeyValueDidChange(const QString& key, const QString& choice) override;
    bool saveValuesAndReturnError(QString* error) override;
    bool restoreValuesAndReturnError(QString* error) override;
    std::optional<QVariantMap> summaryInfo() override;
    void showChoice(const QString& keyword) override;
    SummaryWords summaryWords() override;
    QString remark() override;
    QString helpText() override;
    std::optional<PDECutPlan> cutPlan() override;
    QVariantMap inspect() const override;

private:
    template<typename Answer, typename Call>
    Answer guarded(Call call, Answer otherwise) const;
    template<typename Call>
    void guarded(Call call) const;
    template<typename Call>
    bool withError(Call call, QString* error) const;
    void failed(const QString& reason) const;

    PDEPanel& mPanel;
    QString mPlugin;
    Trouble mTrouble;
};

} // namespace labelcut
