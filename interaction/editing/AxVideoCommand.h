#pragma once
#include "interaction/editing/AxBlockCommands.h"

class CAxBlock;

/// Place and radius of a video block.
class AxVideoCommand : public AxBlockCommand
{
public:
    struct State
    {
        QList<QPointF> centre; ///< the vertex, degrees
        int radius;            ///< metres
        bool operator==(const State& other) const { return centre == other.centre && radius == other.radius; }
    };
    AxVideoCommand(AxViewerParts* viewer, const QString& blockID, const State& before, const State& after,
                   const QString& text);

    /// Writes a state into the record of a block. Null is passed
    /// over.
    static void Write(CAxBlock* block, const State& state);

protected:
    void Apply(bool before) override;

private:
    State stateBefore;
    State stateAfter;
};
