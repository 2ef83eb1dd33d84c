#include "VusFileUtils.h"

#include <QDir>
#include <QFileInfo>

bool VusFileUtils::removePath(const QString& path, bool recursive)
{
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink())
        return true;
    if (info.isDir() && !info.isSymLink()) {
        QDir dir(path);
        return recursive ? dir.removeRecursively() : dir.rmdir(path);
    }
    return QFile::remove(path);
}
