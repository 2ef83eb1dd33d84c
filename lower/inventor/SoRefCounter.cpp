#include <SoRefCounter.h>

#include <QtGlobal>

SoRefCounter::~SoRefCounter() = default;

void SoRefCounter::ref() const
{
    ++_refCount;
}

void SoRefCounter::unref() const
{
    if (_refCount <= 0) {
        qWarning("SoRefCounter::unref: the object holds no reference");
        return;
    }
    if (--_refCount == 0)
        delete this;
}
