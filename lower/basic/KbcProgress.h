#pragma once
// The progress of work that may run on another thread: the work sets its fraction and
// polls isStopRequested(); whoever shows it reads the fraction and may request the stop.

#include <velmora_basic_export.h>

#include <KbcAProgress.h>

#include <atomic>

class VELMORA_BASIC_EXPORT KbcProgress : public KbcAProgress
{
public:
    explicit KbcProgress(const QString& title = QString());
    ~KbcProgress() override;

    QString getTitle() const override { return _title; }
    double getFraction() const override { return _fraction.load(std::memory_order_relaxed); }
    // Kept within [0, 1]; a negative fraction says the amount of work is unknown.
    void setFraction(double fraction);

private:
    const QString _title;
    std::atomic<double> _fraction{-1.0};
};
