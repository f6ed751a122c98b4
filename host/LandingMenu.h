#pragma once
#include <AxAlgorthm/CAxVector3D.h>

#include <QMap>
#include <QObject>
#include <QString>

#include <optional>

class CAxDownhillAnglenode;
class CAxEarthViewer;
class QAction;
class QMenu;

/**
 * Actions for landings and points of interest: the direction of the approach to the home of the chosen block,
 * turned on the map by its handle and kept for each block, and a point of interest by a click; each of these
 * edits is a step of the undo history. Owned by its parent; the viewer outlives it. GUI thread.
 */
class LandingMenu : public QObject
{
    Q_OBJECT
public:
    LandingMenu(CAxEarthViewer* viewer, QObject* parent);
    ~LandingMenu() override;

    void AddTo(QMenu* menu);

    /// The directions of the approaches to the blocks that there are, for a project; empty without any.
    QString Text() const;
    /// Puts those of a project in the place of all others; what cannot be read is left out and told.
    void SetText(const QString& text);
    /// The same for the point of interest.
    QString InterestText() const;
    void SetInterestText(const QString& text);

signals:
    void Told(const QString& text); ///< for the status bar

private:
    void ShowApproach(bool shown);
    void Follow();
    void PickInterest(bool wanted);
    void EndPicking();
    void OnTurned(double degrees);
    void OnReleased();
    void SetAngle(const QString& blockID, double degrees);
    void OnInterestPicked(double longitude, double latitude, double altitude);
    void RemoveInterest();
    void ShowInterest(const std::optional<CAxVector3D>& place);
    void KeepInterest(const QString& text, const std::optional<CAxVector3D>& before,
                      const std::optional<CAxVector3D>& after);

    CAxEarthViewer* viewer;
    QAction* approachAction;
    QAction* interestAction;
    QAction* removeInterest;
    CAxDownhillAnglenode* approach = nullptr; ///< while it is shown
    bool hasHome = false;                     ///< the block that was looked at last
    QMap<QString, double> angles;             ///< by IDs of blocks, degrees; of blocks that are gone, too
    QString shownBlock;                       ///< whose approach is shown
    std::optional<double> angleBefore;        ///< of the drag that goes on
    std::optional<CAxVector3D> interest;      ///< latitude, longitude, altitude; as it was told last
};
