#pragma once
// Values shared by the whole library. D_FFFF marks an undefined real value (a missing
// sample, a blank cell); it is compared by exact equality, never with a tolerance.

class KbbGlobal
{
public:
    // -1.0e+32 is the blank value many geostatistics file formats already write, so data read
    // from them keeps its meaning; it is finite, so it survives arithmetic and file round trips
    // that would turn NaN into an error, and it is far outside any measured quantity.
    static constexpr double D_FFFF = -1.0e+32;

    // The undefined integer, the lowest int: no count, index or class number takes it.
    static constexpr int I_FFFF = -2147483647 - 1;

    static bool isUndefined(double v) { return v == D_FFFF; }
};
