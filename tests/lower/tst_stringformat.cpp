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
#include <limits>

Q_DECLARE_METATYPE(KbbStringFormat)

namespace {

KbbStringFormat format(KbbStringFormat::Notation notation, int digits, bool grouping = false, int power = 0,
                       const QString& unitKey = QString())
{
    return KbbStringFormat(notation, digits, KbuUnit::fromKey(unitKey), grouping, power);
}

KbbStringFormat metres(int power = 0)
{
    return format(KbbStringFormat::FIXED, 2, false, power, QStringLiteral("m"));
}

// "_" in an expected text stands for the locale's group separator, which differs between
// Qt versions for some locales (French uses a narrow no-break space).
QString withGroupSeparator(QString text, const QLocale& locale)
{
    return text.replace(QLatin1Char('_'), locale.groupSeparator());
}

} // namespace

namespace QTest {
template <>
char* toString(const KbbStringFormat& f)
{
    return qstrdup(QStringLiteral("KbbStringFormat(notation %1, digits %2, grouping %3, unit '%4', power %5)")
                       .arg(f.getNotation())
                       .arg(f.getDigits())
                       .arg(f.hasGrouping())
                       .arg(f.getUnit().getKey())
                       .arg(f.getPower())
                       .toUtf8()
                       .constData());
}
} // namespace QTest

class TestStringFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { KbbUserStringFormats::resetToDefaults(); }

    void valueToString_data();
    void valueToString();
    void nonFiniteIsEmpty_data();
    void nonFiniteIsEmpty();
    void writeThenRead_data();
    void writeThenRead();
    void stringToValue_data();
    void stringToValue();
    void hostileText_data();
    void hostileText();
    void boundsAreClamped();
    void unitSymbolAndPlaceholder_data();
    void unitSymbolAndPlaceholder();
    void variantMapRoundTrip_data();
    void variantMapRoundTrip();
    void userFormatsRoundTrip();
    void userFormatsBadEntries_data();
    void userFormatsBadEntries();
    void userFormatsInPreferences();
};

void TestStringFormat::valueToString_data()
{
    QTest::addColumn<KbbStringFormat>("fmt");
    QTest::addColumn<QString>("localeName");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");

    const auto F = KbbStringFormat::FIXED;
    const auto S = KbbStringFormat::SCIENTIFIC;
    const auto G = KbbStringFormat::GENERAL;

    QTest::newRow("fixed 2, C") << format(F, 2) << "C" << 1234.567 << "1234.57";
    QTest::newRow("fixed 2 grouped, C") << format(F, 2, true) << "C" << 1234.567 << "1_234.57";
    QTest::newRow("fixed 2 grouped, en_US") << format(F, 2, true) << "en_US" << 1234.567 << "1_234.57";
    QTest::newRow("fixed 2 grouped, fr_FR") << format(F, 2, true) << "fr_FR" << 1234.567 << "1_234,57";
    QTest::newRow("fixed 2 ungrouped, fr_FR") << format(F, 2) << "fr_FR" << 1234.567 << "1234,57";
    QTest::newRow("fixed 2 grouped, de_DE") << format(F, 2, true) << "de_DE" << 1234.567 << "1_234,57";
    QTest::newRow("fixed 1 grouped millions, de_DE")
        << format(F, 1, true) << "de_DE" << -1234567.89 << "-1_234_567,9";
    QTest::newRow("fixed 0") << format(F, 0) << "C" << 99.4 << "99";
    QTest::newRow("fixed 17 digits") << format(F, 17) << "C" << 0.1 << "0.10000000000000001";
    QTest::newRow("fixed tiny negative is unsigned zero") << format(F, 2) << "C" << -0.001 << "0.00";
    QTest::newRow("fixed negative zero") << format(F, 2) << "C" << -0.0 << "0.00";
    QTest::newRow("scientific 3, C") << format(S, 3) << "C" << 12345.678 << "1.235e+04";
    QTest::newRow("scientific 2, fr_FR") << format(S, 2) << "fr_FR" << 0.000123 << "1,23e-04";
    QTest::newRow("scientific 0, de_DE") << format(S, 0) << "de_DE" << -7.0e-300 << "-7e-300";
    QTest::newRow("general 6 large, C") << format(G, 6) << "C" << 1234567.0 << "1.23457e+06";
    QTest::newRow("general 6 drops zeros, C") << format(G, 6) << "C" << 0.5 << "0.5";
    QTest::newRow("general 6, de_DE") << format(G, 6) << "de_DE" << 3.14159265 << "3,14159";
    QTest::newRow("general 0 shows one digit") << format(G, 0) << "C" << 1234.0 << "1e+03";
    QTest::newRow("power 3 fixed") << format(F, 2, false, 3) << "C" << 12500.0 << "12.50";
    QTest::newRow("power 3 general") << format(G, 6, false, 3) << "C" << 12500.0 << "12.5";
    QTest::newRow("power -2 fixed, fr_FR") << format(F, 2, false, -2) << "fr_FR" << 0.125 << "12,50";
    QTest::newRow("power 6 grouped, en_US") << format(F, 1, true, 6) << "en_US" << 2.5e12 << "2_500_000.0";
}

