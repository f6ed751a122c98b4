#pragma once

#include <QCoreApplication>
#include <QString>

/// A text of this folder in the language of the program.
inline QString AxRecordText(const char* text)
{
    return QCoreApplication::translate("AxRecord", text);
}
