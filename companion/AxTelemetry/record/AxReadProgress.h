#pragma once

#include <functional>

/// Told now and then how much of a file is read, 0 to 1. False cancels the reading.
using AxReadProgress = std::function<bool(double share)>;