void TestStringFormat::valueToString()
{
    QFETCH(KbbStringFormat, fmt);
    QFETCH(QString, localeName);
    QFETCH(double, value);
    QFETCH(QString, expected);
    const QLocale locale(localeName);
    QCOMPARE(fmt.valueToString(value, locale), withGroupSeparator(expected, locale));
}

void TestStringFormat::nonFiniteIsEmpty_data()
{
    QTest::addColumn<double>("value");
    QTest::newRow("undefined") << KbbGlobal::D_FFFF;
    QTest::newRow("nan") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("+inf") << std::numeric_limits<double>::infinity();
    QTest::newRow("-inf") << -std::numeric_limits<double>::infinity();
}

void TestStringFormat::nonFiniteIsEmpty()
{
    QFETCH(double, value);
    for (auto notation : {KbbStringFormat::FIXED, KbbStringFormat::SCIENTIFIC, KbbStringFormat::GENERAL})
        QCOMPARE(format(notation, 4, true, 3).valueToString(value, QLocale::c()), QString());
}

void TestStringFormat::writeThenRead_data()
{
    QTest::addColumn<QString>("localeName");
    QTest::addColumn<int>("power");
    QTest::addColumn<double>("value");

    // 17 significant digits write every double exactly: reading must give it back, whatever
    // the separators of the locale.
    for (const char* name : {"C", "en_US", "fr_FR", "de_DE"})
        for (int power : {0, 3, -2})
            for (double v : {M_PI * 1e5, -2.5e-7, 123456789.125, 1.0e300, -0.0625})
                QTest::addRow("%s power %d %g", name, power, v) << QString::fromLatin1(name) << power << v;
}

