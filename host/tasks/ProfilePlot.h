#pragma once
#include "host/tasks/ProfileLine.h"

#include <qcustomplot.h>

#include <optional>

/**
 * The plot of a route's heights and of the ground below, over the distance flown; of the ground alone where
 * the places of the line have no altitude (not a number). The wheel zooms the distance, with Ctrl the height;
 * dragging moves, a double click shows all. GUI thread.
 */
class ProfilePlot : public QCustomPlot
{
    Q_OBJECT
public:
    explicit ProfilePlot(QWidget* parent = nullptr);

    /// An empty line clears it. A clearance of more than 0 metres is drawn above the ground.
    void Show(ProfileLine shown, double clearance, bool keepsView);
    const ProfileLine& Line() const { return line; }
    /// Marks a place of the line, by its number, or none.
    void SetCursor(std::optional<std::size_t> place);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The mouse is over a place of the line; its number.
    void Pointed(int place);
    /// It is over none any more.
    void Left();

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    bool IsLong() const;                  ///< too long for the best of pens
    double LineWidth(double usual) const; ///< pixels
    void UseColors();
    void FillGraphs(double clearance);
    void ShowAll();

    ProfileLine line;
    QCPRange allKeys;   ///< kilometres
    QCPRange allValues; ///< metres
    QCPGraph* base;     ///< the plot's lower edge, down to which areas are filled
    QCPGraph* ground;
    QCPGraph* unknown;
    QCPGraph* clear;
    QCPGraph* route;
    QCPGraph* warnings;
    QCPItemTracer* cursor;
    QCPItemStraightLine* cursorLine;
};
