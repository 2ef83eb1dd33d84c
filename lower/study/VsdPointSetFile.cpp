#include "VsdPointSetFile.h"

#include <KbbGlobal.h>
#include <KbeError.h>
#include <VsdCsv.h>
#include <VsdCsvLines.h>
#include <VusFileUtils.h>
#include <VusSaveFile.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QtEndian>
#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

const char kMagic[4] = {'V', 'P', 'T', 'S'};
// Version 2 adds the selection after the columns; version 1 files are still read.
constexpr quint32 kVersion = 2;
constexpr int kMaxNameBytes = 1024;

QString tr(const char* text)
{
    return QCoreApplication::translate("VsdPointSetFile", text);
}

QString native(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

[[noreturn]] void fail(const QString& message)
{
    throw KbeError(message);
}

void readExactly(QIODevice& device, void* data, qint64 bytes, const QString& name)
{
    const qint64 offset = device.pos();
    const qint64 got = device.read(static_cast<char*>(data), bytes);
    if (got != bytes)
        fail(tr("'%1' is truncated at byte offset %2: %3 bytes expected, %4 found.")
                 .arg(native(name))
                 .arg(offset)
                 .arg(bytes)
                 .arg(qMax<qint64>(got, 0)));
}

quint32 readUInt32(QIODevice& device, const QString& name)
{
    uchar bytes[4];
    readExactly(device, bytes, 4, name);
    return qFromLittleEndian<quint32>(bytes);
}

void readColumn(QIODevice& device, QVector<double>& column, int count, const QString& name)
{
    column.resize(count);
    readExactly(device, column.data(), qint64(count) * 8, name);
    qFromLittleEndian<double>(column.constData(), count, column.data());
}

VsdPointSet readBinary(QIODevice& device, const QString& name)
{
    if (device.isSequential())
        fail(tr("'%1' cannot be read: a point set file needs random access.").arg(native(name)));
    char magic[4];
    readExactly(device, magic, 4, name);
    const quint32 version = readUInt32(device, name);
    if (version != 1 && version != kVersion)
        fail(tr("'%1' has version %2 at byte offset 4; version %3 is read.")
                 .arg(native(name))
                 .arg(version)
                 .arg(kVersion));
    const quint32 count = readUInt32(device, name);
    if (count > quint32(VsdPointSet::MAX_SIZE))
        fail(tr("'%1' claims %2 samples at byte offset 8; at most %3 are read.")
                 .arg(native(name))
                 .arg(count)
                 .arg(VsdPointSet::MAX_SIZE));
    const quint32 variables = readUInt32(device, name);
    // Every name takes at least five bytes, so the file size bounds the count before the loop.
    if (qint64(variables) * 5 > device.size() - device.pos())
        fail(tr("'%1' claims %2 variables at byte offset 12, more than the file holds.")
                 .arg(native(name))
                 .arg(variables));
    VsdPointSet names; // checks the names as addVariable() will
    for (quint32 v = 0; v < variables; ++v) {
        const qint64 offset = device.pos();
        const quint32 length = readUInt32(device, name);
        if (length > quint32(kMaxNameBytes))
            fail(tr("'%1' has a variable name of %2 bytes at byte offset %3; at most %4 are read.")
                     .arg(native(name))
                     .arg(length)
                     .arg(offset)
                     .arg(kMaxNameBytes));
        QByteArray utf8(int(length), Qt::Uninitialized);
        readExactly(device, utf8.data(), length, name);
        const QString variable = QString::fromUtf8(utf8);
        const QString problem = names.variableNameProblem(variable);
        if (!problem.isEmpty())
            fail(tr("'%1' has a bad variable name at byte offset %2: %3.").arg(native(name)).arg(offset).arg(problem));
        names.addVariable(variable);
    }
    // The columns are allocated only once the file is known to hold them.
    const qint64 needed = qint64(count) * 8 * (3 + qint64(variables));
    const qint64 available = device.size() - device.pos();
    if (available < needed)
        fail(tr("'%1' is truncated: %2 samples need %3 bytes after byte offset %4, the file holds %5.")
                 .arg(native(name))
                 .arg(count)
                 .arg(needed)
                 .arg(device.pos())
                 .arg(available));
    if (available > needed && version == 1)
        fail(tr("'%1' has %2 unexpected bytes at byte offset %3.")
                 .arg(native(name))
                 .arg(available - needed)
                 .arg(device.pos() + needed));
    QVector<double> x, y, z;
    readColumn(device, x, int(count), name);
    readColumn(device, y, int(count), name);
    readColumn(device, z, int(count), name);
    VsdPointSet set;
    set.setCoordinates(x, y, z);
    for (const QString& variable : names.variableNames()) {
        QVector<double> column;
        readColumn(device, column, int(count), name);
        set.addVariable(variable, column);
    }
    if (version >= 2) {
        // The selection: a count of intervals, then each as its first and last rank.
        const qint64 offset = device.pos();
        const quint32 intervals = readUInt32(device, name);
        const qint64 rest = device.size() - device.pos();
        if (qint64(intervals) * 8 != rest)
            fail(tr("'%1' claims %2 selected intervals at byte offset %3, and holds %4 bytes for them.")
                     .arg(native(name))
                     .arg(intervals)
                     .arg(offset)
                     .arg(rest));
        KbiIntervalIntSmallDisjoint selection;
        qint64 previous = -1;
        for (quint32 i = 0; i < intervals; ++i) {
            const qint64 at = device.pos();
            const quint32 first = readUInt32(device, name);
            const quint32 last = readUInt32(device, name);
            if (qint64(first) <= previous || first > last || last >= count)
                fail(tr("'%1' has a bad selected interval [%2, %3] at byte offset %4.")
                         .arg(native(name))
                         .arg(first)
                         .arg(last)
                         .arg(at));
            selection.add(int(first), int(last));
            previous = last;
        }
        set.select(selection);
    }
    return set;
}

VsdPointSet readCsv(QIODevice& device, const QString& name, KbcProgress* progress)
{
    VsdCsvLines lines(device, name, progress);
    if (!lines.next())
        fail(tr("'%1' is empty.").arg(native(name)));
    const QVector<QByteArray> header = lines.fields();
    if (header.size() < 3 || header[0].toLower() != "x" || header[1].toLower() != "y" || header[2].toLower() != "z")
        fail(tr("'%1' is not a point set file: line 1 must start with \"x,y,z\".").arg(native(name)));
    VsdPointSet names; // checks the names as addVariable() will
    for (int c = 3; c < header.size(); ++c) {
        const QString variable = QString::fromUtf8(header[c]);
        const QString problem = names.variableNameProblem(variable);
        if (!problem.isEmpty())
            fail(tr("'%1' has a bad variable name at line 1, field %2: %3.").arg(native(name)).arg(c + 1).arg(problem));
        names.addVariable(variable);
    }

    const int columnCount = header.size();
    QVector<QVector<double>> columns(columnCount);
    QVector<double> row(columnCount);
    while (lines.next()) {
        if (lines.isBlank())
            continue;
        const int lineNumber = lines.lineNumber();
        const char* const begin = lines.begin();
        const char* const end = lines.end();
        int field = 0;
        for (const char* start = begin;; ++field) {
            const char* stop = std::find(start, end, ',');
            if (field < columnCount && !VsdCsv::parseNumber(start, stop, row[field]))
                fail(tr("'%1' has \"%2\" at line %3, field %4, where a number is expected.")
                         .arg(native(name))
                         .arg(QString::fromUtf8(start, int(qMin<qint64>(stop - start, 40))).trimmed())
                         .arg(lineNumber)
                         .arg(field + 1));
            if (stop == end)
                break;
            start = stop + 1;
        }
        if (field + 1 != columnCount)
            fail(tr("'%1' has %2 fields at line %3, %4 expected.")
                     .arg(native(name))
                     .arg(field + 1)
                     .arg(lineNumber)
                     .arg(columnCount));
        if (columns[0].size() >= VsdPointSet::MAX_SIZE)
            fail(tr("'%1' has more than %2 samples at line %3.")
                     .arg(native(name))
                     .arg(VsdPointSet::MAX_SIZE)
                     .arg(lineNumber));
        for (int c = 0; c < columnCount; ++c)
            columns[c].append(row[c]);
    }

    VsdPointSet set;
    set.setCoordinates(columns[0], columns[1], columns[2]);
    const QStringList variables = names.variableNames();
    for (int v = 0; v < variables.size(); ++v)
        set.addVariable(variables[v], columns[v + 3]);
    return set;
}

void writeUInt32(VusSaveFile& file, quint32 value)
{
    uchar bytes[4];
    qToLittleEndian(value, bytes);
    file.write(reinterpret_cast<const char*>(bytes), 4);
}

void writeColumn(VusSaveFile& file, const QVector<double>& column)
{
    // In blocks, so that a big-endian machine converts without a second copy of the column.
    constexpr int block = 8192;
    double converted[block];
    for (int start = 0; start < column.size(); start += block) {
        const int n = qMin(block, column.size() - start);
        qToLittleEndian<double>(column.constData() + start, n, converted);
        file.write(reinterpret_cast<const char*>(converted), qint64(n) * 8);
    }
}

void appendNumber(QByteArray& line, double value)
{
    // Written as an empty field, which is how a CSV reader reads any of them.
    if (value == KbbGlobal::D_FFFF || !std::isfinite(value))
        return;
    char text[32];
    const std::to_chars_result result = std::to_chars(text, text + sizeof text, value);
    line.append(text, int(result.ptr - text));
}

} // namespace

