#pragma once
// Small numeric helpers shared by the views: the offset a map axis takes out of its labels
// and the round lengths of a scale bar. Static functions only.

#include <velmora_basic_export.h>

class VELMORA_BASIC_EXPORT KbcAlgorithm
{
public:
    KbcAlgorithm() = delete;

    // The round number a map axis subtracts from its labels so that they stay short.
    // Labels must tell apart a thousandth of the interval's width (a pixel on a large map),
    // so a value needs its digits from the leading one down to the units or to that
    // resolution, whichever is finer. When max(|min|, |max|) needs more than
    // `significantDigits` (1 to 17) of them, the offset is the bound nearest zero rounded
    // toward zero to the largest power of ten that brings every value − offset within them
    // (or as close as any can); otherwise 0. Also 0 for intervals that hold 0, are a single
    // point or have a bound that is not finite. The bounds may come in either order.
    static double getRoundedOffsetFromInterval(int significantDigits, double min, double max);

    // The largest of 1, 2 and 5 times a power of ten that is not above `value`, for scale
    // bars: 0.37 gives 0.2, 7300 gives 5000. 0 for 0, negative and non-finite values.
    static double roundToNiceNumber(double value);

    // The exponent of the power of ten at or below a positive finite `value`: 999 gives 2,
    // 1000 gives 3, 0.05 gives -2; 0 for anything else. Exact at the powers themselves,
    // where log10 may round.
    static int getDecade(double value);
    // 10^exponent as close as a double gets: negative powers are divisions by an exact
    // power, so 10^-3 is the double nearest 0.001.
    static double getPowerOfTen(int exponent);
};
