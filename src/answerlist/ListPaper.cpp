#include "answerlist/ListPaper.h"

#include "answerlist/ListColumns.h"
#include "platform/Clock.h"
#include "sheet/SheetColumns.h"

#include <algorithm>
#include <memory>

namespace {

/// A table without its columns.
PaperTable TableOf(const QString &title, const QString &about, int rows)
{
    PaperTable table;
    table.title = title;
    table.about = QString("%1　　%2 行").arg(about, Decimal(rows).ToFixed(0, true));
    table.beside = Now().toString("yyyy/MM/dd HH:mm");
    table.rows = rows;
    return table;
}

} // namespace

PaperTable ListPaper(const LineList &list, const RowSelection &rows, const QString &about)
{
    /// A row's width in half-width characters, as the widest of a cell's lines wants it.
    constexpr int Shares[] = {5, 36, 15, 15, 14, 9, 10, 6, 22};
    std::vector<int> lineRows;
    rows.ForEach([&](int row) {
        lineRows.push_back(row);
        return true;
    });
    const auto numbers = std::make_shared<const std::vector<int>>(std::move(lineRows));
    PaperTable table = TableOf("納期回答一覧", about, rows.Count());
    const auto columns = ListColumns();
    table.columns.push_back({"№", 6, true});
    for (size_t column = 0; column < columns.size(); ++column) {
        const QString heading = QString(columns[column].heading).remove('\r');
        table.columns.push_back({heading, double(Shares[column]), columns[column].isNumber});
        table.linesPerRow = std::max(table.linesPerRow, int(heading.count('\n')) + 1);
    }
    table.text = [&list, columns, numbers](int row, int column) {
        const int lineRow = (*numbers)[size_t(row)];
        if (column == 0)
            return QString::number(lineRow);
        return columns[size_t(column) - 1].text(list.At(lineRow)).remove('\r');
    };
    return table;
}

PaperTable AnswersPaper(const std::vector<Line> &lines, const QString &about)
{
    static constexpr const char *Headings[] = {SheetHeading::AccNo,
                                               SheetHeading::AccSubNo,
                                               SheetHeading::ShpSubNo,
                                               SheetHeading::OrderNo,
                                               "商品ｺｰﾄﾞ",
                                               "商品名",
                                               "注文数",
                                               SheetHeading::AnswerQuantity,
                                               SheetHeading::AnswerDate,
                                               "納期",
                                               "納入№"};
    PaperTable table = TableOf("納期回答 控え", about, int(lines.size()));
    std::vector<const SheetColumn *> columns;
    for (const SheetColumn &column : SheetColumns()) {
        const bool isPrinted = std::ranges::any_of(
            Headings, [&](const char *heading) { return QString(heading) == column.heading; });
        if (!isPrinted)
            continue;
        columns.push_back(&column);
        const bool isNumber = column.number || column.kind == SheetKind::Key;
        table.columns.push_back({column.heading, double(column.width), isNumber});
    }
    table.text = [&lines, columns](int row, int column) {
        const Line &line = lines[size_t(row)];
        const SheetColumn &printed = *columns[size_t(column)];
        return printed.number ? FormatQuantity(printed.number(line)) : printed.text(line);
    };
    return table;
}
