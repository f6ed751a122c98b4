#pragma once
#include <osgEarth/Export>

#include <cpl_error.h>
#include <string>

/// What all users of GDAL and OGR in this library share.
namespace osgEarth {
namespace gdal {
/// Makes GDAL ready: drivers registered, its block cache limited.
/// Cheap when done before; any thread. Call before any other GDAL call.
void initialize();

/// While it lives, GDAL's messages on this thread are kept instead of printed.
/// Lives on the stack; nests.
class ErrorCapture
{
public:
    ErrorCapture();
    ~ErrorCapture();
    ErrorCapture(const ErrorCapture&) = delete;
    ErrorCapture& operator=(const ErrorCapture&) = delete;

    /// The first error (not warning), one line; empty when none.
    const std::string& message() const { return _message; }
    bool failed() const { return !_message.empty(); }
    void clear() { _message.clear(); }

private:
    static void CPL_STDCALL receive(CPLErr level, CPLErrorNum number, const char* text);
    std::string _message;
};
} // namespace gdal
} // namespace osgEarth
