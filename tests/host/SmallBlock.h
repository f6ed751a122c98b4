#pragma once
#include <AxBaseUI/CAxMessageBox.h>
#include <interaction/CAx3DGeometry.h>
#include <viewer/CAxEarthViewer.h>

/// A polygon block of 100 km² at most.
class SmallBlock : public CAx3DGeometry
{
public:
    using CAx3DGeometry::CAx3DGeometry;

    int CheckGeometry() override
    {
        const int verdict = CAx3DGeometry::CheckGeometry();
        if (verdict < 1 || GetArea() <= 100.0)
            return verdict;
        CAxMessageBox box(GetViewer());
        box.SetWindowTitle("Block Information");
        box.SetMsgText("The block is larger than 100 square kilometres.");
        box.SetBtnHidden(false, true, true);
        box.exec();
        return -2;
    }
};