void TestStringFormat::writeThenRead()
{
    QFETCH(QString, localeName);
    QFETCH(int, power);
    QFETCH(double, value);
    const QLocale locale(localeName);
    for (bool grouping : {false, true}) {
        const KbbStringFormat fmt = format(KbbStringFormat::GENERAL, 17, grouping, power, QStringLiteral("m"));
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

void TestStringFormat::stringToValue_data()
{
    QTest::addColumn<KbbStringFormat>("fmt");
    QTest::addColumn<QString>("localeName");
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("expected");

    const KbbStringFormat plain = format(KbbStringFormat::GENERAL, 6);
    QTest::newRow("C point") << plain << "C" << "1.5" << 1.5;
    QTest::newRow("fr_FR comma") << plain << "fr_FR" << "1,5" << 1.5;
    QTest::newRow("fr_FR falls back to C point") << plain << "fr_FR" << "1.5" << 1.5;
    QTest::newRow("de_DE comma") << plain << "de_DE" << "-1,5" << -1.5;
    QTest::newRow("de_DE grouped") << plain << "de_DE" << "1.234,5" << 1234.5;
    QTest::newRow("en_US grouped") << plain << "en_US" << "1,234.5" << 1234.5;
    QTest::newRow("fr_FR grouped") << plain << "fr_FR" << "1_234,5" << 1234.5;
    QTest::newRow("exponent") << plain << "C" << "1.5e3" << 1500.0;
    QTest::newRow("exponent fr_FR") << plain << "fr_FR" << "2,5E-3" << 0.0025;
    QTest::newRow("blanks around") << plain << "C" << " \t 42  " << 42.0;
    QTest::newRow("metre symbol") << metres() << "C" << "12.5 m" << 12.5;
    QTest::newRow("metre symbol upper case") << metres() << "C" << "12.5 M" << 12.5;
    QTest::newRow("metre symbol without blank") << metres() << "de_DE" << "12,5M" << 12.5;
    QTest::newRow("US foot symbol any case")
        << format(KbbStringFormat::FIXED, 2, false, 0, QStringLiteral("ftUS")) << "C" << "3 FT (us)" << 3.0;
    QTest::newRow("US foot key") << format(KbbStringFormat::FIXED, 2, false, 0, QStringLiteral("ftUS")) << "C"
                                 << "3ftUS" << 3.0;
    QTest::newRow("square metre symbol") << format(KbbStringFormat::FIXED, 2, false, 0, QStringLiteral("m2"))
                                         << "C" << QStringLiteral("4 m\u00B2") << 4.0;
    QTest::newRow("square metre key") << format(KbbStringFormat::FIXED, 2, false, 0, QStringLiteral("m2")) << "C"
                                      << "4 M2" << 4.0;
    QTest::newRow("degree sign") << format(KbbStringFormat::FIXED, 2, false, 0, QStringLiteral("deg")) << "fr_FR"
                                 << QStringLiteral("45,5\u00B0") << 45.5;
    QTest::newRow("power 3") << metres(3) << "C" << "12.5" << 12500.0;
    QTest::newRow("power 3 with symbol") << metres(3) << "C" << "12.5 m" << 12500.0;
    QTest::newRow("power -2") << metres(-2) << "C" << "12.5" << 0.125;
}

void TestStringFormat::stringToValue()
{
    QFETCH(KbbStringFormat, fmt);
    QFETCH(QString, localeName);
    QFETCH(QString, text);
    QFETCH(double, expected);
    const QLocale locale(localeName);
    double value = 0;
    QVERIFY(fmt.stringToValue(withGroupSeparator(text, locale), value, locale));
    QCOMPARE(value, expected);
}

void TestStringFormat::hostileText_data()
{
    QTest::addColumn<KbbStringFormat>("fmt");
    QTest::addColumn<QString>("localeName");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("mustFail");

    const KbbStringFormat plain = format(KbbStringFormat::GENERAL, 6);
    QTest::newRow("empty") << plain << "C" << "" << true;
    QTest::newRow("blanks") << plain << "C" << "   \t " << true;
    QTest::newRow("no-break space") << plain << "fr_FR" << QStringLiteral("\u00A0\u202F") << true;
    QTest::newRow("nan") << plain << "C" << "nan" << true;
    QTest::newRow("inf") << plain << "C" << "inf" << true;
    QTest::newRow("-inf") << plain << "C" << "-inf" << true;
    QTest::newRow("overflow") << plain << "C" << "1e309" << true;
    QTest::newRow("negative overflow") << plain << "fr_FR" << "-1e309" << true;
    QTest::newRow("overflow through the power") << metres(3) << "C" << "1e306" << true;
    QTest::newRow("4 KB of digits") << plain << "C" << QString(4096, QLatin1Char('9')) << true;
    QTest::newRow("a number after 300 blanks") << plain << "C" << QString(300, QLatin1Char(' ')) + "1" << true;
    QTest::newRow("double point") << plain << "C" << "12..5" << true;
    QTest::newRow("exponent without digits") << plain << "C" << "1e" << true;
    QTest::newRow("double minus") << plain << "C" << "--3" << true;
    QTest::newRow("hexadecimal") << plain << "C" << "0x10" << true;
    QTest::newRow("another unit") << metres() << "C" << "12 kg" << true;
    QTest::newRow("a longer unit") << metres() << "C" << "12 km" << true;
    QTest::newRow("symbol alone") << metres() << "C" << "m" << true;
    QTest::newRow("symbol twice") << metres() << "C" << "12 m m" << true;
    QTest::newRow("trailing garbage") << plain << "C" << "12abc" << true;
    QTest::newRow("two numbers") << plain << "C" << "1 2" << true;
    QTest::newRow("vulgar fraction") << plain << "C" << QStringLiteral("\u00BD") << true;
    QTest::newRow("control characters") << plain << "C" << QStringLiteral("1\u00002") << true;
    // Another locale's separators: either refused or read as some finite number.
    QTest::newRow("comma decimal in en_US") << plain << "en_US" << "1,5" << false;
    QTest::newRow("point decimal in de_DE") << plain << "de_DE" << "1.5" << false;
    QTest::newRow("en_US grouping in fr_FR") << plain << "fr_FR" << "1,234.5" << false;
    QTest::newRow("de_DE grouping in en_US") << plain << "en_US" << "1.234,5" << false;
    QTest::newRow("arabic-indic digits") << plain << "C" << QStringLiteral("\u0661\u0662") << false;
}

void TestStringFormat::hostileText()
{
    QFETCH(KbbStringFormat, fmt);
    QFETCH(QString, localeName);
    QFETCH(QString, text);
    QFETCH(bool, mustFail);
    const double untouched = 777.0;
    double value = untouched;
    const bool ok = fmt.stringToValue(text, value, QLocale(localeName));
    if (mustFail)
        QVERIFY2(!ok, qPrintable(QString::number(value, 'g', 17)));
    if (ok)
        QVERIFY(std::isfinite(value));
    else
        QCOMPARE(value, untouched);
}

void TestStringFormat::boundsAreClamped()
{
    KbbStringFormat fmt;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^KbbStringFormat::setDigits: -1 ")));
    fmt.setDigits(-1);
    QCOMPARE(fmt.getDigits(), 0);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^KbbStringFormat::setDigits: 18 ")));
    fmt.setDigits(18);
    QCOMPARE(fmt.getDigits(), 17);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^KbbStringFormat::setPower: 400 ")));
    fmt.setPower(400);
    QCOMPARE(fmt.getPower(), KbbStringFormat::MAX_POWER);
    // A clamped format still writes and reads the largest doubles without overflow.
    fmt.setNotation(KbbStringFormat::SCIENTIFIC);
    double value = 0;
    QVERIFY(fmt.stringToValue(fmt.valueToString(1e300, QLocale::c()), value, QLocale::c()));
    QVERIFY(std::fabs(value - 1e300) <= 1e-15 * 1e300);
}

void TestStringFormat::unitSymbolAndPlaceholder_data()
{
    QTest::addColumn<KbbStringFormat>("fmt");
    QTest::addColumn<QString>("localeName");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<QString>("placeholder");

    QTest::newRow("metres") << metres() << "C" << "m" << "0.00";
    QTest::newRow("kilo-metres") << metres(3) << "fr_FR" << QStringLiteral("\u00D710\u00B3 m") << "0,00";
    QTest::newRow("milli, no unit") << format(KbbStringFormat::FIXED, 0, false, -12) << "C"
                                    << QStringLiteral("\u00D710\u207B\u00B9\u00B2") << "0";
    QTest::newRow("no unit") << format(KbbStringFormat::GENERAL, 4) << "de_DE" << "" << "0,000";
    QTest::newRow("scientific area") << format(KbbStringFormat::SCIENTIFIC, 2, false, 0, QStringLiteral("km2"))
                                     << "C" << QStringLiteral("km\u00B2") << "0.00e+00";
}

void TestStringFormat::unitSymbolAndPlaceholder()
{
    QFETCH(KbbStringFormat, fmt);
    QFETCH(QString, localeName);
    QFETCH(QString, symbol);
    QFETCH(QString, placeholder);
    QCOMPARE(fmt.getDisplayUnitSymbol(), symbol);
    QCOMPARE(fmt.getPlaceholderText(QLocale(localeName)), placeholder);
}

void TestStringFormat::variantMapRoundTrip_data()
{
    QTest::addColumn<KbbStringFormat>("fmt");
    QTest::newRow("default") << KbbStringFormat();
    QTest::newRow("scientific US feet grouped")
        << format(KbbStringFormat::SCIENTIFIC, 17, true, -30, QStringLiteral("ftUS"));
    QTest::newRow("general degrees power 30") << format(KbbStringFormat::GENERAL, 0, false, 30, QStringLiteral("deg"));
}

void TestStringFormat::variantMapRoundTrip()
{
    QFETCH(KbbStringFormat, fmt);
    KbbStringFormat back(KbbStringFormat::GENERAL, 9);
    QVERIFY(KbbStringFormat::fromVariantMap(fmt.toVariantMap(), back));
    QCOMPARE(back, fmt);

    // An INI file gives every value back as a string.
    QVariantMap strings = fmt.toVariantMap();
    for (auto it = strings.begin(); it != strings.end(); ++it)
        it.value() = it.value().toString();
    back = KbbStringFormat(KbbStringFormat::GENERAL, 9);
    QVERIFY(KbbStringFormat::fromVariantMap(strings, back));
    QCOMPARE(back, fmt);
}

void TestStringFormat::userFormatsRoundTrip()
{
    const KbbStringFormat coordinates = format(KbbStringFormat::FIXED, 3, true, 0, QStringLiteral("ftUS"));
    const KbbStringFormat areas = format(KbbStringFormat::GENERAL, 5, false, 4, QStringLiteral("ha"));
    QCOMPARE(KbbUserStringFormats::getStringFormat(KbuEUnitClass::COORDINATE).getUnit().getKey(), QStringLiteral("m"));
    KbbUserStringFormats::setStringFormat(KbuEUnitClass::COORDINATE, coordinates);
    KbbUserStringFormats::setStringFormat(KbuEUnitClass::AREA, areas);
    const QVariantMap saved = KbbUserStringFormats::toVariantMap();
    QCOMPARE(saved.size(), KbuEUnitClass::count());

    KbbUserStringFormats::resetToDefaults();
    QCOMPARE(KbbUserStringFormats::getStringFormat(KbuEUnitClass::AREA),
             KbbUserStringFormats::getDefaultStringFormat(KbuEUnitClass::AREA));
    KbbUserStringFormats::fromVariantMap(saved);
    QCOMPARE(KbbUserStringFormats::getStringFormat(KbuEUnitClass::COORDINATE), coordinates);
    QCOMPARE(KbbUserStringFormats::getStringFormat(KbuEUnitClass::AREA), areas);
    QCOMPARE(KbbUserStringFormats::toVariantMap(), saved);

    // A unit of another class is refused.
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^KbbUserStringFormats::setStringFormat")));
    KbbUserStringFormats::setStringFormat(KbuEUnitClass::ANGLE, metres());
    QCOMPARE(KbbUserStringFormats::getStringFormat(KbuEUnitClass::ANGLE).getUnit().getKey(), QStringLiteral("deg"));
}

void TestStringFormat::userFormatsBadEntries_data()
{
    QTest::addColumn<QString>("classKey");
    QTest::addColumn<QVariant>("entry");

    const auto entry = [](const QString& field, const QVariant& value) {
        QVariantMap m = format(KbbStringFormat::FIXED, 4, false, 0, QStringLiteral("km")).toVariantMap();
        if (value.isValid())
            m.insert(field, value);
        else
            m.remove(field);
        return QVariant(m);
    };
    QTest::newRow("unknown class") << "VOLUME" << entry(QString(), QVariant());
    QTest::newRow("class key in lower case") << "length" << entry(QString(), QVariant());
    QTest::newRow("not a map") << "LENGTH" << QVariant(QStringLiteral("FIXED;2;m"));
    QTest::newRow("empty map") << "LENGTH" << QVariant(QVariantMap());
    QTest::newRow("unknown notation") << "LENGTH" << entry("notation", "BOLD");
    QTest::newRow("missing digits") << "LENGTH" << entry("digits", QVariant());
    QTest::newRow("digits out of range") << "LENGTH" << entry("digits", 99);
    QTest::newRow("digits not a number") << "LENGTH" << entry("digits", "two");
    QTest::newRow("digits fractional") << "LENGTH" << entry("digits", 2.5);
    QTest::newRow("unknown unit") << "LENGTH" << entry("unit", "parsec");
    QTest::newRow("unit of another class") << "LENGTH" << entry("unit", "deg");
    QTest::newRow("power out of range") << "LENGTH" << entry("power", "31");
    QTest::newRow("grouping not a boolean") << "LENGTH" << entry("grouping", "maybe");
}

void TestStringFormat::userFormatsBadEntries()
{
    QFETCH(QString, classKey);
    QFETCH(QVariant, entry);
    const QVariantMap before = KbbUserStringFormats::toVariantMap();

    // A good entry beside the bad one is still taken.
    const KbbStringFormat angles = format(KbbStringFormat::FIXED, 4, false, 0, QStringLiteral("grad"));
    QVariantMap map{{classKey, entry}, {QStringLiteral("ANGLE"), angles.toVariantMap()}};
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("^KbbUserStringFormats::|^KbbStringFormat::")));
    KbbUserStringFormats::fromVariantMap(map);

    QCOMPARE(KbbUserStringFormats::getStringFormat(KbuEUnitClass::ANGLE), angles);
    QVariantMap after = KbbUserStringFormats::toVariantMap();
    after.insert(QStringLiteral("ANGLE"), before.value(QStringLiteral("ANGLE")));
    QCOMPARE(after, before);
}

