#include "TestWindows.h"

#include <VwwWindowModel.h>

#include <QSignalSpy>
#include <QtTest>
#include <map>
#include <memory>

class TestWindowModel : public QObject
{
    Q_OBJECT

    static QStringList titles(const VwwWindowModel& model)
    {
        QStringList list;
        for (int row = 0; row < model.rowCount(); ++row)
            list << model.index(row).data(Qt::DisplayRole).toString();
        return list;
    }

private Q_SLOTS:
    void init() { resetWindowFramework(); }
    void cleanup() { resetWindowFramework(); }

    void rowsFollowAddAndRemove_data()
    {
        QTest::addColumn<QStringList>("operations"); // "+name" adds, "-name" removes
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<int>("inserted");
        QTest::addColumn<int>("removed");
        QTest::newRow("in the order added") << QStringList{"+a", "+b", "+c"} << QStringList{"a", "b", "c"} << 3 << 0;
        QTest::newRow("first and last removed") << QStringList{"+a", "+b", "+c", "-a", "-c"} << QStringList{"b"} << 3
                                                << 2;
        QTest::newRow("adding twice keeps one row") << QStringList{"+a", "+b", "+a"} << QStringList{"a", "b"} << 2 << 0;
        QTest::newRow("unknown window removed") << QStringList{"+a", "-b", "-a", "-a"} << QStringList{} << 1 << 1;
        QTest::newRow("added again goes last") << QStringList{"+a", "+b", "-a", "+a"} << QStringList{"b", "a"} << 3
                                               << 1;
    }

    void rowsFollowAddAndRemove()
    {
        QFETCH(QStringList, operations);
        QFETCH(QStringList, rows);
        QFETCH(int, inserted);
        QFETCH(int, removed);
        std::map<QString, std::unique_ptr<TestWindow>> windows;
        for (const char* name : {"a", "b", "c"})
            windows[QLatin1String(name)] = std::make_unique<TestWindow>(QLatin1String(name));

        VwwWindowModel model;
        QSignalSpy insertSpy(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removeSpy(&model, &QAbstractItemModel::rowsRemoved);
        for (const QString& op : qAsConst(operations)) {
            VwwAWindow* window = windows.at(op.mid(1)).get();
            op.startsWith(QLatin1Char('+')) ? model.addWindow(window) : model.removeWindow(window);
        }
        QCOMPARE(titles(model), rows);
        QCOMPARE(insertSpy.count(), inserted);
        QCOMPARE(removeSpy.count(), removed);
        for (int row = 0; row < model.rowCount(); ++row)
            QCOMPARE(model.rowOf(model.windowAt(row)), row);
        QCOMPARE(model.windowAt(model.rowCount()), nullptr);
    }

    void titleChangeUpdatesOnlyItsRow_data()
    {
        QTest::addColumn<int>("changed");
        QTest::newRow("first row") << 0;
        QTest::newRow("middle row") << 1;
        QTest::newRow("last row") << 2;
    }

    void titleChangeUpdatesOnlyItsRow()
    {
        QFETCH(int, changed);
        TestWindow a(QStringLiteral("a")), b(QStringLiteral("b")), c(QStringLiteral("c"));
        TestWindow* windows[] = {&a, &b, &c};
        VwwWindowModel model;
        for (TestWindow* window : windows)
            model.addWindow(window);
        QSignalSpy spy(&model, &QAbstractItemModel::dataChanged);

        windows[changed]->setContentName(QStringLiteral("Porosity"));
        windows[changed]->setContentModified(true);
        QCOMPARE(spy.count(), 2);
        QCOMPARE(spy.at(0).at(0).toModelIndex().row(), changed);
        QCOMPARE(spy.at(0).at(1).toModelIndex().row(), changed);
        const QString shown = windows[changed]->getTitle() + QStringLiteral(" - Porosity*");
        QCOMPARE(model.index(changed).data(Qt::DisplayRole).toString(), shown);
        QCOMPARE(model.index(changed).data(Qt::ToolTipRole).toString(), shown);
        QCOMPARE(model.index(changed).data(VwwWindowModel::WindowIdRole).toInt(), windows[changed]->getWindowID());
        QVERIFY(!model.index(changed).data(Qt::DecorationRole).value<QIcon>().isNull());

        // A removed window no longer reaches the model.
        model.removeWindow(windows[changed]);
        spy.clear();
        windows[changed]->setContentModified(false);
        QCOMPARE(spy.count(), 0);
    }

    void deletedWindowLeavesNoRow()
    {
        VwwWindowModel model;
        TestWindow a(QStringLiteral("a"));
        auto* b = new TestWindow(QStringLiteral("b"));
        TestWindow c(QStringLiteral("c"));
        model.addWindow(&a);
        model.addWindow(b);
        model.addWindow(&c);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);

        delete b;
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.at(0).at(1).toInt(), 1);
        QCOMPARE(titles(model), QStringList({"a", "c"}));
        QCOMPARE(model.rowOf(&c), 1);
    }
};

QTEST_MAIN(TestWindowModel)
#include "tst_vwwwindowmodel.moc"
