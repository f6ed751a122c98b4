#pragma once

#include <QCoreApplication>
#include <QString>

/// A text of links in the language of the program.
inline QString AxLinkText(const char* text)
{
    return QCoreApplication::translate("AxTelemetryLink", text);
}

/// "UDP 14550: the address is in use".
inline QString AxLinkFault(const QString& name, const QString& reason)
{
    return QStringLiteral("%1: %2").arg(name, reason);
}
