#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxBaseUI/CAxBaseWidget.h>

#include <QLabel>

#include <array>

/**
 * The read-out in the lower right corner of the map: four texts, two by two,
 * which the viewer hands over, and below them the name of their coordinate
 * system. Owned by the graphics scene. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxCoordinateWidget : public CAxBaseWidget
{
    Q_OBJECT
public:
    explicit CAxCoordinateWidget(QWidget* parent);

    /// The texts of the cells (0, 0), (0, 1), (1, 0) and (1, 1). Cheap enough for every move of the mouse.
    void SetCoordinate(const QString& longitude, const QString& latitude, const QString& altitude,
                       const QString& range);
    /// The name of the coordinate system, as far as it fits, in a row of its own, which makes the panel
    /// higher; an empty one takes the row away.
    void SetSystem(const QString& name);

protected:
    /// A press on the read-out is none on the map below it.
    void mousePressEvent(QMouseEvent* event) override;

private:
    void FitTexts();

    std::array<QLabel*, 4> labels{};
    QLabel* system = nullptr; ///< only while there is a name
};
