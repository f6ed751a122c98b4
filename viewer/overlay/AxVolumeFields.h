#pragma once
#include "analysis/volume/AxVolumeGrid.h"
#include "scene/base/AxEarthViewerExport.h"

#include <QObject>

class QComboBox;
class QDoubleSpinBox;

/**
 * The fields in which people fill in what a volume is measured against: base, height and cell. It makes their
 * limits and texts, and knows what somebody has changed; a number that nobody has touched stays as it is,
 * with all its digits, whatever its field can show. Owned by the panel that has the fields, which outlive it.
 * GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxVolumeFields : public QObject
{
    Q_OBJECT
public:
    /// Makes the limits and texts of the fields, which show nothing yet.
    AxVolumeFields(QComboBox& base, QDoubleSpinBox& height, QDoubleSpinBox& cell, QObject* parent);

    /// Fills the fields; emits nothing.
    void Show(const AxVolumeQuestion& question);
    /// The same where that differs from what they were filled with last: what is being typed stays otherwise.
    void Follow(const AxVolumeQuestion& question);
    /// What they were filled with last, with what was changed since; not `mayBeLarge`.
    AxVolumeQuestion Question() const;
    bool IsChanged() const; ///< Question() is not what they were filled with
    /// The height counts with one base alone.
    void SetEnabled(bool enabled);

signals:
    void changed(); ///< somebody has filled in something else
    void editing(); ///< somebody is filling in something

private:
    void follow();

    QComboBox& base;
    QDoubleSpinBox& height;
    QDoubleSpinBox& cell;
    AxVolumeQuestion shown;
    double shownHeight = 0.0; ///< as the field has it
    double shownCell = 0.0;
    bool isEnabled = true;
};
