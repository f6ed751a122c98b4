#include <AxBaseUI/CAxMessageBox.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>

#include <algorithm>

namespace {
constexpr int MinTextWidth = 220;
constexpr int MaxTextWidth = 460;
constexpr int IconSize = 40;
} // namespace

CAxMessageBox::CAxMessageBox(QWidget* parent)
    : CAxBaseDialog(parent), m_pLabIcon(new QLabel), m_pLabText(new QLabel)
{
    m_pLabIcon->setObjectName(QStringLiteral("m_pLabIcon"));
    m_pLabIcon->hide();
    m_pLabText->setObjectName(QStringLiteral("m_pLabText"));
    m_pLabText->setTextFormat(Qt::PlainText);
    m_pLabText->setWordWrap(true);
    m_pLabText->setMinimumWidth(MinTextWidth);

    auto* const row = new QHBoxLayout;
    row->setSpacing(16);
    row->addWidget(m_pLabIcon, 0, Qt::AlignTop);
    row->addWidget(m_pLabText, 1);
    ContentLayout()->addLayout(row);
}

void CAxMessageBox::SetIcon(const QString& path)
{
    const QPixmap picture(path);
    m_pLabIcon->setVisible(!picture.isNull());
    if (!picture.isNull())
        m_pLabIcon->setPixmap(
            picture.scaled(IconSize, IconSize, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

void CAxMessageBox::SetMsgText(const QString& text)
{
    m_pLabText->setText(text);
    setAccessibleDescription(text);
    m_pLabText->ensurePolished();
    const int natural = m_pLabText->fontMetrics().size(0, text).width() + 2;
    const int width = std::clamp(natural, MinTextWidth, MaxTextWidth);
    m_pLabText->setFixedSize(width, m_pLabText->heightForWidth(width));
}
