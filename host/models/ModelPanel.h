#pragma once
#include <osg/Matrixd>

#include <QPointer>
#include <QPointF>
#include <QWidget>

#include <utility>

class AxModelLayers;
class CAxEarthViewer;
class LimitedNumber;
class ModelsKept;
class QLabel;
class QMenu;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

/**
 * The 3-D models of the map: loads them, shows and hides, lifts, flies to and removes them, and lists those
 * of the project that could not be loaded. Owned by its parent; the viewer may go first. GUI thread.
 */
class ModelPanel : public QWidget
{
    Q_OBJECT
public:
    explicit ModelPanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);
    ~ModelPanel() override;

    /// Adds the entries that load.
    void FillMenu(QMenu* menu);
    /// What of it goes with a project.
    ModelsKept* Kept() const { return kept; }
    /// Loads a model file, a metadata.xml or its folder; asks where it stands if nothing tells it. A box
    /// tells why not. False when it is not loaded.
    bool Load(const QString& path);
    /// Whether a file, by its name, is a model, or a folder an export.
    static bool IsModelFile(const QString& file);

signals:
    void Wanted();                  ///< the panel is to be seen
    void Told(const QString& text); ///< for the status bar

private:
    QString Chosen() const;    ///< the layer's ID; empty for none
    int ChosenMissing() const; ///< 0 for none
    void ChooseMissing(int id);
    void Fill();
    void OnChosen();
    void OnItemChanged(QTreeWidgetItem* item, int column);
    void ChooseFiles();
    void ChooseFolder();
    AxModelLayers* Layers() const; ///< null once the viewer goes
    void Fly();
    void FlyTo(const QString& id);
    /// From how far a ball of that radius is seen as a whole, metres.
    double WholeFrom(double radius) const;
    /// Whether nothing is done on the map, and it has not been moved since a model was asked for.
    bool IsUndisturbed() const;
    void PutOnGround();
    void OnGround(double longitude, double latitude, double below, bool isKnown);
    void SetOrbit(bool on);
    void FindMissing();
    void Remove();

    QPointer<CAxEarthViewer> viewer;
    ModelsKept* kept;
    QTreeWidget* list;
    QPushButton* fly;
    QPushButton* find; ///< of a missing one
    QPushButton* remove;
    QPushButton* orbit;
    LimitedNumber* lift;
    QPushButton* ground;
    QLabel* note;
    QString folder;                       ///< that was used last
    QString asked;                        ///< by hand: it is flown to when it is there
    osg::Matrixd askedFrom;               ///< where the camera was then
    double askedRange = 0.0;              ///< how far from what it looks at, metres
    QString liftOf;                       ///< the layer whose lift is in the field
    QString orbitedLayer;                 ///< the camera goes around models until this one is gone or hidden
    std::pair<QString, QPointF> onGround; ///< the layer that is put there, and where its ground was asked for
    bool isFilling = false;
};
