#pragma once
// A variable that holds its values: the plain KbdAVariable for values read from a file or
// computed. Undefined values (KbbGlobal::D_FFFF), NaN and infinities are kept but left out
// of the range.

#include <velmora_basic_export.h>

#include <KbdAVariable.h>

#include <QVector>

class VELMORA_BASIC_EXPORT KbdVariable : public KbdAVariable
{
public:
    KbdVariable(const QString& name, const QVector<double>& values, const KbuUnit& unit = KbuUnit());

    QString getName() const override { return _name; }
    KbuUnit getUnit() const override { return _unit; }
    QPair<double, double> getRange() const override { return _range; }
    const QVector<double>& getValues() const { return _values; }

private:
    QString _name;
    QVector<double> _values;
    KbuUnit _unit;
    QPair<double, double> _range;
};
