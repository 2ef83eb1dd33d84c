#pragma once
// A timer of the windowing system that runs Inventor's timer and delay sensors. Coin's
// SoDB has no setSystemTimer; install() stands in for it: it watches the sensor manager's
// changed callback and arms the installed timer for the next due sensor, with a task that
// processes the timer queue and then the delay queue.

#include <velmora_graphic_export.h>

class SoSystemTimerTask;

class VELMORA_GRAPHIC_EXPORT SoSystemTimer
{
public:
    virtual ~SoSystemTimer();

    // Takes a reference on the new task and drops the one on the old.
    virtual void setTask(SoSystemTimerTask* task) = 0;
    // Single-shot exactly when repeat is false.
    virtual void setRepeat(bool repeat) = 0;
    // Milliseconds until the timer fires once started; negative values count as 0.
    virtual void setInterval(int msec) = 0;
    virtual void start() = 0;
    virtual void stop() = 0;
    virtual bool isPending() const = 0;

    // Makes `timer` the process's system timer (not owned; it must outlive its use, or be
    // uninstalled with nullptr first). Any earlier timer is stopped and let go.
    static void install(SoSystemTimer* timer);
    static SoSystemTimer* installed();
};
