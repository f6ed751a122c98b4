#pragma once
#include "interaction/objects/AxBlockAdapter.h"

class AxObjects;

/**
 * The line along which a block is to be cut, while the operator draws it: clicks set its points, a double
 * click cuts, Escape and another tool leave the block as it is. It is no block and leaves none behind.
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AxCutLine : public AxBlockAdapter
{
    Q_OBJECT
public:
    AxCutLine(CAxEarthViewer* viewer, QObject* parent, AxObjects& objects, const QString& blockID);
    ~AxCutLine() override;

    AxShapeKind ShapeKind() const override { return {AxShapeKind::Edges::Open, 2, true}; }
    /// The block becomes the current one again.
    bool CancelHandle() override;

public slots:
    void slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;

protected:
    AxVerdict JudgeShape() override { return AxVerdict::WrongCount; }

private:
    bool hasOtherTool() const;

    AxObjects& book; ///< the object does not outlive its viewer's
    const QString cut;
};
