#include "VusFileUtils.h"

#include <KbeError.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("VusFileUtils", text);
}

QString native(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

QString systemError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

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

bool VusFileUtils::isRegularFile(const QString& path)
{
    struct stat st;
    return ::stat(QFile::encodeName(path).constData(), &st) == 0 && S_ISREG(st.st_mode);
}

void VusFileUtils::openForReading(QFile& file, QIODevice::OpenMode extra)
{
    const QString path = file.fileName();
    // Non-blocking, so that opening a FIFO returns at once; the type is then checked on
    // the open descriptor, which leaves no gap for the path to change in between.
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        throw KbeError(tr("'%1' cannot be read: %2.").arg(native(path), systemError(errno)));
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        throw KbeError(tr("'%1' is not a regular file: it is not read.").arg(native(path)));
    }
    const int flags = ::fcntl(fd, F_GETFL);
    if (flags != -1)
        ::fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
    if (!file.open(fd, QIODevice::ReadOnly | extra, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        throw KbeError(tr("'%1' cannot be read: %2.").arg(native(path), file.errorString()));
    }
}

QString VusFileUtils::keepAside(const QString& path)
{
    if (!isRegularFile(path)) {
        qWarning("VusFileUtils::keepAside: '%s' is not a regular file and is left where it is",
                 qUtf8Printable(native(path)));
        return QString();
    }
    // A link is kept as a link: what it points to is the user's, not ours to move.
    const QByteArray from = QFile::encodeName(path);
    for (int n = 1; n < 1000; ++n) {
        const QString kept = path + (n == 1 ? QStringLiteral(".bad") : QStringLiteral(".bad.%1").arg(n));
        const QByteArray to = QFile::encodeName(kept);
        struct stat st;
        if (::lstat(to.constData(), &st) == 0 || errno != ENOENT)
            continue;
        // link + unlink rather than rename: rename would silently replace a file that
        // appeared at the new name in the meantime.
        if (::link(from.constData(), to.constData()) == 0) {
            ::unlink(from.constData());
            return kept;
        }
        if (errno == EEXIST)
            continue;
        // Some file systems have no hard links; the name was free a moment ago.
        if ((errno == EPERM || errno == ENOTSUP) && ::rename(from.constData(), to.constData()) == 0)
            return kept;
        qWarning("VusFileUtils::keepAside: '%s' cannot be moved aside: %s", qUtf8Printable(native(path)),
                 qUtf8Printable(systemError(errno)));
        return QString();
    }
    qWarning("VusFileUtils::keepAside: no free name beside '%s'", qUtf8Printable(native(path)));
    return QString();
}
