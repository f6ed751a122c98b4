#pragma once
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVector>

class AxSightAnalysis;
class CAxEarthViewer;

/**
 * Lines of sight and viewsheds as a project keeps them: what was asked, not what was found. Those of a
 * project that was opened are looked at anew, one after the other; a question that the pilot asks meanwhile
 * goes first. One that finds no answer stays in the project. Owned by its parent; the viewer may go first.
 * GUI thread.
 */
class SightKept : public QObject
{
    Q_OBJECT
public:
    SightKept(CAxEarthViewer* viewer, QObject* parent);
    ~SightKept() override;

    /// Everything that was asked and not removed, in its order; empty for nothing.
    QString Text() const;
    /// Puts what such a text asks in the place of all results, and begins to look. What cannot be read is
    /// left out and told.
    void SetText(const QString& text);

    /// A question of the project without a result.
    struct Waiting
    {
        int id = 0;     ///< above 0
        QString name;   ///< what it is
        QString reason; ///< why it is not looked at any more; empty while it will be
    };
    QVector<Waiting> GetWaiting() const;
    void Remove(int id);    ///< nothing for an ID that there is not
    void LookAgain(int id); ///< at one that is not looked at any more

signals:
    void waitingChanged();
    void Told(const QString& text);   ///< for the status bar
    void Unread(const QString& text); ///< what SetText() has left out, for the operator

private:
    struct Asked
    {
        int id = 0;
        QJsonObject question;
        int number = 0; ///< of the result; 0 without
        QString reason; ///< why there is none
    };

    static bool IsToBeAsked(const Asked& one);
    AxSightAnalysis* Analysis() const;
    Asked* Find(int id);
    void Next();
    QString Ask(const QJsonObject& question);
    void OnBusy(bool busy);
    void Settle();
    void OnAdded(int number);
    void OnFailed(const QString& why);
    void OnRemoved(int number);

    QPointer<CAxEarthViewer> viewer;
    QVector<Asked> asked;
    int last = 0;    ///< of the IDs
    int running = 0; ///< whose answer is the next one; 0 when that is the pilot's
    bool isAsking = false;
};
