#include "viewer/overlay/AxVolumeFields.h"
#include "analysis/volume/AxVolumeText.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSignalBlocker>

#include <cmath>

namespace {
constexpr double lowestBase = -12000.0; // metres
constexpr double highestBase = 10000.0;
constexpr double widestCell = 100000.0;
constexpr int fewestDecimals = 2;
constexpr int mostDecimals = 6;

/// Numbers made elsewhere may be finer than people fill them in, and beyond their limits.
void ShowNumber(QDoubleSpinBox& field, double number, double least, double most)
{
    const QSignalBlocker quiet(field);
    int decimals = fewestDecimals;
    for (; decimals < mostDecimals; ++decimals) {
        const double unit = std::pow(10.0, decimals);
        if (std::abs(std::round(number * unit) / unit - number) < 1.0e-9)
            break;
    }
    field.setDecimals(decimals);
    field.setRange(qMin(least, number), qMax(most, number));
    field.setValue(number);
}
} // namespace

AxVolumeFields::AxVolumeFields(QComboBox& ofBase, QDoubleSpinBox& ofHeight, QDoubleSpinBox& ofCell,
                               QObject* parent)
    : QObject(parent), base(ofBase), height(ofHeight), cell(ofCell)
{
    for (const AxVolumeBase one : AxVolumeBases())
        base.addItem(AxVolumeBaseText(one), static_cast<int>(one));
    base.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cell.setSpecialValueText(tr("automatic"));
    for (QDoubleSpinBox* field : {&height, &cell}) {
        field->setSuffix(tr(" m"));
        // What is being typed is no grid yet.
        field->setKeyboardTracking(false);
    }
    Show({});
    connect(&base, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] {
        follow();
        emit changed();
    });
    for (QDoubleSpinBox* field : {&height, &cell}) {
        connect(field, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &AxVolumeFields::changed);
        connect(field->findChild<QLineEdit*>(), &QLineEdit::textEdited, this, &AxVolumeFields::editing);
    }
}

void AxVolumeFields::Show(const AxVolumeQuestion& question)
{
    shown = question;
    {
        const QSignalBlocker quiet(base);
        base.setCurrentIndex(base.findData(static_cast<int>(question.base)));
    }
    ShowNumber(height, question.height, lowestBase, highestBase);
    ShowNumber(cell, question.cell, 0.0, widestCell);
    shownHeight = height.value();
    shownCell = cell.value();
    follow();
}

void AxVolumeFields::Follow(const AxVolumeQuestion& question)
{
    if (question.base != shown.base || question.height != shown.height || question.cell != shown.cell)
        Show(question);
    else
        shown = question;
}

AxVolumeQuestion AxVolumeFields::Question() const
{
    AxVolumeQuestion question = shown;
    question.base = static_cast<AxVolumeBase>(base.currentData().toInt());
    if (height.value() != shownHeight)
        question.height = height.value();
    if (cell.value() != shownCell)
        question.cell = cell.value();
    question.mayBeLarge = false;
    return question;
}

bool AxVolumeFields::IsChanged() const
{
    const AxVolumeQuestion now = Question();
    return now.base != shown.base || now.height != shown.height || now.cell != shown.cell;
}

void AxVolumeFields::SetEnabled(bool enabled)
{
    isEnabled = enabled;
    for (QWidget* field : {static_cast<QWidget*>(&base), static_cast<QWidget*>(&cell)})
        field->setEnabled(enabled);
    follow();
}

void AxVolumeFields::follow()
{
    height.setEnabled(isEnabled && base.currentData().toInt() == static_cast<int>(AxVolumeBase::Height));
}
