#include "host/tasks/TaskParameters.h"
#include "host/tasks/LimitedNumber.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>
#include <AxData/planner/AxPlanAircraft.h>
#include <AxData/planner/AxPlanCameras.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <cmath>

namespace {
constexpr double leastHeight = 1.0;
constexpr double mostHeight = 10000.0; // metres
constexpr double mostOverlap = 99.0;   // %

enum Heights
{
    ConstantHeight,
    OverlapKept,
    TerrainFollowed,
};

// The wheel scrolls the panel and changes no value that the mouse happens to be over.
class CalmChoice : public QComboBox
{
public:
    CalmChoice() { setFocusPolicy(Qt::StrongFocus); }

protected:
    void wheelEvent(QWheelEvent* event) override
    {
        if (hasFocus())
            QComboBox::wheelEvent(event);
        else
            event->ignore();
    }
};

// Of the list, or the one that plans take when there is no list.
QList<AxListedCamera> Cameras()
{
    QList<AxListedCamera> cameras = AxCameraList();
    if (cameras.isEmpty())
        cameras += AxListedCamera{CameraFullFrame, AxCameraOfType(CameraFullFrame)};
    return cameras;
}

int CameraRow(CAxTaskPara& para)
{
    const QList<AxListedCamera> cameras = Cameras();
    int first = -1;
    for (int i = 0; i < cameras.size(); ++i) {
        if (cameras[i].type != para.GetCameraType())
            continue;
        if (cameras[i].camera.name == para.GetExtendedTaskParam()->GetCameraName())
            return i;
        first = first < 0 ? i : first;
    }
    return first;
}

AxPlanCamera CameraOf(CAxTaskPara& para)
{
    const int row = CameraRow(para);
    return row < 0 ? AxCameraOfType(para.GetCameraType()) : Cameras()[row].camera;
}
} // namespace

TaskParameters::TaskParameters(QWidget* parent) : QWidget(parent), form(new QFormLayout(this))
{
    form->setContentsMargins(4, 4, 4, 4);
    form->setVerticalSpacing(3);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    AddCamera();
    AddHeights();
    AddPasses();
    AddFlight();
    AddPlaces();
    ShowBlock({});
}

void TaskParameters::AddRow(const QString& name, QWidget* field, QWidget* beside)
{
    auto* row = new QWidget;
    auto* column = new QVBoxLayout(row);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* line = new QHBoxLayout;
    line->addWidget(field, 1);
    if (beside)
        line->addWidget(beside);
    column->addLayout(line);
    auto* hint = new QLabel;
    hint->setWordWrap(true);
    hint->setTextFormat(Qt::PlainText);
    // Read on a light as on a dark desktop.
    hint->setStyleSheet(QStringLiteral("color: #d04000"));
    hint->hide();
    column->addWidget(hint);
    hints[field] = hint;
    rows[field] = row;
    form->addRow(name, row);
    field->setAccessibleName(name);
}

void TaskParameters::SetRowVisible(QWidget* field, bool visible)
{
    rows[field]->setVisible(visible);
    form->labelForField(rows[field])->setVisible(visible);
}

QDoubleSpinBox* TaskParameters::AddNumber(const QString& name, const QString& unit, double least, double most,
                                          int decimals, std::function<void(CAxBlock&, double)> set)
{
    auto* field = new LimitedNumber;
    field->setRange(least, most);
    field->setDecimals(decimals);
    field->setSuffix(unit);
    field->setToolTip(tr("%1 to %2%3").arg(locale().toString(least), locale().toString(most), unit));
    connect(field, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            [this, field, set](double value) { Set(field, [&](CAxBlock& block) { set(block, value); }); });
    AddRow(name, field);
    TellLimits(field);
    return field;
}

QComboBox* TaskParameters::AddChoice(const QString& name, const QStringList& texts,
                                     std::function<void(CAxBlock&, int)> set)
{
    auto* field = new CalmChoice;
    field->addItems(texts);
    // A long name does not widen the panel.
    field->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    field->setMinimumContentsLength(8);
    connect(field, &QComboBox::currentTextChanged, field, &QWidget::setToolTip);
    connect(field, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this, field, set](int index) {
        if (index >= 0)
            Set(field, [&](CAxBlock& block) { set(block, index); });
    });
    AddRow(name, field);
    return field;
}

