#include "host/capture/PictureBox.h"
#include "host/tasks/LimitedNumber.h"
#include "viewer/AxPictureCapture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QSignalBlocker>

#include <cmath>

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
    : CAxBaseDialog(parent), map(shown.expandedTo({1, 1})), usual(new QComboBox),
      width(PixelField(QStringLiteral("width"), shown.width())),
      height(PixelField(QStringLiteral("height"), shown.height())),
      keepsShape(new QCheckBox(tr("&Keep the shape of the map"))), texts(new QComboBox), told(new QLabel)
{
    SetWindowTitle(tr("Save picture"));
    SetBtnOKText(tr("Save..."));
    const auto add = [this](const QString& text, const QSize& size) {
        usual->addItem(text.arg(size.width()).arg(size.height()), size);
    };
    const auto addTimes = [&add, &shown](const QString& text, int times) {
        const QSize most(AxPictureCapture::mostPixels, AxPictureCapture::mostPixels);
        const bool hasRoom = (shown * times).boundedTo(most) == shown * times;
        add(hasRoom ? text : tr("As large as can be (%1 x %2)"),
            hasRoom ? shown * times : shown.scaled(most, Qt::KeepAspectRatio));
    };
    add(tr("As the window (%1 x %2)"), shown);
    addTimes(tr("Twice the window (%1 x %2)"), 2);
    addTimes(tr("Four times the window (%1 x %2)"), 4);
    add(tr("Screen (%1 x %2)"), {3840, 2160});
    add(tr("Poster (%1 x %2)"), {8192, 8192});
    auto* form = new QFormLayout;
    form->addRow(tr("&Size"), usual);
    form->addRow(tr("&Width"), width);
    form->addRow(tr("&Height"), height);
    form->addRow(keepsShape);
    form->addRow(tr("&Texts and lines"), texts);
    form->addRow(told);
    usual->setPlaceholderText(tr("A size of its own"));
    usual->setObjectName(QStringLiteral("usual"));
    keepsShape->setObjectName(QStringLiteral("keepsShape"));
    keepsShape->setChecked(true);
    texts->setObjectName(QStringLiteral("texts"));
    texts->addItem(tr("As large as in the window"));
    texts->addItem(tr("As many pixels as on the screen"));
    told->setWordWrap(true);
    ContentLayout()->addLayout(form);
    connect(usual, QOverload<int>::of(&QComboBox::activated), this, [this] {
        // A poster has a shape of its own.
        const QSignalBlocker noWidth(width);
        const QSignalBlocker noHeight(height);
        const QSize size = usual->currentData().toSize();
        width->setValue(size.width());
        height->setValue(size.height());
        Follow();
    });
    for (LimitedNumber* field : {width, height})
        connect(field, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
                [this, isWidth = field == width] { KeepShape(isWidth); });
    connect(keepsShape, &QCheckBox::toggled, this, [this] { KeepShape(true); });
    Follow();
}

QSize PictureBox::Size() const
{
    return {qRound(width->value()), qRound(height->value())};
}

bool PictureBox::IsScaled() const
{
    return texts->currentIndex() == 0;
}

void PictureBox::KeepShape(bool fromWidth)
{
    if (keepsShape->isChecked()) {
        LimitedNumber* const typed = fromWidth ? width : height;
        LimitedNumber* const other = fromWidth ? height : width;
        const double ratio = fromWidth ? static_cast<double>(map.height()) / map.width()
                                       : static_cast<double>(map.width()) / map.height();
        const QSignalBlocker noTyped(typed);
        const QSignalBlocker noOther(other);
        other->setValue(std::round(typed->value() * ratio));
        // The larger side has the limit first.
        if (typed->value() * ratio > other->maximum())
            typed->setValue(std::round(other->maximum() / ratio));
    }
    Follow();
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
    // Also none of them: the size was typed.
    usual->setCurrentIndex(usual->findData(Size()));
    told->setText(tr("%1. The map is loaded in this detail first.").arg(Told(Size())));
}
