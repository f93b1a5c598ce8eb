// Settings: which of the marked choices exclude each other, and what would help.
#include "host/settings/constraints.h"

#include <QLocale>

#include <algorithm>

#include "host/settings/conflict_resolver.h"
#include "host/settings/secret_setting.h"
#include "host/texts/host_text.h"

namespace labelcut {

std::vector<Conflict> findConflicts(ppd_file_t* ppd) {
    return ppd::conflictingSettings(ppd);
}

QString describe(ppd_file_t* ppd, const Setting& setting) {
    ppd_option_t* option = ppd::findOption(ppd, setting.keyword.toUtf8().constData());
    ppd_choice_t* choice = ppd::findChoice(option, setting.choice.toUtf8().constData());
    QString typed = QStringLiteral("%1=%2").arg(setting.keyword, shownChoice(ppd, setting));
    if (!choice)
        return typed;
    return hostText("SettingTyped")
        .arg(QString::fromUtf8(option->text), QString::fromUtf8(choice->text), typed);
}

QString describe(ppd_file_t* ppd, const Conflict& conflict) {
    QStringList sides;
    for (const Setting& setting : conflict)
        sides << describe(ppd, setting);
    return conflictSentence(sides);
}

QString conflictSentence(const QStringList& sides) {
    QStringList quoted;
    for (const QString& side : sides)
        quoted << hostText("Quoted").arg(side);
    const QString last = quoted.takeLast();
    if (quoted.isEmpty())
        return hostText("ExcludedByPpd").arg(last);
    return hostText("ExcludeEachOther").arg(quoted.join(hostText("SentenceSeparator")), last);
}

QString gaveUpSentence() {
    return hostText("NoResolution")
        .arg(QLocale(QLocale::English).toString(static_cast<qlonglong>(ppd::kMaxResolvingSteps)));
}

std::optional<Settings> proposeResolution(ppd_file_t* ppd, const Setting& wanted,
                                          const Settings& kept, bool* gaveUp) {
    const QByteArray keyword = wanted.keyword.toUtf8();
    const QByteArray choice = wanted.choice.toUtf8();
    auto changes = ppd::resolutionFor(ppd, keyword.constData(), choice.constData(), gaveUp);
    if (!changes)
        return std::nullopt;
    const auto touchesKept = [&](const Setting& change) {
        return std::ranges::any_of(kept, [&](const Setting& setting) {
            return setting.keyword.compare(change.keyword, Qt::CaseInsensitive) == 0;
        });
    };
    if (std::ranges::any_of(*changes, touchesKept))
        return std::nullopt;
    return changes;
}

} // namespace labelcut