void TaskParameters::TellLimits(LimitedNumber* field)
{
    const auto tell = [this, field](const QString& typed) {
        beyond = hints[field];
        beyond->setText(tr("%1 is beyond the limits, %2 to %3%4.")
                            .arg(typed.trimmed(), locale().toString(field->minimum()),
                                 locale().toString(field->maximum()), field->suffix()));
        beyond->show();
    };
    // After the value has changed, which takes the hint before away.
    connect(field, &LimitedNumber::Beyond, this, tell, Qt::QueuedConnection);
    const auto tellRefused = [this, field](const QString& typed) {
        beyond = hints[field];
        beyond->setText(
            tr("\"%1\" is not a number. Decimals are written with a point.").arg(typed.trimmed()));
        beyond->show();
    };
    connect(field, &LimitedNumber::Refused, this, tellRefused, Qt::QueuedConnection);
}

void TaskParameters::Set(QWidget* field, const std::function<void(CAxBlock&)>& set)
{
    CAxBlock* block = CAxBlockManager::instance().GetBlock(blockID);
    if (isLoading || !block)
        return;
    if (beyond)
        beyond->hide();
    beyond = nullptr;
    set(*block);
    lastChanged = field;
    FollowCamera(*block);
    ShowHints(*block);
    CAxControl::GetInstance()->SetProjectModified(true);
}

void TaskParameters::AddCamera()
{
    // In the order of the types' values.
    aircraft = AddChoice(tr("Aircraft"),
                         {tr("Fixed wing"), tr("Tail sitter"), tr("Quad plane"), tr("Quadcopter"),
                          tr("Hexacopter"), tr("Octocopter"), tr("Oblique copter")},
                         [](CAxBlock& block, int index) {
                             block.GetTaskPara()->SetPlaneType(static_cast<EPlaneType>(index));
                         });
    QStringList names;
    for (const AxListedCamera& listed : Cameras())
        names += listed.camera.name.isEmpty() ? tr("Full frame, 35 mm") : listed.camera.name;
    camera = AddChoice(tr("Camera"), names, [](CAxBlock& block, int index) {
        const AxListedCamera listed = Cameras()[index];
        block.GetTaskPara()->SetCameraType(listed.type);
        block.GetTaskPara()->GetExtendedTaskParam()->SetCameraName(listed.camera.name);
    });
}

void TaskParameters::AddHeights()
{
    height = AddNumber(tr("Height"), tr(" m"), leastHeight, mostHeight, 1, [](CAxBlock& block, double value) {
        block.GetTaskPara()->GetAirLineParam()->SetRelativeFlyHeight(value);
    });
    height->setToolTip(tr("Above the mean ground of the block; %1").arg(height->toolTip()));
    sample = AddNumber(tr("Sample distance"), tr(" cm"), 0.01, 1000.0, 2, [](CAxBlock& block, double value) {
        CAxTaskPara& para = *block.GetTaskPara();
        para.GetAirLineParam()->SetRelativeFlyHeight(
            qBound(leastHeight, CameraOf(para).HeightFor(value / 100.0), mostHeight));
    });
    sample->setToolTip(tr("Of the ground, a pixel; the height follows from it"));
    heights =
        AddChoice(tr("Heights"), {tr("Constant"), tr("Keep the overlap"), tr("Follow the terrain")},
                  [](CAxBlock& block, int index) {
                      block.GetTaskPara()->SetChangeHighFlying(index != ConstantHeight);
                      block.GetTaskPara()->GetExtendedTaskParam()->SetKeepsOverlap(index == OverlapKept);
                  });
    clearance = AddNumber(tr("Clearance"), tr(" m"), 0.0, 5000.0, 1, [](CAxBlock& block, double value) {
        block.GetTaskPara()->GetAirLineParam()->SetClearance(value);
    });
    clearance->setToolTip(
        tr("Least height above the ground anywhere on the route; %1").arg(clearance->toolTip()));
}

