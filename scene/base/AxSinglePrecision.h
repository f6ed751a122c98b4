#pragma once

/// The value as a float holds it. Volatile, because GCC 12 drops two neighbouring casts to float and back
/// when it makes one vector operation of them.
inline double AxSinglePrecision(double value)
{
    const volatile float rounded = static_cast<float>(value);
    return static_cast<double>(rounded);
}
