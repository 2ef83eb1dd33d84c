#pragma once
// The work a system timer runs when it fires. The timer that holds a task keeps a
// reference on it.

#include <velmora_graphic_export.h>

#include <SoRefCounter.h>

class VELMORA_GRAPHIC_EXPORT SoSystemTimerTask : public SoRefCounter
{
public:
    virtual void run() = 0;
};