void TaskParameters::AddPasses()
{
    const auto setOverlap = [this](CAxBlock& block, double) {
        block.GetTaskPara()->GetAirLineParam()->SetOverlap(sideOverlap->value() / 100.0,
                                                           forwardOverlap->value() / 100.0);
    };
    sideOverlap = AddNumber(tr("Side overlap"), tr(" %"), 0.0, mostOverlap, 1, setOverlap);
    forwardOverlap = AddNumber(tr("Forward overlap"), tr(" %"), 0.0, mostOverlap, 1, setOverlap);

    auto* direction = new LimitedNumber;
    heading = direction;
    heading->setRange(0.0, 359.9);
    heading->setDecimals(1);
    heading->setWrapping(true);
    heading->setSuffix(QStringLiteral("\u00b0"));
    heading->setToolTip(tr("Of the passes, clockwise from north"));
    isBestHeading = new QCheckBox(tr("Best"));
    isBestHeading->setToolTip(tr("The shortest flight decides"));
    AddRow(tr("Heading"), heading, isBestHeading);
    TellLimits(direction);
    const auto setHeading = [this] {
        heading->setEnabled(!isBestHeading->isChecked());
        Set(heading, [this](CAxBlock& block) {
            block.GetTaskPara()->GetAirLineParam()->SetHeading(
                isBestHeading->isChecked() ? std::nullopt : std::make_optional(heading->value()));
        });
    };
    connect(heading, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, setHeading);
    connect(isBestHeading, &QCheckBox::toggled, this, setHeading);

    mode = AddChoice(tr("Flying mode"), {tr("Normal"), tr("Cross grid"), tr("Three directions")},
                     [this](CAxBlock& block, int index) {
                         CAxExtendedTaskParam& more = *block.GetTaskPara()->GetExtendedTaskParam();
                         more.SetFlyingMode(index);
                         // Only tasks of that type have three directions; others keep theirs.
                         if (index == CAxExtendedTaskParam::ThreeDirections)
                             more.SetTaskType(TaskOblique);
                         else if (more.GetTaskType() == TaskOblique)
                             more.SetTaskType(typeBefore);
                     });
    passes = AddNumber(tr("Passes"), {}, 0.0, 1000.0, 0, [](CAxBlock& block, double value) {
        block.GetTaskPara()->SetExpectedRouteCount(static_cast<int>(value));
    });
    passes->setSpecialValueText(tr("By the overlap"));
    const auto setWidths = [this](CAxBlock& block, double) {
        block.GetTaskPara()->SetBandingOffset(left->value(), right->value());
    };
    left = AddNumber(tr("Width to the left"), tr(" m"), 0.0, 10000.0, 1, setWidths);
    right = AddNumber(tr("Width to the right"), tr(" m"), 0.0, 10000.0, 1, setWidths);
    radius = AddNumber(tr("Radius"), tr(" m"), 1.0, 10000.0, 0,
                       [](CAxBlock& block, double value) { block.SetVideoRadius(static_cast<int>(value)); });
}

void TaskParameters::AddFlight()
{
    const auto setWind = [this](CAxBlock& block, double) {
        block.GetTaskPara()->GetExtendedTaskParam()->SetWind(windSpeed->value(), windFrom->value());
    };
    windSpeed = AddNumber(tr("Wind"), tr(" m/s"), 0.0, 50.0, 1, setWind);
    windFrom = AddNumber(tr("Wind from"), QStringLiteral("\u00b0"), 0.0, 359.0, 0, setWind);
    windFrom->setWrapping(true);
    endurance = AddNumber(tr("Endurance"), tr(" min"), 0.0, 1440.0, 0, [](CAxBlock& block, double value) {
        block.GetTaskPara()->GetExtendedTaskParam()->SetEndurance(value * 60.0);
    });
}

