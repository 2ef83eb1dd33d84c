#pragma once
// Observer of the modifications of type M that a VuoAObservable<M> publishes.

template <class M>
class VuoAObservable;

template <class M>
class VuoIObserver
{
public:
    virtual ~VuoIObserver() = default;
    virtual void update(const M& modif) = 0;
    // The observable is being destroyed; it must not be used any more.
    virtual void destroyed(const VuoAObservable<M>* observable) = 0;
};
