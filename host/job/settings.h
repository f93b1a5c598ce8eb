// The job: what a user asks for, checked against what the printer offers.
#pragma once

#include <QString>
#include <QStringList>

#include <cups/ppd.h>

#include <vector>

#include "platform/printing/ppd_calls.h"
#include "platform/printing/result.h"

namespace labelcut {

/// The setting as the PPD spells it (case is not looked at), or why the printer cannot have it: an
/// option or choice it lacks, with those that come close; a custom value that is none or lies
/// outside of its limits.
/// @param ppd  not null.
Result<ppd::Setting> checkedSetting(ppd_file_t* ppd, const ppd::Setting& asked);

/// What a job says of its choices: the marked paper, the marked choice of each of `keywords`, and
/// every one of `asked`, which wins where it is among them. Each keyword once, in that order.
/// @param keywords  those that panels claim. @param asked  what the user chose, as checked.
std::vector<ppd::Setting> jobSettings(ppd_file_t* ppd, const QStringList& keywords,
                                      const std::vector<ppd::Setting>& asked);

} // namespace labelcut
