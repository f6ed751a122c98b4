#include "interaction/objects/AxRefusedDrawing.h"
#include "interaction/objects/AxObjects.h"

#include <QCoreApplication>

AxRefusedDrawing::AxRefusedDrawing(AxObjects& book, EToolType drawnWith, std::vector<osg::Vec3d> drawn)
    : QUndoCommand(QCoreApplication::translate("CAxEarthViewer", "Refused drawing")), objects(&book),
      tool(drawnWith), vertices(std::move(drawn))
{
}

void AxRefusedDrawing::undo()
{
    if (!objects || objects->ResumeDrawing(tool, vertices))
        setObsolete(true);
}
