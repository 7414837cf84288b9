#include "search/PickerLists.h"

#include "grid/SpreadX.h"
#include "util/VbText.h"

#include <QStringList>
#include <vector>

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

/// Adds every row's columns as one grid row; the number of the first row that `isWanted` (by its
/// first two columns), else 1.
template <typename IsWanted>
int FillRows(bDAO &db, Recordset &rows, const QStringList &columns, SpreadX &grid,
             IsWanted &&isWanted)
{
    const std::vector<int> fields = db.FieldsOf(rows, columns);
    if (fields.empty())
        return ListNotRead;
    int wanted = 0;
    std::vector<QString> cells(fields.size());
    for (int row = 1; !db.IsEOF(&rows); ++row, db.MoveNext(rows)) {
        qsizetype length = 0;
        for (size_t at = 0; at < fields.size(); ++at) {
            cells[at] = RTrim(rows.Text(fields[at]));
            cells[at].replace('\t', ' '); // a tab would end the cell
            length += cells[at].size() + 1;
        }
        QString text;
        text.reserve(length);
        for (size_t at = 0; at < cells.size(); ++at) {
            if (at > 0)
                text += '\t';
            text += cells[at];
        }
        grid.AddItem(text);
        if (wanted == 0 && isWanted(cells[0], cells[1]))
            wanted = row;
    }
    db.CloseRS(&rows);
    return wanted == 0 ? 1 : wanted;
}

} // namespace

int FillProducts(bDAO &db, const PickedCode &picked, SpreadX &grid)
{
    auto rows = db.OpenRS(BuildProductSql(picked.code));
    if (!rows)
        return ListNotRead;
    if (db.IsEOF(rows.get()))
        return 0;
    PickedCode only;
    if (db.GetRecordCount(rows.get()) == 1) {
        // One product is no choice: show them all, with this one selected.
        only = {db.NullToTrim(*rows, u"AccHinCD"), db.NullToTrim(*rows, u"HinName")};
        rows = db.OpenRS(BuildAllProductsSql());
        if (!rows)
            return ListNotRead;
    }
    return FillRows(
        db, *rows, {"AccHinCD", "HinName"}, grid, [&](const QString &code, const QString &name) {
            return !only.code.isEmpty() && Trim(code) == only.code && Trim(name) == only.name;
        });
}

int FillCustomers(bDAO &db, const PickedCode &picked, SpreadX &grid)
{
    const auto rows = db.OpenRS(BuildCustomerSql(picked));
    if (!rows)
        return ListNotRead;
    if (db.IsEOF(rows.get()))
        return 0;
    const QString wanted = Trim(picked.code);
    return FillRows(db, *rows, {"CustCD", "CustName", "TEL"}, grid,
                    [&](const QString &code, const QString &) {
                        // As the database compares: a code typed in small letters is found too.
                        return Trim(code).compare(wanted, Qt::CaseInsensitive) == 0;
                    });
}
