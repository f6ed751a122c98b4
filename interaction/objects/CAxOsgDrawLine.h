#pragma once
#include "interaction/objects/AxBlockAdapter.h"
#include "interaction/objects/AxStripShape.h"

#include <memory>
#include <vector>

struct AxKeptPlane;

/**
 * A strip survey block: a band along a centre line, as of a road, a pipeline or a river. The vertices are
 * those of the centre line; it is clicked on the globe, no two clicks less than 50 m apart, and a double
 * click ends the drawing and opens the form of the strip. The band is derived from the line and the two
 * widths whenever one of them changes, and is what is filled, judged and named.
 *
 * CheckGeometry() answers -2, after a box that tells why, for a leg of less than 50 m at the vertex that is
 * dragged, for a line and widths that make no band, and for a band over a no-fly zone.
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxOsgDrawLine : public AxBlockAdapter
{
    Q_OBJECT
public:
    CAxOsgDrawLine(CAxEarthViewer* viewer, QObject* parent);
    ~CAxOsgDrawLine() override;

    /// Metres to the left and to the right of the line, seen along it; 3 and 3 at first. Both are stored,
    /// in the block record as well, and the band is drawn anew. Widths that are not finite or negative change
    /// nothing.
    void SetWidth(double width1, double width2) override;
    /// The same as one step of undo, in metres. False, with the reason told, for widths that give no band or
    /// one over a no-fly zone, and for a strip without a record; false for one that is locked or has routes.
    bool ChangeWidths(double width1, double width2);
    double GetWidth1() const { return width1; }
    double GetWidth2() const { return width2; }

    /// The band; the line itself while it makes none.
    std::vector<osg::Vec3d> Outline() override;
    bool IsOutlineClosed() override;
    /// The line, in the middle of its band.
    std::vector<osg::Vec3d> InnerLine() override;
    /// Also of the ground around the band.
    bool GetBlockElevation() override;
    /// Centre of the box around the band.
    CAxVector3D GetGravityLatLng() override;
    /// Takes the widths from the block record, if there is one.
    void ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor) override;

    /// The dialog of one vertex: its coordinates, and "Delete". In its place a box says why a block that is
    /// locked or has routes has none.
    void ResponseDoubleClickOnPoint(int index, osg::Vec3d point) override;
    /// The form of the strip: its name, length and widths. A block with routes has none.
    void ResponseDoubleClickOnBlock() override;
    /// The same form for a strip that has just been drawn. Who leaves it without OK does not want the strip:
    /// 2, else 0.
    int ResponseDoubleClickWhenDraw() override;

public slots:
    void slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;

protected:
    AxVerdict JudgeShape() override;
    AxVerdict Judge() override;
    QString ShapeFault() override;
    /// With the area and width of the band.
    QString DragText(std::size_t vertex) override;

private:
    bool fillIn(bool isNew);
    bool mayHave(const AxStripShape::Widths& widths);
    bool changeWidths(const AxStripShape::Widths& widths);
    bool takeWidthsOfRecord();
    void showWidths();
    const std::vector<osg::Vec3d>& band();
    void tell(const QString& text, const QString& details = {});

    double width1 = 3.0;
    double width2 = 3.0;
    double minDistance = AxStripShape::leastLeg; ///< shortest leg that is drawn or edited, metres
    AxStripShape::KeptBand keptBand;
    std::unique_ptr<AxKeptPlane> keptPlane; ///< of the band whose area was told last
};
