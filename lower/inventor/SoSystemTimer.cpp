#include <SoSystemTimer.h>

#include <SoSystemTimerTask.h>

#include <Inventor/SbTime.h>
#include <Inventor/SoDB.h>
#include <Inventor/sensors/SoSensorManager.h>

#include <QtGlobal>

#include <cmath>
#include <limits>

namespace {

SoSystemTimer* s_installed = nullptr;
// True while the task empties the queues: the sensors that run then may schedule others
// and so call the changed callback; the timer is armed once, when the task is done.
bool s_processing = false;

// Arms the installed timer for the first sensor due, or stops it when none is.
void armInstalledTimer()
{
    SoSystemTimer* timer = s_installed;
    if (!timer || s_processing)
        return;
    SoSensorManager* manager = SoDB::getSensorManager();
    SbTime due;
    if (manager->isDelaySensorPending()) {
        timer->setInterval(0);
        timer->start();
    } else if (manager->isTimerSensorPending(due)) {
        const double msec = std::ceil((due - SbTime::getTimeOfDay()).getValue() * 1000.0);
        const double bounded = qBound(0.0, msec, double(std::numeric_limits<int>::max()));
        timer->setInterval(int(bounded));
        timer->start();
    } else {
        timer->stop();
    }
}

void sensorQueueChanged(void*)
{
    armInstalledTimer();
}

class SensorQueueTask : public SoSystemTimerTask
{
public:
    void run() override
    {
        if (s_processing || !SoDB::isInitialized())
            return;
        SoSensorManager* manager = SoDB::getSensorManager();
        s_processing = true;
        manager->processTimerQueue();
        manager->processDelayQueue(TRUE);
        s_processing = false;
        armInstalledTimer();
    }
};

} // namespace

SoSystemTimer::~SoSystemTimer()
{
    // A timer deleted while installed must not be called again by the sensor manager.
    if (s_installed == this) {
        s_installed = nullptr;
        if (SoDB::isInitialized())
            SoDB::getSensorManager()->setChangedCallback(nullptr, nullptr);
    }
}

void SoSystemTimer::install(SoSystemTimer* timer)
{
    if (timer == s_installed)
        return;
    if (!SoDB::isInitialized()) {
        qWarning("SoSystemTimer::install: Inventor is not initialised");
        return;
    }
    SoSensorManager* manager = SoDB::getSensorManager();
    if (SoSystemTimer* old = s_installed) {
        s_installed = nullptr;
        manager->setChangedCallback(nullptr, nullptr);
        old->stop();
        old->setTask(nullptr);
    }
    if (!timer)
        return;
    s_installed = timer;
    timer->setRepeat(false);
    timer->setTask(new SensorQueueTask);
    manager->setChangedCallback(sensorQueueChanged, nullptr);
    armInstalledTimer();
}

SoSystemTimer* SoSystemTimer::installed()
{
    return s_installed;
}
