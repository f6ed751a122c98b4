#pragma once

#include <QLoggingCategory>

/// The log category "ax.telemetry": what links, files and aircraft send that cannot be used.
Q_DECLARE_LOGGING_CATEGORY(axTelemetryLog)
