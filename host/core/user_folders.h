// Core: where the user's own files are.
#pragma once

#include <QString>

#include <optional>

namespace labelcut {

/// The user's home folder: what HOME says, or else the system's list of users, as long as it is an
/// absolute name. Nothing: there is none.
std::optional<QString> homeFolder();

/// Where the user's configuration is: what XDG_CONFIG_HOME says, unless that is no absolute name,
/// or else ".config" in the home folder. Nothing: there is no home folder either.
std::optional<QString> configurationFolder();

/// Has every library read from the environment what holds by the functions above, so that none
/// writes into the current folder or into "/". To be called once, before there are threads.
void mendFoldersInEnvironment();

} // namespace labelcut
