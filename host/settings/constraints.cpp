// Settings: which of the marked choices exclude each other, and what would help.
#include "host/settings/constraints.h"

#include <QLocale>

#include <algorithm>
#include <utility>

#include "host/settings/conflict_resolver.h"
#include "host/settings/secret_setting.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

bool isOf(const Setting& setting, const Setting& other) {
    return setting.keyword.compare(other.keyword, Qt::CaseInsensitive) == 0;
}

} // namespace

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

ResolutionSearch resolutionSearch(ppd_file_t* ppd, const Setting& wanted, const Settings& kept) {
    return {ppd::resolvingData(ppd), wanted, kept};
}

Resolution run(const ResolutionSearch& search, const CancelFlag* cancel) {
    const QByteArray keyword = search.wanted.keyword.toUtf8();
    const QByteArray choice = search.wanted.choice.toUtf8();
    ppd::ConflictResolver resolver(search.data, {keyword.constData(), choice.constData()}, cancel);
    Resolution found{resolver.resolved(), resolver.gaveUp()};
    if (!found.changes)
        return found;
    std::erase_if(*found.changes, [&](const Setting& change) {
        return isOf(change, search.wanted) || search.data.isMarked(change);
    });
    const bool touchesKept = std::ranges::any_of(*found.changes, [&](const Setting& change) {
        return std::ranges::any_of(search.kept,
                                   [&](const Setting& kept) { return isOf(change, kept); });
    });
    if (touchesKept)
        found.changes.reset();
    return found;
}

std::optional<Settings> proposeResolution(ppd_file_t* ppd, const Setting& wanted,
                                          const Settings& kept, bool* gaveUp) {
    Resolution found = run(resolutionSearch(ppd, wanted, kept));
    if (gaveUp)
        *gaveUp = *gaveUp || found.gaveUp;
    return std::move(found.changes);
}

} // namespace labelcut
