#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QObject>
#include <QVariant>

/**
 * Takes the answer of an elevation job of CAxAncillaryProcess: a list of places,
 * each a list of longitude, latitude (degrees) and altitude (metres).
 *
 * Owned by whoever asks; it must live until the answer is there.
 */
class AXEARTHVIEWER_EXPORT CAxElevationQuery : public QObject
{
    Q_OBJECT
public:
    /// It belongs to its Qt parent, if it is given one.
    explicit CAxElevationQuery(QObject* parent = nullptr) : QObject(parent) {}

    /// Keeps an answer and tells no one: for a caller that waits in CAxAncillaryProcess::block().
    void SetResult(const QVariant& places) { result = places; }
    /// Invalid until there is an answer.
    const QVariant& GetResult() const { return result; }

public slots:
    /// Keeps an answer and tells of it.
    void slotGenerateElevationQuery(QVariant places);

signals:
    /// There is an answer: the list of places.
    void signalElevations(QVariant places);

private:
    QVariant result;
};
