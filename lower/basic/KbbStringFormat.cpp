#include "KbbStringFormat.h"

#include <KbbGlobal.h>

#include <QtGlobal>
#include <algorithm>
#include <cmath>

namespace {

const char* const NOTATION_KEYS[] = {"FIXED", "SCIENTIFIC", "GENERAL"};

// Exact for the clamped range of powers up to 10^22, close enough beyond.
double powerOfTen(int n)
{
    return std::pow(10.0, double(std::abs(n)));
}

// Strict reading of a stored field: "2.5", true or "x" are not a digit count.
bool readInt(const QVariant& v, int& out)
{
    bool ok = false;
    const int i = v.toString().trimmed().toInt(&ok);
    if (ok)
        out = i;
    return ok;
}

bool readBool(const QVariant& v, bool& out)
{
    const QString s = v.toString().trimmed().toLower();
    if (s == QLatin1String("true") || s == QLatin1String("1"))
        out = true;
    else if (s == QLatin1String("false") || s == QLatin1String("0"))
        out = false;
    else
        return false;
    return true;
}

QString superscript(int n)
{
    static const QChar digits[] = {0x2070, 0x00B9, 0x00B2, 0x00B3, 0x2074, 0x2075, 0x2076, 0x2077, 0x2078, 0x2079};
    const QString decimal = QString::number(n);
    QString s;
    for (const QChar c : decimal)
        s += c == QLatin1Char('-') ? QChar(0x207B) : digits[c.digitValue()];
    return s;
}

} // namespace

KbbStringFormat::KbbStringFormat(Notation notation, int digits, const KbuUnit& unit, bool grouping, int power)
    : _notation(FIXED)
    , _digits(2)
    , _grouping(grouping)
    , _unit(unit)
    , _power(0)
{
    setNotation(notation);
    setDigits(digits);
    setPower(power);
}

void KbbStringFormat::setNotation(Notation notation)
{
    if (notation != FIXED && notation != SCIENTIFIC && notation != GENERAL) {
        qWarning("KbbStringFormat::setNotation: %d is not a notation, FIXED is used", int(notation));
        notation = FIXED;
    }
    _notation = notation;
}

void KbbStringFormat::setDigits(int digits)
{
    if (digits < MIN_DIGITS || digits > MAX_DIGITS) {
        const int clamped = qBound(MIN_DIGITS, digits, MAX_DIGITS);
        qWarning("KbbStringFormat::setDigits: %d is outside %d..%d, %d is used", digits, MIN_DIGITS, MAX_DIGITS,
                 clamped);
        digits = clamped;
    }
    _digits = digits;
}

void KbbStringFormat::setPower(int power)
{
    if (power < MIN_POWER || power > MAX_POWER) {
        const int clamped = qBound(MIN_POWER, power, MAX_POWER);
        qWarning("KbbStringFormat::setPower: %d is outside %d..%d, %d is used", power, MIN_POWER, MAX_POWER, clamped);
        power = clamped;
    }
    _power = power;
}

double KbbStringFormat::_scale(double value) const
{
    // Dividing by an exact power of ten rounds once, so 12500 with power 3 is exactly 12.5.
    if (_power > 0)
        return value / powerOfTen(_power);
    if (_power < 0)
        return value * powerOfTen(_power);
    return value;
}

QString KbbStringFormat::valueToString(double value, const QLocale& locale) const
{
    if (KbbGlobal::isUndefined(value) || !std::isfinite(value))
        return QString();
    double v = _scale(value);
    // A value that rounds to zero is shown as "0.00", not "-0.00".
    if (v == 0.0 || (_notation == FIXED && std::fabs(v) < 0.5 / powerOfTen(_digits)))
        v = 0.0;

    QLocale loc(locale);
    QLocale::NumberOptions options = loc.numberOptions();
    options.setFlag(QLocale::OmitGroupSeparator, !_grouping);
    loc.setNumberOptions(options);
    switch (_notation) {
    case SCIENTIFIC:
        return loc.toString(v, 'e', _digits);
    case GENERAL:
        return loc.toString(v, 'g', std::max(1, _digits));
    case FIXED:
        break;
    }
    return loc.toString(v, 'f', _digits);
}

