#pragma once
#include "host/exchange/GeoBlocks.h"

#include <AxBaseUI/CAxBaseDialog.h>

class QButtonGroup;
class QDoubleSpinBox;
class QFormLayout;
class QLabel;
class QTreeWidget;

/// What was found in a file, to be ticked, and how it is to become blocks. While an area with holes is ticked
/// and nobody has said what becomes of them, nothing can be imported. GUI thread.
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
    void AskForHoles(QFormLayout* form);
    void CountTicks();
    void ShowReadiness();
    void FollowChoice();

    QVector<AxGeoShape> shapes; ///< in the order of the rows
    QTreeWidget* list;
    QButtonGroup* holes = nullptr; ///< only where there are any
    QLabel* unanswered = nullptr;
    /// Of strips without, in the unit of widths; only where there are any.
    struct Width
    {
        QDoubleSpinBox* field = nullptr;
        double metres = 0.0; ///< exactly what the field shows until it is changed
        double shown = 0.0;
        double Metres() const;
    };
    Width left;
    Width right;
    QLabel* tooNarrow = nullptr;
    bool isFilling = false;
};
