#pragma once
// Publishes modifications of type M to its observers, in the order they registered.
// Notification walks a copy of the list, so an observer may register or unregister
// (itself or others) while it is told; one removed during the walk is not told.

#include <VuoIObserver.h>

#include <QVector>

template <class M>
class VuoAObservable
{
public:
    virtual ~VuoAObservable()
    {
        const QVector<VuoIObserver<M>*> observers = _observers;
        _observers.clear();
        for (VuoIObserver<M>* o : observers)
            o->destroyed(this);
    }

    void addObserver(VuoIObserver<M>* observer)
    {
        if (observer && !_observers.contains(observer))
            _observers.append(observer);
    }
    void removeObserver(VuoIObserver<M>* observer) { _observers.removeAll(observer); }
    bool hasObserver(const VuoIObserver<M>* observer) const
    {
        return _observers.contains(const_cast<VuoIObserver<M>*>(observer));
    }
    int observerCount() const { return _observers.size(); }

protected:
    VuoAObservable() = default;
    VuoAObservable(const VuoAObservable&) = delete;
    VuoAObservable& operator=(const VuoAObservable&) = delete;

    void notify(const M& modif)
    {
        const QVector<VuoIObserver<M>*> observers = _observers;
        for (VuoIObserver<M>* o : observers)
            if (_observers.contains(o))
                o->update(modif);
    }

private:
    QVector<VuoIObserver<M>*> _observers;
};
