#pragma once
// How a real value is written for the user and read back from what the user types: the
// notation, the number of digits, digit grouping, a unit and a power of ten the value is
// shown in (power 3 shows 12500 as "12.5"). Value editors and tables share one per unit class.

#include <velmora_basic_export.h>

#include <KbuUnit.h>

#include <QLocale>
#include <QString>
#include <QVariantMap>

class VELMORA_BASIC_EXPORT KbbStringFormat
{
public:
    enum Notation { FIXED, SCIENTIFIC, GENERAL };

    static constexpr int MIN_DIGITS = 0;
    static constexpr int MAX_DIGITS = 17;
    static constexpr int MIN_POWER = -30;
    static constexpr int MAX_POWER = 30;
    // Typed text longer than this is refused without being parsed.
    static constexpr int MAX_TEXT_LENGTH = 256;

    KbbStringFormat(Notation notation = FIXED, int digits = 2, const KbuUnit& unit = KbuUnit(),
                    bool grouping = false, int power = 0);

    Notation getNotation() const { return _notation; }
    void setNotation(Notation notation);
    // Decimals for FIXED and SCIENTIFIC, significant digits for GENERAL.
    int getDigits() const { return _digits; }
    void setDigits(int digits);
    bool hasGrouping() const { return _grouping; }
    void setGrouping(bool grouping) { _grouping = grouping; }
    const KbuUnit& getUnit() const { return _unit; }
    void setUnit(const KbuUnit& unit) { _unit = unit; }
    int getPower() const { return _power; }
    void setPower(int power);

    // The value in this format, without a unit symbol; an empty string for the undefined
    // value and for NaN and infinities.
    QString valueToString(double value, const QLocale& locale = QLocale()) const;
    // Reads typed text: the locale's notation first, then the C locale's; an optional
    // trailing unit symbol (or unit key) in any case. Returns false and leaves `value`
    // as it was when the text is not one finite number.
    bool stringToValue(const QString& text, double& value, const QLocale& locale = QLocale()) const;

    // A zero shaped like the values of this format, for an empty line edit.
    QString getPlaceholderText(const QLocale& locale = QLocale()) const;
    // The unit symbol, preceded by the power of ten when there is one ("×10³ m").
    QString getDisplayUnitSymbol() const;
    // The same for a quantity in the unit raised to `powerValue`: 2 gives "m²" for a
    // variance of lengths, 0 leaves the unit out.
    QString getDisplayUnitSymbol(int powerValue) const;

    // Keys "notation" (FIXED, SCIENTIFIC, GENERAL), "digits", "grouping", "unit" (a unit
    // key), "power": the form stored in preferences.
    QVariantMap toVariantMap() const;
    // Returns false, with a qWarning naming the bad field, and leaves `format` as it was
    // when an entry is missing or out of range. Values may be strings, as INI files give them.
    static bool fromVariantMap(const QVariantMap& map, KbbStringFormat& format);

    bool operator==(const KbbStringFormat& o) const;
    bool operator!=(const KbbStringFormat& o) const { return !(*this == o); }

private:
    double _scale(double value) const;

    Notation _notation;
    int _digits;
    bool _grouping;
    KbuUnit _unit;
    int _power;
};
