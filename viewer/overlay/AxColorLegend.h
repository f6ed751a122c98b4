#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QColor>
#include <QPair>
#include <QString>
#include <QVector>
#include <QWidget>

/**
 * What the colours of a picture on the map stand for: a small panel over the map, dark below bright texts, so
 * that it is read on any ground. Owned by the graphics scene. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxColorLegend : public QWidget
{
    Q_OBJECT
public:
    using Rows = QVector<QPair<QColor, QString>>;

    explicit AxColorLegend(QWidget* parent);

    /// A title above the colours with their texts, from above to below; it becomes as large as that takes, up
    /// to a limit from which on texts are cut.
    void ShowRows(const QString& title, const Rows& rows);
    const Rows& Shown() const { return shown; } ///< as they were given last

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QString heading;
    Rows shown;
};
