#pragma once
#include "analysis/AxHeightGrid.h"

#include <AxBaseUI/CAxBaseDialog.h>

#include <QString>

class AxCoordinateSystem;
class CAxEarthViewer;

/// The heights of the ground below a block: lowest, highest and mean, how much is not known, and their export
/// as CSV or GeoTIFF. GUI thread.
class HeightsBox : public CAxBaseDialog
{
    Q_OBJECT
public:
    /// Reads the heights below a block at the map's finest level, with progress and Cancel, and shows them.
    /// The operator is told where there is nothing to read. Events run meanwhile; block and viewer may go.
    static void ShowOf(CAxEarthViewer* viewer, const QString& blockID, QWidget* window);

    /// `name` is the block's; places are written in the system. `aboveEllipsoid` as
    /// CAxEarthViewer::AreMapHeightsAboveEllipsoid() has it.
    HeightsBox(AxHeightGridPointer grid, QString name, const AxCoordinateSystem& system, bool aboveEllipsoid,
               QWidget* window);

    /// Everything that it shows, line by line.
    static QString Report(const AxHeightGrid& grid, const AxCoordinateSystem& system, bool aboveEllipsoid);

protected slots:
    /// Exports, and stays.
    void slotBtnAcceptClicked() override;

private:
    AxHeightGridPointer heights;
    QString block;
    bool isAboveEllipsoid;
};