void TestStringFormat::userFormatsInPreferences()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    VupPreferenceRegistry* registry = VupPreferenceRegistry::getInstance();
    registry->setStorageFile(dir.filePath(QStringLiteral("preferences.ini")));

    const KbbStringFormat lengths = format(KbbStringFormat::SCIENTIFIC, 5, true, -3, QStringLiteral("ft"));
    KbbUserStringFormats::setStringFormat(KbuEUnitClass::LENGTH, lengths);
    VupUserStringFormats::save(registry);
    // Written to disk and read back by a fresh store, as at the next start.
    registry->setStorageFile(dir.filePath(QStringLiteral("preferences.ini")));
    KbbUserStringFormats::resetToDefaults();
    VupUserStringFormats::load(registry);
    QCOMPARE(KbbUserStringFormats::getStringFormat(KbuEUnitClass::LENGTH), lengths);

    // A damaged entry in the file is skipped; the other classes still load.
    registry->setValue(VupUserStringFormats::GROUP, QStringLiteral("LENGTH/digits"), QStringLiteral("lots"));
    KbbUserStringFormats::resetToDefaults();
    // AREA was saved with its default; a changed AREA shows that it is read again.
    const KbbStringFormat hectares = format(KbbStringFormat::FIXED, 1, false, 0, QStringLiteral("ha"));
    KbbUserStringFormats::setStringFormat(KbuEUnitClass::AREA, hectares);
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("^KbbStringFormat::fromVariantMap: .*digits")));
    VupUserStringFormats::load(registry);
    QCOMPARE(KbbUserStringFormats::getStringFormat(KbuEUnitClass::LENGTH),
             KbbUserStringFormats::getDefaultStringFormat(KbuEUnitClass::LENGTH));
    QCOMPARE(KbbUserStringFormats::getStringFormat(KbuEUnitClass::AREA),
             KbbUserStringFormats::getDefaultStringFormat(KbuEUnitClass::AREA));
}

QTEST_GUILESS_MAIN(TestStringFormat)
#include "tst_stringformat.moc"
