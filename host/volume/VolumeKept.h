#pragma once
#include "host/files/KeptList.h"

#include <QObject>
#include <QPointer>
#include <QString>

class AxVolumeAnalysis;
class CAxEarthViewer;

/**
 * Volumes as a project keeps them: what was asked, not what was found. Those of a project that was opened are
 * computed anew, one after the other; large ones wait until somebody asks for them. One that was drawn is a
 * measurement again. What cannot be read stays in the project. Owned by its parent; the viewer may go first.
 * GUI thread.
 */
class VolumeKept : public QObject
{
    Q_OBJECT
public:
    VolumeKept(CAxEarthViewer* viewer, QObject* parent);
    ~VolumeKept() override;

    /// All volumes, in their order; empty for none.
    QString Text() const;
    /// Puts what such a text asks in the place of all volumes, and begins to compute. Unread() tells what
    /// cannot be read.
    void SetText(const QString& text);
    /// Volumes come from a project just now, and nobody has asked for them.
    bool IsOpening() const { return isOpening; }

signals:
    void Unread(const QString& text); ///< with the names of volumes and fields, for the operator

private:
    AxVolumeAnalysis* Analysis() const;
    void Replace(const QString& text);
    QString Show(const QJsonValue& entry);
    void Note();

    QPointer<CAxEarthViewer> viewer;
    KeptList list;
    QString former; ///< what Text() gave last
    bool isOpening = false;
};
