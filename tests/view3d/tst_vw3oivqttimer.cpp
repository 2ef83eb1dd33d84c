#include <Vw3OivQtTimer.h>

#include <SoSystemTimerTask.h>
#include <Vg3OpenInventor.h>

#include <Inventor/sensors/SoOneShotSensor.h>
#include <Inventor/sensors/SoTimerSensor.h>

#include <QTest>

namespace {

class CountingTask : public SoSystemTimerTask
{
public:
    explicit CountingTask(bool* deleted = nullptr) : _deleted(deleted)
    {
    }
    ~CountingTask() override
    {
        if (_deleted) *_deleted = true;
    }
    void run() override { ++runs; }
    int runs = 0;

private:
    bool* _deleted;
};

} // namespace

class TestVw3OivQtTimer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    void singleShotRunsOnce()
    {
        Vw3OivQtTimer timer;
        auto task = new CountingTask;
        task->ref();
        timer.setTask(task);
        timer.setInterval(1);
        timer.start();
        QVERIFY(timer.isPending());
        QTRY_COMPARE(task->runs, 1);
        QVERIFY(!timer.isPending());
        // Nothing more comes without another start.
        QTest::qWait(30);
        QCOMPARE(task->runs, 1);
        timer.setTask(nullptr);
        task->unref();
    }

    void repeatingRunsUntilStopped()
    {
        Vw3OivQtTimer timer;
        auto task = new CountingTask;
        task->ref();
        timer.setTask(task);
        timer.setRepeat(true);
        timer.setInterval(1);
        timer.start();
        QTRY_VERIFY(task->runs >= 3);
        QVERIFY(timer.isPending());
        timer.stop();
        QVERIFY(!timer.isPending());
        const int runs = task->runs;
        QTest::qWait(30);
        QCOMPARE(task->runs, runs);

        // Back to single shot.
        timer.setRepeat(false);
        timer.start();
        QTRY_COMPARE(task->runs, runs + 1);
        QVERIFY(!timer.isPending());
        timer.setTask(nullptr);
        task->unref();
    }

    void stopBeforeFiringRunsNothing()
    {
        Vw3OivQtTimer timer;
        auto task = new CountingTask;
        task->ref();
        timer.setTask(task);
        timer.setInterval(5);
        timer.start();
        timer.stop();
        QVERIFY(!timer.isPending());
        QTest::qWait(30);
        QCOMPARE(task->runs, 0);
        timer.setTask(nullptr);
        task->unref();
    }

    void tasksAreHeldByReference()
    {
        bool firstDeleted = false;
        bool secondDeleted = false;
        {
            Vw3OivQtTimer timer;
            timer.setTask(new CountingTask(&firstDeleted));
            QVERIFY(!firstDeleted);
            timer.setTask(new CountingTask(&secondDeleted));
            QVERIFY(firstDeleted);
            QVERIFY(!secondDeleted);
        }
        QVERIFY(secondDeleted);
    }

    void inventorSensorsRunFromTheQtLoop()
    {
        QVERIFY(Vw3OivQtTimer::installProcessTimer());
        int timerFired = 0;
        SoTimerSensor timerSensor([](void* data, SoSensor*) { ++*static_cast<int*>(data); }, &timerFired);
        timerSensor.setInterval(SbTime(0.005));
        timerSensor.schedule();
        QTRY_VERIFY(timerFired >= 3);
        timerSensor.unschedule();

        int oneShotFired = 0;
        SoOneShotSensor oneShot([](void* data, SoSensor*) { ++*static_cast<int*>(data); }, &oneShotFired);
        oneShot.schedule();
        QTRY_COMPARE(oneShotFired, 1);
    }
};

QTEST_MAIN(TestVw3OivQtTimer)
#include "tst_vw3oivqttimer.moc"
