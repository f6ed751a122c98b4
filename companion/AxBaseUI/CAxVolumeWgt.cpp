#include <AxBaseUI/CAxVolumeWgt.h>

#include <QFormLayout>
#include <QLabel>
#include <QLocale>

CAxVolumeWgt::CAxVolumeWgt(QWidget* parent)
    : CAxBaseWidget(parent), m_pLabCut(new QLabel), m_pLabFill(new QLabel), m_pLabNet(new QLabel)
{
    m_pLabCut->setObjectName(QStringLiteral("m_pLabCut"));
    m_pLabFill->setObjectName(QStringLiteral("m_pLabFill"));
    m_pLabNet->setObjectName(QStringLiteral("m_pLabNet"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("CAxVolumeWgt { background: #2b3748; } QLabel { color: #f3f6fa; }"));
    auto* const form = new QFormLayout(this);
    form->addRow(tr("Cut (m³):"), m_pLabCut);
    form->addRow(tr("Fill (m³):"), m_pLabFill);
    form->addRow(tr("Difference (m³):"), m_pLabNet);
    SetVolume(0.0, 0.0);
}

void CAxVolumeWgt::SetVolume(double cut, double fill)
{
    const auto text = [](double cubicMetres) { return QLocale().toString(cubicMetres, 'f', 2); };
    m_pLabCut->setText(text(cut));
    m_pLabFill->setText(text(fill));
    m_pLabNet->setText(text(cut - fill));
}
