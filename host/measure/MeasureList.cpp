#include "host/measure/MeasureList.h"
#include "interaction/AxMeasurements.h"

#include <QHeaderView>

#include <algorithm>
#include <cmath>

namespace {
constexpr int idRole = Qt::UserRole;
constexpr int nameColumn = 0;

int ColumnOf(AxQuantity quantity)
{
    return 1 + AxMeasureText::All().indexOf(quantity);
}

// Its texts are made when they are asked for: the units may have changed.
class ValuesItem : public QTreeWidgetItem
{
public:
    QVector<AxMeasured> values;
    bool isPending = false;

    QVariant data(int column, int role) const override
    {
        if (column == nameColumn || (role != Qt::DisplayRole && role != Qt::TextAlignmentRole))
            return QTreeWidgetItem::data(column, role);
        if (role == Qt::TextAlignmentRole)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        const AxQuantity quantity = AxMeasureText::All().value(column - 1);
        for (const AxMeasured& one : values)
            if (one.quantity == quantity)
                return isPending && !std::isfinite(one.value) ? QStringLiteral("...")
                                                              : AxMeasureText::Value(one);
        return {};
    }
};
} // namespace

MeasureList::MeasureList(AxMeasurements* list, QWidget* parent) : QTreeWidget(parent), measurements(list)
{
    setObjectName(QStringLiteral("MeasureList"));
    QStringList titles{tr("Measurement")};
    for (const AxQuantity quantity : AxMeasureText::All())
        titles += AxMeasureText::Name(quantity);
    setHeaderLabels(titles);
    for (int column = 1; column < titles.size(); ++column)
        headerItem()->setTextAlignment(column, Qt::AlignRight);
    setSelectionMode(ExtendedSelection);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setStretchLastSection(false);
    for (const AxMeasurement& one : measurements->All())
        Add(one.id);
    ShowColumns();
    connect(list, &AxMeasurements::added, this, [this](const QString& id) {
        Add(id);
        ShowColumns();
        if (!measurements->IsRestoring())
            Select(id);
    });
    connect(list, &AxMeasurements::changed, this, [this](const QString& id) {
        Fill(id);
        ShowColumns();
        if (ChosenIDs().contains(id))
            emit ChosenChanged();
    });
    connect(list, &AxMeasurements::removed, this, [this](const QString& id) {
        delete ItemOf(id);
        ShowColumns();
        emit ChosenChanged();
    });
    connect(this, &QTreeWidget::itemSelectionChanged, this, &MeasureList::ChosenChanged);
}

QTreeWidgetItem* MeasureList::ItemOf(const QString& id) const
{
    for (int i = 0; i < topLevelItemCount(); ++i)
        if (topLevelItem(i)->data(nameColumn, idRole).toString() == id)
            return topLevelItem(i);
    return nullptr;
}

void MeasureList::Add(const QString& id)
{
    auto* item = new ValuesItem;
    item->setData(nameColumn, idRole, id);
    addTopLevelItem(item);
    Fill(id);
}

void MeasureList::Fill(const QString& id)
{
    auto* item = static_cast<ValuesItem*>(ItemOf(id));
    const AxMeasurement* one = measurements ? measurements->Find(id) : nullptr;
    if (!item || !one)
        return;
    item->setText(nameColumn, one->name);
    item->values = one->values.whole;
    item->isPending = one->isPending;
    const int parts = one->values.parts.size() > 1 ? one->values.parts.size() : 0;
    while (item->childCount() > parts)
        delete item->child(item->childCount() - 1);
    for (int i = 0; i < parts; ++i) {
        auto* part = i < item->childCount() ? static_cast<ValuesItem*>(item->child(i)) : new ValuesItem;
        part->setText(nameColumn, tr("Part %1").arg(i + 1));
        part->values = one->values.parts[i];
        part->isPending = one->isPending;
        if (i >= item->childCount())
            item->addChild(part);
    }
    viewport()->update();
}

void MeasureList::ShowColumns()
{
    const auto has = [](const QTreeWidgetItem* item, AxQuantity quantity) {
        const auto& values = static_cast<const ValuesItem*>(item)->values;
        return std::any_of(values.begin(), values.end(),
                           [quantity](const AxMeasured& one) { return one.quantity == quantity; });
    };
    for (const AxQuantity quantity : AxMeasureText::All()) {
        bool isThere = false;
        for (int i = 0; i < topLevelItemCount() && !isThere; ++i) {
            isThere = has(topLevelItem(i), quantity);
            for (int k = 0; k < topLevelItem(i)->childCount() && !isThere; ++k)
                isThere = has(topLevelItem(i)->child(k), quantity);
        }
        setColumnHidden(ColumnOf(quantity), !isThere);
    }
}

QStringList MeasureList::ChosenIDs() const
{
    QStringList ids;
    for (int i = 0; i < topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = topLevelItem(i);
        bool isChosen = item->isSelected();
        for (int k = 0; k < item->childCount() && !isChosen; ++k)
            isChosen = item->child(k)->isSelected();
        if (isChosen)
            ids += item->data(nameColumn, idRole).toString();
    }
    return ids;
}

QVector<AxMeasurement> MeasureList::Chosen() const
{
    QVector<AxMeasurement> chosen;
    for (const QString& id : ChosenIDs())
        if (const AxMeasurement* one = measurements ? measurements->Find(id) : nullptr)
            chosen += *one;
    return chosen;
}

void MeasureList::Select(const QString& id)
{
    QTreeWidgetItem* item = ItemOf(id);
    if (!item)
        return;
    setCurrentItem(item);
    scrollToItem(item);
}

void MeasureList::Toggle(const QString& id)
{
    QTreeWidgetItem* item = ItemOf(id);
    if (!item)
        return;
    setCurrentItem(item, nameColumn, QItemSelectionModel::Toggle | QItemSelectionModel::Rows);
    scrollToItem(item);
}
