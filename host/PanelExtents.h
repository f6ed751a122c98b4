#pragma once
#include <QList>
#include <QMap>
#include <QObject>
#include <QSize>

class QByteArray;
class QDockWidget;
class QMainWindow;

/**
 * How wide the panels at the sides of a window are wanted to be, and how high
 * those above and below. A window that becomes too small takes from them what
 * the map needs, and they have it back when the window grows again. Owned by
 * the window; GUI thread.
 */
class PanelExtents : public QObject
{
    Q_OBJECT
public:
    explicit PanelExtents(QMainWindow* window);

    /// A panel of the window, from now on in the window's hands.
    void Add(QDockWidget* panel);
    /// The extent of a side in pixels, until the operator makes it another one.
    void Want(Qt::DockWidgetArea side, int extent);

    /// Gives the panels their extents again, as far as the window has room: after some were shown.
    void Apply();

    /// The wanted extents, for another run. What cannot be read changes nothing.
    QByteArray Save() const;
    void Restore(const QByteArray& saved);

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    static bool IsAtSide(int side)
    {
        return side == Qt::LeftDockWidgetArea || side == Qt::RightDockWidgetArea;
    }
    void Note(const QDockWidget* panel);

    QMainWindow* window;
    QList<QDockWidget*> panels;
    QMap<int, int> wanted; ///< by side
    QSize laidOut;         ///< the window, when panels last got their extents
    bool applying = false;
};
