#pragma once
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVector>

#include <functional>
#include <utility>

class AxModelLayers;
class CAxEarthViewer;

/**
 * Models as a project keeps them: where their files are, how they are placed and whether they are shown. One
 * that cannot be loaded stays in the project, as its disk may be back the next time. Owned by its parent; the
 * viewer may go first. GUI thread.
 */
class ModelsKept : public QObject
{
    Q_OBJECT
public:
    ModelsKept(CAxEarthViewer* viewer, QObject* parent);
    ~ModelsKept() override;

    /// Tells the folder of the project; empty for none. Models are found again from there when it is moved
    /// with them.
    void SetHome(std::function<QString()> folder) { home = std::move(folder); }

    /// All models of the map and those that could not be loaded; empty for nothing.
    QString Text() const;
    /// Puts what such a text names in the place of all models, and begins to load them. What cannot be read
    /// is left out and told.
    void SetText(const QString& text);

    /// A model of the project that is not on the map, or one that was asked for and refused.
    struct Missing
    {
        int id = 0; ///< above 0
        QString name;
        QString path;
        QString reason;
        bool isRefused = false; ///< the project has not had it, and does not get it
    };
    QVector<Missing> GetMissing() const;
    void Forget(int id); ///< nothing for an ID that there is not
    /// The same; it comes back to the missing ones where it fails again, and the reason is told where that is
    /// at once. With a path it is looked for there from now on, unless that is refused at once. One that is
    /// on the map already is missing no more.
    void TryAgain(int id, const QString& path = {});

signals:
    void missingChanged();
    void Told(const QString& text); ///< for the status bar

private:
    /// One model, in the order of the project.
    struct Kept
    {
        bool isRefused = false; ///< it has never been on the map
        int id = 0;
        QString layer;     ///< on the map; empty for a missing one
        QJsonObject model; ///< as the project has it; empty for one that the pilot has added
        QString reason;
    };

    AxModelLayers* Layers() const;
    Kept* FindMissing(int id);
    Kept* FindLayer(const QString& layer);
    void Load(Kept& one);
    /// Where a model's files are: beside the project, if they are there.
    QString PathOf(const QJsonObject& model) const;
    QJsonObject WithWayFromHome(QJsonObject model) const;
    void OnAdded(const QString& layer);
    void OnFailed(const QString& layer, const QString& why);
    void OnRemoved(const QString& layer);

    QPointer<CAxEarthViewer> viewer;
    std::function<QString()> home;
    QVector<Kept> all;
    int last = 0;
    bool isLoading = false; ///< what OnAdded() is told of is in the list
};
