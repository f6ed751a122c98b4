#pragma once

#include <QCoreApplication>
#include <QString>

/// A text about aircraft in the language of the program.
inline QString AxVehicleText(const char* text)
{
    return QCoreApplication::translate("AxVehicle", text);
}
