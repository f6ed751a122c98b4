#pragma once
#include <AxBaseUI/EToolType.h>

#include <osg/Vec3d>

#include <QPointer>
#include <QUndoCommand>

#include <vector>

class AxObjects;

/**
 * A drawing that was refused and is gone, on the viewer's undo stack: its undoing takes the drawing up again,
 * with the tool that drew it and all its vertices, and is of no use any more. It waits while somebody else is
 * drawing or dragging.
 */
class AxRefusedDrawing : public QUndoCommand
{
public:
    /// The vertices: degrees, degrees, metres.
    AxRefusedDrawing(AxObjects& book, EToolType drawnWith, std::vector<osg::Vec3d> drawn);

    void undo() override;
    void redo() override {}

private:
    const QPointer<AxObjects> objects;
    const EToolType tool;
    const std::vector<osg::Vec3d> vertices;
};
