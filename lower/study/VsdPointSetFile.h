#pragma once
// Point sets on disk, in two formats told apart by their first bytes. Reading checks every
// count against the file's size before allocating, so a truncated or hostile file costs a
// KbeError, never a crash or a huge allocation.

#include <velmora_study_export.h>

#include <VsdPointSet.h>

class KbcProgress;
class QIODevice;

class VELMORA_STUDY_EXPORT VsdPointSetFile
{
public:
    enum class Format {
        // "VPTS", then little-endian: version (2), sample count, variable count, each name as
        // its UTF-8 byte length and bytes, then x, y, z and each variable as a column of
        // doubles, then the selection as a count of intervals and each interval's first and
        // last rank (version 1 files end with the columns). Fast to read and exact, for
        // large sets.
        Binary,
        // A header "x,y,z,name,..." then one line per sample; an empty field, "nan" and
        // "inf" are undefined (VsdCsv).
        // Numbers are written exactly (shortest round trip) and read without the locale.
        Csv
    };

    // Both throw KbeError naming the file and, for a malformed file, the line and field (CSV)
    // or the byte offset (binary) where reading stopped.
    // Only a regular file is opened. A progress gets the fraction of a CSV file read, and a
    // stop request ends the reading with a KbeError.
    static VsdPointSet read(const QString& path, KbcProgress* progress = nullptr);
    // From a device opened for reading; name is the file named in messages. The binary format
    // needs a random-access device, whose size bounds what is allocated.
    static VsdPointSet read(QIODevice& device, const QString& name, KbcProgress* progress = nullptr);
    // Throws KbeError when the file cannot be written, or for a variable name a CSV header
    // cannot hold (a comma, a quote, a line end, blanks around it). The file is replaced
    // atomically: a failure leaves the previous file whole.
    static void write(const VsdPointSet& set, const QString& path, Format format);

    VsdPointSetFile() = delete;
};
