#pragma once
#include "ModalBox.h"
#include "ProtocolFixture.h"

#include "interaction/objects/CAx3DGeometry.h"

#include <osgEarthAnnotation/LabelNode>

#include <QPointer>
#include <QUndoStack>

/// Draws and edits blocks on the shared viewer, which looks at 20 E 10 N from afar.
class ShapeFixture : public ProtocolFixture
{
protected:
    static inline const QList<QPointF> square{{18, 8}, {22, 8}, {22, 12}, {18, 12}};

    void SetUp() override
    {
        ProtocolFixture::SetUp();
        ended.clear();
        endings = {QObject::connect(viewer, &CAxEarthViewer::signalHandleEnd, viewer,
                                    [this](const QString& id, bool reset) { ended += qMakePair(id, reset); }),
                   QObject::connect(viewer, &CAxEarthViewer::signalHandlePickEnded, viewer,
                                    [this](EToolType tool) { pickEnded += tool; })};
    }

    void TearDown() override
    {
        for (const auto& connection : endings)
            QObject::disconnect(connection);
        viewer->SetAppType(0);
        viewer->SetEditAids(AxEditAids());
        viewer->RemoveAllHanderAdapter(true);
        viewer->GetUndoStack()->clear();
        ProtocolFixture::TearDown();
        EXPECT_EQ(viewer->GetGeomAdapterGroup()->getNumChildren(), 0u) << "a shape was left behind";
        EXPECT_EQ(Scenery(), scenery) << "a node was left behind";
        CAxBlockManager::instance().DeleteAllBlocks();
    }

    static void SetUpTestSuite()
    {
        ProtocolFixture::SetUpTestSuite();
        scenery = Scenery();
    }

    /// What the draw group shows; the viewer keeps a landing area there, hidden.
    static int Scenery()
    {
        int shown = 0;
        for (unsigned i = 0; i < viewer->GetDrawNodeGroup()->getNumChildren(); ++i)
            shown += viewer->GetDrawNodeGroup()->getChild(i)->getNodeMask() != 0;
        return shown;
    }

    void Click(double lng, double lat)
    {
        const osg::Vec2f place = WindowOf(lng, lat);
        Push(place.x(), place.y());
        Release(place.x(), place.y());
    }
    void MoveTo(double lng, double lat)
    {
        const osg::Vec2f place = WindowOf(lng, lat);
        Move(place.x(), place.y());
    }
    /// As Qt tells of a double click: a click, and then the second press as a double one.
    void DoubleClickAt(double lng, double lat)
    {
        Click(lng, lat);
        const osg::Vec2f place = WindowOf(lng, lat);
        DoubleClick(place.x(), place.y());
        Release(place.x(), place.y());
    }
    /// Takes up the polygon tool and clicks all corners; the last one is double-clicked.
    CAx3DGeometry* DrawPolygon(const std::vector<osg::Vec2d>& corners)
    {
        viewer->SetToolType(ToolPolygonBlock);
        for (std::size_t i = 0; i + 1 < corners.size(); ++i)
            Click(corners[i].x(), corners[i].y());
        DoubleClickAt(corners.back().x(), corners.back().y());
        viewer->SetToolType(ToolNavigate);
        return qobject_cast<CAx3DGeometry*>(viewer->GetCurHandleAdapter());
    }
    CAx3DGeometry* DrawTriangle() { return DrawPolygon({{18.0, 8.0}, {22.0, 8.0}, {20.0, 12.0}}); }

    /// A block without the mouse, from its record.
    CAx3DGeometry* Import(const QString& id, const QList<QPointF>& ring)
    {
        CAxBlockManager::instance().AddBlock(id, CAxBlock::PolygonBlock)->SetAnchor(ring);
        return qobject_cast<CAx3DGeometry*>(viewer->ImportShapeNode(id));
    }

    /// The text beside the cursor; empty when there is none.
    static std::string CursorText()
    {
        const osg::Group* group = viewer->GetGeomAdapterGroup();
        for (unsigned i = 0; i < group->getNumChildren(); ++i)
            if (const auto* label = dynamic_cast<const osgEarth::Annotation::LabelNode*>(group->getChild(i));
                label && label->getName().empty())
                return label->text();
        return {};
    }

    static QList<QPointF> Ring(const CAxHandleAdapter* adapter)
    {
        return adapter->GetContainedBlock()->GetAnchor();
    }
    static void PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(viewer, key, modifiers);
    }

    QList<QPair<QString, bool>> ended;
    QList<EToolType> pickEnded;

private:
    static inline int scenery = 0;
    QVector<QMetaObject::Connection> endings;
};
