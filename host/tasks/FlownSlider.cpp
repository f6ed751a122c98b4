#include "host/tasks/FlownSlider.h"
#include "host/tasks/TaskRoutes.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>

#include <algorithm>
#include <utility>

namespace {
constexpr int flownRestMs = 30;
}

FlownSlider::FlownSlider(TaskRoutes* taskRoutes, QWidget* parent)
    : QWidget(parent), routes(taskRoutes), slider(new QSlider(Qt::Horizontal))
{
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    auto* reset = new QPushButton(tr("Reset"));
    slider->setToolTip(tr("Shows the route as if it were flown up to here"));
    line->addWidget(new QLabel(tr("Flown")));
    line->addWidget(slider, 1);
    line->addWidget(reset);
    rest.setSingleShot(true);
    rest.setInterval(flownRestMs);
    connect(slider, &QSlider::valueChanged, this, [this] {
        if (!rest.isActive())
            rest.start();
    });
    connect(&rest, &QTimer::timeout, this, &FlownSlider::Draw);
    connect(reset, &QPushButton::clicked, this, &FlownSlider::Reset);
}

void FlownSlider::SetTask(const QString& blockID, const QString& taskID, int points)
{
    slider->setEnabled(points > 0);
    rest.stop();
    block = blockID;
    task = taskID;
    if (!drawnTask.isEmpty() && drawnTask != task)
        routes->ShowFlown(drawnBlock, std::exchange(drawnTask, QString()), -1);
    if (points > 0) {
        const QSignalBlocker quiet(slider);
        slider->setRange(0, points - 1);
        slider->setValue(0);
    }
}

void FlownSlider::Draw()
{
    drawnBlock = block;
    drawnTask = task;
    routes->ShowFlown(block, task, slider->value());
}

void FlownSlider::Reset()
{
    {
        const QSignalBlocker quiet(slider);
        slider->setValue(0);
    }
    rest.stop();
    routes->ShowFlown(block, task, -1);
}
