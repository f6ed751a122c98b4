#include <osgEarth/Status>

namespace osgEarth {
std::string Status::toString() const
{
    switch (_code) {
    case NoError:
        return "no error";
    case ResourceUnavailable:
        return "resource unavailable: " + _message;
    case ServiceUnavailable:
        return "service unavailable: " + _message;
    case ConfigurationError:
        return "configuration error: " + _message;
    case AssertionFailure:
        return "assertion failure: " + _message;
    case GeneralError:
        break;
    }
    return "error: " + _message;
}
} // namespace osgEarth
