#pragma once
#include <QLabel>

#include <array>
#include <optional>

class CAxEarthViewer;

/// The place under the mouse, in the viewer's coordinate system, for a status bar. The viewer outlives it;
/// GUI thread.
class PlaceLabel : public QLabel
{
    Q_OBJECT
public:
    explicit PlaceLabel(CAxEarthViewer* viewer, QWidget* parent = nullptr);

private:
    void Write();

    CAxEarthViewer* viewer;
    std::optional<std::array<double, 3>> place; ///< degrees, degrees, metres; NaN for what is not known
    bool isCoarse = false;                      ///< its altitude
};
