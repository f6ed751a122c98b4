#include "scene/base/AxProcessLocale.h"
#include "scene/base/AxViewerLog.h"

#include <clocale>
#include <cstring>

void AxSetProcessLocale()
{
    if (!std::setlocale(LC_ALL, "chs"))
        qCDebug(axViewerLog) << "the system has no locale \"chs\"; the present one stays";
    // Map files, rasters and projections are read with C functions that would
    // otherwise take a comma for the decimal point.
    const std::lconv* numbers = std::localeconv();
    if (!numbers || std::strcmp(numbers->decimal_point, ".") != 0)
        std::setlocale(LC_NUMERIC, "C");
}
