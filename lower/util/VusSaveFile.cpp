#include "VusSaveFile.h"

#include <KbeError.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("VusSaveFile", text);
}

} // namespace

VusSaveFile::VusSaveFile(const QString& path)
    : _path(path)
{
    _target = QFile::encodeName(path);
    struct stat st;
    // One lstat() answers for the usual case, a regular file or nothing yet; only a link
    // is resolved to the file it names.
    bool found = ::lstat(_target.constData(), &st) == 0;
    if (found && S_ISLNK(st.st_mode)) {
        const QFileInfo info(path);
        if (info.exists())
            _target = QFile::encodeName(info.canonicalFilePath());
        found = ::stat(_target.constData(), &st) == 0;
    }
    if (found) {
        if (!S_ISREG(st.st_mode))
            throw KbeError(tr("'%1' cannot be written: something that is not a file is in its place, and it is "
                              "left alone.")
                               .arg(QDir::toNativeSeparators(path)));
        _hadTarget = true;
        _mode = st.st_mode & 07777;
    }
    _temporary = _target + ".XXXXXX";
    _fd = ::mkostemp(_temporary.data(), O_CLOEXEC);
    if (_fd < 0)
        _fail(errno);
    // mkostemp makes the file private; the new one gets the old one's permissions.
    ::fchmod(_fd, _mode);
}

VusSaveFile::~VusSaveFile()
{
    if (_fd >= 0) {
        ::close(_fd);
        ::unlink(_temporary.constData());
    }
}

void VusSaveFile::_fail(int error)
{
    throw KbeError(tr("'%1' cannot be written: %2.")
                       .arg(QDir::toNativeSeparators(_path), QString::fromLocal8Bit(std::strerror(error))));
}

void VusSaveFile::write(const char* data, qint64 size)
{
    if (_fd < 0)
        _fail(EBADF);
    while (size > 0) {
        const ssize_t n = ::write(_fd, data, size_t(size));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            _fail(errno);
        }
        data += n;
        size -= n;
    }
}

void VusSaveFile::commit()
{
    if (_fd < 0)
        _fail(EBADF);
    // No sync to disk: the rename is what makes the replacement atomic for readers, and
    // the close still reports what a full disk or a network folder only tells then.
    const int fd = _fd;
    _fd = -1;
    if (::close(fd) != 0 || ::rename(_temporary.constData(), _target.constData()) != 0) {
        const int error = errno;
        ::unlink(_temporary.constData());
        _fail(error);
    }
}

void VusSaveFile::save(const QString& path, const QByteArray& content)
{
    VusSaveFile file(path);
    file.write(content);
    file.commit();
}
