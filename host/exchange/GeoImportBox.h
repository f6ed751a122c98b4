#pragma once
#include "host/exchange/GeoBlocks.h"

#include <AxBaseUI/CAxBaseDialog.h>

class QComboBox;
class QDoubleSpinBox;
class QTreeWidget;

/// What was found in a file, to be ticked, and how it is to become blocks. GUI thread.
class GeoImportBox : public CAxBaseDialog
{
    Q_OBJECT
public:
    GeoImportBox(const AxGeoContent& found, const QString& file, QWidget* parent);

    /// The ticked ones.
    QVector<AxGeoShape> Wanted() const;
    GeoChoice Choice() const;

private:
    void FillList();
    void AddChoices();
    void AddNotes(const QStringList& notes);
    void TickAll(bool on);
    void CountTicks();
    void FollowChoice();

    QVector<AxGeoShape> shapes; ///< in the order of the rows
    QTreeWidget* list;
    QComboBox* holes = nullptr;
    QDoubleSpinBox* left = nullptr;
    QDoubleSpinBox* right = nullptr;
    bool isFilling = false;
};
