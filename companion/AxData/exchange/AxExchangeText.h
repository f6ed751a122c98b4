#pragma once

#include <AxData/exchange/AxMission.h>

#include <QCoreApplication>
#include <QString>

/// A text of this folder in the language of the program.
inline QString AxExchangeText(const char* text)
{
    return QCoreApplication::translate("AxExchange", text);
}

/// Of a file whose home is open.
inline QString AxOpenHomeNote()
{
    return AxExchangeText(
        QT_TRANSLATE_NOOP("AxExchange", "The file does not say where home is, nor how high it lies."));
}

/// A file that is not taken over, and why.
inline AxMissionRead AxRefusedMission(const QString& fault)
{
    AxMissionRead refused;
    refused.fault = fault;
    return refused;
}
