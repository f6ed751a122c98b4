#include "host/layers/LayerPanel.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/AxMapLayers.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/Viewpoint>

#include <QBoxLayout>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>
#include <QTreeWidget>

#include <cmath>

namespace {
constexpr int idRole = Qt::UserRole;

QString KindText(AxMapLayer::Kind kind)
{
    switch (kind) {
    case AxMapLayer::Kind::Image:
        return LayerPanel::tr("Picture");
    case AxMapLayer::Kind::Elevation:
        return LayerPanel::tr("Heights");
    default:
        return LayerPanel::tr("Features");
    }
}
} // namespace

LayerPanel::LayerPanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), tree(new QTreeWidget), opacity(new QSlider(Qt::Horizontal)),
      fly(new QPushButton(tr("Fly there"))), remove(new QPushButton(tr("Remove")))
{
    tree->setObjectName(QStringLiteral("Layers"));
    tree->setRootIsDecorated(false);
    tree->setHeaderLabels({tr("Layer"), tr("Kind")});
    opacity->setObjectName(QStringLiteral("LayerOpacity"));
    opacity->setRange(0, 100);
    opacity->setAccessibleName(tr("Opacity"));
    auto* addImage = new QPushButton(tr("Add picture…"));
    auto* addHeights = new QPushButton(tr("Add heights…"));
    auto* label = new QLabel(tr("&Opacity"));
    label->setBuddy(opacity);
    auto* fading = new QHBoxLayout;
    fading->addWidget(label);
    fading->addWidget(opacity, 1);
    auto* adding = new QHBoxLayout;
    adding->addWidget(addImage);
    adding->addWidget(addHeights);
    auto* doing = new QHBoxLayout;
    doing->addWidget(fly);
    doing->addWidget(remove);
    auto* column = new QVBoxLayout(this);
    column->addWidget(tree, 1);
    column->addLayout(fading);
    column->addLayout(adding);
    column->addLayout(doing);

    connect(tree, &QTreeWidget::itemChanged, this, &LayerPanel::OnChanged);
    connect(tree, &QTreeWidget::currentItemChanged, this, &LayerPanel::OnChosen);
    connect(tree, &QTreeWidget::itemDoubleClicked, this, [this] { FlyTo(Chosen()); });
    connect(opacity, &QSlider::valueChanged, this, [this](int percent) {
        if (!isFilling)
            viewer->GetMapLayers()->SetOpacity(Chosen(), percent / 100.0);
    });
    connect(addImage, &QPushButton::clicked, this, [this] { ChooseFiles(false); });
    connect(addHeights, &QPushButton::clicked, this, [this] { ChooseFiles(true); });
    connect(fly, &QPushButton::clicked, this, [this] { FlyTo(Chosen()); });
    connect(remove, &QPushButton::clicked, this, [this] { viewer->GetMapLayers()->Remove(Chosen()); });
    connect(viewer->GetMapLayers(), &AxMapLayers::changed, this, &LayerPanel::Fill);
    Fill();
}

int LayerPanel::Chosen() const
{
    const QTreeWidgetItem* item = tree->currentItem();
    return item ? item->data(0, idRole).toInt() : 0;
}

QTreeWidgetItem* LayerPanel::ItemOf(int id) const
{
    for (int row = 0; row < tree->topLevelItemCount(); ++row)
        if (tree->topLevelItem(row)->data(0, idRole).toInt() == id)
            return tree->topLevelItem(row);
    return nullptr;
}

void LayerPanel::Fill()
{
    const QList<AxMapLayer> layers = viewer->GetMapLayers()->All();
    QList<int> wanted;
    for (const AxMapLayer& layer : layers)
        wanted += layer.id;
    isFilling = true;
    // Each tick of the slider comes here: rows that stay keep their place and what is chosen.
    if (wanted != rows) {
        const int chosen = Chosen();
        const int scrolled = tree->verticalScrollBar()->value();
        tree->clear();
        for (const int id : qAsConst(wanted))
            (new QTreeWidgetItem(tree))->setData(0, idRole, id);
        tree->setCurrentItem(ItemOf(chosen));
        tree->verticalScrollBar()->setValue(scrolled);
        rows = wanted;
    }
    for (int row = 0; row < layers.size(); ++row)
        Describe(*tree->topLevelItem(row), layers[row]);
    tree->resizeColumnToContents(0);
    isFilling = false;
    OnChosen();
}

