#include "viewer/overlay/CAxMapToolsWidget.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"
#include "scene/AxZoneAnswers.h"

#include <QVBoxLayout>

namespace {
constexpr int buttonHeight = 36;
constexpr int buttonGap = 20;
// Two of them fill what the window shows of the bar.
constexpr int columnWidth = 37;

struct ButtonImages
{
    const char* normal;
    const char* hover = nullptr;
    const char* pressed = nullptr;
    const char* checked = nullptr;
};

QString Rule(const QString& selector, const char* image)
{
    return image ? QStringLiteral("%1{background-color: transparent;"
                                  "background-image: url(:/images/Normal/%2);"
                                  "background-position: center;background-repeat: no-repeat;border: 0px;}\n")
                       .arg(selector, QLatin1String(image))
                 : QString();
}

QPushButton* MakeButton(QWidget* parent, const char* name, const QString& toolTip, bool checkable,
                        int minimumWidth, const ButtonImages& images)
{
    auto* button = new QPushButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setCheckable(checkable);
    button->setMinimumSize(minimumWidth, buttonHeight);
    const QString selector = QStringLiteral("QPushButton#") + QLatin1String(name);
    button->setStyleSheet(Rule(selector, images.normal) +
                          Rule(selector + QStringLiteral("::hover"), images.hover) +
                          Rule(selector + QStringLiteral("::pressed"), images.pressed) +
                          Rule(selector + QStringLiteral("::checked"), images.checked));
    parent->layout()->addWidget(button);
    return button;
}
} // namespace

CAxMapToolsWidget::CAxMapToolsWidget(QWidget* parent) : CAxBaseWidget(parent), viewer(AxPartsOf(parent))
{
    BuildForm();
    setAttribute(Qt::WA_TranslucentBackground);
    EnableMove(false);
    InitSlots();
}

void CAxMapToolsWidget::BuildForm()
{
    setObjectName(QStringLiteral("CAxMapToolsWidget"));
    setWindowTitle(tr("CAxMapToolsWidget"));
    resize(94, 578);
    setMinimumSize(0, 360);
    auto* column = new QVBoxLayout(this);
    column->setObjectName(QStringLiteral("verticalLayout"));
    column->setSpacing(buttonGap);
    column->setContentsMargins(0, 0, 0, 0);

    column->addItem(new QSpacerItem(20, 40, QSizePolicy::Minimum, QSizePolicy::Expanding));
    m_pBtnDisplayShoot =
        MakeButton(this, "m_pBtnDisplayShoot", tr("Display shoot point"), true, 36,
                   {"Hide_photo_point_but_nor.png", nullptr, nullptr, "Show_photo_point_but_nor.png"});
    m_pBtnNoFly = MakeButton(this, "m_pBtnNoFly", tr("No fly zone"), true, 36,
                             {"hide_No_fly_but_nor.png", nullptr, nullptr, "Show_No_fly_but_nor.png"});
    m_pMeasureBtn = MakeButton(this, "m_pMeasureBtn", tr("Distance measurement"), true, 0,
                               {"tool_Measure_but_nor.png", "tool_Measure_but_hov.png",
                                "tool_Measure_but_hov.png", "tool_Measure_but_hov.png"});
    m_pMarkerTools = MakeButton(this, "m_pMarkerTools", tr("Measuring elevation mark"), true, 0,
                                {"tool_Markpoint_but_nor.png", "tool_Markpoint_but_hov.png",
                                 "tool_Markpoint_but_hov.png", "tool_Markpoint_but_hov.png"});
    m_pMapCtrlToEditAreaBtn =
        MakeButton(this, "m_pMapCtrlToEditAreaBtn", tr("Display all blocks"), false, 0,
                   {"show_all_but_nor.png", "show_all_but_hov.png", "show_all_but_pre.png"});
    m_pMapCtrlFollowAircraftBtn = MakeButton(
        this, "m_pMapCtrlFollowAircraftBtn", tr("Follow Aircraft"), false, 0,
        {"Display_airplane_but_nor.png", "Display_airplane_but_hov.png", "Display_airplane_but_pre.png"});
    m_pVoiceSwitchBtn =
        MakeButton(this, "m_pVoiceSwitchBtn", tr("Audio"), true, 0,
                   {"Voice_broadcast_on_but_nor.png", nullptr, nullptr, "Voice_broadcast_off_but_nor.png"});
    column->addItem(new QSpacerItem(20, 40, QSizePolicy::Minimum, QSizePolicy::Expanding));
}

void CAxMapToolsWidget::InitSlots()
{
    connect(m_pBtnDisplayShoot, SIGNAL(clicked(bool)), this, SLOT(slotDisplayShootPoint(bool)));
    connect(m_pMapCtrlFollowAircraftBtn, SIGNAL(clicked(bool)), this, SLOT(slotFollowToAircraf(bool)));
    connect(m_pMapCtrlToEditAreaBtn, SIGNAL(clicked(bool)), this, SLOT(slotScrollToArea(bool)));
    connect(m_pBtnNoFly, SIGNAL(clicked(bool)), this, SLOT(slotNoflyZoneVisbile(bool)));
    connect(m_pMeasureBtn, SIGNAL(clicked(bool)), this, SLOT(slotMeasureToolEnabled(bool)));
    connect(m_pMarkerTools, SIGNAL(clicked(bool)), this, SLOT(slotMarkerToolEnabled(bool)));
    connect(m_pVoiceSwitchBtn, SIGNAL(clicked(bool)), this, SLOT(slotTextToSpeechEnabled(bool)));
}

