#include "sheet/SheetReading.h"

#include "sheet/CsvReader.h"
#include "sheet/SheetCells.h"

#include <algorithm>
#include <array>

namespace {

/// The columns that are read.
enum Place { AccNo, AccSubNo, ShpSubNo, OrderNo, Quantity, Date, Answered, Written, Places };
constexpr std::array<const char *, Places> Headings
    = {SheetHeading::AccNo,    SheetHeading::AccSubNo,       SheetHeading::ShpSubNo,
       SheetHeading::OrderNo,  SheetHeading::AnswerQuantity, SheetHeading::AnswerDate,
       SheetHeading::Answered, SheetHeading::Written};
constexpr int Missing = -1;

/// Where each of them stands in the file.
struct Layout
{
    std::array<int, Places> at;
    int known = 0; ///< how many of all the sheet's headings there are
    int count = 0;
    bool hasHeadingTwice = false;

    Layout() { at.fill(Missing); }
};

Layout LayoutOf(const CsvRecord &headings)
{
    static const std::vector<QString> names = [] {
        std::vector<QString> plain;
        for (const SheetColumn &column : SheetColumns())
            plain.push_back(PlainCell(QString(column.heading)));
        return plain;
    }();
    Layout layout;
    layout.count = int(headings.cells.size());
    for (int at = 0; at < layout.count; ++at) {
        const QString heading = PlainCell(headings.cells[size_t(at)]);
        layout.known += std::find(names.begin(), names.end(), heading) != names.end();
        for (size_t place = 0; place < Places; ++place) {
            if (heading != PlainCell(QString(Headings[place])))
                continue;
            layout.hasHeadingTwice |= layout.at[place] != Missing;
            layout.at[place] = at;
        }
    }
    return layout;
}

bool IsEmpty(const CsvRecord &record)
{
    return !record.isBroken && std::ranges::all_of(record.cells, [](QStringView cell) {
        return cell.trimmed().isEmpty();
    });
}

/// The separator by which the first line that is not empty shows the most headings.
QChar SeparatorOf(const QString &text)
{
    QChar best = u',';
    int most = 0;
    for (const QChar separator : {u',', u'\t', u';'}) {
        ReadCsv(text, separator, [&](const CsvRecord &record) {
            if (IsEmpty(record))
                return true;
            if (const int known = LayoutOf(record).known; known > most) {
                most = known;
                best = separator;
            }
            return false;
        });
    }
    return best;
}

SheetFault FaultOf(const Layout &layout)
{
    if (layout.at[AccNo] == Missing || layout.at[AccSubNo] == Missing
        || layout.at[ShpSubNo] == Missing)
        return SheetFault::NoKeyColumns;
    if (layout.at[Quantity] == Missing && layout.at[Date] == Missing)
        return SheetFault::NoAnswerColumn;
    return layout.hasHeadingTwice ? SheetFault::HeadingTwice : SheetFault::None;
}

SheetRow RowOf(const CsvRecord &record, const Layout &layout)
{
    // A spreadsheet may leave cells out at the end of a row that are empty.
    const auto cell = [&](Place place) -> std::optional<QString> {
        const int at = layout.at[place];
        if (at == Missing)
            return std::nullopt;
        return size_t(at) < record.cells.size() ? PlainCell(record.cells[size_t(at)]) : QString();
    };
    SheetRow row;
    row.line = record.line;
    row.isBroken = record.isBroken;
    for (size_t at = size_t(layout.count); at < record.cells.size(); ++at)
        row.isTooLong |= !record.cells[at].trimmed().isEmpty();
    row.accNo = *cell(AccNo);
    row.accSubNo = *cell(AccSubNo);
    row.shpSubNo = *cell(ShpSubNo);
    row.orderNo = cell(OrderNo);
    row.quantity = cell(Quantity);
    row.date = cell(Date);
    row.answered = cell(Answered);
    row.written = cell(Written);
    return row;
}

/// What the first bytes tell.
SheetFault FaultOf(QByteArrayView bytes)
{
    constexpr QByteArrayView ZipMark("PK\3\4");
    constexpr QByteArrayView OldWorkbookMark("\xd0\xcf\x11\xe0");
    constexpr qsizetype Looked = 4096;
    if (bytes.startsWith(ZipMark) || bytes.startsWith(OldWorkbookMark))
        return SheetFault::IsWorkbook;
    const bool isUtf16 = bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff");
    const QByteArrayView head = bytes.first(std::min(bytes.size(), Looked));
    return !isUtf16 && head.contains('\0') ? SheetFault::IsNoText : SheetFault::None;
}

} // namespace

QString FaultText(SheetFault fault)
{
    switch (fault) {
    case SheetFault::IsWorkbook:
        return "ブックのままでは読めません。表計算ソフトで CSV 形式で保存してください";
    case SheetFault::IsNoText:
        return "CSV ファイルではありません";
    case SheetFault::NoKeyColumns:
        return "受注№・枝番・分納番号の見出しがありません";
    case SheetFault::NoAnswerColumn:
        return "回答数量・回答納期の見出しがありません";
    case SheetFault::HeadingTwice:
        return "同じ見出しの列が２つあります";
    case SheetFault::None:
        break;
    }
    return {};
}

Sheet ReadSheet(QByteArrayView bytes)
{
    Sheet sheet;
    sheet.fault = FaultOf(bytes);
    if (sheet.fault != SheetFault::None)
        return sheet;
    const QString text = CsvText(bytes);
    std::optional<Layout> layout;
    ReadCsv(text, SeparatorOf(text), [&](const CsvRecord &record) {
        if (IsEmpty(record))
            return true;
        if (layout) {
            sheet.rows.push_back(RowOf(record, *layout));
            return true;
        }
        layout = LayoutOf(record);
        sheet.fault = FaultOf(*layout);
        return sheet.fault == SheetFault::None;
    });
    if (!layout)
        sheet.fault = SheetFault::NoKeyColumns;
    return sheet;
}
