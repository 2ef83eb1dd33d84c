#pragma once
// Reference counting for Inventor-side objects that are not nodes (render cores, timer
// tasks): created with no reference, deleted by the unref() that takes the count to zero.

#include <velmora_graphic_export.h>

class VELMORA_GRAPHIC_EXPORT SoRefCounter
{
public:
    void ref() const;
    // Deletes the object when the count reaches zero; an unref() without a reference is
    // refused with a warning.
    void unref() const;
    int getRefCount() const { return _refCount; }

protected:
    SoRefCounter() = default;
    virtual ~SoRefCounter();

private:
    SoRefCounter(const SoRefCounter&) = delete;
    SoRefCounter& operator=(const SoRefCounter&) = delete;
    mutable int _refCount = 0;
};
