#include "host/capture/RoutePicturesBox.h"
#include "host/tasks/LimitedNumber.h"

#include <QFormLayout>
#include <QLabel>

#include <algorithm>

namespace {
LimitedNumber* Field(const QString& name, double least, double most, int decimals, const QString& suffix,
                     double value)
{
    auto* field = new LimitedNumber;
    field->setObjectName(name);
    field->setDecimals(decimals);
    field->setRange(least, most);
    field->setSuffix(suffix);
    field->setValue(value);
    return field;
}
} // namespace

RoutePicturesBox::RoutePicturesBox(std::vector<osg::Vec3d> places, double length, QWidget* parent)
    : CAxBaseDialog(parent), route(std::move(places)),
      step(Field(QStringLiteral("step"), 0.1, 100000.0, 1, tr(" m"), std::max(1.0, length / 100.0))),
      pitch(Field(QStringLiteral("pitch"), -90.0, 10.0, 0, QStringLiteral("\u00b0"), -25.0)),
      field(Field(QStringLiteral("field"), 10.0, 120.0, 0, QStringLiteral("\u00b0"), 50.0)),
      width(Field(QStringLiteral("width"), 16.0, 4096.0, 0, tr(" px"), 1920.0)),
      height(Field(QStringLiteral("height"), 16.0, 4096.0, 0, tr(" px"), 1080.0)), told(new QLabel)
{
    SetWindowTitle(tr("Pictures along route"));
    SetBtnOKText(tr("Save..."));
    told->setWordWrap(true);
    pitch->setToolTip(tr("0 looks level along the route, -90 straight down"));
    auto* form = new QFormLayout;
    form->addRow(tr("&Distance between pictures"), step);
    form->addRow(tr("&Pitch of the camera"), pitch);
    form->addRow(tr("&Field of view, from top to bottom"), field);
    form->addRow(tr("&Width"), width);
    form->addRow(tr("&Height"), height);
    form->addRow(told);
    ContentLayout()->addLayout(form);
    connect(step, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &RoutePicturesBox::Follow);
    Follow();
}

std::vector<AxShotPose> RoutePicturesBox::Poses() const
{
    return AxShots::Along(route, step->value(), pitch->value(), most);
}

std::vector<AxShot> RoutePicturesBox::Shots() const
{
    std::vector<AxShot> shots;
    for (const AxShotPose& pose : Poses())
        shots.push_back(
            AxShots::From(pose, field->value(), {qRound(width->value()), qRound(height->value())}));
    return shots;
}

void RoutePicturesBox::Follow()
{
    const std::size_t count = Poses().size();
    told->setText(count < most
                      ? tr("Pictures: %1").arg(count)
                      : tr("%1 pictures, which is the most; they are farther apart than asked").arg(count));
}
