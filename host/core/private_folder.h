// Core: the folder that they are kept in.
#pragma once

#include <QString>

namespace labelcut {

/// Makes the folder and those above it that are missing, for their owner only whatever the umask
/// is; what is there already stays as it is. @return whether it is there.
bool makePrivateFolder(const QString& path);

} // namespace labelcut
