// The two windows that show the program's log: the debug window (every Qt message, from
// any thread) and the messages window (what KbbDebug prints, filtered by level).

#include "TestWindows.h"
#include "WindowFileHelpers.h"

#include <KbbDebug.h>
#include <VwwDebugWindow.h>
#include <VwwMessagesWindow.h>

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QLoggingCategory>
#include <QPlainTextEdit>
#include <QTreeView>
#include <QtTest>

Q_LOGGING_CATEGORY(lcDebugWindowTest, "velmora.test")

namespace {


QStringList shownLines(const VwwDebugWindow& window)
{
    const QString text = window.findChild<QPlainTextEdit*>(QStringLiteral("DEBUG_VIEW"))->toPlainText();
    return text.isEmpty() ? QStringList() : text.split(QLatin1Char('\n'));
}

void trigger(const VwwDebugWindow& window, const char* action)
{
    window.findChild<QAction*>(QLatin1String(action))->trigger();
}


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

class TestLogWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Installed twice, the handler must not chain to itself: each message is kept once.
        VwwDebugWindow::installMessageHandler();
        VwwDebugWindow::installMessageHandler();
        qInfo("installed twice");
        QCOMPARE(VwwDebugWindow::logLines().count(QStringLiteral("info: installed twice")), 1);
        // The test framework's handler, installed before, must still get the message.
        QTest::ignoreMessage(QtWarningMsg, "passed along");
        qWarning("passed along");
    }

    void init() { resetWindowFramework(); }
    void cleanup() { resetWindowFramework(); }

    void linesNameTypeAndCategory()
    {
        VwwDebugWindow window;
        trigger(window, "DEBUG_CLEAR");
        qDebug("a debug line");
        qInfo("an info line");
        qWarning("a warning line");
        qCritical("a critical line");
        qCWarning(lcDebugWindowTest, "a category line");
        const QStringList lines{"debug: a debug line", "info: an info line", "warning: a warning line",
                                "critical: a critical line", "warning [velmora.test]: a category line"};
        QCOMPARE(VwwDebugWindow::logLines(), lines);
        QTRY_COMPARE(shownLines(window), lines);
    }

    void bufferKeepsTheLastLines()
    {
        const int logged = VwwDebugWindow::MAX_LINES + 25;
        VwwDebugWindow window;
        trigger(window, "DEBUG_CLEAR");
        QVERIFY(VwwDebugWindow::logLines().isEmpty());
        for (int i = 0; i < logged; ++i)
            qDebug("line %d", i);
        const QStringList lines = VwwDebugWindow::logLines();
        QCOMPARE(lines.size(), int(VwwDebugWindow::MAX_LINES));
        QCOMPARE(lines.first(), QStringLiteral("debug: line 25"));
        QCOMPARE(lines.last(), QStringLiteral("debug: line %1").arg(logged - 1));
        QTRY_COMPARE(shownLines(window), lines);
        // A window made now shows the buffer at once, without waiting for queued lines.
        QCOMPARE(shownLines(VwwDebugWindow()), lines);
    }

    void linesFromOtherThreadsAndWindowsThatDie()
    {
        VwwDebugWindow window;
        WindowFiles::fromTwoThreads(100, [](const char* thread, int i) { qInfo("%s thread %d", thread, i); });
        QTRY_COMPARE(shownLines(window).filter(QStringLiteral("info: std thread")).size(), 100);
        QTRY_COMPARE(shownLines(window).filter(QStringLiteral("info: qt thread")).size(), 100);

        WindowFiles::windowsDieWhileAThreadSpeaks<VwwDebugWindow>([] { qDebug("busy"); });
        qWarning("still listening");
        QTRY_COMPARE(shownLines(window).last(), QStringLiteral("warning: still listening"));
    }

    void saveLogFromTheToolbar()
    {
        QTemporaryDir dir;
        VwwDebugWindow window;
        trigger(window, "DEBUG_CLEAR");
        qWarning("first saved line");
        qCWarning(lcDebugWindowTest, "second saved line");
        QTRY_COMPARE(shownLines(window).size(), 2);

        WindowFiles::answerFileDialog(dir.filePath(QStringLiteral("session"))); // no suffix typed
        trigger(window, "DEBUG_SAVE");

        // The dialog itself may log while it is open: those lines come after.
        const QStringList lines =
            QString::fromUtf8(WindowFiles::read(dir.filePath(QStringLiteral("session.log")))).split(QLatin1Char('\n'));
        QCOMPARE(lines.mid(0, 2),
                 QStringList({"warning: first saved line", "warning [velmora.test]: second saved line"}));

        QVERIFY_EXCEPTION_THROWN(window.saveLog(dir.filePath(QStringLiteral("missing/log.txt"))), KbeError);
    }

    void levelFilterFromTheToolbar()
    {
        VwwMessagesWindow window;
        KbbDebug::printDebug(QStringLiteral("d"));
        KbbDebug::printInfo(QStringLiteral("i"));
        KbbDebug::printWarning(QStringLiteral("w"));
        KbbDebug::printError(QStringLiteral("e"));
        QTRY_COMPARE(window.messageCount(), 3);
        QCOMPARE(shownRows(window), QStringList({"Information|i", "Warning|w", "Error|e"})); // all but debug
        QVERIFY(!view(window)->model()->index(0, 1).data(Qt::DecorationRole).value<QIcon>().isNull());

        // Down the filter's list, to errors only and past its last entry.
        auto* combo = window.findChild<QComboBox*>(QStringLiteral("MESSAGES_LEVEL_FILTER"));
        QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(shownRows(window), QStringList({"Warning|w", "Error|e"}));
        QTest::keyClick(combo, Qt::Key_Down);
        QTest::keyClick(combo, Qt::Key_Down);
        QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(shownRows(window), QStringList({"Error|e"}));

        window.setMinimumLevel(KbbDebug::Level::Debug); // asks for everything
        QCOMPARE(combo->currentText(), QStringLiteral("All"));
        QCOMPARE(view(window)->model()->rowCount(), 3);
    }

    void messagesFromOtherThreadsAndWindowsThatDie()
    {
        VwwMessagesWindow window;
        WindowFiles::fromTwoThreads(100, [](const char* thread, int i) {
            thread[0] == 'q' ? KbbDebug::printError(QStringLiteral("qt %1").arg(i))
                             : KbbDebug::printWarning(QStringLiteral("std %1").arg(i));
        });
        QTRY_COMPARE(window.messageCount(), 200);
        const QStringList fromQt = shownRows(window).filter(QStringLiteral("|qt "));
        QCOMPARE(fromQt.first(), QStringLiteral("Error|qt 0"));
        QCOMPARE(fromQt.last(), QStringLiteral("Error|qt 99"));

        WindowFiles::windowsDieWhileAThreadSpeaks<VwwMessagesWindow>([] { KbbDebug::printInfo(QStringLiteral("busy")); });
        KbbDebug::printError(QStringLiteral("still listening"));
        QTRY_COMPARE(shownRows(window).last(), QStringLiteral("Error|still listening"));
    }

    void keepsTheNewestMessages()
    {
        const int added = VwwMessagesWindow::MAX_MESSAGES + 7;
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

    // The third row clicked, the first Ctrl+clicked: both are copied, in view order.
    void ctrlCCopiesTheSelectedRows()
    {
        const QList<int> clicked{2, 0};
        const QStringList copied{"Information\tfirst", "Error\tthird"};
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

QTEST_MAIN(TestLogWindows)
#include "tst_logwindows.moc"
