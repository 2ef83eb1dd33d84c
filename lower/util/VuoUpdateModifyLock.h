#pragma once
// The process-wide update-modify lock. lock() and unlock() nest; listeners hear only the
// outermost pair. VuoUpdateModifyLocker holds the lock for a scope.

#include <velmora_util_export.h>

class VuoIUpdateModifyLock;

class VELMORA_UTIL_EXPORT VuoUpdateModifyLock
{
public:
    static void addListener(VuoIUpdateModifyLock* listener);
    static void removeListener(VuoIUpdateModifyLock* listener);
    static void lock();
    static void unlock();
    static bool isLocked();

    VuoUpdateModifyLock() = delete;
};

class VuoUpdateModifyLocker
{
public:
    VuoUpdateModifyLocker() { VuoUpdateModifyLock::lock(); }
    ~VuoUpdateModifyLocker() { VuoUpdateModifyLock::unlock(); }
    VuoUpdateModifyLocker(const VuoUpdateModifyLocker&) = delete;
    VuoUpdateModifyLocker& operator=(const VuoUpdateModifyLocker&) = delete;
};
