#pragma once
// The lines of a CSV file, one at a time, as every CSV reader of a project reads them: at
// most MAX_LINE_BYTES a line, its end cut, a UTF-8 byte-order mark skipped at the start.
// Given a progress, it sets the fraction read and honours a stop request by throwing a
// KbeError that says the reading was cancelled. Other failures are KbeError naming the
// file and the line.
//
//   VsdCsvLines lines(file, path, progress);
//   while (lines.next())
//       if (!lines.isBlank())
//           use(lines.fields(), lines.lineNumber());

#include <velmora_study_export.h>

#include <QByteArray>
#include <QString>
#include <QVector>

class KbcProgress;
class QIODevice;

class VELMORA_STUDY_EXPORT VsdCsvLines
{
public:
    static constexpr int MAX_LINE_BYTES = 1 << 20;

    VsdCsvLines(QIODevice& device, const QString& name, KbcProgress* progress = nullptr);

    // The next line; false at the end of the file.
    bool next();
    const char* begin() const { return _begin; }
    const char* end() const { return _end; }
    // From 1, of the line next() gave.
    int lineNumber() const { return _lineNumber; }
    bool isBlank() const;
    // The comma-separated fields of the line, trimmed of blanks.
    QVector<QByteArray> fields() const;

    // A message naming the file and the line: "'file', line 3: what".
    QString problem(const QString& what) const;

private:
    QIODevice& _device;
    QString _name;
    KbcProgress* _progress;
    qint64 _size;
    QByteArray _buffer;
    const char* _begin = nullptr;
    const char* _end = nullptr;
    int _lineNumber = 0;
};
