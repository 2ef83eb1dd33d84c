#include "VuoUpdateModifyLock.h"

#include "VuoIUpdateModifyLock.h"

#include <QDebug>
#include <QVector>

namespace {
struct LockState
{
    QVector<VuoIUpdateModifyLock*> listeners;
    int depth = 0;
};
LockState& state()
{
    static LockState s;
    return s;
}
} // namespace

void VuoUpdateModifyLock::addListener(VuoIUpdateModifyLock* listener)
{
    if (listener && !state().listeners.contains(listener))
        state().listeners.append(listener);
}

void VuoUpdateModifyLock::removeListener(VuoIUpdateModifyLock* listener)
{
    state().listeners.removeAll(listener);
}

void VuoUpdateModifyLock::lock()
{
    if (state().depth++ > 0)
        return;
    const auto listeners = state().listeners;
    for (VuoIUpdateModifyLock* l : listeners)
        if (state().listeners.contains(l))
            l->lockModifyUpdate();
}

void VuoUpdateModifyLock::unlock()
{
    if (state().depth == 0) {
        qWarning("VuoUpdateModifyLock::unlock: not locked");
        return;
    }
    if (--state().depth > 0)
        return;
    const auto listeners = state().listeners;
    for (VuoIUpdateModifyLock* l : listeners)
        if (state().listeners.contains(l))
            l->unlockModifyUpdate();
}

bool VuoUpdateModifyLock::isLocked()
{
    return state().depth > 0;
}
