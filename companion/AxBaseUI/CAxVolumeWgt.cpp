#include <AxAlgorthm/AxUnits.h>
#include <AxBaseUI/CAxVolumeWgt.h>

#include <QFormLayout>
#include <QLabel>
#include <QPixmap>
#include <QVBoxLayout>

namespace {
QLabel* VolumeLabel(const QString& text)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

constexpr int rowsOfVolume = 3;

void ClearRows(QFormLayout* form, int kept)
{
    while (form->rowCount() > kept)
        form->removeRow(kept);
}
} // namespace

CAxVolumeWgt::CAxVolumeWgt(QWidget* parent)
    : CAxBaseWidget(parent), m_pLabCut(VolumeLabel({})), m_pLabFill(VolumeLabel({})),
      m_pLabNet(VolumeLabel({})), m_pFigures(new QFormLayout), m_pLegend(new QFormLayout)
{
    m_pLabCut->setObjectName(QStringLiteral("m_pLabCut"));
    m_pLabFill->setObjectName(QStringLiteral("m_pLabFill"));
    m_pLabNet->setObjectName(QStringLiteral("m_pLabNet"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("CAxVolumeWgt { background: #2b3748; } QLabel { color: #f3f6fa; }"));
    m_pFigures->addRow(tr("Cut:"), m_pLabCut);
    m_pFigures->addRow(tr("Fill:"), m_pLabFill);
    m_pFigures->addRow(tr("Cut less fill:"), m_pLabNet);
    auto* const column = new QVBoxLayout(this);
    column->addLayout(m_pFigures);
    column->addLayout(m_pLegend);
    column->addStretch(1);
    SetVolume(0.0, 0.0);
}

void CAxVolumeWgt::SetVolume(double cut, double fill)
{
    m_pLabCut->setText(AxUnits::Volume(cut));
    m_pLabFill->setText(AxUnits::Volume(fill));
    m_pLabNet->setText(AxUnits::SignedVolume(cut - fill));
}

void CAxVolumeWgt::SetFigures(const QVector<QPair<QString, QString>>& figures)
{
    ClearRows(m_pFigures, rowsOfVolume);
    for (const auto& [name, value] : figures)
        m_pFigures->addRow(tr("%1:").arg(name), VolumeLabel(value));
}

void CAxVolumeWgt::SetLegend(const QVector<QPair<QColor, QString>>& colors)
{
    constexpr int swatchWidth = 28;
    constexpr int swatchHeight = 14;
    ClearRows(m_pLegend, 0);
    for (const auto& [color, text] : colors) {
        QPixmap swatch(swatchWidth, swatchHeight);
        swatch.fill(color);
        auto* label = new QLabel;
        label->setPixmap(swatch);
        m_pLegend->addRow(label, VolumeLabel(text));
    }
}
