#include "VsdCsvLines.h"

#include <KbcProgress.h>
#include <KbeError.h>

#include <QCoreApplication>
#include <QDir>
#include <QIODevice>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("VsdCsvLines", text);
}

// Progress is set and the stop polled every so many lines: often enough to answer a
// click at once, seldom enough to cost nothing.
constexpr int kPollLines = 4096;

} // namespace

VsdCsvLines::VsdCsvLines(QIODevice& device, const QString& name, KbcProgress* progress)
    : _device(device)
    , _name(QDir::toNativeSeparators(name))
    , _progress(progress)
    , _size(device.isSequential() ? 0 : device.size())
    , _buffer(MAX_LINE_BYTES + 1, Qt::Uninitialized)
{
}

bool VsdCsvLines::next()
{
    if (_progress && _lineNumber % kPollLines == 0) {
        if (_progress->isStopRequested())
            throw KbeError(tr("Reading '%1' was cancelled.").arg(_name));
        if (_size > 0)
            _progress->setFraction(double(_device.pos()) / double(_size));
    }
    if (_device.atEnd())
        return false;
    const qint64 length = _device.readLine(_buffer.data(), _buffer.size());
    ++_lineNumber;
    if (length < 0)
        throw KbeError(tr("'%1' cannot be read at line %2: %3.").arg(_name).arg(_lineNumber).arg(_device.errorString()));
    _begin = _buffer.constData();
    _end = _begin + length;
    if (length == MAX_LINE_BYTES && _end[-1] != '\n' && !_device.atEnd())
        throw KbeError(tr("'%1' has a line longer than %2 bytes at line %3.").arg(_name).arg(MAX_LINE_BYTES).arg(_lineNumber));
    while (_end > _begin && (_end[-1] == '\n' || _end[-1] == '\r'))
        --_end;
    if (_lineNumber == 1 && _end - _begin >= 3 && QByteArray::fromRawData(_begin, 3) == "\xEF\xBB\xBF")
        _begin += 3;
    return true;
}

bool VsdCsvLines::isBlank() const
{
    for (const char* c = _begin; c < _end; ++c)
        if (*c != ' ' && *c != '\t')
            return false;
    return true;
}

QVector<QByteArray> VsdCsvLines::fields() const
{
    QVector<QByteArray> fields;
    const char* start = _begin;
    for (const char* c = _begin;; ++c) {
        if (c == _end || *c == ',') {
            fields.append(QByteArray(start, int(c - start)).trimmed());
            if (c == _end)
                break;
            start = c + 1;
        }
    }
    return fields;
}

QString VsdCsvLines::problem(const QString& what) const
{
    return tr("'%1', line %2: %3").arg(_name).arg(_lineNumber).arg(what);
}
