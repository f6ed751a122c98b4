#include "host/aircraft/CommandBar.h"
#include "host/aircraft/AircraftText.h"
#include "host/aircraft/PanelRules.h"

#include <AxTelemetry/AxMavlinkAircraft.h>

#include <AxBaseUI/CAxMessageBox.h>

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

CommandBar::CommandBar(QWidget* parent)
    : QWidget(parent), arm(Button(Action::Arm, tr("Lets the motors run; asks first"), "ArmButton")),
      disarm(Button(Action::Disarm, tr("Stops the motors; in the air it asks twice"), "DisarmButton")),
      start(Button(Action::Start, tr("Flies the mission that the aircraft carries; asks first"),
                   "StartButton")),
      pause(Button(Action::Pause, tr("Holds the aircraft where it is, until Continue"), "PauseButton")),
      goOn(Button(Action::Continue, tr("Goes on with the mission"), "ContinueButton")),
      comeHome(Button(Action::Return, tr("Brings the aircraft home, at once"), "ReturnButton")),
      outcome(new QLabel)
{
    outcome->setObjectName(QStringLiteral("CommandOutcome"));
    outcome->setWordWrap(true);
    outcome->setTextFormat(Qt::PlainText);
    outcome->setMinimumWidth(1);
    outcome->hide();
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    int place = 0;
    for (QPushButton* button : {arm, start, comeHome, disarm, pause, goOn}) {
        button->setEnabled(false);
        grid->addWidget(button, place / 3, place % 3);
        ++place;
    }
    grid->addWidget(outcome, 2, 0, 1, 3);
}

QPushButton* CommandBar::Button(Action action, const QString& tip, const char* name)
{
    auto* button = new QPushButton(NameOf(action));
    button->setToolTip(tip);
    button->setObjectName(QLatin1String(name));
    connect(button, &QPushButton::clicked, this, [this, action] { Press(action); });
    return button;
}

QString CommandBar::NameOf(Action action)
{
    switch (action) {
    case Action::Arm:
        return tr("Arm");
    case Action::Disarm:
        return tr("Disarm");
    case Action::StopMotors:
        return tr("Stop motors");
    case Action::Start:
        return tr("Start mission");
    case Action::Pause:
        return tr("Pause");
    case Action::Continue:
        return tr("Continue");
    default:
        return tr("Return");
    }
}

// MAV_CMD
int CommandBar::CommandOf(Action action)
{
    switch (action) {
    case Action::Arm:
    case Action::Disarm:
    case Action::StopMotors:
        return 400;
    case Action::Start:
        return 300;
    case Action::Pause:
    case Action::Continue:
        return 176;
    default:
        return 20;
    }
}

void CommandBar::Show(AxMavlinkAircraft* shown, const AircraftEnabled& can)
{
    // What the one before has answered is not of this one.
    if (shown && shown != aircraft)
        outcome->hide();
    aircraft = shown;
    arm->setEnabled(can.arm);
    disarm->setEnabled(can.disarm);
    start->setEnabled(can.start);
    pause->setEnabled(can.pause);
    goOn->setEnabled(can.pause);
    comeHome->setEnabled(can.comeHome);
    if (waiting && !target) {
        waiting.reset();
        Tell(tr("%1 has gone before it answered.").arg(targetName), true);
    }
}

bool CommandBar::IsWaiting(const AxMavlinkAircraft* of) const
{
    return waiting && of && of == target;
}

void CommandBar::Press(Action action)
{
    const QPointer<AxMavlinkAircraft> asked = aircraft;
    if (!asked)
        return;
    if (action == Action::Disarm)
        return Disarm();
    if (action == Action::Arm || action == Action::Start) {
        const AxAircraftState state = asked->State();
        const QString items = state.missionCount > 0 ? tr("Its mission has %1 items.").arg(state.missionCount)
                                                     : tr("How many items its mission has is not known.");
        const QString doing =
            action == Action::Arm ? tr("Arm %1? Its motors may run at once.")
            : IsInTheAir(state)
                ? tr("%1 is in the air. Start its mission from there?")
                : tr("Start the mission of %1? It may arm, run its motors and take off at once.");
        if (!IsWanted({NameOf(action), doing.arg(state.name) + QLatin1Char('\n') + items, NameOf(action)}))
            return;
        // Boxes let time pass.
        const QPushButton* button = action == Action::Arm ? arm : start;
        if (!asked || asked != aircraft || !button->isEnabled())
            return Tell(
                tr("%1: not sent, the aircraft or its link is no longer as it was.").arg(NameOf(action)),
                true);
    }
    Send(action);
}

