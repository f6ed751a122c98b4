// What a double click on a rectangle block, or on one of its handles, opens.
#include "interaction/objects/AxBlockRing.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxPage.h"
#include "interaction/objects/AxRectangleShape.h"
#include "interaction/objects/CAxOsgDrawRectange.h"
#include "scene/base/AxNotice.h"

#include <cmath>

namespace {
constexpr int measureDecimals = 2;
// A record that is off by less was written in fewer digits.
constexpr double leastSkew = 0.5;

QString MeasureText(double value)
{
    return QString::number(value, 'f', measureDecimals);
}

// Both headings of a side are the same line.
double AngleOf(const AxRectangle& rectangle)
{
    return std::fmod(rectangle.heading, 180.0);
}
} // namespace

void CAxOsgDrawRectange::ResponseDoubleClickOnPoint(int, osg::Vec3d)
{
    if (turns)
        ResponseDoubleClickOnBlock();
}

void CAxOsgDrawRectange::ResponseDoubleClickOnBlock()
{
    const CAxBlock* block = GetContainedBlock();
    const auto rectangle = AxRectangleShape::Of(d->anchors);
    if (!turns || !block || !rectangle || !d->tasks.isEmpty() || !d->viewer)
        return;
    const Running self(this);
    const QString oldName = block->GetBlockName();
    const QStringList before{MeasureText(rectangle->length), MeasureText(rectangle->width),
                             MeasureText(AngleOf(*rectangle))};
    const AxPage page(BoxParent());
    page->SetWindowTitle(tr("Rectangle Info"));
    page->SetElementName(tr("Name:"), tr("area (km^2):"));
    page->SetElement1Value(oldName, true);
    page->SetElement2Value(QString::number(GetArea(), 'f', 2), false);
    page->SetElementParas({tr("Length(m):"), tr("Width(m):"), tr("Angle(degree):")}, before,
                          {!d->lock, !d->lock, !d->lock});
    const double skew = AxRectangleShape::IsUpright(d->anchors) ? 0.0 : AxRectangleShape::Skew(d->anchors);
    page->SetDialogInfo(
        skew > leastSkew
            ? tr("Its corners are up to %1 m beside those of a rectangle; a change makes it the nearest one.")
                  .arg(MeasureText(skew))
            : tr("The angle is that of the length, clockwise from north."));
    // What was typed stays in the page until it can be taken.
    while (page->exec() == QDialog::Accepted && page && self.IsWanted()) {
        const QString name = page->GetElement1Value().trimmed();
        const bool isTaken = (name == oldName || MayBeCalled(name)) && page && self.IsWanted() &&
                             takeMeasures(before, page->GetElementValues());
        if (!page || !self.IsWanted() || !GetContainedBlock())
            return;
        if (!isTaken)
            continue;
        if (name != oldName)
            AskAndRename(name);
        return;
    }
}

bool CAxOsgDrawRectange::takeMeasures(const QStringList& before, const QStringList& typed)
{
    if (typed == before)
        return true;
    constexpr double leastMetres = 0.1;
    constexpr double mostMetres = 1e6;
    constexpr double mostDegrees = 360.0;
    const auto refuse = [this](const QString& why) {
        AxShowNotice(BoxParent(), tr("Block Information"), why);
        return false;
    };
    if (d->lock || !d->tasks.isEmpty())
        return refuse(tr("The size of a block that is locked or has routes cannot be changed."));
    auto rectangle = AxRectangleShape::Of(d->anchors);
    if (!rectangle)
        return true;
    double* const values[] = {&rectangle->length, &rectangle->width, &rectangle->heading};
    for (int i = 0; i < 3; ++i) {
        if (typed.value(i) == before.value(i))
            continue;
        bool isNumber = false;
        const double value = typed.value(i).trimmed().toDouble(&isNumber);
        const bool isAngle = i == 2;
        const bool isInRange =
            isAngle ? std::abs(value) <= mostDegrees : value >= leastMetres && value <= mostMetres;
        if (!isNumber || !isInRange)
            return refuse(isAngle
                              ? tr("\"%1\" is not an angle between -360 and 360.").arg(typed.value(i))
                              : tr("\"%1\" is not a length between 0.1 and 1000000 m.").arg(typed.value(i)));
        // An angle is that of a line: the first side keeps the way it runs.
        const bool runsBack = isAngle && rectangle->heading >= 180.0;
        *values[i] = runsBack ? value + 180.0 : value;
    }
    return ChangeVertices(AxRectangleShape::CornersOf(*rectangle), tr("Change size"));
}
