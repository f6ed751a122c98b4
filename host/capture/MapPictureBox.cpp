#include "host/capture/MapPictureBox.h"
#include "host/tasks/LimitedNumber.h"
#include "viewer/AxPictureCapture.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>

#include <algorithm>
#include <cmath>

MapPictureBox::MapPictureBox(QVector<Area> choices, QWidget* parent)
    : CAxBaseDialog(parent), areas(std::move(choices)), choice(new QComboBox), pixel(new LimitedNumber),
      told(new QLabel)
{
    SetWindowTitle(tr("Save map picture"));
    SetBtnOKText(tr("Save..."));
    for (const Area& area : areas)
        choice->addItem(area.name);
    choice->setObjectName(QStringLiteral("area"));
    pixel->setObjectName(QStringLiteral("pixel"));
    constexpr int decimals = 3;
    pixel->setDecimals(decimals);
    pixel->setSuffix(tr(" m"));
    told->setWordWrap(true);
    auto* form = new QFormLayout;
    form->addRow(tr("&Area"), choice);
    form->addRow(tr("Size of a &pixel"), pixel);
    form->addRow(told);
    ContentLayout()->addLayout(form);
    connect(choice, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &MapPictureBox::Choose);
    connect(pixel, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &MapPictureBox::Follow);
    Choose();
}

const MapPictureBox::Area& MapPictureBox::chosen() const
{
    return areas[qBound(0, choice->currentIndex(), areas.size() - 1)];
}

void MapPictureBox::Choose()
{
    const AxShotGround& ground = chosen().ground;
    constexpr double finest = 0.001;
    constexpr double thousandths = 1000.0;
    // Rounded up, as a pixel too fine would need one column more than there may be.
    const double least =
        std::ceil(thousandths * std::max(ground.width, ground.height) / (AxPictureCapture::mostPixels - 1)) /
        thousandths;
    pixel->setRange(std::max(finest, least), std::max({1.0, 2.0 * least, ground.width, ground.height}));
    pixel->setValue(chosen().pixel);
    Follow();
}

void MapPictureBox::Follow()
{
    told->setText(tr("%1 m x %2 m of ground, %3 x %4 pixels. The map is loaded in this detail first.")
                      .arg(QString::number(Ground().width, 'f', 0), QString::number(Ground().height, 'f', 0))
                      .arg(Size().width())
                      .arg(Size().height()));
}

double MapPictureBox::Pixel() const
{
    return pixel->value();
}

QSize MapPictureBox::Size() const
{
    const auto count = [this](double metres) {
        return static_cast<int>(
            std::clamp(std::ceil(metres / Pixel()), 1.0, static_cast<double>(AxPictureCapture::mostPixels)));
    };
    return {count(chosen().ground.width), count(chosen().ground.height)};
}

AxShotGround MapPictureBox::Ground() const
{
    return {chosen().ground.middle, Size().width() * Pixel(), Size().height() * Pixel()};
}
