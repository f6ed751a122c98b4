#pragma once
#include <QGLWidget>

/// The viewport; lets the viewer hold a painted frame back from the screen.
class AxGlViewport : public QGLWidget
{
public:
    using QGLWidget::QGLWidget;
    using QGLWidget::setAutoBufferSwap;
};
