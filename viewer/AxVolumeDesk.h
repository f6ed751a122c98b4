#pragma once
#include "analysis/volume/AxVolumeGrid.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class AxColorLegend;
class AxGridWidget;
class AxVolumeAnalysis;
class QWidget;

/**
 * What goes on between the grid panel on the map and the volumes: the panel shows the one that was measured
 * last while the tool is in hand, its fields ask about that one anew and count for the next, and large grids
 * are asked for. The legend says what the colours of that volume mean, or of the one that is chosen. Owned by
 * the viewer, as all of them. GUI thread.
 */
class AxVolumeDesk : public QObject
{
    Q_OBJECT
public:
    /// Questions open over `window`, in whose lower left corner the legend is, clear of the read-out.
    AxVolumeDesk(AxVolumeAnalysis& volumes, AxGridWidget& panel, AxColorLegend& legend, QWidget& readOut,
                 QWidget* window);

    /// The panel is about this one from now on; about the next one to be drawn for an unknown ID.
    void ShowVolume(const QString& id);

    /// The legend keeps its corner.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showResult();
    void showLegend();
    void placeLegend();
    void take();
    void askForLarge(const QString& id, const AxVolumeQuestion& question);
    void computeLarge(const QString& id, AxVolumeQuestion question);

    AxVolumeAnalysis& volumes;
    const QPointer<AxGridWidget> panel;
    const QPointer<AxColorLegend> legend;
    const QPointer<QWidget> readOut;
    const QPointer<QWidget> window;
    QStringList toAsk;                      ///< IDs of volumes with a large grid, in their order
    QHash<QString, AxVolumeQuestion> large; ///< the latest question of each
    bool isAsking = false;                  ///< a box is open
};
