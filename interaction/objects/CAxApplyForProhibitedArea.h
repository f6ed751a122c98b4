#pragma once
#include "interaction/objects/CAxOsgDrawRectange.h"

/**
 * An area for which the operator applies to fly in no-fly zones: a rectangle
 * that knows the zones that it meets, and enters them into its block record. Its
 * form opens shortly after it was drawn, and on a double click.
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxApplyForProhibitedArea : public CAxOsgDrawRectange
{
    Q_OBJECT
public:
    CAxApplyForProhibitedArea(CAxEarthViewer* viewer, QObject* parent);

    void ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor) override;
    void HandleEnd() override;
    /// The same colour with routes and without.
    void UpdateColor() override;
    /// The zones that it met when it was last tested.
    const QStringList& GetZones() const { return zones; }

    /// Opens the form for the zones of the rectangle and sends it; only tells the
    /// operator when there are none. When sending fails or is given up the form
    /// comes back. Nothing happens while it is open, or without a block record.
    void Apply();
    /// Of the shape alone: zones are what it is drawn over.
    QString Fault() override;
    /// Applies.
    void ResponseDoubleClickOnBlock() override;
    /// Applies after the time of a double click.
    int ResponseDoubleClickWhenDraw() override;

protected:
    /// Tests the rectangle against the zones, after every change of its shape, and says nothing to the
    /// operator; signalIntersection() tells the zones. CheckGeometry() answers -1 without a viewer, -2
    /// without exactly four corners, 0 when the first and the third corner share a meridian or a parallel,
    /// else 1.
    AxVerdict Judge() override;

private:
    void giveZonesToBlock();
    void applyLater();
    void fillInAndSend(const QString& blockID);

    QStringList zones;
    bool isApplying = false;
    bool isDue = false; ///< applyLater() has been called and not come about
};
