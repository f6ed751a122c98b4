#include "host/aircraft/ReplayBar.h"
#include "host/aircraft/AircraftText.h"
#include "host/aircraft/TimeBar.h"
#include "host/tasks/LimitedNumber.h"

#include <AxTelemetry/record/AxReplaySource.h>

#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>

ReplayBar::ReplayBar(QWidget* parent)
    : QWidget(parent), play(new QToolButton), speed(new LimitedNumber), time(new QLabel), bar(new TimeBar)
{
    play->setCheckable(true);
    play->setObjectName(QStringLiteral("PlayButton"));
    speed->setRange(AxReplaySource::slowest, AxReplaySource::fastest);
    speed->setDecimals(1);
    speed->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    speed->setValue(1.0);
    speed->setSuffix(tr(" times"));
    speed->setToolTip(tr("How fast the flight is replayed"));
    speed->setObjectName(QStringLiteral("ReplaySpeed"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(play, 0, 0);
    grid->addWidget(speed, 0, 1);
    grid->addWidget(time, 0, 2, Qt::AlignRight);
    grid->addWidget(bar, 1, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    connect(play, &QToolButton::clicked, this, [this](bool isPlaying) {
        if (replay)
            isPlaying ? replay->Play() : replay->Pause();
    });
    connect(speed, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, [this](double times) {
        if (replay)
            replay->SetSpeed(times);
    });
    connect(bar, &TimeBar::Wanted, this, [this](quint64 wanted) {
        if (replay)
            replay->SetTime(wanted);
    });
    Show(nullptr, nullptr);
}

void ReplayBar::Show(AxReplaySource* source, const std::shared_ptr<const AxFlightRecord>& flight)
{
    if (source != replay && replay)
        replay->disconnect(this);
    const bool isNew = source != replay;
    replay = source;
    setEnabled(source);
    if (!isNew)
        return;
    bar->SetFlight(flight);
    if (source) {
        const QSignalBlocker quiet(speed);
        speed->setValue(source->Speed());
        connect(source, &AxReplaySource::signalTime, this, &ReplayBar::ShowTime);
        connect(source, &AxReplaySource::signalPlaying, this, &ReplayBar::ShowPlaying);
    }
    ShowPlaying(source && source->IsPlaying());
    ShowTime();
}

void ReplayBar::ShowTime()
{
    if (!replay)
        return time->setText(QStringLiteral("-"));
    const QString now = AircraftText::Time(replay->Time());
    time->setText(replay->IsInGap() ? tr("%1, no data").arg(now) : now);
    bar->SetTime(replay->Time());
}

void ReplayBar::ShowPlaying(bool isPlaying)
{
    play->setChecked(isPlaying);
    play->setIcon(style()->standardIcon(isPlaying ? QStyle::SP_MediaPause : QStyle::SP_MediaPlay));
    play->setToolTip(isPlaying ? tr("Pause") : tr("Play"));
}
