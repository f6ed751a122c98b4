#pragma once
#include "host/files/KeptList.h"

#include <QObject>
#include <QPointer>
#include <QString>

class AxMeasurements;
class CAxEarthViewer;

/**
 * Measurements as a project keeps them: with which tool and where, not what was found. Those of a project
 * that was opened are measured anew. Volumes are VolumeKept's. What cannot be read stays in the project.
 * Owned by its parent; the viewer may go first. GUI thread.
 */
class MeasureKept : public QObject
{
    Q_OBJECT
public:
    MeasureKept(CAxEarthViewer* viewer, QObject* parent);
    ~MeasureKept() override;

    /// All but the volumes, in their order; empty for none.
    QString Text() const;
    /// Puts those of such a text in the place of all but the volumes. Unread() tells what cannot be read.
    void SetText(const QString& text);

signals:
    void Unread(const QString& text); ///< with the names of measurements and fields, for the operator

private:
    AxMeasurements* Measurements() const;
    void Replace(const QString& text);
    QString Show(const QJsonValue& entry) const;
    void Note();

    QPointer<CAxEarthViewer> viewer;
    KeptList list;
    QString former; ///< what Text() gave last
    bool isOpening = false;
};
