#pragma once
// Writes a file of the user's project atomically: the content goes into a temporary file
// beside the target, which replaces the target only once all of it is written. A failure
// at any point (a full disk, a read-only folder) leaves the previous file whole, and the
// error names the file and gives the system's own reason ("No space left on device").
//
// What stands at the path and is not a regular file (a folder, a FIFO) is never replaced;
// a link to a file is followed, so that the link stays and its target gets the content.
//
//   VusSaveFile file(path);
//   file.write(header.constData(), header.size());   // each call throws KbeError
//   file.commit();

#include <velmora_util_export.h>

#include <QByteArray>
#include <QString>

class VELMORA_UTIL_EXPORT VusSaveFile
{
public:
    // Creates the temporary file; throws KbeError.
    explicit VusSaveFile(const QString& path);
    // Removes the temporary file when commit() was not reached.
    ~VusSaveFile();
    VusSaveFile(const VusSaveFile&) = delete;
    VusSaveFile& operator=(const VusSaveFile&) = delete;

    void write(const char* data, qint64 size);
    void write(const QByteArray& data) { write(data.constData(), data.size()); }
    // Puts the content in place of the target; throws KbeError.
    void commit();

    // The whole content at once.
    static void save(const QString& path, const QByteArray& content);

private:
    [[noreturn]] void _fail(int error);
    QString _path;
    QByteArray _target;
    QByteArray _temporary;
    int _fd = -1;
    bool _hadTarget = false;
    unsigned _mode = 0644;
};
