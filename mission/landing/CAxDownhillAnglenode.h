#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QObject>

/**
 * The tool with which the operator turns the approach to a landing point. Its
 * handles are scene nodes whose names begin with "AngleComputer-". Owned by
 * its Qt parent. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxDownhillAnglenode : public QObject
{
    Q_OBJECT
public:
    explicit CAxDownhillAnglenode(QObject* parent);
    ~CAxDownhillAnglenode() override;

    /// Whether its handles are shown and can be grabbed.
    bool IsHandlesVisible() const { return handlesVisible; }
    void SetHandlesVisible(bool visible) { handlesVisible = visible; }

private:
    bool handlesVisible = false;
};
