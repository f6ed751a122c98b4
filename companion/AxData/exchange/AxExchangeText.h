#pragma once

#include <AxData/exchange/AxMission.h>

#include <QCoreApplication>
#include <QString>

/// A text of this folder in the language of the program.
inline QString AxExchangeText(const char* text)
{
    return QCoreApplication::translate("AxExchange", text);
}

/// A file that is not taken over, and why.
inline AxMissionRead AxRefusedMission(const QString& fault)
{
    AxMissionRead refused;
    refused.fault = fault;
    return refused;
}
