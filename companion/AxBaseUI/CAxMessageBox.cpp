#include <AxBaseUI/CAxMessageBox.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr int MinTextWidth = 220;
constexpr int MaxTextWidth = 460;
constexpr int IconSize = 40;
} // namespace

CAxMessageBox::CAxMessageBox(QWidget* parent)
    : CAxBaseDialog(parent), m_pLabIcon(new QLabel), m_pLabText(new QLabel), m_pLabDetails(new QLabel)
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
    auto* const texts = new QVBoxLayout;
    texts->addWidget(m_pLabText);
    texts->addWidget(m_pLabDetails);
    row->addLayout(texts, 1);
    ContentLayout()->addLayout(row);

    m_pLabDetails->setObjectName(QStringLiteral("m_pLabDetails"));
    m_pLabDetails->setTextFormat(Qt::PlainText);
    m_pLabDetails->setWordWrap(true);
    m_pLabDetails->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont small = m_pLabDetails->font();
    constexpr double smallerBy = 0.9;
    small.setPointSizeF(small.pointSizeF() * smallerBy);
    m_pLabDetails->setFont(small);
    m_pLabDetails->hide();
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

void CAxMessageBox::SetDetails(const QString& text)
{
    m_pLabDetails->setText(text);
    m_pLabDetails->setVisible(!text.isEmpty());
    m_pLabDetails->ensurePolished();
    m_pLabDetails->setFixedWidth(MaxTextWidth);
    m_pLabDetails->setFixedHeight(m_pLabDetails->heightForWidth(MaxTextWidth));
}
