#pragma once

#include "lines/LineList.h"

#include <QAbstractTableModel>

/// The delivery lines as the answer list shows them: texts, colours and locks of the cells that are
/// looked at, made from the lines when they are asked for. The row's heading carries the error that
/// the checks found.
class LineModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit LineModel(LineList &list, QObject *parent = nullptr)
        : QAbstractTableModel(parent)
        , m_list(list)
    {
    }

    // What happens to the list, told to the views.

    void Empty();   ///< before the list is filled: nothing of it is shown until then
    void Filled();  ///< it holds other lines
    void Changed(); ///< its lines have changed, none came or went

    /// A line comes below a row, by `insert`.
    template <typename Insert>
    void InsertBelow(int row, Insert &&insert)
    {
        beginInsertRows({}, row, row);
        insert();
        ++m_shownRows;
        endInsertRows();
    }
    void Remove(int row);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    /// Takes a typed quantity or date. False for a text that is none, or the one that stands there.
    bool setData(const QModelIndex &index, const QVariant &typed, int role) override;

signals:
    void Edited(int row); ///< the operator has changed its answer

private:
    const Line &LineAt(const QModelIndex &index) const { return m_list.At(index.row() + 1); }

    LineList &m_list;
    int m_shownRows = 0;
};
