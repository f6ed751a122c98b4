#pragma once
#include "BenchGlobe.h"

#include "viewer/CAxEarthViewer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QObject>

#include <functional>
#include <vector>

/// Times the paint events of the viewport: drawing, overlays and the swap.
class FrameWatch : public QObject
{
public:
    FrameWatch() : viewport(bench::globe().viewport())
    {
        viewport->installEventFilter(this);
        sinceShown.start();
    }
    ~FrameWatch() override { viewport->removeEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched != viewport || event->type() != QEvent::Paint || painting)
            return false;
        painting = true;
        QElapsedTimer clock;
        clock.start();
        QCoreApplication::sendEvent(watched, event);
        frames.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
        gaps.push_back(static_cast<double>(sinceShown.nsecsElapsed()) / 1e6);
        sinceShown.start();
        painting = false;
        if (onFrame)
            onFrame();
        return true;
    }

    /// Times of frames and between their endings, milliseconds.
    std::vector<double> frames;
    std::vector<double> gaps;
    /// Called after each frame.
    std::function<void()> onFrame;

private:
    QWidget* viewport;
    QElapsedTimer sinceShown;
    bool painting = false;
};