void TaskParameters::AddPlaces()
{
    entry = AddChoice(tr("Entry point"), {tr("1"), tr("2"), tr("3"), tr("4")},
                      [](CAxBlock& block, int index) { block.SetEnterDirection(index); });
    entry->setToolTip(tr("A click on its marker on the map does the same"));
    goesRound = new QCheckBox(tr("Round no-fly zones"));
    connect(goesRound, &QCheckBox::toggled, this, [this](bool round) {
        Set(goesRound, [round](CAxBlock& block) { block.GetTaskPara()->SetHomeLegRoundZones(round); });
    });
    AddRow(tr("Home legs"), goesRound);
    leavesZones = new QCheckBox(tr("No photos over no-fly zones"));
    leavesZones->setToolTip(tr("The zones in the block are holes of its area"));
    connect(leavesZones, &QCheckBox::toggled, this, [this](bool holes) {
        Set(leavesZones, [holes](CAxBlock& block) { block.GetTaskPara()->SetZonesAsHoles(holes); });
    });
    AddRow(tr("Zones"), leavesZones);
    home = new QLabel;
    home->setTextFormat(Qt::PlainText);
    home->setWordWrap(true);
    AddRow(tr("Home"), home);
    auto* buttons = new QWidget;
    setHome = new QPushButton(tr("Set home"));
    setHome->setObjectName(QStringLiteral("SetHome"));
    setHome->setCheckable(true);
    setHome->setToolTip(tr("Then click its place on the map; Escape gives it up"));
    clearHome = new QPushButton(tr("Clear"));
    auto* line = new QHBoxLayout(buttons);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(setHome);
    line->addWidget(clearHome);
    form->addRow(QString(), buttons);
    connect(setHome, &QPushButton::clicked, this, &TaskParameters::HomeWanted);
    connect(clearHome, &QPushButton::clicked, this, [this] {
        Set(home, [this](CAxBlock&) { emit HomeCleared(); });
        ShowPlaces();
    });
}

void TaskParameters::ShowBlock(const QString& id)
{
    CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    blockID = block ? id : QString();
    lastChanged = nullptr;
    if (beyond)
        beyond->hide();
    beyond = nullptr;
    ShowFault({});
    setEnabled(block != nullptr);
    if (block)
        Load(*block);
    ShowPlaces();
}

void TaskParameters::Load(CAxBlock& block)
{
    const QScopedValueRollback<bool> guard(isLoading, true);
    CAxTaskPara& para = *block.GetTaskPara();
    const CAxAirLineParam& line = *para.GetAirLineParam();
    const CAxExtendedTaskParam& more = *para.GetExtendedTaskParam();
    typeBefore = more.GetTaskType() == TaskOblique ? TaskOrthophoto : more.GetTaskType();
    aircraft->setCurrentIndex(para.GetPlaneType());
    camera->setCurrentIndex(CameraRow(para));
    sideOverlap->setValue(line.GetSideOverlap() * 100.0);
    forwardOverlap->setValue(line.GetForwardOverlap() * 100.0);
    isBestHeading->setChecked(!line.GetHeading());
    heading->setEnabled(line.GetHeading().has_value());
    heading->setValue(std::fmod(line.GetHeading().value_or(0.0) + 360.0, 360.0));
    mode->setCurrentIndex(more.GetFlyingMode());
    passes->setValue(para.GetExpectedRouteCount());
    heights->setCurrentIndex(!para.IsChangeHighFlying() ? ConstantHeight
                             : more.KeepsOverlap()      ? OverlapKept
                                                        : TerrainFollowed);
    clearance->setValue(line.GetClearance());
    goesRound->setChecked(para.IsHomeLegRoundZones());
    leavesZones->setChecked(para.AreZonesHoles());
    windSpeed->setValue(more.GetWindSpeed());
    windFrom->setValue(std::fmod(more.GetWindFrom() + 360.0, 360.0));
    endurance->setValue(more.GetEndurance() / 60.0);
    double leftWidth = 0.0;
    double rightWidth = 0.0;
    para.GetBandingOffset(leftWidth, rightWidth);
    left->setValue(leftWidth);
    right->setValue(rightWidth);
    radius->setValue(block.GetVideoRadius());
    const bool isStrip = block.GetBlockType() == CAxBlock::StripBlock;
    const bool isVideo = block.GetBlockType() == CAxBlock::VideoBlock;
    for (QWidget* field : {left, right})
        SetRowVisible(field, isStrip);
    SetRowVisible(radius, isVideo);
    for (QWidget* field : {static_cast<QWidget*>(heading), static_cast<QWidget*>(mode)})
        SetRowVisible(field, !isStrip && !isVideo);
    FollowCamera(block);
    ShowHints(block);
}

