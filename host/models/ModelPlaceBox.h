#pragma once
#include "interaction/AxModelLayers.h"

#include <AxBaseUI/CAxBaseDialog.h>

#include <QPointer>
#include <QPointF>

#include <array>

class CAxEarthViewer;
class LimitedNumber;
class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;

/**
 * Asks where a model stands whose files do not tell it, or tell it wrongly: with its zero at a place, or in a
 * coordinate system with an origin. OK can be pressed only when that is somewhere. Modal; GUI thread.
 */
class ModelPlaceBox : public CAxBaseDialog
{
    Q_OBJECT
public:
    ModelPlaceBox(CAxEarthViewer* viewer, const AxModelSource& source, QWidget* parent);

    /// As filled in.
    AxModelOptions Options() const;

private:
    void Judge();
    void TakeMiddleOfView();
    /// The height at the finest level comes after that of the ground as it is loaded.
    void OnGround(double longitude, double latitude, double ground, bool isKnown);

    QPointer<CAxEarthViewer> viewer;
    AxModelSource source;
    QRadioButton* atPlace;
    QRadioButton* inSystem;
    QLineEdit* place;
    LimitedNumber* height;
    QLineEdit* system;
    std::array<LimitedNumber*, 3> origin{};
    QComboBox* heights;
    QComboBox* up;
    QLabel* understood;
    QPointF askedMiddle; ///< longitude, latitude
    QString askedPlace;
    double coarse = 0.0; ///< the height there that was known at once
};
