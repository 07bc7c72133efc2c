#pragma once
#include <QString>

// Rounds half away from zero at `decimals` places, treating the value as the
// decimal it was written as (2.675 -> "2.68"). With `keepZeros` the text always
// has `decimals` places; without, trailing zeros and a trailing point are
// dropped and a zero result is the empty text.
QString Round(double value, int decimals, bool keepZeros);
