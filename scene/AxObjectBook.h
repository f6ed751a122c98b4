#pragma once
#include <AxBaseUI/EToolType.h>
#include <AxData/CAxBlock.h>

#include <osg/Vec3d>

#include <QList>
#include <QString>

#include <vector>

class CAxHandleAdapter;
class QUndoStack;
struct AxEditAids;

namespace osg {
class Node;
}

/// Which map objects there are, which are selected, and their edits. CAxEarthViewer says more. GUI thread.
class AxObjectBook
{
public:
    virtual ~AxObjectBook() = default;

    virtual bool Add(CAxHandleAdapter* object) = 0;
    virtual bool Remove(CAxHandleAdapter* object, bool deleteBlock) = 0;
    /// Of an object that is being destroyed.
    virtual void Forget(CAxHandleAdapter* object) = 0;
    virtual CAxHandleAdapter* Find(const QString& id) const = 0;
    virtual CAxHandleAdapter* Find(const osg::Node* featureNode) const = 0;
    virtual QList<CAxHandleAdapter*> OfKind(CAxBlock::EBlockType type) const = 0;
    virtual QList<CAxHandleAdapter*> All() const = 0;

    virtual CAxHandleAdapter* Current() const = 0;
    virtual void SetCurrent(CAxHandleAdapter* object) = 0;
    /// The object whose drawing waits until the magnifier's key is let go; null without.
    virtual CAxHandleAdapter* Aside() const = 0;
    virtual const QList<CAxHandleAdapter*>& Selected() const = 0;
    virtual void SelectNode(const osg::Node* featureNode, bool multi, bool report) = 0;
    /// Selects objects together, in that order, and no others; CAxEarthViewer::SelectBlocks() says more.
    virtual bool SelectSeveral(const QList<CAxHandleAdapter*>& wanted) = 0;
    virtual void ClearSelected() = 0;
    /// Whose route stands out; empty for none.
    virtual const QString& SelectedTask() const = 0;

    virtual QUndoStack& Edits() const = 0;
    virtual const AxEditAids& Aids() const = 0;
    virtual bool Rename(const QString& id, const QString& name) = 0;
    /// A drawing with that tool was refused: undo takes it up again. Its vertices: degrees, degrees, metres.
    virtual void KeepRefused(EToolType tool, const std::vector<osg::Vec3d>& vertices) = 0;
    /// A drawing has become a block, with its record: a step of the undo stack.
    virtual void KeepDrawn(const QString& id) = 0;
    virtual void IntersectModelLayers(CAxHandleAdapter* object) = 0;
};
