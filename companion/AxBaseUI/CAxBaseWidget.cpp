#include <AxBaseUI/CAxBaseWidget.h>

#include <QMouseEvent>

#include <algorithm>

CAxBaseWidget::CAxBaseWidget(QWidget* parent) : QWidget(parent)
{
    setWindowFlag(Qt::FramelessWindowHint);
}

void CAxBaseWidget::EnableMove(bool enable)
{
    m_moveEnabled = enable;
    if (!enable)
        m_dragging = false;
}

void CAxBaseWidget::mousePressEvent(QMouseEvent* event)
{
    if (!m_moveEnabled || event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_dragging = true;
    m_grip = event->globalPos() - pos();
    event->accept();
}

void CAxBaseWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    QPoint target = event->globalPos() - m_grip;
    if (const QWidget* const area = isWindow() ? nullptr : parentWidget()) {
        target.setX(std::clamp(target.x(), 0, std::max(0, area->width() - width())));
        target.setY(std::clamp(target.y(), 0, std::max(0, area->height() - height())));
    }
    move(target);
    event->accept();
}

void CAxBaseWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_dragging || event->button() != Qt::LeftButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_dragging = false;
    event->accept();
}
