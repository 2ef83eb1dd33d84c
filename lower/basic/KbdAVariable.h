#pragma once
// A variable of a dataset as views present it: its name, the unit and format of its values,
// and the range they span. Views read it to title and scale what they draw (the 3D view's
// legend, for instance); the dataset that holds the values derives from it.

#include <velmora_basic_export.h>

#include <KbbStringFormat.h>
#include <KbuUnit.h>

#include <QPair>
#include <QString>

class VELMORA_BASIC_EXPORT KbdAVariable
{
public:
    virtual ~KbdAVariable() = default;

    virtual QString getName() const = 0;
    virtual KbuUnit getUnit() const { return KbuUnit(); }
    virtual KbbStringFormat getFormat() const { return KbbStringFormat(KbbStringFormat::GENERAL, 4, getUnit()); }
    // The smallest and largest defined value; first > second when there is none.
    virtual QPair<double, double> getRange() const = 0;
    bool hasRange() const
    {
        const QPair<double, double> range = getRange();
        return range.first <= range.second;
    }
    // "Name (unit)", or the name alone for a variable without unit.
    QString getTitle() const;
};
