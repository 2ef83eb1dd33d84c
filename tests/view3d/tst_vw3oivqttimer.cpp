// The timer behind Inventor's sensors: armed for the next sensor due, re-armed by a sensor
// that schedules itself, let go when another is installed (driven through a fake timer);
// then the Qt timer itself: single shots, repeats, stops, the tasks it holds, and Inventor
// sensors run from the Qt event loop.

#include <Vw3OivQtTimer.h>

#include <SoRef.h>
#include <SoSystemTimer.h>
#include <SoSystemTimerTask.h>
#include <Vg3OpenInventor.h>

#include <Inventor/SoDB.h>
#include <Inventor/sensors/SoAlarmSensor.h>
#include <Inventor/sensors/SoOneShotSensor.h>
#include <Inventor/sensors/SoSensorManager.h>
#include <Inventor/sensors/SoTimerSensor.h>

#include <QtTest>

namespace {

// Records what the sensor machinery asks of a window-system timer; runs its task when the
// test says so.
class FakeTimer : public SoSystemTimer
{
public:
    ~FakeTimer() override { setTask(nullptr); }

    void setTask(SoSystemTimerTask* newTask) override
    {
        if (newTask) newTask->ref();
        if (task) task->unref();
        task = newTask;
    }
    void setRepeat(bool value) override { repeat = value; }
    void setInterval(int msec) override { interval = msec; }
    void start() override
    {
        pending = true;
        ++starts;
    }
    void stop() override { pending = false; }
    bool isPending() const override { return pending; }

    void fire()
    {
        pending = false;
        if (task) task->run();
    }

    // What an event loop does with the timer for `msec` milliseconds.
    void runFor(int msec)
    {
        QElapsedTimer clock;
        clock.start();
        while (pending && clock.elapsed() + interval <= msec) {
            QThread::msleep(ulong(qMax(interval, 0)));
            fire();
        }
    }

    SoSystemTimerTask* task = nullptr;
    bool repeat = true;
    int interval = -1;
    int starts = 0;
    bool pending = false;
};

int s_fired = 0;
void countFiring(void*, SoSensor*)
{
    ++s_fired;
}

SoOneShotSensor* s_chained = nullptr;
void scheduleChained(void*, SoSensor*)
{
    ++s_fired;
    s_chained->schedule();
}

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

} // namespace

class TestVw3OivQtTimer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        Vg3OpenInventor::getInstance()->init();
        // Coin keeps a timer sensor running for its realTime field; without it each case
        // sees only its own sensors.
        SoDB::enableRealTimeSensor(FALSE);
    }

    void init()
    {
        s_fired = 0;
        // Whatever Coin queued at start-up runs first, so that each case sees only its own.
        SoDB::getSensorManager()->processTimerQueue();
        SoDB::getSensorManager()->processDelayQueue(TRUE);
    }

    void cleanup() { SoSystemTimer::install(nullptr); }

    void armsForTheNextSensor_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("minInterval");
        QTest::addColumn<int>("maxInterval");
        QTest::addColumn<int>("minFired");
        QTest::addColumn<int>("maxFired");
        QTest::addColumn<bool>("pendingAfterRun");

        // Fired within 450 ms of event loop.
        QTest::newRow("one-shot runs at once") << "oneshot" << 0 << 0 << 1 << 1 << false;
        QTest::newRow("alarm in 150 ms") << "alarm" << 100 << 150 << 1 << 1 << false;
        QTest::newRow("timer every 100 ms runs again") << "timer" << 50 << 100 << 3 << 5 << true;
    }

    void armsForTheNextSensor()
    {
        QFETCH(QString, kind);
        QFETCH(int, minInterval);
        QFETCH(int, maxInterval);
        QFETCH(int, minFired);
        QFETCH(int, maxFired);
        QFETCH(bool, pendingAfterRun);

        FakeTimer timer;
        SoSystemTimer::install(&timer);
        QCOMPARE(SoSystemTimer::installed(), &timer);
        QVERIFY(timer.task);
        QVERIFY(!timer.repeat);
        QVERIFY(!timer.isPending());

        SoOneShotSensor oneShot(countFiring, nullptr);
        SoAlarmSensor alarm(countFiring, nullptr);
        SoTimerSensor periodic(countFiring, nullptr);
        if (kind == QLatin1String("oneshot")) {
            oneShot.schedule();
        } else if (kind == QLatin1String("alarm")) {
            alarm.setTimeFromNow(SbTime(0.15));
            alarm.schedule();
        } else {
            periodic.setInterval(SbTime(0.1));
            periodic.schedule();
        }
        QVERIFY(timer.isPending());
        QVERIFY2(timer.interval >= minInterval && timer.interval <= maxInterval,
                 qPrintable(QString::number(timer.interval)));

        timer.runFor(450);
        QVERIFY2(s_fired >= minFired && s_fired <= maxFired, qPrintable(QString::number(s_fired)));
        // Once the last sensor ran (Coin may add a sensor of its own meanwhile), the timer
        // is let rest; a repeating sensor keeps it armed.
        QCOMPARE(timer.isPending(), pendingAfterRun);
    }

    void sensorScheduledWhileRunningRearms()
    {
        FakeTimer timer;
        SoSystemTimer::install(&timer);
        SoOneShotSensor chained(scheduleChained, nullptr);
        s_chained = &chained;
        chained.schedule();
        timer.fire();
        QVERIFY(s_fired >= 1);
        // The sensor put itself back in the queue: the timer must be armed for it.
        QVERIFY(timer.isPending());
        QCOMPARE(timer.interval, 0);
        chained.unschedule();
        s_chained = nullptr;
    }

    void uninstallStopsAndLetsGo()
    {
        FakeTimer first;
        SoSystemTimer::install(&first);
        SoOneShotSensor oneShot(countFiring, nullptr);
        oneShot.schedule();
        QVERIFY(first.isPending());

        FakeTimer second;
        SoSystemTimer::install(&second);
        QVERIFY(!first.isPending());
        QVERIFY(!first.task);
        QVERIFY(second.isPending());

        SoSystemTimer::install(nullptr);
        QVERIFY(!SoSystemTimer::installed());
        QVERIFY(!second.isPending());
        QVERIFY(!second.task);
        const int starts = second.starts;
        SoOneShotSensor another(countFiring, nullptr);
        another.schedule();
        QCOMPARE(second.starts, starts);
        oneShot.unschedule();
        another.unschedule();
    }

    // Repeats until stopped, then a single shot runs once; a shot stopped before it fires
    // runs nothing.
    void repeatingRunsUntilStoppedAndSingleShotsOnce()
    {
        Vw3OivQtTimer timer;
        const SoRef<CountingTask> task(new CountingTask);
        timer.setTask(task.get());
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

        timer.setRepeat(false);
        timer.start();
        QVERIFY(timer.isPending());
        QTRY_COMPARE(task->runs, runs + 1);
        QVERIFY(!timer.isPending());
        timer.setInterval(5);
        timer.start();
        timer.stop();
        QTest::qWait(30);
        QCOMPARE(task->runs, runs + 1);
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