void TaskParameters::ShowSizes()
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(blockID);
    if (!block)
        return;
    const QScopedValueRollback<bool> guard(isLoading, true);
    double leftWidth = 0.0;
    double rightWidth = 0.0;
    block->GetTaskPara()->GetBandingOffset(leftWidth, rightWidth);
    // A value set again would end what is being typed.
    const auto show = [](QDoubleSpinBox* field, double value) {
        if (field->value() != value)
            field->setValue(value);
    };
    show(left, leftWidth);
    show(right, rightWidth);
    show(radius, block->GetVideoRadius());
}

void TaskParameters::ShowFlownHeading(std::optional<double> degrees)
{
    if (!degrees || !isBestHeading->isChecked())
        return;
    const QScopedValueRollback<bool> guard(isLoading, true);
    heading->setValue(std::fmod(*degrees + 360.0, 360.0));
}

// Height and sample distance say the same; who types in one sees the other follow.
void TaskParameters::FollowCamera(CAxBlock& block)
{
    const QScopedValueRollback<bool> guard(isLoading, true);
    CAxTaskPara& para = *block.GetTaskPara();
    const double metres = para.GetAirLineParam()->GetRelativeFlyHeight();
    if (lastChanged != height)
        height->setValue(metres);
    if (lastChanged != sample)
        sample->setValue(CameraOf(para).SampleFrom(metres) * 100.0);
    endurance->setSpecialValueText(
        tr("%1 min, as usual")
            .arg(locale().toString(qRound(AxAircraftOfType(para.GetPlaneType()).endurance / 60.0))));
}

void TaskParameters::ShowHints(CAxBlock& block)
{
    CAxTaskPara& para = *block.GetTaskPara();
    const bool wantsThree =
        para.GetExtendedTaskParam()->GetFlyingMode() == CAxExtendedTaskParam::ThreeDirections;
    QString text;
    if (wantsThree && !para.HasThreeDirections())
        text = tr("Three directions need an oblique camera, or a swinging one on an oblique copter; one "
                  "direction is flown.");
    hints[mode]->setText(text);
    hints[mode]->setVisible(!text.isEmpty());
    text.clear();
    if (para.HasThreeDirections() && para.IsChangeHighFlying())
        text = tr("On the map three directions are shown at one height.");
    hints[heights]->setText(text);
    hints[heights]->setVisible(!text.isEmpty());
}

void TaskParameters::ShowFault(const QString& fault)
{
    if (faulty) {
        faulty->hide();
        faulty = nullptr;
        if (CAxBlock* block = CAxBlockManager::instance().GetBlock(blockID))
            ShowHints(*block);
    }
    if (fault.isEmpty() || !lastChanged)
        return;
    faulty = hints[lastChanged];
    faulty->setText(fault);
    faulty->show();
}

void TaskParameters::ShowPlaces()
{
    const QScopedValueRollback<bool> guard(isLoading, true);
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(blockID);
    const CAxVector3D place = block ? block->GetHomePosition() : CAxVector3D();
    entry->setCurrentIndex(block ? qBound(0, block->GetEnterDirection(), 3) : -1);
    home->setText(place.isNull()
                      ? tr("not set")
                      : tr("%1\302\260, %2\302\260, %3 m")
                            .arg(QString::number(place.x(), 'f', 6), QString::number(place.y(), 'f', 6),
                                 QString::number(place.z(), 'f', 1)));
    clearHome->setEnabled(!place.isNull());
}

void TaskParameters::ShowSettingHome(bool setting)
{
    setHome->setChecked(setting);
}