void CommandBar::Disarm()
{
    const QPointer<AxMavlinkAircraft> asked = aircraft;
    if (IsInTheAir(asked->State())) {
        const QString name = asked->State().name;
        const QString title = NameOf(Action::Disarm);
        if (!IsWanted({title, tr("%1 is in the air. Disarmed, it FALLS. Disarm it all the same?").arg(name),
                       title}) ||
            !IsWanted(
                {title,
                 tr("%1 will fall to the ground, on whoever is below. Do you really want to stop its motors?")
                     .arg(name),
                 NameOf(Action::StopMotors)}))
            return;
        if (!asked || asked != aircraft || !disarm->isEnabled())
            return Tell(tr("%1: not sent, the aircraft or its link is no longer as it was.").arg(title),
                        true);
    }
    // It may have landed meanwhile.
    Send(IsInTheAir(asked->State()) ? Action::StopMotors : Action::Disarm);
}

bool CommandBar::IsWanted(const Question& question)
{
    CAxMessageBox box(window());
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(question.title);
    box.SetMsgText(question.text);
    box.SetBtnOKText(question.yes);
    box.SetBtnCancelText(tr("No"));
    box.SetCancelDefault(true);
    return box.exec() == QDialog::Accepted;
}

void CommandBar::Send(Action action)
{
    AxMavlinkAircraft* to = aircraft;
    const bool isAtOnce = action == Action::StopMotors || action == Action::Return;
    isGivenUp = isAtOnce && IsWaiting(to) && CommandOf(*waiting) == CommandOf(action);
    waiting = action;
    if (target != to) {
        if (target)
            target->disconnect(this);
        target = to;
        connect(to, &AxMavlinkAircraft::signalCommand, this,
                [this, to](int command, const QString& fault) { Take(to, command, fault); });
        connect(to, &AxMavlinkAircraft::signalCommandUnderWay, this,
                [this, to](int command) { TakeUnderWay(to, command); });
    }
    targetName = to->State().name;
    Tell(tr("%1: %2...").arg(targetName, NameOf(action)), false);
    switch (action) {
    case Action::Arm:
        return to->Arm(true);
    case Action::Disarm:
        return to->Arm(false);
    case Action::StopMotors:
        return to->StopMotors();
    case Action::Start:
        return to->StartMission();
    case Action::Pause:
        return to->Pause();
    case Action::Continue:
        return to->Continue();
    case Action::Return:
        return to->ReturnHome();
    }
}

void CommandBar::Take(const AxMavlinkAircraft* from, int command, const QString& fault)
{
    if (!IsWaiting(from) || command != CommandOf(*waiting))
        return;
    if (isGivenUp) {
        isGivenUp = false;
        return;
    }
    const QString action = NameOf(*waiting);
    waiting.reset();
    if (fault.isEmpty())
        return Tell(tr("%1: %2 - the aircraft obeys.").arg(targetName, action), false);
    Tell(tr("%1: %2 - %3").arg(targetName, action, fault), true);
    emit Refused(targetName, tr("%1 - %2").arg(action, fault));
}

void CommandBar::TakeUnderWay(const AxMavlinkAircraft* from, int command)
{
    if (IsWaiting(from) && command == CommandOf(*waiting))
        Tell(tr("%1: %2 - the aircraft has begun.").arg(targetName, NameOf(*waiting)), false);
}

void CommandBar::Tell(const QString& text, bool isBad)
{
    outcome->setText(text);
    outcome->setStyleSheet(isBad ? QStringLiteral("color: #c02020; font-weight: bold") : QString());
    outcome->show();
}
