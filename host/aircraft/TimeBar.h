#pragma once
#include <AxTelemetry/record/AxFlightRecord.h>

#include <QWidget>

#include <memory>
#include <optional>

/// The true time of a recorded flight from left to right, with its gaps hatched and its photos ticked. The
/// mouse and the keys move through it (arrows by 1 s, pages by 10 s, Home and End); Escape takes a drag back.
/// GUI thread.
class TimeBar : public QWidget
{
    Q_OBJECT
public:
    explicit TimeBar(QWidget* parent = nullptr);

    /// Null shows nothing.
    void SetFlight(std::shared_ptr<const AxFlightRecord> record);
    void SetTime(quint64 now);

    /// Where a time is, in pixels from the left, and back.
    double PlaceOf(quint64 time) const;
    quint64 TimeAt(double place) const;

    QSize sizeHint() const override;

signals:
    void Wanted(quint64 time);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void want(double place);

    std::shared_ptr<const AxFlightRecord> flight;
    quint64 time = 0;
    std::optional<quint64> beforeDrag;
};
