#pragma once

#include "lines/LineList.h"

#include <QStringList>
#include <set>

class bDAO;

/// The orders that a run has left to whoever has changed them meanwhile. The operator is told of
/// all of them at once: a box for each would keep him from the others.
class OrdersLeftOut
{
public:
    bool Contains(qint64 accNo) const { return m_orders.contains(accNo); }
    int Count() const { return int(m_orders.size()); }

    /// Leaves an order out: its stored lines show what the database has now. Not within a
    /// transaction. Nothing for one that is left out already.
    void Add(bDAO &db, LineList &list, qint64 accNo);

    /// Shows message 43 with the orders' numbers; where the list can't show all that is stored, it
    /// says so. Nothing without orders.
    void Tell() const;

    /// The numbers; of more than ten the first ten, and how many there are.
    QString Text() const;

private:
    std::set<qint64> m_orders;
    QStringList m_orderNos; ///< in the order of the run
    bool m_isAllShown = true;
};
