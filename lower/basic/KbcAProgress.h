#pragma once
// The progress of a long calculation, as a listener sees it: a title, a fraction done
// and a request to stop that the calculation polls.

#include <velmora_basic_export.h>

#include <QString>
#include <atomic>

class VELMORA_BASIC_EXPORT KbcAProgress
{
public:
    virtual ~KbcAProgress();

    virtual QString getTitle() const = 0;
    // From 0 to 1; negative while the amount of work is unknown.
    virtual double getFraction() const = 0;

    void requestStop() { _stopRequested = true; }
    bool isStopRequested() const { return _stopRequested; }

private:
    std::atomic<bool> _stopRequested{false};
};
