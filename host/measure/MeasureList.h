#pragma once
#include "interaction/AxMeasurement.h"

#include <QPointer>
#include <QTreeWidget>

class AxMeasurements;

/**
 * The measurements of the map as a list, a row each with its values, and below it a row for each of its
 * parts. Columns are there for the quantities that occur. GUI thread; the measurements may go first.
 */
class MeasureList : public QTreeWidget
{
    Q_OBJECT
public:
    explicit MeasureList(AxMeasurements* measurements, QWidget* parent = nullptr);

    /// The selected ones, in the order of the list; a selected part counts for its whole.
    QVector<AxMeasurement> Chosen() const;
    QStringList ChosenIDs() const;
    /// Selects one, and no others.
    void Select(const QString& id);
    /// Selects one besides the others, or takes it out of the selection.
    void Toggle(const QString& id);

signals:
    /// A selected measurement, or the selection, has changed.
    void ChosenChanged();

private:
    void Add(const QString& id);
    void Fill(const QString& id);
    QTreeWidgetItem* ItemOf(const QString& id) const;
    void ShowColumns();

    QPointer<AxMeasurements> measurements;
};
