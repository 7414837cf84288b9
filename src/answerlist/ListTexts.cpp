#include "answerlist/ListTexts.h"

#include "lines/LineCounts.h"

QString DateBasisName(const QString &basis)
{
    static constexpr struct
    {
        const char *basis;
        const char *name;
    } names[] = {{"SHPDATE", "出荷（予定）"}, {"LIMDATE", "指定納期"}, {"ACCDATE", "受注日"}};
    for (const auto &entry : names)
        if (basis == QLatin1String(entry.basis))
            return entry.name;
    return {};
}

QString CountsText(const LineCounts &counts, int selected, int shown)
{
    const auto shownCount = [](int count) { return Decimal(count).ToFixed(0, true); };
    QString text = QString("選択 %1　　変更 %2　　未回答 %3　　納期超過 %4")
                       .arg(shownCount(selected), shownCount(counts.changed),
                            shownCount(counts.open), shownCount(counts.overdue));
    if (shown < counts.lines)
        text += "　　表示 " + shownCount(shown);
    return text;
}

QString RemainderText(const LineList &list, int row)
{
    const Line &line = list.At(row);
    Decimal answers;
    bool isSplit = false;
    for (const int other : list.RowsOfOrder(line.Key().accNo)) {
        answers += list.At(other).Now().quantity;
        isSplit = isSplit || !list.At(other).IsStored();
    }
    if (!isSplit)
        return {};
    const Decimal open = line.OpenQuantity();
    return QString("注残 %1 － 回答計 %2 ＝ 残り %3")
        .arg(open.ToText(), answers.ToText(), (open - answers).ToText());
}
