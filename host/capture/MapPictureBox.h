#pragma once
#include "viewer/AxShot.h"

#include <AxBaseUI/CAxBaseDialog.h>

#include <QSize>
#include <QString>
#include <QVector>

class LimitedNumber;
class QComboBox;
class QLabel;

/// Asks for the ground that a picture from straight above shows, and how large a pixel of it is. GUI thread.
class MapPictureBox : public CAxBaseDialog
{
    Q_OBJECT
public:
    /// What can be chosen.
    struct Area
    {
        QString name;
        AxShotGround ground; ///< none with a side of 0
        double pixel = 1.0;  ///< that is proposed, metres
    };
    /// Not empty.
    MapPictureBox(QVector<Area> areas, QWidget* parent);

    double Pixel() const; ///< side, metres
    QSize Size() const;   ///< pixels
    /// What these pixels cover: a little more than the area, in whole pixels.
    AxShotGround Ground() const;

private:
    void Choose();
    void Follow();
    const Area& chosen() const;

    const QVector<Area> areas;
    QComboBox* choice;
    LimitedNumber* pixel;
    QLabel* told;
};
