#include "lines/OrdersLeftOut.h"

#include "data/bDAO.h"
#include "lines/ListLoading.h"
#include "messages/bMessage.h"
#include "platform/Log.h"

void OrdersLeftOut::Add(bDAO &db, LineList &list, qint64 accNo)
{
    if (!m_orders.insert(accNo).second)
        return;
    LineList stored;
    m_isAllShown &= ReadOrders(db, {accNo}, stored);
    int shown = 0;
    for (const int row : list.RowsOfOrder(accNo)) {
        const Line &line = list.At(row);
        const int reading = line.IsStored() ? stored.RowOf(line.Key()) : 0;
        m_isAllShown &= reading > 0 || !line.IsStored();
        shown += reading > 0;
        if (reading > 0)
            list.Reread(row, stored, stored.At(reading));
    }
    m_isAllShown &= shown == stored.Count(); // no line has come in
    m_orderNos += list.At(list.RowsOfOrder(accNo).front()).OrderNo();
    qCInfo(LogAnswer).noquote()
        << QString("ほかの人が変更 注文№ %1（AccNo %2）").arg(m_orderNos.back()).arg(accNo);
}

void OrdersLeftOut::Tell() const
{
    if (!m_orderNos.isEmpty())
        ShowMessage(Message::NotCreated,
                    Text() + " は、ほかの人が変更しています。"
                        + (m_isAllShown ? "一覧に今の内容を表示しました"
                                        : "今の内容は、一覧を表示し直して確認してください"));
}

QString OrdersLeftOut::Text() const
{
    constexpr int MostNamed = 10;
    const QString text = "注文№ " + m_orderNos.mid(0, MostNamed).join("、");
    return m_orderNos.size() > MostNamed ? text + QString(" など %1 件").arg(m_orderNos.size())
                                         : text;
}
