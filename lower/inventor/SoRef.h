#pragma once
// Holds one reference on an Inventor node (or any object with ref() and unref(), such as an
// SoRefCounter): taken when the object is given, released when the holder lets go of it.
//
// A swap takes the new reference before it releases the old one, so an object that lives
// only inside the old one (a graph's own child put in its place) survives the swap.

#include <utility>

template <class T>
class SoRef
{
public:
    SoRef() = default;
    // Not explicit: a member assigned a fresh node reads as one.
    SoRef(T* object)
        : _object(object)
    {
        if (_object)
            _object->ref();
    }
    SoRef(const SoRef& other)
        : SoRef(other._object)
    {
    }
    SoRef(SoRef&& other) noexcept
        : _object(std::exchange(other._object, nullptr))
    {
    }
    ~SoRef()
    {
        if (_object)
            _object->unref();
    }

    // By value: the argument holds the new reference before this one's old is released.
    SoRef& operator=(SoRef other) noexcept
    {
        std::swap(_object, other._object);
        return *this;
    }

    void reset(T* object = nullptr) { *this = SoRef(object); }

    T* get() const { return _object; }
    T* operator->() const { return _object; }
    T& operator*() const { return *_object; }
    operator T*() const { return _object; }

private:
    T* _object = nullptr;
};
