#pragma once
#include <AxAlgorthm/AxNameIndex.h>

#include <QLineEdit>
#include <QPointF>

#include <vector>

class CAxEarthViewer;
class QListWidget;

/**
 * Looks for blocks, marks, control points, place names and coordinates while the pilot types, and flies to
 * the one that is chosen. Of place names that fit equally well those near the view come first. Keys: up and
 * down choose, Enter flies, Escape closes the list and then leaves the box. Owned by its parent; the viewer
 * outlives it. GUI thread.
 */
class SearchBox : public QLineEdit
{
    Q_OBJECT
public:
    SearchBox(CAxEarthViewer* viewer, QWidget* parent);

signals:
    void Told(const QString& text); ///< for the status bar

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    /// What a name stands for.
    struct Target
    {
        QString text; ///< as the list shows it
        enum
        {
            Place,
            Block,
            Mark,
            ControlPoint
        } kind = Place;
        QString id;    ///< of block and mark, name of a control point: where it is is asked with the flight
        QPointF place; ///< longitude, latitude; of a place
        double range = 0.0; ///< metres from which it is looked at; not of a block
    };

    void ReadPlaces();
    void ReadOwn();
    AxNameIndex::Distance FromView() const; ///< of places; none before there is a view
    void OnTyped();
    void ShowList();
    void FlyTo(const Target& target);
    /// False when it is gone.
    bool FlyToOwn(const Target& target);
    void FlyToPlace(const QPointF& place, double range);
    void FlyToRow(int row);

    CAxEarthViewer* viewer;
    QListWidget* list;
    AxNameIndex places; ///< of the shipped gazetteer
    std::vector<Target> placeTargets;
    AxNameIndex own; ///< blocks, marks, control points: as they are when the box is entered
    std::vector<Target> ownTargets;
    std::vector<Target> shown;
};
