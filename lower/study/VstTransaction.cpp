#include "VstTransaction.h"

#include <VuoUpdateModifyLock.h>

#include <QDebug>

VstTransaction::VstTransaction(const QString& name)
    : _name(name)
{
}

VstTransaction::~VstTransaction()
{
    if (_active)
        _end();
}

void VstTransaction::begin()
{
    if (_active) {
        qWarning() << "VstTransaction::begin: already active:" << _name;
        return;
    }
    _active = true;
    VuoUpdateModifyLock::lock();
}

void VstTransaction::commit()
{
    if (!_active)
        return;
    ++_commits;
    _end();
}

void VstTransaction::rollback()
{
    if (_active)
        _end();
}

void VstTransaction::_end()
{
    _active = false;
    VuoUpdateModifyLock::unlock();
}
