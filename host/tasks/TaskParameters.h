#pragma once
#include <AxAlgorthm/AxMissionTypes.h>

#include <QHash>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

class CAxBlock;
class LimitedNumber;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QLabel;
class QPushButton;

/**
 * The planning parameters of a block as fields. What the operator sets is in the block's record at once. GUI
 * thread.
 */
class TaskParameters : public QWidget
{
    Q_OBJECT
public:
    explicit TaskParameters(QWidget* parent = nullptr);

    /// Shows those of another block; with an empty ID or an unknown one nothing can be set.
    void ShowBlock(const QString& id);
    /// Home and the entry point, as they are now in the record.
    void ShowPlaces();
    /// The radius of a video block and the widths of a strip, as the map has changed them.
    void ShowSizes();
    /// Says beside the field that was changed last why there is no route; empty when there is one.
    void ShowFault(const QString& fault);
    /// The heading that the planner has chosen, degrees, where the choice is its own.
    void ShowFlownHeading(std::optional<double> degrees);
    /// Whether a click on the map sets home.
    void ShowSettingHome(bool setting);

signals:
    /// A click on the map is to set home, or is not to any more.
    void HomeWanted(bool wanted);
    /// Home of the block is to be taken away.
    void HomeCleared();

private:
    QDoubleSpinBox* AddNumber(const QString& name, const QString& unit, double least, double most,
                              int decimals, std::function<void(CAxBlock&, double)> set);
    QComboBox* AddChoice(const QString& name, const QStringList& texts,
                         std::function<void(CAxBlock&, int)> set);
    void AddRow(const QString& name, QWidget* field, QWidget* beside = nullptr);
    void SetRowVisible(QWidget* field, bool visible);
    void TellLimits(LimitedNumber* field);
    void Set(QWidget* field, const std::function<void(CAxBlock&)>& set);
    void AddCamera();
    void AddHeights();
    void AddPasses();
    void AddFlight();
    void AddPlaces();
    void Load(CAxBlock& block);
    void FollowCamera(CAxBlock& block);
    void ShowHints(CAxBlock& block);

    QString blockID;
    bool isLoading = false;
    ETaskType typeBefore = TaskOrthophoto; ///< the task type that another flying mode goes back to
    QFormLayout* form;
    QHash<QWidget*, QWidget*> rows;
    QHash<QWidget*, QLabel*> hints; ///< below each field
    QWidget* lastChanged = nullptr;
    QLabel* faulty = nullptr; ///< the hint that tells the fault
    QLabel* beyond = nullptr; ///< the one that tells of a number beyond the limits

    QComboBox* aircraft;
    QComboBox* camera;
    QDoubleSpinBox* height;
    QDoubleSpinBox* sample; ///< cm
    QDoubleSpinBox* sideOverlap;
    QDoubleSpinBox* forwardOverlap;
    QDoubleSpinBox* heading;
    QCheckBox* isBestHeading;
    QComboBox* mode;
    QDoubleSpinBox* passes;
    QComboBox* heights;
    QDoubleSpinBox* clearance;
    QDoubleSpinBox* windSpeed;
    QDoubleSpinBox* windFrom;
    QDoubleSpinBox* endurance; ///< minutes
    QDoubleSpinBox* left;
    QDoubleSpinBox* right;
    QDoubleSpinBox* radius;
    QComboBox* entry;
    QCheckBox* goesRound;
    QCheckBox* leavesZones;
    QLabel* home;
    QPushButton* setHome;
    QPushButton* clearHome;
};
