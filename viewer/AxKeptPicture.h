#pragma once
#include <QPoint>
#include <QSize>

class QOpenGLContext;

/**
 * A copy of the frame buffer, to be shown again. Every call with the same OpenGL
 * context current, and with everything that it changes put back by the caller.
 */
class AxKeptPicture
{
public:
    /// Copies what was drawn, the lower left corner of this many pixels.
    void Take(const QSize& pixels);
    /// Whether there is a copy of that size for the current context.
    bool IsFor(const QSize& pixels) const;
    /// Draws the copy over everything, its lower left corner at that pixel from the lower left one.
    void Show(const QPoint& lowerLeft = {}) const;
    /// Forgets the copy; its memory is used again.
    void Forget() { size = QSize(); }
    /// Gives the memory back.
    void Release();

private:
    unsigned texture = 0;
    QSize size;
    const QOpenGLContext* owner = nullptr; // compared, never followed
};
