#pragma once
#include <QLabel>
#include <QPointer>
#include <QWidget>

#include <optional>

class AxMavlinkAircraft;
class QPushButton;

struct AircraftEnabled;

/// Arms the aircraft in focus, starts its mission, holds it, brings it home, and says in words what it
/// answers. What may hurt somebody is asked first. The aircraft and its link may go away at any time, also
/// while a question is open. GUI thread.
class CommandBar : public QWidget
{
    Q_OBJECT
public:
    explicit CommandBar(QWidget* parent = nullptr);

    /// The live aircraft in focus, null for none, and what may be pressed.
    void Show(AxMavlinkAircraft* aircraft, const AircraftEnabled& can);
    /// What came of a command is no longer told.
    void Forget() { outcome->hide(); }
    /// Whether the aircraft has been given a command that it has not answered yet.
    bool IsWaiting(const AxMavlinkAircraft* aircraft) const;

signals:
    /// What came of a command that was not obeyed.
    void Refused(const QString& who, const QString& text);

private:
    enum class Action
    {
        Arm,
        Disarm,
        StopMotors,
        Start,
        Pause,
        Continue,
        Return
    };
    struct Question
    {
        QString title;
        QString text;
        QString yes;
    };

    static QString NameOf(Action action);
    static int CommandOf(Action action);
    QPushButton* Button(Action action, const QString& tip, const char* name);
    void Press(Action action);
    void Disarm();
    bool IsWanted(const Question& question);
    void Send(Action action);
    void Take(const AxMavlinkAircraft* from, int command, const QString& fault);
    void TakeUnderWay(const AxMavlinkAircraft* from, int command);
    void Tell(const QString& text, bool isBad);

    QPointer<AxMavlinkAircraft> aircraft;
    // Given last; empty once it is answered.
    QPointer<AxMavlinkAircraft> target;
    QString targetName;
    std::optional<Action> waiting;
    bool isGivenUp = false; // the end of the same command, given before, comes first
    QPushButton* arm;
    QPushButton* disarm;
    QPushButton* start;
    QPushButton* pause;
    QPushButton* goOn;
    QPushButton* comeHome;
    QLabel* outcome;
};
