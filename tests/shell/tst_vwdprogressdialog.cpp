#include <KbcProgress.h>
#include <KbeError.h>
#include <VwdProgressDialog.h>

#include <QProgressDialog>
#include <QPushButton>
#include <QtTest>

#include <atomic>
#include <stdexcept>

// Long work on a worker thread, as the user meets it: nothing shows for quick work, a
// dialog with the progress for slow work, and Cancel stops it.
class TestVwdProgressDialog : public QObject
{
    Q_OBJECT

    static QProgressDialog* shownDialog()
    {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* dialog = qobject_cast<QProgressDialog*>(w))
                if (dialog->isVisible())
                    return dialog;
        return nullptr;
    }

private Q_SLOTS:
    void quickWorkShowsNothing()
    {
        bool dialogSeen = false;
        // Owned here: quick work may return before any event loop ran the probe.
        QTimer probe;
        probe.setSingleShot(true);
        connect(&probe, &QTimer::timeout, [&] { dialogSeen = shownDialog() != nullptr; });
        probe.start(0);
        int result = 0;
        QVERIFY(VwdProgressDialog::run(nullptr, QStringLiteral("Quick"), [&](KbcProgress&) { result = 42; }));
        QCOMPARE(result, 42);
        QVERIFY(!dialogSeen);
    }

    // The user sees the title and the fraction, clicks Cancel, and the work stops.
    void slowWorkShowsProgressAndCancels()
    {
        std::atomic<bool> stopped{false};
        QString label;
        int value = -1;
        QTimer watcher;
        connect(&watcher, &QTimer::timeout, [&] {
            QProgressDialog* dialog = shownDialog();
            if (!dialog || dialog->value() < 400)
                return;
            label = dialog->labelText();
            value = dialog->value();
            QTest::mouseClick(dialog->findChild<QPushButton*>(), Qt::LeftButton);
        });
        watcher.start(20);
        const bool finished = VwdProgressDialog::run(nullptr, QStringLiteral("Reading 'big.csv'"), [&](KbcProgress& progress) {
            progress.setFraction(0.5);
            QElapsedTimer waited;
            waited.start();
            while (!progress.isStopRequested() && waited.elapsed() < 10000)
                QThread::msleep(5);
            stopped = progress.isStopRequested();
            throw KbeError(QStringLiteral("Reading 'big.csv' was cancelled."));
        });
        QVERIFY(!finished);
        QVERIFY(stopped);
        QCOMPARE(label, QStringLiteral("Reading 'big.csv'"));
        QCOMPARE(value, 500);
        QVERIFY(!shownDialog());
    }

    // A failure in the work reaches the caller as it was thrown, with its text.
    void failuresReachTheCaller()
    {
        const QString text = QStringLiteral("'x.csv', line 3: two fields are expected");
        try {
            VwdProgressDialog::run(nullptr, QStringLiteral("Failing"), [&](KbcProgress&) { throw KbeError(text); });
            QFAIL("the failure was lost");
        } catch (const KbeError& e) {
            QCOMPARE(e.getMessage(), text);
        }
        try {
            VwdProgressDialog::run(nullptr, QStringLiteral("Failing"), [](KbcProgress&) { throw std::runtime_error("disk gone"); });
            QFAIL("the failure was lost");
        } catch (const std::runtime_error& e) {
            QCOMPARE(QString::fromUtf8(e.what()), QStringLiteral("disk gone"));
        }
    }
};

QTEST_MAIN(TestVwdProgressDialog)
#include "tst_vwdprogressdialog.moc"
