#pragma once
#include <QPointer>
#include <QWidget>

#include <memory>

class AxFlightRecord;
class AxReplaySource;
class LimitedNumber;
class QLabel;
class QToolButton;
class TimeBar;

/// Plays a recorded flight: the button, the speed, the time in UTC and the bar through it. GUI thread.
class ReplayBar : public QWidget
{
    Q_OBJECT
public:
    explicit ReplayBar(QWidget* parent = nullptr);

    /// Null, or gone meanwhile: there is nothing to play.
    void Show(AxReplaySource* source, const std::shared_ptr<const AxFlightRecord>& flight);

private:
    void ShowTime();
    void ShowPlaying(bool isPlaying);

    QPointer<AxReplaySource> replay;
    QToolButton* play;
    LimitedNumber* speed;
    QLabel* time;
    TimeBar* bar;
};
