// Settings: what a user asks for, checked against what the printer offers.
#pragma once

#include <QString>
#include <QStringList>

#include <cups/ppd.h>

#include <vector>

#include "host/core/result.h"
#include "host/settings/ppd_calls.h"

namespace labelcut {

/// The setting as the PPD spells it (case is not looked at), or why the printer cannot have it: an
/// option or choice it lacks, with those that come close; a custom value that is none or lies
/// outside of its limits.
/// @param ppd  not null.
Result<Setting> checkedSetting(ppd_file_t* ppd, const Setting& asked);

/// What a job says of its choices: the marked paper, the marked choice of each of `keywords`, and
/// every one of `asked`, which wins where it is among them. Each keyword once, in that order.
/// @param keywords  those that panels claim. @param asked  what the user chose, as checked.
Settings jobSettings(ppd_file_t* ppd, const QStringList& keywords, const Settings& asked);

} // namespace labelcut
