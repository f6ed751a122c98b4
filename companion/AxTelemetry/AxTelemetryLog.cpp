#include "AxTelemetryLog.h"

Q_LOGGING_CATEGORY(axTelemetryLog, "ax.telemetry")
