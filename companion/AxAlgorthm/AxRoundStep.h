#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

// Steps that people count in: 1, 2 or 5 times a power of ten. For numbers above 0. Any thread.

/// The smallest that is no less than the value; one that is less by a billionth, as sums of decimals are,
/// will do.
AXALGORTHM_EXPORT double AxRoundStepAbove(double value);
/// The largest that is no more than the value.
AXALGORTHM_EXPORT double AxRoundStepBelow(double value);
