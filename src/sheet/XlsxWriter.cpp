#include "sheet/XlsxWriter.h"

#include "sheet/SheetCells.h"
#include "sheet/SheetColumns.h"

#include <QDate>
#include <QFile>
#include <memory>
#include <xlsxwriter.h>

namespace {

/// As the list shows it; further decimals, which no answer has, are not hidden: a spreadsheet saves
/// as CSV what it shows.
constexpr auto QuantityFormat = "#,##0.000######";
constexpr auto FontName = "Yu Gothic";
constexpr lxw_color_t HeadingColor = 0xD9E1F2;
constexpr lxw_color_t AnswerColor = 0xFFF2CC; ///< of what is to be filled in

struct WorkbookCloser
{
    void operator()(lxw_workbook *workbook) const { lxw_workbook_free(workbook); }
};

/// The day number that a workbook stores for a date (stored form, of the calendar).
double DayNumber(const QString &stored)
{
    const QDate date = QDate::fromString(stored, "yyyyMMdd");
    return double(QDate(1899, 12, 30).daysTo(date));
}

/// One workbook with its one sheet.
class Workbook
{
public:
    explicit Workbook(const QString &localPath);

    bool IsOpen() const { return m_workbook && m_sheet; }
    void WriteHeadings();
    void WriteRow(const LineList &list, int row);

    /// False when the file could not be written.
    bool Close();

private:
    lxw_format *AddFormat(const char *numberFormat, bool isAnswer);
    void WriteCell(const LineList &list, int row, lxw_col_t at, const SheetColumn &column);

    std::unique_ptr<lxw_workbook, WorkbookCloser> m_workbook;
    lxw_worksheet *m_sheet = nullptr;
    lxw_format *m_key = nullptr;
    lxw_format *m_text = nullptr;
    lxw_format *m_number = nullptr;
    lxw_format *m_date = nullptr;
    lxw_format *m_answerNumber = nullptr;
    lxw_format *m_answerDate = nullptr;
    lxw_row_t m_row = 0;
};

Workbook::Workbook(const QString &localPath)
{
    lxw_workbook_options options = {};
    options.constant_memory = LXW_TRUE;
    m_workbook.reset(workbook_new_opt(QFile::encodeName(localPath), &options));
    if (!m_workbook)
        return;
    m_sheet = workbook_add_worksheet(m_workbook.get(), "納期回答");
    m_key = AddFormat("0", false);
    m_text = AddFormat("@", false);
    m_number = AddFormat(QuantityFormat, false);
    m_date = AddFormat("yyyy/mm/dd", false);
    m_answerNumber = AddFormat(QuantityFormat, true);
    m_answerDate = AddFormat("yyyy/mm/dd", true);
}

lxw_format *Workbook::AddFormat(const char *numberFormat, bool isAnswer)
{
    lxw_format *format = workbook_add_format(m_workbook.get());
    format_set_font_name(format, FontName);
    format_set_num_format(format, numberFormat);
    if (isAnswer) {
        format_set_bg_color(format, AnswerColor);
        format_set_border(format, LXW_BORDER_THIN);
        format_set_unlocked(format);
    }
    return format;
}

void Workbook::WriteHeadings()
{
    lxw_format *heading = AddFormat("@", false);
    format_set_bold(heading);
    format_set_bg_color(heading, HeadingColor);
    format_set_border(heading, LXW_BORDER_THIN);
    lxw_format *answerHeading = AddFormat("@", false);
    format_set_bold(answerHeading);
    format_set_bg_color(answerHeading, AnswerColor);
    format_set_border(answerHeading, LXW_BORDER_THIN);
    lxw_format *below = workbook_add_format(m_workbook.get());
    format_set_font_name(below, FontName);
    format_set_unlocked(below);

    constexpr lxw_col_t KeyColumns = 3;
    const auto columns = SheetColumns();
    for (lxw_col_t at = 0; at < lxw_col_t(columns.size()); ++at) {
        const SheetColumn &column = columns[at];
        const bool isAnswer
            = column.kind == SheetKind::AnswerQuantity || column.kind == SheetKind::AnswerDate;
        worksheet_set_column(m_sheet, at, at, column.width, below);
        worksheet_write_string(m_sheet, 0, at, column.heading, isAnswer ? answerHeading : heading);
    }
    worksheet_freeze_panes(m_sheet, 1, KeyColumns);
    lxw_protection allowed = {};
    allowed.format_cells = allowed.format_columns = allowed.format_rows = 1;
    worksheet_protect(m_sheet, nullptr, &allowed);
    m_row = 1;
}

void Workbook::WriteCell(const LineList &list, int row, lxw_col_t at, const SheetColumn &column)
{
    constexpr qsizetype MostCharacters = 32'767;
    const bool isAnswer
        = column.kind == SheetKind::AnswerQuantity || column.kind == SheetKind::AnswerDate;
    if (column.number) {
        worksheet_write_number(m_sheet, m_row, at, column.number(list.At(row)).ToDouble(),
                               isAnswer ? m_answerNumber : m_number);
        return;
    }
    const QString text = SheetText(list, row, column);
    lxw_format *format = m_text;
    if (column.kind == SheetKind::Date || column.kind == SheetKind::AnswerDate) {
        format = isAnswer ? m_answerDate : m_date;
        if (const auto date = DateOfCell(text)) {
            worksheet_write_number(m_sheet, m_row, at, DayNumber(*date), format);
            return;
        }
    }
    const bool isNumber = column.kind == SheetKind::Key && text.size() <= 15;
    if (text.isEmpty())
        worksheet_write_blank(m_sheet, m_row, at, format);
    else if (isNumber)
        worksheet_write_number(m_sheet, m_row, at, text.toDouble(), m_key);
    else
        worksheet_write_string(m_sheet, m_row, at, text.left(MostCharacters).toUtf8(), format);
}

void Workbook::WriteRow(const LineList &list, int row)
{
    lxw_col_t at = 0;
    for (const SheetColumn &column : SheetColumns())
        WriteCell(list, row, at++, column);
    ++m_row;
}

bool Workbook::Close()
{
    return workbook_close(m_workbook.release()) == LXW_NO_ERROR;
}

} // namespace

XlsxResult WriteXlsx(const LineList &list, const RowSelection &rows, const QString &localPath,
                     const std::function<bool()> &step)
{
    Workbook workbook(localPath);
    if (!workbook.IsOpen())
        return XlsxResult::Failed;
    workbook.WriteHeadings();
    bool goesOn = true;
    rows.ForEach([&](int row) {
        goesOn = step();
        if (goesOn)
            workbook.WriteRow(list, row);
        return goesOn;
    });
    if (!goesOn)
        return XlsxResult::Stopped;
    return workbook.Close() ? XlsxResult::Written : XlsxResult::Failed;
}
