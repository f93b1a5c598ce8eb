// The command line: the choices that a command is asked to make.
#include "host/cli/setting_arguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>

#include "host/settings/checked_setting.h"

namespace labelcut {

namespace {

Setting parsedSetting(const QString& text) {
    const qsizetype equals = text.indexOf(u'=');
    if (equals < 1)
        rejectArguments(QStringLiteral("--set %1: write it as KEYWORD=CHOICE").arg(text));
    return {text.left(equals), text.mid(equals + 1)};
}

} // namespace

void SettingArguments::addTo(CLI::App& command) {
    command.add_option("-s,--set", settings, "A choice of the printer; may be given several times")
        ->type_name("KEYWORD=CHOICE")
        ->expected(1)
        ->take_all();
    command.add_option("--page-size", pageSize, "Paper by its name in the PPD")->type_name("NAME");
}

Settings SettingArguments::parsed() const {
    Settings all;
    const auto add = [&](const Setting& setting) {
        const auto same = [&](const Setting& other) {
            return other.keyword.compare(setting.keyword, Qt::CaseInsensitive) == 0;
        };
        const auto earlier = std::ranges::find_if(all, same);
        if (earlier == all.end())
            all.push_back(setting);
        else if (earlier->choice != setting.choice)
            rejectArguments(QStringLiteral("%1 cannot be both %2 and %3")
                                .arg(setting.keyword, earlier->choice, setting.choice));
    };
    if (!pageSize.empty())
        add({QStringLiteral("PageSize"), QString::fromStdString(pageSize)});
    for (const std::string& text : settings)
        add(parsedSetting(QString::fromStdString(text)));
    return all;
}

Result<Settings> checkedSettings(ppd_file_t* ppd, const Settings& asked) {
    Settings all;
    for (const Setting& setting : asked) {
        const Result<Setting> checked = checkedSetting(ppd, setting);
        if (!checked)
            return checked.error();
        all.push_back(*checked);
    }
    return all;
}

} // namespace labelcut
