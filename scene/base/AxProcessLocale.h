#pragma once

/// Sets the C locale of the process to Chinese where the system has it, and
/// keeps "." as the decimal point whatever the locale.
void AxSetProcessLocale();
