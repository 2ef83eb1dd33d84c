#include "TestWindows.h"

#include <VwwDebugWindow.h>

#include <QAction>
#include <QFileDialog>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QPlainTextEdit>
#include <QThread>
#include <QtTest>
#include <atomic>
#include <thread>

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

} // namespace

class TestDebugWindow : public QObject
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

    void linesNameTypeAndCategory_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("line");
        QTest::newRow("debug") << 0 << "debug: a debug line";
        QTest::newRow("info") << 1 << "info: an info line";
        QTest::newRow("warning") << 2 << "warning: a warning line";
        QTest::newRow("critical") << 3 << "critical: a critical line";
        QTest::newRow("warning in a category") << 4 << "warning [velmora.test]: a category line";
    }

    void linesNameTypeAndCategory()
    {
        QFETCH(int, kind);
        QFETCH(QString, line);
        VwwDebugWindow window;
        switch (kind) {
        case 0: qDebug("a debug line"); break;
        case 1: qInfo("an info line"); break;
        case 2: qWarning("a warning line"); break;
        case 3: qCritical("a critical line"); break;
        default: qCWarning(lcDebugWindowTest, "a category line"); break;
        }
        QCOMPARE(VwwDebugWindow::logLines().last(), line);
        QTRY_COMPARE(shownLines(window).last(), line);
    }

    void bufferKeepsTheLastLines_data()
    {
        QTest::addColumn<int>("logged");
        QTest::newRow("a few") << 10;
        QTest::newRow("overflowing") << VwwDebugWindow::MAX_LINES + 25;
    }

    void bufferKeepsTheLastLines()
    {
        QFETCH(int, logged);
        VwwDebugWindow window;
        trigger(window, "DEBUG_CLEAR");
        QVERIFY(VwwDebugWindow::logLines().isEmpty());
        for (int i = 0; i < logged; ++i)
            qDebug("line %d", i);
        const QStringList lines = VwwDebugWindow::logLines();
        const int kept = qMin(logged, int(VwwDebugWindow::MAX_LINES));
        QCOMPARE(lines.size(), kept);
        QCOMPARE(lines.first(), QStringLiteral("debug: line %1").arg(logged - kept));
        QCOMPARE(lines.last(), QStringLiteral("debug: line %1").arg(logged - 1));
        QTRY_COMPARE(shownLines(window), lines);
        // A window made now shows the buffer at once, without waiting for queued lines.
        QCOMPARE(shownLines(VwwDebugWindow()), lines);
    }

    void linesFromOtherThreads()
    {
        VwwDebugWindow window;
        constexpr int perThread = 100;
        std::thread worker([]() {
            for (int i = 0; i < perThread; ++i)
                qInfo("std thread %d", i);
        });
        QThread* qthread = QThread::create([]() {
            for (int i = 0; i < perThread; ++i)
                qInfo("qthread %d", i);
        });
        qthread->start();
        worker.join();
        QVERIFY(qthread->wait(60000));
        delete qthread;
        QTRY_COMPARE(shownLines(window).filter(QStringLiteral("info: std thread")).size(), perThread);
        QTRY_COMPARE(shownLines(window).filter(QStringLiteral("info: qthread")).size(), perThread);
    }

    void windowDiesWhileAThreadLogs()
    {
        std::atomic<bool> stop{false};
        std::thread logger([&stop]() {
            while (!stop)
                qDebug("busy");
        });
        for (int i = 0; i < 5; ++i) {
            auto* window = new VwwDebugWindow;
            QTest::qWait(1);
            delete window;
        }
        stop = true;
        logger.join();
        VwwDebugWindow survivor;
        qWarning("still listening");
        QTRY_COMPARE(shownLines(survivor).last(), QStringLiteral("warning: still listening"));
    }

    void saveLogFromTheToolbar()
    {
        QTemporaryDir dir;
        VwwDebugWindow window;
        trigger(window, "DEBUG_CLEAR");
        qWarning("first saved line");
        qCWarning(lcDebugWindowTest, "second saved line");
        QTRY_COMPARE(shownLines(window).size(), 2);

        // Answers the file dialog as a user does: types a name without suffix, presses Return.
        QTimer::singleShot(0, [&dir]() {
            QTRY_VERIFY(qobject_cast<QFileDialog*>(QApplication::activeModalWidget()));
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            edit->setText(dir.filePath(QStringLiteral("session")));
            QTest::keyClick(edit, Qt::Key_Return);
            if (dialog->isVisible()) // not accepted: give up rather than hang
                dialog->reject();
        });
        trigger(window, "DEBUG_SAVE");

        QFile file(dir.filePath(QStringLiteral("session.log")));
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        // The dialog itself may log while it is open: those lines come after.
        const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        QCOMPARE(lines.mid(0, 2),
                 QStringList({"warning: first saved line", "warning [velmora.test]: second saved line"}));

        QVERIFY_EXCEPTION_THROWN(window.saveLog(dir.filePath(QStringLiteral("missing/log.txt"))), KbeError);
    }
};

QTEST_MAIN(TestDebugWindow)
#include "tst_vwwdebugwindow.moc"
