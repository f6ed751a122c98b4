#pragma once
#include <AxData/planner/AxPlanResult.h>

#include <osg/ref_ptr>

#include <QPointer>

#include <vector>

class CAxEarthViewer;

namespace osg {
class Group;
}

/// Marks on the map where a route is dangerous. GUI thread; the viewer may go first.
class WarningMarks
{
public:
    explicit WarningMarks(CAxEarthViewer* viewer);
    WarningMarks(const WarningMarks&) = delete;
    WarningMarks& operator=(const WarningMarks&) = delete;
    ~WarningMarks();

    /// In place of those before; the worst where there are too many. Nothing before the viewer has its map.
    void Show(const std::vector<AxPlanWarning>& warnings);

private:
    void Hide();

    QPointer<CAxEarthViewer> viewer;
    osg::ref_ptr<osg::Group> marks; ///< in the scene while some are shown
};
