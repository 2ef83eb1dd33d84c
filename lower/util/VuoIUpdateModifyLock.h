#pragma once
// Told when a batch of modifications starts and ends, so that it redraws once at the end.

class VuoIUpdateModifyLock
{
public:
    virtual ~VuoIUpdateModifyLock() = default;
    virtual void lockModifyUpdate() = 0;
    virtual void unlockModifyUpdate() = 0;
};
