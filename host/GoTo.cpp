#include "host/GoTo.h"
#include "host/TypedBox.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxOsgDrawPointSet.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxCoordinateSystem.h>
#include <AxAlgorthm/AxUnits.h>

#include <osgEarth/Viewpoint>

#include <QCoreApplication>
#include <QMessageBox>
#include <QPointer>

#include <algorithm>
#include <cmath>

namespace {
constexpr double flightSeconds = 2.0;
// From how far a place is looked at, metres.
constexpr double nearest = 500.0;
constexpr double farthest = 5000.0;
constexpr double sidesInView = 3.0;

QString GoText(const char* text)
{
    return QCoreApplication::translate("GoTo", text);
}

TypedBox::Reading ReadPlace(const AxCoordinateSystem& system, const QString& typed)
{
    using namespace AxCoordinateText;
    const Typed read = system.Read(typed);
    if (!read.place)
        return {false, read.fault};
    QString text = Write(read.place->Lat(), read.place->Lng(), Form::Dms) + QLatin1Char('\n') +
                   Write(read.place->Lat(), read.place->Lng(), Form::Decimal);
    if (read.side > 1.0)
        text +=
            QLatin1Char('\n') + GoText(QT_TRANSLATE_NOOP("GoTo", "The middle of a square with sides of %1"))
                                    .arg(AxUnits::Length(read.side));
    else if (system.IsOfProj())
        text +=
            QLatin1Char('\n') + GoText(QT_TRANSLATE_NOOP("GoTo", "%1: %2"))
                                    .arg(system.Name(), system.Line(read.place->Lat(), read.place->Lng()));
    if (system.FromPlace(read.place->Lat(), read.place->Lng()).reach == AxCoordinateSystem::Reach::Near)
        text +=
            QLatin1Char('\n') +
            GoText(QT_TRANSLATE_NOOP("GoTo", "This is beyond its area of use, %1.")).arg(system.AreaText());
    return {true, text};
}

// What can be typed, with the place that is looked at as the chosen system writes it.
QString HintOf(CAxEarthViewer& viewer, const AxCoordinateSystem& system)
{
    QString hint = GoText(
        QT_TRANSLATE_NOOP("GoTo", "Degrees (37.4032, -105.0167 or 37\302\26024'11.5\"N 105\302\26001'W), "
                                  "UTM (13N 500000 4140000) or MGRS (13S EB 00000 40000), WGS 84."));
    if (system.IsOfProj()) {
        hint +=
            QLatin1Char('\n') +
            GoText(QT_TRANSLATE_NOOP("GoTo", "Two numbers alone are coordinates of %1.")).arg(system.Name());
        if (!system.AreaText().isEmpty())
            hint += QLatin1Char('\n') +
                    GoText(QT_TRANSLATE_NOOP("GoTo", "Its area of use: %1.")).arg(system.AreaText());
    }
    const osgEarth::Viewpoint now = viewer.getManipulator()->getViewpoint();
    if (now.isValid() && now.focalPoint().isSet())
        hint += QLatin1Char('\n') + GoText(QT_TRANSLATE_NOOP("GoTo", "The middle of the view: %1"))
                                        .arg(system.Line(now.focalPoint()->y(), now.focalPoint()->x()));
    return hint;
}

void FlyTo(CAxEarthViewer* viewer, const AxCoordinateText::Typed& typed)
{
    CAxEarthManipulator* camera = viewer->getManipulator();
    const osgEarth::Viewpoint now = camera->getViewpoint();
    const double ground = viewer->GetElevation(typed.place->Lng(), typed.place->Lat());
    const double range = std::max(std::clamp(now.getRange(), nearest, farthest), sidesInView * typed.side);
    camera->setViewpoint(osgEarth::Viewpoint("", typed.place->Lng(), typed.place->Lat(),
                                             std::isnan(ground) ? 0.0 : ground, now.getHeading(),
                                             now.getPitch(), range),
                         flightSeconds);
}

void Mark(CAxEarthViewer* viewer, const PointLatLng& place, QWidget* parent)
{
    CAxOsgDrawPointSet* marks = CAxOsgDrawPointSet::OfViewer(viewer);
    QString why;
    if (marks && marks->AddMark(place.Lng(), place.Lat(), QString(), &why).isEmpty())
        QMessageBox::warning(parent, GoText(QT_TRANSLATE_NOOP("GoTo", "Mark not set")), why);
}
} // namespace

void AskAndGo(CAxEarthViewer* viewer, QWidget* parent)
{
    const QPointer<CAxEarthViewer> alive(viewer);
    // The system that the preview shows is the one that is flown by, whatever happens while the box is open.
    const AxCoordinateSystem system = viewer->GetCoordinateSystem();
    TypedBox box(
        GoText(QT_TRANSLATE_NOOP("GoTo", "Go to a coordinate")), HintOf(*viewer, system),
        [&system](const QString& typed) { return ReadPlace(system, typed); }, parent);
    box.SetBtnOKText(GoText(QT_TRANSLATE_NOOP("GoTo", "Fly there")));
    box.AddExtraButton(GoText(QT_TRANSLATE_NOOP("GoTo", "Set a mark")));
    if (box.exec() != QDialog::Accepted || !alive || !alive->getMapNode())
        return;
    const AxCoordinateText::Typed typed = system.Read(box.Text());
    FlyTo(alive, typed);
    if (box.WasExtra())
        Mark(alive, *typed.place, parent);
}
