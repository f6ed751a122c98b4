#pragma once
#include <QWidget>

class CAxEarthViewer;
class QLabel;
class QPushButton;
class QSlider;
class QTreeWidget;
class QTreeWidgetItem;
struct AxMapLayer;

/**
 * The layers of the map: shows, hides and fades them, adds pictures and heights from files and removes those
 * again, flies to where their data are. Owned by its parent; the viewer outlives it. GUI thread.
 */
class LayerPanel : public QWidget
{
    Q_OBJECT
public:
    explicit LayerPanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);

    /// Adds the pictures of a file, or its heights; a box tells why not.
    void Add(const QString& file, bool isElevation);

signals:
    void Told(const QString& text); ///< for the status bar

private:
    void Fill();
    void OnChanged(QTreeWidgetItem* item, int column);
    void OnChosen();
    void ChooseFiles(bool isElevation);
    void FlyTo(int id);
    int Chosen() const;                    ///< 0 for none
    QTreeWidgetItem* ItemOf(int id) const; ///< null for none
    static void Describe(QTreeWidgetItem& item, const AxMapLayer& layer);

    CAxEarthViewer* viewer;
    QTreeWidget* tree;
    QSlider* opacity;
    QPushButton* fly;
    QPushButton* remove;
    QString folder;  ///< that was used last
    QList<int> rows; ///< IDs of the layers in the list
    bool isFilling = false;
};
