#pragma once
#include "scene/AxTaskRoute.h"
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/CAxVector3D.h>

#include <QObject>
#include <QString>

/**
 * The route of one task, as the map object to whose block it belongs knows it:
 * which task, where it begins and where its aircraft lands. Owned by whoever
 * made it; the object lets go of it with RemoveTask(), or when it is destroyed.
 * GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxTaskPolygon : public QObject, public AxTaskRoute
{
    Q_OBJECT
public:
    explicit CAxTaskPolygon(QObject* parent = nullptr);
    ~CAxTaskPolygon() override;

    /// Before it is added to a map object, which finds it by that ID.
    void SetTaskID(const QString& id) { taskID = id; }
    const QString& GetTaskID() const override { return taskID; }
    QObject& AsObject() override { return *this; }
    /// Index of the chosen entry point, -1 when none was chosen.
    void SetEntryPoint(int index) override { entryPoint = index; }
    int GetEntryPoint() const { return entryPoint; }
    /// Where the aircraft takes off and lands: longitude, latitude, altitude; null until set.
    void SetHomePoint(const CAxVector3D& position) override { homePoint = position; }
    const CAxVector3D& GetHomePoint() const override { return homePoint; }
    /// Whether it glides down to its landing point.
    void SetLandingMethod(bool downhill) override { landsDownhill = downhill; }
    bool GetLandingMethod() const { return landsDownhill; }

private:
    QString taskID;
    int entryPoint = -1;
    CAxVector3D homePoint;
    bool landsDownhill = false;
};
