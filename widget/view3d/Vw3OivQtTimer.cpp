#include <Vw3OivQtTimer.h>

#include <SoSystemTimerTask.h>

#include <QCoreApplication>

Vw3OivQtTimer::Vw3OivQtTimer()
{
    _timer.setSingleShot(true);
    connect(&_timer, &QTimer::timeout, this, &Vw3OivQtTimer::_runTask);
}

Vw3OivQtTimer::~Vw3OivQtTimer()
{
    if (SoSystemTimer::installed() == this)
        SoSystemTimer::install(nullptr);
    _timer.stop();
}

void Vw3OivQtTimer::setTask(SoSystemTimerTask* task)
{
    // The new task is held before the old one goes: it may be the only holder of the old
    // one's owner.
    _task = task;
}

void Vw3OivQtTimer::setRepeat(bool repeat)
{
    _timer.setSingleShot(!repeat);
}

void Vw3OivQtTimer::setInterval(int msec)
{
    _interval = qMax(0, msec);
}

void Vw3OivQtTimer::start()
{
    _timer.start(_interval);
}

void Vw3OivQtTimer::stop()
{
    _timer.stop();
}

bool Vw3OivQtTimer::isPending() const
{
    return _timer.isActive();
}

void Vw3OivQtTimer::_runTask()
{
    // The task may replace itself while it runs; keep it alive until it returns.
    const SoRef<SoSystemTimerTask> task = _task;
    if (task)
        task->run();
}

Vw3OivQtTimer* Vw3OivQtTimer::installProcessTimer()
{
    static Vw3OivQtTimer* processTimer = nullptr;
    if (processTimer)
        return processTimer;
    if (!QCoreApplication::instance()) {
        qWarning("Vw3OivQtTimer::installProcessTimer: no application object, Inventor sensors will not run");
        return nullptr;
    }
    processTimer = new Vw3OivQtTimer;
    SoSystemTimer::install(processTimer);
    QObject::connect(QCoreApplication::instance(), &QObject::destroyed, [] {
        delete processTimer;
        processTimer = nullptr;
    });
    return processTimer;
}
