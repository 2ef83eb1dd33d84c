#pragma once
// Told when a long calculation starts and ends, so that a window can show its progress.

class KbcAProgress;

class VuoICalculatorListener
{
public:
    virtual ~VuoICalculatorListener() = default;
    virtual void calculatorHasStarted(KbcAProgress* progress) = 0;
    virtual void calculatorHasFinished() = 0;
};