VsdPointSet VsdPointSetFile::read(const QString& path, KbcProgress* progress)
{
    QFile file(path);
    VusFileUtils::openForReading(file);
    return read(file, path, progress);
}

VsdPointSet VsdPointSetFile::read(QIODevice& device, const QString& name, KbcProgress* progress)
{
    if (!device.isReadable())
        fail(tr("'%1' cannot be read: it is not open for reading.").arg(native(name)));
    const QByteArray start = device.peek(4);
    if (start.isEmpty())
        fail(tr("'%1' is empty.").arg(native(name)));
    if (start == QByteArray::fromRawData(kMagic, 4))
        return readBinary(device, name);
    return readCsv(device, name, progress);
}

void VsdPointSetFile::write(const VsdPointSet& set, const QString& path, Format format)
{
    const QStringList names = set.variableNames();
    if (format == Format::Csv) {
        for (const QString& variable : names)
            if (variable.contains(QRegularExpression(QStringLiteral("[,\"\\n\\r]|^\\s|\\s$"))))
                fail(tr("'%1' cannot be written: the variable name '%2' does not fit in a CSV header.")
                         .arg(native(path), variable));
    }
    VusSaveFile file(path);
    if (format == Format::Binary) {
        file.write(kMagic, 4);
        writeUInt32(file, kVersion);
        writeUInt32(file, quint32(set.size()));
        writeUInt32(file, quint32(names.size()));
        for (const QString& variable : names) {
            const QByteArray utf8 = variable.toUtf8();
            if (utf8.size() > kMaxNameBytes)
                fail(tr("'%1' cannot be written: the variable name '%2' is longer than %3 bytes.")
                         .arg(native(path), variable)
                         .arg(kMaxNameBytes));
            writeUInt32(file, quint32(utf8.size()));
            file.write(utf8.constData(), utf8.size());
        }
        writeColumn(file, set.x());
        writeColumn(file, set.y());
        writeColumn(file, set.z());
        for (const QString& variable : names)
            writeColumn(file, set.variable(variable));
        const auto& intervals = set.selection().intervals();
        writeUInt32(file, quint32(intervals.size()));
        for (const auto& interval : intervals) {
            writeUInt32(file, quint32(interval.first));
            writeUInt32(file, quint32(interval.second));
        }
    } else {
        QByteArray text = "x,y,z";
        for (const QString& variable : names)
            text += ',' + variable.toUtf8();
        text += '\n';
        QVector<QVector<double>> columns{set.x(), set.y(), set.z()};
        for (const QString& variable : names)
            columns.append(set.variable(variable));
        for (int i = 0, n = set.size(); i < n; ++i) {
            for (int c = 0; c < columns.size(); ++c) {
                if (c > 0)
                    text += ',';
                appendNumber(text, columns[c].at(i));
            }
            text += '\n';
            if (text.size() > (1 << 20)) {
                file.write(text.constData(), text.size());
                text.clear();
            }
        }
        file.write(text.constData(), text.size());
    }
    file.commit();
}
