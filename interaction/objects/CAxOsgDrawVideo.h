#pragma once
#include "interaction/objects/AxBlockAdapter.h"

#include <QStringList>

#include <vector>

/**
 * A video block: a circle on the ground, whose centre is its only vertex and whose radius, whole metres, its
 * record keeps (CAxBlock::GetVideoRadius).
 *
 * The first click sets the centre, the second one the radius, which follows the mouse in between; a double
 * click on the centre takes the radius that a new record has. Going on with a finished one
 * (ToolContinueBlock) does the same with it, as an edit. Its handle in the middle moves it, the one on the
 * rim changes the radius, a double click opens its dialog. CheckGeometry() answers -1 before there is a
 * centre, and -2, after a box that tells why, for a radius beyond what is allowed and a circle over a no-fly
 * zone.
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxOsgDrawVideo : public AxBlockAdapter
{
    Q_OBJECT
public:
    /// Of a radius, metres; the mouse goes no further.
    static constexpr double leastRadius = 1.0;
    static constexpr double mostRadius = 10000.0;

    CAxOsgDrawVideo(CAxEarthViewer* viewer, QObject* parent);
    ~CAxOsgDrawVideo() override;

    /// As it is drawn, metres; during a drag not a whole number.
    double GetRadius() const { return radius; }

    std::vector<osg::Vec3d> Outline() override;
    bool IsOutlineClosed() override;
    std::vector<AxFurtherHandle> FurtherHandles() override;
    void ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor) override;
    void ResumeDrawing(std::vector<osg::Vec3d> vertices) override;
    void HandleEnd() override;
    /// Both change the record and the map at once, for a host: nothing is judged, and undo does not know of
    /// it. A radius below 1 m and what is no place are passed over, and so is a call while it is drawn or
    /// dragged.
    void SetVideoRadius(int radius) override;
    void SetVideoPosition(const osg::Vec3d& lngLatPos) override;
    /// The dialog of the block, also from its handles: name and radius. A block with routes has none.
    void ResponseDoubleClickOnBlock() override;
    void ResponseDoubleClickOnPoint(int index, osg::Vec3d point) override;
    void ResponseHandlePointMoved(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;

public slots:
    void slotMousePressed(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPointMoved(double lng, double lat, double alt, int index) override;

protected:
    AxVerdict JudgeShape() override;
    QString ShapeFault() override;

private:
    std::vector<osg::Vec3d> circleOnGround(const osg::Vec3d& centre, double metres) const;
    bool isFinished() const;
    double radiusTo(const osg::Vec3d& lngLatPos) const;
    void takeRim(const osg::Vec3d& lngLatPos);
    bool isOnCentre(const osg::Vec3d& lngLatPos);
    void showRadius(double metres, const osg::Vec3d& lngLatPos, const QString& hint);
    void finish();
    bool judgeAndCommit(const QString& text);

    double radius;
    double rimHeading = 90.0;  ///< degrees clockwise from north, where the handle of the rim stands
    bool centreIsNew = false;  ///< a click has set it, and no press has come since
    bool hasNewCentre = false; ///< in a drawing that goes on with a finished one
    bool endedByClick = false; ///< and no press has come since
    bool isRecorded = false;   ///< the record has the radius; before, it has that of a new one
};
