#include "host/PanelExtents.h"

#include <QDataStream>
#include <QDockWidget>
#include <QEvent>
#include <QLayout>
#include <QMainWindow>
#include <QScopedValueRollback>

namespace {
// What a small window leaves to the map, and to the bars above and below it; pixels.
constexpr QSize leastForMap(380, 420);
constexpr int leastExtent = 60;
constexpr int largestExtent = 10000;
} // namespace

PanelExtents::PanelExtents(QMainWindow* mainWindow) : QObject(mainWindow), window(mainWindow)
{
    window->installEventFilter(this);
}

void PanelExtents::Add(QDockWidget* panel)
{
    panels += panel;
    panel->installEventFilter(this);
}

void PanelExtents::Want(Qt::DockWidgetArea side, int extent)
{
    wanted[side] = extent;
}

bool PanelExtents::eventFilter(QObject* object, QEvent* event)
{
    const bool isOfWindow = object == window;
    if (isOfWindow && (event->type() == QEvent::Resize || event->type() == QEvent::Show))
        Apply();
    // The layout has moved the panels by the time the window hears of its own new size.
    if (!isOfWindow && event->type() == QEvent::Resize && !applying && window->size() == laidOut)
        Note(static_cast<QDockWidget*>(object));
    return QObject::eventFilter(object, event);
}

void PanelExtents::Note(const QDockWidget* panel)
{
    const int side = window->dockWidgetArea(const_cast<QDockWidget*>(panel));
    if (panel->isVisible() && !panel->isFloating())
        wanted[side] = IsAtSide(side) ? panel->width() : panel->height();
}

void PanelExtents::Apply()
{
    QMap<int, QDockWidget*> atSide;
    for (QDockWidget* const panel : qAsConst(panels))
        if (!panel->isHidden() && !panel->isFloating())
            atSide[window->dockWidgetArea(panel)] = panel;
    const QScopedValueRollback<bool> guard(applying, true);
    for (const Qt::Orientation direction : {Qt::Horizontal, Qt::Vertical}) {
        QList<QDockWidget*> resized;
        QList<int> extents;
        for (auto entry = atSide.cbegin(); entry != atSide.cend(); ++entry) {
            if (IsAtSide(entry.key()) != (direction == Qt::Horizontal) || !wanted.contains(entry.key()))
                continue;
            resized += entry.value();
            extents += wanted.value(entry.key());
        }
        const int room = direction == Qt::Horizontal ? window->width() - leastForMap.width()
                                                     : window->height() - leastForMap.height();
        for (int& extent : extents)
            extent = qMin(extent, qMax(leastExtent, room / extents.size()));
        window->resizeDocks(resized, extents, direction);
    }
    // At once, because later it would be taken for the operator's doing.
    window->layout()->activate();
    laidOut = window->size();
}

QByteArray PanelExtents::Save() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << wanted;
    return bytes;
}

void PanelExtents::Restore(const QByteArray& saved)
{
    QMap<int, int> read;
    QDataStream stream(saved);
    stream >> read;
    if (stream.status() != QDataStream::Ok)
        return;
    for (auto entry = wanted.begin(); entry != wanted.end(); ++entry) {
        const int extent = read.value(entry.key());
        if (extent > 0 && extent < largestExtent)
            entry.value() = extent;
    }
}
