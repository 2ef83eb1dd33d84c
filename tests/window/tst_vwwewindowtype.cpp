#include <KbeProgrammingError.h>
#include <VwwEWindowType.h>
#include <VwwWindowTypeFlags.h>

#include <QtTest>

Q_DECLARE_METATYPE(VwwEWindowType)
Q_DECLARE_METATYPE(VwwWindowTypeFlags)

class TestWindowType : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void instancesInValueOrder()
    {
        QStringList keys;
        QList<int> values;
        for (auto it = VwwEWindowType::createIterator(); it.hasNext();) {
            const VwwEWindowType& t = it.next();
            keys << QLatin1String(t.getKey());
            values << t.getValue();
        }
        QCOMPARE(VwwEWindowType::count(), 7);
        QCOMPARE(keys, QStringList({"REPORTER", "DISPLAY", "SPREADSHEET", "TASK", "MESSAGES", "DEBUG_WINDOW",
                                    "BATCH_EDITOR"}));
        QCOMPARE(values, QList<int>({0, 1, 2, 3, 4, 5, 6}));
        QCOMPARE(VwwEWindowType::DEBUG_WINDOW.getLabel(), QStringLiteral("Debug"));
        QCOMPARE(VwwEWindowType::BATCH_EDITOR.getLabel(), QStringLiteral("Batch-Editor"));
    }

    void defaultIsDisplayAndOrderIsByValue()
    {
        QCOMPARE(VwwEWindowType(), VwwEWindowType::DISPLAY);
        QVERIFY(VwwEWindowType::REPORTER < VwwEWindowType::DISPLAY);
        QVERIFY(VwwEWindowType::BATCH_EDITOR >= VwwEWindowType::DEBUG_WINDOW);
        QVERIFY(VwwEWindowType::TASK != VwwEWindowType::MESSAGES);
        VwwEWindowType copy = VwwEWindowType::TASK;
        copy = VwwEWindowType::MESSAGES;
        QCOMPARE(copy.toEnum(), VwwEWindowType::MESSAGES_V);
    }

    void lookups_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("exists");
        QTest::addColumn<int>("value"); // -1: the lookup without fallback throws

        QTest::newRow("key exact") << "key" << "TASK" << true << 3;
        QTest::newRow("key lower case") << "key" << "task" << false << -1;
        QTest::newRow("key with the label's hyphen") << "key" << "BATCH-EDITOR" << false << -1;
        QTest::newRow("key of the debug window") << "key" << "DEBUG_WINDOW" << true << 5;
        QTest::newRow("key empty") << "key" << "" << false << -1;
        QTest::newRow("label exact") << "label" << "Reporter" << true << 0;
        QTest::newRow("label other case exists yet fails") << "label" << "reporter" << true << -1;
        QTest::newRow("label of the batch editor") << "label" << "Batch-Editor" << true << 6;
        QTest::newRow("label that is a key") << "label" << "DEBUG_WINDOW" << false << -1;
        QTest::newRow("value known") << "value" << "4" << true << 4;
        QTest::newRow("value unknown") << "value" << "7" << false << -1;
        QTest::newRow("value negative") << "value" << "-1" << false << -1;
    }

    void lookups()
    {
        QFETCH(QString, kind);
        QFETCH(QString, text);
        QFETCH(bool, exists);
        QFETCH(int, value);

        bool existsNow = false;
        std::function<const VwwEWindowType&()> lookup;
        std::function<VwwEWindowType(const VwwEWindowType&)> withFallback;
        if (kind == QLatin1String("key")) {
            existsNow = VwwEWindowType::existsKey(text);
            lookup = [&] { return std::cref(VwwEWindowType::fromKey(text)); };
            withFallback = [&](const VwwEWindowType& f) { return VwwEWindowType::fromKey(text, f); };
        } else if (kind == QLatin1String("label")) {
            existsNow = VwwEWindowType::existsLabel(text);
            lookup = [&] { return std::cref(VwwEWindowType::fromLabel(text)); };
            withFallback = [&](const VwwEWindowType& f) { return VwwEWindowType::fromLabel(text, f); };
        } else {
            existsNow = VwwEWindowType::existsValue(text.toInt());
            lookup = [&] { return std::cref(VwwEWindowType::fromValue(text.toInt())); };
            withFallback = [&](const VwwEWindowType& f) { return VwwEWindowType::fromValue(text.toInt(), f); };
        }
        QCOMPARE(existsNow, exists);

        if (value >= 0) {
            QCOMPARE(lookup().getValue(), value);
            QCOMPARE(withFallback(VwwEWindowType::REPORTER).getValue(), value);
        } else {
            try {
                lookup();
                QFAIL("the lookup did not throw");
            } catch (const KbeProgrammingError& e) {
                QVERIFY2(e.getMessage().contains(QStringLiteral("' in file 'Vw' failed:\n\n") + text +
                                                 QStringLiteral(" is not valid")),
                         qPrintable(e.getMessage()));
                QVERIFY(e.getMessage().startsWith(QLatin1Char('\'')));
            }
            QCOMPARE(withFallback(VwwEWindowType::REPORTER), VwwEWindowType::REPORTER);
        }
    }

    void flagConstants_data()
    {
        QTest::addColumn<VwwWindowTypeFlags>("flags");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<int>("setCount");

        QTest::newRow("NONE") << VwwWindowTypeFlags::NONE << "" << 0;
        QTest::newRow("ANY") << VwwWindowTypeFlags::ANY
                             << "REPORTER|DISPLAY|SPREADSHEET|TASK|MESSAGES|DEBUG_WINDOW|BATCH_EDITOR" << 7;
        QTest::newRow("APPLICATION in value order") << VwwWindowTypeFlags::APPLICATION << "REPORTER|MESSAGES|DEBUG_WINDOW" << 3;
        QTest::newRow("USER is the complement") << VwwWindowTypeFlags::USER << "DISPLAY|SPREADSHEET|TASK|BATCH_EDITOR" << 4;
        QTest::newRow("one type") << VwwWindowTypeFlags(VwwEWindowType::TASK) << "TASK" << 1;
        QTest::newRow("list given out of order")
            << VwwWindowTypeFlags{VwwEWindowType::DISPLAY, VwwEWindowType::REPORTER} << "REPORTER|DISPLAY" << 2;
        QTest::newRow("union of sets") << VwwWindowTypeFlags{VwwWindowTypeFlags(VwwEWindowType::TASK),
                                                             VwwWindowTypeFlags::APPLICATION}
                                       << "REPORTER|TASK|MESSAGES|DEBUG_WINDOW" << 4;
        QTest::newRow("complement of ANY") << ~VwwWindowTypeFlags::ANY << "" << 0;
    }

    void flagConstants()
    {
        QFETCH(VwwWindowTypeFlags, flags);
        QFETCH(QString, keys);
        QFETCH(int, setCount);
        QCOMPARE(flags.getKeys(), keys);
        QCOMPARE(flags.count(true), setCount);
        QCOMPARE(flags.count(false), 7 - setCount);
        QCOMPARE(flags.toList().size(), setCount);
        QCOMPARE(~~flags, flags);
    }

    void setKeys_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("keys");
        QTest::newRow("known and unknown") << "TASK|NOPE" << "TASK";
        QTest::newRow("empty clears all") << "" << "";
        QTest::newRow("lower case ignored") << "task|DISPLAY" << "DISPLAY";
        QTest::newRow("empty parts kept") << "|REPORTER||" << "REPORTER";
        QTest::newRow("blanks are part of the key") << " TASK" << "";
        QTest::newRow("round trip of ANY") << VwwWindowTypeFlags::ANY.getKeys() << VwwWindowTypeFlags::ANY.getKeys();
    }

    void setKeys()
    {
        QFETCH(QString, text);
        QFETCH(QString, keys);
        VwwWindowTypeFlags flags = VwwWindowTypeFlags::ANY; // every type not named is cleared
        flags.setKeys(text);
        QCOMPARE(flags.getKeys(), keys);
    }

    void setOperations()
    {
        VwwWindowTypeFlags flags;
        flags.addFlag(VwwEWindowType::TASK);
        flags.addFlags(VwwWindowTypeFlags::APPLICATION);
        QVERIFY(flags.testFlag(VwwEWindowType::MESSAGES));
        QVERIFY(flags.testFlags(VwwWindowTypeFlags::APPLICATION));
        QVERIFY(!flags.testFlags(VwwWindowTypeFlags::USER));
        QVERIFY(flags.testFlag(VwwWindowTypeFlags::USER)); // TASK is shared
        flags.removeFlags(VwwWindowTypeFlags::APPLICATION);
        QCOMPARE(flags, VwwWindowTypeFlags(VwwEWindowType::TASK));
        flags.removeFlag(VwwEWindowType::TASK);
        QCOMPARE(flags, VwwWindowTypeFlags::NONE);
        QVERIFY(!flags.testFlag(VwwWindowTypeFlags::ANY));
        QVERIFY(flags != VwwWindowTypeFlags::ANY);
    }
};

QTEST_GUILESS_MAIN(TestWindowType)
#include "tst_vwwewindowtype.moc"
