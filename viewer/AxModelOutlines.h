#pragma once
#include <osg/Geode>
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osgEarth/DrapeableNode>

#include <QHash>
#include <QMap>
#include <QObject>
#include <QPointF>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

class AxModelLayers;
class AxViewerPrivate;

/**
 * The outlines of the model layers, drawn on the ground below "Bound Group" while their layers are shown, and
 * which blocks they meet. Each layer has its outline some moments after it was loaded: the worker finds it.
 * Blocks are tested again when a layer has its outline or goes, and when they have changed; hidden layers
 * count as others do.
 *
 * Part of the viewer. GUI thread.
 */
class AxModelOutlines : public QObject
{
    Q_OBJECT
public:
    /// Both outlive it.
    AxModelOutlines(AxViewerPrivate& viewer, AxModelLayers& book);
    ~AxModelOutlines() override;

    /// Names of the layers whose outlines a ring meets (degrees, the first not repeated; AxOutlinesMeet()),
    /// in the order of the book; of two with one name it is there once.
    QStringList Met(const std::vector<osg::Vec3d>& ring) const;
    /// answered() tells whether a block meets one, or the current one for an empty ID: once the outlines of
    /// all models are there, also of those that are being loaded. False for a block that there is not.
    void Ask(const QString& blockID);

signals:
    /// Once for each question, in their order.
    void answered(bool isMet);

private slots:
    /// From the worker: the number of the job, and the outline.
    void slotModelBound(QVariant bound);

private:
    struct Outline
    {
        std::vector<QPointF> ring; ///< longitude, latitude, degrees; empty until it is known
        int job = 0;
        osg::ref_ptr<osg::Geode> drawn;
    };

    void look(const QString& layer);
    void follow(const QString& layer);
    void drop(const QString& layer);
    void forget(const QString& layer);
    void giveUp();
    void testLater(const QString& blockID);
    void testAllLater();
    void test();
    void answer();

    AxViewerPrivate& viewer;
    AxModelLayers& book;
    QMap<QString, Outline> outlines; ///< by the layer's ID
    QHash<int, QString> awaited;     ///< IDs of layers by the number of the job
    int jobs = 0;
    QSet<QString> toTest; ///< IDs of blocks
    bool isTestDue = false;
    QStringList questions; ///< IDs of blocks
    osg::ref_ptr<osgEarth::DrapeableNode> group;
};
