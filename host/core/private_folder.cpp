// Core: the folder that they are kept in.
#include "host/core/private_folder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace labelcut {

bool makePrivateFolder(const QString& path) {
    const QFileInfo folder(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    if (folder.isDir())
        return true;
    if (folder.isRoot() || !makePrivateFolder(folder.path()))
        return false;
    // Another program may have been faster.
    return mkdir(QFile::encodeName(folder.filePath()).constData(), S_IRWXU) == 0 ||
           QFileInfo(folder.filePath()).isDir();
}

} // namespace labelcut
