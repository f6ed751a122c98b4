#include <AxBaseUI/CAxMessageBox.h>

#include <QFontInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr int MinTextWidth = 220;
constexpr int MaxTextWidth = 460;
constexpr int IconSize = 40;
constexpr int MaxDetailsLines = 10;
constexpr double DetailsSize = 0.9; // of the message's letters
} // namespace

CAxMessageBox::CAxMessageBox(QWidget* parent)
    : CAxBaseDialog(parent), m_pLabIcon(new QLabel), m_pLabText(new QLabel), m_pLabDetails(new QLabel),
      m_pDetails(new QScrollArea)
{
    m_pLabIcon->setObjectName(QStringLiteral("m_pLabIcon"));
    m_pLabIcon->hide();
    m_pLabText->setObjectName(QStringLiteral("m_pLabText"));
    m_pLabText->setTextFormat(Qt::PlainText);
    m_pLabText->setWordWrap(true);
    m_pLabText->setMinimumWidth(MinTextWidth);

    m_pDetails->setObjectName(QStringLiteral("m_pDetails"));
    m_pDetails->setFrameShape(QFrame::NoFrame);
    m_pDetails->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pDetails->setWidget(m_pLabDetails);
    m_pDetails->hide();

    auto* const row = new QHBoxLayout;
    row->setSpacing(16);
    row->addWidget(m_pLabIcon, 0, Qt::AlignTop);
    auto* const texts = new QVBoxLayout;
    texts->addWidget(m_pLabText);
    texts->addWidget(m_pDetails);
    row->addLayout(texts, 1);
    ContentLayout()->addLayout(row);

    m_pLabDetails->setObjectName(QStringLiteral("m_pLabDetails"));
    m_pLabDetails->setTextFormat(Qt::PlainText);
    m_pLabDetails->setWordWrap(true);
    m_pLabDetails->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_pLabDetails->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    const QFontInfo usual(m_pLabDetails->font());
    QFont small = m_pLabDetails->font();
    small.setPointSizeF(usual.pointSizeF() * DetailsSize);
    m_pLabDetails->setFont(small);
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
    m_pDetails->setVisible(!text.isEmpty());
    // A label without text has no height for any width.
    if (text.isEmpty())
        return;
    m_pLabDetails->ensurePolished();
    const QFontMetrics metrics = m_pLabDetails->fontMetrics();
    const int width = std::clamp(metrics.size(0, text).width() + 2, MinTextWidth, MaxTextWidth);
    const int height = m_pLabDetails->heightForWidth(width);
    const int shown = std::min(height, MaxDetailsLines * metrics.lineSpacing());
    m_pLabDetails->setFixedSize(width, height);
    m_pDetails->setFixedSize(
        width + (shown < height ? m_pDetails->verticalScrollBar()->sizeHint().width() : 0), shown);
}
