#include "search/PickerLists.h"

#include "grid/SpreadX.h"
#include "util/VbText.h"

#include <QStringList>

QString BuildProductSql(const QString &code)
{
    return QString("Select * From TLMT0020 ") + " Where AccHinCD Like '" + LikeText(SqlText(code))
           + "*'" + " Order By AccHinCD, HinName ";
}

QString BuildAllProductsSql()
{
    return QString("Select * From TLMT0020 ") + " Order By AccHinCD, HinName ";
}

QString BuildCustomerSql(const PickedCode &picked)
{
    const QString condition = !picked.name.isEmpty()
                                  ? QString("true ")
                                  : "CustCD LIKE '" + LikeText(SqlText(Trim(picked.code))) + "*'";
    return "Select CustCD,CustName,TEL From TLMT0040 Where " + condition + "ORDER BY CustCD";
}

namespace {

/// Adds every row's columns as one grid row; the number of the first row that `isWanted`, else 1.
template <typename IsWanted>
int FillRows(bDAO &db, Recordset &rows, const QStringList &columns, SpreadX &grid,
             IsWanted &&isWanted)
{
    int wanted = 0;
    for (int row = 1; !db.IsEOF(&rows); ++row, db.MoveNext(rows)) {
        QStringList cells;
        for (const QString &column : columns)
            cells += db.NullToRTrim(rows, column);
        grid.AddItem(cells.join('\t'));
        if (wanted == 0 && isWanted(cells))
            wanted = row;
    }
    db.CloseRS(&rows);
    return wanted == 0 ? 1 : wanted;
}

} // namespace

int FillProducts(bDAO &db, const PickedCode &picked, SpreadX &grid)
{
    auto rows = db.OpenRS(BuildProductSql(picked.code));
    if (db.IsEOF(rows.get()))
        return 0;
    PickedCode only;
    if (db.GetRecordCount(rows.get()) == 1) {
        // One product is no choice: show them all, with this one selected.
        only = {db.NullToTrim(*rows, u"AccHinCD"), db.NullToTrim(*rows, u"HinName")};
        rows = db.OpenRS(BuildAllProductsSql());
        if (!rows)
            return 0;
    }
    return FillRows(db, *rows, {"AccHinCD", "HinName"}, grid, [&](const QStringList &cells) {
        return Trim(cells[0]) == only.code && Trim(cells[1]) == only.name;
    });
}

int FillCustomers(bDAO &db, const PickedCode &picked, SpreadX &grid)
{
    const auto rows = db.OpenRS(BuildCustomerSql(picked));
    if (db.IsEOF(rows.get()))
        return 0;
    return FillRows(db, *rows, {"CustCD", "CustName", "TEL"}, grid, [&](const QStringList &cells) {
        // As the database compares: the customer of a code typed in small letters is found too.
        return Trim(cells[0]).compare(Trim(picked.code), Qt::CaseInsensitive) == 0;
    });
}
