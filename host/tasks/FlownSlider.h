#pragma once
#include <QTimer>
#include <QWidget>

class QSlider;
class TaskRoutes;

/// Shows the route of a task as if it were flown up to a place. GUI thread.
class FlownSlider : public QWidget
{
    Q_OBJECT
public:
    /// The routes outlive it.
    explicit FlownSlider(TaskRoutes* routes, QWidget* parent = nullptr);

    /// The task whose route is drawn so, with this many points; none for 0. The route of another one is drawn
    /// as it is.
    void SetTask(const QString& blockID, const QString& taskID, int points);

private:
    void Draw();
    void Reset();

    TaskRoutes* routes;
    QSlider* slider;
    QTimer rest;
    QString block;
    QString task;
    // Whose route the slider has drawn.
    QString drawnBlock;
    QString drawnTask;
};
