#pragma once
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <vector>

class CAxEarthViewer;

/// Which aircraft have got the mission of which task, as far as this program has brought it there: for the
/// question before a task or its block is deleted. An aircraft that is taken off the map is forgotten. GUI
/// thread.
class CarriedMissions : public QObject
{
    Q_OBJECT
public:
    /// That of the viewer, which owns it; made when it is first asked for.
    static CarriedMissions& Of(CAxEarthViewer* viewer);

    struct Carrier
    {
        QPointer<const QObject> aircraft;
        QString name;
        std::function<bool()> isInTheAir; ///< asked while the aircraft lives
    };
    /// The aircraft carries this task's mission from now on, and that alone; with empty IDs it is not known
    /// which one.
    void Take(const Carrier& carrier, const QString& blockID, const QString& taskID);

    /// What a person has to know before the task goes, or all tasks of the block where `taskID` is empty:
    /// who is in the air with it. Empty for nobody.
    QString Warning(const QString& blockID, const QString& taskID = {}) const;

private:
    using QObject::QObject;

    struct Entry
    {
        Carrier carrier;
        QString blockID;
        QString taskID;
    };
    std::vector<Entry> entries;
};
