#pragma once
#include "analysis/AxMeanAltitude.h"

#include <QMap>
#include <QObject>
#include <QThreadPool>

#include <memory>

class AxScene;
class CAxBlock;

/**
 * Writes the average altitude of its ground into each block's record when its
 * vertices have changed. A thread of its own reads the heights, because a source
 * may keep it waiting; the record is written soon afterwards, unless somebody
 * else has written it meanwhile. A record that comes with an altitude keeps it; where it is that of the
 * ground, as in a project, it follows the ground from then on. Where no height could be read, the next change
 * of the block or of the ground asks again.
 *
 * Owned by CAxAncillaryProcess. GUI thread.
 */
class AxBlockAltitudes : public QObject
{
    Q_OBJECT
public:
    /// The scene outlives it.
    explicit AxBlockAltitudes(AxScene& scene);
    /// Calls the work off and waits for the thread.
    ~AxBlockAltitudes() override;

    /// The ground is another one: asks for every block whose altitude comes from it. What somebody has set
    /// otherwise stays.
    void AskAgain();

private slots:
    void slotAdded(const QString& id);
    void slotChanged(const QString& id);
    void slotDeleted(const QString& id);

private:
    /// What a block was last asked for.
    struct Asked
    {
        QList<QPointF> vertices;
        double former = 0.0; ///< the altitude in the record at that time, or what was written into it
        std::shared_ptr<std::atomic<bool>> isOff;
        bool isCompared = false; ///< that altitude is to stay, whatever is found
        bool isOfGround = false; ///< it is that of the ground
    };

    void ask(const CAxBlock& block, bool isCompared);
    void write(const QString& id, const std::shared_ptr<std::atomic<bool>>& job,
               const std::optional<double>& altitude);

    AxScene& scene;
    QMap<QString, Asked> asked; // by the block's id
    QThreadPool thread;
};
