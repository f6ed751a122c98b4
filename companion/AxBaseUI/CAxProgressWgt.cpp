#include <AxBaseUI/CAxProgressWgt.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int TextWidth = 400;
} // namespace

CAxProgressWgt::CAxProgressWgt(const QString& caption, QWidget* parent)
    : CAxBaseDialog(parent), m_pLabText(new QLabel), m_pBar(new QProgressBar), m_pBtnRetry(new QPushButton)
{
    SetWindowTitle(caption);
    m_pLabText->setObjectName(QStringLiteral("m_pLabText"));
    m_pLabText->setTextFormat(Qt::PlainText);
    m_pLabText->setWordWrap(true);
    m_pLabText->setFixedWidth(TextWidth);
    m_pLabText->hide();
    m_pBar->setObjectName(QStringLiteral("m_pBar"));
    m_pBar->setRange(0, 0);
    m_pBtnRetry->setObjectName(QStringLiteral("m_pBtnRetry"));
    m_pBtnRetry->setText(tr("Retry"));
    m_pBtnRetry->setAutoDefault(false);
    m_pBtnRetry->hide();

    auto* const row = new QHBoxLayout;
    row->addStretch(); // in place of a hidden bar
    row->addWidget(m_pBar, 1);
    row->addWidget(m_pBtnRetry);
    ContentLayout()->addWidget(m_pLabText);
    ContentLayout()->addLayout(row);

    connect(m_pBtnRetry, &QPushButton::clicked, this, &CAxProgressWgt::signalRetry);
    SetBtnOKText(tr("Close"));
    SetBtnCancelText(tr("Cancel"));
    updateProgressButtons();
}

void CAxProgressWgt::SetMaxValue(int maximum)
{
    m_pBar->setRange(0, qMax(0, maximum));
    SetValue(m_pBar->value());
}

void CAxProgressWgt::VisibleBtnCannel(bool visible)
{
    m_cancelVisible = visible;
    updateProgressButtons();
}

void CAxProgressWgt::VisibleBtnRetry(bool visible)
{
    m_pBtnRetry->setVisible(visible);
}

void CAxProgressWgt::VisibleBtnClose(bool visible)
{
    m_closeVisible = visible;
    updateProgressButtons();
}

void CAxProgressWgt::VisibleBar(bool visible)
{
    m_pBar->setVisible(visible);
}

int CAxProgressWgt::exec(bool closeWhenDone)
{
    m_closeWhenDone = closeWhenDone;
    if (closeWhenDone && isDone())
        return Accepted;
    return exec();
}

void CAxProgressWgt::SetValue(int value)
{
    if (m_pBar->maximum() > 0)
        m_pBar->setValue(qBound(0, value, m_pBar->maximum()));
    if (isDone() && m_closeWhenDone && isVisible())
        accept();
    updateProgressButtons();
}

void CAxProgressWgt::SetText(const QString& text)
{
    m_pLabText->setText(text);
    m_pLabText->ensurePolished();
    m_pLabText->setFixedHeight(m_pLabText->heightForWidth(TextWidth));
    m_pLabText->setVisible(!text.isEmpty());
}

bool CAxProgressWgt::isDone() const
{
    return m_pBar->maximum() > 0 && m_pBar->value() >= m_pBar->maximum();
}

void CAxProgressWgt::updateProgressButtons()
{
    const bool closeVisible = m_closeVisible || (isDone() && !m_closeWhenDone);
    SetBtnHidden(!closeVisible, !m_cancelVisible, false);
}

void CAxProgressWgt::slotBtnAcceptClicked()
{
    accept();
}

void CAxProgressWgt::slotBtnCancelClicked()
{
    emit signalCancel();
    reject();
}

void CAxProgressWgt::slotBtnCloseClicked()
{
    if (m_cancelVisible && !isDone())
        slotBtnCancelClicked();
    else if (m_closeVisible || isDone())
        slotBtnAcceptClicked();
    else
        reject();
}
