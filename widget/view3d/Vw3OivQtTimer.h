#pragma once
// The Inventor system timer on a Qt timer: Inventor's timer and delay sensors then run
// from the Qt event loop, on the GUI thread. Single-shot until setRepeat(true).

#include <velmora_widget_export.h>

#include <SoRef.h>
#include <SoSystemTimer.h>

#include <QObject>
#include <QTimer>

class VELMORA_WIDGET_EXPORT Vw3OivQtTimer : public QObject, public SoSystemTimer
{
    Q_OBJECT
public:
    Vw3OivQtTimer();
    ~Vw3OivQtTimer() override;

    void setTask(SoSystemTimerTask* task) override;
    void setRepeat(bool repeat) override;
    void setInterval(int msec) override;
    void start() override;
    void stop() override;
    bool isPending() const override;

    // The timer the render areas install for the whole process, made on first use; it is
    // uninstalled and deleted with the application object.
    static Vw3OivQtTimer* installProcessTimer();

private:
    void _runTask();

    QTimer _timer;
    SoRef<SoSystemTimerTask> _task;
    int _interval = 0;
};
