#include <AxTelemetry/link/AxTelemetryLink.h>

void AxTelemetryLink::SetPhase(Phase phase)
{
    if (m_phase == phase)
        return;
    m_phase = phase;
    emit signalPhase();
    if (phase == Phase::Closed)
        emit signalClosed();
}
