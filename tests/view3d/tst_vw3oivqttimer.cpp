// The Qt timer behind Inventor's sensors: single shots, repeats, stops, the tasks it holds,
// and Inventor sensors run from the Qt event loop.

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
    explicit CountingTask(bool* deleted = nullptr)
        : _deleted(deleted)
    {
    }
    ~CountingTask() override
    {
        if (_deleted)
            *_deleted = true;
    }
    void run() override { ++runs; }
    int runs = 0;

private:
    bool* _deleted;
};

// A timer running a counting task every millisecond once started.
struct Running
{
    Vw3OivQtTimer timer;
    CountingTask* task = new CountingTask;

    explicit Running(bool repeat)
    {
        task->ref();
        timer.setTask(task);
        timer.setRepeat(repeat);
        timer.setInterval(1);
    }
    ~Running()
    {
        timer.setTask(nullptr);
        task->unref();
    }
};

} // namespace

class TestVw3OivQtTimer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    // Repeats until stopped, then a single shot runs once; a shot stopped before it fires
    // runs nothing.
    void repeatingRunsUntilStoppedAndSingleShotsOnce()
    {
        Running r(true);
        r.timer.start();
        QTRY_VERIFY(r.task->runs >= 3);
        QVERIFY(r.timer.isPending());
        r.timer.stop();
        QVERIFY(!r.timer.isPending());
        const int runs = r.task->runs;
        QTest::qWait(30);
        QCOMPARE(r.task->runs, runs);

        r.timer.setRepeat(false);
        r.timer.start();
        QVERIFY(r.timer.isPending());
        QTRY_COMPARE(r.task->runs, runs + 1);
        QVERIFY(!r.timer.isPending());
        r.timer.setInterval(5);
        r.timer.start();
        r.timer.stop();
        QTest::qWait(30);
        QCOMPARE(r.task->runs, runs + 1);
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
        const auto count = [](void* data, SoSensor*) { ++*static_cast<int*>(data); };
        int timerFired = 0;
        SoTimerSensor timerSensor(count, &timerFired);
        timerSensor.setInterval(SbTime(0.005));
        timerSensor.schedule();
        QTRY_VERIFY(timerFired >= 3);
        timerSensor.unschedule();
        int oneShotFired = 0;
        SoOneShotSensor oneShot(count, &oneShotFired);
        oneShot.schedule();
        QTRY_COMPARE(oneShotFired, 1);
    }
};

QTEST_MAIN(TestVw3OivQtTimer)
#include "tst_vw3oivqttimer.moc"
