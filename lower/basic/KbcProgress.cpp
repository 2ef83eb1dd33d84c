#include "KbcProgress.h"

#include <algorithm>

KbcProgress::KbcProgress(const QString& title)
    : _title(title)
{
}

KbcProgress::~KbcProgress() = default;

void KbcProgress::setFraction(double fraction)
{
    // NaN compares false both ways and reads as unknown.
    _fraction.store(fraction >= 0 ? std::min(fraction, 1.0) : -1.0, std::memory_order_relaxed);
}
