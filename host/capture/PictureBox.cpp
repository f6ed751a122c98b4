#include "host/capture/PictureBox.h"
#include "host/tasks/LimitedNumber.h"
#include "viewer/AxPictureCapture.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>

namespace {
LimitedNumber* PixelField(const QString& name, int value)
{
    constexpr int least = 16;
    auto* field = new LimitedNumber;
    field->setObjectName(name);
    field->setDecimals(0);
    field->setRange(least, AxPictureCapture::mostPixels);
    field->setSuffix(PictureBox::tr(" px"));
    field->setValue(value);
    return field;
}
} // namespace

PictureBox::PictureBox(const QSize& shown, QWidget* parent)
    : CAxBaseDialog(parent), usual(new QComboBox), width(PixelField(QStringLiteral("width"), shown.width())),
      height(PixelField(QStringLiteral("height"), shown.height())), told(new QLabel)
{
    SetWindowTitle(tr("Save picture"));
    SetBtnOKText(tr("Save..."));
    const auto add = [this](const QString& text, const QSize& size) {
        usual->addItem(text.arg(size.width()).arg(size.height()), size);
    };
    add(tr("As the window (%1 x %2)"), shown);
    add(tr("Twice the window (%1 x %2)"), shown * 2);
    add(tr("Four times the window (%1 x %2)"), shown * 4);
    add(tr("Screen (%1 x %2)"), {3840, 2160});
    add(tr("Poster (%1 x %2)"), {8192, 8192});
    auto* form = new QFormLayout;
    form->addRow(tr("&Size"), usual);
    form->addRow(tr("&Width"), width);
    form->addRow(tr("&Height"), height);
    form->addRow(told);
    told->setWordWrap(true);
    ContentLayout()->addLayout(form);
    connect(usual, QOverload<int>::of(&QComboBox::activated), this, [this] {
        const QSize size = usual->currentData().toSize();
        width->setValue(size.width());
        height->setValue(size.height());
    });
    for (LimitedNumber* field : {width, height})
        connect(field, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &PictureBox::Follow);
    Follow();
}

QSize PictureBox::Size() const
{
    return {qRound(width->value()), qRound(height->value())};
}

QString PictureBox::Told(const QSize& size)
{
    constexpr double bytesOfMegabyte = 1e6;
    constexpr double bytesOfPixel = 3.0;
    return tr("%1 x %2 pixels, %3 MB while it is made")
        .arg(size.width())
        .arg(size.height())
        .arg(QLocale().toString(bytesOfPixel * size.width() * size.height() / bytesOfMegabyte, 'f', 0));
}

void PictureBox::Follow()
{
    told->setText(tr("%1. The map is loaded in this detail first; texts and lines keep their size in pixels.")
                      .arg(Told(Size())));
}
