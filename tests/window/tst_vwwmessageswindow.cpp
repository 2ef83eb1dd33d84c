#include "TestWindows.h"

#include <KbbDebug.h>
#include <VwwMessagesWindow.h>

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QThread>
#include <QTreeView>
#include <QtTest>
#include <atomic>
#include <thread>

namespace {

QTreeView* view(const VwwMessagesWindow& window)
{
    return window.findChild<QTreeView*>(QStringLiteral("MESSAGES_VIEW"));
}

// The rows the user sees, as "level|text".
QStringList shownRows(const VwwMessagesWindow& window)
{
    const QAbstractItemModel* model = view(window)->model();
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row)
        rows << model->index(row, 1).data().toString() + QLatin1Char('|') + model->index(row, 2).data().toString();
    return rows;
}

} // namespace

class TestMessagesWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { resetWindowFramework(); }
    void cleanup() { resetWindowFramework(); }

    void levelFilterFromTheToolbar_data()
    {
        QTest::addColumn<int>("downPresses");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("all but debug") << 0 << QStringList{"Information|i", "Warning|w", "Error|e"};
        QTest::newRow("warnings and errors") << 1 << QStringList{"Warning|w", "Error|e"};
        QTest::newRow("errors") << 2 << QStringList{"Error|e"};
        QTest::newRow("past the last entry") << 5 << QStringList{"Error|e"};
    }

    void levelFilterFromTheToolbar()
    {
        QFETCH(int, downPresses);
        QFETCH(QStringList, shown);
        VwwMessagesWindow window;
        KbbDebug::printDebug(QStringLiteral("d"));
        KbbDebug::printInfo(QStringLiteral("i"));
        KbbDebug::printWarning(QStringLiteral("w"));
        KbbDebug::printError(QStringLiteral("e"));
        QTRY_COMPARE(window.messageCount(), 3);

        auto* combo = window.findChild<QComboBox*>(QStringLiteral("MESSAGES_LEVEL_FILTER"));
        for (int i = 0; i < downPresses; ++i)
            QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(shownRows(window), shown);
        QVERIFY(!view(window)->model()->index(0, 1).data(Qt::DecorationRole).value<QIcon>().isNull());

        window.setMinimumLevel(KbbDebug::Level::Debug); // asks for everything
        QCOMPARE(combo->currentText(), QStringLiteral("All"));
        QCOMPARE(view(window)->model()->rowCount(), 3);
    }

    void messagesFromOtherThreads()
    {
        VwwMessagesWindow window;
        constexpr int perThread = 100;
        std::thread worker([]() {
            for (int i = 0; i < perThread; ++i)
                KbbDebug::printWarning(QStringLiteral("std %1").arg(i));
        });
        QThread* qthread = QThread::create([]() {
            for (int i = 0; i < perThread; ++i)
                KbbDebug::printError(QStringLiteral("qt %1").arg(i));
        });
        qthread->start();
        worker.join();
        QVERIFY(qthread->wait(60000));
        delete qthread;
        QTRY_COMPARE(window.messageCount(), 2 * perThread);
        const QStringList fromQt = shownRows(window).filter(QStringLiteral("|qt "));
        QCOMPARE(fromQt.first(), QStringLiteral("Error|qt 0"));
        QCOMPARE(fromQt.last(), QStringLiteral("Error|qt %1").arg(perThread - 1));
    }

    void windowDiesWhileAThreadPrints()
    {
        std::atomic<bool> stop{false};
        std::thread printer([&stop]() {
            while (!stop)
                KbbDebug::printInfo(QStringLiteral("busy"));
        });
        for (int i = 0; i < 10; ++i) {
            auto* window = new VwwMessagesWindow;
            QTest::qWait(1);
            delete window;
        }
        stop = true;
        printer.join();
        VwwMessagesWindow survivor;
        KbbDebug::printError(QStringLiteral("still listening"));
        QTRY_COMPARE(shownRows(survivor), QStringList{"Error|still listening"});
    }

    void keepsTheNewestMessages_data()
    {
        QTest::addColumn<int>("added");
        QTest::newRow("at the limit") << VwwMessagesWindow::MAX_MESSAGES;
        QTest::newRow("beyond the limit") << VwwMessagesWindow::MAX_MESSAGES + 7;
    }

    void keepsTheNewestMessages()
    {
        QFETCH(int, added);
        VwwMessagesWindow window;
        for (int i = 0; i < added; ++i)
            window.addMessage(KbbDebug::Level::Warning, QString::number(i));
        const int kept = VwwMessagesWindow::MAX_MESSAGES;
        const QAbstractItemModel* model = view(window)->model();
        QCOMPARE(model->rowCount(), kept);
        QCOMPARE(model->index(0, 2).data().toString(), QString::number(added - kept));
        QCOMPARE(model->index(kept - 1, 2).data().toString(), QString::number(added - 1));

        auto* clear = window.findChild<QAction*>(QStringLiteral("MESSAGES_CLEAR"));
        QVERIFY(window.getToolbarActions(VwwAWindow::MAIN_TOOLBAR).contains(clear));
        clear->trigger();
        QCOMPARE(model->rowCount(), 0);
        QVERIFY(!clear->isEnabled());
    }

    void ctrlCCopiesTheSelectedRows_data()
    {
        QTest::addColumn<QList<int>>("clicked"); // the rows after the first are Ctrl+clicked
        QTest::addColumn<QStringList>("copied");
        QTest::newRow("one row") << QList<int>{1} << QStringList{"Warning\tsecond"};
        QTest::newRow("two rows, in view order") << QList<int>{2, 0}
                                                 << QStringList{"Information\tfirst", "Error\tthird"};
    }

    void ctrlCCopiesTheSelectedRows()
    {
        QFETCH(QList<int>, clicked);
        QFETCH(QStringList, copied);
        VwwMessagesWindow window;
        window.addMessage(KbbDebug::Level::Info, QStringLiteral("first"));
        window.addMessage(KbbDebug::Level::Warning, QStringLiteral("second"));
        window.addMessage(KbbDebug::Level::Error, QStringLiteral("third"));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTreeView* tree = view(window);
        QGuiApplication::clipboard()->clear();
        for (int i = 0; i < clicked.size(); ++i)
            QTest::mouseClick(tree->viewport(), Qt::LeftButton, i == 0 ? Qt::NoModifier : Qt::ControlModifier,
                              tree->visualRect(tree->model()->index(clicked.at(i), 2)).center());
        QTest::keyClick(tree, Qt::Key_C, Qt::ControlModifier);

        const QStringList lines = QGuiApplication::clipboard()->text().split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), copied.size());
        for (int i = 0; i < lines.size(); ++i) {
            const QString time = lines.at(i).section(QLatin1Char('\t'), 0, 0);
            QVERIFY(QTime::fromString(time, QStringLiteral("HH:mm:ss")).isValid());
            QCOMPARE(lines.at(i).section(QLatin1Char('\t'), 1), copied.at(i));
        }
    }
};

QTEST_MAIN(TestMessagesWindow)
#include "tst_vwwmessageswindow.moc"