void LayerPanel::Describe(QTreeWidgetItem& item, const AxMapLayer& layer)
{
    item.setText(0, layer.name);
    item.setText(1, layer.fault.isEmpty() ? KindText(layer.kind) : tr("Fault"));
    item.setCheckState(0, layer.isVisible ? Qt::Checked : Qt::Unchecked);
    item.setToolTip(0, layer.fault.isEmpty() ? layer.name : layer.fault);
}

void LayerPanel::OnChosen()
{
    if (isFilling)
        return;
    AxMapLayer chosen;
    for (const AxMapLayer& layer : viewer->GetMapLayers()->All())
        if (layer.id == Chosen())
            chosen = layer;
    isFilling = true;
    opacity->setEnabled(chosen.id != 0 && chosen.kind != AxMapLayer::Kind::Elevation);
    opacity->setValue(static_cast<int>(std::lround(chosen.opacity * 100.0)));
    isFilling = false;
    fly->setEnabled(chosen.extent.has_value());
    remove->setEnabled(chosen.isAdded);
}

void LayerPanel::OnChanged(QTreeWidgetItem* item, int column)
{
    if (isFilling || column != 0)
        return;
    const int id = item->data(0, idRole).toInt();
    const bool isVisible = item->checkState(0) == Qt::Checked;
    // The list may be filled anew by it, and this item is gone then.
    QMetaObject::invokeMethod(
        this, [this, id, isVisible] { viewer->GetMapLayers()->SetVisible(id, isVisible); },
        Qt::QueuedConnection);
}

void LayerPanel::ChooseFiles(bool isElevation)
{
    const QStringList files =
        QFileDialog::getOpenFileNames(this, isElevation ? tr("Add heights") : tr("Add pictures"), folder,
                                      tr("Rasters (*.tif *.tiff *.vrt *.img *.jp2 *.png *.jpg *.mbtiles "
                                         "*.gpkg *.asc *.hgt);;All files (*)"));
    for (const QString& file : files)
        Add(file, isElevation);
}

void LayerPanel::Add(const QString& file, bool isElevation)
{
    folder = QFileInfo(file).path();
    QString why;
    AxMapLayers* layers = viewer->GetMapLayers();
    const int id = isElevation ? layers->AddElevation(file, &why) : layers->AddImage(file, &why);
    if (id == 0) {
        QMessageBox::warning(this, tr("Layers"), why);
        return;
    }
    tree->setCurrentItem(ItemOf(id));
    emit Told(tr("%1 is shown on the map.").arg(QFileInfo(file).fileName()));
    FlyTo(id);
}

void LayerPanel::FlyTo(int id)
{
    constexpr double flightSeconds = 2.0;
    constexpr double metresPerDegree = 111000.0;
    constexpr double nearest = 500.0;
    for (const AxMapLayer& layer : viewer->GetMapLayers()->All()) {
        if (layer.id != id || !layer.extent)
            continue;
        const QPointF middle = layer.extent->center();
        const double width = layer.extent->width() * std::cos(middle.y() * std::acos(-1.0) / 180.0);
        // The picture is about half as high as it is far to look at it.
        const double range =
            qBound(nearest, 2.0 * qMax(width, layer.extent->height()) * metresPerDegree, 2e7);
        viewer->getManipulator()->setViewpoint(
            osgEarth::Viewpoint("", std::remainder(middle.x(), 360.0), middle.y(), 0.0, 0.0, -90.0, range),
            flightSeconds);
    }
}
