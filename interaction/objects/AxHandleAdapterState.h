#pragma once
#include "interaction/editing/AxSnapping.h"
#include "interaction/objects/AxCursorLabel.h"
#include "interaction/objects/AxRim.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/AxViewerParts.h"

#include <osg/Group>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthSymbology/Style>

#include <QPointer>

struct AxShapeDrawing;

/// What an object on the map consists of. Its own class and its kinds work on it.
struct AxHandleAdapterState
{
    CAxEarthViewer* earthViewer = nullptr; ///< while `viewer` is there
    QPointer<AxViewerParts> viewer;
    osg::ref_ptr<osg::Group> drawGroup;
    QString handleID;
    CAxBlock::EBlockType blockType = CAxBlock::PolygonBlock;
    std::vector<osg::Vec3d> anchors;
    CAxVector3D gravity;
    QList<double> elevations; ///< of the sampled ground
    QList<CAxTaskPolygon*> tasks;

    // What is going on with it
    EHandleOperation operation = OperationIdle;
    int mouseState = 0; ///< 0 released, 1 pressed, 2 double-clicked
    int editIndex = -1; ///< of the vertex that is dragged
    osg::Vec3d moveCenter;
    std::optional<AxRimDrag> rim; ///< of the latest drag of such a handle
    QString editText;             ///< what the undo stack calls the edit
    bool mouseConnected = false;
    QPointer<QObject> mouse; ///< whose signals are connected
    AxDrawingSnap drawingSnap;
    int running = 0;      ///< slots, see CAxHandleAdapter::Running
    bool leaving = false; ///< removed, and only kept until the last of them ends

    bool lock = false;
    bool visible = true;
    bool filter = false;
    bool segment = false;
    bool selectedAmongSeveral = false;

    // What it is drawn with
    osg::ref_ptr<osg::Geode> featureNode;
    osg::ref_ptr<CAxHandleAdapterEditor> anchorEditor;
    QMetaObject::Connection editorMoves;
    osgEarth::Symbology::Style style; ///< of its texts
    osg::ref_ptr<osgEarth::Annotation::LabelNode> nameLabel;
    AxCursorLabel cursorLabel;
    osg::ref_ptr<osg::Group> lockNode;
    QList<osg::ref_ptr<osg::Node>> containedNodes;
    QList<osg::ref_ptr<osg::Node>> containedLabels;
    osg::Vec4f edgeColor; ///< as itself
    osg::Vec4f fillColor;
    std::shared_ptr<AxShapeDrawing> drawing; ///< no one else keeps it
};
