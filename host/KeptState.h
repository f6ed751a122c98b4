#pragma once
#include "host/TourStops.h"

#include <QObject>
#include <QSettings>

#include <optional>

class QAbstractButton;
class QAction;
struct HostOptions;

/**
 * What the window keeps from one run to the next: its layout, the last view and the positions of switches.
 * A value that cannot be used is as good as none. GUI thread; owned by its parent.
 */
class KeptState : public QObject
{
    Q_OBJECT
public:
    /// A store in the file that the options name, or in the usual place of the system. Null when they want
    /// nothing to be kept.
    static KeptState* Open(const HostOptions& options, QObject* parent);

    QString FileName() const { return store->fileName(); }
    bool IsWritable() const { return store->isWritable(); }

    QByteArray Bytes(const QString& key) const;
    void SetBytes(const QString& key, const QByteArray& value);

    /// Brings a switch to its kept position, if there is one, and keeps each further one.
    void Follow(const QString& key, QAction* action);
    void Follow(const QString& key, QAbstractButton* button);
    /// The same for a switch that is no widget.
    bool Switch(const QString& key, bool otherwise) const;
    void SetSwitch(const QString& key, bool on);

    /// Where the camera was last; a place that it can go to.
    std::optional<TourStop> View() const;
    void SetView(const osgEarth::Viewpoint& view);

private:
    KeptState(QSettings* settings, QObject* parent);
    template <typename Widget> void follow(const QString& key, Widget* widget);

    QSettings* store;
};
