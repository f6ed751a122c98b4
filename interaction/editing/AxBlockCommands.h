#pragma once
#include "interaction/editing/AxRefusableStep.h"
#include "scene/AxViewerParts.h"

#include <QList>
#include <QPointer>
#include <QPointF>
#include <QString>
#include <QUndoCommand>

/**
 * One committed edit of a block record, on the viewer's undo stack. The record
 * has the new state already when the command is pushed. Once its block is gone
 * the command is of no use any more, and the stack drops it at the next step. While the block may not be
 * edited by hand, it is not edited by a step either.
 */
class AxBlockCommand : public QUndoCommand, public AxRefusableStep
{
public:
    AxBlockCommand(AxViewerParts* viewer, const QString& blockID, const QString& text);

    void undo() final;
    void redo() final;
    /// While the block is locked or its routes are on the map; the same both ways.
    QString Refusal(bool back) const override;
    const QString& BlockID() const { return blockID; }

protected:
    /// Brings the record and its object to the state before, or after, the edit.
    virtual void Apply(bool before) = 0;

    QPointer<AxViewerParts> viewer;
    QString blockID;

private:
    void step(bool before);
    bool isApplied = true;
};

/// The vertices of a block, degrees.
class AxAnchorCommand : public AxBlockCommand
{
public:
    AxAnchorCommand(AxViewerParts* viewer, const QString& blockID, const QList<QPointF>& before,
                    const QList<QPointF>& after, const QString& text);

protected:
    void Apply(bool before) override;

private:
    QList<QPointF> ringBefore;
    QList<QPointF> ringAfter;
};

/// The widths of a strip.
class AxWidthCommand : public AxBlockCommand
{
public:
    /// Metres to the left and to the right of its line.
    struct Widths
    {
        double left;
        double right;
    };
    AxWidthCommand(AxViewerParts* viewer, const QString& blockID, const Widths& before, const Widths& after,
                   const QString& text);

protected:
    void Apply(bool before) override;

private:
    Widths widthsBefore;
    Widths widthsAfter;
};

/// The name of a block.
class AxNameCommand : public AxBlockCommand
{
public:
    AxNameCommand(AxViewerParts* viewer, const QString& blockID, const QString& before, const QString& after,
                  const QString& text);

    /// None: what is locked may be called otherwise.
    QString Refusal(bool back) const override;

protected:
    void Apply(bool before) override;

private:
    QString nameBefore;
    QString nameAfter;
};
