#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Matrixd>
#include <osg/Vec3d>

#include <QGraphicsScene>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

class AxHoverLabel;
class AxViewerParts;
class AxZoneAnswers;

/**
 * Tells the names of the no-fly zones under the mouse, in a small label beside
 * it, while zones are shown and the mouse neither draws nor drags.
 *
 * Made once the viewer's scene exists; belongs to whoever makes it and ends
 * before the zones that it asks. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxZoneHover : public QObject
{
    Q_OBJECT
public:
    AxZoneHover(AxViewerParts& viewer, const AxZoneAnswers& zones);
    ~AxZoneHover() override;

    /// What the label says; empty while there is none.
    QString Text() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void slotMouseMove(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void slotHide();

private:
    bool MayShow() const;
    QString TextOf(const QStringList& ids) const;
    void CheckShown();

    AxViewerParts& viewer;
    const AxZoneAnswers& zones;
    QPointer<QGraphicsScene> scene; // owns the label
    AxHoverLabel* label = nullptr;
    osg::Matrixd shownView;
    QTimer check;
};
