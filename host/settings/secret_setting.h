// Settings: custom values that are passwords, which nobody but the printer may see or keep.
#pragma once

#include <QString>
#include <QStringList>

#include <cups/ppd.h>

#include "host/settings/setting.h"

namespace labelcut {

/// Whether the choice is a custom value with a password or passcode among its parameters.
/// @param ppd  null: nothing is known to be secret.
bool isSecret(ppd_file_t* ppd, const Setting& setting);

/// The choice as it may stand on a screen or in a report: each password is shown as dots, the same
/// number for all; everything else is as it is. @param ppd  null: nothing is known to be secret.
QString shownChoice(ppd_file_t* ppd, const Setting& setting);

/// Removes the secret ones. What is written down, in a preset or a command, goes through here.
/// @return the titles of their options, in order; empty when there was none.
QStringList takeSecrets(ppd_file_t* ppd, Settings& settings);

} // namespace labelcut
