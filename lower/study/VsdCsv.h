#pragma once
// How every CSV file of a project reads a number field: without the locale (the decimal
// separator is always '.'), with blanks around it and a leading '+' allowed. An empty
// field, "nan", "inf" and a number beyond the largest double all read as the undefined
// value KbbGlobal::D_FFFF, so that such a value is missing data wherever it is read: a
// variable leaves the sample out of its range, a coordinate leaves the sample unplaced.

#include <velmora_study_export.h>

#include <QByteArray>

class VELMORA_STUDY_EXPORT VsdCsv
{
public:
    // False for text that is no number; value is then unchanged.
    static bool parseNumber(const char* begin, const char* end, double& value);
    static bool parseNumber(const QByteArray& field, double& value)
    {
        return parseNumber(field.constData(), field.constData() + field.size(), value);
    }

    VsdCsv() = delete;
};