bool KbbStringFormat::stringToValue(const QString& text, double& value, const QLocale& locale) const
{
    if (text.size() > MAX_TEXT_LENGTH)
        return false;
    QString s = text.trimmed();

    // The longer of symbol and key first, so that "ft (US)" is not cut after "ft".
    QStringList suffixes{_unit.getSymbol(), _unit.getKey()};
    std::sort(suffixes.begin(), suffixes.end(), [](const QString& a, const QString& b) { return a.size() > b.size(); });
    for (const QString& suffix : qAsConst(suffixes)) {
        if (suffix.isEmpty() || !s.endsWith(suffix, Qt::CaseInsensitive))
            continue;
        const QString rest = s.left(s.size() - suffix.size()).trimmed();
        if (!rest.isEmpty()) {
            s = rest;
            break;
        }
    }
    if (s.isEmpty())
        return false;

    bool ok = false;
    double d = locale.toDouble(s, &ok);
    if (!ok || !std::isfinite(d))
        d = QLocale::c().toDouble(s, &ok);
    if (!ok || !std::isfinite(d))
        return false;

    if (_power > 0)
        d *= powerOfTen(_power);
    else if (_power < 0)
        d /= powerOfTen(_power);
    if (!std::isfinite(d))
        return false;
    value = d;
    return true;
}

QString KbbStringFormat::getPlaceholderText(const QLocale& locale) const
{
    switch (_notation) {
    case SCIENTIFIC:
        return locale.toString(0.0, 'e', _digits);
    case GENERAL:
        return locale.toString(0.0, 'f', std::max(0, _digits - 1));
    case FIXED:
        break;
    }
    return locale.toString(0.0, 'f', _digits);
}

QString KbbStringFormat::getDisplayUnitSymbol() const
{
    return getDisplayUnitSymbol(1);
}

QString KbbStringFormat::getDisplayUnitSymbol(int powerValue) const
{
    QString unit = powerValue == 0 ? QString() : _unit.getSymbol();
    if (!unit.isEmpty() && powerValue != 1)
        unit += superscript(powerValue);
    if (_power == 0)
        return unit;
    QString s = QStringLiteral("\u00D710") + superscript(_power);
    if (!unit.isEmpty())
        s += QLatin1Char(' ') + unit;
    return s;
}

QVariantMap KbbStringFormat::toVariantMap() const
{
    return QVariantMap{
        {QStringLiteral("notation"), QString::fromLatin1(NOTATION_KEYS[_notation])},
        {QStringLiteral("digits"), _digits},
        {QStringLiteral("grouping"), _grouping},
        {QStringLiteral("unit"), _unit.getKey()},
        {QStringLiteral("power"), _power},
    };
}

bool KbbStringFormat::fromVariantMap(const QVariantMap& map, KbbStringFormat& format)
{
    const auto reject = [](const char* field, const QVariant& v) {
        qWarning("KbbStringFormat::fromVariantMap: bad or missing %s '%s', the format is ignored", field,
                 qPrintable(v.toString()));
        return false;
    };

    const QVariant notationValue = map.value(QStringLiteral("notation"));
    const QString notationKey = notationValue.toString();
    int notation = -1;
    for (int i = FIXED; i <= GENERAL; ++i)
        if (notationKey == QLatin1String(NOTATION_KEYS[i]))
            notation = i;
    if (notation < 0)
        return reject("notation", notationValue);

    const QVariant digitsValue = map.value(QStringLiteral("digits"));
    int digits = 0;
    if (!readInt(digitsValue, digits) || digits < MIN_DIGITS || digits > MAX_DIGITS)
        return reject("digits", digitsValue);

    const QVariant unitValue = map.value(QStringLiteral("unit"));
    if (!unitValue.isValid() || !KbuUnit::existsKey(unitValue.toString()))
        return reject("unit", unitValue);

    // Grouping and power may be missing; they then take their defaults.
    bool grouping = false;
    const QVariant groupingValue = map.value(QStringLiteral("grouping"));
    if (groupingValue.isValid() && !readBool(groupingValue, grouping))
        return reject("grouping", groupingValue);

    int power = 0;
    const QVariant powerValue = map.value(QStringLiteral("power"));
    if (powerValue.isValid() && (!readInt(powerValue, power) || power < MIN_POWER || power > MAX_POWER))
        return reject("power", powerValue);

    format = KbbStringFormat(Notation(notation), digits, KbuUnit::fromKey(unitValue.toString()), grouping, power);
    return true;
}

bool KbbStringFormat::operator==(const KbbStringFormat& o) const
{
    return _notation == o._notation && _digits == o._digits && _grouping == o._grouping && _unit == o._unit
        && _power == o._power;
}
