#pragma once
#include <osg/Vec3d>

#include <QMap>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

class CAxEarthViewer;
class QMenu;
class QPushButton;
class QTreeWidget;

/**
 * The control points of the map: the list, import from files, removal, each a step of the undo history. They
 * are drawn and searched, and fly nothing. GUI thread; the viewer may go first.
 */
class ControlPointPanel : public QWidget
{
    Q_OBJECT
public:
    explicit ControlPointPanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);

    /// Adds the entry that imports.
    void FillMenu(QMenu* menu);
    /// Adds the points of a file; a box tells what was left out. Names that are taken get a number; without a
    /// height a point is on the ground as it is loaded.
    void Import(const QString& file);

    /// All of them as one text, for the project file: a JSON array of [name, longitude, latitude, altitude],
    /// degrees and metres. Empty without points.
    QString Text() const;
    /// Puts those of a text in the place of all others; before the map is loaded they wait for it. What is no
    /// point is left out, and told.
    void SetText(const QString& text);

    QSize sizeHint() const override;

signals:
    void Wanted();                  ///< points were imported: the panel is to be seen
    void Told(const QString& text); ///< for the status bar

protected:
    void showEvent(QShowEvent* event) override;

private:
    bool IsLoaded() const;
    void ChooseFile();
    void Follow();
    void Fly();
    void Remove();
    /// Adds these points, or takes them away.
    void Change(const QMap<QString, osg::Vec3d>& points, bool isThere);
    /// The step of the undo history by which they came, or went.
    void Keep(const QString& text, const QMap<QString, osg::Vec3d>& points, bool isThere);
    void ShowText();
    void Warn(const QString& text, const QStringList& details);

    QPointer<CAxEarthViewer> viewer;
    QTreeWidget* list;
    QPushButton* removeButton;
    QString waiting; ///< a text for which there is no map yet
    QString folder;
};
