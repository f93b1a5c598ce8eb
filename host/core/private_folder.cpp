// Core: the folder that they are kept in.
#include "host/core/private_folder.h"

#include <QDir>

#include <sys/stat.h>

#include "host/core/file_name.h"

namespace labelcut {

namespace {

bool isFolder(const QByteArray& name) {
    struct stat status {};
    return stat(name.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

bool makePrivateFolder(const QString& path) {
    const QString folder = QDir::cleanPath(path);
    const QByteArray name = systemName(folder);
    if (isFolder(name))
        return true;
    const qsizetype above = folder.lastIndexOf(u'/');
    if (above > 0 && !makePrivateFolder(folder.left(above)))
        return false;
    // Another program may have been faster.
    return mkdir(name.constData(), S_IRWXU) == 0 || isFolder(name);
}

} // namespace labelcut
