#pragma once
#include <AxTelemetry/AxAircraftState.h>

#include <QCoreApplication>

#include <vector>

class QWidget;

/// Places of photos to a file, with the dialog that goes with it. GUI thread; events run meanwhile.
class PhotoFiles
{
    Q_DECLARE_TR_FUNCTIONS(PhotoFiles)
public:
    /// Asks for a CSV or KML file and writes it; the operator is told why nothing was written, and what the
    /// file lacks. The name of the file; empty when nothing was written.
    static QString Export(QWidget* window, const QString& name, const std::vector<AxPhotoRecord>& photos);
};
