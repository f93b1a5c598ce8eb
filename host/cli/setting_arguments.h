// The command line: the choices that a command is asked to make.
#pragma once

#include <string>
#include <vector>

#include "host/cli/wrong_usage.h"
#include "host/core/result.h"
#include "host/settings/ppd_calls.h"

namespace CLI {
class App;
}

namespace labelcut {

/// --set KEYWORD=CHOICE, as often as wanted, and --page-size NAME.
struct SettingArguments {
    std::vector<std::string> settings;
    std::string pageSize;

    /// Adds both to a command. This object must outlive its parsing.
    void addTo(CLI::App& command);
    /// The settings in the order of their arguments, none twice. Throws what is wrong usage, for
    /// the parser to report.
    Settings parsed() const;
};

/// The settings as the PPD spells them, or why it cannot have one of them; see checkedSetting().
Result<Settings> checkedSettings(ppd_file_t* ppd, const Settings& asked);

} // namespace labelcut
