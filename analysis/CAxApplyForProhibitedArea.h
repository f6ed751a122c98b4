#pragma once
#include "interaction/CAxOsgDrawRectange.h"

/**
 * An area for which the operator applies to fly in no-fly zones: a rectangle
 * that knows the zones that it meets.
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxApplyForProhibitedArea : public CAxOsgDrawRectange
{
    Q_OBJECT
public:
    CAxApplyForProhibitedArea(CAxEarthViewer* viewer, QObject* parent);

    /// Tests the rectangle against the zones, after every change of its shape: -1
    /// without a viewer, -2 without exactly four corners, 0 when the first and the
    /// third corner share a meridian or a parallel, else 1.
    int CheckGeometry() override;
    /// The zones that it met when it was last tested.
    const QStringList& GetZones() const { return zones; }

    /// Opens the form for the zones of the rectangle and sends it; only tells the
    /// operator when there are none.
    void Apply();
    /// Applies.
    void ResponseDoubleClickOnBlock() override;

private:
    QStringList zones;
};
