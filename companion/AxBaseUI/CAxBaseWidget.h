#pragma once

#include <AxBaseUI/AxBaseUIExport.h>

#include <QPoint>
#include <QWidget>

/// A frameless widget that the operator can drag with the left button, for panels that float over the map.
/// A panel with a parent stays inside it. Owned by its Qt parent.
class AXBASEUI_EXPORT CAxBaseWidget : public QWidget
{
    Q_OBJECT

public:
    explicit CAxBaseWidget(QWidget* parent = nullptr);

    /// Whether dragging moves the widget; it does until switched off. A widget that does not move leaves
    /// its mouse events to its parent.
    void EnableMove(bool enable);
    bool IsMoveEnabled() const { return m_moveEnabled; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool m_moveEnabled = true;
    bool m_dragging = false;
    QPoint m_grip;
};
