#include "DataRow.h"
#include <KbeProgrammingError.h>
#include <VwwEWindowType.h>
#include <VwwWindowTypeFlags.h>

#include <QtTest>

Q_DECLARE_METATYPE(VwwWindowTypeFlags)

// The column types of the tables below.
using LookupsRow = Row<QString, QString, bool, int>;
using FlagSetsRow = Row<VwwWindowTypeFlags, QString>;

class TestWindowType : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lookups_data()
    {
        // value: -1: the lookup without fallback throws
        LookupsRow::addColumns(); // kind, text, exists, value
        QTest::newRow("key exact") << "key" << "TASK" << true << 3;
        QTest::newRow("key lower case") << "key" << "task" << false << -1;
        QTest::newRow("label exact") << "label" << "Reporter" << true << 0;
        QTest::newRow("label with a hyphen") << "label" << "Batch-Editor" << true << 6;
        QTest::newRow("label other case exists yet fails") << "label" << "reporter" << true << -1;
        QTest::newRow("label that is a key") << "label" << "DEBUG_WINDOW" << false << -1;
        QTest::newRow("value known") << "value" << "4" << true << 4;
        QTest::newRow("value unknown") << "value" << "7" << false << -1;
        QTest::newRow("value negative") << "value" << "-1" << false << -1;
    }

    void lookups()
    {
        const auto [kind, text, exists, value] = LookupsRow::fetch();
        QCOMPARE(VwwEWindowType(), VwwEWindowType::DISPLAY); // what a window without a kind is
        const bool key = kind == QLatin1String("key"), label = kind == QLatin1String("label");
        const int number = text.toInt();
        const bool found = key ? VwwEWindowType::existsKey(text)
                               : label ? VwwEWindowType::existsLabel(text) : VwwEWindowType::existsValue(number);
        QCOMPARE(found, exists);
        // Without a fallback, an unknown text throws; with one, it gives the fallback (REPORTER).
        const VwwEWindowType& fallback = VwwEWindowType::REPORTER;
        const int withFallback = (key ? VwwEWindowType::fromKey(text, fallback)
                                      : label ? VwwEWindowType::fromLabel(text, fallback)
                                              : VwwEWindowType::fromValue(number, fallback))
                                     .getValue();
        QCOMPARE(withFallback, qMax(value, 0));
        try {
            const VwwEWindowType& type = key ? VwwEWindowType::fromKey(text)
                                             : label ? VwwEWindowType::fromLabel(text) : VwwEWindowType::fromValue(number);
            QCOMPARE(type.getValue(), value);
        } catch (const KbeProgrammingError& e) {
            QVERIFY2(value < 0 && e.getMessage().startsWith(QLatin1Char('\''))
                         && e.getMessage().contains(QStringLiteral("' in file 'Vw' failed:\n\n") + text
                                                    + QStringLiteral(" is not valid")),
                     qPrintable(e.getMessage()));
        }
    }

    void flagSets_data()
    {
        FlagSetsRow::addColumns(); // flags, keys
        QTest::newRow("NONE") << VwwWindowTypeFlags::NONE << "";
        QTest::newRow("ANY") << VwwWindowTypeFlags::ANY
                             << "REPORTER|DISPLAY|SPREADSHEET|TASK|MESSAGES|DEBUG_WINDOW|BATCH_EDITOR";
        QTest::newRow("APPLICATION") << VwwWindowTypeFlags::APPLICATION << "REPORTER|MESSAGES|DEBUG_WINDOW";
        QTest::newRow("USER is the complement") << VwwWindowTypeFlags::USER << "DISPLAY|SPREADSHEET|TASK|BATCH_EDITOR";
        QTest::newRow("list given out of order")
            << VwwWindowTypeFlags{VwwEWindowType::DISPLAY, VwwEWindowType::REPORTER} << "REPORTER|DISPLAY";
        QTest::newRow("union of sets") << VwwWindowTypeFlags{VwwWindowTypeFlags(VwwEWindowType::TASK),
                                                             VwwWindowTypeFlags::APPLICATION}
                                       << "REPORTER|TASK|MESSAGES|DEBUG_WINDOW";
    }

    void flagSets()
    {
        const auto [flags, keys] = FlagSetsRow::fetch();
        QCOMPARE(flags.getKeys(), keys);
        const int set = keys.isEmpty() ? 0 : keys.count(QLatin1Char('|')) + 1;
        QCOMPARE(flags.count(true), set);
        QCOMPARE(flags.count(false), 7 - set);
        QCOMPARE(~~flags, flags);
        // Read back from its keys, with every type not named cleared.
        VwwWindowTypeFlags read = VwwWindowTypeFlags::ANY;
        read.setKeys(keys);
        QCOMPARE(read, flags);
    }

    void setKeysSkipsWhatIsNoKey()
    {
        VwwWindowTypeFlags flags = VwwWindowTypeFlags::ANY;
        flags.setKeys(QStringLiteral("|task|NOPE| TASK||DISPLAY"));
        QCOMPARE(flags.getKeys(), QStringLiteral("DISPLAY"));
    }

    void setOperations()
    {
        VwwWindowTypeFlags flags;
        flags.addFlag(VwwEWindowType::TASK);
        flags.addFlags(VwwWindowTypeFlags::APPLICATION);
        QVERIFY(flags.testFlags(VwwWindowTypeFlags::APPLICATION));
        QVERIFY(!flags.testFlags(VwwWindowTypeFlags::USER));
        QVERIFY(flags.testFlag(VwwWindowTypeFlags::USER)); // TASK is shared
        flags.removeFlags(VwwWindowTypeFlags::APPLICATION);
        QCOMPARE(flags, VwwWindowTypeFlags(VwwEWindowType::TASK));
        flags.removeFlag(VwwEWindowType::TASK);
        QCOMPARE(flags, VwwWindowTypeFlags::NONE);
        QVERIFY(!flags.testFlag(VwwWindowTypeFlags::ANY));
    }
};

QTEST_GUILESS_MAIN(TestWindowType)
#include "tst_vwwewindowtype.moc"
