// The form of a block, whatever its kind.
#include "interaction/objects/AxBlockForm.h"
#include "interaction/objects/AxBlockAdapter.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxPage.h"
#include "scene/base/AxNotice.h"

#include <cmath>

namespace {
// Of the elements of the page.
constexpr int ofName = 0;
constexpr int ofFirstMeasure = 2;

QString WrittenIn(double unit, double value)
{
    constexpr int decimals = 2;
    // Rounded first, so that no zeros stand at the end.
    const double scale = std::pow(10.0, decimals);
    return QString::number(std::round(value / unit * scale) / scale, 'g', 12);
}

QString ShownOf(const AxBlockForm::Measure& measure)
{
    return WrittenIn(measure.unit, measure.value);
}

// What was not changed is not rounded either. NaN for what is no number.
double ReadFrom(const QString& text, const AxBlockForm::Measure& measure)
{
    bool isNumber = false;
    const double typed = text.trimmed().toDouble(&isNumber);
    if (!isNumber)
        return std::nan("");
    return typed == ShownOf(measure).toDouble() ? measure.value : typed * measure.unit;
}
} // namespace

// What was typed stays in the page until it can be taken.
int AxBlockAdapter::askUntilTaken(const AxPage& page, const std::function<bool()>& take)
{
    const Running self(this);
    const auto isOpen = [&] { return page && self.IsWanted() && GetContainedBlock() && d->viewer; };
    while (true) {
        const int result = page->exec();
        if (!isOpen())
            return CAxParameterEditPage::CloseResult;
        if (result != QDialog::Accepted || take())
            return result;
        if (!isOpen())
            return CAxParameterEditPage::CloseResult;
    }
}

void AxBlockAdapter::SetArea(AxBlockForm& form)
{
    constexpr double squareMetres = 1e6;
    const AxUnits::Unit unit = AxUnits::OfAreas();
    form.sizeLabel = tr("area (%1):").arg(unit.sign);
    form.size = QString::number(GetArea() * squareMetres / unit.size, 'f', 2);
}

bool AxBlockAdapter::FillIn(const AxBlockForm& form, const TakeMeasures& take)
{
    const CAxBlock* block = GetContainedBlock();
    if (!block || !d->viewer)
        return false;
    const Running self(this);
    const QString oldName = block->GetBlockName();
    QString name;
    QStringList labels;
    QStringList shown;
    QList<bool> areEditable;
    for (const AxBlockForm::Measure& measure : form.measures) {
        labels += measure.label;
        shown += ShownOf(measure);
        areEditable += !d->lock;
    }
    const AxPage page(BoxParent());
    page->SetWindowTitle(form.title);
    page->SetDialogInfo(form.info);
    page->SetElementName(tr("Name:"), form.sizeLabel);
    page->SetElement1Value(oldName, true);
    page->SetElement2Value(form.size, false);
    page->SetElementParas(labels, shown, areEditable);
    const auto refuse = [&](int element) {
        if (page)
            page->MarkWrong(element);
        return false;
    };
    const int result = askUntilTaken(page, [&] {
        name = page->GetElement1Value().trimmed();
        const QStringList typed = page->GetElementValues();
        if (name != oldName && !MayBeCalled(name))
            return refuse(ofName);
        if (typed == shown && !form.isNew)
            return true;
        if (!form.isNew && (d->lock || !d->tasks.isEmpty())) {
            AxShowNotice(BoxParent(), tr("Block Information"),
                         tr("The size of a block that is locked or has routes cannot be changed."));
            return false;
        }
        QList<double> values;
        for (int i = 0; i < form.measures.size(); ++i) {
            values += ReadFrom(typed.at(i), form.measures[i]);
            if (!tellRange(form, i, typed.at(i), values.last()))
                return refuse(ofFirstMeasure + i);
        }
        const AxBlockForm::Taken taken = take(values);
        return taken.isTaken || (taken.wrong >= 0 && refuse(ofFirstMeasure + taken.wrong));
    });
    if (result != QDialog::Accepted || !self.IsWanted() || !GetContainedBlock())
        return false;
    if (name != oldName && form.isNew) {
        GetContainedBlock()->SetBlockName(name);
        DrawNameLabel();
    } else if (name != oldName) {
        AskAndRename(name);
    }
    return true;
}

// False, with the reason told, for a value that is not among those that are taken.
bool AxBlockAdapter::tellRange(const AxBlockForm& form, int index, const QString& typed, double value)
{
    const AxBlockForm::Measure& measure = form.measures[index];
    if (value >= measure.least && value <= measure.most)
        return true;
    const QString reason =
        std::isfinite(measure.most)
            ? tr("%1 \"%2\" is not a number between %3 and %4. Decimals are written with a point.")
                  .arg(measure.label, typed, WrittenIn(measure.unit, measure.least),
                       WrittenIn(measure.unit, measure.most))
            : tr("%1 \"%2\" is not a number. Decimals are written with a point.").arg(measure.label, typed);
    AxShowNotice(BoxParent(), tr("Block Information"), form.fault.isEmpty() ? reason : form.fault,
                 form.fault.isEmpty() ? QString() : reason);
    return false;
}
