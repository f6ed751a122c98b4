#pragma once
#include <QAbstractTableModel>
#include <QStringList>

#include <utility>

/// The head of a table whose columns are known from the start: their number and their titles.
class TitledTable : public QAbstractTableModel
{
public:
    TitledTable(QStringList titlesOfColumns, QObject* parent)
        : QAbstractTableModel(parent), titles(std::move(titlesOfColumns))
    {
    }

    int columnCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : titles.size();
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        const bool isTitle = orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
                             section < titles.size();
        return isTitle ? QVariant(titles[section]) : QVariant();
    }

private:
    const QStringList titles;
};
