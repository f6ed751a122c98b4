// What a double click on a rectangle block, or on one of its handles, opens.
#include "interaction/objects/AxBlockRing.h"
#include "interaction/objects/AxCursorLabel.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxRectangleShape.h"
#include "interaction/objects/CAxOsgDrawRectange.h"

#include <cmath>

namespace {
constexpr double leastSide = 0.1; // metres
constexpr double mostSide = 1e6;
// A record that is off by less was written in fewer digits.
constexpr double leastSkew = 0.5; // metres
} // namespace

void CAxOsgDrawRectange::ResponseDoubleClickOnPoint(int, osg::Vec3d)
{
    if (turns)
        ResponseDoubleClickOnBlock();
}

void CAxOsgDrawRectange::ResponseDoubleClickOnBlock()
{
    const auto shown = AxRectangleShape::Of(d->anchors);
    if (!turns || !shown || !d->tasks.isEmpty())
        return;
    constexpr double halfTurn = 180.0; // both headings of a side are the same line
    constexpr double fullTurn = 360.0;
    const double angle = std::fmod(shown->heading, halfTurn);
    const double skew = AxRectangleShape::IsUpright(d->anchors) ? 0.0 : AxRectangleShape::Skew(d->anchors);
    AxBlockForm form;
    form.title = tr("Rectangle Info");
    form.info =
        skew > leastSkew
            ? tr("Its corners are up to %1 beside those of a rectangle; a change makes it the nearest one.")
                  .arg(AxLengthText(skew))
            : tr("The angle is that of the length, clockwise from north.");
    SetArea(form);
    form.measures = {AxBlockForm::Width(tr("Length(%1):"), shown->length, leastSide, mostSide),
                     AxBlockForm::Width(tr("Width(%1):"), shown->width, leastSide, mostSide),
                     {tr("Angle(degree):"), angle, -fullTurn, fullTurn}};
    FillIn(form, [&](const QList<double>& values) -> AxBlockForm::Taken {
        // The first side keeps the way it runs, and what has moved meanwhile its place.
        auto rectangle = AxRectangleShape::Of(d->anchors);
        if (!rectangle)
            return {true};
        rectangle->length = values[0];
        rectangle->width = values[1];
        rectangle->heading += values[2] - angle;
        return {ChangeVertices(AxRectangleShape::CornersOf(*rectangle), tr("Change size"))};
    });
}
