// String formats: writing values in several locales, reading typed text back (the user's
// locale, the C fallback, unit symbols, powers of ten), hostile text, and the user's
// formats kept in the preferences.

#include <KbbGlobal.h>
#include <KbbStringFormat.h>
#include <KbbUserStringFormats.h>
#include <VupPreferenceRegistry.h>
#include <VupUserStringFormats.h>

#include <QtTest>
#include <cmath>

#include "LowerTestSupport.h"

Q_DECLARE_METATYPE(KbbStringFormat)

namespace {

const double REFUSED = NaN;
const double EITHER = INF;

const auto FIXED = KbbStringFormat::FIXED;
const auto SCIENTIFIC = KbbStringFormat::SCIENTIFIC;
const auto GENERAL = KbbStringFormat::GENERAL;

KbbStringFormat format(KbbStringFormat::Notation notation, int digits, bool grouping = false, int power = 0,
                       const char* unitKey = "")
{
    return KbbStringFormat(notation, digits, KbuUnit::fromKey(QString::fromLatin1(unitKey)), grouping, power);
}

KbbStringFormat unitFormat(const char* unitKey)
{
    return format(FIXED, 2, false, 0, unitKey);
}

KbbStringFormat metres(int power = 0)
{
    return format(FIXED, 2, false, power, "m");
}

// "_" in an expected text stands for the locale's group separator, which differs between
// Qt versions for some locales (French uses a narrow no-break space).
QString withGroupSeparator(QString text, const QLocale& locale)
{
    return text.replace(QLatin1Char('_'), locale.groupSeparator());
}

KbbStringFormat userFormat(const KbuEUnitClass& unitClass)
{
    return KbbUserStringFormats::getStringFormat(unitClass);
}

KbbStringFormat defaultFormat(const KbuEUnitClass& unitClass)
{
    return KbbUserStringFormats::getDefaultStringFormat(unitClass);
}

} // namespace

namespace QTest {
template <>
char* toString(const KbbStringFormat& f)
{
    QString text;
    QDebug(&text) << f.toVariantMap();
    return toString(text);
}
} // namespace QTest

// The column types of the tables below.
using ValueToStringRow = Row<KbbStringFormat, QString, double, QString>;
using WriteThenReadRow = Row<QString, int, double>;
using StringToValueRow = Row<KbbStringFormat, QString, QString, double>;
using UnitSymbolAndPlaceholderRow = Row<KbbStringFormat, QString, QString, QString>;
using UserFormatsBadEntriesRow = Row<QString, QVariant>;

class TestStringFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { KbbUserStringFormats::resetToDefaults(); }

    void valueToString_data()
    {
        ValueToStringRow::addColumns(); // fmt, localeName, value, expected

        QTest::newRow("fixed 2, C") << format(FIXED, 2) << "C" << 1234.567 << "1234.57";
        QTest::newRow("fixed 2 grouped, C") << format(FIXED, 2, true) << "C" << 1234.567 << "1_234.57";
        QTest::newRow("fixed 2 grouped, fr_FR") << format(FIXED, 2, true) << "fr_FR" << 1234.567 << "1_234,57";
        QTest::newRow("fixed 2 ungrouped, fr_FR") << format(FIXED, 2) << "fr_FR" << 1234.567 << "1234,57";
        QTest::newRow("fixed 0") << format(FIXED, 0) << "C" << 99.4 << "99";
        QTest::newRow("fixed tiny negative is unsigned zero") << format(FIXED, 2) << "C" << -0.001 << "0.00";
        QTest::newRow("fixed negative zero") << format(FIXED, 2) << "C" << -0.0 << "0.00";
        QTest::newRow("scientific 3, C") << format(SCIENTIFIC, 3) << "C" << 12345.678 << "1.235e+04";
        QTest::newRow("general 6 large, C") << format(GENERAL, 6) << "C" << 1234567.0 << "1.23457e+06";
        QTest::newRow("general 6 drops zeros, C") << format(GENERAL, 6) << "C" << 0.5 << "0.5";
        QTest::newRow("general 0 shows one digit") << format(GENERAL, 0) << "C" << 1234.0 << "1e+03";
        QTest::newRow("power 3 fixed") << format(FIXED, 2, false, 3) << "C" << 12500.0 << "12.50";
        QTest::newRow("power 3 general") << format(GENERAL, 6, false, 3) << "C" << 12500.0 << "12.5";
        QTest::newRow("power -2 fixed, fr_FR") << format(FIXED, 2, false, -2) << "fr_FR" << 0.125 << "12,50";
    }
    void valueToString()
    {
        const auto [fmt, localeName, value, expected] = ValueToStringRow::fetch();
        const QLocale locale(localeName);
        QCOMPARE(fmt.valueToString(value, locale), withGroupSeparator(expected, locale));
        for (const double nothing : {KbbGlobal::D_FFFF, NaN, INF, -INF})
            QCOMPARE(fmt.valueToString(nothing, locale), QString());
    }

    void writeThenRead_data()
    {
        WriteThenReadRow::addColumns(); // localeName, power, value

        // 17 significant digits write every double exactly: reading must give it back, whatever
        // the separators of the locale.
        for (const char* name : {"C", "en_US", "fr_FR", "de_DE"})
            for (int power : {0, 3, -2})
                for (double v : {M_PI * 1e5, -2.5e-7, 123456789.125, 1.0e300, -0.0625})
                    QTest::addRow("%s power %d %g", name, power, v) << QString::fromLatin1(name) << power << v;
    }
    void writeThenRead()
    {
        const auto [localeName, power, value] = WriteThenReadRow::fetch();
        const QLocale locale(localeName);
        for (bool grouping : {false, true}) {
            const KbbStringFormat fmt = format(GENERAL, 17, grouping, power, "m");
            const QString text = fmt.valueToString(value, locale);
            double back = 0;
            QVERIFY2(fmt.stringToValue(text, back, locale), qPrintable(text));
            if (power == 0)
                QCOMPARE(back, value);
            else // scaling by a power of ten rounds once each way
                QVERIFY2(std::fabs(back - value) <= 4e-16 * std::fabs(value), qPrintable(text));
            // The same text with the unit symbol the editor shows beside it.
            QVERIFY(fmt.stringToValue(text + QStringLiteral(" m"), back, locale));
        }
    }

    void stringToValue_data()
    {
        // fmt, localeName, text, expected (REFUSED, or EITHER refused or some finite number).
        // What the formats write in each locale is read back in writeThenRead.
        StringToValueRow::addColumns();

        const KbbStringFormat plain = format(GENERAL, 6);
        QTest::newRow("fr_FR falls back to C point") << plain << "fr_FR" << "1.5" << 1.5;
        QTest::newRow("exponent in upper case, fr_FR") << plain << "fr_FR" << "2,5E-3" << 0.0025;
        QTest::newRow("blanks around") << plain << "C" << " \t 42  " << 42.0;
        QTest::newRow("metre symbol") << metres() << "C" << "12.5 m" << 12.5;
        QTest::newRow("metre symbol without blank") << metres() << "de_DE" << "12,5M" << 12.5;
        QTest::newRow("US foot symbol any case") << unitFormat("ftUS") << "C" << "3 FT (us)" << 3.0;
        QTest::newRow("US foot key") << unitFormat("ftUS") << "C" << "3ftUS" << 3.0;
        QTest::newRow("square metre symbol") << unitFormat("m2") << "C" << QStringLiteral("4 m\u00B2") << 4.0;
        QTest::newRow("degree sign") << unitFormat("deg") << "fr_FR" << QStringLiteral("45,5\u00B0") << 45.5;
        QTest::newRow("power 3 with symbol") << metres(3) << "C" << "12.5 m" << 12500.0;
        QTest::newRow("power -2") << metres(-2) << "C" << "12.5" << 0.125;

        QTest::newRow("empty") << plain << "C" << "" << REFUSED;
        QTest::newRow("nan") << plain << "C" << "nan" << REFUSED;
        QTest::newRow("inf") << plain << "C" << "inf" << REFUSED;
        QTest::newRow("overflow") << plain << "C" << "1e309" << REFUSED;
        QTest::newRow("overflow through the power") << metres(3) << "C" << "1e306" << REFUSED;
        QTest::newRow("4 KB of digits") << plain << "C" << QString(4096, QLatin1Char('9')) << REFUSED;
        QTest::newRow("a number after 300 blanks") << plain << "C" << QString(300, QLatin1Char(' ')) + "1" << REFUSED;
        QTest::newRow("hexadecimal") << plain << "C" << "0x10" << REFUSED;
        QTest::newRow("another unit") << metres() << "C" << "12 kg" << REFUSED;
        QTest::newRow("a longer unit") << metres() << "C" << "12 km" << REFUSED;
        QTest::newRow("symbol alone") << metres() << "C" << "m" << REFUSED;
        QTest::newRow("symbol twice") << metres() << "C" << "12 m m" << REFUSED;
        QTest::newRow("trailing garbage") << plain << "C" << "12abc" << REFUSED;
        QTest::newRow("comma decimal in en_US") << plain << "en_US" << "1,5" << EITHER;
    }
    void stringToValue()
    {
        const auto [fmt, localeName, text, expected] = StringToValueRow::fetch();
        const QLocale locale(localeName);
        const double untouched = 777.0;
        double value = untouched;
        const bool ok = fmt.stringToValue(withGroupSeparator(text, locale), value, locale);
        if (std::isnan(expected))
            QVERIFY2(!ok, qPrintable(QString::number(value, 'g', 17)));
        if (!ok)
            QVERIFY(!std::isfinite(expected) && value == untouched);
        else if (std::isfinite(expected))
            QCOMPARE(value, expected);
        else
            QVERIFY(std::isfinite(value));
    }

    void boundsAreClamped()
    {
        KbbStringFormat fmt;
        expectWarning("^KbbStringFormat::setDigits: -1 ");
        fmt.setDigits(-1);
        QCOMPARE(fmt.getDigits(), 0);
        expectWarning("^KbbStringFormat::setDigits: 18 ");
        fmt.setDigits(18);
        QCOMPARE(fmt.getDigits(), 17);
        expectWarning("^KbbStringFormat::setPower: 400 ");
        fmt.setPower(400);
        QCOMPARE(fmt.getPower(), KbbStringFormat::MAX_POWER);
        // A clamped format still writes and reads the largest doubles without overflow.
        fmt.setNotation(SCIENTIFIC);
        double value = 0;
        QVERIFY(fmt.stringToValue(fmt.valueToString(1e300, QLocale::c()), value, QLocale::c()));
        QVERIFY(std::fabs(value - 1e300) <= 1e-15 * 1e300);
    }

    void unitSymbolAndPlaceholder_data()
    {
        UnitSymbolAndPlaceholderRow::addColumns(); // fmt, localeName, symbol, placeholder

        QTest::newRow("metres") << metres() << "C" << "m" << "0.00";
        QTest::newRow("kilo-metres") << metres(3) << "fr_FR" << QStringLiteral("\u00D710\u00B3 m") << "0,00";
        const QString pico = QStringLiteral("\u00D710\u207B\u00B9\u00B2");
        QTest::newRow("pico, no unit") << format(FIXED, 0, false, -12) << "C" << pico << "0";
        QTest::newRow("no unit") << format(GENERAL, 4) << "de_DE" << "" << "0,000";
        QTest::newRow("scientific area") << format(SCIENTIFIC, 2, false, 0, "km2") << "C" << QStringLiteral("km\u00B2")
                                         << "0.00e+00";
    }
    void unitSymbolAndPlaceholder()
    {
        const auto [fmt, localeName, symbol, placeholder] = UnitSymbolAndPlaceholderRow::fetch();
        QCOMPARE(fmt.getDisplayUnitSymbol(), symbol);
        QCOMPARE(fmt.getPlaceholderText(QLocale(localeName)), placeholder);
    }

    void userFormatsBadEntries_data()
    {
        UserFormatsBadEntriesRow::addColumns(); // classKey, entry

        const auto entry = [](const QString& field, const QVariant& value) {
            QVariantMap m = format(FIXED, 4, false, 0, "km").toVariantMap();
            if (value.isValid())
                m.insert(field, value);
            else
                m.remove(field);
            return QVariant(m);
        };
        QTest::newRow("unknown class") << "VOLUME" << entry(QString(), QVariant());
        QTest::newRow("class key in lower case") << "length" << entry(QString(), QVariant());
        QTest::newRow("not a map") << "LENGTH" << QVariant(QStringLiteral("FIXED;2;m"));
        QTest::newRow("unknown notation") << "LENGTH" << entry("notation", "BOLD");
        QTest::newRow("digits out of range") << "LENGTH" << entry("digits", 99);
        QTest::newRow("digits fractional") << "LENGTH" << entry("digits", 2.5);
        QTest::newRow("unknown unit") << "LENGTH" << entry("unit", "parsec");
        QTest::newRow("unit of another class") << "LENGTH" << entry("unit", "deg");
        QTest::newRow("power out of range") << "LENGTH" << entry("power", "31");
        QTest::newRow("grouping not a boolean") << "LENGTH" << entry("grouping", "maybe");
    }
    void userFormatsBadEntries()
    {
        const auto [classKey, entry] = UserFormatsBadEntriesRow::fetch();
        const QVariantMap before = KbbUserStringFormats::toVariantMap();

        // A good entry beside the bad one is still taken.
        const KbbStringFormat angles = format(FIXED, 4, false, 0, "grad");
        QVariantMap map{{classKey, entry}, {QStringLiteral("ANGLE"), angles.toVariantMap()}};
        expectWarning("^KbbUserStringFormats::|^KbbStringFormat::");
        KbbUserStringFormats::fromVariantMap(map);

        QCOMPARE(userFormat(KbuEUnitClass::ANGLE), angles);
        QVariantMap after = KbbUserStringFormats::toVariantMap();
        after.insert(QStringLiteral("ANGLE"), before.value(QStringLiteral("ANGLE")));
        QCOMPARE(after, before);
    }
    // The user's formats go through the preferences file (where every value is a string) and
    // back, as at the next start, also at the ends of the digits and powers.
    void userFormatsInPreferences()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        VupPreferenceRegistry* registry = VupPreferenceRegistry::getInstance();
        registry->setStorageFile(dir.filePath(QStringLiteral("preferences.ini")));

        const KbbStringFormat coordinates = format(FIXED, 3, true, 0, "ftUS");
        const KbbStringFormat lengths = format(SCIENTIFIC, 17, true, -30, "ft");
        const KbbStringFormat angles = format(GENERAL, 0, false, 30, "grad");
        QCOMPARE(userFormat(KbuEUnitClass::COORDINATE).getUnit().getKey(), QStringLiteral("m"));
        KbbUserStringFormats::setStringFormat(KbuEUnitClass::COORDINATE, coordinates);
        KbbUserStringFormats::setStringFormat(KbuEUnitClass::LENGTH, lengths);
        KbbUserStringFormats::setStringFormat(KbuEUnitClass::ANGLE, angles);
        const QVariantMap saved = KbbUserStringFormats::toVariantMap();
        QCOMPARE(saved.size(), KbuEUnitClass::count());
        VupUserStringFormats::save(registry);
        registry->setStorageFile(dir.filePath(QStringLiteral("preferences.ini")));
        KbbUserStringFormats::resetToDefaults();
        QCOMPARE(userFormat(KbuEUnitClass::LENGTH), defaultFormat(KbuEUnitClass::LENGTH));
        VupUserStringFormats::load(registry);
        QCOMPARE(userFormat(KbuEUnitClass::COORDINATE), coordinates);
        QCOMPARE(userFormat(KbuEUnitClass::LENGTH), lengths);
        QCOMPARE(userFormat(KbuEUnitClass::ANGLE), angles);
        QCOMPARE(KbbUserStringFormats::toVariantMap(), saved);

        // A unit of another class is refused.
        expectWarning("^KbbUserStringFormats::setStringFormat");
        KbbUserStringFormats::setStringFormat(KbuEUnitClass::ANGLE, metres());
        QCOMPARE(userFormat(KbuEUnitClass::ANGLE), angles);

        // A damaged entry in the file is skipped; the other classes still load.
        registry->setValue(VupUserStringFormats::GROUP, QStringLiteral("LENGTH/digits"), QStringLiteral("lots"));
        KbbUserStringFormats::resetToDefaults();
        // AREA was saved with its default; a changed AREA shows that it is read again.
        const KbbStringFormat hectares = format(FIXED, 1, false, 0, "ha");
        KbbUserStringFormats::setStringFormat(KbuEUnitClass::AREA, hectares);
        expectWarning("^KbbStringFormat::fromVariantMap: .*digits");
        VupUserStringFormats::load(registry);
        QCOMPARE(userFormat(KbuEUnitClass::LENGTH), defaultFormat(KbuEUnitClass::LENGTH));
        QCOMPARE(userFormat(KbuEUnitClass::AREA), defaultFormat(KbuEUnitClass::AREA));
        QCOMPARE(userFormat(KbuEUnitClass::COORDINATE), coordinates);
    }
};

QTEST_GUILESS_MAIN(TestStringFormat)
#include "tst_stringformat.moc"
