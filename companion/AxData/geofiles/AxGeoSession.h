#pragma once

#include <QString>
#include <QStringList>

#include <cpl_error.h>

#include <utility>
#include <vector>

/// What one call uses of GDAL: a folder in memory, settings of this thread alone, and the messages, which are
/// kept instead of printed. Lives on the stack of one thread.
class AxGeoSession
{
public:
    AxGeoSession();
    ~AxGeoSession();
    AxGeoSession(const AxGeoSession&) = delete;
    AxGeoSession& operator=(const AxGeoSession&) = delete;

    /// A name in a folder of GDAL's memory that goes with the session.
    QByteArray InMemory(const char* name) const { return folder + name; }
    /// For this thread, until the session ends.
    void Set(const char* key, const char* value);
    /// The errors so far, each once and on one line; the list is empty afterwards.
    QStringList TakeErrors();

private:
    static void CPL_STDCALL receive(CPLErr level, CPLErrorNum number, const char* text);

    QByteArray folder;
    QStringList errors;
    std::vector<std::pair<QByteArray, QByteArray>> former; // a null text was not set
};