// Who hears of it may end the viewer, and the bar with it.
template <typename Action> void CAxMapToolsWidget::Act(Action action)
{
    const QPointer<AxViewerParts> parts = viewer;
    if (parts)
        action(*parts);
    if (parts)
        parts->Tools().TakePress();
}

void CAxMapToolsWidget::ResetToolType()
{
    m_pMeasureBtn->setChecked(false);
    m_pMarkerTools->setChecked(false);
}

void CAxMapToolsWidget::ShowTool(EToolType tool)
{
    m_pMeasureBtn->setChecked(tool == ToolMeasureDistance);
    m_pMarkerTools->setChecked(tool == ToolMarkPoint);
}

void CAxMapToolsWidget::KeepButtonsWithin(int top, int bottom, int end)
{
    firstRow = top;
    lastRow = bottom;
    endRow = end;
    ArrangeButtons();
}

void CAxMapToolsWidget::ArrangeButtons()
{
    QList<QPushButton*> shown;
    for (QPushButton* button : findChildren<QPushButton*>())
        if (!button->isHidden())
            shown += button;
    const int buttons = shown.size();
    const int gaps = qMax(1, buttons - 1);
    const int designed = buttons * buttonHeight + gaps * buttonGap;
    const int designedTop = (height() - designed) / 2;
    const bool fits = designedTop >= firstRow && designedTop + designed <= lastRow;
    const int room = lastRow - firstRow - buttons * buttonHeight;
    layout()->setEnabled(room >= 0);
    if (room < 0) {
        ArrangeInTwoColumns(shown);
        return;
    }
    layout()->setSpacing(fits ? buttonGap : qMin(room / gaps, buttonGap));
    layout()->setContentsMargins(0, fits ? 0 : firstRow, 0, fits ? 0 : height() - lastRow);
    // It may have been off when the bar got its size, and tells nobody then that it has to be done again.
    layout()->invalidate();
    layout()->activate();
}

void CAxMapToolsWidget::ArrangeInTwoColumns(const QList<QPushButton*>& buttons)
{
    const int rows = (buttons.size() + 1) / 2;
    // A read-out may be covered, as one can look at it and no more.
    const int top = qMin(firstRow, endRow - rows * buttonHeight);
    for (int i = 0; i < buttons.size(); ++i)
        buttons[i]->setGeometry(i % 2 * columnWidth, top + i / 2 * buttonHeight, columnWidth, buttonHeight);
}

void CAxMapToolsWidget::SetToolsBtnVisible(bool visible)
{
    for (QPushButton* button : findChildren<QPushButton*>())
        button->setVisible(visible);
    ArrangeButtons();
}

void CAxMapToolsWidget::SetShootPointBtnVisible(bool visible)
{
    m_pBtnDisplayShoot->setVisible(visible);
    ArrangeButtons();
}

void CAxMapToolsWidget::SetFollowToAircraftBtnVisible(bool visible)
{
    m_pMapCtrlFollowAircraftBtn->setVisible(visible);
    ArrangeButtons();
}

void CAxMapToolsWidget::SetTextToSpeechBtnVisible(bool visible)
{
    m_pVoiceSwitchBtn->setVisible(visible);
    ArrangeButtons();
}

bool CAxMapToolsWidget::VoiceEnabled() const
{
    return !m_pVoiceSwitchBtn->isChecked();
}

void CAxMapToolsWidget::SetShootPointChecked(bool checked)
{
    m_pBtnDisplayShoot->setChecked(checked);
}

void CAxMapToolsWidget::slotDisplayShootPoint(bool checked)
{
    Act([=](AxViewerParts& parts) { parts.ShowShootPoints(checked); });
}

void CAxMapToolsWidget::slotFollowToAircraf(bool)
{
    Act([](AxViewerParts& parts) { parts.SwitchAircraftView(); });
}

void CAxMapToolsWidget::slotScrollToArea(bool)
{
    Act([](AxViewerParts& parts) { parts.ShowAllBlocks(); });
}

void CAxMapToolsWidget::slotNoflyZoneVisbile(bool checked)
{
    Act([=](AxViewerParts& parts) {
        if (AxZoneAnswers* zones = parts.Zones())
            zones->SetNoFlyZoneMask(checked);
    });
}

void CAxMapToolsWidget::SwitchTool(bool checked, EToolType tool, QPushButton* other)
{
    if (checked)
        other->setChecked(false);
    const EToolType active = checked ? tool : ToolNavigate;
    const QPointer<CAxMapToolsWidget> self(this);
    const QPointer<AxViewerParts> parts = viewer;
    if (parts)
        parts->Tools().TakeUp(active);
    if (self)
        emit ToolTypeChanged(active);
    if (parts)
        parts->Tools().TakePress();
}

void CAxMapToolsWidget::slotMeasureToolEnabled(bool checked)
{
    SwitchTool(checked, ToolMeasureDistance, m_pMarkerTools);
}

void CAxMapToolsWidget::slotMarkerToolEnabled(bool checked)
{
    SwitchTool(checked, ToolMarkPoint, m_pMeasureBtn);
}

void CAxMapToolsWidget::slotTextToSpeechEnabled(bool checked)
{
    Act([=](AxViewerParts& parts) { parts.SwitchVoice(checked); });
}
